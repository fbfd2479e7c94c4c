// Planar 4:2:0 frame onto a YUY2 surface: the walks. Groups are 16 pixels;
// row ends are stepped by `width`, so widths that are not multiples of 16
// make every later row start further right.
#include <cstddef>
#include <type_traits>

#include "adjust/adjustment.h"
#include "frame/walk.h"
#include "load/planar_cursor.h"
#include "load/yuy2_rows.h"
#include "yuvblit.h"

using namespace yuvblit;

namespace {

// The walk of the three row-by-row kernels: first row of a pair, chroma
// rewound by width/2, second row, then on to the next chroma row.
// `dstWidthBytes` is what a row's destination step subtracts (2*width for
// full-width YUY2, width for the half kernel). `pair(c, y1, d1, groups)`,
// where given, writes both rows in one pass; it is used where the second
// row starts on the first row's chroma (the groups cover the width
// exactly) and the two destination rows share no bytes.
template <class Row, class Pair = std::nullptr_t>
void walk_rows_of_pairs(PlanarCursor c, int32_t width, int32_t height,
                        int32_t srcPitch, int32_t dstPitch,
                        size_t dstPerGroup, int64_t dstWidthBytes, Row row,
                        Pair pair = nullptr) {
  const size_t groups = passes(static_cast<uint32_t>(width), 16);
  const size_t rowBytes = dstPerGroup * groups;
  constexpr bool kHasPair = !std::is_same_v<Pair, std::nullptr_t>;
  const bool fused = kHasPair && static_cast<int64_t>(16 * groups) == width &&
                     !overlaps(c.d, rowBytes, step(c.d, dstPitch), rowBytes);
  uint32_t rows = static_cast<uint32_t>(height);
  do {
    if constexpr (kHasPair) {
      if (fused) pair(c, step(c.y, srcPitch), step(c.d, dstPitch), groups);
    }
    if (!fused) row(c, groups);
    c.advance_groups(groups, dstPerGroup);
    c.step_luma(int64_t{srcPitch} - width);
    c.step_dst(int64_t{dstPitch} - dstWidthBytes);
    c.step_chroma(-int64_t{half(width)});

    if (!fused) row(c, groups);
    c.advance_groups(groups, dstPerGroup);
    c.step_luma(int64_t{srcPitch} - width);
    c.step_chroma(half(wrap32(int64_t{srcPitch} - width)));
    c.step_dst(int64_t{dstPitch} - dstWidthBytes);
  } while (more(rows, 2));
}

}  // namespace

YUVBLIT_A9(loadimage_yuy2) {
  (void)adjust;
  walk_row_pairs(PlanarCursor(srcY, srcU, srcV, dst), width, height, srcPitch, dstPitch, 2,
                 planar_pair_to_yuy2);
}

YUVBLIT_A9(loadimage_yuy2_ajust) {
  (void)adjust;
  if (height <= 8 || (height & 1)) return;
  const Adjustment a = current_adjustment();
  walk_rows_of_pairs(PlanarCursor(srcY, srcU, srcV, dst), width, height,
                     srcPitch, dstPitch, 32, 2 * int64_t{width},
                     [&](const PlanarCursor& c, size_t groups) {
                       planar_row_to_yuy2_adjusted(c.y, c.u, c.v, c.d, groups, a);
                     },
                     [&](const PlanarCursor& c, const uint8_t* y1, uint8_t* d1, size_t groups) {
                       planar_rows_to_yuy2_adjusted(c.y, y1, c.u, c.v, c.d, d1, groups, a);
                     });
}

YUVBLIT_A9(loadimage_yuy2_mono_ajust) {
  (void)adjust;
  const Adjustment a = current_adjustment();
  walk_rows_of_pairs(PlanarCursor(srcY, srcU, srcV, dst), width, height,
                     srcPitch, dstPitch, 32, 2 * int64_t{width},
                     [&](const PlanarCursor& c, size_t groups) {
                       planar_row_to_yuy2_mono(c.y, c.d, groups, a);
                     });
}

YUVBLIT_A9(loadimage_half_yuy2_ajust) {
  (void)adjust;
  const Adjustment a = current_adjustment();
  walk_rows_of_pairs(PlanarCursor(srcY, srcU, srcV, dst), width, height,
                     srcPitch, dstPitch, 16, int64_t{width},
                     [&](const PlanarCursor& c, size_t groups) {
                       planar_row_to_half_yuy2(c.y, c.u, c.v, c.d, groups, a);
                     });
}
