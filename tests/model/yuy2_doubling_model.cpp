#include "model/yuy2_doubling_model.h"

#include <functional>
#include <vector>

#include "frame/walk.h"
#include "model/adjust_model.h"
#include "stretch/doubling.h"

namespace yuvblit_test {

using yuvblit::average;
using yuvblit::four_tap;

namespace {

// Where a line's samples of one plane come from: source row `row` alone,
// averaged with row + 1, or filtered with rows row - 1 .. row + 2.
enum class From { kRow, kAverage, kFourTap };
struct Rows {
  From from;
  int64_t row;
};
struct Line {
  Rows luma, chroma;
};

// The lines of a picture, in the order they are written.
//
// Pair k of the averaging kernels: Y[2k]/C[k], avg(Y[2k], Y[2k+1])/C[k],
// Y[2k+1]/avg(C[k], C[k+1]), avg(Y[2k+1], Y[2k+2])/avg(C[k], C[k+1]). The
// pair loop counter starts at height - 2 and runs again while it was above 2
// before each decrement by 2. The last pair: Y[h-2]/C[last],
// avg(Y[h-2], Y[h-1])/C[last], Y[h-1]/C[last] twice.
std::vector<Line> averaged_lines(int32_t height) {
  std::vector<Line> lines;
  int64_t k = 0;
  uint32_t counter = static_cast<uint32_t>(height - 2);
  for (;;) {
    lines.push_back({{From::kRow, 2 * k}, {From::kRow, k}});
    lines.push_back({{From::kAverage, 2 * k}, {From::kRow, k}});
    lines.push_back({{From::kRow, 2 * k + 1}, {From::kAverage, k}});
    lines.push_back({{From::kAverage, 2 * k + 1}, {From::kAverage, k}});
    ++k;
    const bool again = counter > 2;
    counter -= 2;
    if (!again) break;
  }
  lines.push_back({{From::kRow, 2 * k}, {From::kRow, k}});
  lines.push_back({{From::kAverage, 2 * k}, {From::kRow, k}});
  lines.push_back({{From::kRow, 2 * k + 1}, {From::kRow, k}});
  lines.push_back({{From::kRow, 2 * k + 1}, {From::kRow, k}});
  return lines;
}

// The four-tap kernel: pair 0 as above; interior pairs r = 2k (counter from
// height - 6): Y[r]/C[k], F(Y[r-1..r+2])/C[k], Y[r+1]/F(C[k-1..k+2]),
// F(Y[r..r+3])/F(C[k-1..k+2]); then one pair with the luma filtered and the
// chroma averaged; then the last pair as above.
std::vector<Line> four_tap_lines(int32_t height) {
  std::vector<Line> lines = averaged_lines(8);  // pair 0, one interior pair, last pair
  lines.resize(4);
  auto filtered_pair = [&](int64_t k, From chroma) {
    lines.push_back({{From::kRow, 2 * k}, {From::kRow, k}});
    lines.push_back({{From::kFourTap, 2 * k}, {From::kRow, k}});
    lines.push_back({{From::kRow, 2 * k + 1}, {chroma, k}});
    lines.push_back({{From::kFourTap, 2 * k + 1}, {chroma, k}});
  };
  int64_t k = 1;
  uint32_t counter = static_cast<uint32_t>(height - 6);
  for (;;) {
    filtered_pair(k++, From::kFourTap);
    const bool again = counter > 2;
    counter -= 2;
    if (!again) break;
  }
  filtered_pair(k++, From::kAverage);
  lines.push_back({{From::kRow, 2 * k}, {From::kRow, k}});
  lines.push_back({{From::kAverage, 2 * k}, {From::kRow, k}});
  lines.push_back({{From::kRow, 2 * k + 1}, {From::kRow, k}});
  lines.push_back({{From::kRow, 2 * k + 1}, {From::kRow, k}});
  return lines;
}

// Sample i of a line of one plane whose row 0 is at `base`, rows `pitch`
// apart.
uint8_t mixed(Ptr base, int64_t pitch, Rows r, int64_t i) {
  auto at = [&](int64_t row) { return (base + row * pitch).get(i); };
  switch (r.from) {
    case From::kRow: return at(r.row);
    case From::kAverage: return average(at(r.row), at(r.row + 1));
    case From::kFourTap: return four_tap(at(r.row - 1), at(r.row), at(r.row + 1), at(r.row + 2));
  }
  return 0;
}

// Where line L's pass starts. Each pass runs `steps` steps (16 luma, 8
// chroma and `dstPerStep` output bytes each); then the pointers are wound
// back by width (chroma width/2) or moved on by the row step srcPitch -
// width (chroma (srcPitch - width)/2, arithmetic), and the destination by
// dstPitch - dstLineBytes. So every line starts one overrun further on.
struct Passes {
  Passes(const A9Call& c, int64_t steps, int64_t dstPerStep, int64_t dstLineBytes)
      : lumaOverrun(16 * steps - c.width),
        chromaOverrun(8 * steps - (c.width >> 1)),
        chromaRowStep(((c.srcPitch - c.width) >> 1) + (c.width >> 1)),
        chromaPitch(static_cast<uint32_t>(c.srcPitch) >> 1),
        dstOverrun(dstPerStep * steps - dstLineBytes) {}
  int64_t lumaOverrun, chromaOverrun, chromaRowStep, chromaPitch, dstOverrun;
};

// Runs `pass(line, y, u, v, d)` for every line with the bases of its row 0
// (luma, chroma) and its destination start.
void for_each_pass(const A9Ptrs& p, const A9Call& c, const std::vector<Line>& lines,
                   const Passes& at,
                   const std::function<void(const Line&, Ptr, Ptr, Ptr, Ptr)>& pass) {
  for (size_t n = 0; n < lines.size(); ++n) {
    const int64_t L = static_cast<int64_t>(n);
    // The chroma row the cursor stands on is the line's chroma row (its
    // first row when it mixes).
    const int64_t chromaShift = L * at.chromaOverrun +
                                lines[n].chroma.row * (at.chromaRowStep - at.chromaPitch);
    pass(lines[n], p.srcY + L * at.lumaOverrun, p.srcU + chromaShift, p.srcV + chromaShift,
         p.dst + L * (c.dstPitch + at.dstOverrun));
  }
}

// Vertical doubling: ceil-like step count from a counter at width/2 that
// drops by 8 while above 8.
int64_t vertical_steps(const A9Call& c) {
  int64_t steps = 0;
  uint32_t counter = static_cast<uint32_t>(c.width >> 1);
  for (;;) {
    ++steps;
    const bool again = counter > 8;
    counter -= 8;
    if (!again) return steps;
  }
}

void model_vertical(const A9Ptrs& p, const A9Call& c, const std::vector<Line>& lines,
                    const ModelAdjust* a) {
  const int64_t steps = vertical_steps(c);
  const Passes at(c, steps, 32, 2 * int64_t{c.width});
  for_each_pass(p, c, lines, at, [&](const Line& l, Ptr y, Ptr u, Ptr v, Ptr d) {
    for (int64_t i = 0; i < 16 * steps; ++i) {
      uint8_t luma = mixed(y, c.srcPitch, l.luma, i);
      d.put(2 * i, a ? a->Y(luma) : luma);
    }
    for (int64_t i = 0; i < 8 * steps; ++i) {
      uint8_t cu = mixed(u, at.chromaPitch, l.chroma, i);
      uint8_t cv = mixed(v, at.chromaPitch, l.chroma, i);
      d.put(4 * i + 1, a ? a->U(cu) : cu);
      d.put(4 * i + 3, a ? a->V(cv) : cv);
    }
  });
}

// Doubling in both directions: width/16 - 1 ordinary steps, at least one
// (also where that count is negative), then the edge step.
int64_t doubled_steps(const A9Call& c) {
  const int64_t ordinary = c.width / 16 - 1;
  return (ordinary < 1 ? 1 : ordinary) + 1;
}

void model_doubled(const A9Ptrs& p, const A9Call& c, const ModelAdjust* a) {
  const int64_t steps = doubled_steps(c);
  const Passes at(c, steps, 64, 4 * int64_t{c.width});
  // Output sample k (0 .. 2n-1) of a step's n source samples s[0..n-1] of
  // one row doubled: s[k/2], or the average of s[k/2] and its right
  // neighbour: the next step's first sample, or s[n-1] itself in the edge
  // step. `own` and `next` adjust the samples and that next-step neighbour.
  auto doubled = [&](Ptr row, int64_t n, int64_t k, bool edge,
                     const std::function<uint8_t(uint8_t)>& own,
                     const std::function<uint8_t(uint8_t)>& next) {
    const int64_t i = k / 2;
    const uint8_t s = own(row.get(i));
    if (k % 2 == 0) return s;
    if (i < n - 1) return average(s, own(row.get(i + 1)));
    return average(s, edge ? s : next(row.get(n)));
  };
  auto none = [](uint8_t x) { return x; };
  std::function<uint8_t(uint8_t)> ay = none, au = none, av = none;
  if (a) {
    ay = [a](uint8_t x) { return a->Y(x); };
    au = [a](uint8_t x) { return a->U(x); };
    av = [a](uint8_t x) { return a->V(x); };
  }
  // Rows of a line, each doubled first, then averaged when the line mixes.
  auto line_sample = [&](Ptr base, int64_t pitch, Rows r, int64_t n, int64_t k, bool edge,
                         const std::function<uint8_t(uint8_t)>& own,
                         const std::function<uint8_t(uint8_t)>& next) {
    const uint8_t top = doubled(base + r.row * pitch, n, k, edge, own, next);
    if (r.from == From::kRow) return top;
    return average(top, doubled(base + (r.row + 1) * pitch, n, k, edge, own, next));
  };
  for_each_pass(p, c, averaged_lines(c.height), at, [&](const Line& l, Ptr y, Ptr u, Ptr v, Ptr d) {
    for (int64_t t = 0; t < steps; ++t) {
      const bool edge = t == steps - 1;
      auto luma = [&](int64_t k) {
        return line_sample(y + 16 * t, c.srcPitch, l.luma, 16, k, edge, ay, ay);
      };
      const Ptr out = d + 64 * t;
      for (int64_t j = 0; j < 16; ++j) {
        // The U neighbour read from the next step takes the V adjustment.
        out.put(4 * j + 0, luma(2 * j));
        out.put(4 * j + 1, line_sample(u + 8 * t, at.chromaPitch, l.chroma, 8, j, edge, au, av));
        out.put(4 * j + 2, luma(2 * j + 1));
        out.put(4 * j + 3, line_sample(v + 8 * t, at.chromaPitch, l.chroma, 8, j, edge, av, av));
      }
      // Bytes 8-15: the doubled luma of output pixels 0-7.
      for (int64_t k = 0; k < 8; ++k) out.put(8 + k, luma(k));
    }
  });
}

}  // namespace

void model_strech_picture_1X2_yuy2(const A9Ptrs& p, const A9Call& c,
                                   const tag_ajust_contrast_info&) {
  if (c.height < 8) return;
  model_vertical(p, c, averaged_lines(c.height), nullptr);
}

void model_strech_picture_1X2_yuy2_ajust(const A9Ptrs& p, const A9Call& c,
                                         const tag_ajust_contrast_info& r) {
  if (c.height < 8) return;
  const ModelAdjust a(r);
  model_vertical(p, c, four_tap_lines(c.height), &a);
}

void model_strech_picture_2X2_yuy2(const A9Ptrs& p, const A9Call& c,
                                   const tag_ajust_contrast_info&) {
  if (c.height < 8) return;
  model_doubled(p, c, nullptr);
}

void model_strech_picture_2X2_yuy2_ajust(const A9Ptrs& p, const A9Call& c,
                                         const tag_ajust_contrast_info& r) {
  if (c.height < 16) return;
  const ModelAdjust a(r);
  model_doubled(p, c, &a);
}

}  // namespace yuvblit_test
