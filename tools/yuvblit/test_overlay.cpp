#include "test_overlay.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace ybtool {
namespace {

struct Colour {
  float r, g, b;
};

struct Rect {
  int x0, y0, x1, y1;  // x1, y1 exclusive
};

// Blocky capitals, 3x5, one string per row ('#' set).
const char* const* glyph(char c) {
  static const struct {
    char c;
    const char* rows[5];
  } kFont[] = {
      {'A', {".#.", "#.#", "###", "#.#", "#.#"}},
      {'B', {"##.", "#.#", "##.", "#.#", "##."}},
      {'C', {".##", "#..", "#..", "#..", ".##"}},
      {'D', {"##.", "#.#", "#.#", "#.#", "##."}},
      {'E', {"###", "#..", "##.", "#..", "###"}},
      {'I', {"###", ".#.", ".#.", ".#.", "###"}},
      {'L', {"#..", "#..", "#..", "#..", "###"}},
      {'M', {"#.#", "###", "###", "#.#", "#.#"}},
      {'N', {"##.", "#.#", "#.#", "#.#", "#.#"}},
      {'O', {".#.", "#.#", "#.#", "#.#", ".#."}},
      {'P', {"##.", "#.#", "##.", "#..", "#.."}},
      {'R', {"##.", "#.#", "##.", "#.#", "#.#"}},
      {'S', {".##", "#..", ".#.", "..#", "##."}},
      {'T', {"###", ".#.", ".#.", ".#.", ".#."}},
      {'U', {"#.#", "#.#", "#.#", "#.#", "###"}},
      {'Y', {"#.#", "#.#", ".#.", ".#.", ".#."}},
  };
  for (const auto& g : kFont)
    if (g.c == c) return g.rows;
  return nullptr;  // drawn as a space
}

int even(int v) { return v & ~1; }

// Straight-alpha RGBA in floating point, composited with "over".
class Canvas {
 public:
  Canvas(int w, int h) : w_(w), h_(h), px_(static_cast<size_t>(w) * h) {}

  void paint(int x, int y, const Colour& c, float alpha) {
    if (x < 0 || y < 0 || x >= w_ || y >= h_ || alpha <= 0) return;
    Pixel& d = px_[static_cast<size_t>(y) * w_ + x];
    const float a = alpha + d.a * (1 - alpha);
    const float keep = d.a * (1 - alpha) / a;
    d.c = {c.r * alpha / a + d.c.r * keep, c.g * alpha / a + d.c.g * keep,
           c.b * alpha / a + d.c.b * keep};
    d.a = a;
  }

  // Calls paint with f(x, y) as alpha over `area` clipped to the canvas.
  template <class F>
  void shade(const Rect& area, const Colour& c, F f) {
    for (int y = std::max(area.y0, 0); y < std::min(area.y1, h_); ++y)
      for (int x = std::max(area.x0, 0); x < std::min(area.x1, w_); ++x)
        paint(x, y, c, f(x, y));
  }

  RgbaImage image() const {
    RgbaImage out;
    out.allocate(w_, h_);
    auto byte = [](float v) {
      return static_cast<uint8_t>(std::clamp(std::lround(v), 0L, 255L));
    };
    for (int y = 0; y < h_; ++y)
      for (int x = 0; x < w_; ++x) {
        const Pixel& p = px_[static_cast<size_t>(y) * w_ + x];
        uint8_t* o = out.at(x, y);
        o[3] = byte(p.a * 255);
        if (o[3] == 0) continue;
        o[0] = byte(p.c.r);
        o[1] = byte(p.c.g);
        o[2] = byte(p.c.b);
      }
    return out;
  }

