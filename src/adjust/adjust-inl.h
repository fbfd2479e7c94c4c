// Vector form of the sample adjustment, and the byte <-> 16-bit lane
// helpers the colour arithmetic shares (per-target Highway code).
#if defined(YUVBLIT_ADJUST_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef YUVBLIT_ADJUST_INL_H_
#undef YUVBLIT_ADJUST_INL_H_
#else
#define YUVBLIT_ADJUST_INL_H_
#endif

#include <cstring>

#include "adjust/adjustment.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// Splits bytes into their even (low) and odd (high) bytes as int16 lanes,
// so 8-bit samples are widened without changing lane order.
template <class D8>
HWY_INLINE void SplitEvenOdd(D8 /*d8*/, hn::Vec<D8> bytes,
                             hn::Vec<hn::Repartition<int16_t, D8>>& even,
                             hn::Vec<hn::Repartition<int16_t, D8>>& odd) {
  const hn::Repartition<int16_t, D8> d16;
  const hn::Repartition<uint16_t, D8> du16;
  const auto wide = hn::BitCast(du16, bytes);
  even = hn::BitCast(d16, hn::And(wide, hn::Set(du16, 0xFF)));
  odd = hn::BitCast(d16, hn::ShiftRight<8>(wide));
}

// The inverse: even and odd values 0..255 back into bytes in pixel order.
template <class D16>
HWY_INLINE hn::Vec<hn::Repartition<uint8_t, D16>> JoinEvenOdd(D16 /*d16*/,
                                                             hn::Vec<D16> even,
                                                             hn::Vec<D16> odd) {
  const hn::Repartition<uint8_t, D16> d8;
  return hn::BitCast(d8, hn::Or(even, hn::ShiftLeft<8>(odd)));
}

// Interleaves two vectors of 16-bit words into memory at any byte address.
template <class DU16>
HWY_INLINE void StoreInterleavedWords(DU16 du16, hn::Vec<DU16> even, hn::Vec<DU16> odd,
                                      uint8_t* dst) {
#if HWY_TARGET == HWY_EMU128 || HWY_TARGET == HWY_SCALAR
  // The emulation stores through uint16_t pointers, which must be aligned.
  HWY_ALIGN uint16_t words[2 * hn::MaxLanes(du16)];
  hn::StoreInterleaved2(even, odd, du16, words);
  std::memcpy(dst, words, 2 * hn::Lanes(du16) * sizeof(uint16_t));
#else
  hn::StoreInterleaved2(even, odd, du16, reinterpret_cast<uint16_t*>(dst));
#endif
}

// Rounded average (a + b + 1) >> 1 of unsigned lanes, as (a | b) -
// ((a ^ b) >> 1), which cannot overflow: Highway's SVE (not SVE2) form adds
// in the lane width and wraps.
template <class V>
HWY_INLINE V RoundedAverage(V a, V b) {
#if HWY_TARGET == HWY_SVE || HWY_TARGET == HWY_SVE_256
  return hn::Sub(hn::Or(a, b), hn::ShiftRight<1>(hn::Xor(a, b)));
#else
  return hn::AverageRound(a, b);
#endif
}

// Unsigned saturation of a signed 16-bit value to 0..255, kept in 16 bits.
template <class D16>
HWY_INLINE hn::Vec<D16> ClampToByte(D16 d16, hn::Vec<D16> v) {
  return hn::Min(hn::Max(v, hn::Zero(d16)), hn::Set(d16, 255));
}

// Sample adjustment of int16 lanes holding 0..255: x * gain (low 16 bits),
// +32 saturating, logical >> 6, + offset saturating, clamped to 0..255.
// Gain and offset may differ per lane (e.g. U and V lanes alternating).
template <class D16>
HWY_INLINE hn::Vec<D16> AdjustWide(D16 d16, hn::Vec<D16> x, hn::Vec<D16> gain,
                                   hn::Vec<D16> offset) {
  const hn::RebindToUnsigned<D16> du16;
  auto r = hn::SaturatedAdd(hn::Mul(x, gain), hn::Set(d16, 32));
  r = hn::BitCast(d16, hn::ShiftRight<6>(hn::BitCast(du16, r)));
  return ClampToByte(d16, hn::SaturatedAdd(r, offset));
}

template <class D16>
HWY_INLINE hn::Vec<D16> AdjustWide(D16 d16, hn::Vec<D16> x, SampleAdjust a) {
  return AdjustWide(d16, x, hn::Set(d16, a.gain), hn::Set(d16, a.offset));
}

// One SampleAdjust as the row operations apply it. CPUs with byte permutes
// look samples up in its table, which is held in four registers for as long
// as the row operation runs: loaded once before the loop, since the
// compiler must assume any byte store could change the table in memory.
// Elsewhere samples are computed. Which of the two is known when the code
// is compiled, so loops carry no test of it and only one path's constants.
#if HWY_TARGET == HWY_AVX3_DL
struct SampleLookup {
  // An adjustment without a table (one that is not applied) looks up zeros.
  explicit SampleLookup(SampleAdjust a) : adjust(a) {
    for (int i = 0; i < 4; ++i)
      table[i] = a.table ? _mm512_loadu_si512(a.table + 64 * i) : _mm512_setzero_si512();
  }
  SampleAdjust adjust;
  static constexpr bool lookup = true;
  __m512i table[4];
};

