// Packed YUY2 pictures onto YUY2 and RGB surfaces.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "harness/a9.h"
#include "model/packed_yuy2_model.h"
#include "test_util.h"

namespace yuvblit_test {
namespace {

const A9KernelCase kKernels[] = {
    {"LoadYUY2_YUY2", LoadYUY2_YUY2, model_LoadYUY2_YUY2, 2},
    {"LoadYUY2_YUY2_adjust", LoadYUY2_YUY2_adjust, model_LoadYUY2_YUY2_adjust, 2},
    {"LoadYUY2_RGB16", LoadYUY2_RGB16, model_LoadYUY2_RGB16, 2},
    {"LoadYUY2_RGB16_adjust", LoadYUY2_RGB16_adjust, model_LoadYUY2_RGB16_adjust, 2},
    {"LoadYUY2_RGB24", LoadYUY2_RGB24, model_LoadYUY2_RGB24, 3},
    {"LoadYUY2_RGB24_adjust", LoadYUY2_RGB24_adjust, model_LoadYUY2_RGB24_adjust, 3},
    {"LoadYUY2_RGB32", LoadYUY2_RGB32, model_LoadYUY2_RGB32, 4},
    {"LoadYUY2_RGB32_adjust", LoadYUY2_RGB32_adjust, model_LoadYUY2_RGB32_adjust, 4},
};

// Widths around the 8- and 16-pixel groups; source pitch in pixels. Pitches
// looser (often odd), tighter than a row (rows share bytes) or negative.
A9Call random_packed_call(std::mt19937& rng, int32_t dstBytesPerPixel) {
  auto pick = [&](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
  A9Call c{};
  switch (pick(0, 4)) {
    case 0: c.width = pick(0, 40); break;
    case 1: c.width = 8 * pick(1, 24); break;
    case 2: c.width = 16 * pick(1, 12); break;
    case 3: c.width = pick(1, 200); break;
    default: c.width = std::vector<int32_t>{0, 1, 12, 24, 15, 17}[pick(0, 5)];
  }
  c.height = pick(0, 3) == 0 ? pick(0, 4) : pick(5, 20);
  auto pitch = [&](int32_t row) {
    switch (pick(0, 5)) {
      case 0: return row - pick(0, row / 2);
      case 1: return -(row + pick(0, 40));
      default: return row + pick(0, 41);
    }
  };
  const int32_t rowPixels = 16 * ((c.width + 15) / 16 + 1);
  c.srcPitch = pitch(rowPixels);
  c.dstPitch = pitch(rowPixels * dstBytesPerPixel);
  return c;
}

class PackedYuy2 : public testing::TestWithParam<A9KernelCase> {};

TEST_P(PackedYuy2, MatchesModelOnRandomPicturesAndGeometries) {
  const A9KernelCase& k = GetParam();
  std::mt19937 rng(31);
  for (int i = 0; i < 400; ++i) {
    const A9Call call = random_packed_call(rng, k.dstBytesPerPixel);
    tag_ajust_contrast_info adjust = random_adjustment(rng);
    if (i % 20 == 0) adjust.rgb16Layout = i % 40 ? 4 : 0xFFFFFFFFu;  // RGB16: nothing
    get_contrast_data(&adjust);
    ASSERT_TRUE(check_a9(k.kernel, k.model, call, adjust, rng())) << k.name << ", case " << i;
  }
}

TEST_P(PackedYuy2, MatchesModelOnEdgeWidthsAndHeights) {
  const A9KernelCase& k = GetParam();
  tag_ajust_contrast_info adjust = identity_adjustment();
  adjust.lumaGain = 80;
  adjust.uOffset = 7;
  adjust.vOffset = -9;
  adjust.rgb16Layout = 1;
  get_contrast_data(&adjust);
  std::mt19937 rng(5);
  for (int32_t width : {0, 1, 7, 8, 9, 12, 15, 16, 17, 24, 31, 32, 33, 40, 48, 64, 100}) {
    for (int32_t height : {0, 1, 2, 3, 4, 5, 7}) {
      const A9Call call{width, height, 120, 120 * k.dstBytesPerPixel + 3};
      ASSERT_TRUE(check_a9(k.kernel, k.model, call, adjust, rng())) << k.name;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Kernels, PackedYuy2, testing::ValuesIn(kKernels),
                         [](const auto& info) { return std::string(info.param.name); });

// A packed picture of `rows` rows, `pitch` pixels apart, with room after it
// for the groups that reach past a row.
struct Picture {
  int32_t pitch;
  std::vector<uint8_t> bytes;
  Picture(int32_t pitch_, int rows) : pitch(pitch_), bytes(2 * pitch_ * rows + 128, 128) {}
  uint8_t* at(int row, int pixel = 0) { return &bytes[2 * (pitch * row + pixel)]; }
  void set(int row, int pixel, uint8_t y, uint8_t c) { at(row, pixel)[0] = y, at(row, pixel)[1] = c; }
};

std::vector<uint8_t> run(A9Kernel kernel, Picture& p, int32_t width, int32_t height,
                         int32_t dstPitch, uint8_t fill,
                         tag_ajust_contrast_info adjust = identity_adjustment()) {
  std::vector<uint8_t> surface(size_t(dstPitch) * 24 + 512, fill);
  kernel(p.at(0), nullptr, nullptr, surface.data(), width, height, p.pitch, dstPitch, &adjust);
  return surface;
}

// Bytes a kernel writes: those that differ from the fill in one of two runs.
std::vector<bool> written(A9Kernel kernel, Picture& p, int32_t width, int32_t height,
                          int32_t dstPitch) {
  const auto a = run(kernel, p, width, height, dstPitch, 0x00);
  const auto b = run(kernel, p, width, height, dstPitch, 0xFF);
  std::vector<bool> w(a.size());
  for (size_t i = 0; i < a.size(); ++i) w[i] = a[i] != 0x00 || b[i] != 0xFF;
  return w;
}

size_t written_in_row(const std::vector<bool>& w, int row, int32_t pitch) {
  return size_t(std::count(w.begin() + row * pitch, w.begin() + (row + 1) * pitch, true));
}

// Byte i of YUY2 output row r: the row's own luma, the chroma of the first
// row of its pair.
uint8_t yuy2_expected(Picture& p, int r, int i) { return (i & 1) ? p.at(r & ~1)[i] : p.at(r)[i]; }

TEST(LoadYUY2Values, FirstRowCopiedSecondRowKeepsItsLumaWithFirstRowsChroma) {
  tag_ajust_contrast_info identity = identity_adjustment();
  get_contrast_data(&identity);
  Picture p(16, 2);
  for (int x = 0; x < 16; ++x) p.set(0, x, uint8_t(10 + x), uint8_t(100 + x)), p.set(1, x, uint8_t(50 + x), uint8_t(200 + x));
  for (A9Kernel k : {LoadYUY2_YUY2, LoadYUY2_YUY2_adjust}) {
    const auto s = run(k, p, 16, 2, 64, 0xEE);
    for (int i = 0; i < 32; ++i) {
      ASSERT_EQ(s[i], p.at(0)[i]) << "byte " << i;
      ASSERT_EQ(s[64 + i], yuy2_expected(p, 1, i)) << "byte " << i;
    }
  }
}

// Width 12: two 16-byte groups (32 bytes) per row, then both pointers move
// back by 8; the source is tight (rows 24 bytes apart) and the next pair
// still starts exactly two rows down.
TEST(LoadYUY2Values, Width12WritesTwoGroupsPerRowWithoutDrift) {
  Picture p(12, 5);
  for (int r = 0; r < 5; ++r)
    for (int x = 0; x < 12; ++x) p.set(r, x, uint8_t(20 * r + x), uint8_t(128 + 10 * r + x));
  const auto w = written(LoadYUY2_YUY2, p, 12, 4, 64);
  const auto s = run(LoadYUY2_YUY2, p, 12, 4, 64, 0xEE);
  for (int r = 0; r < 4; ++r) {
    EXPECT_EQ(written_in_row(w, r, 64), 32u) << "row " << r;
    for (int i = 0; i < 24; ++i)
      ASSERT_EQ(s[64 * r + i], yuy2_expected(p, r, i)) << "row " << r << ", byte " << i;
  }
  EXPECT_EQ(written_in_row(w, 4, 64), 0u);
}

// Width 24 onto RGB24: two groups (96 bytes) per row, the source taken back
// by 16 bytes and the destination by 24, so row r holds source row r.
TEST(LoadYUY2Values, Rgb24Width24TakesBackHalfAGroup) {
  Picture p(32, 4);
  for (int r = 0; r < 4; ++r)
    for (int x = 0; x < 32; ++x) p.set(r, x, uint8_t(16 + 40 * r), 128);
  const auto w = written(LoadYUY2_RGB24, p, 24, 4, 128);
  const auto s = run(LoadYUY2_RGB24, p, 24, 4, 128, 0xEE);
  const uint8_t grey[] = {0, 46, 93, 139};  // Y 16, 56, 96, 136
  for (int r = 0; r < 4; ++r) {
    EXPECT_EQ(written_in_row(w, r, 128), 96u) << "row " << r;
    for (int i = 0; i < 96; ++i) ASSERT_EQ(s[128 * r + i], grey[r]) << "row " << r << ", byte " << i;
  }
}

TEST(LoadYUY2Values, TightSourceOf320PixelsReadsRows640BytesApart) {
  Picture p(320, 4);
  for (int r = 0; r < 4; ++r)
    for (int x = 0; x < 320; ++x) p.set(r, x, uint8_t(30 + 40 * r + (x & 7)), uint8_t(120 + r + x));
  const auto s = run(LoadYUY2_YUY2, p, 320, 4, 640, 0xEE);
  for (int r = 0; r < 4; ++r)
    for (int i = 0; i < 640; ++i) ASSERT_EQ(s[640 * r + i], yuy2_expected(p, r, i)) << "row " << r;
}

TEST(LoadYUY2Values, Rgb16Layout2Writes664) {
  Picture p(16, 2);
  const uint8_t yuv[3][3] = {{145, 54, 34}, {41, 240, 110}, {81, 90, 240}};  // green, blue, red
  for (int i = 0; i < 3; ++i)
    for (int r = 0; r < 2; ++r)
      p.set(r, 2 * i, yuv[i][0], yuv[i][1]), p.set(r, 2 * i + 1, yuv[i][0], yuv[i][2]);
  tag_ajust_contrast_info layout = identity_adjustment();
  get_contrast_data(&layout);
  for (A9Kernel k : {LoadYUY2_RGB16, LoadYUY2_RGB16_adjust}) {
    layout.rgb16Layout = 2;
    const auto s = run(k, p, 16, 2, 64, 0xEE, layout);
    const uint16_t expected[3] = {0x03F0, 0x000F, 0xFC00};
    for (int row = 0; row < 2; ++row)
      for (int x = 0; x < 6; ++x)
        EXPECT_EQ(s[64 * row + 2 * x] | s[64 * row + 2 * x + 1] << 8, expected[x / 2]) << x;
    layout.rgb16Layout = 4;
    const auto untouched = run(k, p, 16, 2, 64, 0xEE, layout);
    EXPECT_EQ(std::count(untouched.begin(), untouched.end(), 0xEE), long(untouched.size()));
  }
}

// LoadYUY2_RGB32_adjust with widths that are multiples of 16: the first
// group of each pair only, each pair 2 * width - 32 source and
// 4 * width - 64 destination bytes further short.
TEST(LoadYUY2Rgb32Adjust, WholeGroupWidthsConvertOnlyTheFirstGroupOfEachPair) {
  tag_ajust_contrast_info identity = identity_adjustment();
  get_contrast_data(&identity);
  std::mt19937 rng(9);
  Picture p(48, 8);
  for (auto& b : p.bytes) b = uint8_t(rng());
  EXPECT_EQ(run(LoadYUY2_RGB32, p, 16, 6, 256, 0xEE), run(LoadYUY2_RGB32_adjust, p, 16, 6, 256, 0xEE));

  const int32_t dstPitch = 256;
  const auto s = run(LoadYUY2_RGB32_adjust, p, 32, 6, dstPitch, 0xEE);
  std::vector<uint8_t> expected(s.size(), 0xEE);
  for (int pair = 0; pair < 3; ++pair) {
    // Where pair k starts: k pair steps of a 32-pixel row after one group.
    uint8_t* src = p.at(2 * pair) - 32 * pair;
    const size_t dst = size_t(2 * dstPitch * pair - 64 * pair);
    LoadYUY2_RGB32(src, nullptr, nullptr, &expected[dst], 16, 2, p.pitch, dstPitch, &identity);
  }
  EXPECT_EQ(s, expected);
}

// Other widths: the first pair's groups, each starting `corr` source bytes
// before the end of the previous one, as many as LoadYUY2_RGB32 converts per
// row. Width 40 (corr 16): pixels 0..31 of rows 0 and 1, as LoadYUY2_RGB32
// writes them; nothing that LoadYUY2_RGB32 leaves alone.
TEST(LoadYUY2Rgb32Adjust, OtherWidthsStayInsideWhatLoadYuy2Rgb32Writes) {
  tag_ajust_contrast_info identity = identity_adjustment();
  get_contrast_data(&identity);
  std::mt19937 rng(12);
  Picture p(64, 24);
  for (auto& b : p.bytes) b = uint8_t(rng());
  const auto w40 = written(LoadYUY2_RGB32_adjust, p, 40, 10, 256);
  for (int r = 0; r < 24; ++r) EXPECT_EQ(written_in_row(w40, r, 256), r < 2 ? 128u : 0u) << r;

  for (int i = 0; i < 200; ++i) {
    int32_t width = std::uniform_int_distribution<int>(1, 60)(rng);
    if (width % 16 == 0) ++width;
    const int32_t height = std::uniform_int_distribution<int>(0, 20)(rng);
    const int32_t dstPitch = std::uniform_int_distribution<int>(4 * width / 2, 4 * 64 + 9)(rng);
    const auto wa = written(LoadYUY2_RGB32_adjust, p, width, height, dstPitch);
    const auto wp = written(LoadYUY2_RGB32, p, width, height, dstPitch);
    const auto sa = run(LoadYUY2_RGB32_adjust, p, width, height, dstPitch, 0xEE);
    const auto sp = run(LoadYUY2_RGB32, p, width, height, dstPitch, 0xEE);
    const size_t rowBytes = 64 * size_t((2 * width + 31) / 32), pitch = size_t(dstPitch);
    for (size_t b = 0; b < wa.size(); ++b) {
      if (!wa[b]) continue;
      ASSERT_TRUE(wp[b]) << "width " << width << ", byte " << b;
      ASSERT_LT(b, pitch + rowBytes) << "width " << width;  // first row pair only
      // Even widths keep later groups on whole pixel pairs, so they convert
      // what LoadYUY2_RGB32 converts there (odd ones read chroma a byte pair off).
      if (pitch >= rowBytes && width % 2 == 0) ASSERT_EQ(sa[b], sp[b]) << "width " << width;
    }
  }
}

}  // namespace
}  // namespace yuvblit_test
