// Vector row operations between overlay bitmaps and subpicture planes.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "subpicture/prepare_rows.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep

#include "hwy/highway.h"
#include "adjust/color-inl.h"
#include "frame/groups-inl.h"
#include "subpicture/prepare_rows.h"

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET == HWY_AVX3_DL
// Where each byte of 16 RGB24 pixels widened to 4 bytes comes from (the
// fourth byte of each is zeroed, its index unused).
struct Rgb24Spread {
  constexpr Rgb24Spread() : index() {
    for (int i = 0; i < 64; ++i)
      index[i] = static_cast<uint8_t>(i % 4 == 3 ? 0 : 3 * (i / 4) + i % 4);
  }
  alignas(64) uint8_t index[64];
};
static constexpr Rgb24Spread kRgb24Spread{};
#endif

// Bitmap pixels as 32-bit words B | G << 8 | R << 16 | X << 24 (X = 0 for
// RGB24 and RGB16, whose 5-6-5 fields are widened with zero low bits), and
// in `keyed` what each pixel is compared with the key as: the word itself
// for RGB32 and RGB24 (so an RGB24 key with a top byte never matches), the
// raw 16 bits for RGB16.
template <RgbPacking P, class D32>
HWY_INLINE hn::Vec<D32> LoadPixelWords(D32 d32, const uint8_t* px, hn::Vec<D32>& keyed) {
  if constexpr (P == RgbPacking::kRgb32) {
    keyed = hn::BitCast(d32, hn::LoadU(hn::Repartition<uint8_t, D32>(), px));
    return keyed;
  } else if constexpr (P == RgbPacking::kRgb24) {
#if HWY_TARGET == HWY_AVX3_DL
    if constexpr (hn::MaxLanes(d32) == 16) {
      // 48 bytes spread into 16 words by one byte permute, fourth bytes zeroed.
      const __m512i bytes = _mm512_maskz_loadu_epi8((uint64_t{1} << 48) - 1, px);
      keyed = hn::Vec<D32>{_mm512_maskz_permutexvar_epi8(
          0x7777777777777777u, _mm512_load_si512(kRgb24Spread.index), bytes)};
      return keyed;
    }
#endif
    const hn::Rebind<uint8_t, D32> d8;
    hn::Vec<decltype(d8)> b, g, r;
    hn::LoadInterleaved3(d8, px, b, g, r);
    keyed = hn::Or(hn::Or(hn::PromoteTo(d32, b), hn::ShiftLeft<8>(hn::PromoteTo(d32, g))),
                   hn::ShiftLeft<16>(hn::PromoteTo(d32, r)));
    return keyed;
  } else {
    const hn::Rebind<uint16_t, D32> d16;
    keyed = hn::PromoteTo(
        d32, hn::BitCast(d16, hn::LoadU(hn::Repartition<uint8_t, decltype(d16)>(), px)));
    const auto b = hn::ShiftLeft<3>(hn::And(keyed, hn::Set(d32, 0x001F)));
    const auto g = hn::ShiftLeft<5>(hn::And(keyed, hn::Set(d32, 0x07E0)));
    const auto r = hn::ShiftLeft<8>(hn::And(keyed, hn::Set(d32, 0xF800)));
    return hn::Or(hn::Or(b, g), r);
  }
}

// Two 16-bit weights in one 32-bit lane, `low` in the lower half.
HWY_INLINE int32_t WeightPair(int32_t low, int32_t high) {
  return static_cast<int32_t>(static_cast<uint32_t>(static_cast<uint16_t>(high)) << 16 |
                              static_cast<uint16_t>(low));
}

// (wb*B + wg*G + wr*R + 1024*(X | bias)) >> 10 per pixel word, in the upper
// 16 bits of its lane (the sum shifted left by 6; it stays below 2^25). The
// words split into (B, R) and (G, X | bias) 16-bit pairs, so the sum is two
// pairwise multiply-adds.
template <class D32>
HWY_INLINE hn::Vec<hn::Repartition<int16_t, D32>> Weighed(D32 d32, hn::Vec<D32> words,
                                                           int32_t bias, int32_t wb,
                                                           int32_t wg, int32_t wr) {
  const hn::Repartition<int16_t, D32> d16;
  const auto bytePair = hn::Set(d32, 0x00FF00FF);
  const auto br = hn::BitCast(d16, hn::And(words, bytePair));
  const auto gx = hn::BitCast(
      d16, hn::Or(hn::And(hn::ShiftRight<8>(words), bytePair), hn::Set(d32, bias << 16)));
  auto odd = hn::Zero(d32);
  auto sum = hn::ReorderWidenMulAccumulate(
      d32, br, hn::BitCast(d16, hn::Set(d32, WeightPair(wb, wr))), hn::Zero(d32), odd);
  sum = hn::ReorderWidenMulAccumulate(
      d32, gx, hn::BitCast(d16, hn::Set(d32, WeightPair(wg, 1024))), sum, odd);
  return hn::BitCast(d16, hn::ShiftLeft<6>(hn::RearrangeToOddPlusEven(sum, odd)));
}

