// Row operation of the vertical doubling onto RGB surfaces: one source row
// pair becomes four lines, for a run of 16-pixel groups.
#pragma once

#include <cstddef>
#include <cstdint>

#include "adjust/adjustment.h"
#include "adjust/color.h"

namespace yuvblit {

// The rows one source pair reads and the four lines it writes. Per group:
// 16 luma bytes of y0, y1, y2; 8 U and 8 V bytes of each chroma row; 16
// pixels on each line.
struct DoublingRows {
  const uint8_t* y0;  // the pair's first row
  const uint8_t* y1;  // its second row
  const uint8_t* y2;  // the row below the pair (y1 again at the picture's end)
  const uint8_t* u0;  // the pair's chroma row
  const uint8_t* v0;
  const uint8_t* u1;  // the chroma row below (u0, v0 again at the end)
  const uint8_t* v1;
  uint8_t* d0;
  uint8_t* d1;
  uint8_t* d2;
  uint8_t* d3;
};

// Every sample is adjusted first; averages are rounded averages of adjusted
// samples, and chroma c = (u, v):
//   d0: y0 with c0                d1: avg(y0, y1) with c0
//   d2: y1 with avg(c0, c1)       d3: avg(y1, y2) with avg(c0, c1)
// For each run of groups the four lines are stored in that order.
void double_pair_to_rgb(const DoublingRows& rows, size_t groups, const RgbFormat& format,
                        const Adjustment& adjust);

}  // namespace yuvblit
