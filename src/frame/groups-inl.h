// Splits a run of pixel groups into whole vectors plus single groups
// (per-target Highway code).
#if defined(YUVBLIT_GROUPS_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef YUVBLIT_GROUPS_INL_H_
#undef YUVBLIT_GROUPS_INL_H_
#else
#define YUVBLIT_GROUPS_INL_H_
#endif

#include <cstddef>

#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// Calls body(d, firstGroup) for every run of groups, where one group is
// kLanesPerGroup u8 lanes of the tag d. Full vectors take as many groups as
// fit; the rest go one group at a time with a narrow tag, so nothing is read
// or written outside the groups asked for.
template <size_t kLanesPerGroup, class Body>
HWY_INLINE void ForGroups(size_t groups, Body&& body) {
  const hn::ScalableTag<uint8_t> d;
  const size_t perVector = hn::Lanes(d) / kLanesPerGroup;
  size_t g = 0;
  if (perVector > 1) {
    for (; g + perVector <= groups; g += perVector) body(d, g);
  }
  const hn::CappedTag<uint8_t, kLanesPerGroup> one;
  for (; g < groups; ++g) body(one, g);
}

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#endif  // YUVBLIT_GROUPS_INL_H_
