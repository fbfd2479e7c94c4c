// Vector form of the subpicture blend (per-target Highway code).
#if defined(YUVBLIT_BLEND_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef YUVBLIT_BLEND_INL_H_
#undef YUVBLIT_BLEND_INL_H_
#else
#define YUVBLIT_BLEND_INL_H_
#endif

#include "adjust/adjust-inl.h"
#include "adjust/blend.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// Alpha bytes (0..255 in int16 lanes) to weights 0..16.
template <class D16>
HWY_INLINE hn::Vec<D16> BlendWeight(D16 d16, hn::Vec<D16> alpha) {
  return hn::Min(alpha, hn::Set(d16, kOpaqueWeight));
}

// (p * (16 - w) + s * w) >> 4 for samples 0..255 and weights 0..16 in int16
// lanes, as p + ((s - p) * w >> 4): 16p is a multiple of 16, so the
// arithmetic shift floors the same sum and one multiply does.
template <class D16>
HWY_INLINE hn::Vec<D16> Blend(D16 /*d16*/, hn::Vec<D16> picture, hn::Vec<D16> sub,
                              hn::Vec<D16> weight) {
  return hn::Add(picture, hn::ShiftRight<4>(hn::Mul(hn::Sub(sub, picture), weight)));
}

// blend_unclamped() per lane: alpha as it stands, wrapping products,
// saturating sum, logical shift, clamped to 0..255.
template <class D16>
HWY_INLINE hn::Vec<D16> BlendUnclamped(D16 d16, hn::Vec<D16> picture, hn::Vec<D16> sub,
                                       hn::Vec<D16> alpha) {
  const hn::RebindToUnsigned<D16> du16;
  const auto inverse = hn::SaturatedSub(hn::Set(d16, kOpaqueWeight), alpha);
  const auto sum = hn::SaturatedAdd(hn::Mul(picture, inverse), hn::Mul(sub, alpha));
  const auto shifted = hn::BitCast(d16, hn::ShiftRight<4>(hn::BitCast(du16, sum)));
  return hn::Min(shifted, hn::Set(d16, 255));
}

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

// Blend() of byte vectors, each byte by its own alpha byte (clamped to 16),
// in 16-bit lanes split by byte position.
template <class D8>
HWY_INLINE hn::Vec<D8> BlendBytes(D8 d8, hn::Vec<D8> picture, hn::Vec<D8> sub,
                                  hn::Vec<D8> alpha) {
  const hn::Repartition<int16_t, D8> d16;
  hn::Vec<decltype(d16)> evenA, oddA, evenP, oddP, evenS, oddS;
  SplitEvenOdd(d8, alpha, evenA, oddA);
  SplitEvenOdd(d8, picture, evenP, oddP);
  SplitEvenOdd(d8, sub, evenS, oddS);
  return JoinEvenOdd(d16, Blend(d16, evenP, evenS, BlendWeight(d16, evenA)),
                     Blend(d16, oddP, oddS, BlendWeight(d16, oddA)));
}

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#endif  // YUVBLIT_BLEND_INL_H_
