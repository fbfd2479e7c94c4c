// Vector row operations from packed YUY2 rows to YUY2 and RGB surfaces.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "load/packed_yuy2_rows.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep

#include "hwy/highway.h"
#include "adjust/adjust-inl.h"
#include "adjust/color-inl.h"
#include "frame/groups-inl.h"
#include "load/packed_yuy2_rows.h"

// Group bodies are forced inline into ForGroups' loop, so that their
// constants are set up once per row rather than once per vector.
#define YUVBLIT_INLINE_BODY __attribute__((always_inline))

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// ------------------------------------------------------------ YUY2 output

// Adjustments and layouts are taken by value: byte stores may alias any
// object, and values in registers need not be reloaded after each store.

// A group is 16 bytes, one u8 lane per byte. In 16-bit lanes a row is luma
// (low bytes) and chroma (high bytes, U in even lanes, V in odd ones).
template <bool kAdjust>
void PackedPairToYuy2Impl(const uint8_t* s0, const uint8_t* s1, uint8_t* d0, uint8_t* d1,
                          size_t groups, const Adjustment a) {
  ForGroups<16>(groups, [&](auto d8, size_t g) YUVBLIT_INLINE_BODY {
    const size_t at = 16 * g;
    const auto first = hn::LoadU(d8, s0 + at);
    const auto second = hn::LoadU(d8, s1 + at);
    if constexpr (!kAdjust) {
      hn::StoreU(first, d8, d0 + at);
      // Odd bytes (chroma) from the first row, even bytes (luma) from the second.
      hn::StoreU(hn::OddEven(first, second), d8, d1 + at);
    } else {
      const hn::Repartition<int16_t, decltype(d8)> d16;
      hn::Vec<decltype(d16)> luma, chroma, luma1, unused;
      SplitEvenOdd(d8, first, luma, chroma);
      // U in even lanes, V in odd ones: one adjustment with per-lane
      // gain and offset.
      const auto gain = hn::OddEven(hn::Set(d16, a.v.gain), hn::Set(d16, a.u.gain));
      const auto offset = hn::OddEven(hn::Set(d16, a.v.offset), hn::Set(d16, a.u.offset));
      chroma = AdjustWide(d16, chroma, gain, offset);
      hn::StoreU(JoinEvenOdd(d16, AdjustWide(d16, luma, a.luma), chroma), d8, d0 + at);
      SplitEvenOdd(d8, second, luma1, unused);
      hn::StoreU(JoinEvenOdd(d16, AdjustWide(d16, luma1, a.luma), chroma), d8, d1 + at);
    }
  });
}

void PackedPairToYuy2(const uint8_t* s0, const uint8_t* s1, uint8_t* d0, uint8_t* d1,
                      size_t groups, const Adjustment* adjust) {
  if (adjust) return PackedPairToYuy2Impl<true>(s0, s1, d0, d1, groups, *adjust);
  PackedPairToYuy2Impl<false>(s0, s1, d0, d1, groups, Adjustment{});
}

// ------------------------------------------------------------ RGB24 output

// One 16-bit lane per pixel pair: a vector of N u8 lanes covers N pixels
// (2N source bytes), so a 16-pixel group is 16 lanes. Luma and chroma are
// separated by byte position, then split into even-pixel luma, odd-pixel
// luma, U and V for the shared RGB24 store.
template <bool kAdjust>
void PackedPairToRgb24Impl(const uint8_t* s0, const uint8_t* s1, uint8_t* d0, uint8_t* d1,
                           size_t groups, const Adjustment a) {
  const AdjustmentLookup lookup(a);
  ForGroups<16>(groups, [&](auto d8, size_t g) YUVBLIT_INLINE_BODY {
    const hn::Repartition<int16_t, decltype(d8)> d16;
    hn::Vec<decltype(d8)> luma, chroma;
    hn::Vec<decltype(d16)> even, odd, u, v;
    hn::LoadInterleaved2(d8, s0 + 32 * g, luma, chroma);
    if constexpr (kAdjust) {
      SplitEvenOddAdjusted(d8, chroma, lookup.u, u, v, &lookup.v);
    } else {
      SplitEvenOdd(d8, chroma, u, v);
    }
    hn::Vec<decltype(d16)> gU, bU, gV, rV;
    ChromaTerms(d16, u, v, gU, bU, gV, rV);
    for (int row = 0; row < 2; ++row) {
      if (row) hn::LoadInterleaved2(d8, s1 + 32 * g, luma, chroma);  // chroma unused
      if constexpr (kAdjust) {
        SplitEvenOddAdjusted(d8, luma, lookup.luma, even, odd);
      } else {
        SplitEvenOdd(d8, luma, even, odd);
      }
      StoreRgb<RgbPacking::kRgb24>(d16, even, odd, gU, bU, gV, rV, Rgb16Layout{},
                                   (row ? d1 : d0) + 48 * g);
    }
  });
}

