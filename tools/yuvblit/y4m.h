// Reader for 8-bit 4:2:0 YUV4MPEG2 streams: a header line
//   YUV4MPEG2 W<w> H<h> [F<n:d>] [I<p|t|b|m|?>] [A<n:d>] [C<colour space>] [X...]
// then per frame a line "FRAME[ params]" and the raw Y, U and V planes.
// Every problem is reported as a ToolError "NAME: problem" so the caller can
// print it as one line.
#pragma once

#include <cstddef>
#include <istream>
#include <string>

#include "picture.h"

namespace ybtool {

struct Y4mHeader {
  int width = 0;
  int height = 0;
  std::string colour_space = "420";  // C tag without the C; absent means 420
  int rate_num = 0, rate_den = 0;    // F tag, 0:0 when absent
  int aspect_num = 0, aspect_den = 0;  // A tag (pixel aspect), 0:0 when absent
  char interlace = '?';              // I tag
  size_t header_bytes = 0;           // header line with its newline
};

class Y4mReader {
 public:
  // Parses and checks the header; throws ToolError naming `name`.
  Y4mReader(std::istream& in, std::string name);

  const Y4mHeader& header() const { return header_; }
  const std::string& name() const { return name_; }

  // Bytes of picture data in each frame (not counting the FRAME line).
  size_t frame_bytes() const;

  // Reads the next frame into `picture`. Returns false at a clean end of
  // the stream; throws ToolError for a malformed or truncated frame.
  bool read_frame(Picture420& picture);

  int frames_read() const { return frames_read_; }

 private:
  [[noreturn]] void fail(const std::string& problem) const;

  std::istream& in_;
  std::string name_;
  Y4mHeader header_;
  int frames_read_ = 0;
};

}  // namespace ybtool
