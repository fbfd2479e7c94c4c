// The command itself: one-line refusals of numbers out of range, and
// pictures written to standard output with nothing else there.
#include <sys/wait.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "convert.h"
#include "fixtures.h"

namespace ybtool {
namespace {

using testing::ScratchDir;
using testing::y4m_clip;

std::string read_file(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

struct Outcome {
  int status = -1;  // exit status
  std::string out, err;
};

// Runs `yuvblit ARGS` in `dir` (a shell command line) with standard input
// from `input`, capturing standard output and error in files (so neither is
// a terminal).
Outcome run(const ScratchDir& dir, const std::string& args,
            const std::string& input = "/dev/null") {
  ScratchDir streams;
  const std::string command = "cd '" + dir.file("") + "' && '" YUVBLIT_TOOL_COMMAND "' " +
                              args + " <'" + input + "' >'" + streams.file("out") +
                              "' 2>'" + streams.file("err") + "'";
  const int raw = std::system(command.c_str());
  Outcome r;
  if (raw != -1 && WIFEXITED(raw)) r.status = WEXITSTATUS(raw);
  r.out = read_file(streams.file("out"));
  r.err = read_file(streams.file("err"));
  return r;
}

TEST(Cli, NumbersOutOfRangeGetOneLineInWords) {
  ScratchDir dir;
  dir.write("in.y4m", y4m_clip(16, 4, 2));
  const std::string convert = "convert in.y4m -k loadimage_yuy2_ajust -o out.png ";
  const struct {
    std::string option, message;
  } cases[] = {
      {"-n 0", "--frames must be at least 1 (got 0)"},
      {"--frames=-3", "--frames must be at least 1 (got -3)"},
      {"-n 2.5", "--frames must be a whole number (got 2.5)"},
      {"-n 99999999999999999999", "--frames must be at most 2147483647 (got 99999999999999999999)"},
      {"--luma-gain 32768", "--luma-gain must be from -32768 to 32767 (got 32768)"},
      {"--v-offset=-32769", "--v-offset must be from -32768 to 32767 (got -32769)"},
      {"--rgb16-layout 4", "--rgb16-layout must be from 0 to 3 (got 4)"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.option);
    const Outcome r = run(dir, convert + c.option);
    EXPECT_NE(r.status, 0);
    EXPECT_EQ(r.err, "yuvblit: " + c.message + "\n");
    EXPECT_EQ(r.out, "");
  }
  EXPECT_EQ(dir.names(), std::vector<std::string>{"in.y4m"});

  // The ends of each range are accepted.
  const Outcome edges = run(dir, convert + "-n 1 --luma-gain -32768 --chroma-gain +32767 "
                                       "--rgb16-layout 3");
  EXPECT_EQ(edges.status, 0) << edges.err;
  EXPECT_EQ(edges.err, "");

  // Other mistakes on the command line are one line too.
  for (const char* other : {"--format gif", "--bogus", ""}) {
    SCOPED_TRACE(other);
    const Outcome r = run(dir, std::string("convert in.y4m -k loadimage_yuy2 ") + other);
    EXPECT_NE(r.status, 0);
    EXPECT_EQ(r.err.rfind("yuvblit: ", 0), 0u) << r.err;
    EXPECT_EQ(r.err.find('\n'), r.err.size() - 1) << r.err;
  }
}

TEST(Cli, DashWritesThePicturesToStandardOutputAndNothingElse) {
  ScratchDir dir;
  const std::string in = dir.write("in.y4m", y4m_clip(10, 4, 2));
  for (const char* format : {"y4m", "raw"}) {
    SCOPED_TRACE(format);
    ConvertOptions o;
    o.input = in;
    o.output = dir.file(std::string("expected.") + format);
    o.kernel = "loadimage_yv12";
    run_convert(o, nullptr);
    const std::string expected = read_file(o.output);

    const std::string flag = format == std::string("raw") ? "" : " -f Y4M";
    const Outcome from_file = run(dir, "convert in.y4m -k loadimage_yv12 -o -" + flag);
    EXPECT_EQ(from_file.status, 0) << from_file.err;
    EXPECT_EQ(from_file.err, "");
    EXPECT_EQ(from_file.out, expected);
    // A pipe at both ends.
    const Outcome piped = run(dir, "convert - -k loadimage_yv12 -o -" + flag, in);
    EXPECT_EQ(piped.status, 0) << piped.err;
    EXPECT_EQ(piped.out, expected);
  }

  // PNGs one after another; no file named "-" appears.
  const Outcome png = run(dir, "convert in.y4m -k loadimage_rgb32 -f png -o -");
  EXPECT_EQ(png.status, 0) << png.err;
  const std::string signature = "\x89PNG\r\n\x1a\n";
  EXPECT_EQ(png.out.rfind(signature, 0), 0u);
  EXPECT_NE(png.out.find(signature, 1), std::string::npos) << "second frame";
  EXPECT_EQ(dir.names(), (std::vector<std::string>{"expected.raw", "expected.y4m", "in.y4m"}));

  // A failure on the way is still one line on standard error.
  const Outcome rgb = run(dir, "convert in.y4m -k loadimage_rgb24 -f y4m -o -");
  EXPECT_EQ(rgb.status, 1);
  EXPECT_EQ(rgb.out, "");
  EXPECT_EQ(rgb.err.rfind("yuvblit: standard output: loadimage_rgb24 writes RGB24, which", 0), 0u)
      << rgb.err;
}

}  // namespace
}  // namespace ybtool
