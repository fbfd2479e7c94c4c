#include "subpicture.h"

#include <algorithm>
#include <stdexcept>

namespace ybtool {
namespace {

// Row slack of the host bitmaps (see overlay_bitmap()).
constexpr int kBitmapSlackBytes = 16;

unsigned pack_565(unsigned r, unsigned g, unsigned b) {
  return (r >> 3) << 11 | (g >> 2) << 5 | b >> 3;
}

int bytes_per_pixel(SurfaceFormat format) {
  if (format != SurfaceFormat::kRgb32 && format != SurfaceFormat::kRgb24 &&
      format != SurfaceFormat::kRgb16Layout0)
    throw std::logic_error("overlay bitmaps are RGB32, RGB24 or 5-6-5");
  return surface_format_info(format).bytes_per_pixel;
}

// Calls f(x, y, rgba) for every overlay pixel inside the bitmap.
template <class F>
void for_each_placed(const RgbaImage& overlay, const Surface& bitmap, F f) {
  const int w = std::min(overlay.width, bitmap.width);
  const int h = std::min(overlay.height, bitmap.height);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) f(x, y, overlay.at(x, y));
}

}  // namespace

Surface blank_bitmap(SurfaceFormat format, int width, int rows) {
  Surface s;
  s.format = format;
  s.width = width;
  s.height = rows;
  s.pitch = width * bytes_per_pixel(format) + kBitmapSlackBytes;
  s.bytes.assign(static_cast<size_t>(s.pitch) * rows, 0);
  return s;
}

uint8_t alpha_weight(uint8_t alpha) {
  return static_cast<uint8_t>((alpha * 16 + 127) / 255);
}

uint32_t overlay_key(SurfaceFormat format) {
  if (bytes_per_pixel(format) == 2) return pack_565(kKeyGrey, kKeyGrey, kKeyGrey);
  return kKeyGrey << 16 | kKeyGrey << 8 | kKeyGrey;
}

Surface overlay_bitmap(const RgbaImage& overlay, SurfaceFormat format,
                       int width, int rows) {
  Surface s = blank_bitmap(format, width, rows);
  const int bpp = bytes_per_pixel(format);
  const uint32_t key = overlay_key(format);
  auto store = [&](int x, int y, uint32_t pixel) {
    uint8_t* p = s.row(y) + x * bpp;
    for (int i = 0; i < bpp; ++i) p[i] = static_cast<uint8_t>(pixel >> (8 * i));
  };
  for (int y = 0; y < rows; ++y)
    for (int x = 0; x < width; ++x) store(x, y, key);
  for_each_placed(overlay, s, [&](int x, int y, const uint8_t* rgba) {
    if (alpha_weight(rgba[3]) == 0) return;
    uint32_t pixel = bpp == 2 ? pack_565(rgba[0], rgba[1], rgba[2])
                              : uint32_t(rgba[0]) << 16 | rgba[1] << 8 | rgba[2];
    if (pixel == key) pixel ^= 1;  // the lowest blue bit
    store(x, y, pixel);
  });
  return s;
}

Surface alpha_bitmap(const RgbaImage& overlay, int width, int rows) {
  Surface s = blank_bitmap(SurfaceFormat::kRgb32, width, rows);
  for_each_placed(overlay, s, [&](int x, int y, const uint8_t* rgba) {
    s.row(y)[4 * x] = alpha_weight(rgba[3]);
  });
  return s;
}

SubpicturePlanes blank_planes(int width, int rows, int pitch, uint8_t alpha,
                              uint8_t y, uint8_t u, uint8_t v) {
  if (pitch < width || pitch % 2 != 0)
    throw std::logic_error("subpicture pitch must be even and hold a row");
  SubpicturePlanes p;
  p.width = width;
  p.rows = rows;
  p.pitch = pitch;
  const size_t luma = static_cast<size_t>(pitch) * rows;
  p.alpha.assign(luma, alpha);
  p.y.assign(luma, y);
  p.u.assign(luma / 2, u);
  p.v.assign(luma / 2, v);
  return p;
}

tagMIX_INFO preparation_record(SubpicturePlanes& planes, Surface& bitmap) {
  tagMIX_INFO r{};
  // Restore_* and load_subpicture_alpha_* step the alpha plane by the
  // processed row plus (picturePitch - width) / 2: this makes it `pitch`.
  r.picturePitch = 2 * planes.pitch - planes.width;
  r.subPitch = planes.pitch;
  r.dstPitch = bitmap.pitch;
  r.width = planes.width;
  r.height = planes.rows;
  r.subAlpha = planes.alpha.data();
  r.subY = planes.y.data();
  r.subU = planes.u.data();
  r.subV = planes.v.data();
  r.dst = bitmap.bytes.data();
  r.colorKey = overlay_key(bitmap.format);
  return r;
}

SubpicturePlanes prepare_subpicture(const RgbaImage& overlay, int width,
                                    int rows, int pitch) {
  // Convert skips groups that are all key, leaving what the planes held:
  // transparent black.
  SubpicturePlanes planes = blank_planes(width, rows, pitch, 0, 16, 128, 128);
  Surface colour = overlay_bitmap(overlay, SurfaceFormat::kRgb32, width, rows);
  Surface alpha = alpha_bitmap(overlay, width, rows);
  tagMIX_INFO record = preparation_record(planes, colour);
  Convert_RGB32_To_AYUY2(&record);
  record = preparation_record(planes, alpha);
  Restore_RGB32_To_Alpha(&record);
  return planes;
}

Surface planes_as_yuy2(const SubpicturePlanes& planes, int width, int height) {
  Surface s = make_marked_surface(SurfaceFormat::kYuy2, width, height,
                                  2 * planes.pitch, planes.rows);
  for (int r = 0; r < planes.rows; ++r) {
    const uint8_t* y = planes.y.data() + static_cast<size_t>(r) * planes.pitch;
    const size_t c = static_cast<size_t>(r) * (planes.pitch / 2);
    uint8_t* out = s.row(r);
    for (int k = 0; k < planes.pitch / 2; ++k, out += 4) {
      out[0] = y[2 * k];
      out[1] = planes.u[c + k];
      out[2] = y[2 * k + 1];
      out[3] = planes.v[c + k];
    }
  }
  return s;
}

}  // namespace ybtool
