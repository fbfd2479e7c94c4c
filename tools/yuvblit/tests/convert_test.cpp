// The convert flow end to end on files: output naming, raw layout, and that
// a failure leaves nothing behind.
#include "convert.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "errors.h"
#include "fixtures.h"

namespace ybtool {
namespace {

using testing::ScratchDir;
using testing::y4m_clip;

using Names = std::vector<std::string>;

ConvertOptions options(const std::string& in, const std::string& out,
                       const std::string& kernel = "loadimage_yuy2") {
  ConvertOptions o;
  o.input = in;
  o.output = out;
  o.kernel = kernel;
  return o;
}

std::string read_file(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

TEST(Convert, NamesPngFilesByHowManyFramesItWrites) {
  ScratchDir dir;
  const std::string one = dir.write("one.y4m", y4m_clip(16, 10, 1));
  const std::string three = dir.write("three.y4m", y4m_clip(16, 10, 3));

  ConvertResult r = run_convert(options(one, dir.file("a.png")), nullptr);
  EXPECT_EQ(r.frames, 1);
  r = run_convert(options(three, dir.file("b.PNG")), nullptr);
  EXPECT_EQ(r.frames, 3);
  ConvertOptions first_two = options(three, dir.file("c.png"));
  first_two.max_frames = 2;
  r = run_convert(first_two, nullptr);
  EXPECT_EQ(r.frames, 2);
  ConvertOptions first = options(three, dir.file("d.png"));
  first.max_frames = 1;
  run_convert(first, nullptr);

  EXPECT_EQ(dir.names(), (Names{"a.png", "b-0001.PNG", "b-0002.PNG", "b-0003.PNG",
                                "c-0001.png", "c-0002.png", "d.png", "one.y4m",
                                "three.y4m"}));
}

TEST(Convert, RawOutputIsCroppedSurfacesBackToBack) {
  // 10x4 is not a whole group wide; the mono kernel writes luma as is
  // (identity adjustment) and 0x80 chroma.
  ScratchDir dir;
  const std::string in = dir.write("in.y4m", y4m_clip(10, 4, 2));
  const ConvertResult r =
      run_convert(options(in, dir.file("out.yuy2"), "loadimage_yuy2_mono_ajust"), nullptr);
  EXPECT_EQ(r.files, Names{dir.file("out.yuy2")});
  const std::string raw = read_file(dir.file("out.yuy2"));
  ASSERT_EQ(raw.size(), 2u * 4 * 10 * 2);
  for (int f = 0; f < 2; ++f) {
    const Picture420 src = testing::clip_frame(10, 4, f);
    for (int i = 0; i < 40; ++i) {
      const size_t at = static_cast<size_t>(f) * 80 + 2 * i;
      ASSERT_EQ(static_cast<uint8_t>(raw[at]), src.y[i]) << f << ":" << i;
      ASSERT_EQ(static_cast<uint8_t>(raw[at + 1]), 0x80) << f << ":" << i;
    }
  }
}

TEST(Convert, FailuresNameTheProblemAndLeaveNoOutput) {
  const std::string clip = y4m_clip(16, 10, 3);
  const struct {
    std::string input_bytes, output, kernel, message;
  } cases[] = {
      // Frame 3 cut short after frames 1 and 2 were already converted.
      {clip.substr(0, clip.size() - 7), "out.png", "loadimage_yuy2",
       "in.y4m: frame 3 is truncated (got 233 of 240 bytes)"},
      {clip.substr(0, clip.size() - 7), "out.raw", "loadimage_yuy2",
       "in.y4m: frame 3 is truncated"},
      {"YUV4MPEG2 W16 H10 C444\n", "out.png", "loadimage_yuy2",
       "in.y4m: unsupported colour space C444 (need 8-bit 4:2:0)"},
      {"YUV4MPEG2 W16 H10\n", "out.png", "loadimage_yuy2", "in.y4m: contains no frames"},
      {clip, "out.png", "loadimage_rgb64", "unknown kernel 'loadimage_rgb64' (run 'yuvblit list'"},
      {clip, "no/out.png", "loadimage_yuy2", "out.png: directory"},
      {clip, "in.y4m", "loadimage_yuy2", "in.y4m: is the input file"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.message);
    ScratchDir dir;
    const std::string in = dir.write("in.y4m", c.input_bytes);
    try {
      run_convert(options(in, dir.file(c.output), c.kernel), nullptr);
      ADD_FAILURE() << "converted without an error";
    } catch (const ToolError& e) {
      EXPECT_NE(std::string(e.what()).find(c.message), std::string::npos) << e.what();
    }
    EXPECT_EQ(dir.names(), Names{"in.y4m"});
    EXPECT_EQ(read_file(in), c.input_bytes);
  }

  ScratchDir dir;
  try {
    run_convert(options(dir.file("absent.y4m"), dir.file("out.png")), nullptr);
    ADD_FAILURE() << "converted a missing file";
  } catch (const ToolError& e) {
    EXPECT_NE(std::string(e.what()).find("absent.y4m: cannot open"), std::string::npos);
  }
}

}  // namespace
}  // namespace ybtool
