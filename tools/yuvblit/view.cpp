#include "view.h"

#include <algorithm>
#include <cstring>
#include <optional>

extern "C" {
#include <libavutil/log.h>
#include <libavutil/pixfmt.h>
#include <libswscale/swscale.h>
}

#include "errors.h"
#include "yuvblit.h"

namespace ybtool {
namespace {

constexpr int kGroupPixels = 16;

int round_up(int v, int m) { return (v + m - 1) / m * m; }

RgbImage blank_image(int w, int h) {
  RgbImage image;
  image.width = w;
  image.height = h;
  image.pixels.resize(static_cast<size_t>(w) * 3 * h);
  return image;
}

// Copies `w` B G R x pixels of `bgrx` (4 bytes each) into row `y`.
void put_bgrx_row(RgbImage& image, int y, const uint8_t* bgrx) {
  uint8_t* out = image.pixels.data() + static_cast<size_t>(y) * image.width * 3;
  for (int x = 0; x < image.width; ++x, bgrx += 4, out += 3) {
    out[0] = bgrx[2];
    out[1] = bgrx[1];
    out[2] = bgrx[0];
  }
}

RgbImage unpack_rgb(const Surface& s) {
  RgbImage image = blank_image(s.width, s.height);
  const int bpp = surface_format_info(s.format).bytes_per_pixel;
  const bool rgb16 = is_rgb16(s.format);
  const Rgb16Fields f = rgb16 ? rgb16_fields(s.format) : Rgb16Fields{};
  // A stored channel value as 8 bits: widened, or for bitmaps carrying
  // numbers multiplied by the surface's gain.
  auto shown = [&](unsigned value, int bits) {
    if (s.value_gain) return static_cast<uint8_t>(std::min(value * s.value_gain, 255u));
    return widen_channel(value, bits);
  };
  auto channel = [&](unsigned word, Rgb16Channel c) {
    return shown((word >> c.shift) & ((1u << c.bits) - 1), c.bits);
  };
  for (int y = 0; y < s.height; ++y) {
    const uint8_t* in = s.row(y);
    uint8_t* out = image.pixels.data() + static_cast<size_t>(y) * s.width * 3;
    for (int x = 0; x < s.width; ++x, in += bpp, out += 3) {
      if (rgb16) {
        const unsigned word = in[0] | in[1] << 8;
        out[0] = channel(word, f.r);
        out[1] = channel(word, f.g);
        out[2] = channel(word, f.b);
      } else {
        out[0] = shown(in[2], 8);
        out[1] = shown(in[1], 8);
        out[2] = shown(in[0], 8);
      }
    }
  }
  return image;
}

// Weights 0..16 as grey (w * 15); anything above, the marker included, as
// magenta: the tool never draws such weights.
RgbImage unpack_alpha(const Surface& s) {
  RgbImage image = blank_image(s.width, s.height);
  for (int y = 0; y < s.height; ++y) {
    const uint8_t* in = s.row(y);
    uint8_t* out = image.pixels.data() + static_cast<size_t>(y) * s.width * 3;
    for (int x = 0; x < s.width; ++x, out += 3) {
      const int a = in[x];
      out[0] = out[2] = static_cast<uint8_t>(a > 16 ? 255 : a * 15);
      out[1] = static_cast<uint8_t>(a > 16 ? 0 : a * 15);
    }
  }
  return image;
}

// LoadYUY2_RGB32 gives both rows of a pair the first row's chroma. To show
// every row with its own chroma it runs twice, from row 0 and from row 1,
// and each run gives the rows that start its pairs. Empty when the surface
// is too tight for whole 16-pixel groups.
std::optional<RgbImage> yuy2_through_library(const Surface& s) {
  const int w = round_up(std::max(s.width, 1), kGroupPixels);
  if (s.pitch % 2 != 0 || s.pitch < 2 * w) return std::nullopt;
  for (int first = 0; first < std::min(s.height, 2); ++first) {
    const int rows = round_up(s.height - first, 2);
    if (static_cast<size_t>(first + rows - 1) * s.pitch + 2 * w > s.bytes.size())
      return std::nullopt;
  }
  RgbImage image = blank_image(s.width, s.height);
  tag_ajust_contrast_info record{};  // read for RGB16 only
  for (int first = 0; first < std::min(s.height, 2); ++first) {
    const int rows = round_up(s.height - first, 2);
    std::vector<uint8_t> bgrx(static_cast<size_t>(w) * 4 * rows);
    LoadYUY2_RGB32(const_cast<uint8_t*>(s.row(first)), nullptr, nullptr,
                   bgrx.data(), w, rows, s.pitch / 2, w * 4, &record);
    for (int r = first; r < s.height; r += 2)
      put_bgrx_row(image, r, bgrx.data() + static_cast<size_t>(r - first) * w * 4);
  }
  return image;
}

// loadimage_rgb32 over the three planes; it takes chroma rows as half the
// luma pitch apart. Empty when the planes do not suit it.
std::optional<RgbImage> yv12_through_library(const Surface& s) {
  const int w = round_up(std::max(s.width, 1), kGroupPixels);
  const int h = round_up(std::max(s.height, 1), 2);
  if (s.chroma_pitch * 2 != s.pitch) return std::nullopt;
  const size_t luma_end = static_cast<size_t>(h - 1) * s.pitch + w;
  const size_t chroma_end = std::max(s.u_offset, s.v_offset) +
                            static_cast<size_t>(h / 2 - 1) * s.chroma_pitch + w / 2;
  if (std::max(luma_end, chroma_end) > s.bytes.size()) return std::nullopt;
  std::vector<uint8_t> bgrx(static_cast<size_t>(w) * 4 * h);
  uint8_t* base = const_cast<uint8_t*>(s.bytes.data());
  tag_ajust_contrast_info record{};
  loadimage_rgb32(base, base + s.u_offset, base + s.v_offset, bgrx.data(), w, h,
                  s.pitch, w * 4, &record);
  RgbImage image = blank_image(s.width, s.height);
  for (int r = 0; r < s.height; ++r)
    put_bgrx_row(image, r, bgrx.data() + static_cast<size_t>(r) * w * 4);
  return image;
}

}  // namespace

uint8_t widen_channel(unsigned value, int bits) {
  return static_cast<uint8_t>(value << (8 - bits) | value >> (2 * bits - 8));
}

Viewer::Viewer() {
  // libswscale warns about unaligned rows, which only costs speed here.
  av_log_set_level(AV_LOG_ERROR);
}

Viewer::~Viewer() { sws_freeContext(context_); }

RgbImage Viewer::view(const Picture420& p) {
  const uint8_t* planes[4] = {p.y.data(), p.u.data(), p.v.data(), nullptr};
  const int strides[4] = {p.width, p.chroma_width(), p.chroma_width(), 0};
  return convert(AV_PIX_FMT_YUV420P, planes, strides, p.width, p.height,
                 p.width);
}

RgbImage Viewer::view(const Surface& s) {
  used_library_ = false;
  switch (s.format) {
    case SurfaceFormat::kYuy2: {
      if (std::optional<RgbImage> image = yuy2_through_library(s)) {
        used_library_ = true;
        return *image;
      }
      const uint8_t* planes[4] = {s.bytes.data(), nullptr, nullptr, nullptr};
      const int strides[4] = {s.pitch, 0, 0, 0};
      return convert(AV_PIX_FMT_YUYV422, planes, strides, s.stored_width(),
                     s.height, s.width);
    }
    case SurfaceFormat::kYv12: {
      if (std::optional<RgbImage> image = yv12_through_library(s)) {
        used_library_ = true;
        return *image;
      }
      const uint8_t* planes[4] = {s.bytes.data(), s.bytes.data() + s.u_offset,
                                  s.bytes.data() + s.v_offset, nullptr};
      const int strides[4] = {s.pitch, s.chroma_pitch, s.chroma_pitch, 0};
      return convert(AV_PIX_FMT_YUV420P, planes, strides, s.width, s.height,
                     s.width);
    }
    case SurfaceFormat::kRgb32:
    case SurfaceFormat::kRgb24:
    case SurfaceFormat::kRgb16Layout0:
    case SurfaceFormat::kRgb16Layout1:
    case SurfaceFormat::kRgb16Layout2:
    case SurfaceFormat::kRgb16Layout3:
      return unpack_rgb(s);
    case SurfaceFormat::kAlpha:
      return unpack_alpha(s);
  }
  throw ToolError("internal: no viewer for this surface format");
}

RgbImage Viewer::convert(int av_format, const uint8_t* const planes[],
                         const int strides[], int w, int h, int keep_width) {
  // Point sampling keeps single-pixel detail (and the marker) crisp; full
  // chroma interpolation gives every pixel its own chroma lookup.
  context_ = sws_getCachedContext(
      context_, w, h, static_cast<AVPixelFormat>(av_format), w, h,
      AV_PIX_FMT_RGB24,
      SWS_POINT | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT,
      nullptr, nullptr, nullptr);
  if (!context_)
    throw ToolError("cannot set up the colour conversion for a " +
                    std::to_string(w) + "x" + std::to_string(h) + " picture");
  const int* bt601 = sws_getCoefficients(SWS_CS_ITU601);
  sws_setColorspaceDetails(context_, bt601, /*srcRange=*/0, bt601,
                           /*dstRange=*/1, 0, 1 << 16, 1 << 16);

  // Rows padded to 64 bytes for libswscale's vector code, cropped after.
  const int stride = (w * 3 + 63) / 64 * 64;
  std::vector<uint8_t> padded(static_cast<size_t>(stride) * h + 64);
  uint8_t* out_planes[4] = {padded.data(), nullptr, nullptr, nullptr};
  const int out_strides[4] = {stride, 0, 0, 0};
  sws_scale(context_, planes, strides, 0, h, out_planes, out_strides);

  RgbImage image = blank_image(keep_width, h);
  for (int r = 0; r < h; ++r)
    std::memcpy(image.pixels.data() + static_cast<size_t>(r) * keep_width * 3,
                padded.data() + static_cast<size_t>(r) * stride,
                static_cast<size_t>(keep_width) * 3);
  return image;
}

}  // namespace ybtool
