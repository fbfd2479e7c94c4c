// Vector row operation of the YV12 mixers: blend one plane row by alpha,
// optionally adjust, store bytes.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "subpicture/plane_mix_rows.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep

#include "hwy/highway.h"
#include "adjust/adjust-inl.h"
#include "adjust/blend-inl.h"
#include "frame/groups-inl.h"
#include "subpicture/plane_mix_rows.h"

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// A step is 8 samples, one int16 lane each: 16 bytes of a u8 tag per step.
template <bool kInterpolate, bool kRightOfPair, bool kAdjust>
void MixPlaneRowT(const PlaneMixRow& row, size_t steps, SampleAdjust adjust) {
  ForGroups<16>(steps, [&](auto d, size_t g) {
    const hn::Repartition<int16_t, decltype(d)> d16;
    const hn::Rebind<uint8_t, decltype(d16)> d8;  // one sample per lane
    const hn::RebindToUnsigned<decltype(d16)> du16;
    const size_t at = 8 * g;
    auto picture = hn::LoadU(d8, row.picture[0] + at);
    if (kInterpolate) picture = RoundedAverage(picture, hn::LoadU(d8, row.picture[1] + at));
    const auto alpha =
        kRightOfPair
            ? hn::BitCast(d16, hn::ShiftRight<8>(hn::BitCast(du16, hn::LoadU(d, row.alpha + 2 * at))))
            : hn::PromoteTo(d16, hn::LoadU(d8, row.alpha + at));
    auto mixed = Blend(d16, hn::PromoteTo(d16, picture), hn::PromoteTo(d16, hn::LoadU(d8, row.sub + at)),
                       BlendWeight(d16, alpha));
    if (kAdjust) mixed = AdjustWide(d16, mixed, adjust);
    hn::StoreU(hn::DemoteTo(d8, mixed), d8, row.dst + at);
  });
}

template <bool kInterpolate, bool kRightOfPair>
void MixPlaneRowAdjusting(const PlaneMixRow& row, size_t steps, const SampleAdjust* adjust) {
  if (adjust) return MixPlaneRowT<kInterpolate, kRightOfPair, true>(row, steps, *adjust);
  MixPlaneRowT<kInterpolate, kRightOfPair, false>(row, steps, SampleAdjust{});
}

void MixPlaneRow(const PlaneMixRow& row, size_t steps, AlphaSampling alpha,
                 const SampleAdjust* adjust) {
  const bool interpolate = row.picture[0] != row.picture[1];
  if (alpha == AlphaSampling::kRightOfPair) {
    return interpolate ? MixPlaneRowAdjusting<true, true>(row, steps, adjust)
                       : MixPlaneRowAdjusting<false, true>(row, steps, adjust);
  }
  return interpolate ? MixPlaneRowAdjusting<true, false>(row, steps, adjust)
                     : MixPlaneRowAdjusting<false, false>(row, steps, adjust);
}

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace yuvblit {

HWY_EXPORT(MixPlaneRow);

void mix_plane_row(const PlaneMixRow& row, size_t steps, AlphaSampling alpha,
                   const SampleAdjust* adjust) {
  HWY_DYNAMIC_DISPATCH(MixPlaneRow)(row, steps, alpha, adjust);
}

}  // namespace yuvblit
#endif  // HWY_ONCE
