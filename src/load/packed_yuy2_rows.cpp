// Vector row operations from packed YUY2 rows to YUY2 and RGB surfaces.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "load/packed_yuy2_rows.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep

#include "hwy/highway.h"
#include "adjust/adjust-inl.h"
#include "adjust/color-inl.h"
#include "frame/groups-inl.h"
#include "load/packed_yuy2_rows.h"

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// YUY2 output: a group is 16 bytes, one u8 lane per byte. In 16-bit lanes a
// row is luma (low bytes) and chroma (high bytes, U in even lanes, V in odd).
template <bool kAdjust>
void PackedPairToYuy2Impl(const uint8_t* s0, const uint8_t* s1, uint8_t* d0, uint8_t* d1,
                          size_t groups, const Adjustment& a) {
  ForGroups<16>(groups, [&](auto d8, size_t g) {
    const size_t at = 16 * g;
    const auto first = hn::LoadU(d8, s0 + at);
    const auto second = hn::LoadU(d8, s1 + at);
    if constexpr (!kAdjust) {
      hn::StoreU(first, d8, d0 + at);
      // Odd bytes (chroma) from the first row, even bytes (luma) from the second.
      hn::StoreU(hn::OddEven(first, second), d8, d1 + at);
    } else {
      const hn::Repartition<int16_t, decltype(d8)> d16;
      hn::Vec<decltype(d16)> luma, chroma, luma1, chroma1;
      SplitEvenOdd(d8, first, luma, chroma);
      chroma = hn::OddEven(AdjustWide(d16, chroma, a.v), AdjustWide(d16, chroma, a.u));
      hn::StoreU(JoinEvenOdd(d16, AdjustWide(d16, luma, a.luma), chroma), d8, d0 + at);
      SplitEvenOdd(d8, second, luma1, chroma1);
      hn::StoreU(JoinEvenOdd(d16, AdjustWide(d16, luma1, a.luma), chroma), d8, d1 + at);
    }
  });
}

void PackedPairToYuy2(const uint8_t* s0, const uint8_t* s1, uint8_t* d0, uint8_t* d1,
                      size_t groups, const Adjustment* adjust) {
  if (adjust) return PackedPairToYuy2Impl<true>(s0, s1, d0, d1, groups, *adjust);
  PackedPairToYuy2Impl<false>(s0, s1, d0, d1, groups, Adjustment{});
}

template <RgbPacking P, class D16>
HWY_INLINE void StorePackedRgb(D16 d16, const RgbV<D16>& even, const RgbV<D16>& odd,
                               const Rgb16Layout& layout, uint8_t* dst) {
  if constexpr (P == RgbPacking::kRgb32) {
    StoreRgb32(d16, even, odd, dst);
  } else if constexpr (P == RgbPacking::kRgb24) {
    StoreRgb24(d16, even, odd, dst);
  } else {
    StoreRgb16(d16, even, odd, layout, dst);
  }
}

// RGB output: a vector of N u8 lanes covers N pixels (2N source bytes), so a
// 16-pixel group is 16 lanes. Luma and chroma are separated by byte position,
// then split into one 16-bit lane per pixel pair: even-pixel luma, odd-pixel
// luma, U and V.
template <RgbPacking P, bool kAdjust>
void PackedPairToRgbImpl(const uint8_t* s0, const uint8_t* s1, uint8_t* d0, uint8_t* d1,
                         size_t groups, const RgbFormat& format, const Adjustment& a) {
  constexpr size_t kBpp = P == RgbPacking::kRgb32 ? 4 : P == RgbPacking::kRgb24 ? 3 : 2;
  ForGroups<16>(groups, [&](auto d8, size_t g) {
    using D16 = hn::Repartition<int16_t, decltype(d8)>;
    using V16 = hn::Vec<D16>;
    const D16 d16;
    auto convert = [&](V16 even, V16 odd, const ChromaTermsV<D16>& terms,
                       uint8_t* dst) {
      if (kAdjust) {
        even = AdjustWide(d16, even, a.luma);
        odd = AdjustWide(d16, odd, a.luma);
      }
      StorePackedRgb<P>(d16, YuvToRgb(d16, even, terms), YuvToRgb(d16, odd, terms),
                        format.layout, dst + kBpp * 16 * g);
    };

    hn::Vec<decltype(d8)> luma, chroma;
    V16 even, odd, u, v;
    hn::LoadInterleaved2(d8, s0 + 32 * g, luma, chroma);
    SplitEvenOdd(d8, chroma, u, v);
    if (kAdjust) {
      u = AdjustWide(d16, u, a.u);
      v = AdjustWide(d16, v, a.v);
    }
    const auto terms = ChromaTerms(d16, u, v);
    SplitEvenOdd(d8, luma, even, odd);
    convert(even, odd, terms, d0);

    hn::LoadInterleaved2(d8, s1 + 32 * g, luma, chroma);  // chroma unused
    SplitEvenOdd(d8, luma, even, odd);
    convert(even, odd, terms, d1);
  });
}

void PackedPairToRgb(const uint8_t* s0, const uint8_t* s1, uint8_t* d0, uint8_t* d1,
                     size_t groups, const RgbFormat& format, const Adjustment* adjust) {
  const Adjustment none{};
  const Adjustment& a = adjust ? *adjust : none;
#define YUVBLIT_PACKED_CASE(P)                                                   \
  case P:                                                                        \
    return adjust ? PackedPairToRgbImpl<P, true>(s0, s1, d0, d1, groups, format, a) \
                  : PackedPairToRgbImpl<P, false>(s0, s1, d0, d1, groups, format, a);
  switch (format.packing) {
    YUVBLIT_PACKED_CASE(RgbPacking::kRgb32)
    YUVBLIT_PACKED_CASE(RgbPacking::kRgb24)
    YUVBLIT_PACKED_CASE(RgbPacking::kRgb16)
  }
#undef YUVBLIT_PACKED_CASE
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