// 256-entry byte lookup with two-table byte permutes: indices 0..127 from
// the first half of the table, 128..255 from the second, picked by the top
// bit. Narrower vectors are looked up in a full register.
HWY_INLINE __m512i LookupBytes512(__m512i index, const SampleLookup& s) {
  const __m512i low = _mm512_permutex2var_epi8(s.table[0], index, s.table[1]);
  const __m512i high = _mm512_permutex2var_epi8(s.table[2], index, s.table[3]);
  return _mm512_mask_blend_epi8(_mm512_movepi8_mask(index), low, high);
}
HWY_INLINE __m512i ToRegister512(__m512i v) { return v; }
HWY_INLINE __m512i ToRegister512(__m256i v) { return _mm512_castsi256_si512(v); }
HWY_INLINE __m512i ToRegister512(__m128i v) { return _mm512_castsi128_si512(v); }
HWY_INLINE void FromRegister512(__m512i r, __m512i& v) { v = r; }
HWY_INLINE void FromRegister512(__m512i r, __m256i& v) { v = _mm512_castsi512_si256(r); }
HWY_INLINE void FromRegister512(__m512i r, __m128i& v) { v = _mm512_castsi512_si128(r); }

template <class D8>
HWY_INLINE hn::Vec<D8> LookupBytes(D8 /*d8*/, hn::Vec<D8> bytes, const SampleLookup& s) {
  hn::Vec<D8> out = bytes;
  FromRegister512(LookupBytes512(ToRegister512(bytes.raw), s), out.raw);
  return out;
}
#else
struct SampleLookup {
  explicit SampleLookup(SampleAdjust a) : adjust(a) {}
  SampleAdjust adjust;
  static constexpr bool lookup = false;
};

template <class D8>
HWY_INLINE hn::Vec<D8> LookupBytes(D8, hn::Vec<D8> bytes, const SampleLookup&) {
  return bytes;  // not used: only CPUs with byte permutes look samples up
}
#endif

// The three lookups of an Adjustment.
struct AdjustmentLookup {
  explicit AdjustmentLookup(const Adjustment& a) : luma(a.luma), u(a.u), v(a.v) {}
  SampleLookup luma, u, v;
};

// Applies one adjustment to every byte of a u8 vector.
template <class D8>
HWY_INLINE hn::Vec<D8> AdjustBytes(D8 d8, hn::Vec<D8> bytes, const SampleLookup& s) {
  if constexpr (SampleLookup::lookup) return LookupBytes(d8, bytes, s);
  const hn::Repartition<int16_t, D8> d16;
  hn::Vec<decltype(d16)> even, odd;
  SplitEvenOdd(d8, bytes, even, odd);
  return JoinEvenOdd(d16, AdjustWide(d16, even, s.adjust), AdjustWide(d16, odd, s.adjust));
}

// Adjusted bytes split into even and odd int16 lanes (see SplitEvenOdd):
// even bytes by `evenAdjust`, odd ones by `oddAdjust` (the same by default).
template <class D8>
HWY_INLINE void SplitEvenOddAdjusted(D8 d8, hn::Vec<D8> bytes, const SampleLookup& evenAdjust,
                                     hn::Vec<hn::Repartition<int16_t, D8>>& even,
                                     hn::Vec<hn::Repartition<int16_t, D8>>& odd,
                                     const SampleLookup* oddAdjust = nullptr) {
  const hn::Repartition<int16_t, D8> d16;
  const SampleLookup& oddLookup = oddAdjust ? *oddAdjust : evenAdjust;
  if constexpr (SampleLookup::lookup) {
    const auto evenBytes = LookupBytes(d8, bytes, evenAdjust);
    SplitEvenOdd(
        d8, oddAdjust ? hn::OddEven(LookupBytes(d8, bytes, oddLookup), evenBytes) : evenBytes,
        even, odd);
    return;
  }
  SplitEvenOdd(d8, bytes, even, odd);
  even = AdjustWide(d16, even, evenAdjust.adjust);
  odd = AdjustWide(d16, odd, oddLookup.adjust);
}

// Adjusted bytes widened to int16 lanes (as many lanes as D16 has).
template <class D16>
HWY_INLINE hn::Vec<D16> PromoteAdjusted(D16 d16, hn::Vec<hn::Rebind<uint8_t, D16>> bytes,
                                        const SampleLookup& s) {
  const hn::Rebind<uint8_t, D16> d8;
  if constexpr (SampleLookup::lookup) return hn::PromoteTo(d16, LookupBytes(d8, bytes, s));
  return AdjustWide(d16, hn::PromoteTo(d16, bytes), s.adjust);
}

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#endif  // YUVBLIT_ADJUST_INL_H_
