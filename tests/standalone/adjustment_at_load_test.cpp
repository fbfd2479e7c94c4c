// Before the host's first get_contrast_data call the adjustment constants
// are zero, so adjusting kernels write 0 for every sample. This needs a
// process of its own in which nothing has loaded constants yet.
#include <gtest/gtest.h>

#include <vector>

#include "yuvblit.h"

namespace {

TEST(GetContrastData, AdjustedSamplesAreZeroUntilFirstCall) {
  std::vector<uint8_t> y(32 * 10, 200), u(16 * 5, 90), v(16 * 5, 30), s(64 * 10, 0xEE);
  loadimage_yuy2_ajust(y.data(), u.data(), v.data(), s.data(), 16, 10, 32, 64, nullptr);
  for (int row = 0; row < 10; ++row)
    for (int x = 0; x < 32; ++x) ASSERT_EQ(s[row * 64 + x], 0) << row << "," << x;
}

// Y, U and V all adjusted to 0 convert to R 0, G 137, B 0, whatever the
// picture and subpicture hold.
TEST(GetContrastData, RgbMixersWriteZeroSamplesAsGreenUntilFirstCall) {
  std::vector<uint8_t> y(32 * 2, 200), u(16, 90), v(16, 30), alpha(32 * 2, 8), subY(32 * 2, 40),
      subU(32, 240), subV(32, 60);
  struct Case { void (*kernel)(tagMIX_INFO*); std::vector<uint8_t> pixel; };
  const Case cases[] = {{mix_ayuy2_rgb32_p_ajust, {0x00, 0x89, 0x00, 0x00}},
                        {mix_ayuy2_rgb24_p_ajust, {0x00, 0x89, 0x00}}};
  for (const Case& c : cases) {
    const size_t bpp = c.pixel.size();
    std::vector<uint8_t> s(16 * bpp * 2, 0xEE);
    tagMIX_INFO info{};
    info.picturePitch = info.subPitch = 32;
    info.dstPitch = static_cast<int32_t>(16 * bpp);
    info.width = 16, info.height = 2;
    info.pictureY = y.data(), info.pictureU = u.data(), info.pictureV = v.data();
    info.subAlpha = alpha.data(), info.subY = subY.data(), info.subU = subU.data();
    info.subV = subV.data(), info.dst = s.data();
    c.kernel(&info);
    for (size_t i = 0; i < s.size(); ++i) ASSERT_EQ(s[i], c.pixel[i % bpp]) << bpp << ": " << i;
  }
}

}  // namespace
