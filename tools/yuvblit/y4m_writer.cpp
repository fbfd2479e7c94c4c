#include "y4m_writer.h"

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <stdexcept>

namespace ybtool {
namespace {

// Largest ratio term the tool's own reader accepts back.
constexpr uint64_t kMaxRatioTerm = uint64_t{1} << 30;

}  // namespace

bool y4m_can_hold(SurfaceFormat format) {
  return format == SurfaceFormat::kYuy2 || format == SurfaceFormat::kYv12;
}

Y4mHeader y4m_output_header(const Y4mHeader& source, SurfaceFormat format,
                            int out_width, int out_height) {
  if (!y4m_can_hold(format))
    throw std::logic_error("y4m_output_header: not a YUV surface format");
  Y4mHeader h;
  h.width = out_width;
  h.height = out_height;
  h.rate_num = source.rate_num;
  h.rate_den = source.rate_den;
  h.interlace = source.interlace;
  h.colour_space = format == SurfaceFormat::kYuy2 ? "422" : source.colour_space;

  const bool known = source.aspect_num > 0 && source.aspect_den > 0;
  if (out_width == source.width && out_height == source.height) {
    if (known) {
      h.aspect_num = source.aspect_num;
      h.aspect_den = source.aspect_den;
    }
    return h;
  }
  // The shown shape, aspect * width / height, stays what it was.
  uint64_t num = known ? static_cast<uint64_t>(source.aspect_num) : 1;
  uint64_t den = known ? static_cast<uint64_t>(source.aspect_den) : 1;
  num *= static_cast<uint64_t>(source.width) * static_cast<uint64_t>(out_height);
  den *= static_cast<uint64_t>(out_width) * static_cast<uint64_t>(source.height);
  const uint64_t g = std::gcd(num, den);
  num /= g;
  den /= g;
  if (num <= kMaxRatioTerm && den <= kMaxRatioTerm) {
    h.aspect_num = static_cast<int>(num);
    h.aspect_den = static_cast<int>(den);
  }
  return h;
}

std::string y4m_header_line(const Y4mHeader& h) {
  std::string line = "YUV4MPEG2 W" + std::to_string(h.width) + " H" +
                     std::to_string(h.height);
  if (h.rate_num > 0 && h.rate_den > 0)
    line += " F" + std::to_string(h.rate_num) + ":" + std::to_string(h.rate_den);
  // Mixed interlacing is described frame by frame, which the output's bare
  // FRAME lines do not carry.
  if (h.interlace != '?' && h.interlace != 'm') line += std::string(" I") + h.interlace;
  if (h.aspect_num > 0 && h.aspect_den > 0)
    line += " A" + std::to_string(h.aspect_num) + ":" + std::to_string(h.aspect_den);
  return line + " C" + h.colour_space + "\n";
}

Y4mWriter::Y4mWriter(OutputFile& out, Y4mHeader header, SurfaceFormat format)
    : out_(out), header_(std::move(header)), format_(format) {
  if (!y4m_can_hold(format))
    throw std::logic_error("Y4mWriter: not a YUV surface format");
}

void Y4mWriter::write(const Surface& s) {
  if (s.format != format_ || s.width != header_.width || s.height != header_.height)
    throw std::logic_error("Y4mWriter: surface does not match the stream header");
  if (!header_written_) {
    out_.write(y4m_header_line(header_));
    header_written_ = true;
  }
  const size_t w = static_cast<size_t>(s.width);
  const size_t cw = static_cast<size_t>(s.chroma_width());
  const int rows = s.height;
  const int chroma_rows = format_ == SurfaceFormat::kYuy2 ? rows : s.chroma_height();
  frame_.resize(w * rows + 2 * cw * chroma_rows);
  uint8_t* y = frame_.data();
  uint8_t* u = y + w * rows;
  uint8_t* v = u + cw * chroma_rows;

  if (format_ == SurfaceFormat::kYuy2) {
    // Y0 U Y1 V: even bytes luma, then U and V alternating. An odd width
    // keeps the last pair's chroma and drops its second luma sample.
    for (int r = 0; r < rows; ++r) {
      const uint8_t* p = s.row(r);
      for (size_t x = 0; x < w; ++x) *y++ = p[2 * x];
      for (size_t x = 0; x < cw; ++x) {
        *u++ = p[4 * x + 1];
        *v++ = p[4 * x + 3];
      }
    }
  } else {
    for (int r = 0; r < rows; ++r, y += w) std::copy_n(s.row(r), w, y);
    for (int r = 0; r < chroma_rows; ++r, u += cw) std::copy_n(s.u_row(r), cw, u);
    for (int r = 0; r < chroma_rows; ++r, v += cw) std::copy_n(s.v_row(r), cw, v);
  }
  out_.write("FRAME\n");
  out_.write(frame_.data(), frame_.size());
}

}  // namespace ybtool
