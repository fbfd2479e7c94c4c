// Planar 4:2:0 frames doubled onto YUY2 surfaces, vertically and in both
// directions.
#include <gtest/gtest.h>

#include <vector>

#include "harness/a9.h"
#include "model/yuy2_doubling_model.h"
#include "test_util.h"

namespace yuvblit_test {
namespace {

const A9KernelCase kKernels[] = {
    {"strech_picture_1X2_yuy2", strech_picture_1X2_yuy2, model_strech_picture_1X2_yuy2, 2},
    {"strech_picture_1X2_yuy2_ajust", strech_picture_1X2_yuy2_ajust,
     model_strech_picture_1X2_yuy2_ajust, 2},
    {"strech_picture_2X2_yuy2", strech_picture_2X2_yuy2, model_strech_picture_2X2_yuy2, 4},
    {"strech_picture_2X2_yuy2_ajust", strech_picture_2X2_yuy2_ajust,
     model_strech_picture_2X2_yuy2_ajust, 4},
};

class Yuy2Doubling : public testing::TestWithParam<A9KernelCase> {};

// Widths the steps cover and widths that drift, heights from below the
// minimum up (odd ones read a row past the picture), source pitches from
// overlapping rows to loose and odd ones (chroma rows are half of it apart,
// so it stays positive), destination pitches also tight and bottom-up.
TEST_P(Yuy2Doubling, MatchesModelOnRandomFramesAndGeometries) {
  const A9KernelCase& k = GetParam();
  std::mt19937 rng(20261207);
  auto pick = [&](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
  for (int i = 0; i < 120; ++i) {
    A9Call call{};
    call.width = pick(0, 2) ? 16 * pick(1, 8) : pick(0, 140);
    call.height = pick(0, 4) ? pick(14, 30) : pick(0, 13);
    const int32_t row = 16 * (call.width / 16 + 2);
    call.srcPitch = pick(0, 3) ? row + pick(0, 40) : pick(row / 2, row);
    const int32_t line = row * k.dstBytesPerPixel;
    switch (pick(0, 4)) {
      case 0: call.dstPitch = -(line + pick(0, 40)); break;
      case 1: call.dstPitch = pick(line / 2, line); break;
      default: call.dstPitch = line + pick(0, 40); break;
    }
    tag_ajust_contrast_info adjust = random_adjustment(rng);
    get_contrast_data(&adjust);
    ASSERT_TRUE(check_a9(k.kernel, k.model, call, adjust, rng())) << k.name << ", case " << i;
  }
}

// The size limits (7 and 8 rows, 15 and 16 for the adjusted 2X2), and
// widths below one step, at a step, and one past it. Below 32 pixels the
// 2X2 lines are one ordinary and one edge step.
TEST_P(Yuy2Doubling, MatchesModelAtSizeLimits) {
  const A9KernelCase& k = GetParam();
  tag_ajust_contrast_info adjust = identity_adjustment();
  adjust.lumaGain = 90;
  adjust.vOffset = 9;
  get_contrast_data(&adjust);
  std::mt19937 rng(11);
  for (int32_t width : {0, 1, 15, 16, 17, 31, 32, 33, 48}) {
    for (int32_t height : {-1, 7, 8, 9, 15, 16, 17}) {
      const A9Call call{width, height, 96, 100 * k.dstBytesPerPixel + 3};
      ASSERT_TRUE(check_a9(k.kernel, k.model, call, adjust, rng())) << k.name;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Kernels, Yuy2Doubling, testing::ValuesIn(kKernels),
                         [](const auto& info) { return std::string(info.param.name); });

// A frame of `width` x `height` with constant planes unless `set` changes
// them, doubled by `kernel` onto a surface of `dstPitch` bytes per line.
struct Doubled {
  static constexpr int32_t kPitch = 64;
  Plane y, u, v;
  std::vector<uint8_t> out;
  int32_t dstPitch;
  Doubled(int32_t height, uint8_t luma, uint8_t chroma, int32_t dstPitch_)
      : y(4 * kPitch * (height + 1), luma),
        u(4 * kPitch * height, chroma),
        v(4 * kPitch * height, chroma),
        out(static_cast<size_t>(dstPitch_) * 4 * (height + 1), 0xEE), dstPitch(dstPitch_) {}
  void run(A9Kernel kernel, int32_t width, int32_t height) {
    tag_ajust_contrast_info record = identity_adjustment();
    kernel(y.data(), u.data(), v.data(), out.data(), width, height, kPitch, dstPitch, &record);
  }
  uint8_t at(int line, int byte) const { return out[line * dstPitch + byte]; }
};

TEST(Yuy2DoublingValues, VerticalInterpolation) {
  tag_ajust_contrast_info adjust = identity_adjustment();
  get_contrast_data(&adjust);
  // Rounded averages round half up: rows of 10 and 11 give 11.
  Doubled plain(8, 10, 128, 64);
  for (int x = 0; x < 16; ++x) plain.y[Doubled::kPitch + x] = 11;
  plain.run(strech_picture_1X2_yuy2, 16, 8);
  EXPECT_EQ(plain.at(1, 0), 11);
  // A white row 4 among black rows: the four-tap lines next to it are
  // floor(1275 / 8) = 159, those beyond floor(-255 / 8) clamped to 0.
  Doubled filtered(12, 0, 128, 64);
  for (int x = 0; x < 16; ++x) filtered.y[4 * Doubled::kPitch + x] = 255;
  filtered.run(strech_picture_1X2_yuy2_ajust, 16, 12);
  const int expected[][2] = {{5, 0}, {7, 159}, {8, 255}, {9, 159}, {11, 0}};
  for (const auto& e : expected) EXPECT_EQ(filtered.at(e[0], 2), e[1]) << "line " << e[0];
  // Line 3 averages rows 1 and 2 although a four-tap filter could run.
  Doubled first(12, 0, 128, 64);
  for (int x = 0; x < 16; ++x) first.y[2 * Doubled::kPitch + x] = 255;
  first.run(strech_picture_1X2_yuy2_ajust, 16, 12);
  EXPECT_EQ(first.at(3, 0), 128);
  EXPECT_EQ(first.at(5, 0), 159);
}

TEST(Yuy2DoublingValues, HorizontalDoublingAndItsByteLayout) {
  tag_ajust_contrast_info adjust = identity_adjustment();
  get_contrast_data(&adjust);
  Doubled ramp(8, 0, 128, 256);
  for (int x = 0; x < 32; ++x) ramp.y[x] = static_cast<uint8_t>(7 * x);
  ramp.run(strech_picture_2X2_yuy2, 32, 8);
  // Luma of output pixel p on line 0: 7 p / 2 rounded up; the last source
  // sample (217) ends the line twice.
  auto luma = [](int p) { return (7 * p + 1) / 2; };
  for (int p = 0; p < 64; ++p) {
    const int byte = 2 * p;
    if (byte % 64 >= 8 && byte % 64 < 16) continue;
    ASSERT_EQ(ramp.at(0, byte), p < 62 ? luma(p) : 217) << "pixel " << p;
  }
  // Bytes 8-15 of each 64-byte group: the doubled luma of the group's
  // first eight output pixels.
  for (int g = 0; g < 2; ++g)
    for (int p = 0; p < 8; ++p) EXPECT_EQ(ramp.at(0, 64 * g + 8 + p), luma(32 * g + p));
  // Samples 0, 0 above 0, 1 average twice, rounding up each time: output
  // pixel 1 of line 1 is avg(avg(0, 0), avg(0, 1)) = 1.
  Doubled corner(8, 0, 128, 256);
  corner.y[Doubled::kPitch + 1] = 1;
  corner.run(strech_picture_2X2_yuy2, 32, 8);
  EXPECT_EQ(corner.at(1, 2), 1);
}

TEST(Yuy2DoublingValues, AdjustedUNeighbourFromTheNextGroupTakesTheVOffset) {
  tag_ajust_contrast_info adjust = identity_adjustment();
  adjust.vOffset = 20;
  get_contrast_data(&adjust);
  Doubled frame(16, 50, 100, 256);
  frame.run(strech_picture_2X2_yuy2_ajust, 48, 16);
  // U of output pixel pairs 13 and 15 (bytes 53, 61) in each 64-byte group.
  const int expected[][2] = {{53, 100}, {61, 110}, {64 + 61, 110}, {128 + 53, 100},
                             {128 + 61, 100}, {63, 120}};
  for (const auto& e : expected) EXPECT_EQ(frame.at(0, e[0]), e[1]) << "byte " << e[0];
}

// Below 32 pixels the 2X2 step count is not positive and a down-counter
// would wrap: the lines are one ordinary step and the edge step (128
// bytes), each starting 32 - width source pixels (128 - 4 width bytes)
// further on.
TEST(Yuy2DoublingValues, NarrowDoubledLinesWriteTwoStepsEach) {
  for (int32_t width : {0, 8}) {
    Doubled frame(8, 50, 100, 256);
    frame.run(strech_picture_2X2_yuy2, width, 8);
    std::vector<uint8_t> written(frame.out.size(), 0);
    for (int line = 0; line < 16; ++line)
      for (int b = 0; b < 128; ++b) written.at(line * (256 + 128 - 4 * width) + b) = 1;
    for (size_t i = 0; i < written.size(); ++i)
      ASSERT_EQ(frame.out[i] != 0xEE, written[i] == 1) << "width " << width << ", byte " << i;
  }
}

}  // namespace
}  // namespace yuvblit_test
