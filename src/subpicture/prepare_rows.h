// Row operations between the host's overlay bitmaps (RGB32 B G R X, RGB24
// B G R, RGB16 5-6-5) and the subpicture planes.
#pragma once

#include <cstddef>
#include <cstdint>

#include "adjust/color.h"

namespace yuvblit {

// Groups of 8 bitmap pixels: a group whose 8 pixels all equal the key is
// skipped (its 8 Y, 4 U and 4 V bytes keep what they held); any other group
// is converted, Y for every pixel and U and V from pixels 0, 2, 4 and 6.
// The key is compared with the pixel as it lies in memory: RGB32 the whole
// word, RGB24 widened with a zero top byte, RGB16 its low 16 bits.
void bitmap_row_to_yuv(const uint8_t* bitmap, size_t groups, RgbPacking packing,
                       uint32_t key, uint8_t* y, uint8_t* u, uint8_t* v);

// Groups of 16 alpha bytes into 16 bitmap pixels, each alpha byte in the
// blue position and the rest of the pixel zero.
void alpha_row_to_bitmap(const uint8_t* alpha, size_t groups, RgbPacking packing,
                         uint8_t* bitmap);

// Alpha bytes read back from bitmap pixels: RGB32 the blue byte, RGB24 the
// byte after each pixel (the next pixel's blue), in groups of 8; RGB16 the
// blue field, in groups of 16.
void bitmap_row_to_alpha(const uint8_t* bitmap, size_t groups, RgbPacking packing,
                         uint8_t* alpha);

// Pixels per group of bitmap_row_to_alpha().
inline size_t alpha_group_pixels(RgbPacking packing) {
  return packing == RgbPacking::kRgb16 ? 16 : 8;
}

}  // namespace yuvblit
