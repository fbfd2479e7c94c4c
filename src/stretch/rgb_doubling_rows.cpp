// Vector row operation of the vertical doubling onto RGB surfaces.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "stretch/rgb_doubling_rows.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep

#include "hwy/highway.h"
#include "adjust/adjust-inl.h"
#include "adjust/color-inl.h"
#include "frame/groups-inl.h"
#include "stretch/rgb_doubling_rows.h"

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// Rounded average of adjusted samples held in int16 lanes (0..255).
template <class D16>
HWY_INLINE hn::Vec<D16> AverageWide(D16 d16, hn::Vec<D16> a, hn::Vec<D16> b) {
  const hn::RebindToUnsigned<D16> du16;
  return hn::BitCast(d16, RoundedAverage(hn::BitCast(du16, a), hn::BitCast(du16, b)));
}

// Adjusted 8-sample chroma groups of one plane, widened to int16 lanes.
template <class D16>
HWY_INLINE hn::Vec<D16> LoadAdjustedChroma(D16 d16, const uint8_t* p, const SampleLookup& s) {
  const hn::Rebind<uint8_t, D16> dc;
  return PromoteAdjusted(d16, hn::LoadU(dc, p), s);
}

// Each group-vector loads its three luma rows and two chroma rows once,
// adjusts them in registers and writes its part of all four lines; the
// lines' even and odd pixels stay apart until the store.
template <RgbPacking P>
void PairToFourLines(const DoublingRows& r, size_t groups, const RgbFormat& format,
                     const Adjustment& adjust) {
  constexpr size_t kGroupBytes = P == RgbPacking::kRgb32 ? 64 : P == RgbPacking::kRgb24 ? 48 : 32;
  const AdjustmentLookup lookup(adjust);
  const Rgb16Layout layout = format.layout;
  ForGroups<16>(groups, [&](auto d8, size_t g) {
    const hn::Repartition<int16_t, decltype(d8)> d16;
    const size_t at = kGroupBytes * g;
    const auto u0 = LoadAdjustedChroma(d16, r.u0 + 8 * g, lookup.u);
    const auto v0 = LoadAdjustedChroma(d16, r.v0 + 8 * g, lookup.v);
    hn::Vec<decltype(d16)> gU, bU, gV, rV, even0, odd0, even1, odd1, even2, odd2;
    SplitEvenOddAdjusted(d8, hn::LoadU(d8, r.y0 + 16 * g), lookup.luma, even0, odd0);
    SplitEvenOddAdjusted(d8, hn::LoadU(d8, r.y1 + 16 * g), lookup.luma, even1, odd1);

    ChromaTerms(d16, u0, v0, gU, bU, gV, rV);
    StoreRgb<P>(d16, even0, odd0, gU, bU, gV, rV, layout, r.d0 + at);
    StoreRgb<P>(d16, AverageWide(d16, even0, even1), AverageWide(d16, odd0, odd1), gU, bU, gV,
                rV, layout, r.d1 + at);

    const auto u1 = LoadAdjustedChroma(d16, r.u1 + 8 * g, lookup.u);
    const auto v1 = LoadAdjustedChroma(d16, r.v1 + 8 * g, lookup.v);
    ChromaTerms(d16, AverageWide(d16, u0, u1), AverageWide(d16, v0, v1), gU, bU, gV, rV);
    SplitEvenOddAdjusted(d8, hn::LoadU(d8, r.y2 + 16 * g), lookup.luma, even2, odd2);
    StoreRgb<P>(d16, even1, odd1, gU, bU, gV, rV, layout, r.d2 + at);
    StoreRgb<P>(d16, AverageWide(d16, even1, even2), AverageWide(d16, odd1, odd2), gU, bU, gV,
                rV, layout, r.d3 + at);
  });
}

void DoublePairToRgb(const DoublingRows& rows, size_t groups, const RgbFormat& format,
                     const Adjustment& adjust) {
  switch (format.packing) {
    case RgbPacking::kRgb32:
      return PairToFourLines<RgbPacking::kRgb32>(rows, groups, format, adjust);
    case RgbPacking::kRgb24:
      return PairToFourLines<RgbPacking::kRgb24>(rows, groups, format, adjust);
    case RgbPacking::kRgb16:
      return PairToFourLines<RgbPacking::kRgb16>(rows, groups, format, adjust);
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace yuvblit {

HWY_EXPORT(DoublePairToRgb);

void double_pair_to_rgb(const DoublingRows& rows, size_t groups, const RgbFormat& format,
                        const Adjustment& adjust) {
  HWY_DYNAMIC_DISPATCH(DoublePairToRgb)(rows, groups, format, adjust);
}

}  // namespace yuvblit
#endif  // HWY_ONCE
