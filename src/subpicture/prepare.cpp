// Subpicture preparation: the walks between the host's overlay bitmap and
// the subpicture planes.
#include "adjust/color.h"
#include "frame/walk.h"
#include "subpicture/prepare_rows.h"
#include "yuvblit.h"

using namespace yuvblit;

namespace {

// Bitmap colours into the Y, U and V planes, 8 pixels a group. The row steps
// use the exact width, so widths that are not multiples of 8 make rows slip;
// the plane positions live in the record and are left past the last row,
// and subAlpha is stepped the same way although the alpha plane is not
// touched. At least one group per row and one row.
void bitmap_to_yuv(tagMIX_INFO* info, RgbPacking packing) {
  const int32_t width = info->width;
  const int64_t bpp = static_cast<int64_t>(bytes_per_pixel(packing));
  const size_t groups = width >= 8 ? static_cast<size_t>(width) / 8 : 1;
  const int64_t lumaStep = int64_t{info->subPitch} - width;
  // The chroma step halves the 32-bit difference logically.
  const int64_t chromaStep = static_cast<uint32_t>(wrap32(lumaStep)) >> 1;
  const uint8_t* bitmap = info->dst;
  int32_t rows = info->height > 0 ? info->height : 1;
  do {
    bitmap_row_to_yuv(bitmap, groups, packing, info->colorKey, info->subY, info->subU,
                      info->subV);
    bitmap = step(bitmap + 8 * bpp * groups, int64_t{info->dstPitch} - bpp * width);
    info->subY = step(info->subY + 8 * groups, lumaStep);
    info->subU = step(info->subU + 4 * groups, chromaStep);
    info->subV = step(info->subV + 4 * groups, chromaStep);
    info->subAlpha = step(info->subAlpha, lumaStep);
  } while (--rows > 0);
}

// The walk between the alpha plane and a bitmap: `groupPixels` pixels a
// group, ceil(width / group) groups (at least one) per row. The alpha plane
// moves on by the processed row plus (picturePitch - width) >> 1, the bitmap
// by its pitch less the width's bytes. At least one row; after the first
// only while dstPitch holds a row's bytes. `countInRecord`: the record's
// height is counted down per row.
template <class Row>
void walk_alpha_rows(tagMIX_INFO* info, RgbPacking packing, size_t groupPixels,
                     bool countInRecord, Row row) {
  const int32_t width = info->width;
  const int64_t bpp = static_cast<int64_t>(bytes_per_pixel(packing));
  const size_t groups = passes(static_cast<uint32_t>(width), static_cast<uint32_t>(groupPixels));
  const int64_t alphaStep = half(wrap32(int64_t{info->picturePitch} - width));
  const int64_t bitmapStep = int64_t{info->dstPitch} - bpp * width;
  uint8_t* alpha = info->subAlpha;
  uint8_t* bitmap = info->dst;
  uint32_t rows = static_cast<uint32_t>(info->height);
  bool go;
  do {
    row(alpha, bitmap, groups);
    alpha = step(alpha + groupPixels * groups, alphaStep);
    bitmap = step(bitmap + groupPixels * groups * bpp, bitmapStep);
    go = more(rows, 1);
    if (countInRecord) info->height = static_cast<int32_t>(rows);
  } while (go && wrap32(bitmapStep) >= 0);
}

void alpha_to_bitmap(tagMIX_INFO* info, RgbPacking packing) {
  walk_alpha_rows(info, packing, 16, packing == RgbPacking::kRgb24,
                  [&](const uint8_t* alpha, uint8_t* bitmap, size_t groups) {
                    alpha_row_to_bitmap(alpha, groups, packing, bitmap);
                  });
}

void bitmap_to_alpha(tagMIX_INFO* info, RgbPacking packing) {
  walk_alpha_rows(info, packing, alpha_group_pixels(packing), packing == RgbPacking::kRgb24,
                  [&](uint8_t* alpha, const uint8_t* bitmap, size_t groups) {
                    bitmap_row_to_alpha(bitmap, groups, packing, alpha);
                  });
}

}  // namespace

extern "C" {

YUVBLIT_API void Convert_RGB32_To_AYUY2(tagMIX_INFO* info) { bitmap_to_yuv(info, RgbPacking::kRgb32); }
YUVBLIT_API void Convert_RGB24_To_AYUY2(tagMIX_INFO* info) { bitmap_to_yuv(info, RgbPacking::kRgb24); }
YUVBLIT_API void Convert_RGB16_565_To_AYUY2(tagMIX_INFO* info) { bitmap_to_yuv(info, RgbPacking::kRgb16); }

YUVBLIT_API void Restore_RGB32_To_Alpha(tagMIX_INFO* info) { bitmap_to_alpha(info, RgbPacking::kRgb32); }
YUVBLIT_API void Restore_RGB24_To_Alpha(tagMIX_INFO* info) { bitmap_to_alpha(info, RgbPacking::kRgb24); }
YUVBLIT_API void Restore_RGB16_565_To_Alpha(tagMIX_INFO* info) { bitmap_to_alpha(info, RgbPacking::kRgb16); }

YUVBLIT_API void load_subpicture_alpha_rgb32(tagMIX_INFO* info) { alpha_to_bitmap(info, RgbPacking::kRgb32); }
YUVBLIT_API void load_subpicture_alpha_rgb24(tagMIX_INFO* info) { alpha_to_bitmap(info, RgbPacking::kRgb24); }
YUVBLIT_API void load_subpicture_alpha_rgb16_565(tagMIX_INFO* info) { alpha_to_bitmap(info, RgbPacking::kRgb16); }

}  // extern "C"
