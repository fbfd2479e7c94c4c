#include "packing.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>

extern "C" {
#include <libavutil/pixfmt.h>
#include <libswscale/swscale.h>
}

#include "errors.h"

namespace ybtool {

std::vector<uint8_t> planar_to_packed_yuy2(const uint8_t* y, const uint8_t* u,
                                           const uint8_t* v, int luma_pitch,
                                           int chroma_pitch, int width,
                                           int height, int out_pitch,
                                           int out_rows) {
  // Point sampling with no range or matrix change copies the samples: the
  // chroma row of a pair is repeated, not interpolated between pairs.
  std::unique_ptr<SwsContext, void (*)(SwsContext*)> context(
      sws_getContext(width, height, AV_PIX_FMT_YUV420P, width, height,
                     AV_PIX_FMT_YUYV422, SWS_POINT | SWS_ACCURATE_RND, nullptr,
                     nullptr, nullptr),
      sws_freeContext);
  if (!context)
    throw ToolError("cannot set up the YUY2 packing for a " +
                    std::to_string(width) + "x" + std::to_string(height) +
                    " picture");
  // Slack at the end for libswscale's vector stores; dropped afterwards.
  std::vector<uint8_t> out(static_cast<size_t>(out_pitch) * out_rows + 64);
  const uint8_t* planes[4] = {y, u, v, nullptr};
  const int strides[4] = {luma_pitch, chroma_pitch, chroma_pitch, 0};
  uint8_t* out_planes[4] = {out.data(), nullptr, nullptr, nullptr};
  const int out_strides[4] = {out_pitch, 0, 0, 0};
  sws_scale(context.get(), planes, strides, 0, height, out_planes, out_strides);
  for (int r = height; r < out_rows; ++r)
    std::memcpy(out.data() + static_cast<size_t>(r) * out_pitch,
                out.data() + static_cast<size_t>(height - 1) * out_pitch,
                static_cast<size_t>(out_pitch));
  out.resize(static_cast<size_t>(out_pitch) * out_rows);
  return out;
}

}  // namespace ybtool
