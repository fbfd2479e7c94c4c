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

}  // namespace
