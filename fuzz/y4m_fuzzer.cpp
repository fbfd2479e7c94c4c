// Feeds arbitrary bytes to the YUV4MPEG2 reader as a stream, the way the
// command reads standard input, and reads every frame. An input must either
// read or be refused with a one-line ToolError naming the stream; a crash, a
// sanitizer report, any other exception, a leak or an oversized allocation
// is a finding.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include "errors.h"
#include "y4m.h"

namespace {

constexpr const char* kName = "input.y4m";

void check_refusal(const ybtool::ToolError& e) {
  const std::string text = e.what();
  if (text.rfind(std::string(kName) + ": ", 0) != 0 ||
      text.find('\n') != std::string::npos)
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
  try {
    ybtool::Y4mReader reader(in, kName);
    ybtool::Picture420 picture;
    while (reader.read_frame(picture)) {
      // A frame that reads fills exactly the planes its header describes.
      if (picture.width != reader.header().width ||
          picture.height != reader.header().height ||
          picture.y.size() + picture.u.size() + picture.v.size() !=
              reader.frame_bytes())
        std::abort();
    }
  } catch (const ybtool::ToolError& e) {
    check_refusal(e);
  }
  return 0;
}
