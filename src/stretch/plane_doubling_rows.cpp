// Vector row operations of the one-plane doubling kernels.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "stretch/plane_doubling_rows.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep

#include <cstring>

#include "hwy/highway.h"
#include "adjust/adjust-inl.h"
#include "frame/groups-inl.h"
#include "stretch/doubling-inl.h"
#include "stretch/plane_doubling_rows.h"

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// Samples per group of the horizontal doubling, and of the vertical-only
// pair lines.
constexpr size_t kDoubledGroup = 8;
constexpr size_t kPairGroup = 16;

using EdgeTag = hn::CappedTag<uint8_t, kDoubledGroup>;

// The right neighbours of the group of 8 samples at s when the last sample
// is its own: s[1] ... s[7], s[7]. Reads s[0 .. 7] only.
HWY_INLINE hn::Vec<EdgeTag> EdgeNeighbours(const uint8_t* s) {
  uint8_t right[kDoubledGroup];
  std::memcpy(right, s + 1, kDoubledGroup - 1);
  right[kDoubledGroup - 1] = s[kDoubledGroup - 1];
  return hn::LoadU(EdgeTag(), right);
}

// Runs body(d, firstGroup, right) over `groups` groups of 8 samples, where
// right(p) gives the right neighbours of the vector of samples at p: read
// one byte on, except with `edge` for the last group, which gets
// EdgeNeighbours so that nothing past the run is read.
template <class Body>
HWY_INLINE void ForDoubledGroups(size_t groups, bool edge, Body&& body) {
  const size_t read = edge && groups > 0 ? groups - 1 : groups;
  ForGroups<kDoubledGroup>(read, [&](auto d, size_t g) {
    body(d, g, [d](const uint8_t* p) { return hn::LoadU(d, p + 1); });
  });
  if (read < groups) body(EdgeTag(), read, [](const uint8_t* p) { return EdgeNeighbours(p); });
}

void AdjustRowAndAverage(const uint8_t* HWY_RESTRICT a, const uint8_t* HWY_RESTRICT b,
                         uint8_t* upper, uint8_t* lower, size_t groups, SampleAdjust adjust) {
  const SampleLookup lookup(adjust);
  ForGroups<kPairGroup>(groups, [&](auto d, size_t g) {
    const size_t i = kPairGroup * g;
    const auto va = hn::LoadU(d, a + i);
    const auto vb = hn::LoadU(d, b + i);
    hn::StoreU(AdjustBytes(d, va, lookup), d, upper + i);
    hn::StoreU(AdjustBytes(d, RoundedAverage(va, vb), lookup), d, lower + i);
  });
}

void DoubleRow(const uint8_t* HWY_RESTRICT src, uint8_t* HWY_RESTRICT dst, size_t groups,
               bool edge) {
  ForDoubledGroups(groups, edge, [&](auto d, size_t g, auto right) {
    const uint8_t* s = src + kDoubledGroup * g;
    StoreDoubled(d, hn::LoadU(d, s), right(s), dst + 2 * kDoubledGroup * g);
  });
}

void DoubleRowAdjusted(const uint8_t* HWY_RESTRICT src, uint8_t* HWY_RESTRICT dst, size_t groups,
                       SampleAdjust adjust) {
  const SampleLookup lookup(adjust);
  ForDoubledGroups(groups, false, [&](auto d, size_t g, auto right) {
    const uint8_t* s = src + kDoubledGroup * g;
    const auto v = hn::LoadU(d, s);
    hn::StoreInterleaved2(AdjustBytes(d, v, lookup),
                          AdjustBytes(d, RoundedAverage(v, right(s)), lookup), d,
                          dst + 2 * kDoubledGroup * g);
  });
}

void DoublePair(const uint8_t* HWY_RESTRICT a, const uint8_t* HWY_RESTRICT b, uint8_t* between,
                uint8_t* below, size_t groups, bool edge) {
  ForDoubledGroups(groups, edge, [&](auto d, size_t g, auto right) {
    const uint8_t* sa = a + kDoubledGroup * g;
    const uint8_t* sb = b + kDoubledGroup * g;
    const auto va = hn::LoadU(d, sa);
    const auto vb = hn::LoadU(d, sb);
    const auto bHalf = RoundedAverage(vb, right(sb));
    const size_t out = 2 * kDoubledGroup * g;
    hn::StoreInterleaved2(RoundedAverage(va, vb),
                          RoundedAverage(RoundedAverage(va, right(sa)), bHalf), d, between + out);
    hn::StoreInterleaved2(vb, bHalf, d, below + out);
  });
}

void DoublePairAdjusted(const uint8_t* HWY_RESTRICT a, const uint8_t* HWY_RESTRICT b,
                        uint8_t* upper, uint8_t* between, size_t groups, SampleAdjust adjust) {
  const SampleLookup lookup(adjust);
  ForDoubledGroups(groups, false, [&](auto d, size_t g, auto right) {
    const uint8_t* sa = a + kDoubledGroup * g;
    const uint8_t* sb = b + kDoubledGroup * g;
    const auto va = hn::LoadU(d, sa);
    const auto vb = hn::LoadU(d, sb);
    const auto aHalf = RoundedAverage(va, right(sa));
    const auto bHalf = RoundedAverage(vb, right(sb));
    const size_t out = 2 * kDoubledGroup * g;
    hn::StoreInterleaved2(AdjustBytes(d, va, lookup), AdjustBytes(d, aHalf, lookup), d,
                          upper + out);
    hn::StoreInterleaved2(AdjustBytes(d, RoundedAverage(va, vb), lookup),
                          AdjustBytes(d, RoundedAverage(aHalf, bHalf), lookup), d,
                          between + out);
  });
}

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace yuvblit {

HWY_EXPORT(AdjustRowAndAverage);
HWY_EXPORT(DoubleRow);
HWY_EXPORT(DoubleRowAdjusted);
HWY_EXPORT(DoublePair);
HWY_EXPORT(DoublePairAdjusted);

void adjust_row_and_average(const uint8_t* a, const uint8_t* b, uint8_t* upper, uint8_t* lower,
                            size_t groups, SampleAdjust adjust) {
  HWY_DYNAMIC_DISPATCH(AdjustRowAndAverage)(a, b, upper, lower, groups, adjust);
}
void double_row(const uint8_t* src, uint8_t* dst, size_t groups, bool edge) {
  HWY_DYNAMIC_DISPATCH(DoubleRow)(src, dst, groups, edge);
}
void double_row_adjusted(const uint8_t* src, uint8_t* dst, size_t groups, SampleAdjust adjust) {
  HWY_DYNAMIC_DISPATCH(DoubleRowAdjusted)(src, dst, groups, adjust);
}
void double_pair(const uint8_t* a, const uint8_t* b, uint8_t* between, uint8_t* below,
                 size_t groups, bool edge) {
  HWY_DYNAMIC_DISPATCH(DoublePair)(a, b, between, below, groups, edge);
}
void double_pair_adjusted(const uint8_t* a, const uint8_t* b, uint8_t* upper, uint8_t* between,
                          size_t groups, SampleAdjust adjust) {
  HWY_DYNAMIC_DISPATCH(DoublePairAdjusted)(a, b, upper, between, groups, adjust);
}

}  // namespace yuvblit
#endif  // HWY_ONCE
