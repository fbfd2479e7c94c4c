// Vertical doubling of a decoded frame onto YUY2 with edge-directed
// interpolation: the walk over source row pairs and its four line kernels.
//
// Each source row pair Y, Y' (with chroma row C) makes four lines: Y with
// C; between Y and Y' with C; Y' with chroma between C and the next chroma
// row; between Y' and the row after it, chroma as the line before. The last
// pair never reads below Y'.
#include "adjust/adjustment.h"
#include "frame/walk.h"
#include "load/yuy2_rows.h"
#include "stretch/edge_directed_rows.h"
#include "yuvblit.h"

using namespace yuvblit;

namespace {

// Groups of 16 pixels a copied line covers: ceil(count / 16), at least one.
size_t copied_groups(int32_t count) {
  return count <= 0 ? 1 : passes(static_cast<uint32_t>(count), 16);
}

// Middle groups of an interpolated line, between its first and last group:
// a counter from count - 32 dropping by 16 while it was above 16. Below 32
// pixels that counter would start below zero; it runs once instead.
size_t middle_groups(int32_t count) {
  return count < 32 ? 1 : passes(static_cast<uint32_t>(count - 32), 16);
}

// The four line kernels: y, u, v are the current rows, the luma row below y
// is at y + 2 cstep and the chroma rows below u and v at + cstep.
void opt_line_copy(const uint8_t* y, const uint8_t* u, const uint8_t* v, uint8_t* out,
                   int32_t count, int32_t /*cstep*/, const Adjustment& a) {
  planar_row_to_yuy2_adjusted(y, u, v, out, copied_groups(count), a);
}

void opt_line_interp_luma(const uint8_t* y, const uint8_t* u, const uint8_t* v, uint8_t* out,
                          int32_t count, int32_t cstep, const Adjustment& a) {
  const InterpolatedLine rows{y, step(y, 2 * int64_t{cstep}), u, nullptr, v, nullptr};
  edge_directed_line(rows, out, middle_groups(count), a);
}

void opt_line_interp_chroma(const uint8_t* y, const uint8_t* u, const uint8_t* v,
                            uint8_t* out, int32_t count, int32_t cstep, const Adjustment& a) {
  const InterpolatedLine rows{y, nullptr, u, step(u, cstep), v, step(v, cstep)};
  edge_directed_line(rows, out, middle_groups(count), a);
}

void opt_line_interp_both(const uint8_t* y, const uint8_t* u, const uint8_t* v, uint8_t* out,
                          int32_t count, int32_t cstep, const Adjustment& a) {
  const InterpolatedLine rows{y, step(y, 2 * int64_t{cstep}), u, step(u, cstep),
                              v, step(v, cstep)};
  edge_directed_line(rows, out, middle_groups(count), a);
}

using LineKernel = void (*)(const uint8_t* y, const uint8_t* u, const uint8_t* v, uint8_t* out,
                           int32_t count, int32_t cstep, const Adjustment& a);

// Two consecutive lines that differ only in their luma: `first` takes row y
// as it is, `second` interpolates it with the row below; the chroma (as it
// is, or interpolated) is the same. Where the first line covers the same
// groups as the second (`firstGroups`) and the two share no bytes, one pass
// makes both and takes the chroma once; otherwise the kernels run in turn.
void line_pair(LineKernel first, LineKernel second, size_t firstGroups, bool interpolateChroma,
               const uint8_t* y, const uint8_t* u, const uint8_t* v, uint8_t* out,
               uint8_t* nextOut, int32_t count, int32_t cstep, const Adjustment& a) {
  const size_t middle = middle_groups(count);
  const size_t bytes = 32 * (middle + 2);
  if (firstGroups != middle + 2 || overlaps(out, bytes, nextOut, bytes)) {
    first(y, u, v, out, count, cstep, a);
    second(y, u, v, nextOut, count, cstep, a);
    return;
  }
  const InterpolatedLine rows{y,
                              step(y, 2 * int64_t{cstep}),
                              u,
                              interpolateChroma ? step(u, cstep) : nullptr,
                              v,
                              interpolateChroma ? step(v, cstep) : nullptr};
  edge_directed_line_pair(rows, out, nextOut, middle, a);
}

// The first two lines of a row pair: opt_line_copy, opt_line_interp_luma.
void opt_lines_copy_then_interp_luma(const uint8_t* y, const uint8_t* u, const uint8_t* v,
                                     uint8_t* out, uint8_t* nextOut, int32_t count,
                                     int32_t cstep, const Adjustment& a) {
  line_pair(opt_line_copy, opt_line_interp_luma, copied_groups(count), false, y, u, v, out,
            nextOut, count, cstep, a);
}

// The last two: opt_line_interp_chroma, opt_line_interp_both.
void opt_lines_interp_chroma_then_both(const uint8_t* y, const uint8_t* u, const uint8_t* v,
                                       uint8_t* out, uint8_t* nextOut, int32_t count,
                                       int32_t cstep, const Adjustment& a) {
  line_pair(opt_line_interp_chroma, opt_line_interp_both, middle_groups(count) + 2, true, y, u,
            v, out, nextOut, count, cstep, a);
}

}  // namespace

YUVBLIT_API void strech_opt_yuy2_ajust(tagVideoFrame* frame, int32_t top, int32_t height,
                                       unsigned char* dst, int32_t dstPitch,
                                       tag_ajust_contrast_info* adjust) {
  (void)adjust;
  if (height < 8) return;
  const int32_t width = frame->lumaWidth;
  // Field mode takes every second row of the frame.
  const bool field = frame->lineMode == 1;
  const int32_t rowStep = field ? wrap32(2 * int64_t{width}) : width;
  const int32_t chromaStep = rowStep >> 1;
  const int32_t rowsAbove = wrap32(int64_t{top} * width);
  const int32_t start = field ? rowsAbove : rowsAbove >> 1;
  const uint8_t* y = step(frame->planeY, start);
  const uint8_t* u = step(frame->planeU, start >> 2);
  const uint8_t* v = step(frame->planeV, start >> 2);
  const Adjustment a = current_adjustment();

  auto line = [&](auto kernel, const uint8_t* luma) {
    kernel(luma, u, v, dst, width, chromaStep, a);
    dst = step(dst, dstPitch);
  };
  auto lines = [&](auto kernels, const uint8_t* luma) {
    kernels(luma, u, v, dst, step(dst, dstPitch), width, chromaStep, a);
    dst = step(dst, 2 * int64_t{dstPitch});
  };
  for (int32_t pairs = height / 2 - 1; pairs > 0; --pairs) {
    const uint8_t* next = step(y, rowStep);
    lines(opt_lines_copy_then_interp_luma, y);
    lines(opt_lines_interp_chroma_then_both, next);
    y = step(y, 2 * int64_t{rowStep});
    u = step(u, chromaStep);
    v = step(v, chromaStep);
  }
  const uint8_t* next = step(y, rowStep);
  lines(opt_lines_copy_then_interp_luma, y);
  line(opt_line_copy, next);
  line(opt_line_copy, next);
}
