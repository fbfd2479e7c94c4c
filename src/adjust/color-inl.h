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

template <class D16>
struct ChromaTermsV {
  hn::Vec<D16> gU, bU, gV, rV;
};

// R, G, B of one pixel per lane, already clamped to 0..255.
template <class D16>
struct RgbV {
  hn::Vec<D16> r, g, b;
};

// u, v: samples 0..255 in int16 lanes.
template <class D16>
HWY_INLINE ChromaTermsV<D16> ChromaTerms(D16 d16, hn::Vec<D16> u, hn::Vec<D16> v) {
  using namespace yuv_constants;
  u = hn::Sub(u, hn::Set(d16, kChromaZero));
  v = hn::Sub(v, hn::Set(d16, kChromaZero));
  return ChromaTermsV<D16>{hn::MulHigh(u, hn::Set(d16, kGFromU)),
                           hn::MulHigh(hn::ShiftLeft<3>(u), hn::Set(d16, kBFromU)),
                           hn::MulHigh(hn::ShiftLeft<1>(v), hn::Set(d16, kGFromV)),
                           hn::MulHigh(hn::ShiftLeft<2>(v), hn::Set(d16, kRFromV))};
}

// y: luma 0..255 in int16 lanes.
template <class D16>
HWY_INLINE RgbV<D16> YuvToRgb(D16 d16, hn::Vec<D16> y, const ChromaTermsV<D16>& t) {
  using namespace yuv_constants;
  y = hn::MulHigh(hn::ShiftLeft<2>(hn::Sub(y, hn::Set(d16, kLumaBlack))),
                  hn::Set(d16, kYScale));
  return RgbV<D16>{ClampToByte(d16, hn::SaturatedAdd(y, t.rV)),
                   ClampToByte(d16, hn::SaturatedSub(hn::SaturatedSub(y, t.gU), t.gV)),
                   ClampToByte(d16, hn::SaturatedAdd(y, t.bU))};
}

// RGB32: B, G, R, 0 per pixel; 4 bytes per pixel.
template <class D16>
HWY_INLINE void StoreRgb32(D16 d16, const RgbV<D16>& even, const RgbV<D16>& odd,
                           uint8_t* dst) {
  const hn::Repartition<uint8_t, D16> d8;
  hn::StoreInterleaved4(JoinEvenOdd(d16, even.b, odd.b), JoinEvenOdd(d16, even.g, odd.g),
                        JoinEvenOdd(d16, even.r, odd.r), hn::Zero(d8), d8, dst);
}

// RGB24: B, G, R per pixel, back to back.
template <class D16>
HWY_INLINE void StoreRgb24(D16 d16, const RgbV<D16>& even, const RgbV<D16>& odd,
                           uint8_t* dst) {
  const hn::Repartition<uint8_t, D16> d8;
  hn::StoreInterleaved3(JoinEvenOdd(d16, even.b, odd.b), JoinEvenOdd(d16, even.g, odd.g),
                        JoinEvenOdd(d16, even.r, odd.r), d8, dst);
}

template <class D16>
HWY_INLINE hn::Vec<D16> PackRgb16Word(D16 d16, const RgbV<D16>& c, const Rgb16Layout& l) {
  const auto r = hn::ShiftLeft<8>(hn::And(c.r, hn::Set(d16, l.maskR)));
  const auto g = hn::ShiftLeftSame(hn::And(c.g, hn::Set(d16, l.maskG)), l.shiftG);
  const auto b = hn::ShiftRightSame(hn::And(c.b, hn::Set(d16, l.maskB)), l.shiftB);
  return hn::Or(hn::Or(r, g), b);
}

// RGB16: one little-endian word per pixel in the given layout.
template <class D16>
HWY_INLINE void StoreRgb16(D16 d16, const RgbV<D16>& even, const RgbV<D16>& odd,
                           const Rgb16Layout& layout, uint8_t* dst) {
  const hn::RebindToUnsigned<D16> du;
  hn::StoreInterleaved2(hn::BitCast(du, PackRgb16Word(d16, even, layout)),
                        hn::BitCast(du, PackRgb16Word(d16, odd, layout)), du,
                        reinterpret_cast<uint16_t*>(dst));
}

// Stores a run of converted pixels in the packing P.
template <RgbPacking P, class D16>
HWY_INLINE void StoreRgb(D16 d16, const RgbV<D16>& even, const RgbV<D16>& odd,
                         const Rgb16Layout& layout, uint8_t* dst) {
  if constexpr (P == RgbPacking::kRgb32) {
    StoreRgb32(d16, even, odd, dst);
  } else if constexpr (P == RgbPacking::kRgb24) {
    StoreRgb24(d16, even, odd, dst);
  } else {
    StoreRgb16(d16, even, odd, layout, dst);
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#endif  // YUVBLIT_COLOR_INL_H_
