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
  return kInterpolate ? RoundedAverage(first, hn::LoadU(d, rows[1] + offset)) : first;
}

// What a vector's alpha bytes let through: the picture alone (all 0), the
// subpicture alone (all at least 16, or exactly 16 where the weight is not
// clamped), or a mix. Menus are mostly transparent and their buttons mostly
// opaque, so most vectors skip the blend and half the reads.
enum class Coverage { kPicture, kSubpicture, kMixed };

template <bool kClamped, class D8>
HWY_INLINE Coverage CoverageOf(D8 d8, hn::Vec<D8> alpha) {
  const auto opaque = hn::Set(d8, uint8_t{kOpaqueWeight});
  if (hn::AllTrue(d8, hn::Eq(alpha, hn::Zero(d8)))) return Coverage::kPicture;
  if (hn::AllTrue(d8, hn::Eq(kClamped ? hn::Min(alpha, opaque) : alpha, opaque)))
    return Coverage::kSubpicture;
  return Coverage::kMixed;
}

// With an alpha vector that lets one input through unchanged, calls
// show(y, u, v) with that input's luma bytes and chroma bytes (one per
// 16-bit lane of the luma) and returns true; otherwise returns false.
template <bool kInterpolate, class D8, class Show>
HWY_INLINE bool ShowUnmixed(D8 d8, const MixRow& row, size_t g, hn::Vec<D8> alpha,
                            Show&& show) {
  const hn::Rebind<uint8_t, hn::Repartition<int16_t, D8>> dc;
  switch (CoverageOf<true>(d8, alpha)) {
    case Coverage::kPicture:
      show(LoadPicture<kInterpolate>(d8, row.pictureY, 16 * g),
           LoadPicture<kInterpolate>(dc, row.pictureU, 8 * g),
           LoadPicture<kInterpolate>(dc, row.pictureV, 8 * g));
      return true;
    case Coverage::kSubpicture:
      show(hn::LoadU(d8, row.subY + 16 * g), hn::LoadU(dc, row.subU + 8 * g),
           hn::LoadU(dc, row.subV + 8 * g));
      return true;
    case Coverage::kMixed:
      break;
  }
  return false;
}

// The mixed and adjusted samples of the groups of one vector in int16
// lanes: luma of even and odd pixels, and U and V per pixel pair.
template <bool kInterpolate, bool kPairMean = false, class D8,
          class D16 = hn::Repartition<int16_t, D8>>
HWY_INLINE void MixSamples(D8 d8, const MixRow& row, size_t g, hn::Vec<D8> alpha,
                           const Adjustment& a, hn::Vec<D16>& evenY, hn::Vec<D16>& oddY,
                           hn::Vec<D16>& u, hn::Vec<D16>& v) {
  const D16 d16;
  const hn::Rebind<uint8_t, D16> dc;  // one chroma byte per 16-bit lane
  hn::Vec<D16> evenA, oddA, evenP, oddP, evenS, oddS;
  SplitEvenOdd(d8, alpha, evenA, oddA);
  SplitEvenOdd(d8, LoadPicture<kInterpolate>(d8, row.pictureY, 16 * g), evenP, oddP);
  SplitEvenOdd(d8, hn::LoadU(d8, row.subY + 16 * g), evenS, oddS);
  // The pair's chroma weight: the right-hand pixel's alpha, or the rounded
  // mean of both raw alphas; limited to 16 either way.
  const auto chromaA = BlendWeight(
      d16, kPairMean ? hn::ShiftRight<1>(hn::Add(hn::Add(evenA, oddA), hn::Set(d16, 1))) : oddA);
  evenA = BlendWeight(d16, evenA);
  oddA = BlendWeight(d16, oddA);
  evenY = AdjustWide(d16, Blend(d16, evenP, evenS, evenA), a.luma);
  oddY = AdjustWide(d16, Blend(d16, oddP, oddS, oddA), a.luma);
  auto chroma = [&](const uint8_t* const picture[2], const uint8_t* sub) {
    return Blend(d16, hn::PromoteTo(d16, LoadPicture<kInterpolate>(dc, picture, 8 * g)),
                 hn::PromoteTo(d16, hn::LoadU(dc, sub + 8 * g)), chromaA);
  };
  u = AdjustWide(d16, chroma(row.pictureU, row.subU), a.u);
  v = AdjustWide(d16, chroma(row.pictureV, row.subV), a.v);
}

template <bool kInterpolate>
void MixRowToYuy2T(const MixRow& rowInMemory, size_t groups, const Adjustment& a) {
  // Local copies stay in registers: stores to the row could alias the
  // caller's objects as far as the compiler knows.
  const MixRow row = rowInMemory;
  const AdjustmentLookup lookup(a);
  ForGroups<16>(groups, [&](auto d8, size_t g) {
    const hn::Repartition<int16_t, decltype(d8)> d16;
    const auto alpha = hn::LoadU(d8, row.alpha + 16 * g);
    uint8_t* dst = row.dst + 32 * g;
    if (ShowUnmixed<kInterpolate>(d8, row, g, alpha, [&](auto y, auto u, auto v) {
          StoreAdjustedYuy2(d8, y, u, v, lookup, dst);
        })) {
      return;
    }
    hn::Vec<decltype(d16)> evenY, oddY, u, v;
    MixSamples<kInterpolate>(d8, row, g, alpha, a, evenY, oddY, u, v);
    StoreYuy2(d16, evenY, u, oddY, v, dst);
  });
}

