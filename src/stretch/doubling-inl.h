// Sample operations of the doubling kernels on vectors (per-target Highway
// code): the four-tap half-line filter and horizontal doubling. Scalar
// forms in doubling.h.
#if defined(YUVBLIT_DOUBLING_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef YUVBLIT_DOUBLING_INL_H_
#undef YUVBLIT_DOUBLING_INL_H_
#else
#define YUVBLIT_DOUBLING_INL_H_
#endif

#include "adjust/adjust-inl.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// floor((5 p0 + 5 p1 - pm - p2) / 8) clamped to 0..255, on int16 lanes
// holding samples (no sum leaves int16 for 8-bit samples).
template <class D16>
HWY_INLINE hn::Vec<D16> FourTapWide(D16 d16, hn::Vec<D16> pm, hn::Vec<D16> p0,
                                    hn::Vec<D16> p1, hn::Vec<D16> p2) {
  const auto inner = hn::Add(p0, p1);  // 5 p0 + 5 p1 = 5 (p0 + p1)
  const auto t = hn::Sub(hn::Add(hn::ShiftLeft<2>(inner), inner), hn::Add(pm, p2));
  return ClampToByte(d16, hn::ShiftRight<3>(t));
}

#if HWY_ARCH_X86 && HWY_TARGET <= HWY_SSSE3
// x86 has a multiply-add of unsigned by signed byte pairs into 16-bit lanes
// and a 16-bit to unsigned byte pack that saturates; the four-tap filter
// takes half the operations with them.
HWY_INLINE __m128i MulAddBytePairs(__m128i a, __m128i b) { return _mm_maddubs_epi16(a, b); }
HWY_INLINE __m128i PackToBytes(__m128i a, __m128i b) { return _mm_packus_epi16(a, b); }
#if HWY_TARGET <= HWY_AVX2
HWY_INLINE __m256i MulAddBytePairs(__m256i a, __m256i b) { return _mm256_maddubs_epi16(a, b); }
HWY_INLINE __m256i PackToBytes(__m256i a, __m256i b) { return _mm256_packus_epi16(a, b); }
#endif
#if HWY_TARGET <= HWY_AVX3
HWY_INLINE __m512i MulAddBytePairs(__m512i a, __m512i b) { return _mm512_maddubs_epi16(a, b); }
HWY_INLINE __m512i PackToBytes(__m512i a, __m512i b) { return _mm512_packus_epi16(a, b); }
#endif
#endif

// The four-tap filter on byte lanes: between rows p0 and p1, with the row
// above p0 (pm) and the row below p1 (p2).
template <class D8>
HWY_INLINE hn::Vec<D8> FourTap(D8 d8, hn::Vec<D8> pm, hn::Vec<D8> p0, hn::Vec<D8> p1,
                               hn::Vec<D8> p2) {
  const hn::Repartition<int16_t, D8> d16;
#if HWY_ARCH_X86 && HWY_TARGET <= HWY_SSSE3
  // Byte pairs (p0, pm) and (p1, p2) in each 16-bit lane times the weights
  // (5, -1): 5 p0 - pm + 5 p1 - p2 stays within -510..2550; the arithmetic
  // shift floors and the pack clamps. Interleaving and packing both work
  // within 128-bit blocks, so the bytes come back in order.
  using V16 = hn::Vec<decltype(d16)>;
  const auto weights = hn::BitCast(d8, hn::Set(d16, int16_t{-251}));  // bytes 5, -1
  auto filtered = [&](hn::Vec<D8> inner0, hn::Vec<D8> inner1) {
    return hn::ShiftRight<3>(hn::Add(V16{MulAddBytePairs(inner0.raw, weights.raw)},
                                     V16{MulAddBytePairs(inner1.raw, weights.raw)}));
  };
  const V16 lower = filtered(hn::InterleaveLower(d8, p0, pm), hn::InterleaveLower(d8, p1, p2));
  const V16 upper = filtered(hn::InterleaveUpper(d8, p0, pm), hn::InterleaveUpper(d8, p1, p2));
  return hn::Vec<D8>{PackToBytes(lower.raw, upper.raw)};
#else
  hn::Vec<decltype(d16)> me, mo, ae, ao, be, bo, pe, po;
  SplitEvenOdd(d8, pm, me, mo);
  SplitEvenOdd(d8, p0, ae, ao);
  SplitEvenOdd(d8, p1, be, bo);
  SplitEvenOdd(d8, p2, pe, po);
  return JoinEvenOdd(d16, FourTapWide(d16, me, ae, be, pe), FourTapWide(d16, mo, ao, bo, po));
#endif
}

// Horizontal doubling of a vector of samples s whose right neighbours are
// `right` (s[i + 1], the last one from beyond the vector): 2 Lanes(d8)
// bytes s[0], avg(s[0], s[1]), s[1], avg(s[1], s[2]), ... stored at dst.
template <class D8>
HWY_INLINE void StoreDoubled(D8 d8, hn::Vec<D8> s, hn::Vec<D8> right, uint8_t* dst) {
  hn::StoreInterleaved2(s, RoundedAverage(s, right), d8, dst);
}

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#endif  // YUVBLIT_DOUBLING_INL_H_
