// Vector row operations from YUV to RGB surfaces.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "load/rgb_rows.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep

#include "hwy/highway.h"
#include "adjust/adjust-inl.h"
#include "adjust/color-inl.h"
#include "frame/groups-inl.h"
#include "load/rgb_rows.h"

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// Converts bytes of luma (pixel order) with the chroma terms of their pixel
// pairs and stores them.
template <RgbPacking P, bool kAdjust, class D8, class D16, class V = hn::Vec<D16>>
HWY_INLINE void ConvertLuma(D8 d8, D16 d16, hn::Vec<D8> luma, V gU, V bU, V gV, V rV,
                            const RgbFormat& format, const AdjustmentLookup& a, uint8_t* dst) {
  V even, odd;
  if (kAdjust) {
    SplitEvenOddAdjusted(d8, luma, a.luma, even, odd);
  } else {
    SplitEvenOdd(d8, luma, even, odd);
  }
  StoreRgb<P>(d16, even, odd, gU, bU, gV, rV, format.layout, dst);
}

template <RgbPacking P, bool kAdjust>
void PairToRgb(const uint8_t* y0, const uint8_t* y1, const uint8_t* u, const uint8_t* v,
               uint8_t* d0, uint8_t* d1, size_t groups, const RgbFormat& format,
               const Adjustment& a) {
  constexpr size_t kBpp = P == RgbPacking::kRgb32 ? 4 : P == RgbPacking::kRgb24 ? 3 : 2;
  const AdjustmentLookup lookup(a);
  ForGroups<16>(groups, [&](auto d8, size_t g) {
    const hn::Repartition<int16_t, decltype(d8)> d16;
    const hn::Rebind<uint8_t, decltype(d16)> dc;
    const auto cu = hn::LoadU(dc, u + 8 * g);
    const auto cv = hn::LoadU(dc, v + 8 * g);
    hn::Vec<decltype(d16)> gU, bU, gV, rV;
    if (kAdjust) {
      ChromaTerms(d16, PromoteAdjusted(d16, cu, lookup.u), PromoteAdjusted(d16, cv, lookup.v),
                  gU, bU, gV, rV);
    } else {
      ChromaTerms(d16, hn::PromoteTo(d16, cu), hn::PromoteTo(d16, cv), gU, bU, gV, rV);
    }
    ConvertLuma<P, kAdjust>(d8, d16, hn::LoadU(d8, y0 + 16 * g), gU, bU, gV, rV, format,
                            lookup, d0 + kBpp * 16 * g);
    ConvertLuma<P, kAdjust>(d8, d16, hn::LoadU(d8, y1 + 16 * g), gU, bU, gV, rV, format,
                            lookup, d1 + kBpp * 16 * g);
  });
}

void PlanarPairToRgb(const uint8_t* y0, const uint8_t* y1, const uint8_t* u,
                     const uint8_t* v, uint8_t* d0, uint8_t* d1, size_t groups,
                     const RgbFormat& format, const Adjustment* adjust) {
  const Adjustment none{};
  const Adjustment& a = adjust ? *adjust : none;
  switch (format.packing) {
    case RgbPacking::kRgb32:
      return adjust ? PairToRgb<RgbPacking::kRgb32, true>(y0, y1, u, v, d0, d1, groups, format, a)
                    : PairToRgb<RgbPacking::kRgb32, false>(y0, y1, u, v, d0, d1, groups, format, a);
    case RgbPacking::kRgb24:
      return adjust ? PairToRgb<RgbPacking::kRgb24, true>(y0, y1, u, v, d0, d1, groups, format, a)
                    : PairToRgb<RgbPacking::kRgb24, false>(y0, y1, u, v, d0, d1, groups, format, a);
    case RgbPacking::kRgb16:
      return adjust ? PairToRgb<RgbPacking::kRgb16, true>(y0, y1, u, v, d0, d1, groups, format, a)
                    : PairToRgb<RgbPacking::kRgb16, false>(y0, y1, u, v, d0, d1, groups, format, a);
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace yuvblit {

HWY_EXPORT(PlanarPairToRgb);

void planar_pair_to_rgb(const uint8_t* y0, const uint8_t* y1, const uint8_t* u,
                        const uint8_t* v, uint8_t* d0, uint8_t* d1, size_t groups,
                        const RgbFormat& format, const Adjustment* adjust) {
  HWY_DYNAMIC_DISPATCH(PlanarPairToRgb)(y0, y1, u, v, d0, d1, groups, format, adjust);
}

}  // namespace yuvblit
#endif  // HWY_ONCE
