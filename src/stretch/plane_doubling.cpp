// Doubling of single 8-bit planes, vertically (1X2) and in both directions
// (2X2), and the YV12 kernels that run them plane by plane: the walks. Each
// keeps its own line schedule, including the lines it writes twice, past
// the end or not at all; the row operations do the bytes.
#include <algorithm>
#include <cstdlib>

#include "adjust/adjustment.h"
#include "frame/walk.h"
#include "load/plane_rows.h"
#include "stretch/plane_doubling_rows.h"
#include "yuvblit.h"

using namespace yuvblit;

namespace {

// Plane selectors of the adjusting plane kernels: which offset they add.
constexpr int32_t kLumaOffset = 1;
constexpr int32_t kUOffset = 2;
constexpr int32_t kVOffset = 3;

// The adjustment of the adjusting plane kernels: the luma gain for every
// plane, the offset chosen by `plane` (none for any other value), with its
// own table (a chroma offset with the luma gain has none).
SampleAdjust plane_adjust(int32_t plane) {
  const Adjustment all = current_adjustment();
  const int16_t offset = plane == kLumaOffset ? all.luma.offset
                         : plane == kUOffset  ? all.u.offset
                         : plane == kVOffset  ? all.v.offset
                                              : 0;
  return {all.luma.gain, offset};
}

// Widths as the walks count them: a negative width, whose group counters
// would wrap, acts as 0.
int32_t counted_width(int32_t width) { return std::max(width, 0); }

// Passes of the row loops, whose counter starts at height - 1, drops by one
// and is tested after the body: height - 1, and one pass for heights below
// 2 (a counter that would start below 0 and wrap stops after that pass).
size_t row_passes(int32_t height) { return height <= 2 ? 1 : static_cast<size_t>(height) - 1; }

// The geometry strech_pic_2X2 walks: `ordinary` strips of 8 source bytes
// that read their right neighbour from the next strip, then the last strip.
struct Strips {
  const uint8_t* src;
  uint8_t* dst;
  int32_t srcPitch, dstPitch;
  size_t ordinary;
  size_t rowPasses;
};

// Strips [first, end) top to bottom: line 0 is H(row 0), each row pass adds
// the average of the last row and the next one and then the next row. The
// last row read goes down once more: to the next line in the last strip,
// one line further (leaving one line unwritten) in the ordinary strips.
void double_strips(const Strips& p, size_t first, size_t end) {
  const bool edge = end > p.ordinary;
  const size_t groups = end - first;
  const uint8_t* row = p.src + 8 * first;
  uint8_t* line = p.dst + 16 * first;
  double_row(row, line, groups, edge);
  for (size_t r = 0; r < p.rowPasses; ++r) {
    const uint8_t* below = step(row, p.srcPitch);
    uint8_t* between = step(line, p.dstPitch);
    line = step(between, p.dstPitch);
    double_pair(row, below, between, line, groups, edge);
    row = below;
  }
  uint8_t* next = step(line, p.dstPitch);
  const size_t plain = edge ? groups - 1 : groups;
  if (plain > 0) double_row(row, step(next, p.dstPitch), plain, false);
  if (edge) double_row(row + 8 * plain, next + 16 * plain, 1, true);
}

using PlaneKernel = void (*)(unsigned char* src, unsigned char* dst, int32_t width,
                             int32_t height, int32_t srcPitch, int32_t dstPitch,
                             tag_ajust_contrast_info* adjust, int32_t plane);

// A YV12 surface through a plane kernel: 2 * height luma lines, then the V
// plane and then the U plane, each at half the width, height and pitches.
// The plane read from srcV gets the U offset and the plane read from srcU
// the V offset.
void double_yv12(PlaneKernel kernel, void* srcY, void* srcU, void* srcV, void* dst,
                 int32_t width, int32_t height, int32_t srcPitch, int32_t dstPitch,
                 tag_ajust_contrast_info* adjust) {
  auto bytes = [](void* p) { return static_cast<unsigned char*>(p); };
  const int32_t lumaBytes = wrap32(2 * int64_t{height} * dstPitch);
  unsigned char* vPlane = step(bytes(dst), lumaBytes);
  unsigned char* uPlane = step(vPlane, lumaBytes >> 2);
  kernel(bytes(srcY), bytes(dst), width, height, srcPitch, dstPitch, adjust, kLumaOffset);
  kernel(bytes(srcV), vPlane, half(width), half(height), half(srcPitch), half(dstPitch), adjust,
         kUOffset);
  kernel(bytes(srcU), uPlane, half(width), half(height), half(srcPitch), half(dstPitch), adjust,
         kVOffset);
}

}  // namespace