// Converts the 2n pixels of two word vectors: 2n Y bytes, and n U and n V
// bytes from the even pixels. Each result is saturated to 0..255.
template <class D32>
HWY_INLINE void StoreStepYuv(D32 d32, hn::Vec<D32> first, hn::Vec<D32> second, uint8_t* y,
                             uint8_t* u, uint8_t* v) {
  const hn::Repartition<int16_t, D32> d16;
  const hn::Rebind<uint8_t, decltype(d16)> d8;
  const hn::Half<decltype(d8)> dh;
  auto luma = [&](hn::Vec<D32> words) { return Weighed(d32, words, 16, 100, 516, 263); };
  hn::StoreU(hn::DemoteTo(d8, hn::ConcatOdd(d16, luma(second), luma(first))), d8, y);
  const auto even = hn::ConcatEven(d32, second, first);
  // The even pixels' U in the lower half, their V in the upper half.
  const auto chroma = hn::DemoteTo(d8, hn::ConcatOdd(d16, Weighed(d32, even, 128, -72, -376, 449),
                                                     Weighed(d32, even, 128, 449, -297, -151)));
  hn::StoreU(hn::LowerHalf(dh, chroma), dh, u);
  hn::StoreU(hn::UpperHalf(dh, chroma), dh, v);
}

// Steps of two vectors of n pixels (n / 4 groups of 8) from group i on;
// returns the first group not done. A step whose pixels are all the key is
// skipped and one without the key converted whole; otherwise it is
// converted aside and only its groups that are not all key are copied out.
template <RgbPacking P, class D32>
HWY_INLINE size_t ConvertSteps(D32 d32, const uint8_t* bitmap, size_t i, size_t groups,
                               uint32_t key, uint8_t* y, uint8_t* u, uint8_t* v) {
  constexpr size_t kBpp = P == RgbPacking::kRgb32 ? 4 : P == RgbPacking::kRgb24 ? 3 : 2;
  const size_t n = hn::Lanes(d32);
  const size_t perStep = n / 4;
  const auto keyWord =
      hn::Set(d32, static_cast<int32_t>(P == RgbPacking::kRgb16 ? key & 0xFFFF : key));
  for (; i + perStep <= groups; i += perStep) {
    const uint8_t* px = bitmap + 8 * kBpp * i;
    hn::Vec<D32> keyed0, keyed1;
    const auto first = LoadPixelWords<P>(d32, px, keyed0);
    const auto second = LoadPixelWords<P>(d32, px + kBpp * n, keyed1);
    const auto key0 = hn::Eq(keyed0, keyWord), key1 = hn::Eq(keyed1, keyWord);
    if (hn::AllFalse(d32, hn::Or(key0, key1))) {
      StoreStepYuv(d32, first, second, y + 8 * i, u + 4 * i, v + 4 * i);
      continue;
    }
    if (hn::AllTrue(d32, hn::And(key0, key1))) continue;
    constexpr size_t kMaxLanes = hn::MaxLanes(d32);
    uint8_t sy[2 * kMaxLanes], su[kMaxLanes], sv[kMaxLanes];
    uint8_t bits[2][kMaxLanes / 8 + 1];
    StoreStepYuv(d32, first, second, sy, su, sv);
    hn::StoreMaskBits(d32, key0, bits[0]);
    hn::StoreMaskBits(d32, key1, bits[1]);
    for (size_t j = 0; j < perStep; ++j) {
      // Group j's 8 key bits: half of each vector's four, or one byte.
      const bool allKey = n == 4 ? (bits[0][0] & bits[1][0] & 0xF) == 0xF
                                 : bits[j / (n / 8)][j % (n / 8)] == 0xFF;
      if (allKey) continue;
      hwy::CopyBytes<8>(sy + 8 * j, y + 8 * (i + j));
      hwy::CopyBytes<4>(su + 4 * j, u + 4 * (i + j));
      hwy::CopyBytes<4>(sv + 4 * j, v + 4 * (i + j));
    }
  }
  return i;
}

// Full vectors first, then narrower ones for the groups left (four lanes
// make a step of one group).
template <RgbPacking P>
void BitmapRowToYuvP(const uint8_t* bitmap, size_t groups, uint32_t key, uint8_t* y,
                     uint8_t* u, uint8_t* v) {
  size_t i = ConvertSteps<P>(hn::ScalableTag<int32_t>(), bitmap, 0, groups, key, y, u, v);
  if constexpr (hn::MaxLanes(hn::ScalableTag<int32_t>()) > 8)
    i = ConvertSteps<P>(hn::CappedTag<int32_t, 8>(), bitmap, i, groups, key, y, u, v);
  if constexpr (hn::MaxLanes(hn::ScalableTag<int32_t>()) > 4)
    ConvertSteps<P>(hn::CappedTag<int32_t, 4>(), bitmap, i, groups, key, y, u, v);
}

