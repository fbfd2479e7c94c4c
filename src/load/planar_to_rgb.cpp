// Planar 4:2:0 frame onto RGB32, RGB24 and RGB16 surfaces: the walks. Both
// rows of a pair share the chroma row; groups are 16 pixels; row pairs end
// with steps computed from `width`, so other widths drift right.
#include <optional>

#include "adjust/adjustment.h"
#include "frame/walk.h"
#include "load/planar_cursor.h"
#include "load/rgb_rows.h"
#include "yuvblit.h"

namespace yuvblit {

namespace {

void planar_to_rgb(void* srcY, void* srcU, void* srcV, void* dst, int32_t width,
                   int32_t height, int32_t srcPitch, int32_t dstPitch,
                   const tag_ajust_contrast_info* record, RgbPacking packing, bool adjusts) {
  const std::optional<RgbFormat> format = rgb_format(packing, record);
  if (!format) return;
  const Adjustment a = current_adjustment();
  walk_row_pairs(PlanarCursor(srcY, srcU, srcV, dst), width, height, srcPitch, dstPitch,
                 bytes_per_pixel(packing),
                 [&](const uint8_t* y0, const uint8_t* y1, const uint8_t* u, const uint8_t* v,
                     uint8_t* d0, uint8_t* d1, size_t n) {
                   planar_pair_to_rgb(y0, y1, u, v, d0, d1, n, *format, adjusts ? &a : nullptr);
                 });
}

}  // namespace
}  // namespace yuvblit

using yuvblit::RgbPacking;

#define YUVBLIT_PLANAR_TO_RGB(name, packing, adjusts)                                  \
  YUVBLIT_A9(name) {                                                                   \
    yuvblit::planar_to_rgb(srcY, srcU, srcV, dst, width, height, srcPitch, dstPitch, \
                           adjust, packing, adjusts);                                  \
  }

YUVBLIT_PLANAR_TO_RGB(loadimage_rgb32, RgbPacking::kRgb32, false)
YUVBLIT_PLANAR_TO_RGB(loadimage_rgb24, RgbPacking::kRgb24, false)
YUVBLIT_PLANAR_TO_RGB(loadimage_rgb16, RgbPacking::kRgb16, false)
YUVBLIT_PLANAR_TO_RGB(loadimage_rgb32_ajust, RgbPacking::kRgb32, true)
YUVBLIT_PLANAR_TO_RGB(loadimage_rgb24_ajust, RgbPacking::kRgb24, true)
YUVBLIT_PLANAR_TO_RGB(loadimage_rgb16_ajust, RgbPacking::kRgb16, true)
