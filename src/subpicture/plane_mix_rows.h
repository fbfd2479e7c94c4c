// Row operation of the mixers onto YV12 surfaces: one plane row, mixed and
// optionally adjusted, in steps of 8 samples. It takes positions and a step
// count and knows nothing of pitches.
#pragma once

#include <cstddef>
#include <cstdint>

#include "adjust/adjustment.h"

namespace yuvblit {

// Where one output plane row takes its samples from. The picture row is the
// rounded average of two rows (the same row twice takes it as it is).
struct PlaneMixRow {
  const uint8_t* picture[2];
  const uint8_t* sub;
  const uint8_t* alpha;
  uint8_t* dst;
};

// Which alpha byte weighs sample i: alpha[i] (luma), or alpha[2i + 1], the
// right-hand pixel of the pair the chroma sample covers (16 alpha bytes
// per step of 8 samples).
enum class AlphaSampling { kPerSample, kRightOfPair };

// dst[i] = blend(picture[i], sub[i], weight) for i < 8 * steps, the weight
// clamped to 16, then adjusted by *adjust when it is given.
void mix_plane_row(const PlaneMixRow& row, size_t steps, AlphaSampling alpha,
                   const SampleAdjust* adjust);

}  // namespace yuvblit
