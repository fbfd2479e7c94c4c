// Where a planar 4:2:0 walk stands: luma, U, V and destination pointers.
#pragma once

#include <cstddef>
#include <cstdint>

#include "frame/walk.h"

namespace yuvblit {

struct PlanarCursor {
  const uint8_t* y;
  const uint8_t* u;
  const uint8_t* v;
  uint8_t* d;

  PlanarCursor(void* srcY, void* srcU, void* srcV, void* dst)
      : y(static_cast<const uint8_t*>(srcY)),
        u(static_cast<const uint8_t*>(srcU)),
        v(static_cast<const uint8_t*>(srcV)),
        d(static_cast<uint8_t*>(dst)) {}

  // After a row of `groups` groups: luma 16, chroma 8 and destination
  // `dstPerGroup` bytes per group.
  void advance_groups(size_t groups, size_t dstPerGroup) {
    y += 16 * groups;
    u += 8 * groups;
    v += 8 * groups;
    d += dstPerGroup * groups;
  }
  void step_luma(int64_t bytes) { y = step(y, bytes); }
  void step_chroma(int64_t bytes) {
    u = step(u, bytes);
    v = step(v, bytes);
  }
  void step_dst(int64_t bytes) { d = step(d, bytes); }
};

// The walk of the kernels that do both rows of a pair group by group with
// shared chroma: `pair(y0, y1, u, v, d0, d1, groups)` per run of groups. Row
// pairs end with steps computed from `width` (bytesPerPixel destination
// bytes per pixel), so other widths drift right.
template <class Pair>
void walk_row_pairs(PlanarCursor c, int32_t width, int32_t height, int32_t srcPitch,
                    int32_t dstPitch, size_t bytesPerPixel, Pair pair) {
  const size_t groups = passes(static_cast<uint32_t>(width), 16);
  const size_t dstPerGroup = 16 * bytesPerPixel;
  uint32_t rows = static_cast<uint32_t>(height);
  do {
    const uint8_t* y1 = step(c.y, srcPitch);
    uint8_t* d1 = step(c.d, dstPitch);
    run_row_groups({c.d, d1}, dstPerGroup, groups, [&](size_t g, size_t n) {
      pair(c.y + 16 * g, y1 + 16 * g, c.u + 8 * g, c.v + 8 * g, c.d + dstPerGroup * g,
           d1 + dstPerGroup * g, n);
    });
    c.advance_groups(groups, dstPerGroup);
    c.step_luma(2 * int64_t{srcPitch} - width);
    c.step_chroma(half(wrap32(int64_t{srcPitch} - width)));
    c.step_dst(2 * int64_t{dstPitch} - static_cast<int64_t>(bytesPerPixel) * width);
  } while (more(rows, 2));
}

}  // namespace yuvblit
