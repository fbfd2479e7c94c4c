// Planar 4:2:0 frames onto YUY2 surfaces.
#include <gtest/gtest.h>

#include <algorithm>

#include "harness/a9.h"
#include "model/planar_to_yuy2_model.h"
#include "test_util.h"

namespace yuvblit_test {
namespace {

const A9KernelCase kKernels[] = {
    {"loadimage_yuy2", loadimage_yuy2, model_loadimage_yuy2, 2},
    {"loadimage_yuy2_ajust", loadimage_yuy2_ajust, model_loadimage_yuy2_ajust, 2},
    {"loadimage_yuy2_mono_ajust", loadimage_yuy2_mono_ajust, model_loadimage_yuy2_mono_ajust, 2},
    {"loadimage_half_yuy2_ajust", loadimage_half_yuy2_ajust, model_loadimage_half_yuy2_ajust, 1},
};

class PlanarToYuy2 : public testing::TestWithParam<A9KernelCase> {};

TEST_P(PlanarToYuy2, MatchesModelOnRandomFramesAndGeometries) {
  const A9KernelCase& k = GetParam();
  std::mt19937 rng(20261121);
  for (int i = 0; i < 400; ++i) {
    A9Call call = random_call(rng, 1, k.dstBytesPerPixel);
    tag_ajust_contrast_info adjust = random_adjustment(rng);
    get_contrast_data(&adjust);
    ASSERT_TRUE(check_a9(k.kernel, k.model, call, adjust, rng())) << k.name << ", case " << i;
  }
}

TEST_P(PlanarToYuy2, MatchesModelOnOddSizes) {
  const A9KernelCase& k = GetParam();
  tag_ajust_contrast_info adjust = identity_adjustment();
  adjust.lumaGain = 90;
  get_contrast_data(&adjust);
  std::mt19937 rng(7);
  for (int32_t width : {0, 1, 15, 16, 17, 31, 33, 48, 63, 64, 65, 129}) {
    for (int32_t height : {0, 1, 2, 3, 9, 10, 11, 12}) {
      const A9Call call{width, height, 224, 200 * k.dstBytesPerPixel + 5};
      ASSERT_TRUE(check_a9(k.kernel, k.model, call, adjust, rng())) << k.name;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Kernels, PlanarToYuy2, testing::ValuesIn(kKernels),
                         [](const auto& info) { return std::string(info.param.name); });

// Runs a kernel on a 16-pixel-high frame into a surface pre-filled with a
// marker and returns the surface.
std::vector<uint8_t> run_on_marked_surface(A9Kernel kernel, int32_t width, int32_t height,
                                           uint8_t luma, uint8_t chroma,
                                           int32_t dstPitch = 256) {
  const int32_t srcPitch = 256;
  Plane y(srcPitch * 16, luma), u(srcPitch * 8, chroma), v(srcPitch * 8, chroma);
  std::vector<uint8_t> surface(dstPitch * 16, 0xEE);
  tag_ajust_contrast_info adjust = identity_adjustment();
  kernel(y.data(), u.data(), v.data(), surface.data(), width, height, srcPitch, dstPitch,
         &adjust);
  return surface;
}

size_t bytes_written_in_row(const std::vector<uint8_t>& s, int row, int32_t pitch = 256) {
  size_t n = 0;
  for (int i = 0; i < pitch; ++i) n += s[row * pitch + i] != 0xEE;
  return n;
}

TEST(LoadImageYuy2, SecondRowOfPairKeepsFirstEightBytesOfEachGroup) {
  const auto s = run_on_marked_surface(loadimage_yuy2, 64, 4, 50, 60);
  for (int row = 0; row < 4; ++row) {
    for (int x = 0; x < 128; ++x) {
      const bool kept = (row & 1) && (x % 32) < 8;
      const uint8_t expected = kept ? 0xEE : (x & 1) ? 60 : 50;
      ASSERT_EQ(s[row * 256 + x], expected) << "row " << row << ", byte " << x;
    }
  }
}

TEST(LoadImageYuy2Ajust, HeightTestReturnsWithoutWriting) {
  tag_ajust_contrast_info adjust = identity_adjustment();
  get_contrast_data(&adjust);
  for (int32_t height : {8, 7, -2, 0, 2}) {
    const auto s = run_on_marked_surface(loadimage_yuy2_ajust, 32, height, 50, 60);
    EXPECT_EQ(std::count(s.begin(), s.end(), 0xEE), long(s.size())) << "height " << height;
  }
  const auto s = run_on_marked_surface(loadimage_yuy2_ajust, 32, 10, 50, 60);
  for (int row = 0; row < 12; ++row)
    EXPECT_EQ(bytes_written_in_row(s, row), row < 10 ? 64u : 0u) << "row " << row;
}

TEST(LoadImageYuy2Ajust, IdentityMatchesPlainCopyWhereThePlainCopyWrites) {
  tag_ajust_contrast_info adjust = identity_adjustment();
  get_contrast_data(&adjust);
  std::mt19937 rng(3);
  const int32_t pitch = 128;
  Plane y(pitch * 12, 0), u(pitch * 6, 0), v(pitch * 6, 0);
  for (auto* p : {&y, &u, &v})
    for (auto& b : p->bytes) b = uint8_t(rng());
  std::vector<uint8_t> plain(256 * 12, 0xEE), adjusted(256 * 12, 0xEE);
  loadimage_yuy2(y.data(), u.data(), v.data(), plain.data(), 64, 10, pitch, 256, &adjust);
  loadimage_yuy2_ajust(y.data(), u.data(), v.data(), adjusted.data(), 64, 10, pitch, 256, &adjust);
  for (size_t i = 0; i < plain.size(); ++i) {
    const int row = int(i / 256), x = int(i % 256);
    if ((row & 1) && x < 128 && x % 32 < 8) {
      ASSERT_EQ(plain[i], 0xEE);  // left alone by the plain copy only
    } else {
      ASSERT_EQ(plain[i], adjusted[i]) << "row " << row << ", byte " << x;
    }
  }
}

TEST(LoadImageYuy2MonoAjust, WritesGreyChromaWithoutReadingChromaPlanes) {
  tag_ajust_contrast_info adjust = identity_adjustment();
  get_contrast_data(&adjust);
  const int32_t pitch = 64;
  Plane y(pitch * 2, 77);
  std::vector<uint8_t> s(128 * 2, 0xEE);
  loadimage_yuy2_mono_ajust(y.data(), nullptr, nullptr, s.data(), 32, 2, pitch, 128, &adjust);
  for (int row = 0; row < 2; ++row)
    for (int x = 0; x < 64; ++x) ASSERT_EQ(s[row * 128 + x], (x & 1) ? 0x80 : 77);
}

TEST(LoadImageHalfYuy2Ajust, AveragesPixelPairsRoundingUp) {
  tag_ajust_contrast_info adjust = identity_adjustment();
  get_contrast_data(&adjust);
  const int32_t pitch = 64;
  Plane y(pitch * 2, 10), u(pitch, 128), v(pitch, 128);
  y[1] = 11;  // pixel pair (10, 11) averages to 11; (10, 10) stays 10
  std::vector<uint8_t> s(64 * 2, 0xEE);
  loadimage_half_yuy2_ajust(y.data(), u.data(), v.data(), s.data(), 16, 2, pitch, 64, &adjust);
  EXPECT_EQ(s[0], 11);
  EXPECT_EQ(s[2], 10);
  EXPECT_EQ(s[1], 128);
}

// Whole groups: width 16 is one group per row, width 17 two (64 bytes, or 32
// at half width), and height 0 still writes one row pair.
TEST(PlanarToYuy2Footprint, WritesWholeGroupsAndAtLeastOneRowPair) {
  tag_ajust_contrast_info adjust = identity_adjustment();
  get_contrast_data(&adjust);
  struct Case { A9Kernel k; int32_t width, height; size_t row0, row1; };
  const Case cases[] = {
      {loadimage_yuy2, 16, 2, 32, 24},        {loadimage_yuy2, 17, 2, 64, 48},
      {loadimage_yuy2, 16, 0, 32, 24},        {loadimage_yuy2_mono_ajust, 17, 2, 64, 64},
      {loadimage_yuy2_mono_ajust, 1, 0, 32, 32}, {loadimage_half_yuy2_ajust, 16, 2, 16, 16},
      {loadimage_half_yuy2_ajust, 17, 0, 32, 32}, {loadimage_yuy2_ajust, 17, 10, 64, 64},
  };
  for (const Case& c : cases) {
    // Row pitch 256 keeps drift inside each row's 256 bytes for these widths.
    const auto s = run_on_marked_surface(c.k, c.width, c.height, 50, 60);
    EXPECT_EQ(bytes_written_in_row(s, 0), c.row0) << "width " << c.width;
    EXPECT_EQ(bytes_written_in_row(s, 1), c.row1) << "width " << c.width;
    if (c.height <= 2) EXPECT_EQ(bytes_written_in_row(s, 2), 0u) << "width " << c.width;
  }
}

}  // namespace
}  // namespace yuvblit_test
