#include "view.h"

#include <algorithm>
#include <cstring>

extern "C" {
#include <libavutil/log.h>
#include <libavutil/pixfmt.h>
#include <libswscale/swscale.h>
}

#include "errors.h"

namespace ybtool {
namespace {

// How each surface format is handed to libswscale. A new surface format
// needs its case here.
AVPixelFormat display_format(SurfaceFormat format) {
  switch (format) {
    case SurfaceFormat::kYuy2:
      return AV_PIX_FMT_YUYV422;
  }
  throw ToolError("internal: no viewer for this surface format");
}

}  // namespace

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
  const uint8_t* planes[4] = {s.bytes.data(), nullptr, nullptr, nullptr};
  const int strides[4] = {s.pitch, 0, 0, 0};
  return convert(display_format(s.format), planes, strides, s.stored_width(),
                 s.height, s.width);
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

  RgbImage image;
  image.width = keep_width;
  image.height = h;
  image.pixels.resize(static_cast<size_t>(keep_width) * 3 * h);
  for (int r = 0; r < h; ++r)
    std::memcpy(image.pixels.data() + static_cast<size_t>(r) * keep_width * 3,
                padded.data() + static_cast<size_t>(r) * stride,
                static_cast<size_t>(keep_width) * 3);
  return image;
}

}  // namespace ybtool
