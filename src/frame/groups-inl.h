// Splits a run of pixel groups into whole vectors plus single groups
// (per-target Highway code).
#if defined(YUVBLIT_GROUPS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef YUVBLIT_GROUPS_INL_H_
#undef YUVBLIT_GROUPS_INL_H_
#else
#define YUVBLIT_GROUPS_INL_H_
#endif

#include <cstddef>
#include <type_traits>

#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// Calls body(std::true_type()) or body(std::false_type()) as `flag` is, so
// that a row operation's loop is compiled once per case and tests nothing.
template <class Body>
HWY_INLINE void WithFlag(bool flag, Body&& body) {
  if (flag) return body(std::true_type());
  body(std::false_type());
}

// Where stores of vectors of n bytes become aligned in dst (at most to a
// cache line, so that none splits one): the offset of the first aligned
// address after dst, in (0, min(n, 64)]. Row operations store one
// unaligned vector at dst to cover what comes before it.
HWY_INLINE size_t AlignedStart(const uint8_t* dst, size_t n) {
  const size_t align = HWY_MIN(n, size_t{64});
  return align - reinterpret_cast<uintptr_t>(dst) % align;
}

// The groups left after the full vectors: at most one vector of each
// halved width, widest first, down to a single group.
template <size_t kLanes, size_t kLanesPerGroup, class Body>
HWY_INLINE void ForRemainingGroups(size_t g, size_t groups, Body& body) {
  if constexpr (kLanes >= kLanesPerGroup) {
    const hn::CappedTag<uint8_t, kLanes> d;
    const size_t perVector = hn::Lanes(d) / kLanesPerGroup;
    if (g + perVector <= groups) {
      body(d, g);
      g += perVector;
    }
    ForRemainingGroups<kLanes / 2, kLanesPerGroup>(g, groups, body);
  }
}

// Calls body(d, firstGroup) for every run of groups, where one group is
// kLanesPerGroup u8 lanes of the tag d. Full vectors take as many groups as
// fit; the rest go through halved widths, so nothing is read or written
// outside the groups asked for and short rows still use wide vectors.
template <size_t kLanesPerGroup, class Body>
HWY_INLINE void ForGroups(size_t groups, Body&& body) {
  const hn::ScalableTag<uint8_t> d;
  const size_t perVector = hn::Lanes(d) / kLanesPerGroup;
  size_t g = 0;
  for (; g + perVector <= groups; g += perVector) body(d, g);
  ForRemainingGroups<HWY_MAX_BYTES / 2, kLanesPerGroup>(g, groups, body);
}

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#endif  // YUVBLIT_GROUPS_INL_H_
