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

// One group of 8 pixels as B, G, R and fourth-byte lanes (0..255 in int16).
using GroupTag = hn::FixedTag<int16_t, 8>;
using PairTag = hn::FixedTag<int32_t, 4>;  // the same lanes seen as pixel pairs

// The bytes of a group of 8 pixels that all hold the key, as they lie in
// memory (RGB32 the whole word, RGB24 its low three bytes, RGB16 its low
// two), compared with the group's bytes before anything is unpacked:
// overlays are mostly key.
template <size_t kBpp>
struct KeyGroup {
  explicit KeyGroup(uint32_t key)
      : canMatch(kBpp != 3 || key <= 0xFFFFFF) {  // RGB24 compares 0x00RRGGBB
    for (size_t i = 0; i < sizeof(bytes); ++i)
      bytes[i] = static_cast<uint8_t>(key >> (8 * (i % kBpp)));
  }
  bool matches(const uint8_t* px) const {
    if (!canMatch) return false;
    const hn::FixedTag<uint8_t, 16> d;
    const hn::FixedTag<uint8_t, 8> dh;
    const auto first = hn::Eq(hn::LoadU(d, px), hn::LoadU(d, bytes));
    if constexpr (kBpp == 2) {
      return hn::AllTrue(d, first);
    } else if constexpr (kBpp == 3) {
      return hn::AllTrue(d, first) &&
             hn::AllTrue(dh, hn::Eq(hn::LoadU(dh, px + 16), hn::LoadU(dh, bytes + 16)));
    } else {
      return hn::AllTrue(d, hn::And(first, hn::Eq(hn::LoadU(d, px + 16), hn::LoadU(d, bytes + 16))));
    }
  }
  alignas(16) uint8_t bytes[32];
  bool canMatch;
};

// Loads a group of 8 pixels as B, G, R and fourth-byte lanes.
template <RgbPacking P, class V = hn::Vec<GroupTag>>
HWY_INLINE void LoadGroup(const uint8_t* px, V& b16, V& g16, V& r16, V& x16) {
  const GroupTag d16;
  const hn::FixedTag<uint8_t, 8> d8;
  if constexpr (P == RgbPacking::kRgb16) {
    const hn::FixedTag<uint16_t, 8> du16;
    // Loaded as bytes: a 5-6-5 bitmap may start at any byte address, where
    // a uint16_t pointer would be misaligned.
    const auto p = hn::BitCast(du16, hn::LoadU(hn::Repartition<uint8_t, decltype(du16)>(), px));
    // 5-6-5 fields widened with zero low bits.
    b16 = hn::BitCast(d16, hn::ShiftLeft<3>(hn::And(p, hn::Set(du16, 0x001F))));
    g16 = hn::BitCast(d16, hn::ShiftRight<3>(hn::And(p, hn::Set(du16, 0x07E0))));
    r16 = hn::BitCast(d16, hn::ShiftRight<8>(hn::And(p, hn::Set(du16, 0xF800))));
    x16 = hn::Zero(d16);
  } else {
    hn::Vec<decltype(d8)> b, g, r, x;
    if constexpr (P == RgbPacking::kRgb32) {
      hn::LoadInterleaved4(d8, px, b, g, r, x);
    } else {
      hn::LoadInterleaved3(d8, px, b, g, r);
      x = hn::Zero(d8);
    }
    b16 = hn::PromoteTo(d16, b);
    g16 = hn::PromoteTo(d16, g);
    r16 = hn::PromoteTo(d16, r);
    x16 = hn::PromoteTo(d16, x);
  }
}

// sat8((wb*B + wg*G + wr*R + 1024*X) >> 10) per pixel of the pair lanes.
HWY_INLINE hn::Vec<PairTag> Weigh(hn::Vec<PairTag> b, hn::Vec<PairTag> g, hn::Vec<PairTag> r,
                                  hn::Vec<PairTag> x, int32_t wb, int32_t wg, int32_t wr) {
  const PairTag d32;
  auto sum = hn::Add(hn::Add(hn::Mul(b, hn::Set(d32, wb)), hn::Mul(g, hn::Set(d32, wg))),
                     hn::Add(hn::Mul(r, hn::Set(d32, wr)), hn::ShiftLeft<10>(x)));
  return hn::Min(hn::Max(hn::ShiftRight<10>(sum), hn::Zero(d32)), hn::Set(d32, 255));
}

// Converts one group: 8 Y bytes, then U and V of the even pixels.
template <class V = hn::Vec<GroupTag>>
HWY_INLINE void StoreGroupYuv(V b, V g, V r, V x, uint8_t* y, uint8_t* u, uint8_t* v) {
  const PairTag d32;
  const GroupTag d16;
  auto even = [&](hn::Vec<GroupTag> c) {
    return hn::And(hn::BitCast(d32, c), hn::Set(d32, 0xFFFF));
  };
  auto odd = [&](hn::Vec<GroupTag> c) { return hn::ShiftRight<16>(hn::BitCast(d32, c)); };
  const auto lumaBias = hn::Set(d32, 16), chromaBias = hn::Set(d32, 128);
  const auto evenY = Weigh(even(b), even(g), even(r), hn::Or(even(x), lumaBias), 100, 516, 263);
  const auto oddY = Weigh(odd(b), odd(g), odd(r), hn::Or(odd(x), lumaBias), 100, 516, 263);
  const auto luma = hn::BitCast(d16, hn::Or(evenY, hn::ShiftLeft<16>(oddY)));
  hn::StoreU(hn::DemoteTo(hn::FixedTag<uint8_t, 8>(), luma), hn::FixedTag<uint8_t, 8>(), y);
  const auto chromaX = hn::Or(even(x), chromaBias);
  const hn::FixedTag<uint8_t, 4> d4;
  hn::StoreU(hn::DemoteTo(d4, Weigh(even(b), even(g), even(r), chromaX, 449, -297, -151)), d4,
             u);
  hn::StoreU(hn::DemoteTo(d4, Weigh(even(b), even(g), even(r), chromaX, -72, -376, 449)), d4,
             v);
}

template <RgbPacking P>
void BitmapRowToYuvP(const uint8_t* bitmap, size_t groups, uint32_t key, uint8_t* y,
                     uint8_t* u, uint8_t* v) {
  constexpr size_t kBpp = P == RgbPacking::kRgb32 ? 4 : P == RgbPacking::kRgb24 ? 3 : 2;
  const KeyGroup<kBpp> keyGroup(key);
  for (size_t i = 0; i < groups; ++i) {
    const uint8_t* px = bitmap + 8 * kBpp * i;
    if (keyGroup.matches(px)) continue;
    hn::Vec<GroupTag> b, g, r, x;
    LoadGroup<P>(px, b, g, r, x);
    StoreGroupYuv(b, g, r, x, y + 8 * i, u + 4 * i, v + 4 * i);
  }
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
      return ForGroups<8>(groups, [&](auto d8, size_t g) {
        hn::Vec<decltype(d8)> b, gr, r, x;
        hn::LoadInterleaved4(d8, bitmap + 32 * g, b, gr, r, x);
        hn::StoreU(b, d8, alpha + 8 * g);
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
