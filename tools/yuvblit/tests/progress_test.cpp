// The progress line: when it is drawn, what it says, and that it always
// leaves the terminal at the start of a fresh line.
#include "progress.h"

#include <gtest/gtest.h>

#include <sstream>

namespace ybtool {
namespace {

double g_now = 0;
double fake_clock() { return g_now; }

TEST(Progress, RedrawsInPlaceAtMostOncePerIntervalAndEndsTheLine) {
  g_now = 100;
  std::ostringstream out;
  {
    Progress p(&out, 10, 0.25, fake_clock);
    g_now = 100.1;
    p.frame_done();
    g_now = 100.2;
    p.frame_done();
    EXPECT_EQ(out.str(), "") << "a conversion this quick shows nothing";
    g_now = 100.25;
    p.frame_done();  // 3 frames in 0.25 s
    EXPECT_EQ(out.str(), "\rframe 3/10, 12.0 fps");
    g_now = 100.4;
    p.frame_done();  // within the interval of the last redraw
    EXPECT_EQ(out.str(), "\rframe 3/10, 12.0 fps");
    g_now = 110;
    p.frame_done();  // a shorter line blanks what is left of the longer one
    EXPECT_EQ(out.str(), "\rframe 3/10, 12.0 fps\rframe 5/10, 0.5 fps ");
    p.finish();
    EXPECT_EQ(out.str(), "\rframe 3/10, 12.0 fps\rframe 5/10, 0.5 fps \rframe 5/10, 0.5 fps\n");
  }
  EXPECT_EQ(out.str().back(), '\n') << "finish() already ended the line";
  EXPECT_EQ(out.str().find("\n\n"), std::string::npos);
}

TEST(Progress, LeavesOutAnUnknownOrOutrunTotalAndEndsALineLeftOpen) {
  g_now = 0;
  std::ostringstream out;
  {
    Progress p(&out, 0, 0.25, fake_clock);
    g_now = 1;
    p.frame_done();
    // Gone without finish(): the conversion failed.
  }
  EXPECT_EQ(out.str(), "\rframe 1, 1.0 fps\n");

  // An estimate of 1 frame, then a second one turns up.
  g_now = 0;
  std::ostringstream outrun;
  Progress p(&outrun, 1, 0.25, fake_clock);
  g_now = 1;
  p.frame_done();
  g_now = 2;
  p.frame_done();
  EXPECT_EQ(outrun.str(), "\rframe 1/1, 1.0 fps\rframe 2, 1.0 fps  ");

  g_now = 0;
  std::ostringstream quiet;
  Progress q(&quiet, 3, 0.25, fake_clock);
  q.frame_done();
  q.finish();
  EXPECT_EQ(quiet.str(), "");
}

}  // namespace
}  // namespace ybtool
