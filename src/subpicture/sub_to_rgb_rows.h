// Row operation that shows an AYUY2 subpicture by itself on an RGB surface:
// each pixel's alpha chooses the overlay colour key, its converted colour,
// or black with nothing else in it. It takes the positions of the first
// group and a count of 16-pixel groups; a group reads 16 alpha and 16 luma
// bytes and 8 U and 8 V samples.
#pragma once

#include <cstddef>
#include <cstdint>

#include "adjust/adjustment.h"
#include "adjust/color.h"

namespace yuvblit {

struct SubpictureRow {
  const uint8_t* alpha;
  const uint8_t* y;
  const uint8_t* u;
  const uint8_t* v;
  uint8_t* dst;
};

// Alpha 0 gives `key`, 1..127 the pixel's colour (its samples adjusted
// first unless `adjust` is null), 128..255 R = G = B = 0; all three are
// stored in `format` (RGB32 with a zero fourth byte).
void subpicture_row_to_rgb(const SubpictureRow& row, size_t groups, const RgbFormat& format,
                           Rgb key, const Adjustment* adjust);

}  // namespace yuvblit
