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

// The samples a vector of groups shows before adjustment: luma bytes and
// chroma bytes (one per pixel pair). Where the alpha bytes let one input
// through unchanged they are that input's, read from it alone; elsewhere
// they are blended in 16-bit lanes, each pixel's luma by its own weight and
// each pair's chroma by the right-hand pixel's alpha or the rounded mean of
// both raw alphas, limited to 16 either way.
template <bool kInterpolate, bool kPairMean = false, class D8,
          class DC = hn::Rebind<uint8_t, hn::Repartition<int16_t, D8>>>
HWY_INLINE void ShownSamples(D8 d8, const MixRow& row, size_t g, hn::Vec<D8> alpha,
                             hn::Vec<D8>& y, hn::Vec<DC>& u, hn::Vec<DC>& v) {
  const DC dc;
  switch (CoverageOf<true>(d8, alpha)) {
    case Coverage::kPicture:
      y = LoadPicture<kInterpolate>(d8, row.pictureY, 16 * g);
      u = LoadPicture<kInterpolate>(dc, row.pictureU, 8 * g);
      v = LoadPicture<kInterpolate>(dc, row.pictureV, 8 * g);
      return;
    case Coverage::kSubpicture:
      y = hn::LoadU(d8, row.subY + 16 * g);
      u = hn::LoadU(dc, row.subU + 8 * g);
      v = hn::LoadU(dc, row.subV + 8 * g);
      return;
    case Coverage::kMixed:
      break;
  }
  const hn::Repartition<int16_t, D8> d16;
  y = BlendBytes(d8, LoadPicture<kInterpolate>(d8, row.pictureY, 16 * g),
                 hn::LoadU(d8, row.subY + 16 * g), alpha);
  hn::Vec<decltype(d16)> evenA, oddA;
  SplitEvenOdd(d8, alpha, evenA, oddA);
  const auto chromaA = BlendWeight(
      d16, kPairMean ? hn::ShiftRight<1>(hn::Add(hn::Add(evenA, oddA), hn::Set(d16, 1))) : oddA);
  auto chroma = [&](const uint8_t* const picture[2], const uint8_t* sub) {
    const auto p = hn::PromoteTo(d16, LoadPicture<kInterpolate>(dc, picture, 8 * g));
    return hn::DemoteTo(dc, Blend(d16, p, hn::PromoteTo(d16, hn::LoadU(dc, sub + 8 * g)), chromaA));
  };
  u = chroma(row.pictureU, row.subU);
  v = chroma(row.pictureV, row.subV);
}

template <bool kInterpolate>
HWY_INLINE void MixRunToYuy2(const MixRow& rowInMemory, size_t groups,
                             const AdjustmentLookup& lookup) {
  // Local copies stay in registers: stores to the row could alias the
  // caller's objects as far as the compiler knows.
  const MixRow row = rowInMemory;
  ForGroups<16>(groups, [&](auto d8, size_t g) {
    const hn::Rebind<uint8_t, hn::Repartition<int16_t, decltype(d8)>> dc;
    hn::Vec<decltype(d8)> y;
    hn::Vec<decltype(dc)> u, v;
    ShownSamples<kInterpolate>(d8, row, g, hn::LoadU(d8, row.alpha + 16 * g), y, u, v);
    StoreAdjustedYuy2(d8, y, u, v, lookup, row.dst + 32 * g);
  });
}

// Flattened, with the lookup made here once for all the runs, so its
// tables stay in registers.
HWY_FLATTEN void MixRowsToYuy2(const MixRun* runs, size_t count, const Adjustment a) {
  const AdjustmentLookup lookup(a);
  for (size_t i = 0; i < count; ++i) {
    if (runs[i].row.interpolates()) {
      MixRunToYuy2<true>(runs[i].row, runs[i].groups, lookup);
    } else {
      MixRunToYuy2<false>(runs[i].row, runs[i].groups, lookup);
    }
  }
}

