#include "png_reader.h"

#include <png.h>

#include <algorithm>
#include <cctype>
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

// libpng allocates a text chunk's buffer from the length in the chunk's
// header before reading it, so a few damaged bytes can ask for 2 GiB. This
// walks the chunk headers first and names the first chunk that runs past
// the end of the file ("" when none does), which bounds every allocation by
// the file's size. Files without the signature are left to libpng to
// refuse. Leaves the file at its start.
std::string chunk_past_end(FILE* file) {
  static const unsigned char kSignature[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  std::string problem;
  unsigned char bytes[8];
  long long size = -1;
  if (std::fseek(file, 0, SEEK_END) == 0) size = std::ftell(file);
  std::rewind(file);
  if (size >= 8 && std::fread(bytes, 1, 8, file) == 8 &&
      std::memcmp(bytes, kSignature, 8) == 0) {
    // Each chunk: 4-byte big-endian length, 4-byte type, data, 4-byte CRC.
    for (long long at = 8; size - at >= 8; ) {
      if (std::fseek(file, static_cast<long>(at), SEEK_SET) != 0 ||
          std::fread(bytes, 1, 8, file) != 8)
        break;
      const long long length = (static_cast<long long>(bytes[0]) << 24) |
                               (bytes[1] << 16) | (bytes[2] << 8) | bytes[3];
      const std::string type(reinterpret_cast<const char*>(bytes + 4), 4);
      if (length + 12 > size - at) {
        const bool named = std::all_of(type.begin(), type.end(), [](char c) {
          return std::isalpha(static_cast<unsigned char>(c));
        });
        problem = "the " + (named ? type : "unnamed") +
                  " chunk runs past the end of the file";
        break;
      }
      if (type == "IEND") break;
      at += length + 12;
    }
  }
  std::rewind(file);
  return problem;
}

}  // namespace

RgbaImage read_overlay_png(const std::string& path, int max_width,
                           int max_height) {
  std::error_code ec;
  if (std::filesystem::is_directory(path, ec))
    throw ToolError(path + ": is a directory");
  const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                   std::fclose);
  if (!file) throw ToolError(path + ": cannot open (" + std::strerror(errno) + ")");

  const std::string damage = chunk_past_end(file.get());
  if (!damage.empty()) throw ToolError(path + ": damaged PNG (" + damage + ")");

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
