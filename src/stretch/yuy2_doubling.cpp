// Planar 4:2:0 frames doubled onto YUY2 surfaces, vertically (1X2) and in
// both directions (2X2): the walks.
//
// Every output line is its own pass over its source rows in 16-pixel
// steps. After a pass the pointers move back by `width` (luma) and
// `width` / 2 (chroma), or on to the next row by the row steps computed
// from `width`, so a width the steps do not cover exactly makes every
// later line start further along by the difference.
#include <cstddef>
#include <type_traits>

#include "adjust/adjustment.h"
#include "frame/walk.h"
#include "stretch/yuy2_doubling_rows.h"
#include "yuvblit.h"

using namespace yuvblit;

namespace {

constexpr VerticalMix kRow = VerticalMix::kRow;
constexpr VerticalMix kAverage = VerticalMix::kAverage;
constexpr VerticalMix kFourTap = VerticalMix::kFourTap;

// How far a line's pass runs and how the walk steps between lines.
struct LineGeometry {
  int32_t width;
  int32_t srcPitch;
  int32_t dstPitch;
  size_t steps;          // 16-pixel steps per line
  size_t dstPerStep;     // output bytes per step
  int32_t dstLineBytes;  // what the destination step subtracts per line
};

// The line schedule of the doubling kernels over luma, chroma and output
// cursors. `op(y, u, v, dst, steps)` writes one line from the taps of
// each plane around the cursors. `pairOp(y, u, v, firstDst, dst, steps)`,
// where given, writes two lines that share their chroma in one pass: at
// firstDst the line with y's row as it is, at dst the line with y's mix.
template <class LineOp, class PairOp = std::nullptr_t>
class DoublingWalk {
 public:
  DoublingWalk(void* srcY, void* srcU, void* srcV, void* dst, const LineGeometry& g,
               LineOp op, PairOp pairOp = nullptr)
      : y_(static_cast<const uint8_t*>(srcY)),
        u_(static_cast<const uint8_t*>(srcU)),
        v_(static_cast<const uint8_t*>(srcV)),
        d_(static_cast<uint8_t*>(dst)),
        g_(g),
        // Chroma rows are half the luma pitch apart, halved as unsigned.
        chromaPitch_(static_cast<uint32_t>(g.srcPitch) >> 1),
        op_(op),
        pairOp_(pairOp) {}

  // Source rows r, r + 1 with chroma row c: r / c; r mixed with the rows
  // below / c; r + 1 / c mixed with the rows below; r + 1 mixed / c mixed.
  // Leaves the cursors on rows r + 2 and c + 1.
  void pair(VerticalMix luma, VerticalMix chroma) {
    row_then_mixed(luma, kRow, false);
    row_then_mixed(luma, chroma, true);
  }

  // The last two rows (h - 2, h - 1) with the last chroma row: chroma is
  // not mixed and row h - 1 is written twice, so nothing below the picture
  // is read.
  void last_pair() {
    row_then_mixed(kAverage, kRow, false);
    line(kRow, kRow, false, false);
    line(kRow, kRow, false, false);
  }

 private:
  static LineTaps taps(const uint8_t* row, int64_t pitch, VerticalMix mix) {
    return LineTaps{step(row, -pitch), row, step(row, pitch), step(row, 2 * pitch), mix};
  }

  // Row r as it is, then r mixed with the rows below, both over the same
  // chroma; leaves the cursors on row r + 1 (and the next chroma row with
  // nextChromaRow). The pair operation makes both in one pass where the
  // second line starts on the same source bytes as the first (a pass
  // covers the width exactly) and the two lines share no bytes.
  void row_then_mixed(VerticalMix luma, VerticalMix chroma, bool nextChromaRow) {
    if constexpr (!std::is_same_v<PairOp, std::nullptr_t>) {
      const size_t bytes = g_.dstPerStep * g_.steps;
      uint8_t* first = d_;
      const LineTaps y = taps(y_, g_.srcPitch, luma);
      const LineTaps u = taps(u_, chromaPitch_, chroma), v = taps(v_, chromaPitch_, chroma);
      if (static_cast<int64_t>(16 * g_.steps) == g_.width &&
          !overlaps(first, bytes, next_line(first), bytes)) {
        advance(false, false);
        pairOp_(y, u, v, first, d_, g_.steps);
        advance(true, nextChromaRow);
        return;
      }
    }
    line(kRow, chroma, false, false);
    line(luma, chroma, true, nextChromaRow);
  }

  void line(VerticalMix luma, VerticalMix chroma, bool nextRow, bool nextChromaRow) {
    op_(taps(y_, g_.srcPitch, luma), taps(u_, chromaPitch_, chroma),
        taps(v_, chromaPitch_, chroma), d_, g_.steps);
    advance(nextRow, nextChromaRow);
  }

  uint8_t* next_line(uint8_t* d) const {
    return step(d, static_cast<int64_t>(g_.dstPerStep * g_.steps) +
                       wrap32(int64_t{g_.dstPitch} - g_.dstLineBytes));
  }

