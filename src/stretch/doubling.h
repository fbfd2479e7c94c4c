// Sample operations of the doubling kernels, scalar form: the reference
// for their vector form (doubling-inl.h) and for the tests. The rounded
// average and the sample adjustment are in adjust/adjustment.h.
#pragma once

#include <cstdint>

#include "adjust/adjustment.h"

namespace yuvblit {

// Half-line sample between rows p0 and p1 from the rows around them:
// floor((5 p0 + 5 p1 - pm - p2) / 8), clamped to 0..255. No rounding
// constant, so it leans towards minus infinity.
inline uint8_t four_tap(uint8_t pm, uint8_t p0, uint8_t p1, uint8_t p2) {
  const int t = 5 * p0 + 5 * p1 - (pm + p2);
  return sat8(t >= 0 ? t >> 3 : -((-t + 7) >> 3));
}

// Horizontal doubling of one sample: out[2i] = s[i], out[2i + 1] = the
// rounded average of s[i] and its right neighbour.
inline void double_sample(uint8_t s, uint8_t right, uint8_t* out) {
  out[0] = s;
  out[1] = average(s, right);
}

}  // namespace yuvblit
