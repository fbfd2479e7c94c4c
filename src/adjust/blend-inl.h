// Vector form of the subpicture blend (per-target Highway code).
#if defined(YUVBLIT_BLEND_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef YUVBLIT_BLEND_INL_H_
#undef YUVBLIT_BLEND_INL_H_
#else
#define YUVBLIT_BLEND_INL_H_
#endif

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

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#endif  // YUVBLIT_BLEND_INL_H_
