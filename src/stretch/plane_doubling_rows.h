// Row operations of the one-plane doubling kernels: vertical averaging with
// adjustment, and horizontal doubling of one row or of a row pair, plain or
// adjusted. They take pointers and a group count and know nothing of
// pitches. Where one call writes two lines it stores them group by group,
// the first line's group before the second's; callers whose lines share
// bytes run them one group at a time (run_row_groups). Sources and
// destinations must not share bytes.
#pragma once

#include <cstddef>
#include <cstdint>

#include "adjust/adjustment.h"

namespace yuvblit {

// Groups of 16 samples: upper[i] = adjust(a[i]), then
// lower[i] = adjust(avg(a[i], b[i])).
void adjust_row_and_average(const uint8_t* a, const uint8_t* b, uint8_t* upper, uint8_t* lower,
                            size_t groups, SampleAdjust adjust);

// Horizontal doubling H of `groups` groups of 8 samples s into 16 bytes
// each: out[2i] = s[i], out[2i + 1] = avg(s[i], s[i + 1]). The neighbour of
// the run's last sample is the byte after the run, except with `edge`,
// where it is the sample itself and nothing past the run is read.
void double_row(const uint8_t* src, uint8_t* dst, size_t groups, bool edge);

// adjust(H(src)); reads the byte after the run.
void double_row_adjusted(const uint8_t* src, uint8_t* dst, size_t groups, SampleAdjust adjust);

// Rows a and b doubled: between = avg(H(a), H(b)), then below = H(b).
// `edge` as for double_row, for both rows.
void double_pair(const uint8_t* a, const uint8_t* b, uint8_t* between, uint8_t* below,
                 size_t groups, bool edge);

// upper = adjust(H(a)), then between = adjust(avg(H(a), H(b))); reads the
// byte after the run of both rows.
void double_pair_adjusted(const uint8_t* a, const uint8_t* b, uint8_t* upper, uint8_t* between,
                          size_t groups, SampleAdjust adjust);

}  // namespace yuvblit
