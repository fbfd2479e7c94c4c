// The colour arithmetic and planar 4:2:0 frames onto RGB surfaces.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "adjust/color.h"
#include "harness/a9.h"
#include "harness/targets.h"
#include "model/planar_to_rgb_model.h"
#include "test_util.h"

namespace yuvblit_test {
namespace {

using yuvblit::chroma_terms;
using yuvblit::kRgb16Layouts;
using yuvblit::pack_rgb16;
using yuvblit::Rgb;
using yuvblit::yuv_to_rgb;

TEST(YuvToRgb, DocumentedValues) {
  struct Case { uint8_t y, u, v, r, g, b; };
  const Case cases[] = {
      {16, 128, 128, 0, 0, 0},     {235, 128, 128, 254, 254, 254},
      {126, 128, 128, 128, 128, 128}, {128, 128, 128, 130, 130, 130},
      {17, 128, 128, 1, 1, 1},     {255, 128, 128, 255, 255, 255},
      {0, 128, 128, 0, 0, 0},      {81, 90, 240, 253, 0, 0},
      {145, 54, 34, 0, 255, 0},    {41, 240, 110, 0, 1, 255},
      {235, 16, 16, 75, 255, 27},
  };
  for (const Case& c : cases) {
    const Rgb rgb = yuv_to_rgb(c.y, chroma_terms(c.u, c.v));
    EXPECT_EQ(rgb.r, c.r) << int(c.y) << "," << int(c.u) << "," << int(c.v);
    EXPECT_EQ(rgb.g, c.g) << int(c.y) << "," << int(c.u) << "," << int(c.v);
    EXPECT_EQ(rgb.b, c.b) << int(c.y) << "," << int(c.u) << "," << int(c.v);
  }
}

TEST(YuvToRgb, Rgb16LayoutsDropLowBits) {
  const Rgb nearWhite{254, 254, 254};
  EXPECT_EQ(pack_rgb16(nearWhite, kRgb16Layouts[0]), 0xFFFF);
  EXPECT_EQ(pack_rgb16(nearWhite, kRgb16Layouts[1]), 0xFFFE);  // bit 0 always clear
  EXPECT_EQ(pack_rgb16(nearWhite, kRgb16Layouts[2]), 0xFFFF);
  EXPECT_EQ(pack_rgb16(nearWhite, kRgb16Layouts[3]), 0xFFFF);
  const Rgb c{0x9C, 0x5A, 0x3F};
  EXPECT_EQ(pack_rgb16(c, kRgb16Layouts[0]), (0x98 << 8) | (0x58 << 3) | (0x38 >> 3));
  EXPECT_EQ(pack_rgb16(c, kRgb16Layouts[2]), (0x9C << 8) | (0x58 << 2) | (0x30 >> 4));
}

// Every (Y, U, V) triple through loadimage_rgb32 on every target against the
// scalar conversion: chroma sample (U, V) at column U of chroma row V, and
// its 2x2 luma block holding four consecutive luma values, 64 frames.
TEST(YuvToRgb, VectorMatchesScalarForEveryTriple) {
  const int32_t width = 512, height = 512, pitch = 512;
  std::vector<uint8_t> y(pitch * height), u(256 * 256), v(256 * 256);
  for (int row = 0; row < 256; ++row)
    for (int col = 0; col < 256; ++col) u[row * 256 + col] = uint8_t(col), v[row * 256 + col] = uint8_t(row);
  std::vector<uint8_t> expected(4 * width * height), actual(expected.size());
  for (int frame = 0; frame < 64; ++frame) {
    for (int row = 0; row < height; ++row)
      for (int x = 0; x < width; ++x)
        y[row * pitch + x] = uint8_t(4 * frame + 2 * (row & 1) + (x & 1));
    for (int row = 0; row < height; ++row) {
      for (int x = 0; x < width; ++x) {
        const Rgb c = yuv_to_rgb(y[row * pitch + x], chroma_terms(uint8_t(x / 2), uint8_t(row / 2)));
        uint8_t* px = &expected[4 * (row * width + x)];
        px[0] = c.b, px[1] = c.g, px[2] = c.r, px[3] = 0;
      }
    }
    for_each_target([&](const std::string& target) {
      std::fill(actual.begin(), actual.end(), 0xEE);
      loadimage_rgb32(y.data(), u.data(), v.data(), actual.data(), width, height, pitch,
                      4 * width, nullptr);
      if (actual != expected) {
        const size_t i = std::mismatch(actual.begin(), actual.end(), expected.begin()).first -
                         actual.begin();
        FAIL() << target << ": frame " << frame << ", pixel " << i / 4 << " byte " << i % 4
               << " is " << int(actual[i]) << ", expected " << int(expected[i]);
      }
    });
  }
}

struct RgbKernel {
  const char* name;
  A9Kernel kernel;
  ModelPacking packing;
  bool adjusts;
};

void PrintTo(const RgbKernel& k, std::ostream* os) { *os << k.name; }

const RgbKernel kKernels[] = {
    {"loadimage_rgb32", loadimage_rgb32, ModelPacking::kRgb32, false},
    {"loadimage_rgb24", loadimage_rgb24, ModelPacking::kRgb24, false},
    {"loadimage_rgb16", loadimage_rgb16, ModelPacking::kRgb16, false},
    {"loadimage_rgb32_ajust", loadimage_rgb32_ajust, ModelPacking::kRgb32, true},
    {"loadimage_rgb24_ajust", loadimage_rgb24_ajust, ModelPacking::kRgb24, true},
    {"loadimage_rgb16_ajust", loadimage_rgb16_ajust, ModelPacking::kRgb16, true},
};

class PlanarToRgb : public testing::TestWithParam<RgbKernel> {
 protected:
  A9Model model() const {
    const RgbKernel k = GetParam();
    return [k](const A9Ptrs& p, const A9Call& c, const tag_ajust_contrast_info& r) {
      model_planar_to_rgb(p, c, r, k.packing, k.adjusts);
    };
  }
};

TEST_P(PlanarToRgb, MatchesModelOnRandomFramesAndGeometries) {
  const RgbKernel& k = GetParam();
  std::mt19937 rng(1121);
  for (int i = 0; i < 300; ++i) {
    const A9Call call = random_call(rng, 1, int32_t(k.packing));
    tag_ajust_contrast_info adjust = random_adjustment(rng);
    if (i % 25 == 0) adjust.rgb16Layout = i % 50 ? 4 : 0xFFFFFFFFu;  // write nothing
    get_contrast_data(&adjust);
    ASSERT_TRUE(check_a9(k.kernel, model(), call, adjust, rng())) << k.name << ", case " << i;
  }
}

TEST_P(PlanarToRgb, MatchesModelOnOddSizes) {
  const RgbKernel& k = GetParam();
  tag_ajust_contrast_info adjust = identity_adjustment();
  adjust.chromaGain = 100;
  adjust.uOffset = adjust.vOffset = 128 - 200;
  adjust.rgb16Layout = 3;
  get_contrast_data(&adjust);
  std::mt19937 rng(11);
  for (int32_t width : {0, 1, 8, 15, 16, 17, 33, 64, 100}) {
    for (int32_t height : {0, 1, 2, 3, 4, 7}) {
      const A9Call call{width, height, 131, 120 * int32_t(k.packing) + 3};
      ASSERT_TRUE(check_a9(k.kernel, model(), call, adjust, rng())) << k.name;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Kernels, PlanarToRgb, testing::ValuesIn(kKernels),
                         [](const auto& info) { return std::string(info.param.name); });

// Y = 235 with neutral chroma, width 8 (still a whole group of 16 pixels per
// row) and height 1 (still a row pair): every pixel of both rows is white
// as the conversion gives it.
TEST(PlanarToRgbValues, NearWhiteInEveryPackingAndWholeGroups) {
  tag_ajust_contrast_info adjust = identity_adjustment();
  Plane y(64 * 2, 235), u(32, 128), v(32, 128);
  struct Case { A9Kernel k; int bpp; std::vector<uint8_t> pixel; };
  const Case cases[] = {{loadimage_rgb32, 4, {254, 254, 254, 0}},
                        {loadimage_rgb24, 3, {254, 254, 254}},
                        {loadimage_rgb16, 2, {0xFF, 0xFF}}};
  for (const Case& c : cases) {
    std::vector<uint8_t> s(128 * 3, 0xEE);
    c.k(y.data(), u.data(), v.data(), s.data(), 8, 1, 64, 128, &adjust);
    for (int row = 0; row < 3; ++row) {
      for (int x = 0; x < 16; ++x) {
        for (int i = 0; i < c.bpp; ++i) {
          const uint8_t want = row < 2 ? c.pixel[i] : 0xEE;
          ASSERT_EQ(s[row * 128 + c.bpp * x + i], want) << "bpp " << c.bpp << " row " << row;
        }
      }
      EXPECT_EQ(s[row * 128 + 16 * c.bpp], 0xEE);
    }
  }
}

// With identity adjustment the adjusting kernels write what the plain ones
// write (without adjustment loaded they would write black).
TEST(PlanarToRgbValues, IdentityAdjustmentMatchesPlainKernel) {
  tag_ajust_contrast_info adjust = identity_adjustment();
  get_contrast_data(&adjust);
  std::mt19937 rng(5);
  Plane y(64 * 4, 0), u(32 * 2, 0), v(32 * 2, 0);
  for (auto* p : {&y, &u, &v})
    for (auto& b : p->bytes) b = uint8_t(rng());
  for (uint32_t layout = 0; layout < 4; ++layout) {
    adjust.rgb16Layout = layout;
    for (int i = 0; i < 3; ++i) {
      std::vector<uint8_t> plain(256 * 4, 0xEE), adjusted(plain);
      kKernels[i].kernel(y.data(), u.data(), v.data(), plain.data(), 48, 4, 64, 256, &adjust);
      kKernels[i + 3].kernel(y.data(), u.data(), v.data(), adjusted.data(), 48, 4, 64, 256,
                             &adjust);
      EXPECT_EQ(plain, adjusted) << kKernels[i + 3].name << ", layout " << layout;
    }
  }
}

TEST(PlanarToRgbValues, Rgb16LayoutAboveThreeWritesNothing) {
  tag_ajust_contrast_info adjust = identity_adjustment();
  get_contrast_data(&adjust);
  Plane y(64 * 2, 235), u(32, 128), v(32, 128);
  for (uint32_t layout : {4u, 7u, 0xFFFFFFFFu}) {
    adjust.rgb16Layout = layout;
    for (A9Kernel k : {loadimage_rgb16, loadimage_rgb16_ajust}) {
      std::vector<uint8_t> s(64 * 2, 0xEE);
      k(y.data(), u.data(), v.data(), s.data(), 16, 2, 64, 64, &adjust);
      EXPECT_TRUE(std::all_of(s.begin(), s.end(), [](uint8_t b) { return b == 0xEE; }))
          << "layout " << layout;
    }
  }
}

// Both rows of a pair take chroma row k; the next pair takes row k + 1.
TEST(PlanarToRgbValues, ChromaRowServesItsRowPairOnly) {
  Plane y(32 * 4, 128), u(16 * 2, 128), v(16 * 2, 128);
  std::fill(v.bytes.begin() + 16, v.bytes.end(), 240);  // second chroma row red
  std::vector<uint8_t> s(64 * 4);
  loadimage_rgb32(y.data(), u.data(), v.data(), s.data(), 16, 4, 32, 64, nullptr);
  for (int row = 0; row < 4; ++row) {
    const uint8_t red = s[row * 64 + 2];
    if (row < 2) EXPECT_EQ(red, 130) << row;
    else EXPECT_EQ(red, 255) << row;
  }
}

}  // namespace
}  // namespace yuvblit_test
