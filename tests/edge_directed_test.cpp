// Vertical doubling of a decoded frame with edge-directed interpolation.
#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "harness/check.h"
#include "model/edge_directed_model.h"
#include "test_util.h"

namespace yuvblit_test {
namespace {

// Picture content: noise (nearly every sub-group detailed, costs rarely
// tie), three levels (many ties between directions), and faint noise with
// rare steps (activity around the threshold of 32, whole flat vectors
// beside detailed sub-groups).
enum class Picture { kNoise, kLevels, kFaint };

testing::AssertionResult check_opt(const OptCall& c, const tag_ajust_contrast_info& adjust,
                                   Picture picture, uint32_t seed) {
  enum { kRecord, kY, kU, kV, kDst, kAdjust };
  CallCheck check;
  check.description = describe(c);
  // The adjustment record is never read: its region is left unallocated.
  check.regions = {"record", "planeY", "planeU", "planeV", "dst", "adjust"};
  check.model = [&](const std::vector<Ptr>& p) {
    model_strech_opt_yuy2_ajust({p[kRecord], p[kY], p[kU], p[kV], p[kDst]}, c, adjust);
  };
  check.prepare = [&](const std::vector<Region*>& r) {
    std::mt19937 rng(seed);
    const int stepEvery = picture == Picture::kFaint ? 20 + int(rng() % 200) : 0;
    for (int i : {kY, kU, kV}) {
      r[i]->fill([&](int64_t) -> uint8_t {
        switch (picture) {
          case Picture::kNoise: return uint8_t(rng());
          case Picture::kLevels: return uint8_t(64 * (rng() % 3));
          case Picture::kFaint: break;
        }
        return uint8_t(100 + rng() % 12 + (rng() % stepEvery == 0 ? 120 : 0));
      });
    }
    if (!r[kRecord]->touched()) return;
    tagVideoFrame frame;
    std::memset(&frame, 0xA5, sizeof frame);
    frame.lineMode = c.lineMode;
    frame.lumaWidth = c.lumaWidth;
    frame.planeY = r[kY]->base();
    frame.planeU = r[kU]->base();
    frame.planeV = r[kV]->base();
    const int64_t lo = r[kRecord]->lo();
    std::memcpy(r[kRecord]->base() + lo, reinterpret_cast<uint8_t*>(&frame) + lo,
                size_t(r[kRecord]->hi() - lo + 1));
  };
  check.run = [&](const std::vector<uint8_t*>& b) {
    strech_opt_yuy2_ajust(reinterpret_cast<tagVideoFrame*>(b[kRecord]), c.top, c.height,
                          b[kDst], c.dstPitch, reinterpret_cast<tag_ajust_contrast_info*>(b[kAdjust]));
    return testing::AssertionSuccess();
  };
  return check_call(check, seed);
}

TEST(StrechOptYuy2Ajust, MatchesModelOnRandomFrames) {
  std::mt19937 rng(20260611);
  auto pick = [&](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
  for (int i = 0; i < 150; ++i) {
    OptCall c{};
    c.lineMode = std::vector<int>{1, 0, 2, -1}[pick(0, 3)];
    // Every fifth frame is wide enough for several steps of 128 pixels,
    // whose interpolated chroma fills whole vectors.
    c.lumaWidth = 16 * (i % 5 == 4 ? pick(17, 50) : pick(3, 16));
    c.top = pick(-1, 3);
    c.height = pick(8, 20);
    // Loose, tight (lines overlap) and bottom-up pitches.
    c.dstPitch = pick(0, 3) == 0 ? pick(-3, 3) * c.lumaWidth + pick(-20, 20)
                                 : 2 * c.lumaWidth + pick(0, 40);
    tag_ajust_contrast_info adjust = random_adjustment(rng);
    get_contrast_data(&adjust);
    ASSERT_TRUE(check_opt(c, adjust, Picture(i % 3), rng())) << "case " << i;
  }
}

// Widths that are not whole groups or below three groups, zero and
// negative ones, and heights around the minimum.
TEST(StrechOptYuy2Ajust, MatchesModelOnOddWidthsAndHeights) {
  tag_ajust_contrast_info adjust = identity_adjustment();
  adjust.lumaGain = 80;
  get_contrast_data(&adjust);
  std::mt19937 rng(5);
  for (int32_t width : {-32, 0, 1, 16, 17, 31, 32, 33, 47, 50, 200}) {
    for (int32_t height : {-8, 0, 7, 8, 9}) {
      for (int32_t lineMode : {0, 1}) {
        const OptCall c{lineMode, width, 1, height, 400};
        ASSERT_TRUE(check_opt(c, adjust, Picture(rng() % 3), rng()));
      }
    }
  }
}

// A call with height 8 on a picture `width` samples wide (rows not given
// are 0, chroma 128) onto a surface marked 0xEE; returns the surface (16
// lines of 256 bytes).
std::vector<uint8_t> run_frame(std::vector<uint8_t> luma, int32_t width, int32_t lineMode = 0,
                               int32_t top = 0, std::vector<uint8_t> chroma = {}) {
  luma.resize(size_t(width) * 16, 0);
  chroma.resize(size_t(width) * 4, 128);
  std::vector<uint8_t> u = chroma, v = chroma, surface(256 * 16, 0xEE);
  tagVideoFrame frame{};
  frame.lineMode = lineMode;
  frame.lumaWidth = width;
  frame.planeY = luma.data();
  frame.planeU = u.data();
  frame.planeV = v.data();
  strech_opt_yuy2_ajust(&frame, top, 8, surface.data(), 256, nullptr);
  return surface;
}

uint8_t luma_at(const std::vector<uint8_t>& surface, int line, int x) {
  return surface[256 * line + 2 * x];
}

// Line 1 lies between source rows 0 and 1.
TEST(StrechOptYuy2Ajust, InterpolatesAlongEdgesExceptInTheOuterGroups) {
  tag_ajust_contrast_info adjust = identity_adjustment();
  get_contrast_data(&adjust);
  const int32_t width = 64;
  auto frame = [&](int above, int below) {
    std::vector<uint8_t> luma(width * 2, 0);
    for (int x = 0; x < width; ++x) {
      luma[x] = x >= above ? 200 : 0;
      luma[width + x] = x >= below ? 200 : 0;
    }
    return luma;
  };
  // A step two samples further right (left) in the row below: the line
  // follows direction -1 (+1) instead of averaging to 100.
  auto s = run_frame(frame(33, 35), width);
  EXPECT_EQ(luma_at(s, 1, 33), 0);
  EXPECT_EQ(luma_at(s, 1, 34), 200);
  s = run_frame(frame(33, 31), width);
  EXPECT_EQ(luma_at(s, 1, 31), 0);
  EXPECT_EQ(luma_at(s, 1, 32), 200);
  // The same step in the first or the last group is averaged.
  s = run_frame(frame(5, 7), width);
  EXPECT_EQ(luma_at(s, 1, 5), 100);
  s = run_frame(frame(53, 55), width);
  EXPECT_EQ(luma_at(s, 1, 53), 100);

  // Directions -1 and +1 tie at x = 21 (both windows match exactly);
  // -1 takes A[20] and B[22], +1 would take A[22] and B[20].
  std::vector<uint8_t> luma(width * 2, 0);
  luma[20] = luma[24] = luma[width + 22] = 200;
  s = run_frame(luma, width);
  EXPECT_EQ(luma_at(s, 1, 21), 200);
}

// Field mode, second field: luma from frame row 1, chroma from byte
// lumaWidth / 4 of its plane; rows two frame rows apart.
TEST(StrechOptYuy2Ajust, SecondFieldStartsOneRowAndAQuarterChromaRowIn) {
  tag_ajust_contrast_info adjust = identity_adjustment();
  get_contrast_data(&adjust);
  const int32_t width = 48;
  std::vector<uint8_t> luma(width * 10), chroma(width * 3);
  for (size_t i = 0; i < luma.size(); ++i) luma[i] = uint8_t(10 * (i / width));
  for (size_t i = 0; i < chroma.size(); ++i) chroma[i] = uint8_t(i);
  const auto s = run_frame(luma, width, 1, 1, chroma);
  EXPECT_EQ(luma_at(s, 0, 0), 10);  // row 1
  EXPECT_EQ(luma_at(s, 2, 0), 30);  // row 3
  EXPECT_EQ(luma_at(s, 1, 0), 20);  // between rows 1 and 3
  EXPECT_EQ(s[1], width / 4);
  EXPECT_EQ(s[256 * 2 + 1], (width / 4 + width / 4 + width + 1) / 2);  // chroma row 2 below
}

// Footprint: height 7 writes nothing, 8 and 9 write 16 lines; a width of
// 16 copies one group per line and interpolates three.
TEST(StrechOptYuy2Ajust, WritesWholeGroupsOnSixteenLines) {
  tag_ajust_contrast_info adjust = identity_adjustment();
  get_contrast_data(&adjust);
  std::vector<uint8_t> luma(16 * 64, 90), chroma(16 * 32, 128);
  for (int32_t height : {7, 8, 9}) {
    std::vector<uint8_t> surface(256 * 20, 0xEE);
    tagVideoFrame frame{};
    frame.lumaWidth = 16;
    frame.planeY = luma.data();
    frame.planeU = frame.planeV = chroma.data();
    strech_opt_yuy2_ajust(&frame, 0, height, surface.data(), 256, nullptr);
    for (int line = 0; line < 20; ++line) {
      const bool copied = line % 4 == 0 || line >= 14;
      const size_t expected = height < 8 || line >= 16 ? 0 : copied ? 32 : 96;
      size_t written = 0;
      for (int i = 0; i < 256; ++i) written += surface[256 * line + i] != 0xEE;
      EXPECT_EQ(written, expected) << "height " << height << ", line " << line;
    }
  }
}

// Where every sub-group is flat the doubling is the plain vertical one.
TEST(StrechOptYuy2Ajust, FlatPictureDoublesLikeThePlainDoubler) {
  tag_ajust_contrast_info adjust = identity_adjustment();
  get_contrast_data(&adjust);
  const int32_t width = 96, height = 12;
  std::mt19937 rng(9);
  std::vector<uint8_t> luma(width * (height + 2)), u(width * height), v(width * height);
  for (auto* plane : {&luma, &u, &v})
    for (size_t i = 0; i < plane->size(); ++i)
      (*plane)[i] = uint8_t(60 + 5 * (i % 48 % 17) + rng() % 8);  // rows differ by 0..7
  tagVideoFrame frame{};
  frame.lumaWidth = width;
  frame.planeY = luma.data();
  frame.planeU = u.data();
  frame.planeV = v.data();
  std::vector<uint8_t> opt(4 * width * height), plain(opt.size());
  strech_opt_yuy2_ajust(&frame, 0, height, opt.data(), 2 * width, nullptr);
  strech_picture_1X2_yuy2(luma.data(), u.data(), v.data(), plain.data(), width, height, width,
                          2 * width, nullptr);
  EXPECT_EQ(opt, plain);
}

}  // namespace
}  // namespace yuvblit_test
