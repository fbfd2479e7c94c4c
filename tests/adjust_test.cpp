// The picture adjustment: scalar arithmetic against the documented values,
// and the vector form inside the kernels against the scalar form for every
// sample value over a spread of gains and offsets, on every target.
#include <gtest/gtest.h>

#include <vector>

#include "adjust/adjustment.h"
#include "harness/targets.h"
#include "model/adjust_model.h"
#include "test_util.h"

namespace yuvblit_test {
namespace {

using yuvblit::adjust_sample;
using yuvblit::SampleAdjust;

TEST(SampleAdjustment, DocumentedValues) {
  struct Case { uint8_t x; int16_t gain, offset; uint8_t out; };
  const Case cases[] = {
      {128, 80, -32, 128},   // chroma gain 80 keeps grey with offset 128 - 160
      {255, 128, 0, 255},    // 510 clamps
      {16, 64, -16, 0},
      {255, 300, 0, 171},    // product wraps to 10964
      {255, 300, 9, 180},
      {255, 257, 40, 40},    // product is -1: the sample becomes the offset
      {100, -64, -769, 155}, // negative picture via the logical shift
      {200, 200, 0, 255},    // 40000 saturates the add but shifts as 40032
  };
  for (const Case& c : cases)
    EXPECT_EQ(adjust_sample(c.x, SampleAdjust{c.gain, c.offset}), c.out)
        << int(c.x) << " gain " << c.gain << " offset " << c.offset;
  for (int x = 0; x < 256; ++x) EXPECT_EQ(adjust_sample(uint8_t(x), SampleAdjust{64, 0}), x);
}

TEST(GetContrastData, UsesLowSixteenBitsAndWrappingOffsetSums) {
  tag_ajust_contrast_info r{};
  r.lumaGain = 65600;  // acts as 64
  r.chromaGain = 64;
  r.lumaOffset = 20000;
  r.lumaOffsetExtra = 20000;  // sum wraps to -25536: every sample black
  r.uOffset = 70000;          // 4464
  r.uOffsetExtra = -4464;     // sum 0
  r.vOffset = 5;
  r.vOffsetExtra = 65536 + 5;  // sum 10
  const ModelAdjust m(r);
  EXPECT_EQ(m.luma.gain, 64);
  EXPECT_EQ(m.luma.offset, -25536);
  EXPECT_EQ(m.u.offset, 0);
  EXPECT_EQ(m.v.offset, 10);

  // The kernels see exactly these constants.
  get_contrast_data(&r);
  std::vector<uint8_t> y(32 * 10, 200), u(16 * 5, 128), v(16 * 5, 128), s(64 * 10);
  loadimage_yuy2_ajust(y.data(), u.data(), v.data(), s.data(), 16, 10, 32, 64, nullptr);
  EXPECT_EQ(s[0], 0);
  EXPECT_EQ(s[1], 128);
  EXPECT_EQ(s[3], 138);
}

// Every luma, U and V value through loadimage_yuy2_ajust, whose frame holds
// 0..255 in each plane, for gains and offsets chosen to hit every branch of
// the arithmetic: wrapping products, saturating adds, the logical shift of
// negative values and both clamps.
TEST(SampleAdjustment, VectorMatchesScalarForEverySampleAcrossGainsAndOffsets) {
  std::vector<int32_t> gains = {0, 1, 2, 63, 64, 65, 127, 128, 129, 255, 256, 257, 300,
                                512, 1000, 4095, 4096, 8192, 32767, 32768, 65535,
                                -1, -64, -128, -300, -32768};
  for (int32_t g = -32768; g < 65536; g += 977) gains.push_back(g);
  const std::vector<int32_t> offsets = {0, 1, -1, 16, -16, 127, -128, 255, 256, -256,
                                        -769, 1000, -1000, 32767, -32768};
  const int32_t width = 512, height = 10, pitch = 512;
  std::vector<uint8_t> y(pitch * height), u(pitch / 2 * height / 2), v(u.size());
  for (size_t i = 0; i < y.size(); ++i) y[i] = uint8_t(i);
  for (size_t i = 0; i < u.size(); ++i) u[i] = uint8_t(i), v[i] = uint8_t(255 - i);
  std::vector<uint8_t> s(2 * width * height);

  for_each_target([&](const std::string& target) {
    for (size_t gi = 0; gi < gains.size(); ++gi) {
      for (size_t oi = 0; oi < offsets.size(); ++oi) {
        tag_ajust_contrast_info r{};
        r.lumaGain = gains[gi];
        r.chromaGain = gains[(gi + 7) % gains.size()];
        r.lumaOffset = offsets[oi];
        r.uOffset = offsets[(oi + 3) % offsets.size()];
        r.vOffset = offsets[(oi + 5) % offsets.size()];
        get_contrast_data(&r);
        const ModelAdjust m(r);
        loadimage_yuy2_ajust(y.data(), u.data(), v.data(), s.data(), width, height, pitch,
                             2 * width, nullptr);
        for (int x = 0; x < 2 * width; ++x) {
          const uint8_t expected = (x & 1) == 0 ? m.Y(uint8_t(x / 2))
                                   : (x & 3) == 1 ? m.U(uint8_t(x / 4))
                                                  : m.V(uint8_t(255 - x / 4));
          ASSERT_EQ(s[x], expected) << target << ": byte " << x << ", luma gain "
                                    << r.lumaGain << ", chroma gain " << r.chromaGain
                                    << ", offsets " << r.lumaOffset << "/" << r.uOffset
                                    << "/" << r.vOffset;
        }
      }
    }
  });
}

}  // namespace
}  // namespace yuvblit_test