template <RgbPacking P, bool kInterpolate, bool kPairMean>
HWY_INLINE void MixRunToRgb(const MixRow& rowInMemory, size_t groups, const RgbFormat& format,
                            const AdjustmentLookup& lookup) {
  constexpr size_t kBpp = P == RgbPacking::kRgb32 ? 4 : P == RgbPacking::kRgb24 ? 3 : 2;
  const MixRow row = rowInMemory;
  ForGroups<16>(groups, [&](auto d8, size_t g) {
    const hn::Repartition<int16_t, decltype(d8)> d16;
    const hn::Rebind<uint8_t, decltype(d16)> dc;
    hn::Vec<decltype(d8)> y;
    hn::Vec<decltype(dc)> cu, cv;
    ShownSamples<kInterpolate, kPairMean>(d8, row, g, hn::LoadU(d8, row.alpha + 16 * g), y, cu,
                                          cv);
    hn::Vec<decltype(d16)> evenY, oddY;
    SplitEvenOddAdjusted(d8, y, lookup.luma, evenY, oddY);
    const auto u = PromoteAdjusted(d16, cu, lookup.u);
    const auto v = PromoteAdjusted(d16, cv, lookup.v);
    hn::Vec<decltype(d16)> gU, bU, gV, rV;
    ChromaTerms(d16, u, v, gU, bU, gV, rV);
    StoreRgb<P>(d16, evenY, oddY, gU, bU, gV, rV, format.layout, row.dst + kBpp * 16 * g);
  });
}

// Flattened per packing and chroma weight, with the lookup made once for
// all the runs.
template <RgbPacking P, bool kPairMean>
HWY_FLATTEN void MixRowsToRgbT(const MixRun* runs, size_t count, const RgbFormat& format,
                               const Adjustment& a) {
  const AdjustmentLookup lookup(a);
  for (size_t i = 0; i < count; ++i) {
    if (runs[i].row.interpolates()) {
      MixRunToRgb<P, true, kPairMean>(runs[i].row, runs[i].groups, format, lookup);
    } else {
      MixRunToRgb<P, false, kPairMean>(runs[i].row, runs[i].groups, format, lookup);
    }
  }
}

template <bool kPairMean>
void MixRowsToRgbW(const MixRun* runs, size_t count, const RgbFormat& format,
                   const Adjustment& a) {
  switch (format.packing) {
    case RgbPacking::kRgb32:
      return MixRowsToRgbT<RgbPacking::kRgb32, kPairMean>(runs, count, format, a);
    case RgbPacking::kRgb24:
      return MixRowsToRgbT<RgbPacking::kRgb24, kPairMean>(runs, count, format, a);
    case RgbPacking::kRgb16:
      return MixRowsToRgbT<RgbPacking::kRgb16, kPairMean>(runs, count, format, a);
  }
}

void MixRowsToRgb(const MixRun* runs, size_t count, const RgbFormat& format,
                  const Adjustment a, ChromaWeight chroma) {
  if (chroma == ChromaWeight::kPairMean) return MixRowsToRgbW<true>(runs, count, format, a);
  MixRowsToRgbW<false>(runs, count, format, a);
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

HWY_EXPORT(MixRowsToYuy2);
HWY_EXPORT(MixRowToHalfYuy2);
HWY_EXPORT(MixRowsToRgb);

void mix_rows_to_yuy2(const MixRun* runs, size_t count, const Adjustment& a) {
  HWY_DYNAMIC_DISPATCH(MixRowsToYuy2)(runs, count, a);
}
void mix_row_to_half_yuy2(const MixRow& row, size_t groups, const Adjustment& a) {
  HWY_DYNAMIC_DISPATCH(MixRowToHalfYuy2)(row, groups, a);
}
void mix_rows_to_rgb(const MixRun* runs, size_t count, const RgbFormat& format,
                     const Adjustment& a, ChromaWeight chroma) {
  HWY_DYNAMIC_DISPATCH(MixRowsToRgb)(runs, count, format, a, chroma);
}

}  // namespace yuvblit
#endif  // HWY_ONCE
