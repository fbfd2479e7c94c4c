// Vector row operations of the mixers: blend in YUV, adjust the mixed
// samples, then pack YUY2 or convert to RGB.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "subpicture/mix_rows.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep

#include "hwy/highway.h"
#include "adjust/adjust-inl.h"
#include "adjust/blend-inl.h"
#include "adjust/color-inl.h"
#include "adjust/yuy2-inl.h"
#include "frame/groups-inl.h"
#include "subpicture/mix_rows.h"

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// Picture bytes at `offset` of a row, or the rounded average of two rows.
template <bool kInterpolate, class D>
HWY_INLINE hn::Vec<D> LoadPicture(D d, const uint8_t* const rows[2], size_t offset) {
  const auto first = hn::LoadU(d, rows[0] + offset);
  return kInterpolate ? hn::AverageRound(first, hn::LoadU(d, rows[1] + offset)) : first;
}

// The mixed and adjusted samples of the groups of one vector: luma of even
// and odd pixels, and U and V per pixel pair, all in int16 lanes.
template <class D16>
struct MixedYuv {
  hn::Vec<D16> evenY, oddY, u, v;
};

template <bool kInterpolate, class D8>
HWY_INLINE MixedYuv<hn::Repartition<int16_t, D8>> MixGroups(D8 d8, const MixRow& row,
                                                            size_t g, const Adjustment& a) {
  const hn::Repartition<int16_t, D8> d16;
  const hn::Rebind<uint8_t, decltype(d16)> dc;  // one chroma byte per 16-bit lane
  hn::Vec<decltype(d16)> evenA, oddA, evenP, oddP, evenS, oddS;
  SplitEvenOdd(d8, hn::LoadU(d8, row.alpha + 16 * g), evenA, oddA);
  SplitEvenOdd(d8, LoadPicture<kInterpolate>(d8, row.pictureY, 16 * g), evenP, oddP);
  SplitEvenOdd(d8, hn::LoadU(d8, row.subY + 16 * g), evenS, oddS);
  evenA = BlendWeight(d16, evenA);
  oddA = BlendWeight(d16, oddA);  // the right-hand pixel's alpha weighs the pair's chroma

  auto chroma = [&](const uint8_t* const picture[2], const uint8_t* sub) {
    return Blend(d16, hn::PromoteTo(d16, LoadPicture<kInterpolate>(dc, picture, 8 * g)),
                 hn::PromoteTo(d16, hn::LoadU(dc, sub + 8 * g)), oddA);
  };
  return MixedYuv<hn::Repartition<int16_t, D8>>{AdjustWide(d16, Blend(d16, evenP, evenS, evenA), a.luma),
                                 AdjustWide(d16, Blend(d16, oddP, oddS, oddA), a.luma),
                                 AdjustWide(d16, chroma(row.pictureU, row.subU), a.u),
                                 AdjustWide(d16, chroma(row.pictureV, row.subV), a.v)};
}

template <bool kInterpolate>
void MixRowToYuy2T(const MixRow& row, size_t groups, const Adjustment& a) {
  ForGroups<16>(groups, [&](auto d8, size_t g) {
    const hn::Repartition<int16_t, decltype(d8)> d16;
    const auto m = MixGroups<kInterpolate>(d8, row, g, a);
    StoreYuy2(d16, m.evenY, m.u, m.oddY, m.v, row.dst + 32 * g);
  });
}

void MixRowToYuy2(const MixRow& row, size_t groups, const Adjustment a) {
  if (row.interpolates()) return MixRowToYuy2T<true>(row, groups, a);
  MixRowToYuy2T<false>(row, groups, a);
}

template <RgbPacking P, bool kInterpolate>
void MixRowToRgbT(const MixRow& row, size_t groups, const RgbFormat& format,
                  const Adjustment& a) {
  constexpr size_t kBpp = P == RgbPacking::kRgb32 ? 4 : P == RgbPacking::kRgb24 ? 3 : 2;
  ForGroups<16>(groups, [&](auto d8, size_t g) {
    const hn::Repartition<int16_t, decltype(d8)> d16;
    const auto m = MixGroups<kInterpolate>(d8, row, g, a);
    const auto terms = ChromaTerms(d16, m.u, m.v);
    StoreRgb<P>(d16, YuvToRgb(d16, m.evenY, terms), YuvToRgb(d16, m.oddY, terms),
                format.layout, row.dst + kBpp * 16 * g);
  });
}

