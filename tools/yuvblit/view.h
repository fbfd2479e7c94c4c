// Turns pictures and kernel surfaces into 8-bit RGB for PNG files.
//
// RGB surfaces are unpacked as they are (RGB16 channels widened to 8 bits
// by repeating their top bits; bitmaps carrying numbers scaled by their
// Surface::value_gain), alpha planes shown as grey. YUY2 and YV12 surfaces are converted by the
// library's own kernels, LoadYUY2_RGB32 and loadimage_rgb32, and by
// libswscale (BT.601 limited-range YUV to full-range RGB) when a surface's
// layout does not suit them. Source pictures always go through libswscale,
// so what a kernel did is compared against an independent conversion.
#pragma once

#include <cstdint>
#include <vector>

#include "picture.h"
#include "surface.h"

struct SwsContext;

namespace ybtool {

struct RgbImage {
  int width = 0;
  int height = 0;
  std::vector<uint8_t> pixels;  // R G B, rows of width*3 bytes

  const uint8_t* at(int x, int y) const {
    return pixels.data() + (static_cast<size_t>(y) * width + x) * 3;
  }
};

// 8 bits of an RGB16 channel of `bits` bits: its bits repeated downwards.
uint8_t widen_channel(unsigned value, int bits);

class Viewer {
 public:
  Viewer();
  ~Viewer();
  Viewer(const Viewer&) = delete;
  Viewer& operator=(const Viewer&) = delete;

  RgbImage view(const Picture420& picture);
  RgbImage view(const Surface& surface);

  // Whether the last view(Surface) of a YUY2 or YV12 surface went through
  // the library's kernels (false: libswscale).
  bool used_library() const { return used_library_; }

 private:
  // Converts a w x h image of `av_format` and keeps the left `keep_width`
  // columns.
  RgbImage convert(int av_format, const uint8_t* const planes[],
                   const int strides[], int w, int h, int keep_width);

  SwsContext* context_ = nullptr;
  bool used_library_ = false;
};

}  // namespace ybtool
