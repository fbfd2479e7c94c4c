// Row operations that convert YUV to RGB surfaces. Each takes pointers to
// the first group and a count of 16-pixel groups.
#pragma once

#include <cstddef>
#include <cstdint>

#include "adjust/adjustment.h"
#include "adjust/color.h"
#include "yuvblit.h"

namespace yuvblit {

// Two rows of a planar 4:2:0 frame sharing one chroma row: per group 16 luma
// bytes of each row, 8 U and 8 V bytes; 16 pixels to d0 and 16 to d1.
// `adjust` null: no adjustment.
void planar_pair_to_rgb(const uint8_t* y0, const uint8_t* y1, const uint8_t* u,
                        const uint8_t* v, uint8_t* d0, uint8_t* d1, size_t groups,
                        const RgbFormat& format, const Adjustment* adjust);

}  // namespace yuvblit
