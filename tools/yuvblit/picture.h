// The pictures the tool reads and draws: planar 4:2:0 video frames and
// RGBA overlays.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ybtool {

// A planar 8-bit 4:2:0 picture with tightly packed planes: luma is
// width x height bytes, each chroma plane ceil(width/2) x ceil(height/2).
// This is the layout of one YUV4MPEG2 frame and of the built-in test picture.
struct Picture420 {
  int width = 0;
  int height = 0;
  std::vector<uint8_t> y, u, v;

  static int chroma_size(int n) { return (n + 1) / 2; }
  int chroma_width() const { return chroma_size(width); }
  int chroma_height() const { return chroma_size(height); }

  void allocate(int w, int h) {
    width = w;
    height = h;
    y.assign(static_cast<size_t>(w) * h, 0);
    const size_t c = static_cast<size_t>(chroma_size(w)) * chroma_size(h);
    u.assign(c, 128);
    v.assign(c, 128);
  }

  // Bytes of one frame of this layout.
  static size_t frame_bytes(int w, int h) {
    return static_cast<size_t>(w) * h +
           2 * static_cast<size_t>(chroma_size(w)) * chroma_size(h);
  }
};

// An overlay as drawn or read from a PNG: 8-bit R G B A per pixel (alpha 0
// transparent, 255 opaque, colours not premultiplied), rows width*4 bytes.
struct RgbaImage {
  int width = 0;
  int height = 0;
  std::vector<uint8_t> pixels;

  void allocate(int w, int h) {
    width = w;
    height = h;
    pixels.assign(static_cast<size_t>(w) * h * 4, 0);
  }
  const uint8_t* at(int x, int y) const {
    return pixels.data() + (static_cast<size_t>(y) * width + x) * 4;
  }
  uint8_t* at(int x, int y) {
    return pixels.data() + (static_cast<size_t>(y) * width + x) * 4;
  }
};

}  // namespace ybtool
