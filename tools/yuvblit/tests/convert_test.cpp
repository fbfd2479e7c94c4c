// The convert flow end to end on files: output naming, raw layout, and that
// a failure leaves nothing behind.
#include "convert.h"

#include <gtest/gtest.h>
#include <png.h>

#include <fstream>
#include <algorithm>
#include <cstring>
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

TEST(Convert, RawYv12IsLumaThenVThenUPlanePerFrame) {
  // 10x4 runs 16 wide: the planes must come out cropped, V before U.
  ScratchDir dir;
  const std::string in = dir.write("in.y4m", y4m_clip(10, 4, 2));
  for (const char* kernel : {"loadimage_yv12", "loadimage_yv12_ajust"}) {
    SCOPED_TRACE(kernel);
    const ConvertResult r = run_convert(options(in, dir.file("out.yv12"), kernel), nullptr);
    EXPECT_EQ(r.format, "YV12");
    EXPECT_EQ(r.width, 10);
    const std::string raw = read_file(dir.file("out.yv12"));
    ASSERT_EQ(raw.size(), 2u * (40 + 2 * 5 * 2));
    for (int f = 0; f < 2; ++f) {
      const Picture420 src = testing::clip_frame(10, 4, f);
      const std::string frame = raw.substr(f * 60, 60);
      EXPECT_EQ(frame.substr(0, 40), std::string(src.y.begin(), src.y.end())) << f;
      EXPECT_EQ(frame.substr(40, 10), std::string(10, char(150 + f))) << "V plane, frame " << f;
      EXPECT_EQ(frame.substr(50, 10), std::string(10, char(100 + f))) << "U plane, frame " << f;
    }
  }
}

TEST(Convert, Rgb16LayoutReachesTheKernelAndIsChecked) {
  // Near-white is 0xFFFF in every layout but 1, which keeps bit 0 clear.
  ScratchDir dir;
  Picture420 white;
  white.allocate(6, 2);
  std::fill(white.y.begin(), white.y.end(), 235);
  const std::string in = dir.write("in.y4m", testing::y4m_header(6, 2) + testing::y4m_frame(white));
  ConvertOptions o = options(in, dir.file("out.rgb16"), "loadimage_rgb16");
  o.adjust.rgb16Layout = 1;
  const ConvertResult r = run_convert(o, nullptr);
  EXPECT_EQ(r.format, "RGB16 layout 1");
  std::string expected;
  for (int i = 0; i < 12; ++i) expected += "\xFE\xFF";
  EXPECT_EQ(read_file(dir.file("out.rgb16")), expected);

  for (uint32_t layout : {4u, 0x80000000u}) {
    ScratchDir empty;
    const std::string clip = empty.write("in.y4m", y4m_clip(16, 10, 1));
    ConvertOptions bad = options(clip, empty.file("out.png"), "loadimage_rgb16");
    bad.adjust.rgb16Layout = layout;
    try {
      run_convert(bad, nullptr);
      ADD_FAILURE() << "converted with layout " << layout;
    } catch (const ToolError& e) {
      EXPECT_NE(std::string(e.what()).find("--rgb16-layout " + std::to_string(layout) +
                                           ": not a layout (0 to 3)"),
                std::string::npos) << e.what();
    }
    EXPECT_EQ(empty.names(), Names{"in.y4m"});
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

// A w x h RGBA PNG, opaque red in its left half, transparent in its right.
std::string red_overlay_png(const ScratchDir& dir, int w, int h) {
  std::vector<uint8_t> rgba(static_cast<size_t>(w) * h * 4, 0);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w / 2; ++x) {
      rgba[(static_cast<size_t>(y) * w + x) * 4] = 255;
      rgba[(static_cast<size_t>(y) * w + x) * 4 + 3] = 255;
    }
  return write_png_file(dir, "overlay.png", w, h, PNG_FORMAT_RGBA, rgba);
}

TEST(Convert, SubpictureIsMixedIntoEveryFrameAtTheTopLeft) {
  ScratchDir dir;
  const std::string in = dir.write("in.y4m", y4m_clip(20, 6, 2));
  ConvertOptions o = options(in, dir.file("out.yuy2"), "mix_ayuy2_yuy2_p_ajust");
  o.subpicture = red_overlay_png(dir, 8, 4);
  const ConvertResult r = run_convert(o, nullptr);
  EXPECT_EQ(r.overlay, o.subpicture);
  const std::string raw = read_file(dir.file("out.yuy2"));
  ASSERT_EQ(raw.size(), 2u * 20 * 6 * 2);
  for (int f = 0; f < 2; ++f) {
    const Picture420 src = testing::clip_frame(20, 6, f);
    auto luma = [&](int x, int y) { return static_cast<uint8_t>(raw[f * 240 + y * 40 + 2 * x]); };
    for (int y = 0; y < 6; ++y)
      for (int x = 0; x < 20; ++x)
        ASSERT_EQ(luma(x, y), x < 4 && y < 4 ? 81 : src.y[y * 20 + x]) << f << ":" << x << "," << y;
  }

  // Without --subpicture a mixer gets the built-in overlay.
  o.subpicture.clear();
  o.output = dir.file("menu.png");
  EXPECT_EQ(run_convert(o, nullptr).overlay, "the built-in overlay");
}

TEST(Convert, SubpictureProblemsStopBeforeAnyOutput) {
  const std::string clip = y4m_clip(16, 10, 2);
  const struct {
    std::string kernel;
    int w, h;
    const char* png_bytes;  // instead of a PNG of w x h
    std::string message;
  } cases[] = {
      {"loadimage_yuy2", 4, 4, nullptr,
       "overlay.png: loadimage_yuy2 does not mix a subpicture"},
      {"Convert_RGB32_To_AYUY2", 4, 4, nullptr, "Convert_RGB32_To_AYUY2 does not mix"},
      {"mix_ayuy2_rgb32_p_ajust", 17, 4, nullptr,
       "overlay.png: 17x4 is larger than the 16x10 frame"},
      {"mix_ayuy2_rgb32_p_ajust", 4, 4, "GIF89a", "overlay.png: not a readable PNG"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.message);
    ScratchDir dir;
    const std::string in = dir.write("in.y4m", clip);
    ConvertOptions o = options(in, dir.file("out.png"), c.kernel);
    o.subpicture = c.png_bytes ? dir.write("overlay.png", c.png_bytes) : red_overlay_png(dir, c.w, c.h);
    try {
      run_convert(o, nullptr);
      ADD_FAILURE() << "converted";
    } catch (const ToolError& e) {
      EXPECT_NE(std::string(e.what()).find(c.message), std::string::npos) << e.what();
    }
    EXPECT_EQ(dir.names(), (Names{"in.y4m", "overlay.png"}));
  }
}

}  // namespace
}  // namespace ybtool
