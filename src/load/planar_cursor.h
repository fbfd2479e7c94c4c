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

}  // namespace yuvblit