// ---------------------------------------------------- RGB32 and RGB16 output

// One 16-bit lane per pixel: a source vector of N bytes holds N/2 pixels,
// each lane's low byte its luma. U and V of each pair are copied into both
// of its lanes, so the conversion runs in pixel order and the stores need no
// even/odd interleave.

// Byte indices (per 16-byte block) that put a pair's U, or V, into the low
// byte of both of its pixels' lanes and zero into the high byte.
alignas(16) constexpr uint8_t kPairU[16] = {1, 0x80, 1, 0x80, 5,  0x80, 5,  0x80,
                                            9, 0x80, 9, 0x80, 13, 0x80, 13, 0x80};
alignas(16) constexpr uint8_t kPairV[16] = {3,  0x80, 3,  0x80, 7,  0x80, 7,  0x80,
                                            11, 0x80, 11, 0x80, 15, 0x80, 15, 0x80};

// The RGB32 store interleaves within 16-byte blocks: block i of its lower
// output takes the first 4 pixels of block i, the upper output the last 4.
// Loading the source's 8-byte chunks (4 pixels each) in the order 0, n/2,
// 1, n/2 + 1, ... makes both outputs come out in pixel order; lanes are
// independent in between.
template <class D8>
HWY_INLINE hn::Vec<D8> ForBlockInterleave(D8 d8, hn::Vec<D8> v) {
  const hn::Repartition<uint64_t, D8> d64;
  if (hn::Lanes(d64) <= 2) return v;  // one block: in order already
  const auto half = hn::ShiftRight<1>(hn::Iota(d64, 0));
  const auto index = hn::OddEven(hn::Add(half, hn::Set(d64, hn::Lanes(d64) / 2)), half);
  return hn::BitCast(
      d8, hn::TableLookupLanes(hn::BitCast(d64, v), hn::IndicesFromVec(d64, index)));
}

template <RgbPacking P, class D8>
HWY_INLINE hn::Vec<D8> LoadPixels(D8 d8, const uint8_t* src) {
  const auto v = hn::LoadU(d8, src);
  return P == RgbPacking::kRgb32 ? ForBlockInterleave(d8, v) : v;
}

// Where bytes are looked up, the whole source vector is looked up in the
// sample's table before the sample is picked out of it.
template <bool kAdjust, class D8, class D16 = hn::Repartition<int16_t, D8>>
HWY_INLINE hn::Vec<D16> PixelLuma(D8 d8, hn::Vec<D8> src, const AdjustmentLookup& a) {
  const D16 d16;
  const hn::RebindToUnsigned<D16> du16;
  constexpr bool kLookup = kAdjust && SampleLookup::lookup;
  const auto bytes = kLookup ? LookupBytes(d8, src, a.luma) : src;
  const auto y = hn::BitCast(d16, hn::And(hn::BitCast(du16, bytes), hn::Set(du16, 0xFF)));
  return kAdjust && !kLookup ? AdjustWide(d16, y, a.luma.adjust) : y;
}

template <bool kAdjust, class D8, class D16 = hn::Repartition<int16_t, D8>,
          class V = hn::Vec<D16>>
HWY_INLINE void PixelChromaTerms(D8 d8, hn::Vec<D8> src, const AdjustmentLookup& a, V& gU,
                                 V& bU, V& gV, V& rV) {
  const D16 d16;
  constexpr bool kLookup = kAdjust && SampleLookup::lookup;
  auto pick = [&](const SampleLookup& s, const uint8_t* index) {
    const auto sample = hn::BitCast(
        d16, hn::TableLookupBytesOr0(kLookup ? LookupBytes(d8, src, s) : src,
                                     hn::LoadDup128(d8, index)));
    return kAdjust && !kLookup ? AdjustWide(d16, sample, s.adjust) : sample;
  };
  ChromaTerms(d16, pick(a.u, kPairU), pick(a.v, kPairV), gU, bU, gV, rV);
}

// RGB32: B | G << 8 and R | 0 << 8 interleaved as 16-bit lanes give B, G, R,
// 0 per pixel (pixels in ForBlockInterleave order). RGB16: the shared
// layout word per lane.
template <RgbPacking P, class D16, class V = hn::Vec<D16>>
HWY_INLINE void StorePixels(D16 d16, V y, V gU, V bU, V gV, V rV, const Rgb16Layout& layout,
                            uint8_t* dst) {
  const hn::RebindToUnsigned<D16> du16;
  const hn::Repartition<uint8_t, D16> d8;
  V r, g, b;
  YuvToRgb(d16, y, gU, bU, gV, rV, r, g, b);
  if constexpr (P == RgbPacking::kRgb32) {
    const auto bg = hn::BitCast(du16, hn::Or(b, hn::ShiftLeft<8>(g)));
    const auto r0 = hn::BitCast(du16, r);
    hn::StoreU(hn::BitCast(d8, hn::InterleaveLower(du16, bg, r0)), d8, dst);
    hn::StoreU(hn::BitCast(d8, hn::InterleaveUpper(du16, bg, r0)), d8, dst + hn::Lanes(d8));
  } else {
    hn::StoreU(hn::BitCast(d8, PackRgb16Word(d16, r, g, b, layout)), d8, dst);
  }
}

