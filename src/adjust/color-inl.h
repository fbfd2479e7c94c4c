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

#if HWY_TARGET == HWY_AVX3_DL
// RGB24 output from 64 B, G and R bytes by byte permutes: output vector k
// byte j is byte 64k + j of the run, channel (64k + j) % 3 of pixel
// (64k + j) / 3. index[k][j] is that pixel, plus 64 where the channel is G,
// so one two-source permute places B and G; a masked one-source permute of
// the same indices (which reads only their low six bits) then places R in
// the bytes of fromR[k].
struct Rgb24Permutes {
  alignas(64) uint8_t index[3][64];
  uint64_t fromR[3];
};
constexpr Rgb24Permutes MakeRgb24Permutes() {
  Rgb24Permutes t{};
  for (int k = 0; k < 3; ++k) {
    for (int j = 0; j < 64; ++j) {
      const int at = 64 * k + j, channel = at % 3;
      t.index[k][j] = static_cast<uint8_t>(at / 3 + (channel == 1 ? 64 : 0));
      if (channel == 2) t.fromR[k] |= uint64_t{1} << j;
    }
  }
  return t;
}
alignas(64) static constexpr Rgb24Permutes kRgb24Permutes = MakeRgb24Permutes();
#endif

// B, G, R bytes of Lanes(d8) pixels stored back to back. With byte
// permutes, full vectors take six permutes (the generic interleave takes
// three table lookups and two ORs per output vector, then block moves).
template <class D8>
HWY_INLINE void StoreRgb24(D8 d8, hn::Vec<D8> b, hn::Vec<D8> g, hn::Vec<D8> r, uint8_t* dst) {
#if HWY_TARGET == HWY_AVX3_DL
  if constexpr (hn::MaxLanes(d8) == 64) {
    for (int k = 0; k < 3; ++k) {
      const __m512i index = _mm512_load_si512(kRgb24Permutes.index[k]);
      const __m512i bg = _mm512_permutex2var_epi8(b.raw, index, g.raw);
      _mm512_storeu_si512(dst + 64 * k, _mm512_mask_permutexvar_epi8(
                                            bg, kRgb24Permutes.fromR[k], index, r.raw));
    }
    return;
  }
#endif
  hn::StoreInterleaved3(b, g, r, d8, dst);
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
    StoreRgb24(d8, JoinEvenOdd(d16, evenB, oddB), JoinEvenOdd(d16, evenG, oddG),
               JoinEvenOdd(d16, evenR, oddR), dst);
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
