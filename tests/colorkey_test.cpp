// Colour-key fills of RGB rectangles and mask replacement: every kernel
// against its model on random geometries, then the documented values.
#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <vector>

#include "harness/check.h"
#include "model/colorkey_model.h"
#include "yuvblit.h"

namespace yuvblit_test {
namespace {

using FillKernel = void (*)(uint32_t, void*, int32_t, int32_t, int32_t, int32_t);

struct FillCase {
  const char* name;
  FillKernel kernel;
  KeyFill fill;
};

const FillCase kFills[] = {{"LoadColorKeyRgb32", LoadColorKeyRgb32, KeyFill::kRgb32},
                           {"LoadColorKeyRgb24", LoadColorKeyRgb24, KeyFill::kRgb24},
                           {"LoadColorKeyRgb16", LoadColorKeyRgb16, KeyFill::kRgb16}};

struct Geometry {
  int32_t width, height, pitch;
};

std::string describe(const Geometry& g, uint32_t key) {
  std::ostringstream s;
  s << "width " << g.width << ", height " << g.height << ", pitch " << g.pitch << ", key 0x"
    << std::hex << key;
  return s.str();
}

int pick(std::mt19937& rng, int lo, int hi) {
  return std::uniform_int_distribution<int>(lo, hi)(rng);
}

// Widths of whole steps and not (0 and the documented 1 and 20 included),
// heights around the row pair, pitches looser (often odd), tighter than a
// row (rows share bytes), zero and bottom-up.
Geometry random_geometry(std::mt19937& rng, int32_t bytesPerPixel) {
  Geometry g{};
  const int32_t edges[] = {0, 1, 15, 16, 17, 20, 31, 32, 33};
  switch (pick(rng, 0, 3)) {
    case 0: g.width = edges[pick(rng, 0, 8)]; break;
    case 1: g.width = 16 * pick(rng, 1, 10); break;
    default: g.width = pick(rng, 0, 170);
  }
  g.height = pick(rng, 0, 2) == 0 ? pick(rng, 0, 3) : pick(rng, 4, 11);
  const int32_t row = bytesPerPixel * (g.width + 16);
  switch (pick(rng, 0, 6)) {
    case 0: g.pitch = pick(rng, 0, row); break;
    case 1: g.pitch = -(row + pick(rng, 0, 40)); break;
    default: g.pitch = row + pick(rng, 0, 41);
  }
  return g;
}

uint32_t random_key(std::mt19937& rng) {
  const uint32_t key = static_cast<uint32_t>(rng());
  return pick(rng, 0, 1) ? key & 0x00FFFFFF : key;  // top byte 0 as hosts pass it, or not
}

testing::AssertionResult check_fill(const FillCase& k, const Geometry& g, uint32_t key,
                                    uint32_t seed) {
  CallCheck check;
  check.description = describe(g, key);
  check.regions = {"dst"};
  check.model = [&](const std::vector<Ptr>& p) {
    model_load_color_key(p[0], key, g.width, g.height, g.pitch, k.fill);
  };
  check.run = [&](const std::vector<uint8_t*>& b) {
    k.kernel(key, b[0], g.width, g.height, 0x5EED, g.pitch);
    return testing::AssertionSuccess();
  };
  return check_call(check, seed);
}

class ColorKeyFill : public testing::TestWithParam<FillCase> {};

TEST_P(ColorKeyFill, MatchesModelOnRandomGeometries) {
  const FillCase& k = GetParam();
  std::mt19937 rng(7001);
  for (int i = 0; i < 300; ++i) {
    const Geometry g = random_geometry(rng, static_cast<int32_t>(k.fill));
    const uint32_t key = random_key(rng);
    ASSERT_TRUE(check_fill(k, g, key, rng())) << k.name << ", case " << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Kernels, ColorKeyFill, testing::ValuesIn(kFills),
                         [](const auto& info) { return std::string(info.param.name); });

// Mask bytes mostly the mask value or a neighbour of it, so matches and
// near misses are common; maskValue's upper bits must be ignored.
TEST(MaskReplacement, MatchesModelOnRandomGeometries) {
  std::mt19937 rng(7002);
  for (int i = 0; i < 300; ++i) {
    const Geometry g = random_geometry(rng, 1);
    const uint32_t maskValue = static_cast<uint32_t>(rng()), key = static_cast<uint32_t>(rng());
    const uint8_t m = static_cast<uint8_t>(maskValue);
    CallCheck check;
    check.description = describe(g, key);
    check.regions = {"dst", "mask"};
    check.model = [&](const std::vector<Ptr>& p) {
      model_replace_mask(p[0], p[1], maskValue, key, g.width, g.pitch, g.height);
    };
    const uint32_t seed = static_cast<uint32_t>(rng());
    check.prepare = [&](const std::vector<Region*>& r) {
      std::mt19937 fill(seed);
      r[1]->fill([&](int64_t) {
        const uint32_t x = fill() % 8;
        return static_cast<uint8_t>(x < 4 ? m : x < 6 ? m ^ 1 : fill());
      });
    };
    check.run = [&](const std::vector<uint8_t*>& b) {
      RelaceMaskWithColorKey(b[0], b[1], maskValue, key, g.width, g.pitch, g.height);
      return testing::AssertionSuccess();
    };
    ASSERT_TRUE(check_call(check, seed)) << "case " << i;
  }
}

// The key as each fill lays it out: RGB32 all four bytes, RGB16 the low
// half, RGB24 its three words in the defined order (a three-colour key
// scrambled, a grey one whole).
TEST(ColorKeyValues, EachFillLaysOutTheKeyAsDefined) {
  const struct {
    FillKernel kernel;
    uint32_t key;
    std::vector<uint8_t> period;
  } cases[] = {
      {LoadColorKeyRgb32, 0xFF00FF00u, {0x00, 0xFF, 0x00, 0xFF}},
      {LoadColorKeyRgb16, 0x12345678u, {0x78, 0x56}},
      {LoadColorKeyRgb24, 0x00112233u, {0x22, 0x11, 0x33, 0x22, 0x11, 0x33, 0x22, 0x11,
                                         0x11, 0x33, 0x22, 0x11, 0x33, 0x22, 0x11, 0x33,
                                         0x33, 0x22, 0x11, 0x33, 0x22, 0x11, 0x33, 0x22}},
      {LoadColorKeyRgb24, 0x00101010u, {0x10}},
  };
  for (const auto& c : cases) {
    std::vector<uint8_t> surface(256, 0xEE);
    c.kernel(c.key, surface.data(), 16, 2, 0, 128);
    const size_t rowBytes = c.kernel == LoadColorKeyRgb32 ? 64 : c.kernel == LoadColorKeyRgb16 ? 32 : 48;
    for (size_t row = 0; row < 2; ++row) {
      for (size_t i = 0; i < 128; ++i) {
        const uint8_t want = i < rowBytes ? c.period[i % c.period.size()] : 0xEE;
        ASSERT_EQ(surface[128 * row + i], want) << std::hex << c.key << ", row " << row << ", " << i;
      }
    }
  }
}

// Width 20: two steps (128 bytes) per row, and the second row pair starts
// 12 pixels right of the first, since the pair's end step takes back only
// the width. Rows 64 bytes apart: pair 0 covers bytes 0..191, pair 1
// starts at 2 * 64 + 48 and ends at 176 + 64 + 127.
TEST(ColorKeyValues, Width20DriftsTwelvePixelsPerRowPair) {
  std::vector<uint8_t> surface(512, 0xEE);
  LoadColorKeyRgb32(0x01020304u, surface.data(), 20, 4, 0, 64);
  for (size_t i = 0; i < surface.size(); ++i) ASSERT_EQ(surface[i] != 0xEE, i <= 367) << i;
}

// Only the low bytes of maskValue and key count; the mask may be the
// surface itself.
TEST(ColorKeyValues, MaskComparesLowBytesAndMayBeTheSurface) {
  std::vector<uint8_t> dst = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
  std::vector<uint8_t> mask(16, 7);
  mask[3] = 0, mask[9] = 0;
  RelaceMaskWithColorKey(dst.data(), mask.data(), 0x100, 0x3FF, 16, 16, 1);
  for (int i = 0; i < 16; ++i) EXPECT_EQ(dst[i], i == 3 || i == 9 ? 0xFF : i + 1) << i;

  std::vector<uint8_t> same = {5, 9, 5, 5, 0, 9, 9, 5, 5, 5, 5, 5, 5, 9, 5, 5};
  const std::vector<uint8_t> before = same;
  RelaceMaskWithColorKey(same.data(), same.data(), 9, 1, 16, 16, 1);
  for (int i = 0; i < 16; ++i) EXPECT_EQ(same[i], before[i] == 9 ? 1 : before[i]) << i;
}

}  // namespace
}  // namespace yuvblit_test
