// Planar 4:2:0 frames doubled vertically onto RGB32, RGB24 and RGB16
// surfaces, adjusted: the walk.
//
// The picture is taken in strips 16 pixels wide, left to right, each walked
// from top to bottom: source row pair k (luma rows 2k, 2k+1, chroma row k)
// makes lines 4k..4k+3, the new lines being rounded averages of adjusted
// rows. The closing pair reads nothing below itself: its last line repeats
// its second row and its chroma is not averaged. Each strip then goes back
// up by the picture's height and one strip to the right, so the width never
// makes rows drift. Odd heights and odd source pitches do move later
// strips onto other rows: a strip then walks further down (or less far)
// than it goes back.
#include <algorithm>
#include <cstdlib>
#include <optional>

#include "adjust/adjustment.h"
#include "adjust/color.h"
#include "frame/walk.h"
#include "load/planar_cursor.h"
#include "stretch/rgb_doubling_rows.h"
#include "yuvblit.h"

namespace yuvblit {

namespace {

constexpr int32_t kMinHeight = 12;

// How far one strip's walk moves the pointers before they go back up.
// Every four-line block (the row pairs and the closing pair) moves luma two
// rows, chroma one row and the destination four lines.
struct StripGeometry {
  int32_t height, srcPitch, dstPitch;

  int32_t chroma_pitch() const { return half(srcPitch); }
  size_t blocks() const { return passes(static_cast<uint32_t>(height - 2), 2) + 1; }
  // The way back up: luma by the picture's rows, chroma by a quarter of
  // that, the destination by twice the picture's rows.
  int32_t luma_rewind() const { return wrap32(int64_t{height} * srcPitch); }
  int32_t chroma_rewind() const { return luma_rewind() >> 2; }
  int32_t dst_rewind() const { return wrap32(2 * int64_t{height} * dstPitch); }

  // Whether each strip starts on the same rows as the first: true for even
  // heights and even source pitches.
  bool returns_to_top() const {
    const int64_t n = static_cast<int64_t>(blocks());
    return n * wrap32(2 * int64_t{srcPitch}) == luma_rewind() &&
           n * chroma_pitch() == chroma_rewind() &&
           n * wrap32(4 * int64_t{dstPitch}) == dst_rewind();
  }
};

// Walks `groups` neighbouring strips down the picture together, leaving the
// cursor below the last block.
void walk_down(PlanarCursor& c, const StripGeometry& s, size_t groups, const RgbFormat& format,
               const Adjustment& adjust) {
  auto block = [&](bool closing) {
    DoublingRows r;
    r.y0 = c.y;
    r.y1 = step(c.y, s.srcPitch);
    r.y2 = closing ? r.y1 : step(c.y, 2 * int64_t{s.srcPitch});
    r.u0 = c.u;
    r.v0 = c.v;
    r.u1 = closing ? c.u : step(c.u, s.chroma_pitch());
    r.v1 = closing ? c.v : step(c.v, s.chroma_pitch());
    r.d0 = c.d;
    r.d1 = step(c.d, s.dstPitch);
    r.d2 = step(c.d, 2 * int64_t{s.dstPitch});
    r.d3 = step(c.d, 3 * int64_t{s.dstPitch});
    double_pair_to_rgb(r, groups, format, adjust);
    c.step_luma(2 * int64_t{s.srcPitch});
    c.step_chroma(s.chroma_pitch());
    c.step_dst(4 * int64_t{s.dstPitch});
  };
  uint32_t pairs = static_cast<uint32_t>(s.height - 2);
  do block(false);
  while (more(pairs, 2));
  block(true);
}

// How many strips may go down the picture together and still give the
// bytes of one strip after the other. That needs every strip to start on
// the first strip's rows, and no line to share bytes with a different line
// of another strip in the batch: then only the order of a line's own
// groups changes, and they are disjoint. Lines of strips up to |dstPitch|
// bytes wide never reach another line of the batch.
size_t strips_per_batch(const StripGeometry& s, size_t bytesPerGroup) {
  if (!s.returns_to_top()) return 1;
  const size_t pitch = static_cast<size_t>(std::llabs(int64_t{s.dstPitch}));
  return std::max<size_t>(1, pitch / bytesPerGroup);
}

void double_to_rgb(void* srcY, void* srcU, void* srcV, void* dst, int32_t width,
                   int32_t height, int32_t srcPitch, int32_t dstPitch,
                   const tag_ajust_contrast_info* record, RgbPacking packing) {
  if (height < kMinHeight) return;
  const std::optional<RgbFormat> format = rgb_format(packing, record);
  if (!format) return;
  const Adjustment adjust = current_adjustment();
  const StripGeometry s{height, srcPitch, dstPitch};
  const size_t bytesPerGroup = 16 * bytes_per_pixel(packing);
  const size_t batch = strips_per_batch(s, bytesPerGroup);
  PlanarCursor c(srcY, srcU, srcV, dst);
  uint32_t strips = static_cast<uint32_t>(width);  // counted down by 16
  do {
    const size_t groups = std::min(batch, passes(strips, 16));
    walk_down(c, s, groups, *format, adjust);
    c.step_luma(-int64_t{s.luma_rewind()});
    c.step_chroma(-int64_t{s.chroma_rewind()});
    c.step_dst(-int64_t{s.dst_rewind()});
    c.advance_groups(groups, bytesPerGroup);
    for (size_t i = 1; i < groups; ++i) more(strips, 16);
  } while (more(strips, 16));
}

}  // namespace
}  // namespace yuvblit

using yuvblit::RgbPacking;

#define YUVBLIT_DOUBLE_TO_RGB(name, packing)                                            \
  YUVBLIT_A9(name) {                                                                    \
    yuvblit::double_to_rgb(srcY, srcU, srcV, dst, width, height, srcPitch, dstPitch, \
                           adjust, packing);                                            \
  }

YUVBLIT_DOUBLE_TO_RGB(strech_picture_1X2_yuy2_ajust_rgb32, RgbPacking::kRgb32)
YUVBLIT_DOUBLE_TO_RGB(strech_picture_1X2_yuy2_ajust_rgb24, RgbPacking::kRgb24)
YUVBLIT_DOUBLE_TO_RGB(strech_picture_1X2_yuy2_ajust_rgb16, RgbPacking::kRgb16)
