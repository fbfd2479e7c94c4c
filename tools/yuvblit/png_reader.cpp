#include "png_reader.h"

#include <png.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>

#include "errors.h"

namespace ybtool {
namespace {

std::string size_text(png_uint_32 w, png_uint_32 h) {
  return std::to_string(w) + "x" + std::to_string(h);
}

// Frees libpng's reader state on every way out.
struct ImageGuard {
  png_image& image;
  ~ImageGuard() { png_image_free(&image); }
};

}  // namespace

RgbaImage read_overlay_png(const std::string& path, int max_width,
                           int max_height) {
  std::error_code ec;
  if (std::filesystem::is_directory(path, ec))
    throw ToolError(path + ": is a directory");
  const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                   std::fclose);
  if (!file) throw ToolError(path + ": cannot open (" + std::strerror(errno) + ")");

  png_image png;
  std::memset(&png, 0, sizeof png);
  png.version = PNG_IMAGE_VERSION;
  const ImageGuard guard{png};
  if (!png_image_begin_read_from_stdio(&png, file.get()))
    throw ToolError(path + ": not a readable PNG (" + png.message + ")");

  // The simplified reader reports a tRNS chunk as an alpha channel.
  if (!(png.format & PNG_FORMAT_FLAG_ALPHA))
    throw ToolError(path + ": has no transparency (need RGBA, grey+alpha, or a "
                           "palette, grey or RGB image with a tRNS chunk)");
  if (png.format & PNG_FORMAT_FLAG_LINEAR)
    throw ToolError(path + ": has 16 bits per channel (need 8)");
  if (png.width > static_cast<png_uint_32>(max_width) ||
      png.height > static_cast<png_uint_32>(max_height))
    throw ToolError(path + ": " + size_text(png.width, png.height) +
                    " is larger than the " +
                    size_text(max_width, max_height) + " frame");

  RgbaImage image;
  image.allocate(static_cast<int>(png.width), static_cast<int>(png.height));
  png.format = PNG_FORMAT_RGBA;  // 8-bit, not premultiplied
  if (!png_image_finish_read(&png, nullptr, image.pixels.data(), 0, nullptr))
    throw ToolError(path + ": damaged PNG (" + png.message + ")");
  return image;
}

}  // namespace ybtool
