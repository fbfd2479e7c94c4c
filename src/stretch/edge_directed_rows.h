// Row operations of the edge-directed vertical doubler: one YUY2 line whose
// luma, chroma or both are made between a row and the row below it. Lines
// that take every plane as it is use planar_row_to_yuy2_adjusted
// (load/yuy2_rows.h).
#pragma once

#include <cstddef>
#include <cstdint>

#include "adjust/adjustment.h"

namespace yuvblit {

// The rows one output line is made from. A plane whose `below` row is null
// is taken from its own row as it is; otherwise its samples are made
// between the row and `below`.
struct InterpolatedLine {
  const uint8_t* y;
  const uint8_t* yBelow;
  const uint8_t* u;
  const uint8_t* uBelow;
  const uint8_t* v;
  const uint8_t* vBelow;
};

// Writes 16 + 16 * middleGroups + 16 pixels (32 bytes per group) of
// adjusted YUY2 at out. Interpolated planes take the rounded average of the
// two rows in the first and the last group and the edge-directed average in
// the middle groups; every sample is adjusted after that. Reads the rows
// over the same groups (16 luma, 8 U and 8 V bytes each).
void edge_directed_line(const InterpolatedLine& rows, uint8_t* out,
                        size_t middleGroups, const Adjustment& a);

// Two lines that differ only in their luma, made with one interpolation of
// the chroma: the line of `rows` at out, and at `lumaAsIsOut` the same line
// with luma taken from rows.y as it is (rows.yBelow must be set). Each line
// is stored group by group together with the other, so they must not
// share bytes.
void edge_directed_line_pair(const InterpolatedLine& rows, uint8_t* lumaAsIsOut,
                             uint8_t* out, size_t middleGroups, const Adjustment& a);

}  // namespace yuvblit
