// A subpicture shown by itself on RGB32, RGB24 and RGB16 surfaces: every
// kernel against its model, then the documented values.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <vector>

#include "adjust/color.h"
#include "harness/mix.h"
#include "model/sub_to_rgb_model.h"
#include "test_util.h"

namespace yuvblit_test {
namespace {

struct SubKernelCase {
  const char* name;
  MixKernel kernel;
  MixModel model;
  int32_t bytesPerPixel;
};

void PrintTo(const SubKernelCase& k, std::ostream* os) { *os << k.name; }

const SubKernelCase kKernels[] = {
    {"load_subpicture_yuy2_rgb32", load_subpicture_yuy2_rgb32, model_load_subpicture_yuy2_rgb32,
     4},
    {"load_subpicture_yuy2_rgb32_ajust", load_subpicture_yuy2_rgb32_ajust,
     model_load_subpicture_yuy2_rgb32_ajust, 4},
    {"load_subpicture_yuy2_rgb24", load_subpicture_yuy2_rgb24, model_load_subpicture_yuy2_rgb24,
     3},
    {"load_subpicture_yuy2_rgb24_ajust", load_subpicture_yuy2_rgb24_ajust,
     model_load_subpicture_yuy2_rgb24_ajust, 3},
    {"load_subpicture_yuy2_rgb16", load_subpicture_yuy2_rgb16, model_load_subpicture_yuy2_rgb16,
     2},
    {"load_subpicture_yuy2_rgb16_ajust", load_subpicture_yuy2_rgb16_ajust,
     model_load_subpicture_yuy2_rgb16_ajust, 2},
};

// Subpicture widths (picturePitch) of whole steps and not, 0 and the
// documented 20 included; heights from 0; surface pitches looser (often
// odd), tighter than a row (rows share bytes) and bottom-up. width and
// subPitch are not read and get arbitrary values.
MixCall random_call(std::mt19937& rng, int32_t bytesPerPixel) {
  auto pick = [&](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
  MixCall c;
  const int32_t edges[] = {0, 1, 15, 16, 17, 20, 31, 33};
  switch (pick(0, 3)) {
    case 0: c.picturePitch = edges[pick(0, 7)]; break;
    case 1: c.picturePitch = 16 * pick(1, 10); break;
    default: c.picturePitch = pick(0, 170);
  }
  c.height = pick(0, 2) == 0 ? pick(0, 2) : pick(3, 12);
  const int32_t row = bytesPerPixel * (c.picturePitch + 16);
  switch (pick(0, 5)) {
    case 0: c.dstPitch = pick(0, row); break;
    case 1: c.dstPitch = -(row + pick(0, 40)); break;
    default: c.dstPitch = row + pick(0, 41);
  }
  c.width = pick(-1000, 1000);
  c.subPitch = pick(-1000, 1000);
  c.colorKey = static_cast<uint32_t>(rng());
  return c;
}

// Alpha in runs, as overlays have them: transparent (0), shown (1..127),
// hidden (128..255), and a mix of the boundary values 0, 1, 127, 128 and
// 255 with random bytes. Whole vectors of the first and third take the
// kernels' unconverted paths.
std::function<void(const std::vector<Region*>&)> fill_alpha(uint32_t seed) {
  return [seed](const std::vector<Region*>& regions) {
    std::mt19937 rng(seed);
    int64_t runLeft = 0;
    uint32_t kind = 0;
    const uint8_t boundaries[] = {0, 1, 127, 128, 255};
    regions[kSubAlpha]->fill([&](int64_t) {
      if (runLeft-- == 0) runLeft = rng() % 100, kind = rng() % 4;
      switch (kind) {
        case 0: return uint8_t{0};
        case 1: return static_cast<uint8_t>(1 + rng() % 127);
        case 2: return static_cast<uint8_t>(128 + rng() % 128);
        default: return rng() % 2 ? boundaries[rng() % 5] : static_cast<uint8_t>(rng());
      }
    });
  };
}

class SubpictureToRgb : public testing::TestWithParam<SubKernelCase> {};

TEST_P(SubpictureToRgb, MatchesModelOnRandomSubpicturesAndGeometries) {
  const SubKernelCase& k = GetParam();
  std::mt19937 rng(9043);
  for (int i = 0; i < 300; ++i) {
    const MixCall call = random_call(rng, k.bytesPerPixel);
    tag_ajust_contrast_info adjust = random_adjustment(rng);
    if (i % 25 == 0) adjust.rgb16Layout = i % 50 ? 4 : 0xFFFFFFFFu;  // RGB16 writes nothing
    get_contrast_data(&adjust);
    const uint32_t seed = rng();
    ASSERT_TRUE(check_mix(k.kernel, k.model, call, adjust, seed, fill_alpha(seed)))
        << k.name << ", case " << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Kernels, SubpictureToRgb, testing::ValuesIn(kKernels),
                         [](const auto& info) { return std::string(info.param.name); });

// Hand-written cases: a subpicture of up to 64 pixels by 8 rows whose
// planes hold one value each unless a test sets bytes, and a surface marked
// with 0xEE, rows 256 bytes apart.
struct Scene {
  static constexpr int32_t kDstPitch = 256, kRows = 8;
  Plane alpha{64 * kRows, 16}, y{64 * kRows, 235}, u{32 * kRows, 128}, v{32 * kRows, 128};
  std::vector<uint8_t> dst = std::vector<uint8_t>(kDstPitch * kRows, 0xEE);
  tag_ajust_contrast_info adjust{};  // rgb16Layout 0

  void run(MixKernel kernel, int32_t pixels, int32_t height, uint32_t colorKey) {
    std::fill(dst.begin(), dst.end(), 0xEE);
    tagMIX_INFO r{};
    r.picturePitch = pixels;
    r.dstPitch = kDstPitch;
    r.height = height;
    r.subAlpha = alpha.data(), r.subY = y.data(), r.subU = u.data(), r.subV = v.data();
    r.dst = dst.data();
    r.colorKey = colorKey;
    r.adjust = &adjust;
    kernel(&r);
  }
  std::vector<uint8_t> pixel(int row, int i, int bpp) const {
    const auto at = dst.begin() + row * kDstPitch + i * bpp;
    return std::vector<uint8_t>(at, at + bpp);
  }
  int written(int row) const {
    const auto begin = dst.begin() + row * kDstPitch;
    return static_cast<int>(kDstPitch - std::count(begin, begin + kDstPitch, 0xEE));
  }
};

using Bytes = std::vector<uint8_t>;

TEST(SubpictureToRgbValues, AlphaPicksKeyColourOrBlack) {
  Scene s;
  const uint8_t alphas[] = {16, 0, 200, 1, 127, 128};
  for (int i = 0; i < 6; ++i) s.alpha[i] = alphas[i];
  s.run(load_subpicture_yuy2_rgb32, 16, 1, 0x00FF0010);
  EXPECT_EQ(s.pixel(0, 0, 4), (Bytes{254, 254, 254, 0}));   // Y 235 converted
  EXPECT_EQ(s.pixel(0, 1, 4), (Bytes{0xFF, 0x00, 0x10, 0}));  // key 0x00BBGGRR
  EXPECT_EQ(s.pixel(0, 2, 4), (Bytes{0, 0, 0, 0}));
  EXPECT_EQ(s.pixel(0, 3, 4), (Bytes{254, 254, 254, 0}));  // no blending at 1 or 127
  EXPECT_EQ(s.pixel(0, 4, 4), (Bytes{254, 254, 254, 0}));
  EXPECT_EQ(s.pixel(0, 5, 4), (Bytes{0, 0, 0, 0}));

  s.run(load_subpicture_yuy2_rgb24, 16, 1, 0x00FF0010);
  EXPECT_EQ(s.pixel(0, 1, 3), (Bytes{0xFF, 0x00, 0x10}));
  EXPECT_EQ(s.pixel(0, 2, 3), (Bytes{0, 0, 0}));

  // RGB16: the key's low half as it stands, black as word 0, and Y 235 as
  // 5-6-5 of (254, 254, 254).
  s.run(load_subpicture_yuy2_rgb16, 16, 1, 0xABCDF81F);
  EXPECT_EQ(s.pixel(0, 0, 2), (Bytes{0xFF, 0xFF}));
  EXPECT_EQ(s.pixel(0, 1, 2), (Bytes{0x1F, 0xF8}));
  EXPECT_EQ(s.pixel(0, 2, 2), (Bytes{0, 0}));
}

// picturePitch 20: two steps, 32 pixels per row, and each row reads the
// subpicture 32 bytes after the previous one (16 after for chroma). The
// surface step takes back 20 pixels, so row 1 starts 12 pixels right.
TEST(SubpictureToRgbValues, Pitch20ReadsRowsOfTwoWholeSteps) {
  Scene s;
  s.alpha[32] = 0;  // row 1, pixel 0
  s.u[16] = 0;      // row 1, pair 0
  s.y[33] = 16;     // row 1, pixel 1
  s.run(load_subpicture_yuy2_rgb32, 20, 2, 0x00030201);
  EXPECT_EQ(s.written(0), 128);
  EXPECT_EQ(s.written(1), 128);
  EXPECT_EQ(s.pixel(1, 11, 4), (Bytes{0xEE, 0xEE, 0xEE, 0xEE}));
  EXPECT_EQ(s.pixel(1, 12, 4), (Bytes{3, 2, 1, 0}));
  const yuvblit::Rgb c = yuvblit::yuv_to_rgb(16, yuvblit::chroma_terms(0, 128));
  EXPECT_EQ(s.pixel(1, 13, 4), (Bytes{c.b, c.g, c.r, 0}));
}

}  // namespace
}  // namespace yuvblit_test
