// The built-in overlay the subpicture kernels get when given none.
#pragma once

#include "picture.h"

namespace ybtool {

// A player's menu drawn for a width x height frame, scaled to it:
//   - a translucent dark-blue panel (alpha 0.75) with rounded, smoothed
//     corners over a soft drop shadow whose alpha fades from 0.6 to 0;
//   - a title and four buttons with text in a blocky 3x5 font, the third
//     button highlighted; text and highlighted button opaque;
//   - a slider at the top right whose alpha runs from 0 to 1, so every
//     mixing weight 0..16 appears;
//   - a caption at the bottom right, white with a black outline.
// Crisp left edges sit on even columns (see kKeyGrey in subpicture.h).
// Everything else is transparent.
RgbaImage make_test_overlay(int width, int height);

}  // namespace ybtool
