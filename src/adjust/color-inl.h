// Vector form of the YUV to RGB conversion and the RGB packings
// (per-target Highway code).
//
// Work is arranged in 16-bit lanes, one lane per chroma pair: the even and
// the odd pixel of each pair are converted separately with the pair's chroma
// terms and put back in pixel order when packing.
#if defined(YUVBLIT_COLOR_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef YUVBLIT_COLOR_INL_H_
#undef YUVBLIT_COLOR_INL_H_
#else
#define YUVBLIT_COLOR_INL_H_
#endif

#include "adjust/adjust-inl.h"
#include "adjust/color.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// The chroma terms of pixel pairs (u, v: samples 0..255 in int16 lanes):
// G loses gU and gV, B gains bU, R gains rV. Terms and colours travel as
// separate vectors because scalable vectors cannot be struct members.
template <class D16, class V = hn::Vec<D16>>
HWY_INLINE void ChromaTerms(D16 d16, V u, V v, V& gU, V& bU, V& gV, V& rV) {
  using namespace yuv_constants;
  u = hn::Sub(u, hn::Set(d16, kChromaZero));
  v = hn::Sub(v, hn::Set(d16, kChromaZero));
  gU = hn::MulHigh(u, hn::Set(d16, kGFromU));
  bU = hn::MulHigh(hn::ShiftLeft<3>(u), hn::Set(d16, kBFromU));
  gV = hn::MulHigh(hn::ShiftLeft<1>(v), hn::Set(d16, kGFromV));
  rV = hn::MulHigh(hn::ShiftLeft<2>(v), hn::Set(d16, kRFromV));
}

// R, G, B of luma y (0..255 in int16 lanes) with its pair's chroma terms,
// clamped to 0..255.
template <class D16, class V = hn::Vec<D16>>
HWY_INLINE void YuvToRgb(D16 d16, V y, V gU, V bU, V gV, V rV, V& r, V& g, V& b) {
  using namespace yuv_constants;
  y = hn::MulHigh(hn::ShiftLeft<2>(hn::Sub(y, hn::Set(d16, kLumaBlack))),
                  hn::Set(d16, kYScale));
  r = ClampToByte(d16, hn::SaturatedAdd(y, rV));
  g = ClampToByte(d16, hn::SaturatedSub(hn::SaturatedSub(y, gU), gV));
  b = ClampToByte(d16, hn::SaturatedAdd(y, bU));
}

template <class D16, class V = hn::Vec<D16>>
HWY_INLINE V PackRgb16Word(D16 d16, V r, V g, V b, const Rgb16Layout& l) {
  r = hn::ShiftLeft<8>(hn::And(r, hn::Set(d16, l.maskR)));
  g = hn::ShiftLeftSame(hn::And(g, hn::Set(d16, l.maskG)), l.shiftG);
  b = hn::ShiftRightSame(hn::And(b, hn::Set(d16, l.maskB)), l.shiftB);
  return hn::Or(hn::Or(r, g), b);
}

// Stores the colours of the even and the odd pixels of pairs (0..255 in
// int16 lanes) in pixel order in the packing P: RGB32 B, G, R, 0 per pixel;
// RGB24 B, G, R back to back; RGB16 one little-endian word per pixel in the
// given layout.
template <RgbPacking P, class D16, class V = hn::Vec<D16>>
HWY_INLINE void StoreRgbPixels(D16 d16, V evenR, V evenG, V evenB, V oddR, V oddG, V oddB,
                               const Rgb16Layout& layout, uint8_t* dst) {
  const hn::Repartition<uint8_t, D16> d8;
  if constexpr (P == RgbPacking::kRgb32) {
    hn::StoreInterleaved4(JoinEvenOdd(d16, evenB, oddB), JoinEvenOdd(d16, evenG, oddG),
                          JoinEvenOdd(d16, evenR, oddR), hn::Zero(d8), d8, dst);
  } else if constexpr (P == RgbPacking::kRgb24) {
    hn::StoreInterleaved3(JoinEvenOdd(d16, evenB, oddB), JoinEvenOdd(d16, evenG, oddG),
                          JoinEvenOdd(d16, evenR, oddR), d8, dst);
  } else {
    const hn::RebindToUnsigned<D16> du;
    StoreInterleavedWords(du, hn::BitCast(du, PackRgb16Word(d16, evenR, evenG, evenB, layout)),
                          hn::BitCast(du, PackRgb16Word(d16, oddR, oddG, oddB, layout)), dst);
  }
}

// Converts the even and the odd pixels of pairs sharing the chroma terms
// and stores them in pixel order in the packing P (see StoreRgbPixels).
template <RgbPacking P, class D16, class V = hn::Vec<D16>>
HWY_INLINE void StoreRgb(D16 d16, V evenY, V oddY, V gU, V bU, V gV, V rV,
                         const Rgb16Layout& layout, uint8_t* dst) {
  V evenR, evenG, evenB, oddR, oddG, oddB;
  YuvToRgb(d16, evenY, gU, bU, gV, rV, evenR, evenG, evenB);
  YuvToRgb(d16, oddY, gU, bU, gV, rV, oddR, oddG, oddB);
  StoreRgbPixels<P>(d16, evenR, evenG, evenB, oddR, oddG, oddB, layout, dst);
}

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#endif  // YUVBLIT_COLOR_INL_H_
