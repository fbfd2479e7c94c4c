// Reading pixels back out of kernel surfaces, and pictures that show where
// every sample went.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>

#include "kernels.h"
#include "picture.h"
#include "surface.h"

namespace ybtool::testing {

// A picture whose every luma sample and chroma sample differs from its
// neighbours, so any misplaced row, column or plane shows.
inline Picture420 distinct_picture(int w, int h) {
  Picture420 p;
  p.allocate(w, h);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x)
      p.y[static_cast<size_t>(y) * w + x] = static_cast<uint8_t>(16 + (x * 5 + y * 11) % 220);
  for (size_t i = 0; i < p.u.size(); ++i) {
    p.u[i] = static_cast<uint8_t>(16 + (i * 7) % 220);
    p.v[i] = static_cast<uint8_t>(16 + (i * 13 + 3) % 220);
  }
  return p;
}

inline const KernelInfo& kernel(const char* name) {
  const KernelInfo* k = find_kernel(name);
  if (!k) std::abort();
  return *k;
}

inline std::string size_label(int w, int h) {
  return std::to_string(w) + "x" + std::to_string(h);
}

struct Yuv3 {
  int y, u, v;
  bool operator==(const Yuv3& o) const { return y == o.y && u == o.u && v == o.v; }
};

// The picture's own samples at pixel (x, y).
inline Yuv3 picture_at(const Picture420& p, int x, int y) {
  const size_t c = static_cast<size_t>(y / 2) * p.chroma_width() + x / 2;
  return {p.y[static_cast<size_t>(y) * p.width + x], p.u[c], p.v[c]};
}

// A YUY2 pixel: the luma of its own byte, the chroma of its pair.
inline Yuv3 yuy2_at(const Surface& s, int x, int y) {
  const uint8_t* pair = s.row(y) + (x / 2) * 4;
  return {pair[(x % 2) * 2], pair[1], pair[3]};
}

// A YV12 pixel: its luma and the samples of its 2x2 block's chroma.
inline Yuv3 yv12_at(const Surface& s, int x, int y) {
  return {s.row(y)[x], s.u_row(y / 2)[x / 2], s.v_row(y / 2)[x / 2]};
}

struct Rgb3 {
  int r, g, b;
};

// An RGB32 or RGB24 pixel.
inline Rgb3 rgb_at(const Surface& s, int x, int y) {
  const uint8_t* p = s.row(y) + x * surface_format_info(s.format).bytes_per_pixel;
  return {p[2], p[1], p[0]};
}

inline unsigned rgb16_at(const Surface& s, int x, int y) {
  const uint8_t* p = s.row(y) + x * 2;
  return p[0] | p[1] << 8;
}

// Whether pixel (x, y) still holds the marker the surface was filled with.
inline bool is_marker(const Surface& s, int x, int y) {
  const SurfaceFormatInfo& f = surface_format_info(s.format);
  switch (s.format) {
    case SurfaceFormat::kYuy2:
      return yuy2_at(s, x, y) == Yuv3{f.marker[0], f.marker[1], f.marker[3]};
    case SurfaceFormat::kYv12:
      return yv12_at(s, x, y) == Yuv3{f.marker[0], f.marker[2], f.marker[1]};
    default: {
      const uint8_t* p = s.row(y) + x * f.bytes_per_pixel;
      for (int i = 0; i < f.bytes_per_pixel; ++i)
        if (p[i] != f.marker[i % f.marker_bytes]) return false;
      return true;
    }
  }
}

}  // namespace ybtool::testing
