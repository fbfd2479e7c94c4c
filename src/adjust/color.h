// Fixed-point YUV to RGB conversion and the RGB packings, scalar form. Every
// product keeps the signed high half (truncation toward minus infinity) and
// the operands are pre-shifted so that truncation falls where it does.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "adjust/adjustment.h"
#include "yuvblit.h"

namespace yuvblit {

namespace yuv_constants {
constexpr int16_t kLumaBlack = 16;
constexpr int16_t kChromaZero = 128;
constexpr int16_t kYScale = 0x4A7F;  // on (Y-16) << 2
constexpr int16_t kRFromV = 0x6625;  // on (V-128) << 2
constexpr int16_t kGFromU = 0x6419;  // on (U-128)
constexpr int16_t kGFromV = 0x6811;  // on (V-128) << 1
constexpr int16_t kBFromU = 0x4094;  // on (U-128) << 3
}  // namespace yuv_constants

inline int16_t mulhi(int16_t a, int16_t k) {
  return static_cast<int16_t>((int32_t{a} * k) >> 16);
}
inline int16_t shl16(int16_t a, int n) {
  return static_cast<int16_t>(static_cast<uint16_t>(a) << n);
}

// The four terms one chroma pair contributes to each of its pixels.
struct ChromaTerms {
  int16_t gU, bU, gV, rV;
};

inline ChromaTerms chroma_terms(uint8_t U, uint8_t V) {
  using namespace yuv_constants;
  const int16_t u = static_cast<int16_t>(U - kChromaZero);
  const int16_t v = static_cast<int16_t>(V - kChromaZero);
  return ChromaTerms{mulhi(u, kGFromU), mulhi(shl16(u, 3), kBFromU),
                     mulhi(shl16(v, 1), kGFromV), mulhi(shl16(v, 2), kRFromV)};
}

struct Rgb {
  uint8_t r, g, b;
};

inline Rgb yuv_to_rgb(uint8_t Y, const ChromaTerms& t) {
  using namespace yuv_constants;
  const int16_t y = mulhi(shl16(static_cast<int16_t>(Y - kLumaBlack), 2), kYScale);
  return Rgb{sat8(sat16(y + t.rV)), sat8(sat16(sat16(y - t.gU) - t.gV)),
             sat8(sat16(y + t.bU))};
}

// RGB16: (R & maskR) << 8 | (G & maskG) << shiftG | (B & maskB) >> shiftB.
struct Rgb16Layout {
  uint8_t maskR, maskG, shiftG, maskB, shiftB;
};

// Layouts 0..3: 5-6-5, 5-5-5 with bit 0 clear, 6-6-4, 6-5-5. Kernels that
// read a layout return without writing for values above 3.
constexpr Rgb16Layout kRgb16Layouts[4] = {
    {0xF8, 0xFC, 3, 0xF8, 3},
    {0xF8, 0xF8, 3, 0xF8, 2},
    {0xFC, 0xFC, 2, 0xF0, 4},
    {0xFC, 0xF8, 2, 0xF8, 3},
};

inline uint16_t pack_rgb16(const Rgb& c, const Rgb16Layout& l) {
  return static_cast<uint16_t>(((c.r & l.maskR) << 8) | ((c.g & l.maskG) << l.shiftG) |
                               ((c.b & l.maskB) >> l.shiftB));
}

enum class RgbPacking { kRgb32, kRgb24, kRgb16 };

inline size_t bytes_per_pixel(RgbPacking p) {
  return p == RgbPacking::kRgb32 ? 4 : p == RgbPacking::kRgb24 ? 3 : 2;
}

// The surface format a row operation writes.
struct RgbFormat {
  RgbPacking packing;
  Rgb16Layout layout;  // RGB16 only
};

// The format an RGB kernel writes. The RGB16 kernels take their layout from
// the record; a value above 3 (compared as unsigned) means: write nothing.
inline std::optional<RgbFormat> rgb_format(RgbPacking packing,
                                           const tag_ajust_contrast_info* adjust) {
  if (packing != RgbPacking::kRgb16) return RgbFormat{packing, {}};
  if (adjust->rgb16Layout > 3) return std::nullopt;
  return RgbFormat{packing, kRgb16Layouts[adjust->rgb16Layout]};
}

}  // namespace yuvblit
