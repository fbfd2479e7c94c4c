// The YUV4MPEG2 reader: what it accepts, and the one-line reasons it gives
// for what it refuses.
#include "y4m.h"

#include <gtest/gtest.h>

#include <sstream>

#include "errors.h"
#include "fixtures.h"

namespace ybtool {
namespace {

using testing::clip_frame;
using testing::y4m_frame;
using testing::y4m_header;

// The error text for a stream, or "" when header and frames all read.
std::string error_for(const std::string& bytes) {
  std::istringstream in(bytes);
  try {
    Y4mReader reader(in, "clip.y4m");
    Picture420 p;
    while (reader.read_frame(p)) {
    }
  } catch (const ToolError& e) {
    return e.what();
  }
  return "";
}

TEST(Y4mHeader, AcceptsEvery8Bit420ColourSpaceAndParsesTags) {
  for (const char* tags : {" C420jpeg XYSCSS=420JPEG", " C420mpeg2", " C420paldv",
                           " C420", ""}) {
    SCOPED_TRACE(tags);
    std::istringstream in(y4m_header(6, 4, tags));
    Y4mReader reader(in, "clip.y4m");
    EXPECT_EQ(reader.header().width, 6);
    EXPECT_EQ(reader.header().height, 4);
  }
  std::istringstream in("YUV4MPEG2  W720 H480 F30000:1001 It A10:11 "
                        "XCOLORRANGE=LIMITED Zunknown\n");
  Y4mReader reader(in, "clip.y4m");
  EXPECT_EQ(reader.header().colour_space, "420");
  EXPECT_EQ(reader.header().rate_num, 30000);
  EXPECT_EQ(reader.header().rate_den, 1001);
  EXPECT_EQ(reader.header().interlace, 't');
  EXPECT_EQ(reader.frame_bytes(), 720u * 480 * 3 / 2);
}

TEST(Y4mHeader, RefusesDamagedHeadersWithOneLineNamingTheFile) {
  const std::string long_line = "YUV4MPEG2 W16 H16 X" + std::string(2000, 'a') + "\n";
  const struct {
    std::string bytes, problem;
  } cases[] = {
      {"", "empty file"},
      {"YUV4MPEG W16 H16\n", "not a YUV4MPEG2 file"},
      {"YUV4MPEG2X W16 H16\n", "not a YUV4MPEG2 file"},
      {"\x89PNG\r\n\x1a\n", "not a YUV4MPEG2 file"},
      {"YUV4MPEG2 W16 H16 C422\n", "unsupported colour space C422 (need 8-bit 4:2:0)"},
      {"YUV4MPEG2 W16 H16 C420p10 XYSCSS=420P10\n", "unsupported colour space C420p10"},
      {"YUV4MPEG2 W16 H16 Cmono\n", "unsupported colour space Cmono"},
      {"YUV4MPEG2 H16\n", "header has no width (W)"},
      {"YUV4MPEG2 W16\n", "header has no height (H)"},
      {"YUV4MPEG2 W0 H16\n", "bad width W0"},
      {"YUV4MPEG2 W16 H-2\n", "bad height H-2"},
      {"YUV4MPEG2 W16x H16\n", "bad width W16x"},
      {"YUV4MPEG2 W99999 H16\n", "bad width W99999"},
      {"YUV4MPEG2 W16 H16 F25:0\n", "bad frame rate F25:0"},
      {"YUV4MPEG2 W16 H16 A1\n", "bad pixel aspect A1"},
      {"YUV4MPEG2 W16 H16 Ix\n", "bad interlacing Ix"},
      {"YUV4MPEG2 W16 H16", "header is truncated"},
      {long_line, "header line is longer than"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.bytes.substr(0, 40));
    const std::string message = error_for(c.bytes);
    EXPECT_EQ(message.rfind("clip.y4m: ", 0), 0u) << message;
    EXPECT_NE(message.find(c.problem), std::string::npos) << message;
    EXPECT_EQ(message.find('\n'), std::string::npos) << message;
  }
}

TEST(Y4mFrames, ReadsOddSizedPlanesInOrderAndStopsAtTheEnd) {
  // 5x3: chroma planes are 3x2, so a frame is 15 + 6 + 6 bytes.
  const Picture420 first = clip_frame(5, 3, 0), second = clip_frame(5, 3, 1);
  std::istringstream in(y4m_header(5, 3) + y4m_frame(first) +
                        y4m_frame(second, "FRAME Ib XKEY=1\n"));
  Y4mReader reader(in, "clip.y4m");
  EXPECT_EQ(reader.frame_bytes(), 27u);
  Picture420 p;
  ASSERT_TRUE(reader.read_frame(p));
  EXPECT_EQ(p.y, first.y);
  EXPECT_EQ(p.u, first.u);
  EXPECT_EQ(p.v, first.v);
  ASSERT_TRUE(reader.read_frame(p));
  EXPECT_EQ(p.u, second.u);
  EXPECT_EQ(p.v, second.v);
  EXPECT_FALSE(reader.read_frame(p));
  EXPECT_EQ(reader.frames_read(), 2);
}

TEST(Y4mFrames, NamesTheDamagedFrameAndWhatIsWrong) {
  const std::string good = y4m_header(16, 16) + y4m_frame(clip_frame(16, 16, 0));
  const std::string next = y4m_frame(clip_frame(16, 16, 1));
  const size_t planes = 16 * 16 * 3 / 2;  // 384
  const struct {
    std::string tail, message;
  } cases[] = {
      // Short by 10 bytes: the count covers all three planes.
      {next.substr(0, next.size() - 10),
       "clip.y4m: frame 2 is truncated (got 374 of 384 bytes)"},
      // Ends inside the luma plane.
      {next.substr(0, 6 + 100), "clip.y4m: frame 2 is truncated (got 100 of 384 bytes)"},
      {"FRAME\n", "clip.y4m: frame 2 is truncated (got 0 of 384 bytes)"},
      {"FRA", "clip.y4m: frame 2 header is truncated (no end of line)"},
      {"FRAME Ip", "clip.y4m: frame 2 header is truncated (no end of line)"},
      {"FRAMX\n" + std::string(planes, 'x'), "clip.y4m: frame 2 does not start with FRAME"},
      {"FRAMES\n" + std::string(planes, 'x'), "clip.y4m: frame 2 does not start with FRAME"},
      {"\n", "clip.y4m: frame 2 does not start with FRAME"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.message);
    EXPECT_EQ(error_for(good + c.tail), c.message);
  }
  EXPECT_EQ(error_for(good + next), "");
  // A huge frame size with a few bytes is refused as truncated, without
  // first allocating the whole frame (checked by the fuzz target's limits).
  EXPECT_EQ(error_for(y4m_header(16384, 16384) + "FRAME\n" + std::string(100, 'x')),
            "clip.y4m: frame 1 is truncated (got 100 of 402653184 bytes)");
}

}  // namespace
}  // namespace ybtool
