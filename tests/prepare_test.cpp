// Subpicture preparation: RGB overlay bitmaps into the Y, U and V planes of
// an AYUY2 subpicture, and the alpha plane into and out of such bitmaps.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "harness/mix.h"
#include "model/prepare_model.h"
#include "test_util.h"

namespace yuvblit_test {
namespace {

enum class Kind { kConvert, kRestore, kLoadAlpha };

struct PrepareCase {
  const char* name;
  MixKernel kernel;
  void (*model)(ModelMix&);
  Kind kind;
  int bytesPerPixel;
};

const PrepareCase kKernels[] = {
    {"Convert_RGB32_To_AYUY2", Convert_RGB32_To_AYUY2, model_Convert_RGB32_To_AYUY2,
     Kind::kConvert, 4},
    {"Convert_RGB24_To_AYUY2", Convert_RGB24_To_AYUY2, model_Convert_RGB24_To_AYUY2,
     Kind::kConvert, 3},
    {"Convert_RGB16_565_To_AYUY2", Convert_RGB16_565_To_AYUY2, model_Convert_RGB16_565_To_AYUY2,
     Kind::kConvert, 2},
    {"Restore_RGB32_To_Alpha", Restore_RGB32_To_Alpha, model_Restore_RGB32_To_Alpha,
     Kind::kRestore, 4},
    {"Restore_RGB24_To_Alpha", Restore_RGB24_To_Alpha, model_Restore_RGB24_To_Alpha,
     Kind::kRestore, 3},
    {"Restore_RGB16_565_To_Alpha", Restore_RGB16_565_To_Alpha, model_Restore_RGB16_565_To_Alpha,
     Kind::kRestore, 2},
    {"load_subpicture_alpha_rgb32", load_subpicture_alpha_rgb32, model_load_subpicture_alpha_rgb32,
     Kind::kLoadAlpha, 4},
    {"load_subpicture_alpha_rgb24", load_subpicture_alpha_rgb24, model_load_subpicture_alpha_rgb24,
     Kind::kLoadAlpha, 3},
    {"load_subpicture_alpha_rgb16_565", load_subpicture_alpha_rgb16_565,
     model_load_subpicture_alpha_rgb16_565, Kind::kLoadAlpha, 2},
};

// Widths of whole and partial groups (Convert: at least 8), heights from
// 0 (Convert: 1), loose, odd, tight and bottom-up pitches. Fields a kernel
// does not read get arbitrary values. Convert's subPitch stays at least the
// width: below it the chroma step halves a negative difference as unsigned,
// a jump far past the planes.
MixCall random_call(std::mt19937& rng, const PrepareCase& k) {
  auto pick = [&](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
  const bool convert = k.kind == Kind::kConvert;
  const int32_t minWidth = convert ? 8 : 0;
  MixCall c;
  switch (pick(0, 4)) {
    case 0: c.width = 8 * pick(1, 24); break;
    case 1: c.width = 16 * pick(1, 12); break;
    case 2: c.width = pick(minWidth, 200); break;
    case 3: c.width = pick(minWidth, 40); break;
    default: {
      const int32_t edges[] = {0, 1, 7, 9, 15, 17, 23, 31, 33};
      c.width = std::max(minWidth, edges[pick(0, 8)]);
    }
  }
  c.height = pick(0, 2) == 0 ? pick(convert ? 1 : 0, 2) : pick(3, 12);
  const int32_t row = c.width * k.bytesPerPixel;
  switch (pick(0, 5)) {
    case 0: c.dstPitch = -(row + pick(0, 40)); break;
    case 1: c.dstPitch = convert ? row - pick(0, row / 2) : row; break;
    default: c.dstPitch = row + pick(0, 41);
  }
  c.subPitch = convert ? c.width + pick(0, 41) : pick(-1000, 1000);
  switch (convert ? 3 : pick(0, 3)) {
    case 0: c.picturePitch = c.width - pick(0, c.width); break;
    case 1: c.picturePitch = -pick(0, 100); break;
    case 2: c.picturePitch = c.width + pick(0, 41); break;
    default: c.picturePitch = pick(-1000, 1000);
  }
  c.colorKey = uint32_t(rng());
  if (k.bytesPerPixel == 4 && pick(0, 1)) c.colorKey &= 0x00FFFFFF;
  if (k.bytesPerPixel == 3 && pick(0, 3)) c.colorKey &= 0x00FFFFFF;
  return c;
}

// Paints Convert's groups where the walk reads them: some entirely in the
// key, some in the key but for one pixel, the rest left random.
void paint_key_groups(Region& bitmap, const MixCall& c, int n, uint32_t seed) {
  std::mt19937 rng(seed);
  const int64_t groups = c.width / 8, groupBytes = 8 * n;
  const int64_t rowStep = groups * groupBytes + c.dstPitch - int64_t{c.width} * n;
  for (int64_t r = 0; r < c.height; ++r) {
    for (int64_t g = 0; g < groups; ++g) {
      uint8_t* at = bitmap.base() + r * rowStep + g * groupBytes;
      const uint32_t mode = rng() % 3;
      if (mode == 0) continue;
      for (int i = 0; i < 8 * n; ++i) at[i] = uint8_t(c.colorKey >> (8 * (i % n)));
      if (mode == 2) at[n * (rng() % 8)] ^= uint8_t(1 + rng() % 255);
    }
  }
}

class Preparation : public testing::TestWithParam<PrepareCase> {};

TEST_P(Preparation, MatchesModelOnRandomBitmapsAndGeometries) {
  const PrepareCase& k = GetParam();
  const tag_ajust_contrast_info adjust = identity_adjustment();
  std::mt19937 rng(47);
  for (int i = 0; i < 300; ++i) {
    const MixCall call = random_call(rng, k);
    const uint32_t seed = rng();
    auto prepare = [&](const std::vector<Region*>& planes) {
      if (k.kind == Kind::kConvert) paint_key_groups(*planes[kDst], call, k.bytesPerPixel, seed);
    };
    ASSERT_TRUE(check_mix(k.kernel, k.model, call, adjust, seed, prepare))
        << k.name << ", case " << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Kernels, Preparation, testing::ValuesIn(kKernels),
                         [](const auto& info) { return std::string(info.param.name); });

// A top-down bitmap with back-to-back rows and the subpicture planes it
// belongs to, every byte filled with a marker.
struct Overlay {
  int32_t width, height, n;
  std::vector<uint8_t> bitmap, alpha, y, u, v;
  Overlay(int32_t width_, int32_t height_, int n_)
      : width(width_), height(height_), n(n_),
        bitmap(size_t(width * height * n + 64), 0x5A),
        alpha(size_t(width * height + 64), 0xEE),
        y(alpha.size(), 0xEE), u(alpha.size(), 0xEE), v(alpha.size(), 0xEE) {}

  // A fresh record: alpha rows back to back, chroma rows width / 2 apart.
  tagMIX_INFO record(uint32_t colorKey = 0) {
    tagMIX_INFO r{};
    r.picturePitch = r.subPitch = r.width = width;
    r.dstPitch = width * n;
    r.height = height;
    r.subAlpha = alpha.data(), r.subY = y.data(), r.subU = u.data(), r.subV = v.data();
    r.dst = bitmap.data();
    r.colorKey = colorKey;
    return r;
  }
  // Pixel `i` of the bitmap's row `row`, its bytes as they lie in memory.
  void set(int row, int i, uint32_t pixel) {
    for (int k = 0; k < n; ++k)
      bitmap[size_t((row * width + i) * n + k)] = uint8_t(pixel >> (8 * k));
  }
};

struct Colour {
  uint32_t pixel;  // as it lies in memory: 0xXXRRGGBB, or 5-6-5
  uint8_t y, u, v;
};

void expect_rows_convert_to(MixKernel kernel, int n, const std::vector<Colour>& colours) {
  Overlay o(8, int32_t(colours.size()), n);
  for (int r = 0; r < o.height; ++r)
    for (int i = 0; i < 8; ++i) o.set(r, i, colours[r].pixel);
  tagMIX_INFO rec = o.record(n == 2 ? 0x1234 : 0x00123456);
  kernel(&rec);
  for (int r = 0; r < o.height; ++r) {
    const Colour& c = colours[r];
    for (int i = 0; i < 8; ++i) EXPECT_EQ(o.y[8 * r + i], c.y) << std::hex << c.pixel;
    for (int i = 0; i < 4; ++i) {
      EXPECT_EQ(o.u[4 * r + i], c.u) << std::hex << c.pixel;
      EXPECT_EQ(o.v[4 * r + i], c.v) << std::hex << c.pixel;
    }
  }
}

const std::vector<Colour> kColours = {
    {0x00000000, 16, 128, 128}, {0x00FFFFFF, 234, 128, 128}, {0x00808080, 125, 128, 128},
    {0x00FF0000, 81, 90, 239},  {0x0000FF00, 144, 54, 34},   {0x000000FF, 40, 239, 110}};

TEST(PreparationValues, ConvertsBlackWhiteGreyAndPrimaries) {
  expect_rows_convert_to(Convert_RGB32_To_AYUY2, 4, kColours);
  expect_rows_convert_to(Convert_RGB24_To_AYUY2, 3, kColours);
}

// The fourth byte is OR-ed with the bias and weighted like the constant:
// 0xFF saturates luma for every colour, U and V only for some.
TEST(PreparationValues, Rgb32FourthByteEntersTheSums) {
  expect_rows_convert_to(Convert_RGB32_To_AYUY2, 4,
                         {{0x01000000, 17, 129, 129},
                          {0xFF000000, 255, 255, 255},
                          {0xFFFFFFFF, 255, 255, 255},
                          {0xFFFF0000, 255, 217, 255},
                          {0xFF0000FF, 255, 255, 237}});
}

// Expanded without replicating the top bits: white is 248, 252, 248.
TEST(PreparationValues, Rgb16ExpandsWithZeroLowBits) {
  expect_rows_convert_to(Convert_RGB16_565_To_AYUY2, 2,
                         {{0xFFFF, 230, 127, 126}, {0xF800, 79, 91, 236}, {0x0000, 16, 128, 128}});
}

// Key white, one black pixel in the second group: the first group keeps its
// 16 bytes, the second converts all 8 pixels, key-coloured ones included.
TEST(PreparationValues, KeyGroupKeepsItsBytesAndOneOtherPixelConvertsItsGroup) {
  const struct {
    MixKernel kernel;
    int n;
    uint32_t key;
    Colour white;
  } layouts[] = {{Convert_RGB32_To_AYUY2, 4, 0x00FFFFFF, {0, 234, 128, 128}},
                 {Convert_RGB24_To_AYUY2, 3, 0x00FFFFFF, {0, 234, 128, 128}},
                 {Convert_RGB16_565_To_AYUY2, 2, 0xABCDFFFF, {0, 230, 127, 126}}};
  for (const auto& l : layouts) {
    Overlay o(16, 1, l.n);
    for (int i = 0; i < 16; ++i) o.set(0, i, i == 12 ? 0 : l.key);
    tagMIX_INFO rec = o.record(l.key);
    l.kernel(&rec);
    for (int i = 0; i < 8; ++i) EXPECT_EQ(o.y[i], 0xEE) << l.n;
    for (int i = 0; i < 4; ++i) {
      EXPECT_EQ(o.u[i], 0xEE) << l.n;
      EXPECT_EQ(o.v[i], 0xEE) << l.n;
    }
    for (int i = 8; i < 16; ++i) EXPECT_EQ(o.y[i], i == 12 ? 16 : l.white.y) << l.n << ", " << i;
    for (int i = 4; i < 8; ++i) {
      EXPECT_EQ(o.u[i], i == 6 ? 128 : l.white.u) << l.n << ", " << i;
      EXPECT_EQ(o.v[i], i == 6 ? 128 : l.white.v) << l.n << ", " << i;
    }
  }
}

TEST(PreparationValues, Rgb24KeyWithATopByteNeverMatches) {
  for (uint32_t key : {0x00000000u, 0xFF000000u}) {
    Overlay o(16, 2, 3);
    std::fill(o.bitmap.begin(), o.bitmap.end(), 0);
    tagMIX_INFO rec = o.record(key);
    Convert_RGB24_To_AYUY2(&rec);
    for (int i = 0; i < 32; ++i) EXPECT_EQ(o.y[i], key ? 16 : 0xEE) << std::hex << key;
  }
}

// load_subpicture_alpha_* then Restore_*: RGB32 gives every byte back,
// RGB16 its low five bits, RGB24 the plane moved left by one pixel (each
// row's last byte from the next row's first pixel, or the byte after the
// bitmap).
TEST(PreparationValues, AlphaRoundTripsThroughEachBitmap) {
  const struct {
    MixKernel load, restore;
    int n;
  } layouts[] = {{load_subpicture_alpha_rgb32, Restore_RGB32_To_Alpha, 4},
                 {load_subpicture_alpha_rgb24, Restore_RGB24_To_Alpha, 3},
                 {load_subpicture_alpha_rgb16_565, Restore_RGB16_565_To_Alpha, 2}};
  std::mt19937 rng(3);
  for (const auto& l : layouts) {
    Overlay o(32, 3, l.n);
    for (auto& a : o.alpha) a = uint8_t(rng());
    o.alpha[5] = 16, o.alpha[6] = 200;
    const std::vector<uint8_t> sent = o.alpha;
    tagMIX_INFO rec = o.record();
    l.load(&rec);
    std::fill(o.alpha.begin(), o.alpha.end(), 0xEE);
    rec = o.record();
    l.restore(&rec);
    for (int r = 0; r < 3; ++r) {
      for (int i = 0; i < 32; ++i) {
        const int at = 32 * r + i;
        const uint8_t shifted = r < 2 || i < 31 ? sent[at + 1] : 0x5A;
        const uint8_t want = l.n == 4 ? sent[at] : l.n == 2 ? sent[at] & 31 : shifted;
        ASSERT_EQ(o.alpha[at], want) << l.n << ": row " << r << ", pixel " << i;
      }
    }
    if (l.n == 2) {
      EXPECT_EQ(o.alpha[5], 16);
      EXPECT_EQ(o.alpha[6], 8);
    }
    EXPECT_EQ(o.alpha[96], 0xEE) << l.n;
  }
}

}  // namespace
}  // namespace yuvblit_test
