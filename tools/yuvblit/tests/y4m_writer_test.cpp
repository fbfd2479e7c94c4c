// YUV4MPEG2 output: the header carried over from the input, and the planes
// of YUY2 and YV12 surfaces in the order the format wants them.
#include "y4m_writer.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "convert.h"
#include "errors.h"
#include "fixtures.h"

namespace ybtool {
namespace {

using testing::clip_frame;
using testing::ScratchDir;
using testing::y4m_clip;

std::string read_file(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

TEST(Y4mOutputHeader, KeepsRateInterlacingAndShapeAtTheOutputSize) {
  Y4mHeader in;
  in.width = 720;
  in.height = 480;
  in.rate_num = 30000;
  in.rate_den = 1001;
  in.interlace = 't';
  in.colour_space = "420mpeg2";
  const struct {
    SurfaceFormat format;
    int out_w, out_h, aspect_num, aspect_den;
    const char* tags;  // after W, H, F and I
  } cases[] = {
      {SurfaceFormat::kYuy2, 720, 480, 10, 11, "A10:11 C422"},
      {SurfaceFormat::kYv12, 720, 480, 10, 11, "A10:11 C420mpeg2"},
      // Half the width: pixels twice as wide; twice the height: half as tall.
      {SurfaceFormat::kYuy2, 360, 480, 10, 11, "A20:11 C422"},
      {SurfaceFormat::kYv12, 720, 960, 10, 11, "A20:11 C420mpeg2"},
      // Unknown aspect: still unknown at the same size, else from square.
      {SurfaceFormat::kYuy2, 720, 480, 0, 0, "C422"},
      {SurfaceFormat::kYuy2, 360, 480, 0, 0, "A2:1 C422"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.tags);
    in.aspect_num = c.aspect_num;
    in.aspect_den = c.aspect_den;
    EXPECT_EQ(y4m_header_line(y4m_output_header(in, c.format, c.out_w, c.out_h)),
              "YUV4MPEG2 W" + std::to_string(c.out_w) + " H" + std::to_string(c.out_h) +
                  " F30000:1001 It " + c.tags + "\n");
  }
  // Nothing the input left out is made up; per-frame interlacing is not
  // carried by bare FRAME lines.
  Y4mHeader bare;
  bare.width = 6;
  bare.height = 4;
  bare.interlace = 'm';
  EXPECT_EQ(y4m_header_line(y4m_output_header(bare, SurfaceFormat::kYv12, 6, 4)),
            "YUV4MPEG2 W6 H4 C420\n");
}

ConvertOptions options(const std::string& in, const std::string& out,
                       const std::string& kernel) {
  ConvertOptions o;
  o.input = in;
  o.output = out;
  o.kernel = kernel;
  return o;
}

TEST(Y4mOutput, Yv12ReadsBackAs420WithUBeforeV) {
  // 9x5: odd sizes, chroma planes 5x3; the kernel runs wider and taller.
  ScratchDir dir;
  const std::string in = dir.write("in.y4m", y4m_clip(9, 5, 2));
  const ConvertResult r =
      run_convert(options(in, dir.file("out.Y4M"), "loadimage_yv12_ajust"), nullptr);
  EXPECT_EQ(r.written_as, OutputFormat::kY4m);
  EXPECT_EQ(r.files, std::vector<std::string>{dir.file("out.Y4M")});

  std::ifstream file(dir.file("out.Y4M"), std::ios::binary);
  Y4mReader reader(file, "out.Y4M");
  EXPECT_EQ(reader.header().width, 9);
  EXPECT_EQ(reader.header().height, 5);
  EXPECT_EQ(reader.header().colour_space, "420jpeg");
  Picture420 p;
  for (int f = 0; f < 2; ++f) {
    ASSERT_TRUE(reader.read_frame(p)) << f;
    const Picture420 src = clip_frame(9, 5, f);
    EXPECT_EQ(p.y, src.y) << f;
    EXPECT_EQ(p.u, src.u) << "U plane, frame " << f;
    EXPECT_EQ(p.v, src.v) << "V plane, frame " << f;
  }
  EXPECT_FALSE(reader.read_frame(p));
}

TEST(Y4mOutput, Yuy2IsPlanar422WithEachRowsChroma) {
  // 9 wide: the last pixel pair is cut to its first pixel, its chroma kept.
  // 10 rows: the adjusting loader writes nothing at 8 rows or fewer.
  ScratchDir dir;
  const std::string in = dir.write("in.y4m", y4m_clip(9, 10, 2));
  run_convert(options(in, dir.file("out.y4m"), "loadimage_yuy2_ajust"), nullptr);
  const std::string header = "YUV4MPEG2 W9 H10 F25:1 Ip A1:1 C422\n";
  const std::string out = read_file(dir.file("out.y4m"));
  const size_t luma = 9 * 10, chroma = 5 * 10, frame = 6 + luma + 2 * chroma;
  ASSERT_EQ(out.size(), header.size() + 2 * frame);
  EXPECT_EQ(out.substr(0, header.size()), header);
  for (int f = 0; f < 2; ++f) {
    const std::string got = out.substr(header.size() + f * frame, frame);
    const Picture420 src = clip_frame(9, 10, f);
    EXPECT_EQ(got.substr(0, 6), "FRAME\n");
    EXPECT_EQ(got.substr(6, luma), std::string(src.y.begin(), src.y.end())) << f;
    EXPECT_EQ(got.substr(6 + luma, chroma), std::string(chroma, char(100 + f))) << "U, frame " << f;
    EXPECT_EQ(got.substr(6 + luma + chroma), std::string(chroma, char(150 + f))) << "V, frame " << f;
  }
}

TEST(Y4mOutput, TakesTheKernelsOutputSize) {
  ScratchDir dir;
  const std::string in = dir.write("in.y4m", y4m_clip(10, 4, 1));
  run_convert(options(in, dir.file("half.y4m"), "loadimage_half_yuy2_ajust"), nullptr);
  const std::string out = read_file(dir.file("half.y4m"));
  const std::string header = "YUV4MPEG2 W5 H4 F25:1 Ip A2:1 C422\n";
  EXPECT_EQ(out.substr(0, header.size()), header);
  EXPECT_EQ(out.size(), header.size() + 6 + 5 * 4 + 2 * 3 * 4);
}

TEST(Y4mOutput, RefusesRgbAndAlphaSurfacesBeforeWritingAnything) {
  for (const char* kernel : {"loadimage_rgb32", "loadimage_rgb16", "Restore_RGB32_To_Alpha"}) {
    SCOPED_TRACE(kernel);
    ScratchDir dir;
    const std::string in = dir.write("in.y4m", y4m_clip(16, 4, 1));
    ConvertOptions o = options(in, dir.file("out.raw"), kernel);
    o.format = OutputFormat::kY4m;
    try {
      run_convert(o, nullptr);
      ADD_FAILURE() << "converted";
    } catch (const ToolError& e) {
      const std::string m = e.what();
      EXPECT_EQ(m.rfind(dir.file("out.raw") + ": " + kernel + " writes ", 0), 0u) << m;
      EXPECT_NE(m.find("which YUV4MPEG2 cannot hold"), std::string::npos) << m;
    }
    EXPECT_EQ(dir.names(), std::vector<std::string>{"in.y4m"});
  }
}

}  // namespace
}  // namespace ybtool
