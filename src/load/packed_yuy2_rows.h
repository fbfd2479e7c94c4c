// Row operations for packed YUY2 sources (Y0 U Y1 V per pixel pair). Each
// takes pointers to the first group of the two rows of a pair and a count of
// groups; the second row keeps its own luma and takes the first row's
// chroma.
#pragma once

#include <cstddef>
#include <cstdint>

#include "adjust/adjustment.h"
#include "load/rgb_rows.h"

namespace yuvblit {

// 8 pixels: 16 source bytes in, 16 YUY2 bytes out per row. Without
// adjustment (`adjust` null) the first row is copied as it is; with it, luma
// gets the luma adjustment, U and V bytes their chroma adjustments.
void packed_pair_to_yuy2(const uint8_t* s0, const uint8_t* s1, uint8_t* d0,
                         uint8_t* d1, size_t groups, const Adjustment* adjust);

// 16 pixels: 32 source bytes in, 16 pixels in `format` out per row.
// `adjust` null: no adjustment.
void packed_pair_to_rgb(const uint8_t* s0, const uint8_t* s1, uint8_t* d0,
                        uint8_t* d1, size_t groups, const RgbFormat& format,
                        const Adjustment* adjust);

}  // namespace yuvblit
