// Row operations of the planar-to-YUY2 doubling kernels: one output line
// from the source rows around it, in 16-pixel groups (16 luma, 8 U and 8 V
// bytes in). They take row pointers and a group count and know nothing of
// pitches.
#pragma once

#include <cstddef>
#include <cstdint>

#include "adjust/adjustment.h"

namespace yuvblit {

// How a line's samples of one plane come from the source rows.
enum class VerticalMix : uint8_t {
  kRow,      // the row itself
  kAverage,  // rounded average of the row and the row below
  kFourTap,  // four-tap filter between the row and the row below
};

// The source rows of one plane that a line reads: `row` and, as its mix
// needs them, the row above it and the two below it.
struct LineTaps {
  const uint8_t* above;
  const uint8_t* row;
  const uint8_t* below;
  const uint8_t* below2;
  VerticalMix mix;
};

// Vertical doubling: one YUY2 line, 32 bytes per group, from the mixed
// luma, U and V samples.
void mixed_line_to_yuy2(const LineTaps& y, const LineTaps& u, const LineTaps& v,
                        uint8_t* dst, size_t groups);

// The same with every sample adjusted after the mix.
void mixed_line_to_yuy2_adjusted(const LineTaps& y, const LineTaps& u, const LineTaps& v,
                                 uint8_t* dst, size_t groups, const Adjustment& a);

// Two such lines that share their chroma: at `lumaAsIsOut` the line with
// the luma of y.row as it is, at dst the line with y's mix. The chroma is
// mixed and adjusted once for both. Each group is stored to both lines
// before the next, so the lines must not share bytes.
void mixed_line_pair_to_yuy2_adjusted(const LineTaps& y, const LineTaps& u, const LineTaps& v,
                                      uint8_t* lumaAsIsOut, uint8_t* dst, size_t groups,
                                      const Adjustment& a);

// Doubling in both directions: one YUY2 line, 64 bytes per group, each row
// doubled horizontally before any vertical average (mixes kRow and kAverage
// only). Every group but the last takes its right neighbours from the
// first samples of the next group; the last group repeats its own last
// samples and reads nothing beyond itself. groups >= 1.
void doubled_line_to_yuy2(const LineTaps& y, const LineTaps& u, const LineTaps& v,
                          uint8_t* dst, size_t groups);

// The same with every sample read adjusted first. The U neighbour read from
// the next group is adjusted with the V adjustment's offset (and the chroma
// gain); the last group's repeated U keeps the U adjustment.
void doubled_line_to_yuy2_adjusted(const LineTaps& y, const LineTaps& u, const LineTaps& v,
                                   uint8_t* dst, size_t groups, const Adjustment& a);

}  // namespace yuvblit