void MixRowToYuy2(const MixRow& row, size_t groups, const Adjustment a) {
  if (row.interpolates()) return MixRowToYuy2T<true>(row, groups, a);
  MixRowToYuy2T<false>(row, groups, a);
}

template <RgbPacking P, bool kInterpolate, bool kPairMean>
void MixRowToRgbT(const MixRow& row, size_t groups, const RgbFormat& format,
                  const Adjustment& a) {
  constexpr size_t kBpp = P == RgbPacking::kRgb32 ? 4 : P == RgbPacking::kRgb24 ? 3 : 2;
  const AdjustmentLookup lookup(a);
  ForGroups<16>(groups, [&](auto d8, size_t g) {
    const hn::Repartition<int16_t, decltype(d8)> d16;
    const auto alpha = hn::LoadU(d8, row.alpha + 16 * g);
    hn::Vec<decltype(d16)> evenY, oddY, u, v;
    if (!ShowUnmixed<kInterpolate>(d8, row, g, alpha, [&](auto y, auto cu, auto cv) {
          SplitEvenOddAdjusted(d8, y, lookup.luma, evenY, oddY);
          u = PromoteAdjusted(d16, cu, lookup.u);
          v = PromoteAdjusted(d16, cv, lookup.v);
        })) {
      MixSamples<kInterpolate, kPairMean>(d8, row, g, alpha, a, evenY, oddY, u, v);
    }
    hn::Vec<decltype(d16)> gU, bU, gV, rV;
    ChromaTerms(d16, u, v, gU, bU, gV, rV);
    StoreRgb<P>(d16, evenY, oddY, gU, bU, gV, rV, format.layout, row.dst + kBpp * 16 * g);
  });
}

template <RgbPacking P, bool kPairMean>
void MixRowToRgbP(const MixRow& row, size_t groups, const RgbFormat& format,
                  const Adjustment& a) {
  if (row.interpolates()) return MixRowToRgbT<P, true, kPairMean>(row, groups, format, a);
  MixRowToRgbT<P, false, kPairMean>(row, groups, format, a);
}

template <bool kPairMean>
void MixRowToRgbW(const MixRow& row, size_t groups, const RgbFormat& format,
                  const Adjustment& a) {
  switch (format.packing) {
    case RgbPacking::kRgb32:
      return MixRowToRgbP<RgbPacking::kRgb32, kPairMean>(row, groups, format, a);
    case RgbPacking::kRgb24:
      return MixRowToRgbP<RgbPacking::kRgb24, kPairMean>(row, groups, format, a);
    case RgbPacking::kRgb16:
      return MixRowToRgbP<RgbPacking::kRgb16, kPairMean>(row, groups, format, a);
  }
}

void MixRowToRgb(const MixRow& row, size_t groups, const RgbFormat& format,
                 const Adjustment a, ChromaWeight chroma) {
  if (chroma == ChromaWeight::kPairMean) return MixRowToRgbW<true>(row, groups, format, a);
  MixRowToRgbW<false>(row, groups, format, a);
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
    // Odd chroma samples in the low 16 bits of 32-bit lanes: U there, V above.
    auto oddSamples = [&](const uint8_t* p) {
      return hn::ShiftRight<16>(hn::BitCast(d32, hn::PromoteTo(d16, hn::LoadU(dc, p + 8 * g))));
    };
    auto pairOf = [&](const uint8_t* u, const uint8_t* v) {
      return hn::BitCast(d16, hn::Or(oddSamples(u), hn::ShiftLeft<16>(oddSamples(v))));
    };
    hn::Vec<decltype(d16)> luma, mixed;
    switch (CoverageOf<false>(d8, alpha)) {
      case Coverage::kPicture:
        luma = odd(row.pictureY[0]);
        mixed = pairOf(row.pictureU[0], row.pictureV[0]);
        break;
      case Coverage::kSubpicture:
        luma = odd(row.subY);
        mixed = pairOf(row.subU, row.subV);
        break;
      case Coverage::kMixed: {
        luma = Blend(d16, odd(row.pictureY[0]), odd(row.subY), BlendWeight(d16, odd(row.alpha)));
        const auto chromaAlpha = hn::ShiftRight<24>(hn::BitCast(d32, alpha));
        const auto weight = hn::BitCast(d16, hn::Or(chromaAlpha, hn::ShiftLeft<16>(chromaAlpha)));
        mixed = BlendUnclamped(d16, pairOf(row.pictureU[0], row.pictureV[0]),
                               pairOf(row.subU, row.subV), weight);
        break;
      }
    }
    luma = AdjustWide(d16, luma, a.luma);
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
                    const Adjustment& a, ChromaWeight chroma) {
  HWY_DYNAMIC_DISPATCH(MixRowToRgb)(row, groups, format, a, chroma);
}

}  // namespace yuvblit
#endif  // HWY_ONCE
