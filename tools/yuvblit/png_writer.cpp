#include "png_writer.h"

#include <png.h>

#include <cstring>

#include "errors.h"

namespace ybtool {

void write_png(const std::string& path, const RgbImage& image) {
  png_image png;
  std::memset(&png, 0, sizeof png);
  png.version = PNG_IMAGE_VERSION;
  png.width = static_cast<png_uint_32>(image.width);
  png.height = static_cast<png_uint_32>(image.height);
  png.format = PNG_FORMAT_RGB;
  const int ok = png_image_write_to_file(&png, path.c_str(), 0,
                                         image.pixels.data(), image.width * 3,
                                         nullptr);
  if (!ok) {
    const std::string why = png.message;
    png_image_free(&png);
    throw ToolError(path + ": cannot write PNG (" + why + ")");
  }
}

}  // namespace ybtool
