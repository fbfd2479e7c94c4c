#include "model/edge_directed_model.h"

#include <cstddef>
#include <cstdlib>
#include <sstream>

#include "frame/walk.h"
#include "model/adjust_model.h"

namespace yuvblit_test {

using yuvblit::average;
using yuvblit::more;

std::string describe(const OptCall& c) {
  std::ostringstream s;
  s << "lineMode " << c.lineMode << ", lumaWidth " << c.lumaWidth << ", top " << c.top
    << ", height " << c.height << ", dstPitch " << c.dstPitch;
  return s.str();
}

namespace {

// The sample between rows a and b at x, x being in the sub-group of four
// that starts at x0.
uint8_t edge_directed(Ptr a, Ptr b, int64_t x0, int64_t x) {
  int activity = 0;
  for (int k = 0; k < 4; ++k) activity += std::abs(b.get(x0 + k) - a.get(x0 + k));
  if (activity <= 32) return average(a.get(x), b.get(x));
  // Cost SAD * 8 + direction index, smallest wins.
  int16_t best = 0x7FFF;
  for (int i = 0; i < 5; ++i) {
    const int d = i - 2;
    int sad = 0;
    for (int j = 0; j < 4; ++j) sad += std::abs(a.get(x + d + j) - b.get(x - d + j));
    const int16_t cost = static_cast<int16_t>(sad * 8 + i);
    if (cost < best) best = cost;
  }
  const int d = (best & 7) - 2;
  return average(a.get(x + d), b.get(x - d));
}

// One output line: luma from y, or between y and y + 2 cstep; chroma from
// u and v, or between them and the rows cstep below.
void line(Ptr y, Ptr u, Ptr v, Ptr out, int32_t count, int32_t cstep, bool lumaBetween,
          bool chromaBetween, const ModelAdjust& a) {
  int64_t groups;
  if (!lumaBetween && !chromaBetween) {
    groups = count <= 0 ? 1 : (int64_t{count} + 15) / 16;
  } else {
    // First group, the middle loop (its counter clamped at 0), last group.
    uint32_t counter = count < 32 ? 0 : static_cast<uint32_t>(count - 32);
    groups = 2;
    do ++groups;
    while (more(counter, 16));
  }
  for (int64_t g = 0; g < groups; ++g) {
    const bool outer = g == 0 || g == groups - 1;
    auto sample = [&](Ptr row, Ptr below, bool between, int64_t x) -> uint8_t {
      if (!between) return row.get(x);
      if (outer) return average(row.get(x), below.get(x));
      return edge_directed(row, below, x - x % 4, x);
    };
    for (int64_t i = 0; i < 8; ++i) {
      const int64_t x = 16 * g + 2 * i, c = 8 * g + i;
      out.put(32 * g + 4 * i + 0, a.Y(sample(y, y + 2 * int64_t{cstep}, lumaBetween, x)));
      out.put(32 * g + 4 * i + 1, a.U(sample(u, u + cstep, chromaBetween, c)));
      out.put(32 * g + 4 * i + 2, a.Y(sample(y, y + 2 * int64_t{cstep}, lumaBetween, x + 1)));
      out.put(32 * g + 4 * i + 3, a.V(sample(v, v + cstep, chromaBetween, c)));
    }
  }
}

}  // namespace

void model_strech_opt_yuy2_ajust(const OptPtrs& p, const OptCall& c,
                                 const tag_ajust_contrast_info& adjust) {
  if (c.height < 8) return;
  // The record's named fields are read; its last byte is touched too, so
  // the test's record sits at the alignment of a real one.
  auto read = [&](size_t offset, size_t bytes) {
    for (size_t i = 0; i < bytes; ++i) p.record.get(static_cast<int64_t>(offset + i));
  };
  read(offsetof(tagVideoFrame, lineMode), sizeof(int32_t));
  read(offsetof(tagVideoFrame, planeY), 3 * sizeof(unsigned char*));
  read(offsetof(tagVideoFrame, lumaWidth), sizeof(int32_t));
  read(sizeof(tagVideoFrame) - 1, 1);

  const ModelAdjust a(adjust);
  const int32_t width = c.lumaWidth;
  const bool field = c.lineMode == 1;
  const int32_t rowStep = field ? 2 * width : width;
  const int32_t cstep = rowStep >> 1;
  const int32_t start = field ? c.top * width : (c.top * width) >> 1;
  Ptr y = p.planeY + start, u = p.planeU + (start >> 2), v = p.planeV + (start >> 2);
  Ptr d = p.dst;
  auto put_line = [&](Ptr luma, bool lumaBetween, bool chromaBetween) {
    line(luma, u, v, d, width, cstep, lumaBetween, chromaBetween, a);
    d += c.dstPitch;
  };
  for (int32_t k = 0; k < c.height / 2 - 1; ++k) {
    put_line(y, false, false);
    put_line(y, true, false);
    put_line(y + rowStep, false, true);
    put_line(y + rowStep, true, true);
    y += 2 * rowStep;
    u += cstep;
    v += cstep;
  }
  put_line(y, false, false);
  put_line(y, true, false);
  put_line(y + rowStep, false, false);
  put_line(y + rowStep, false, false);
}

}  // namespace yuvblit_test
