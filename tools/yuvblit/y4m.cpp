#include "y4m.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "errors.h"

namespace ybtool {
namespace {

// Header and FRAME lines longer than this are treated as damage rather than
// read on without end.
constexpr size_t kMaxLine = 1024;
// Largest accepted width or height; keeps every size computation small.
constexpr int kMaxDimension = 16384;
// First read of a plane; later reads double what the plane holds.
constexpr size_t kFirstChunk = size_t{64} << 10;

constexpr std::string_view kSignature = "YUV4MPEG2";
constexpr std::string_view kFrameMarker = "FRAME";

enum class Line { kComplete, kEnd, kUnterminated, kTooLong };

// Reads up to and including '\n' (not stored).
Line read_line(std::istream& in, std::string& line) {
  line.clear();
  std::streambuf* buf = in.rdbuf();
  for (;;) {
    const int c = buf->sbumpc();
    if (c == std::char_traits<char>::eof())
      return line.empty() ? Line::kEnd : Line::kUnterminated;
    if (c == '\n') return Line::kComplete;
    if (line.size() == kMaxLine) return Line::kTooLong;
    line.push_back(static_cast<char>(c));
  }
}

// A line that is `word` alone or `word` followed by a space and parameters.
bool starts_with_word(const std::string& line, std::string_view word) {
  return line.compare(0, word.size(), word) == 0 &&
         (line.size() == word.size() || line[word.size()] == ' ');
}

std::optional<int> parse_int(std::string_view s, int max) {
  if (s.empty() || s.size() > 9) return std::nullopt;
  int value = 0;
  for (char c : s) {
    if (c < '0' || c > '9') return std::nullopt;
    value = value * 10 + (c - '0');
  }
  if (value > max) return std::nullopt;
  return value;
}

// "n:d" with both parts decimal.
bool parse_ratio(std::string_view s, int& num, int& den) {
  const size_t colon = s.find(':');
  if (colon == std::string_view::npos) return false;
  const auto n = parse_int(s.substr(0, colon), 1 << 30);
  const auto d = parse_int(s.substr(colon + 1), 1 << 30);
  if (!n || !d) return false;
  num = *n;
  den = *d;
  return true;
}

bool is_420_8bit(const std::string& c) {
  return c == "420" || c == "420jpeg" || c == "420mpeg2" || c == "420paldv";
}

}  // namespace

void Y4mReader::fail(const std::string& problem) const {
  throw ToolError(name_ + ": " + problem);
}

Y4mReader::Y4mReader(std::istream& in, std::string name)
    : in_(in), name_(std::move(name)) {
  std::string line;
  const Line got = read_line(in_, line);
  if (got == Line::kEnd) fail("empty file (expected a YUV4MPEG2 header)");
  if (!starts_with_word(line, kSignature))
    fail("not a YUV4MPEG2 file (does not start with \"YUV4MPEG2 \")");
  if (got == Line::kTooLong)
    fail("header line is longer than " + std::to_string(kMaxLine) + " bytes");
  if (got == Line::kUnterminated) fail("header is truncated (no end of line)");
  header_.header_bytes = line.size() + 1;

  std::optional<int> width, height;
  std::string_view rest = std::string_view(line).substr(kSignature.size());
  while (!rest.empty()) {
    const size_t space = rest.find(' ');
    const std::string_view token = rest.substr(0, space);
    rest = space == std::string_view::npos ? std::string_view()
                                           : rest.substr(space + 1);
    if (token.empty()) continue;
    const std::string_view value = token.substr(1);
    const std::string shown(token);
    switch (token[0]) {
      case 'W':
      case 'H': {
        const auto n = parse_int(value, kMaxDimension);
        if (!n || *n == 0)
          fail("bad " + std::string(token[0] == 'W' ? "width " : "height ") +
               shown + " (need 1.." + std::to_string(kMaxDimension) + ")");
        (token[0] == 'W' ? width : height) = *n;
        break;
      }
      case 'C':
        header_.colour_space = std::string(value);
        break;
      case 'F':
        if (!parse_ratio(value, header_.rate_num, header_.rate_den) ||
            header_.rate_den == 0)
          fail("bad frame rate " + shown + " (need F<num>:<den>)");
        break;
      case 'A':
        if (!parse_ratio(value, header_.aspect_num, header_.aspect_den))
          fail("bad pixel aspect " + shown + " (need A<num>:<den>)");
        break;
      case 'I':
        if (value.size() != 1 || std::string_view("ptbm?").find(value[0]) ==
                                     std::string_view::npos)
          fail("bad interlacing " + shown + " (need Ip, It, Ib, Im or I?)");
        header_.interlace = value[0];
        break;
      default:  // X and any other tag: extensions the format says to skip
        break;
    }
  }
  if (!width) fail("header has no width (W)");
  if (!height) fail("header has no height (H)");
  if (!is_420_8bit(header_.colour_space))
    fail("unsupported colour space C" + header_.colour_space +
         " (need 8-bit 4:2:0)");
  header_.width = *width;
  header_.height = *height;
}

size_t Y4mReader::frame_bytes() const {
  return Picture420::frame_bytes(header_.width, header_.height);
}

bool Y4mReader::read_frame(Picture420& picture) {
  const std::string frame = "frame " + std::to_string(frames_read_ + 1);
  std::string line;
  const Line got = read_line(in_, line);
  if (got == Line::kEnd) return false;
  // The stream ended inside what began as a FRAME line.
  const bool marker_so_far =
      line.compare(0, kFrameMarker.size(), kFrameMarker, 0, line.size()) == 0;
  if (got == Line::kUnterminated && marker_so_far)
    fail(frame + " header is truncated (no end of line)");
  if (!starts_with_word(line, kFrameMarker))
    fail(frame + " does not start with FRAME");
  if (got != Line::kComplete)
    fail(frame + " header line is longer than " + std::to_string(kMaxLine) +
         " bytes");

  // Planes grow as their bytes arrive instead of to the size the header
  // announces: a few bytes of header can claim a 384 MiB frame, and a short
  // stream should cost memory for what it holds. Capacity is kept from one
  // frame to the next, so whole frames allocate once per stream.
  picture.width = header_.width;
  picture.height = header_.height;
  const size_t luma = static_cast<size_t>(picture.width) * picture.height;
  const size_t chroma =
      static_cast<size_t>(picture.chroma_width()) * picture.chroma_height();
  size_t total = 0;
  for (std::vector<uint8_t>* plane : {&picture.y, &picture.u, &picture.v}) {
    const size_t want = plane == &picture.y ? luma : chroma;
    plane->clear();
    while (plane->size() < want) {
      const size_t have = plane->size();
      const size_t step = std::min(want - have, std::max(have, kFirstChunk));
      plane->reserve(have + step);  // exactly: no slack past the frame
      plane->resize(have + step);
      const std::streamsize n = in_.rdbuf()->sgetn(
          reinterpret_cast<char*>(plane->data() + have),
          static_cast<std::streamsize>(step));
      total += static_cast<size_t>(n);
      if (static_cast<size_t>(n) != step)
        fail(frame + " is truncated (got " + std::to_string(total) + " of " +
             std::to_string(frame_bytes()) + " bytes)");
    }
  }
  ++frames_read_;
  return true;
}

}  // namespace ybtool
