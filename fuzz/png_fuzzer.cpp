// Reads arbitrary bytes as a PNG overlay for a full-HD frame through the
// same path-based reader the command uses; the bytes live in an in-memory
// file so each input costs no disk I/O. An input must either read as an
// RGBA image that fits the frame or be refused with a one-line ToolError
// naming the file; a crash, a sanitizer report, any other exception, a leak
// or an oversized allocation is a finding.
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "errors.h"
#include "png_reader.h"

namespace {

constexpr int kFrameWidth = 1920;
constexpr int kFrameHeight = 1080;

// One in-memory file for the whole run, rewritten for every input.
int memory_file() {
  static const int fd = memfd_create("overlay.png", 0);
  return fd;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const int fd = memory_file();
  if (fd < 0 || ftruncate(fd, 0) != 0 ||
      pwrite(fd, data, size, 0) != static_cast<ssize_t>(size))
    std::abort();
  // Opening this path gives a fresh file position at the start.
  const std::string path = "/proc/self/fd/" + std::to_string(fd);
  try {
    const ybtool::RgbaImage image =
        ybtool::read_overlay_png(path, kFrameWidth, kFrameHeight);
    if (image.width < 1 || image.width > kFrameWidth || image.height < 1 ||
        image.height > kFrameHeight ||
        image.pixels.size() != static_cast<size_t>(image.width) * image.height * 4)
      std::abort();
  } catch (const ybtool::ToolError& e) {
    const std::string text = e.what();
    if (text.rfind(path + ": ", 0) != 0 || text.find('\n') != std::string::npos)
      std::abort();
  }
  return 0;
}