template <RgbPacking P, bool kAdjust>
void PackedPixelsToRgbImpl(const uint8_t* s0, const uint8_t* s1, uint8_t* d0, uint8_t* d1,
                           size_t groups, const Rgb16Layout layout, const Adjustment adjustment) {
  constexpr size_t kBpp = P == RgbPacking::kRgb32 ? 4 : 2;
  const AdjustmentLookup a(adjustment);
  // A 16-pixel group is 16 u8 lanes' worth: two source vectors per row. The
  // whole first row of these groups is stored before the second.
  ForGroups<16>(groups, [&](auto d8, size_t g) YUVBLIT_INLINE_BODY {
    const hn::Repartition<int16_t, decltype(d8)> d16;
    const size_t n = hn::Lanes(d8);
    const auto first0 = LoadPixels<P>(d8, s0 + 32 * g);
    const auto first1 = LoadPixels<P>(d8, s0 + 32 * g + n);
    hn::Vec<decltype(d16)> gU0, bU0, gV0, rV0, gU1, bU1, gV1, rV1;
    PixelChromaTerms<kAdjust>(d8, first0, a, gU0, bU0, gV0, rV0);
    PixelChromaTerms<kAdjust>(d8, first1, a, gU1, bU1, gV1, rV1);
    uint8_t* out0 = d0 + kBpp * 16 * g;
    uint8_t* out1 = d1 + kBpp * 16 * g;
    const size_t half = kBpp * n / 2;  // destination bytes per source vector
    StorePixels<P>(d16, PixelLuma<kAdjust>(d8, first0, a), gU0, bU0, gV0, rV0, layout, out0);
    StorePixels<P>(d16, PixelLuma<kAdjust>(d8, first1, a), gU1, bU1, gV1, rV1, layout,
                   out0 + half);
    const auto second0 = LoadPixels<P>(d8, s1 + 32 * g);
    const auto second1 = LoadPixels<P>(d8, s1 + 32 * g + n);
    StorePixels<P>(d16, PixelLuma<kAdjust>(d8, second0, a), gU0, bU0, gV0, rV0, layout, out1);
    StorePixels<P>(d16, PixelLuma<kAdjust>(d8, second1, a), gU1, bU1, gV1, rV1, layout,
                   out1 + half);
  });
}

void PackedPairToRgb(const uint8_t* s0, const uint8_t* s1, uint8_t* d0, uint8_t* d1,
                     size_t groups, const RgbFormat& format, const Adjustment* adjust) {
  const Adjustment none{};
  const Adjustment& a = adjust ? *adjust : none;
  switch (format.packing) {
    case RgbPacking::kRgb32:
      return adjust ? PackedPixelsToRgbImpl<RgbPacking::kRgb32, true>(s0, s1, d0, d1, groups,
                                                                     format.layout, a)
                    : PackedPixelsToRgbImpl<RgbPacking::kRgb32, false>(s0, s1, d0, d1, groups,
                                                                      format.layout, a);
    case RgbPacking::kRgb16:
      return adjust ? PackedPixelsToRgbImpl<RgbPacking::kRgb16, true>(s0, s1, d0, d1, groups,
                                                                     format.layout, a)
                    : PackedPixelsToRgbImpl<RgbPacking::kRgb16, false>(s0, s1, d0, d1, groups,
                                                                      format.layout, a);
    case RgbPacking::kRgb24:
      return adjust ? PackedPairToRgb24Impl<true>(s0, s1, d0, d1, groups, a)
                    : PackedPairToRgb24Impl<false>(s0, s1, d0, d1, groups, a);
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace yuvblit {

HWY_EXPORT(PackedPairToYuy2);
HWY_EXPORT(PackedPairToRgb);

void packed_pair_to_yuy2(const uint8_t* s0, const uint8_t* s1, uint8_t* d0, uint8_t* d1,
                         size_t groups, const Adjustment* adjust) {
  HWY_DYNAMIC_DISPATCH(PackedPairToYuy2)(s0, s1, d0, d1, groups, adjust);
}

void packed_pair_to_rgb(const uint8_t* s0, const uint8_t* s1, uint8_t* d0, uint8_t* d1,
                        size_t groups, const RgbFormat& format, const Adjustment* adjust) {
  HWY_DYNAMIC_DISPATCH(PackedPairToRgb)(s0, s1, d0, d1, groups, format, adjust);
}

}  // namespace yuvblit
#endif  // HWY_ONCE
