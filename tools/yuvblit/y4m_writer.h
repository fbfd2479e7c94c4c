// Writes kernel surfaces as a YUV4MPEG2 stream that video tools read back:
// YUY2 surfaces as planar 4:2:2 (C422), YV12 surfaces as planar 4:2:0 with
// the U plane before the V plane, as the format orders them.
#pragma once

#include <string>
#include <vector>

#include "output_file.h"
#include "surface.h"
#include "y4m.h"

namespace ybtool {

// Whether surfaces of `format` can be written as YUV4MPEG2 (YUY2 and YV12).
bool y4m_can_hold(SurfaceFormat format);

// The header for `out_width` x `out_height` surfaces of `format` made from
// frames of the `source` stream. Frame rate and interlacing are kept. 4:2:0
// keeps the source's colour space tag (its chroma siting). The pixel aspect
// is scaled by the change of size so that the picture keeps its shape; a
// source without one counts as square pixels when the size changes.
Y4mHeader y4m_output_header(const Y4mHeader& source, SurfaceFormat format,
                            int out_width, int out_height);

// "YUV4MPEG2 W.. H.. [F..] [I..] [A..] C..\n"; tags unknown in `header`
// (0:0 ratios, interlacing '?' or per-frame 'm') are left out.
std::string y4m_header_line(const Y4mHeader& header);

class Y4mWriter {
 public:
  // `format` is the surfaces' format, which y4m_can_hold() must accept.
  Y4mWriter(OutputFile& out, Y4mHeader header, SurfaceFormat format);

  // Writes the stream header before the first frame, then "FRAME\n" and the
  // surface's planes cropped to the picture. The surface must have the
  // header's size.
  void write(const Surface& surface);

 private:
  OutputFile& out_;
  Y4mHeader header_;
  SurfaceFormat format_;
  bool header_written_ = false;
  std::vector<uint8_t> frame_;  // one frame's planes, reused
};

}  // namespace ybtool
