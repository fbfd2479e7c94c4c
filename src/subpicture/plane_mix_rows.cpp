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

// One u8 lane per sample, 8 samples a step. Vectors whose alpha lets one
// input through unchanged read and store that input alone.
template <bool kInterpolate, bool kRightOfPair, bool kAdjust>
void MixPlaneRowT(const PlaneMixRow& row, size_t steps, const SampleLookup& adjust) {
  ForGroups<8>(steps, [&](auto d8, size_t g) {
    const size_t at = 8 * g;
    hn::Vec<decltype(d8)> alpha;
    if constexpr (kRightOfPair) {
      const size_t n = hn::Lanes(d8);
      alpha = hn::ConcatOdd(d8, hn::LoadU(d8, row.alpha + 2 * at + n),
                            hn::LoadU(d8, row.alpha + 2 * at));
    } else {
      alpha = hn::LoadU(d8, row.alpha + at);
    }
    hn::Vec<decltype(d8)> mixed;
    switch (CoverageOf<true>(d8, alpha)) {
      case Coverage::kPicture:
        mixed = LoadPicture<kInterpolate>(d8, row.picture, at);
        break;
      case Coverage::kSubpicture:
        mixed = hn::LoadU(d8, row.sub + at);
        break;
      case Coverage::kMixed:
        mixed = BlendBytes(d8, LoadPicture<kInterpolate>(d8, row.picture, at),
                           hn::LoadU(d8, row.sub + at), alpha);
        break;
    }
    if constexpr (kAdjust) mixed = AdjustBytes(d8, mixed, adjust);
    hn::StoreU(mixed, d8, row.dst + at);
  });
}

template <bool kInterpolate, bool kRightOfPair>
void MixPlaneRowAdjusting(const PlaneMixRow& row, size_t steps, const SampleAdjust* adjust) {
  if (adjust) {
    return MixPlaneRowT<kInterpolate, kRightOfPair, true>(row, steps, SampleLookup(*adjust));
  }
  MixPlaneRowT<kInterpolate, kRightOfPair, false>(row, steps, SampleLookup(SampleAdjust{}));
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
