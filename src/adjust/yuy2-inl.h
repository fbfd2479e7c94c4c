// YUY2 packing from 16-bit lanes, shared by every row operation that writes
// YUY2 (per-target Highway code).
//
// YUY2 is handled as 16-bit words: pixel 2i's word is Y(2i) | U(i) << 8 and
// pixel 2i+1's is Y(2i+1) | V(i) << 8. Luma splits into even and odd pixels
// by byte position within 16-bit lanes and chroma widens to 16-bit lanes, so
// each chroma lane meets its two pixels without any shuffle; only the final
// store interleaves the even and odd words.
#if defined(YUVBLIT_YUY2_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef YUVBLIT_YUY2_INL_H_
#undef YUVBLIT_YUY2_INL_H_
#else
#define YUVBLIT_YUY2_INL_H_
#endif

#include "adjust/adjust-inl.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// Chroma samples for the luma vector of tag d8 (half as many), widened.
template <class D8, class D16 = hn::Repartition<int16_t, D8>>
HWY_INLINE hn::Vec<D16> LoadChroma(D8 /*d8*/, const uint8_t* p) {
  const D16 d16;
  const hn::Rebind<uint8_t, D16> dh;
  return hn::PromoteTo(d16, hn::LoadU(dh, p));
}

// Even-pixel words Y | U << 8 and odd-pixel words Y | V << 8, interleaved
// into pixel order.
template <class D16>
HWY_INLINE void StoreYuy2(D16 /*d16*/, hn::Vec<D16> evenY, hn::Vec<D16> u,
                          hn::Vec<D16> oddY, hn::Vec<D16> v, uint8_t* dst) {
  const hn::RebindToUnsigned<D16> du16;
  StoreInterleavedWords(du16, hn::BitCast(du16, hn::Or(evenY, hn::ShiftLeft<8>(u))),
                        hn::BitCast(du16, hn::Or(oddY, hn::ShiftLeft<8>(v))), dst);
}

#if HWY_TARGET == HWY_AVX3_DL
// Output bytes of 32 pixels from the table of 64 luma bytes (0..63) and
// the 32 U then 32 V bytes (64..127): Y U Y V per pixel pair.
alignas(64) static constexpr uint8_t kYuy2FromBytes[2][64] = {
#define YUVBLIT_PAIR(p) 2 * (p), 64 + (p), 2 * (p) + 1, 96 + (p)
#define YUVBLIT_FOUR(p) YUVBLIT_PAIR(p), YUVBLIT_PAIR(p + 1), YUVBLIT_PAIR(p + 2), YUVBLIT_PAIR(p + 3)
    {YUVBLIT_FOUR(0), YUVBLIT_FOUR(4), YUVBLIT_FOUR(8), YUVBLIT_FOUR(12)},
    {YUVBLIT_FOUR(16), YUVBLIT_FOUR(20), YUVBLIT_FOUR(24), YUVBLIT_FOUR(28)}};
#undef YUVBLIT_FOUR
#undef YUVBLIT_PAIR
#endif

// Luma bytes of 2n pixels with their n U and n V bytes, adjusted and
// stored as YUY2. With byte tables and full vectors the samples stay bytes:
// three lookups and two byte permutes that place them; otherwise they are
// widened and packed as words.
template <class D8, class DC = hn::Rebind<uint8_t, hn::Repartition<int16_t, D8>>>
HWY_INLINE void StoreAdjustedYuy2(D8 d8, hn::Vec<D8> y, hn::Vec<DC> u, hn::Vec<DC> v,
                                  const AdjustmentLookup& a, uint8_t* dst) {
  const hn::Repartition<int16_t, D8> d16;
#if HWY_TARGET == HWY_AVX3_DL
  if constexpr (hn::MaxLanes(d8) == 64) {
    if constexpr (SampleLookup::lookup) {
      const __m512i luma = LookupBytes512(y.raw, a.luma);
      const __m512i chroma = _mm512_inserti64x4(LookupBytes512(ToRegister512(u.raw), a.u),
                                                _mm512_castsi512_si256(LookupBytes512(
                                                    ToRegister512(v.raw), a.v)),
                                                1);
      for (int i = 0; i < 2; ++i) {
        _mm512_storeu_si512(dst + 64 * i,
                            _mm512_permutex2var_epi8(
                                luma, _mm512_load_si512(kYuy2FromBytes[i]), chroma));
      }
      return;
    }
  }
#endif
  hn::Vec<decltype(d16)> even, odd;
  SplitEvenOddAdjusted(d8, y, a.luma, even, odd);
  StoreYuy2(d16, even, PromoteAdjusted(d16, u, a.u), odd, PromoteAdjusted(d16, v, a.v), dst);
}

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#endif  // YUVBLIT_YUY2_INL_H_
