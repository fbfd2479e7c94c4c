// Planar 4:2:0 frames doubled vertically onto RGB surfaces, adjusted.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "harness/a9.h"
#include "model/rgb_doubling_model.h"
#include "test_util.h"

namespace yuvblit_test {
namespace {

struct DoublingKernel {
  const char* name;
  A9Kernel kernel;
  ModelPacking packing;
};

void PrintTo(const DoublingKernel& k, std::ostream* os) { *os << k.name; }

const DoublingKernel kKernels[] = {
    {"strech_picture_1X2_yuy2_ajust_rgb32", strech_picture_1X2_yuy2_ajust_rgb32,
     ModelPacking::kRgb32},
    {"strech_picture_1X2_yuy2_ajust_rgb24", strech_picture_1X2_yuy2_ajust_rgb24,
     ModelPacking::kRgb24},
    {"strech_picture_1X2_yuy2_ajust_rgb16", strech_picture_1X2_yuy2_ajust_rgb16,
     ModelPacking::kRgb16},
};

class RgbDoubling : public testing::TestWithParam<DoublingKernel> {
 protected:
  A9Model model() const {
    const ModelPacking packing = GetParam().packing;
    return [packing](const A9Ptrs& p, const A9Call& c, const tag_ajust_contrast_info& r) {
      model_rgb_doubling(p, c, r, packing);
    };
  }
  int32_t bpp() const { return static_cast<int32_t>(GetParam().packing); }
};

TEST_P(RgbDoubling, MatchesModelOnRandomFramesAndGeometries) {
  const DoublingKernel& k = GetParam();
  std::mt19937 rng(612);
  auto pick = [&](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
  for (int i = 0; i < 120; ++i) {
    A9Call call = random_call(rng, 1, bpp());
    call.height = pick(0, 7) == 0 ? pick(-2, 11) : pick(12, 40);  // below 12: nothing
    tag_ajust_contrast_info adjust = random_adjustment(rng);
    if (i % 20 == 0) adjust.rgb16Layout = i % 40 ? 4 : 0xFFFFFFFFu;
    get_contrast_data(&adjust);
    ASSERT_TRUE(check_a9(k.kernel, model(), call, adjust, rng())) << k.name << ", case " << i;
  }
}

// Destination pitches at which lines of neighbouring strips share bytes (a
// strip overwrites parts of the strips before it), bottom-up surfaces, and
// odd heights and pitches, after which each strip starts lower than the
// one before.
TEST_P(RgbDoubling, MatchesModelWhereStripsOverlapOrDrift) {
  const DoublingKernel& k = GetParam();
  tag_ajust_contrast_info adjust = identity_adjustment();
  adjust.lumaGain = 90;
  adjust.lumaOffset = -20;
  adjust.rgb16Layout = 2;
  get_contrast_data(&adjust);
  const int32_t group = 16 * bpp();
  std::mt19937 rng(7);
  for (int32_t width : {0, 17, 160}) {
    for (int32_t height : {12, 13, 18}) {
      for (int32_t dstPitch : {0, group - 8, 3 * group + 5, -(3 * group + 5), 11 * group}) {
        for (int32_t srcPitch : {176, 179}) {
          const A9Call call{width, height, srcPitch, dstPitch};
          ASSERT_TRUE(check_a9(k.kernel, model(), call, adjust, rng())) << k.name;
        }
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Kernels, RgbDoubling, testing::ValuesIn(kKernels),
                         [](const auto& info) { return std::string(info.param.name); });

// Below 12 rows nothing is written and the record is not read (it may be
// null); an RGB16 layout above 3 writes nothing either.
TEST(RgbDoublingValues, RefusedSizesAndLayoutsWriteNothing) {
  Plane y(32 * 14, 128), u(16 * 7, 128), v(16 * 7, 128);
  auto untouched = [](const std::vector<uint8_t>& s) {
    return std::all_of(s.begin(), s.end(), [](uint8_t b) { return b == 0xEE; });
  };
  for (const DoublingKernel& k : kKernels) {
    for (int32_t height : {11, 0, -4}) {
      std::vector<uint8_t> s(64 * 28, 0xEE);
      k.kernel(y.data(), u.data(), v.data(), s.data(), 16, height, 32, 64, nullptr);
      EXPECT_TRUE(untouched(s)) << k.name << ", height " << height;
    }
  }
  tag_ajust_contrast_info adjust = identity_adjustment();
  get_contrast_data(&adjust);
  for (uint32_t layout : {4u, 0xFFFFFFFFu}) {
    adjust.rgb16Layout = layout;
    std::vector<uint8_t> s(64 * 28, 0xEE);
    strech_picture_1X2_yuy2_ajust_rgb16(y.data(), u.data(), v.data(), s.data(), 16, 12, 32, 64,
                                        &adjust);
    EXPECT_TRUE(untouched(s)) << "layout " << layout;
  }
}

// Luma rows alternating 126 and 127 (RGB 128 and 129) with neutral chroma:
// every new line rounds half up to 127, so each row pair gives 128, 129,
// 129, 129, down to the two equal last lines; nothing below line 23.
TEST(RgbDoublingValues, AveragesRoundHalfUpAndEndOnTwoEqualLines) {
  tag_ajust_contrast_info adjust = identity_adjustment();
  get_contrast_data(&adjust);
  Plane y(32 * 13, 0), u(16 * 7, 128), v(16 * 7, 128);
  for (int row = 0; row < 13; ++row)
    std::fill_n(y.data() + 32 * row, 32, uint8_t(row % 2 ? 127 : 126));
  std::vector<uint8_t> s(64 * 25, 0xEE);
  strech_picture_1X2_yuy2_ajust_rgb32(y.data(), u.data(), v.data(), s.data(), 16, 12, 32, 64,
                                      &adjust);
  for (int line = 0; line < 25; ++line) {
    const uint8_t grey = line == 24 ? 0xEE : line % 4 == 0 ? 128 : 129;
    for (int px = 0; px < 16; ++px) {
      const uint8_t* p = &s[64 * line + 4 * px];
      ASSERT_EQ(p[0], grey) << "line " << line;
      ASSERT_EQ(p[1], grey) << "line " << line;
      ASSERT_EQ(p[2], grey) << "line " << line;
      ASSERT_EQ(p[3], line == 24 ? 0xEE : 0) << "line " << line;
    }
  }
}

}  // namespace
}  // namespace yuvblit_test
