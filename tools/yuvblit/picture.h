// A planar 8-bit 4:2:0 picture with tightly packed planes: luma is
// width x height bytes, each chroma plane ceil(width/2) x ceil(height/2).
// This is the layout of one YUV4MPEG2 frame and of the built-in test picture.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ybtool {

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

}  // namespace ybtool
