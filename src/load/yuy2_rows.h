// Row operations that write YUY2 (Y0 U Y1 V) from planar 4:2:0 rows. Each
// takes pointers to the first group and a count of 16-pixel groups; a group
// reads 16 luma, 8 U and 8 V bytes.
#pragma once

#include <cstddef>
#include <cstdint>

#include "adjust/adjustment.h"

namespace yuvblit {

// Both rows of a pair with shared chroma: 32 bytes per group into d0, and
// bytes 8..31 of every 32-byte group into d1 (bytes 0..7 are left as they
// are).
void planar_pair_to_yuy2(const uint8_t* y0, const uint8_t* y1,
                         const uint8_t* u, const uint8_t* v, uint8_t* d0,
                         uint8_t* d1, size_t groups);

// One row, luma and chroma adjusted: 32 bytes per group.
void planar_row_to_yuy2_adjusted(const uint8_t* y, const uint8_t* u,
                                 const uint8_t* v, uint8_t* d, size_t groups,
                                 const Adjustment& a);

// Two rows over the same chroma, adjusted: y0 into d0 and y1 into d1, 32
// bytes per group each, stored group by group to both, so d0 and d1 must
// not share bytes.
void planar_rows_to_yuy2_adjusted(const uint8_t* y0, const uint8_t* y1, const uint8_t* u,
                                  const uint8_t* v, uint8_t* d0, uint8_t* d1, size_t groups,
                                  const Adjustment& a);

// One row, luma adjusted, chroma bytes 0x80: 32 bytes per group.
void planar_row_to_yuy2_mono(const uint8_t* y, uint8_t* d, size_t groups,
                             const Adjustment& a);

// One row at half width: pixel pairs averaged (rounding up), then adjusted;
// 16 bytes per group.
void planar_row_to_half_yuy2(const uint8_t* y, const uint8_t* u,
                             const uint8_t* v, uint8_t* d, size_t groups,
                             const Adjustment& a);

}  // namespace yuvblit
