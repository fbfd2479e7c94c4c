// Mixing a subpicture into a progressive picture onto RGB32, RGB24 and
// RGB16 surfaces: the walks.
#include <optional>

#include "adjust/adjustment.h"
#include "adjust/color.h"
#include "frame/walk.h"
#include "subpicture/mix_rows.h"
#include "subpicture/mix_walk.h"
#include "yuvblit.h"

namespace yuvblit {
namespace {

void mix_progressive_to_rgb(tagMIX_INFO* info, RgbPacking packing) {
  // RGB16 with a layout above 3 returns before anything is read or written.
  const std::optional<RgbFormat> format = rgb_format(packing, info->adjust);
  if (!format) return;
  const Adjustment a = current_adjustment();
  const size_t bpp = bytes_per_pixel(packing);
  auto batch = row_batch<MixRun>(RgbRowMixer{&*format, &a, ChromaWeight::kRightPixel});
  walk_progressive_mix(info,
                       ProgressiveMix{16 * bpp, static_cast<int64_t>(bpp) * info->width,
                                      info->picturePitch},
                       [&](const MixRow& row, size_t groups) { batch.add({row, groups}); });
  batch.finish();
}

}  // namespace
}  // namespace yuvblit

using yuvblit::RgbPacking;

extern "C" {

YUVBLIT_API void mix_ayuy2_rgb32_p_ajust(tagMIX_INFO* info) {
  yuvblit::mix_progressive_to_rgb(info, RgbPacking::kRgb32);
}
YUVBLIT_API void mix_ayuy2_rgb24_p_ajust(tagMIX_INFO* info) {
  yuvblit::mix_progressive_to_rgb(info, RgbPacking::kRgb24);
}
YUVBLIT_API void mix_ayuy2_rgb16_p_ajust(tagMIX_INFO* info) {
  yuvblit::mix_progressive_to_rgb(info, RgbPacking::kRgb16);
}

}  // extern "C"
