// The built-in test picture the demo renders when given no input.
#pragma once

#include <cstdint>

#include "picture.h"

namespace ybtool {

struct Yuv {
  uint8_t y, u, v;
};

// BT.601 limited-range YCbCr of an 8-bit RGB colour.
Yuv rgb_to_yuv601(int r, int g, int b);

// Bands from top to bottom:
//   40%  eight 100% colour bars: white, yellow, cyan, green, magenta, red,
//        blue, black
//   10%  luma ramp 0..255, neutral chroma
//   10%  U ramp 16..240 at mid luma
//   10%  V ramp 16..240 at mid luma
//   30%  fine detail, grey: a zone plate (left half), a one-pixel diagonal
//        grid, and one-pixel vertical (top) and horizontal (bottom) stripes
// Band edges fall on even rows so every band has its own chroma rows.
Picture420 make_test_picture(int width = 720, int height = 480);

}  // namespace ybtool