template <RgbPacking P>
void MixRowToRgbP(const MixRow& row, size_t groups, const RgbFormat& format,
                  const Adjustment& a) {
  if (row.interpolates()) return MixRowToRgbT<P, true>(row, groups, format, a);
  MixRowToRgbT<P, false>(row, groups, format, a);
}

void MixRowToRgb(const MixRow& row, size_t groups, const RgbFormat& format,
                 const Adjustment a) {
  switch (format.packing) {
    case RgbPacking::kRgb32: return MixRowToRgbP<RgbPacking::kRgb32>(row, groups, format, a);
    case RgbPacking::kRgb24: return MixRowToRgbP<RgbPacking::kRgb24>(row, groups, format, a);
    case RgbPacking::kRgb16: return MixRowToRgbP<RgbPacking::kRgb16>(row, groups, format, a);
  }
}

// Half width, 16 source pixels to 8 output pixels per group. In 16-bit
// lanes the odd source pixels' mixed luma comes out in output pixel order;
// seen as 32-bit lanes each holds the two pixels of an output pair, and the
// pair's U and V (chroma samples 2k+1, weighted by the alpha of pixel 4k+3
// as it stands) go into the other two bytes.
void MixRowToHalfYuy2(const MixRow& row, size_t groups, const Adjustment a) {
  ForGroups<16>(groups, [&](auto d8, size_t g) {
    const hn::Repartition<int16_t, decltype(d8)> d16;
    const hn::Repartition<uint32_t, decltype(d8)> d32;
    const hn::Rebind<uint8_t, decltype(d16)> dc;
    const auto alpha = hn::LoadU(d8, row.alpha + 16 * g);
    auto odd = [&](const uint8_t* p) {
      return hn::BitCast(d16, hn::ShiftRight<8>(hn::BitCast(hn::RebindToUnsigned<decltype(d16)>(),
                                                            hn::LoadU(d8, p + 16 * g))));
    };
    const auto luma = AdjustWide(
        d16,
        Blend(d16, odd(row.pictureY[0]), odd(row.subY), BlendWeight(d16, odd(row.alpha))),
        a.luma);

    // Odd chroma samples in the low 16 bits of 32-bit lanes: U there, V above.
    auto oddSamples = [&](const uint8_t* p) {
      return hn::ShiftRight<16>(hn::BitCast(d32, hn::PromoteTo(d16, hn::LoadU(dc, p + 8 * g))));
    };
    auto pairOf = [&](const uint8_t* u, const uint8_t* v) {
      return hn::BitCast(d16, hn::Or(oddSamples(u), hn::ShiftLeft<16>(oddSamples(v))));
    };
    const auto chromaAlpha = hn::ShiftRight<24>(hn::BitCast(d32, alpha));
    const auto weight = hn::BitCast(d16, hn::Or(chromaAlpha, hn::ShiftLeft<16>(chromaAlpha)));
    const auto mixed = BlendUnclamped(d16, pairOf(row.pictureU[0], row.pictureV[0]),
                                      pairOf(row.subU, row.subV), weight);
    const auto offsets = hn::BitCast(
        d16, hn::Set(d32, static_cast<uint16_t>(a.u.offset) |
                              static_cast<uint32_t>(static_cast<uint16_t>(a.v.offset)) << 16));
    const auto chroma = AdjustWide(d16, mixed, hn::Set(d16, a.u.gain), offsets);
    const auto out = hn::Or(hn::BitCast(d32, luma), hn::ShiftLeft<8>(hn::BitCast(d32, chroma)));
    hn::StoreU(hn::BitCast(d8, out), d8, row.dst + 16 * g);
  });
}

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace yuvblit {

HWY_EXPORT(MixRowToYuy2);
HWY_EXPORT(MixRowToHalfYuy2);
HWY_EXPORT(MixRowToRgb);

void mix_row_to_yuy2(const MixRow& row, size_t groups, const Adjustment& a) {
  HWY_DYNAMIC_DISPATCH(MixRowToYuy2)(row, groups, a);
}
void mix_row_to_half_yuy2(const MixRow& row, size_t groups, const Adjustment& a) {
  HWY_DYNAMIC_DISPATCH(MixRowToHalfYuy2)(row, groups, a);
}
void mix_row_to_rgb(const MixRow& row, size_t groups, const RgbFormat& format,
                    const Adjustment& a) {
  HWY_DYNAMIC_DISPATCH(MixRowToRgb)(row, groups, format, a);
}

}  // namespace yuvblit
#endif  // HWY_ONCE
