// Subpicture arithmetic, scalar form: the alpha blend every mixer applies
// and the RGB to YUV conversion of overlay bitmaps.
#pragma once

#include <cstdint>

#include "adjust/adjustment.h"

namespace yuvblit {

// Alpha bytes weigh the subpicture in sixteenths: 0 shows the picture, 16
// and anything above shows the subpicture.
constexpr int kOpaqueWeight = 16;

inline int blend_weight(uint8_t alpha) { return alpha < kOpaqueWeight ? alpha : kOpaqueWeight; }

// (p * (16 - w) + s * w) >> 4, truncating; never above 255.
inline uint8_t blend(uint8_t picture, uint8_t sub, uint8_t alpha) {
  const int w = blend_weight(alpha);
  return static_cast<uint8_t>((picture * (kOpaqueWeight - w) + sub * w) >> 4);
}

// The half-width mixer's chroma: the alpha byte as it stands, in 16-bit
// arithmetic (wrapping products, saturating sum, logical shift), narrowed
// with unsigned saturation. Equal to blend() for alpha 0..16.
inline uint8_t blend_unclamped(uint8_t picture, uint8_t sub, uint8_t alpha) {
  const int16_t inverse = sat16(kOpaqueWeight - alpha);
  const int16_t p = static_cast<int16_t>(picture * inverse);
  const int16_t s = static_cast<int16_t>(sub * alpha);
  const uint16_t sum = static_cast<uint16_t>(sat16(p + s));
  return sat8(sum >> 4);
}

// Overlay pixel to YUV: BT.601 studio-range weights in 1/1024 with the
// fourth byte X taking part (the constant 16 or 128 is OR-ed into it and
// weighted 1024), arithmetic shift, no rounding.
struct Yuv {
  uint8_t y, u, v;
};

inline uint8_t weigh_bgrx(int b, int g, int r, int x, int wb, int wg, int wr) {
  return sat8(sat16((wb * b + wg * g + wr * r + 1024 * x) >> 10));
}

inline Yuv rgb_to_yuv(uint8_t b, uint8_t g, uint8_t r, uint8_t x) {
  return Yuv{weigh_bgrx(b, g, r, x | 16, 100, 516, 263),
             weigh_bgrx(b, g, r, x | 128, 449, -297, -151),
             weigh_bgrx(b, g, r, x | 128, -72, -376, 449)};
}

}  // namespace yuvblit
