// Packed YUY2 pictures doubled in both directions onto YUY2: both kernels
// against the model on every target, then the documented values.
#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>
#include <vector>

#include "harness/check.h"
#include "model/packed_doubling_model.h"
#include "test_util.h"

namespace yuvblit_test {
namespace {

struct Call {
  int32_t width, height, dstPitch;
};

testing::AssertionResult check_packed(bool adjusting, const Call& c,
                                      const tag_ajust_contrast_info& record, uint32_t seed) {
  CallCheck check;
  check.description = "width " + std::to_string(c.width) + ", height " +
                      std::to_string(c.height) + ", dstPitch " + std::to_string(c.dstPitch);
  // srcU and srcV are never read: their regions stay untouched.
  check.regions = {"src", "srcU", "srcV", "dst"};
  check.model = [&](const std::vector<Ptr>& p) {
    model_packed_doubling(p[0], p[3], c.width, c.height, c.dstPitch,
                          adjusting ? std::optional<ModelAdjust>(record) : std::nullopt);
  };
  check.run = [&](const std::vector<uint8_t*>& b) {
    tag_ajust_contrast_info copy = record;
    if (adjusting) {
      yuy2_strech_picture_2X2_yuy2_ajust(b[0], b[1], b[2], b[3], c.width, c.height, c.dstPitch,
                                         &copy);
    } else {
      yuy2_strech_picture_2X2_yuy2(b[0], b[1], b[2], b[3], c.width, c.height, c.dstPitch);
    }
    return testing::AssertionSuccess();
  };
  return check_call(check, seed);
}

int pick(std::mt19937& rng, int lo, int hi) {
  return std::uniform_int_distribution<int>(lo, hi)(rng);
}

class PackedDoubling : public testing::TestWithParam<bool> {};

TEST_P(PackedDoubling, MatchesModelOnRandomPicturesAndGeometries) {
  const bool adjusting = GetParam();
  std::mt19937 rng(adjusting ? 61 : 62);
  for (int i = 0; i < 150; ++i) {
    Call c{};
    // Whole strips mostly; widths that never end write nothing.
    c.width = pick(rng, 0, 5) ? 32 * pick(rng, 2, 9) : pick(rng, 0, 200);
    c.height = pick(rng, 0, 4) ? pick(rng, 16, 26) : pick(rng, 5, 17);
    const int32_t line = 2 * c.width;
    switch (pick(rng, 0, 5)) {
      case 0: c.dstPitch = pick(rng, 0, line); break;  // lines share bytes
      case 1: c.dstPitch = -(line + pick(rng, 0, 40)); break;
      default: c.dstPitch = line + pick(rng, 0, 41);
    }
    tag_ajust_contrast_info record = random_adjustment(rng);
    get_contrast_data(&record);
    ASSERT_TRUE(check_packed(adjusting, c, record, rng())) << "case " << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Kernels, PackedDoubling, testing::Bool(), [](const auto& info) {
  return std::string(info.param ? "yuy2_strech_picture_2X2_yuy2_ajust"
                                 : "yuy2_strech_picture_2X2_yuy2");
});

// One 64-byte row of 32 pixels, 8 rows: luma 0, 10, 20, ... across,
// chroma U 100 + k, V 200 - k, every row alike but row r's luma + r.
struct Scene {
  static constexpr int32_t kWidth = 64, kRows = 16, kDstPitch = 128;
  std::vector<uint8_t> src = std::vector<uint8_t>(kWidth * kRows);
  std::vector<uint8_t> dst = std::vector<uint8_t>(kDstPitch * 2 * kRows, 0xEE);
  Scene() {
    for (int r = 0; r < kRows; ++r)
      for (int p = 0; p < 32; ++p) {
        uint8_t* px = &src[r * kWidth + 2 * p];
        px[0] = static_cast<uint8_t>(7 * p + r);
        px[1] = static_cast<uint8_t>(p % 2 ? 200 - p / 2 : 100 + p / 2);
      }
  }
  const uint8_t* line(int l) const { return &dst[l * kDstPitch]; }
};

TEST(PackedDoublingValues, HeightLimitsDiffer) {
  tag_ajust_contrast_info identity = identity_adjustment();
  get_contrast_data(&identity);
  Scene s;
  yuy2_strech_picture_2X2_yuy2(s.src.data(), nullptr, nullptr, s.dst.data(), 64, 15, 128);
  yuy2_strech_picture_2X2_yuy2_ajust(s.src.data(), nullptr, nullptr, s.dst.data(), 64, 7, 128,
                                     &identity);
  EXPECT_EQ(s.dst, std::vector<uint8_t>(s.dst.size(), 0xEE));
  yuy2_strech_picture_2X2_yuy2_ajust(s.src.data(), nullptr, nullptr, s.dst.data(), 64, 8, 128,
                                     &identity);
  EXPECT_NE(s.line(15)[0], 0xEE);
  EXPECT_EQ(s.line(16)[0], 0xEE);
}

TEST(PackedDoublingValues, RowsDoubleAcrossAndDownWithTheDocumentedLayout) {
  Scene s;
  yuy2_strech_picture_2X2_yuy2(s.src.data(), nullptr, nullptr, s.dst.data(), 64, 16, 128);
  const uint8_t* l0 = s.line(0);
  // Pixel 2i is source pixel i, 2i + 1 the rounded average with i + 1.
  EXPECT_EQ(l0[16], 7 * 4);       // output pixel 8
  EXPECT_EQ(l0[18], (28 + 35 + 1) / 2);
  // Bytes 8-15: the doubled luma of output pixels 0-7, not YUY2.
  const uint8_t luma0to7[8] = {0, 4, 7, 11, 14, 18, 21, 25};
  EXPECT_EQ(std::vector<uint8_t>(l0 + 8, l0 + 16), std::vector<uint8_t>(luma0to7, luma0to7 + 8));
  // The last pixel pair of a line repeats the last source sample.
  EXPECT_EQ(l0[124], 7 * 31);
  EXPECT_EQ(l0[126], 7 * 31);
  // Rows 0 and 1 differ by 1 in luma: the line between rounds up.
  EXPECT_EQ(s.line(1)[16], 29);
  // The last two lines are the last row, the one before the average.
  EXPECT_EQ(std::vector<uint8_t>(s.line(30), s.line(30) + 128),
            std::vector<uint8_t>(s.line(31), s.line(31) + 128));
  EXPECT_EQ(s.line(29)[16], 28 + 15);
}

}  // namespace
}  // namespace yuvblit_test