  void advance(bool nextRow, bool nextChromaRow) {
    const int64_t lumaRun = 16 * static_cast<int64_t>(g_.steps);
    const int64_t chromaRun = 8 * static_cast<int64_t>(g_.steps);
    const int32_t rowStep = wrap32(int64_t{g_.srcPitch} - g_.width);
    y_ = step(y_, lumaRun + (nextRow ? rowStep : -int64_t{g_.width}));
    const int64_t chromaStep = nextChromaRow ? half(rowStep) : -int64_t{half(g_.width)};
    u_ = step(u_, chromaRun + chromaStep);
    v_ = step(v_, chromaRun + chromaStep);
    d_ = next_line(d_);
  }

  const uint8_t* y_;
  const uint8_t* u_;
  const uint8_t* v_;
  uint8_t* d_;
  LineGeometry g_;
  int64_t chromaPitch_;
  LineOp op_;
  PairOp pairOp_;
};

template <class LineOp, class PairOp = std::nullptr_t>
DoublingWalk<LineOp, PairOp> doubling_walk(void* srcY, void* srcU, void* srcV, void* dst,
                                           const LineGeometry& g, LineOp op,
                                           PairOp pairOp = nullptr) {
  return DoublingWalk<LineOp, PairOp>(srcY, srcU, srcV, dst, g, op, pairOp);
}

// Source rows in pairs with rounded averages between them (the pair
// counter starts at height - 2 and drops by 2 while above 2), then the
// last pair.
template <class Walk>
void averaged_schedule(Walk& walk, int32_t height) {
  uint32_t rows = static_cast<uint32_t>(height) - 2;
  do {
    walk.pair(kAverage, kAverage);
  } while (more(rows, 2));
  walk.last_pair();
}

// The first pair averaged; interior pairs filtered with four taps (counter
// from height - 6); the pair before the last filtered for luma but
// averaged for chroma, whose filter would read below the last chroma row;
// then the last pair.
template <class Walk>
void four_tap_schedule(Walk& walk, int32_t height) {
  walk.pair(kAverage, kAverage);
  uint32_t rows = static_cast<uint32_t>(height) - 6;
  do {
    walk.pair(kFourTap, kFourTap);
  } while (more(rows, 2));
  walk.pair(kFourTap, kAverage);
  walk.last_pair();
}

// Vertical doubling: 16-pixel steps while a counter from width / 2 drops
// by 8 and was above 8; 32 output bytes per step, 2 * width per line.
LineGeometry vertical_geometry(int32_t width, int32_t srcPitch, int32_t dstPitch) {
  return {width, srcPitch, dstPitch, passes(static_cast<uint32_t>(half(width)), 8), 32,
          wrap32(2 * int64_t{width})};
}

// Doubling in both directions: width / 16 - 1 ordinary steps, at least one,
// then the edge step; 64 output bytes per step, 4 * width per line. Below
// 32 pixels (where that count is not positive and a down-counter would
// wrap) the line is one ordinary step and the edge step.
LineGeometry doubled_geometry(int32_t width, int32_t srcPitch, int32_t dstPitch) {
  const int32_t ordinary = width / 16 - 1;
  return {width, srcPitch, dstPitch, static_cast<size_t>(ordinary > 1 ? ordinary : 1) + 1, 64,
          wrap32(4 * int64_t{width})};
}

}  // namespace

YUVBLIT_A9(strech_picture_1X2_yuy2) {
  (void)adjust;
  if (height < 8) return;
  auto walk = doubling_walk(srcY, srcU, srcV, dst, vertical_geometry(width, srcPitch, dstPitch),
                            mixed_line_to_yuy2);
  averaged_schedule(walk, height);
}

YUVBLIT_A9(strech_picture_1X2_yuy2_ajust) {
  (void)adjust;
  if (height < 8) return;
  const Adjustment a = current_adjustment();
  auto walk = doubling_walk(
      srcY, srcU, srcV, dst, vertical_geometry(width, srcPitch, dstPitch),
      [&a](const LineTaps& y, const LineTaps& u, const LineTaps& v, uint8_t* d,
           size_t steps) { mixed_line_to_yuy2_adjusted(y, u, v, d, steps, a); },
      [&a](const LineTaps& y, const LineTaps& u, const LineTaps& v, uint8_t* first, uint8_t* d,
           size_t steps) { mixed_line_pair_to_yuy2_adjusted(y, u, v, first, d, steps, a); });
  four_tap_schedule(walk, height);
}

YUVBLIT_A9(strech_picture_2X2_yuy2) {
  (void)adjust;
  if (height < 8) return;
  auto walk = doubling_walk(srcY, srcU, srcV, dst, doubled_geometry(width, srcPitch, dstPitch),
                            doubled_line_to_yuy2);
  averaged_schedule(walk, height);
}

YUVBLIT_A9(strech_picture_2X2_yuy2_ajust) {
  (void)adjust;
  if (height < 16) return;
  const Adjustment a = current_adjustment();
  auto walk = doubling_walk(srcY, srcU, srcV, dst, doubled_geometry(width, srcPitch, dstPitch),
                            [&a](const LineTaps& y, const LineTaps& u, const LineTaps& v,
                                 uint8_t* d, size_t steps) {
                              doubled_line_to_yuy2_adjusted(y, u, v, d, steps, a);
                            });
  averaged_schedule(walk, height);
}
