// Overlay input: PNG files with transparency, read through libpng.
#pragma once

#include <string>

#include "picture.h"

namespace ybtool {

// Reads an overlay of at most max_width x max_height pixels (the frame it
// goes over) as 8-bit RGBA. Accepted: 8-bit RGBA and grey+alpha, and
// palette, grey or RGB images with a transparency (tRNS) chunk, all
// expanded to RGBA; colours come back as sRGB. Refused with a one-line
// ToolError "PATH: problem": a missing or unreadable file, anything that is
// not a PNG or is damaged, images without transparency, 16-bit images, and
// images larger than the frame.
RgbaImage read_overlay_png(const std::string& path, int max_width,
                           int max_height);

}  // namespace ybtool
