// A packed YUY2 picture doubled in both directions onto a YUY2 surface:
// the walk. The picture goes in vertical strips of 16 pixels (32 source
// bytes, 64 output bytes per line), left to right; within a strip, line 2j
// is source row j doubled across (H(j)), line 2j + 1 the rounded average
// of H(j) and H(j + 1), and the last line repeats H of the last row.
// Source rows are packed: `width` bytes apart.
#include <cstdlib>
#include <cstring>
#include <vector>

#include "adjust/adjustment.h"
#include "frame/walk.h"
#include "stretch/packed_doubling_rows.h"
#include "yuvblit.h"

using namespace yuvblit;

namespace {

// The strip counter starts at width - 32 and stops when it reaches 0
// exactly, so only widths that are multiples of 32 and at least 64 end;
// for any other width the library writes nothing.
void double_packed(const uint8_t* src, uint8_t* dst, int32_t width, int32_t height,
                   int32_t dstPitch, const Adjustment* adjust) {
  if (width < 64 || width % 32 != 0) return;
  const size_t strips = static_cast<size_t>(width) / 32;
  // Odd heights: the pair loop rounds up, one row past the picture, and
  // every strip ends a row (and two lines) lower than it rewinds.
  const int64_t rows = height + (height & 1);
  const int64_t extraRows = rows - height;
  auto line = [&](const uint8_t* top, uint8_t* out, int64_t l, size_t n, bool edge) {
    const int64_t j = l / 2;
    const bool average = l % 2 == 1 && j + 1 < rows;
    packed_doubled_line_to_yuy2(step(top, j * width), average ? step(top, (j + 1) * width) : nullptr,
                                step(out, l * dstPitch), n, edge, adjust);
  };
  const int64_t lineBytes = 64 * static_cast<int64_t>(strips);
  if (extraRows == 0 && std::llabs(int64_t{dstPitch}) >= lineBytes) {
    // Lines share no bytes: strip order and line order give the same bytes,
    // so every source row is doubled once, kept, and averaged with the row
    // above it; the last line repeats the last row's.
    std::vector<uint8_t> kept(2 * static_cast<size_t>(lineBytes));
    uint8_t* keep[2] = {kept.data(), kept.data() + lineBytes};
    for (int64_t j = 0; j < rows; ++j) {
      packed_doubled_row_kept(step(src, j * width), j ? keep[(j - 1) & 1] : nullptr,
                              step(dst, (2 * j - 1) * dstPitch), step(dst, 2 * j * dstPitch),
                              keep[j & 1], strips, true, adjust);
    }
    std::memcpy(step(dst, (2 * rows - 1) * dstPitch), keep[(rows - 1) & 1],
                static_cast<size_t>(lineBytes));
    return;
  }
  for (size_t s = 0; s < strips; ++s) {
    const uint8_t* top = step(src, static_cast<int64_t>(s) * (32 + extraRows * width));
    uint8_t* out = step(dst, static_cast<int64_t>(s) * (64 + 2 * extraRows * dstPitch));
    for (int64_t l = 0; l < 2 * rows; ++l) line(top, out, l, 1, s + 1 == strips);
  }
}

}  // namespace

extern "C" {

YUVBLIT_API void yuy2_strech_picture_2X2_yuy2(void* src, void* /*srcU*/, void* /*srcV*/,
                                              void* dst, int32_t width, int32_t height,
                                              int32_t dstPitch) {
  if (height < 16) return;
  double_packed(static_cast<const uint8_t*>(src), static_cast<uint8_t*>(dst), width, height,
                dstPitch, nullptr);
}

YUVBLIT_API void yuy2_strech_picture_2X2_yuy2_ajust(void* src, void* /*srcU*/, void* /*srcV*/,
                                                    void* dst, int32_t width, int32_t height,
                                                    int32_t dstPitch,
                                                    tag_ajust_contrast_info* /*adjust*/) {
  if (height < 8) return;
  const Adjustment a = current_adjustment();
  double_packed(static_cast<const uint8_t*>(src), static_cast<uint8_t*>(dst), width, height,
                dstPitch, &a);
}

}  // extern "C"
