// Row operation of the packed-YUY2-source doubling kernels: one output
// line from packed YUY2 rows, each doubled horizontally, in strips of 16
// source pixels (32 bytes in, 64 bytes out). It takes row pointers and a
// strip count and knows nothing of pitches.
#pragma once

#include <cstddef>
#include <cstdint>

#include "adjust/adjustment.h"

namespace yuvblit {

// One doubled line of `strips` strips at dst: the doubled `row`, or with
// `below` non-null the rounded average of the doubled `row` and the
// doubled `below`. Every strip takes its right neighbours from the first
// pixel pair of the next strip, except the last one when `endsAtEdge`,
// which repeats its own last samples and reads nothing beyond itself.
// `adjust` non-null: every sample read is adjusted first, the U and V
// neighbours read from the next strip with their offsets exchanged (the
// chroma gain is common, so the U neighbour takes the V adjustment and the
// V neighbour the U adjustment).
void packed_doubled_line_to_yuy2(const uint8_t* row, const uint8_t* below, uint8_t* dst,
                                 size_t strips, bool endsAtEdge, const Adjustment* adjust);

// The doubled `row` (as above, without `below`) stored at `line` and kept
// at `keep` (scratch of 64 * strips bytes); with `above` non-null (the kept
// doubled row above), also the rounded average of the two at `between`,
// the same bytes as the averaging form gives. Each source row is doubled
// and adjusted once for its own line and both averaged lines beside it.
// Sources and destinations must not share bytes.
void packed_doubled_row_kept(const uint8_t* row, const uint8_t* above, uint8_t* between,
                             uint8_t* line, uint8_t* keep, size_t strips, bool endsAtEdge,
                             const Adjustment* adjust);

}  // namespace yuvblit