void BitmapRowToYuv(const uint8_t* bitmap, size_t groups, RgbPacking packing, uint32_t key,
                    uint8_t* y, uint8_t* u, uint8_t* v) {
  switch (packing) {
    case RgbPacking::kRgb32: return BitmapRowToYuvP<RgbPacking::kRgb32>(bitmap, groups, key, y, u, v);
    case RgbPacking::kRgb24: return BitmapRowToYuvP<RgbPacking::kRgb24>(bitmap, groups, key, y, u, v);
    case RgbPacking::kRgb16: return BitmapRowToYuvP<RgbPacking::kRgb16>(bitmap, groups, key, y, u, v);
  }
}

void AlphaRowToBitmap(const uint8_t* alpha, size_t groups, RgbPacking packing,
                      uint8_t* bitmap) {
  const size_t bpp = bytes_per_pixel(packing);
  ForGroups<16>(groups, [&](auto d8, size_t g) {
    const auto a = hn::LoadU(d8, alpha + 16 * g);
    const auto zero = hn::Zero(d8);
    uint8_t* out = bitmap + 16 * bpp * g;
    switch (packing) {
      case RgbPacking::kRgb32: return hn::StoreInterleaved4(a, zero, zero, zero, d8, out);
      case RgbPacking::kRgb24: return StoreRgb24(d8, a, zero, zero, out);
      case RgbPacking::kRgb16: return hn::StoreInterleaved2(a, zero, d8, out);
    }
  });
}

void BitmapRowToAlpha(const uint8_t* bitmap, size_t groups, RgbPacking packing,
                      uint8_t* alpha) {
  switch (packing) {
    case RgbPacking::kRgb32:
      // Each pixel's first byte: the even byte of its even 16-bit half.
      return ForGroups<8>(groups, [&](auto d8, size_t g) {
        const hn::Repartition<uint16_t, decltype(d8)> d16;
        const size_t n = hn::Lanes(d8);
        auto evenHalves = [&](const uint8_t* at) {
          return hn::BitCast(d8, hn::ConcatEven(d16, hn::BitCast(d16, hn::LoadU(d8, at + n)),
                                                hn::BitCast(d16, hn::LoadU(d8, at))));
        };
        const uint8_t* px = bitmap + 32 * g;
        hn::StoreU(hn::ConcatEven(d8, evenHalves(px + 2 * n), evenHalves(px)), d8, alpha + 8 * g);
      });
    case RgbPacking::kRgb24:
      // Every alpha byte is the next pixel's blue: the third byte of each
      // 3-byte run starting at byte 1, so nothing past that blue is read.
      return ForGroups<8>(groups, [&](auto d8, size_t g) {
        hn::Vec<decltype(d8)> g0, r0, b1;
        hn::LoadInterleaved3(d8, bitmap + 1 + 24 * g, g0, r0, b1);
        hn::StoreU(b1, d8, alpha + 8 * g);
      });
    case RgbPacking::kRgb16:
      return ForGroups<16>(groups, [&](auto d8, size_t g) {
        hn::Vec<decltype(d8)> low, high;
        hn::LoadInterleaved2(d8, bitmap + 32 * g, low, high);
        hn::StoreU(hn::And(low, hn::Set(d8, uint8_t{0x1F})), d8, alpha + 16 * g);
      });
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace yuvblit {

HWY_EXPORT(BitmapRowToYuv);
HWY_EXPORT(AlphaRowToBitmap);
HWY_EXPORT(BitmapRowToAlpha);

void bitmap_row_to_yuv(const uint8_t* bitmap, size_t groups, RgbPacking packing,
                       uint32_t key, uint8_t* y, uint8_t* u, uint8_t* v) {
  HWY_DYNAMIC_DISPATCH(BitmapRowToYuv)(bitmap, groups, packing, key, y, u, v);
}
void alpha_row_to_bitmap(const uint8_t* alpha, size_t groups, RgbPacking packing,
                         uint8_t* bitmap) {
  HWY_DYNAMIC_DISPATCH(AlphaRowToBitmap)(alpha, groups, packing, bitmap);
}
void bitmap_row_to_alpha(const uint8_t* bitmap, size_t groups, RgbPacking packing,
                         uint8_t* alpha) {
  HWY_DYNAMIC_DISPATCH(BitmapRowToAlpha)(bitmap, groups, packing, alpha);
}

}  // namespace yuvblit
#endif  // HWY_ONCE
