// PNG output through libpng's simplified API.
#pragma once

#include <string>

#include "view.h"

namespace ybtool {

// Writes `image` as an 8-bit RGB PNG at `path`; throws ToolError naming the
// path when the file cannot be written.
void write_png(const std::string& path, const RgbImage& image);

}  // namespace ybtool