 private:
  struct Pixel {
    Colour c{0, 0, 0};
    float a = 0;
  };
  int w_, h_;
  std::vector<Pixel> px_;
};

// Signed distance from the centre of pixel (x, y) to a rectangle with
// corners rounded by `radius`; negative inside.
float rounded_distance(const Rect& r, float radius, int x, int y) {
  const float cx = (r.x0 + r.x1) / 2.0f, cy = (r.y0 + r.y1) / 2.0f;
  const float qx = std::fabs(x + 0.5f - cx) - ((r.x1 - r.x0) / 2.0f - radius);
  const float qy = std::fabs(y + 0.5f - cy) - ((r.y1 - r.y0) / 2.0f - radius);
  const float outside = std::hypot(std::max(qx, 0.0f), std::max(qy, 0.0f));
  return outside + std::min(std::max(qx, qy), 0.0f) - radius;
}

void rounded_rect(Canvas& canvas, const Rect& r, float radius, const Colour& c,
                  float alpha) {
  canvas.shade(r, c, [&](int x, int y) {
    return alpha * std::clamp(0.5f - rounded_distance(r, radius, x, y), 0.0f, 1.0f);
  });
}

// Full `alpha` inside `r`, fading smoothly to 0 at `blur` pixels outside.
void soft_shadow(Canvas& canvas, const Rect& r, float radius, int blur,
                 float alpha) {
  const Rect area{r.x0 - blur, r.y0 - blur, r.x1 + blur, r.y1 + blur};
  canvas.shade(area, {0, 0, 0}, [&](int x, int y) {
    const float t = std::clamp(1 - rounded_distance(r, radius, x, y) / blur, 0.0f, 1.0f);
    return alpha * t * t * (3 - 2 * t);
  });
}

int text_width(const std::string& text, int scale) {
  return static_cast<int>(text.size()) * 4 * scale - scale;
}

// Text with its top-left at (x, y), each font dot scale x scale pixels.
void text(Canvas& canvas, int x, int y, int scale, const std::string& s,
          const Colour& c) {
  for (size_t i = 0; i < s.size(); ++i) {
    const char* const* rows = glyph(s[i]);
    if (!rows) continue;
    const int gx = x + static_cast<int>(i) * 4 * scale;
    for (int row = 0; row < 5; ++row)
      for (int col = 0; col < 3; ++col)
        if (rows[row][col] == '#')
          canvas.shade({gx + col * scale, y + row * scale, gx + (col + 1) * scale,
                        y + (row + 1) * scale},
                       c, [](int, int) { return 1.0f; });
  }
}

void outlined_text(Canvas& canvas, int x, int y, int scale, const std::string& s,
                   int outline) {
  for (int dy = -outline; dy <= outline; ++dy)
    for (int dx = -outline; dx <= outline; ++dx)
      if (dx || dy) text(canvas, x + dx, y + dy, scale, s, {0, 0, 0});
  text(canvas, x, y, scale, s, {255, 255, 255});
}

}  // namespace

RgbaImage make_test_overlay(int width, int height) {
  Canvas canvas(width, height);
  const int s = std::max(1, height / 120);  // font dot
  const int title_s = std::max(1, s * 3 / 2);
  const Colour white{255, 255, 255}, panel{22, 34, 84}, button{44, 84, 170},
      highlight{250, 190, 40}, dark{24, 24, 24};

  // Panel (sized to its contents) over its shadow.
  const int inset = even(4 * s), title_top = height * 10 / 100 + 3 * s;
  const int rule_top = title_top + 5 * title_s + 2 * s;
  const int buttons_top = rule_top + 3 * s, button_pitch = 12 * s;
  const Rect box{even(width * 6 / 100), height * 10 / 100, even(width * 50 / 100),
                 buttons_top + 3 * button_pitch + 9 * s + 4 * s};
  const int radius = 3 * s, offset = std::max(2, 2 * s), blur = std::max(2, 5 * s);
  soft_shadow(canvas, {box.x0 + offset, box.y0 + offset, box.x1 + offset, box.y1 + offset},
              radius, blur, 0.6f);
  rounded_rect(canvas, box, radius, panel, 0.75f);

  text(canvas, box.x0 + inset, title_top, title_s, "MAIN MENU", white);
  canvas.shade({box.x0 + inset, rule_top, box.x1 - inset, rule_top + std::max(1, s / 2)},
               white, [](int, int) { return 0.9f; });

  const char* const labels[] = {"PLAY", "SCENES", "AUDIO", "SUBTITLES"};
  for (int i = 0; i < 4; ++i) {
    const int top = buttons_top + i * button_pitch;
    const Rect b{box.x0 + inset, top, box.x1 - inset, top + 9 * s};
    const bool lit = i == 2;
    rounded_rect(canvas, b, 2 * s, lit ? highlight : button, lit ? 1.0f : 0.9f);
    text(canvas, b.x0 + even(3 * s), b.y0 + 2 * s, s, labels[i], lit ? dark : white);
  }

  // A slider whose alpha ramps across its width.
  const Rect slider{even(width * 58 / 100), height * 12 / 100, even(width * 94 / 100),
                    height * 12 / 100 + std::max(2, 4 * s)};
  canvas.shade(slider, white, [&](int x, int) {
    return static_cast<float>(x - slider.x0) / std::max(1, slider.x1 - slider.x0 - 1);
  });

  // Caption.
  const std::string caption = "PRESS PLAY TO START";
  const int cx = even(width * 73 / 100 - text_width(caption, s) / 2);
  outlined_text(canvas, cx, height * 88 / 100, s, caption, std::max(1, s / 2));
  return canvas.image();
}

}  // namespace ybtool
