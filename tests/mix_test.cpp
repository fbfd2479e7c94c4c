// Mixing an AYUY2 subpicture into a planar picture onto YUY2 and RGB
// surfaces: every kernel against its model, then the documented values.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <utility>
#include <vector>

#include "adjust/color.h"
#include "harness/mix.h"
#include "model/mix_model.h"
#include "model/yv12_mix_model.h"
#include "test_util.h"

namespace yuvblit_test {
namespace {

using yuvblit::chroma_terms;
using yuvblit::Rgb;
using yuvblit::yuv_to_rgb;

struct MixKernelCase {
  const char* name;
  MixKernel kernel;
  MixModel model;
  int32_t dstBytesPerPixel;  // per source pixel, for sizing pitches
  bool interlaced;
  // Halves its pitches as unsigned values: a bottom-up pitch would put the
  // chroma rows 2 GiB away.
  bool topDownOnly = false;
};

void PrintTo(const MixKernelCase& k, std::ostream* os) { *os << k.name; }

const MixKernelCase kKernels[] = {
    {"mix_ayuy2_yuy2_p_ajust", mix_ayuy2_yuy2_p_ajust, model_mix_ayuy2_yuy2_p_ajust, 2, false},
    {"mix_ayuy2_half_yuy2_p_ajust", mix_ayuy2_half_yuy2_p_ajust,
     model_mix_ayuy2_half_yuy2_p_ajust, 1, false},
    {"mix_ayuy2_yuy2_i_ajust", mix_ayuy2_yuy2_i_ajust, model_mix_ayuy2_yuy2_i_ajust, 2, true},
    {"mix_ayuy2_rgb32_p_ajust", mix_ayuy2_rgb32_p_ajust, model_mix_ayuy2_rgb32_p_ajust, 4, false},
    {"mix_ayuy2_rgb24_p_ajust", mix_ayuy2_rgb24_p_ajust, model_mix_ayuy2_rgb24_p_ajust, 3, false},
    {"mix_ayuy2_rgb16_p_ajust", mix_ayuy2_rgb16_p_ajust, model_mix_ayuy2_rgb16_p_ajust, 2, false},
    {"mix_ayuy2_rgb32_i_ajust", mix_ayuy2_rgb32_i_ajust, model_mix_ayuy2_rgb32_i_ajust, 4, true},
    {"mix_ayuy2_rgb24_i_ajust", mix_ayuy2_rgb24_i_ajust, model_mix_ayuy2_rgb24_i_ajust, 3, true},
    {"mix_ayuy2_rgb16_i_ajust", mix_ayuy2_rgb16_i_ajust, model_mix_ayuy2_rgb16_i_ajust, 2, true},
    {"mix_ayv12_yv12_p", mix_ayv12_yv12_p, model_mix_ayv12_yv12_p, 1, false},
    {"mix_ayv12_yv12_p_ajust", mix_ayv12_yv12_p_ajust, model_mix_ayv12_yv12_p_ajust, 1, false},
    {"mix_ayv12_yv12_i", mix_ayv12_yv12_i, model_mix_ayv12_yv12_i, 1, true, true},
};

// Widths of whole groups and not (0 included); heights around the row pair
// and, for the interlaced kernel, around its groups of four; pitches looser
// (often odd), tighter than a row (rows overlap) and bottom-up.
MixCall random_mix_call(std::mt19937& rng, int32_t dstBytesPerPixel, bool interlaced,
                        bool topDownOnly) {
  auto pick = [&](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
  MixCall c;
  switch (pick(0, 3)) {
    case 0: c.width = pick(0, 40); break;
    case 1: c.width = 16 * pick(1, 8); break;
    default: c.width = pick(1, 150); break;
  }
  const int heightKind = pick(0, 3);
  c.height = !interlaced ? pick(0, 21) : heightKind == 0 ? pick(0, 3)
                                     : heightKind == 1 ? pick(4, 7) : pick(8, 24);
  auto pitch = [&](int32_t rowBytes) {
    switch (pick(0, 5)) {
      case 0: return rowBytes + pick(-rowBytes / 2, 0);
      case 1: return topDownOnly ? rowBytes : -(rowBytes + pick(0, 40));
      default: return rowBytes + pick(0, 41);
    }
  };
  const int32_t rowPixels = 16 * ((c.width + 15) / 16 + 1);
  c.picturePitch = pitch(rowPixels);
  c.subPitch = pitch(rowPixels);
  c.dstPitch = pitch(rowPixels * dstBytesPerPixel);
  return c;
}

// Alpha in runs of random length, as overlays have them: transparent (0),
// opaque (16), opaque with bytes far above 16 mixed in, and mixed weights
// mostly in 0..17, where they differ. Whole vectors of the first three take
// the kernels' unmixed paths, runs that straddle vectors the mixed one.
std::function<void(const std::vector<Region*>&)> fill_alpha(uint32_t seed) {
  return [seed](const std::vector<Region*>& regions) {
    std::mt19937 rng(seed);
    int64_t runLeft = 0;
    uint32_t kind = 0;
    regions[kSubAlpha]->fill([&](int64_t) {
      if (runLeft-- == 0) runLeft = rng() % 200, kind = rng() % 4;
      switch (kind) {
        case 0: return uint8_t{0};
        case 1: return uint8_t{16};
        case 2: return static_cast<uint8_t>(rng() % 4 ? 16 : 17 + rng() % 239);
        default: return static_cast<uint8_t>(rng() % 8 == 0 ? 18 + rng() % 238 : rng() % 18);
      }
    });
  };
}

class Mix : public testing::TestWithParam<MixKernelCase> {};

TEST_P(Mix, MatchesModelOnRandomPicturesAndGeometries) {
  const MixKernelCase& k = GetParam();
  std::mt19937 rng(4451);
  for (int i = 0; i < 300; ++i) {
    const MixCall call = random_mix_call(rng, k.dstBytesPerPixel, k.interlaced, k.topDownOnly);
    tag_ajust_contrast_info adjust = random_adjustment(rng);
    if (i % 25 == 0) adjust.rgb16Layout = i % 50 ? 4 : 0xFFFFFFFFu;  // RGB16 writes nothing
    get_contrast_data(&adjust);
    const uint32_t seed = rng();
    ASSERT_TRUE(check_mix(k.kernel, k.model, call, adjust, seed, fill_alpha(seed)))
        << k.name << ", case " << i;
  }
}

TEST_P(Mix, MatchesModelOnOddSizes) {
  const MixKernelCase& k = GetParam();
  tag_ajust_contrast_info adjust = identity_adjustment();
  adjust.lumaGain = 90;
  adjust.chromaGain = 100;
  adjust.uOffset = adjust.vOffset = 128 - 200;
  adjust.rgb16Layout = 2;
  get_contrast_data(&adjust);
  std::mt19937 rng(17);
  for (int32_t width : {0, 1, 15, 16, 17, 20, 31, 33, 48}) {
    for (int32_t height = 0; height <= 13; ++height) {
      const MixCall call{81, 82, 64 * k.dstBytesPerPixel + 3, width, height};
      const uint32_t seed = rng();
      ASSERT_TRUE(check_mix(k.kernel, k.model, call, adjust, seed, fill_alpha(seed))) << k.name;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Kernels, Mix, testing::ValuesIn(kKernels),
                         [](const auto& info) { return std::string(info.param.name); });

// Hand-written cases: picture and subpicture planes of one value each unless
// a test sets bytes, all with pitch 64, and a surface marked with 0xEE.
struct Scene {
  static constexpr int32_t kPitch = 64, kDstPitch = 256, kRows = 32;
  Plane pictureY{kPitch * kRows, 100}, pictureU{kPitch * kRows, 90}, pictureV{kPitch * kRows, 200};
  Plane alpha{kPitch * kRows, 0};
  Plane subY{kPitch * kRows, 60}, subU{kPitch * kRows, 30}, subV{kPitch * kRows, 60};
  std::vector<uint8_t> dst = std::vector<uint8_t>(kDstPitch * kRows, 0xEE);
  tag_ajust_contrast_info adjust = identity_adjustment();

  tagMIX_INFO record(int32_t width, int32_t height) {
    tagMIX_INFO r{};
    r.picturePitch = r.subPitch = kPitch;
    r.dstPitch = kDstPitch;
    r.width = width, r.height = height;
    r.pictureY = pictureY.data(), r.pictureU = pictureU.data(), r.pictureV = pictureV.data();
    r.subAlpha = alpha.data(), r.subY = subY.data(), r.subU = subU.data(), r.subV = subV.data();
    r.dst = dst.data();
    r.adjust = &adjust;
    return r;
  }
  // Loads the scene's adjustment, runs the kernel, returns the record after.
  tagMIX_INFO run(MixKernel kernel, int32_t width, int32_t height) {
    get_contrast_data(&adjust);
    std::fill(dst.begin(), dst.end(), 0xEE);
    tagMIX_INFO r = record(width, height);
    kernel(&r);
    return r;
  }
  void set_alpha(uint8_t even, uint8_t odd) {
    for (size_t i = 0; i < alpha.bytes.size(); ++i) alpha[i] = i & 1 ? odd : even;
  }
  const uint8_t* row(int r) const { return dst.data() + r * kDstPitch; }
  // First written byte of a row and how many follow it.
  std::pair<int, int> written(int r) const {
    const uint8_t* b = row(r);
    int first = -1, count = 0;
    for (int i = 0; i < kDstPitch; ++i)
      if (b[i] != 0xEE) first = first < 0 ? i : first, ++count;
    return {first, count};
  }
  int rows_written() const {
    int n = 0;
    for (int r = 0; r < kRows; ++r) n += written(r).second > 0;
    return n;
  }
};

struct Yuy2Kernel {
  const char* name;
  MixKernel kernel;
  int32_t height;  // the smallest that writes whole row pairs or groups
  int pairsPerGroup;
};
const Yuy2Kernel kYuy2Kernels[] = {{"p", mix_ayuy2_yuy2_p_ajust, 2, 8},
                                   {"i", mix_ayuy2_yuy2_i_ajust, 4, 8},
                                   {"half", mix_ayuy2_half_yuy2_p_ajust, 2, 4}};

// Every pixel pair of the rows a 16-pixel call writes holds (y0, u, y1, v).
void expect_pairs(const Scene& s, const Yuy2Kernel& k, uint8_t y0, uint8_t u, uint8_t y1,
                  uint8_t v) {
  for (int r = 0; r < k.height; ++r) {
    for (int p = 0; p < k.pairsPerGroup; ++p) {
      const uint8_t* b = s.row(r) + 4 * p;
      EXPECT_EQ(std::vector<uint8_t>(b, b + 4), (std::vector<uint8_t>{y0, u, y1, v}))
          << k.name << ", row " << r << ", pair " << p;
    }
    EXPECT_EQ(s.row(r)[4 * k.pairsPerGroup], 0xEE) << k.name;
  }
}

TEST(MixYuy2Values, AlphaZeroGivesAdjustedPictureAndSixteenUpTheAdjustedSubpicture) {
  Scene s;
  s.adjust.lumaGain = 128;  // luma 100 -> 200, 60 -> 120
  for (const Yuy2Kernel& k : kYuy2Kernels) {
    s.set_alpha(0, 0);
    s.run(k.kernel, 16, k.height);
    expect_pairs(s, k, 200, 90, 200, 200);
    // The half kernel's chroma weight is not limited to 16.
    for (uint8_t a : k.kernel == mix_ayuy2_half_yuy2_p_ajust ? std::vector<uint8_t>{16}
                                                             : std::vector<uint8_t>{16, 17, 255}) {
      s.set_alpha(a, a);
      s.run(k.kernel, 16, k.height);
      expect_pairs(s, k, 120, 30, 120, 60);
    }
  }
}

TEST(MixYuy2Values, PartialAlphaTruncates) {
  Scene s;
  std::fill(s.subY.bytes.begin(), s.subY.bytes.end(), 200);
  for (const Yuy2Kernel& k : kYuy2Kernels) {
    s.set_alpha(8, 8);  // halfway: Y (100, 200), U (90, 30), V (200, 60)
    s.run(k.kernel, 16, k.height);
    expect_pairs(s, k, 150, 60, 150, 130);
  }
  std::fill(s.pictureY.bytes.begin(), s.pictureY.bytes.end(), 255);
  std::fill(s.subY.bytes.begin(), s.subY.bytes.end(), 0);
  s.set_alpha(1, 1);  // (255 * 15) >> 4
  s.run(mix_ayuy2_yuy2_p_ajust, 16, 2);
  EXPECT_EQ(s.row(1)[2], 239);
}

// Chroma takes the alpha of the right-hand pixel of its pair.
TEST(MixYuy2Values, ChromaFollowsTheRightPixelsAlpha) {
  Scene s;
  for (const Yuy2Kernel& k : {kYuy2Kernels[0], kYuy2Kernels[1]}) {
    s.set_alpha(16, 0);
    s.run(k.kernel, 16, k.height);
    expect_pairs(s, k, 60, 90, 100, 200);
    s.set_alpha(0, 16);
    s.run(k.kernel, 16, k.height);
    expect_pairs(s, k, 100, 30, 60, 60);
  }
}

// Output pixel j is source pixel 2j + 1, output pair k takes chroma sample
// 2k + 1 weighted by the alpha of source pixel 4k + 3.
TEST(MixHalfYuy2Values, KeepsOddPixelsAndOddChromaSamples) {
  Scene s;
  for (int i = 0; i < 16; ++i) s.pictureY[i] = uint8_t(i), s.subY[i] = uint8_t(100 + i);
  for (int i = 0; i < 8; ++i) s.subU[i] = uint8_t(50 + i), s.subV[i] = uint8_t(70 + i);
  for (int i = 0; i < 16; ++i) s.alpha[i] = i % 4 == 3 ? 16 : 0;
  s.run(mix_ayuy2_half_yuy2_p_ajust, 16, 2);
  for (int k = 0; k < 4; ++k) {
    const uint8_t* b = s.row(0) + 4 * k;
    EXPECT_EQ(std::vector<uint8_t>(b, b + 4),
              (std::vector<uint8_t>{uint8_t(4 * k + 1), uint8_t(50 + 2 * k + 1),
                                    uint8_t(100 + 4 * k + 3), uint8_t(70 + 2 * k + 1)}))
        << "pair " << k;
  }
}

TEST(MixHalfYuy2Values, ChromaWeightAboveSixteenIsNotLimited) {
  Scene s;
  std::fill(s.pictureU.bytes.begin(), s.pictureU.bytes.end(), 0);
  std::fill(s.pictureV.bytes.begin(), s.pictureV.bytes.end(), 0);
  std::fill(s.subU.bytes.begin(), s.subU.bytes.end(), 255);
  std::fill(s.subV.bytes.begin(), s.subV.bytes.end(), 255);
  s.set_alpha(255, 255);
  s.run(mix_ayuy2_half_yuy2_p_ajust, 16, 2);
  expect_pairs(s, kYuy2Kernels[2], 60, 255, 60, 255);
}

// Rows 10 and 11 (or 12) interpolate to 11; chroma rows likewise.
TEST(MixYuy2IValues, InterpolatedRowsRoundUp) {
  Scene s;
  const int32_t p = Scene::kPitch, c = Scene::kPitch / 2;
  for (int x = 0; x < 16; ++x)
    s.pictureY[x] = 10, s.pictureY[p + x] = x & 1 ? 12 : 11, s.pictureY[2 * p + x] = 20;
  for (int k = 0; k < 8; ++k)
    s.pictureU[k] = s.pictureV[k] = 10, s.pictureU[c + k] = 11, s.pictureV[c + k] = 12;
  s.run(mix_ayuy2_yuy2_i_ajust, 16, 8);
  const uint8_t expected[4][4] = {{10, 10, 10, 10}, {11, 10, 11, 10},
                                  {11, 11, 12, 11}, {16, 11, 16, 11}};
  for (int r = 0; r < 4; ++r)
    for (int i = 0; i < 4; ++i) EXPECT_EQ(s.row(r)[i], expected[r][i]) << "row " << r;
}

TEST(MixYuy2IValues, HeightsBelowFourWriteNothingOthersWholeGroupsOfFour) {
  Scene s;
  struct Case { int32_t height; int rows, chromaRows, heightAfter; };
  for (const Case& c : {Case{3, 0, 0, 3}, Case{6, 4, 0, 0}, Case{10, 12, 2, 0}}) {
    const tagMIX_INFO r = s.run(mix_ayuy2_yuy2_i_ajust, 16, c.height);
    EXPECT_EQ(s.rows_written(), c.rows) << "height " << c.height;
    EXPECT_EQ(r.height, c.heightAfter) << "height " << c.height;
    EXPECT_EQ(r.subY - s.subY.data(), c.rows * Scene::kPitch) << "height " << c.height;
    EXPECT_EQ(r.pictureU - s.pictureU.data(), c.chromaRows * Scene::kPitch / 2);
  }
}

struct ProgressiveKernel {
  const char* name;
  MixKernel kernel;
  int groupBytes;  // surface bytes per 16 source pixels
};
const ProgressiveKernel kProgressive[] = {{"yuy2", mix_ayuy2_yuy2_p_ajust, 32},
                                          {"half yuy2", mix_ayuy2_half_yuy2_p_ajust, 16},
                                          {"rgb32", mix_ayuy2_rgb32_p_ajust, 64},
                                          {"rgb24", mix_ayuy2_rgb24_p_ajust, 48},
                                          {"rgb16", mix_ayuy2_rgb16_p_ajust, 32}};

// Width 20 takes two groups per row; the end-of-pair step subtracts the
// width, so each row pair starts the overrun further right. The interlaced
// kernel starts every row at its own start.
TEST(MixValues, Width20WritesTwoGroupsAndLaterRowPairsDrift) {
  Scene s;
  for (const ProgressiveKernel& k : kProgressive) {
    s.run(k.kernel, 20, 4);
    const int drift = 2 * k.groupBytes - k.groupBytes * 20 / 16;
    for (int r = 0; r < 4; ++r)
      EXPECT_EQ(s.written(r), std::make_pair(r < 2 ? 0 : drift, 2 * k.groupBytes))
          << k.name << ", row " << r;
  }
  s.run(mix_ayuy2_yuy2_i_ajust, 20, 4);
  for (int r = 0; r < 4; ++r) EXPECT_EQ(s.written(r), std::make_pair(0, 64)) << "row " << r;
}

// Height 5 writes three row pairs, height 0 one; the record counts height
// down by 2 per pair and moves the subpicture by the rows written.
TEST(MixValues, ProgressiveHeightsWriteWholeRowPairs) {
  Scene s;
  for (const ProgressiveKernel& k : kProgressive) {
    for (auto [height, rows] : {std::pair{5, 6}, std::pair{0, 2}}) {
      const tagMIX_INFO r = s.run(k.kernel, 16, height);
      EXPECT_EQ(s.rows_written(), rows) << k.name << ", height " << height;
      EXPECT_EQ(r.height, height - rows) << k.name;
      EXPECT_EQ(r.subY - s.subY.data(), rows * Scene::kPitch) << k.name;
      EXPECT_EQ(r.subU - s.subU.data(), rows * Scene::kPitch / 2) << k.name;
    }
  }
}

std::vector<uint8_t> pixel_bytes(int bpp, const Rgb& c) {
  if (bpp == 4) return {c.b, c.g, c.r, 0};
  if (bpp == 3) return {c.b, c.g, c.r};
  const uint16_t w = yuvblit::pack_rgb16(c, yuvblit::kRgb16Layouts[0]);
  return {uint8_t(w), uint8_t(w >> 8)};
}

// Checks the first two pixels of both rows of a 16-pixel call.
void expect_rgb_pair(const Scene& s, const ProgressiveKernel& k, const Rgb& left,
                     const Rgb& right) {
  const int bpp = k.groupBytes / 16;
  for (int r = 0; r < 2; ++r) {
    const uint8_t* b = s.row(r);
    EXPECT_EQ(std::vector<uint8_t>(b, b + bpp), pixel_bytes(bpp, left)) << k.name << " " << r;
    EXPECT_EQ(std::vector<uint8_t>(b + bpp, b + 2 * bpp), pixel_bytes(bpp, right))
        << k.name << ", row " << r;
  }
}

// A red picture (Y 81, U 90, V 240 gives 253, 0, 0) under a green
// subpicture (Y 145, U 54, V 34 gives 0, 255, 0).
void paint_red_under_green(Scene& s) {
  std::fill(s.pictureY.bytes.begin(), s.pictureY.bytes.end(), 81);
  std::fill(s.pictureU.bytes.begin(), s.pictureU.bytes.end(), 90);
  std::fill(s.pictureV.bytes.begin(), s.pictureV.bytes.end(), 240);
  std::fill(s.subY.bytes.begin(), s.subY.bytes.end(), 145);
  std::fill(s.subU.bytes.begin(), s.subU.bytes.end(), 54);
  std::fill(s.subV.bytes.begin(), s.subV.bytes.end(), 34);
}

TEST(MixRgbValues, AlphaSelectsPictureOrSubpictureAndChromaFollowsTheRightPixel) {
  Scene s;
  paint_red_under_green(s);
  const Rgb red{253, 0, 0}, green{0, 255, 0};
  for (const ProgressiveKernel& k : kProgressive) {
    if (k.kernel == mix_ayuy2_yuy2_p_ajust || k.kernel == mix_ayuy2_half_yuy2_p_ajust) continue;
    s.set_alpha(0, 0);
    s.run(k.kernel, 16, 2);
    expect_rgb_pair(s, k, red, red);
    for (uint8_t a : {16, 17, 255}) {
      s.set_alpha(a, a);
      s.run(k.kernel, 16, 2);
      expect_rgb_pair(s, k, green, green);
    }
    s.set_alpha(16, 0);
    s.run(k.kernel, 16, 2);
    expect_rgb_pair(s, k, yuv_to_rgb(145, chroma_terms(90, 240)), red);
    s.set_alpha(0, 16);
    s.run(k.kernel, 16, 2);
    expect_rgb_pair(s, k, yuv_to_rgb(81, chroma_terms(54, 34)), green);
  }
}

TEST(MixRgbValues, HalfAlphaOfGreysGivesMixedLuma) {
  Scene s;
  std::fill(s.pictureU.bytes.begin(), s.pictureU.bytes.end(), 128);
  std::fill(s.pictureV.bytes.begin(), s.pictureV.bytes.end(), 128);
  std::fill(s.subY.bytes.begin(), s.subY.bytes.end(), 200);
  std::fill(s.subU.bytes.begin(), s.subU.bytes.end(), 128);
  std::fill(s.subV.bytes.begin(), s.subV.bytes.end(), 128);
  s.set_alpha(8, 8);  // luma 150
  for (const ProgressiveKernel& k : kProgressive) {
    if (k.kernel == mix_ayuy2_yuy2_p_ajust || k.kernel == mix_ayuy2_half_yuy2_p_ajust) continue;
    s.run(k.kernel, 16, 2);
    expect_rgb_pair(s, k, {155, 155, 155}, {155, 155, 155});
  }
}

TEST(MixRgbValues, Rgb16LayoutAboveThreeLeavesSurfaceAndRecordUntouched) {
  Scene s;
  for (uint32_t layout : {4u, 0xFFFFFFFFu}) {
    s.adjust.rgb16Layout = layout;
    const tagMIX_INFO before = s.record(16, 2);
    const tagMIX_INFO after = s.run(mix_ayuy2_rgb16_p_ajust, 16, 2);
    EXPECT_EQ(s.rows_written(), 0) << "layout " << layout;
    EXPECT_EQ(after.height, before.height) << "layout " << layout;
    const unsigned char* const moved[][2] = {
        {after.pictureU, before.pictureU}, {after.pictureV, before.pictureV},
        {after.subAlpha, before.subAlpha}, {after.subY, before.subY},
        {after.subU, before.subU},         {after.subV, before.subV}};
    for (const auto& field : moved) EXPECT_EQ(field[0], field[1]) << "layout " << layout;
  }
}

}  // namespace
}  // namespace yuvblit_test

namespace yuvblit_test {
namespace {

// B, G, R of pixel x of surface row r of an RGB32 scene.
Rgb rgb32_at(const Scene& s, int r, int x) {
  const uint8_t* p = s.row(r) + 4 * x;
  return Rgb{p[2], p[1], p[0]};
}

void expect_rgb(const Rgb& got, const Rgb& want, int r) {
  EXPECT_EQ(got.r, want.r) << "row " << r;
  EXPECT_EQ(got.g, want.g) << "row " << r;
  EXPECT_EQ(got.b, want.b) << "row " << r;
}

TEST(MixRgbIValues, Height8DoublesFieldRowsAndChromaRowsByRoundedAverages) {
  Scene s;
  const uint8_t field[4] = {10, 21, 60, 80}, chroma[2] = {90, 110};
  for (int i = 0; i < Scene::kPitch; ++i) {
    for (int m = 0; m < 4; ++m) s.pictureY[m * Scene::kPitch + i] = field[m];
    for (int j = 0; j < 2; ++j) s.pictureU[j * Scene::kPitch / 2 + i / 2] = chroma[j];
  }
  s.set_alpha(0, 0);
  const tagMIX_INFO before = s.record(16, 8);
  const tagMIX_INFO after = s.run(mix_ayuy2_rgb32_i_ajust, 16, 8);
  // Field samples 10 and 21 interpolate to 16; the last row repeats field
  // row 3 and the last block keeps chroma row 1.
  const uint8_t luma[8] = {10, 16, 21, 41, 60, 70, 80, 80};
  const uint8_t u[8] = {90, 90, 100, 100, 110, 110, 110, 110};
  for (int r = 0; r < 8; ++r) expect_rgb(rgb32_at(s, r, 5), yuv_to_rgb(luma[r], chroma_terms(u[r], 200)), r);
  EXPECT_EQ(s.row(8)[0], 0xEE);
  EXPECT_EQ(std::memcmp(&before, &after, sizeof before), 0) << "the record is only read";
}

TEST(MixRgbIValues, ChromaWeightIsTheRoundedMeanOfBothAlphasLimitedAfterwards) {
  Scene s;
  // Alphas 16 and 0: weight 8 (U 90/30 -> 60, V 200/60 -> 130); 0 and 20:
  // weight 10 (U 52, V 112); 0 and 255: weight 16, not 8.
  const struct { uint8_t even, odd, u, v; } kCases[] = {
      {16, 0, 60, 130}, {0, 20, 52, 112}, {0, 255, 30, 60}};
  for (const auto& c : kCases) {
    s.set_alpha(c.even, c.odd);
    s.run(mix_ayuy2_rgb32_i_ajust, 16, 4);
    const uint8_t evenY = c.even ? 60 : 100, oddY = c.odd ? 60 : 100;
    for (int r = 0; r < 4; ++r) {
      expect_rgb(rgb32_at(s, r, 0), yuv_to_rgb(evenY, chroma_terms(c.u, c.v)), r);
      expect_rgb(rgb32_at(s, r, 1), yuv_to_rgb(oddY, chroma_terms(c.u, c.v)), r);
    }
  }
}

TEST(MixRgbIValues, Width20WritesTwoWholeColumnsWithoutDrift) {
  Scene s;
  s.run(mix_ayuy2_rgb32_i_ajust, 20, 8);
  for (int r = 0; r < 8; ++r) EXPECT_EQ(s.written(r), std::make_pair(0, 32 * 4)) << r;
}

}  // namespace
}  // namespace yuvblit_test
