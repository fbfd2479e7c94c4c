// Vector row operation of the subpicture-to-RGB kernels: convert, then pick
// per pixel between the colour, the key and black.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "subpicture/sub_to_rgb_rows.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep

#include "hwy/highway.h"
#include "adjust/adjust-inl.h"
#include "adjust/color-inl.h"
#include "frame/groups-inl.h"
#include "subpicture/sub_to_rgb_rows.h"

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// One colour channel of pixels whose alpha (0..255 in int16 lanes) gave the
// masks: the key where alpha is 0, zero where it is 128 or more.
template <class V, class M>
HWY_INLINE V PickChannel(M isKey, M isBlack, V colour, V key) {
  return hn::IfThenElse(isKey, key, hn::IfThenZeroElse(isBlack, colour));
}

template <RgbPacking P, bool kAdjust>
void RowToRgbT(const SubpictureRow& row, size_t groups, const RgbFormat& format, Rgb key,
               const Adjustment& a) {
  constexpr size_t kBpp = P == RgbPacking::kRgb32 ? 4 : P == RgbPacking::kRgb24 ? 3 : 2;
  const AdjustmentLookup lookup(a);
  ForGroups<16>(groups, [&](auto d8, size_t g) {
    const hn::Repartition<int16_t, decltype(d8)> d16;
    const hn::Repartition<int8_t, decltype(d8)> di8;
    const hn::Rebind<uint8_t, decltype(d16)> dc;  // one chroma byte per 16-bit lane
    using V = hn::Vec<decltype(d16)>;
    const V keyR = hn::Set(d16, key.r), keyG = hn::Set(d16, key.g), keyB = hn::Set(d16, key.b);
    uint8_t* dst = row.dst + kBpp * 16 * g;
    const auto alpha = hn::LoadU(d8, row.alpha + 16 * g);
    const auto signedAlpha = hn::BitCast(di8, alpha);
    // Overlays are mostly transparent, and opaque where they are not: a
    // vector of key or black pixels needs no conversion and no colour
    // samples, one of shown pixels no choice.
    if (hn::AllTrue(d8, hn::Eq(alpha, hn::Zero(d8)))) {
      StoreRgbPixels<P>(d16, keyR, keyG, keyB, keyR, keyG, keyB, format.layout, dst);
      return;
    }
    const bool allShown = hn::AllTrue(di8, hn::Gt(signedAlpha, hn::Zero(di8)));
    if (!allShown && hn::AllTrue(di8, hn::Lt(signedAlpha, hn::Zero(di8)))) {
      const V zero = hn::Zero(d16);
      StoreRgbPixels<P>(d16, zero, zero, zero, zero, zero, zero, format.layout, dst);
      return;
    }
    const auto y = hn::LoadU(d8, row.y + 16 * g);
    const auto cu = hn::LoadU(dc, row.u + 8 * g);
    const auto cv = hn::LoadU(dc, row.v + 8 * g);
    V evenY, oddY, u, v;
    if (kAdjust) {
      SplitEvenOddAdjusted(d8, y, lookup.luma, evenY, oddY);
      u = PromoteAdjusted(d16, cu, lookup.u);
      v = PromoteAdjusted(d16, cv, lookup.v);
    } else {
      SplitEvenOdd(d8, y, evenY, oddY);
      u = hn::PromoteTo(d16, cu);
      v = hn::PromoteTo(d16, cv);
    }
    V gU, bU, gV, rV, evenR, evenG, evenB, oddR, oddG, oddB;
    ChromaTerms(d16, u, v, gU, bU, gV, rV);
    if (allShown) {
      StoreRgb<P>(d16, evenY, oddY, gU, bU, gV, rV, format.layout, dst);
      return;
    }
    YuvToRgb(d16, evenY, gU, bU, gV, rV, evenR, evenG, evenB);
    YuvToRgb(d16, oddY, gU, bU, gV, rV, oddR, oddG, oddB);

    V evenA, oddA;
    SplitEvenOdd(d8, alpha, evenA, oddA);
    const V zero = hn::Zero(d16), halfway = hn::Set(d16, 127);
    const auto evenKey = hn::Eq(evenA, zero), evenBlack = hn::Gt(evenA, halfway);
    const auto oddKey = hn::Eq(oddA, zero), oddBlack = hn::Gt(oddA, halfway);
    StoreRgbPixels<P>(d16, PickChannel(evenKey, evenBlack, evenR, keyR),
                      PickChannel(evenKey, evenBlack, evenG, keyG),
                      PickChannel(evenKey, evenBlack, evenB, keyB),
                      PickChannel(oddKey, oddBlack, oddR, keyR),
                      PickChannel(oddKey, oddBlack, oddG, keyG),
                      PickChannel(oddKey, oddBlack, oddB, keyB), format.layout, dst);
  });
}

template <RgbPacking P>
void RowToRgbP(const SubpictureRow& row, size_t groups, const RgbFormat& format, Rgb key,
               const Adjustment* adjust) {
  if (adjust) return RowToRgbT<P, true>(row, groups, format, key, *adjust);
  RowToRgbT<P, false>(row, groups, format, key, Adjustment{});
}

void SubpictureRowToRgb(const SubpictureRow& row, size_t groups, const RgbFormat& format,
                        Rgb key, const Adjustment* adjust) {
  switch (format.packing) {
    case RgbPacking::kRgb32: return RowToRgbP<RgbPacking::kRgb32>(row, groups, format, key, adjust);
    case RgbPacking::kRgb24: return RowToRgbP<RgbPacking::kRgb24>(row, groups, format, key, adjust);
    case RgbPacking::kRgb16: return RowToRgbP<RgbPacking::kRgb16>(row, groups, format, key, adjust);
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace yuvblit {

HWY_EXPORT(SubpictureRowToRgb);

void subpicture_row_to_rgb(const SubpictureRow& row, size_t groups, const RgbFormat& format,
                           Rgb key, const Adjustment* adjust) {
  HWY_DYNAMIC_DISPATCH(SubpictureRowToRgb)(row, groups, format, key, adjust);
}

}  // namespace yuvblit
#endif  // HWY_ONCE
