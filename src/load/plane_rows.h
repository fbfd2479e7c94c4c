// Row operations on single planes: copy a run of bytes, adjust a run of
// bytes, and keep the odd samples of 16-sample groups while adjusting them.
// They take pointers and a length and know nothing of pitches. The source
// and destination runs of one call must not share bytes, except that
// adjust_bytes may work in place (src == dst).
#pragma once

#include <cstddef>
#include <cstdint>

#include "adjust/adjustment.h"

namespace yuvblit {

// dst[i] = src[i] for i < bytes.
void copy_bytes(const uint8_t* src, uint8_t* dst, size_t bytes);

// dst[i] = adjust_sample(src[i], a) for i < bytes.
void adjust_bytes(const uint8_t* src, uint8_t* dst, size_t bytes,
                  SampleAdjust a);

// One row of a batch: where it is read and where it is written.
struct RowRun {
  const uint8_t* src;
  uint8_t* dst;
};

// adjust_bytes over each of `count` rows of `bytes` bytes, in order; the
// rows' destinations share no bytes. One call takes many rows, so the
// adjustment is set up once for them.
void adjust_rows(const RowRun* rows, size_t count, size_t bytes, SampleAdjust a);

// Per group of 16 source samples, the 8 odd-indexed ones (1, 3, ..., 15),
// adjusted: dst[8g + i] = adjust_sample(src[16g + 2i + 1], a). Reads 16 and
// writes 8 bytes per group.
void odd_samples_adjusted(const uint8_t* src, uint8_t* dst, size_t groups,
                          SampleAdjust a);

// Group by group (g = 0 .. groups-1), row by row (r = 0 .. rows-1):
// dsts[r][gB .. gB+B) = srcs[r][gB .. gB+B), B = groupBytes (8 or 16). The
// store order of the per-group walk, for destination rows that share bytes.
void copy_groups_interleaved(const uint8_t* const* srcs, uint8_t* const* dsts,
                             size_t rows, size_t groupBytes, size_t groups);

}  // namespace yuvblit
