// Turns pictures and kernel surfaces into 8-bit RGB for PNG files, using
// libswscale (BT.601 limited-range YUV to full-range RGB).
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

class Viewer {
 public:
  Viewer();
  ~Viewer();
  Viewer(const Viewer&) = delete;
  Viewer& operator=(const Viewer&) = delete;

  RgbImage view(const Picture420& picture);
  RgbImage view(const Surface& surface);

 private:
  // Converts a w x h image of `av_format` and keeps the left `keep_width`
  // columns.
  RgbImage convert(int av_format, const uint8_t* const planes[],
                   const int strides[], int w, int h, int keep_width);

  SwsContext* context_ = nullptr;
};

}  // namespace ybtool
