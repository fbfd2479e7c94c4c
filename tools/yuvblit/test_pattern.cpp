#include "test_pattern.h"

#include <algorithm>
#include <cmath>

namespace ybtool {
namespace {

uint8_t clamp8(double v) {
  return static_cast<uint8_t>(std::clamp(std::lround(v), 0L, 255L));
}

// Picks the colour of one pixel; chroma of a 2x2 block comes from its top
// left pixel.
class Pattern {
 public:
  Pattern(int w, int h)
      : w_(w),
        luma_ramp_(even(h * 4 / 10)),
        u_ramp_(even(h * 5 / 10)),
        v_ramp_(even(h * 6 / 10)),
        detail_(even(h * 7 / 10)),
        h_(h) {}

  Yuv at(int x, int y) const {
    if (y < luma_ramp_) return bar(x);
    if (y < u_ramp_) return {ramp(x, 0, 255), 128, 128};
    if (y < v_ramp_) return {128, ramp(x, 16, 240), 128};
    if (y < detail_) return {128, 128, ramp(x, 16, 240)};
    return {detail(x, y - detail_), 128, 128};
  }

 private:
  static int even(int v) { return v & ~1; }

  Yuv bar(int x) const {
    static const int kBars[8][3] = {{255, 255, 255}, {255, 255, 0},
                                    {0, 255, 255},   {0, 255, 0},
                                    {255, 0, 255},   {255, 0, 0},
                                    {0, 0, 255},     {0, 0, 0}};
    const int* c = kBars[x * 8 / w_];
    return rgb_to_yuv601(c[0], c[1], c[2]);
  }

  uint8_t ramp(int x, int lo, int hi) const {
    return static_cast<uint8_t>(lo + (hi - lo) * x / std::max(w_ - 1, 1));
  }

  // x across the whole width, y from the top of the detail band.
  uint8_t detail(int x, int y) const {
    const int band = h_ - detail_;
    const int half = w_ / 2;
    if (x < half) {
      // Circular zone plate whose frequency reaches one cycle per two
      // pixels at the band's corners.
      const double dx = x - half / 2.0, dy = y - band / 2.0;
      const double r_max = std::hypot(half / 2.0, band / 2.0);
      const double phase = M_PI / (2 * r_max) * (dx * dx + dy * dy);
      return clamp8(126 + 109 * std::cos(phase));
    }
    if (x < w_ * 5 / 6) {
      const bool line = (x + y) % 12 == 0 || (x - y + 12 * h_) % 12 == 0;
      return line ? 235 : 40;
    }
    const bool on = y < band / 2 ? x % 2 : y % 2;
    return on ? 235 : 16;
  }

  int w_, luma_ramp_, u_ramp_, v_ramp_, detail_, h_;
};

}  // namespace

Yuv rgb_to_yuv601(int r, int g, int b) {
  const double y = 16 + (65.481 * r + 128.553 * g + 24.966 * b) / 255;
  const double u = 128 + (-37.797 * r - 74.203 * g + 112.0 * b) / 255;
  const double v = 128 + (112.0 * r - 93.786 * g - 18.214 * b) / 255;
  return {clamp8(y), clamp8(u), clamp8(v)};
}

Picture420 make_test_picture(int width, int height) {
  Picture420 p;
  p.allocate(width, height);
  const Pattern pattern(width, height);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      p.y[static_cast<size_t>(y) * width + x] = pattern.at(x, y).y;
  const int cw = p.chroma_width();
  for (int cy = 0; cy < p.chroma_height(); ++cy)
    for (int cx = 0; cx < cw; ++cx) {
      const Yuv c = pattern.at(2 * cx, 2 * cy);
      p.u[static_cast<size_t>(cy) * cw + cx] = c.u;
      p.v[static_cast<size_t>(cy) * cw + cx] = c.v;
    }
  return p;
}

}  // namespace ybtool