// Line 0 and the two end-of-plane copies go in steps of 8 bytes; every row
// pass writes the row and its average with the next row in steps of 16,
// the last step moved back to end at the row's end (below 16 bytes: one
// step). The end of the plane goes back one row and one line and writes
// row height - 2 twice, the second copy straight after the first.
YUVBLIT_API void strech_pic_1X2_adjust(unsigned char* src, unsigned char* dst, int32_t width,
                                       int32_t height, int32_t srcPitch, int32_t dstPitch,
                                       tag_ajust_contrast_info* adjust, int32_t plane) {
  (void)adjust;
  const TabledSampleAdjust planeAdjust(plane_adjust(plane));
  const SampleAdjust a = planeAdjust.get();
  const int32_t w = counted_width(width);
  const size_t shortLine = 8 * passes(static_cast<uint32_t>(w), 8);
  adjust_bytes(src, dst, shortLine, a);

  const size_t steps = w < 16 ? 1 : static_cast<size_t>(w / 16);
  const bool movedBack = w > 16 && w % 16 != 0;
  const uint8_t* row = src;
  uint8_t* line = step(dst, dstPitch);
  const size_t rowPasses = row_passes(height);
  for (size_t r = 0; r < rowPasses; ++r) {
    const uint8_t* below = step(row, srcPitch);
    uint8_t* between = step(line, dstPitch);
    auto pair = [&](size_t at, size_t groups) {
      run_row_groups({line + at, between + at}, 16, groups, [&](size_t g, size_t count) {
        const size_t i = at + 16 * g;
        adjust_row_and_average(row + i, below + i, line + i, between + i, count, a);
      });
    };
    pair(0, steps);
    if (movedBack) pair(static_cast<size_t>(w) - 16, 1);
    row = below;
    line = step(between, dstPitch);
  }

  row = step(row, -int64_t{srcPitch});
  line = step(line, -int64_t{dstPitch});
  adjust_bytes(row, line, shortLine, a);
  adjust_bytes(row, line + shortLine, shortLine, a);
}

// Vertical strips of 8 source bytes (16 destination bytes), each walked top
// to bottom: width / 8 - 1 ordinary strips (at least one), whose last
// sample's neighbour is the next strip's first, then the last strip, whose
// last sample is its own neighbour; nothing past it is read. Where no two
// lines share bytes the strips are walked side by side, row by row, which
// writes the same bytes.
YUVBLIT_API void strech_pic_2X2(unsigned char* src, unsigned char* dst, int32_t width,
                                int32_t height, int32_t srcPitch, int32_t dstPitch) {
  const int32_t w = counted_width(width);
  const Strips p{src, dst, srcPitch, dstPitch,
                 static_cast<size_t>(std::max(w / 8 - 1, 1)), row_passes(height)};
  const size_t strips = p.ordinary + 1;
  if (std::abs(int64_t{dstPitch}) >= static_cast<int64_t>(16 * strips)) {
    double_strips(p, 0, strips);
    return;
  }
  for (size_t s = 0; s < strips; ++s) double_strips(p, s, s + 1);
}

// Row by row with the source read packed (each row `width` bytes after the
// previous; srcPitch only reaches the row below for averaging). Line 0 and
// the end-of-plane copies are adjusted doubled rows in groups of 8 source
// bytes. Each row pass makes two lines from the first width rounded down to
// 16, then, for a remainder, one block of the row's last 16 source bytes
// not doubled, starting remainder - 16 bytes after the doubled part; the
// next pass starts 2 * dstPitch - 2 * width after that block, so the lines
// drift left by the remainder. The end of the plane goes back one source
// pitch and one line and writes a doubled row twice, the second straight
// after the first, read from one source pitch before where the first ended.
YUVBLIT_API void strech_pic_2X2_adjust(unsigned char* src, unsigned char* dst, int32_t width,
                                       int32_t height, int32_t srcPitch, int32_t dstPitch,
                                       tag_ajust_contrast_info* adjust, int32_t plane) {
  (void)adjust;
  const TabledSampleAdjust planeAdjust(plane_adjust(plane));
  const SampleAdjust a = planeAdjust.get();
  const int32_t w = counted_width(width);
  const size_t shortGroups = passes(static_cast<uint32_t>(w), 8);
  double_row_adjusted(src, dst, shortGroups, a);

  const int32_t whole = w & ~15;
  const int32_t rest = w & 15;
  const uint8_t* row = src;
  uint8_t* line = step(dst, dstPitch);
  const size_t rowPasses = row_passes(height);
  for (size_t r = 0; r < rowPasses; ++r) {
    const uint8_t* below = step(row, srcPitch);
    uint8_t* between = step(line, dstPitch);
    run_row_groups({line, between}, 16, static_cast<size_t>(whole / 8), [&](size_t g, size_t count) {
      double_pair_adjusted(row + 8 * g, below + 8 * g, line + 16 * g, between + 16 * g, count, a);
    });
    int64_t end = 2 * int64_t{whole};
    if (rest != 0) {
      const int64_t from = w - 16;
      const int64_t to = end - 16 + rest;
      adjust_row_and_average(step(row, from), step(below, from), step(line, to),
                             step(between, to), 1, a);
      end = to + 16;
    }
    row = step(row, w);
    line = step(line, end + 2 * int64_t{dstPitch} - 2 * int64_t{w});
  }

  row = step(row, -int64_t{srcPitch});
  line = step(line, -int64_t{dstPitch});
  double_row_adjusted(row, line, shortGroups, a);
  double_row_adjusted(step(row, 8 * int64_t(shortGroups) - srcPitch), line + 16 * shortGroups,
                      shortGroups, a);
}

YUVBLIT_A9(strech_picture_1X2_yv12_ajust) {
  double_yv12(strech_pic_1X2_adjust, srcY, srcU, srcV, dst, width, height, srcPitch, dstPitch,
              adjust);
}

YUVBLIT_A9(strech_picture_2X2_yv12_ajust) {
  double_yv12(strech_pic_2X2_adjust, srcY, srcU, srcV, dst, width, height, srcPitch, dstPitch,
              adjust);
}
