// A subpicture shown by itself on an RGB32, RGB24 or RGB16 surface, plain
// or adjusted: the walk. picturePitch is both the subpicture's width and the
// length of its rows, which lie back to back (chroma rows half as long).
#include <cstdint>

#include "adjust/adjustment.h"
#include "adjust/color.h"
#include "frame/walk.h"
#include "subpicture/sub_to_rgb_rows.h"
#include "yuvblit.h"

namespace yuvblit {
namespace {

// The colour key as the channels a pixel is stored from. RGB32 and RGB24
// take it as 0x00BBGGRR. RGB16 stores the key's low 16 bits as they stand:
// its 5-6-5 fields, each in the top bits of a channel, pack back to exactly
// those bits.
Rgb key_colour(uint32_t key, RgbPacking packing) {
  if (packing == RgbPacking::kRgb16) {
    return Rgb{static_cast<uint8_t>((key >> 8) & 0xF8), static_cast<uint8_t>((key >> 3) & 0xFC),
               static_cast<uint8_t>((key << 3) & 0xF8)};
  }
  return Rgb{static_cast<uint8_t>(key), static_cast<uint8_t>(key >> 8),
             static_cast<uint8_t>(key >> 16)};
}

// Rows of ceil(picturePitch / 16) steps (at least one), `height` rows (at
// least one, counted as unsigned). The subpicture positions run on from row
// to row; the surface moves on by dstPitch less the row's bytes. RGB16
// refuses a layout above 3 and writes 5-6-5 for every other. The record is
// left as it was.
void subpicture_to_rgb(const tagMIX_INFO* info, RgbPacking packing, bool adjusts) {
  if (packing == RgbPacking::kRgb16 && info->adjust->rgb16Layout > 3) return;
  const RgbFormat format{packing, kRgb16Layouts[0]};
  const Adjustment a = current_adjustment();
  const Rgb key = key_colour(info->colorKey, packing);
  const size_t bpp = bytes_per_pixel(packing);
  const int32_t pixels = info->picturePitch;
  const size_t groups = passes(static_cast<uint32_t>(pixels), 16);
  SubpictureRow row{info->subAlpha, info->subY, info->subU, info->subV, info->dst};
  uint32_t rows = static_cast<uint32_t>(info->height);
  do {
    subpicture_row_to_rgb(row, groups, format, key, adjusts ? &a : nullptr);
    row.alpha += 16 * groups;
    row.y += 16 * groups;
    row.u += 8 * groups;
    row.v += 8 * groups;
    row.dst = step(row.dst + 16 * bpp * groups,
                   int64_t{info->dstPitch} - static_cast<int64_t>(bpp) * pixels);
  } while (more(rows, 1));
}

}  // namespace
}  // namespace yuvblit

using yuvblit::RgbPacking;

extern "C" {

YUVBLIT_API void load_subpicture_yuy2_rgb32(tagMIX_INFO* info) {
  yuvblit::subpicture_to_rgb(info, RgbPacking::kRgb32, false);
}
YUVBLIT_API void load_subpicture_yuy2_rgb32_ajust(tagMIX_INFO* info) {
  yuvblit::subpicture_to_rgb(info, RgbPacking::kRgb32, true);
}
YUVBLIT_API void load_subpicture_yuy2_rgb24(tagMIX_INFO* info) {
  yuvblit::subpicture_to_rgb(info, RgbPacking::kRgb24, false);
}
YUVBLIT_API void load_subpicture_yuy2_rgb24_ajust(tagMIX_INFO* info) {
  yuvblit::subpicture_to_rgb(info, RgbPacking::kRgb24, true);
}
YUVBLIT_API void load_subpicture_yuy2_rgb16(tagMIX_INFO* info) {
  yuvblit::subpicture_to_rgb(info, RgbPacking::kRgb16, false);
}
YUVBLIT_API void load_subpicture_yuy2_rgb16_ajust(tagMIX_INFO* info) {
  yuvblit::subpicture_to_rgb(info, RgbPacking::kRgb16, true);
}

}  // extern "C"
