// Doubling single planes (1X2, 2X2) and YV12 pictures plane by plane.
#include <gtest/gtest.h>

#include <functional>
#include <numeric>
#include <random>

#include "harness/a9.h"
#include "harness/check.h"
#include "model/plane_doubling_model.h"
#include "test_util.h"

namespace yuvblit_test {
namespace {

int pick(std::mt19937& rng, int lo, int hi) {
  return std::uniform_int_distribution<int>(lo, hi)(rng);
}

// A plane kernel as the tests take it: the entry point behind one signature
// (strech_pic_2X2 ignores the record and the plane) and its model.
struct PlaneKernelCase {
  const char* name;
  std::function<void(uint8_t*, uint8_t*, const PlaneCall&, tag_ajust_contrast_info*)> kernel;
  std::function<void(Ptr, Ptr, const PlaneCall&, const tag_ajust_contrast_info&)> model;
  int32_t widthFactor;  // destination bytes per source byte
};

void PrintTo(const PlaneKernelCase& k, std::ostream* os) { *os << k.name; }

const PlaneKernelCase kPlaneKernels[] = {
    {"strech_pic_1X2_adjust",
     [](uint8_t* s, uint8_t* d, const PlaneCall& c, tag_ajust_contrast_info* a) {
       strech_pic_1X2_adjust(s, d, c.width, c.height, c.srcPitch, c.dstPitch, a, c.plane);
     },
     model_strech_pic_1X2_adjust, 1},
    {"strech_pic_2X2",
     [](uint8_t* s, uint8_t* d, const PlaneCall& c, tag_ajust_contrast_info*) {
       strech_pic_2X2(s, d, c.width, c.height, c.srcPitch, c.dstPitch);
     },
     [](Ptr s, Ptr d, const PlaneCall& c, const tag_ajust_contrast_info&) {
       model_strech_pic_2X2(s, d, c);
     },
     2},
    {"strech_pic_2X2_adjust",
     [](uint8_t* s, uint8_t* d, const PlaneCall& c, tag_ajust_contrast_info* a) {
       strech_pic_2X2_adjust(s, d, c.width, c.height, c.srcPitch, c.dstPitch, a, c.plane);
     },
     model_strech_pic_2X2_adjust, 2},
};

testing::AssertionResult check_plane(const PlaneKernelCase& k, const PlaneCall& call,
                                     const tag_ajust_contrast_info& adjust, uint32_t seed) {
  CallCheck check;
  check.description = describe(call);
  check.regions = {"src", "dst"};
  check.model = [&](const std::vector<Ptr>& p) { k.model(p[0], p[1], call, adjust); };
  check.run = [&](const std::vector<uint8_t*>& b) {
    tag_ajust_contrast_info record = adjust;
    k.kernel(b[0], b[1], call, &record);
    return testing::AssertionSuccess();
  };
  return check_call(check, seed);
}

// Widths around the group sizes (8, 16) and wider; heights from the
// smallest up; pitches looser than a row, odd, tighter (lines that share
// bytes) and bottom-up.
PlaneCall random_plane_call(std::mt19937& rng, int32_t widthFactor) {
  PlaneCall c{};
  c.width = pick(rng, 0, 2) == 0 ? 8 * pick(rng, 0, 12) : pick(rng, 0, 100);
  c.height = pick(rng, 0, 4) == 0 ? pick(rng, 0, 3) : pick(rng, 4, 13);
  auto pitch = [&](int32_t row) {
    switch (pick(rng, 0, 5)) {
      case 0: return pick(rng, 0, row);
      case 1: return -(row + pick(rng, 0, 40));
      default: return row + pick(rng, 0, 41);
    }
  };
  c.srcPitch = pitch(c.width + 16);
  c.dstPitch = pitch(widthFactor * (c.width + 16));
  c.plane = pick(rng, 0, 7) == 0 ? pick(rng, -2, 6) : pick(rng, 1, 3);
  return c;
}

class PlaneDoubling : public testing::TestWithParam<PlaneKernelCase> {};

TEST_P(PlaneDoubling, MatchesModelOnRandomPlanesAndGeometries) {
  const PlaneKernelCase& k = GetParam();
  std::mt19937 rng(20261201);
  for (int i = 0; i < 250; ++i) {
    const PlaneCall call = random_plane_call(rng, k.widthFactor);
    tag_ajust_contrast_info adjust = random_adjustment(rng);
    get_contrast_data(&adjust);
    ASSERT_TRUE(check_plane(k, call, adjust, rng())) << k.name << ", case " << i;
  }
}

// Heights of 0 and below and negative widths, whose counters would wrap,
// stop where height 1 and width 0 do; the model says exactly what is written.
TEST_P(PlaneDoubling, WrappingSizesStopAtTheSmallestFootprint) {
  const PlaneKernelCase& k = GetParam();
  tag_ajust_contrast_info adjust = identity_adjustment();
  get_contrast_data(&adjust);
  for (const PlaneCall& call : {PlaneCall{24, 0, 40, 80, 1}, PlaneCall{24, -7, 40, 80, 2},
                                PlaneCall{-9, 5, 40, 80, 3}, PlaneCall{-1, -1, 40, 80, 1}}) {
    ASSERT_TRUE(check_plane(k, call, adjust, 7)) << k.name;
  }
}

INSTANTIATE_TEST_SUITE_P(Kernels, PlaneDoubling, testing::ValuesIn(kPlaneKernels),
                         [](const auto& info) { return std::string(info.param.name); });

const A9KernelCase kYv12Kernels[] = {
    {"strech_picture_1X2_yv12_ajust", strech_picture_1X2_yv12_ajust,
     model_strech_picture_1X2_yv12_ajust},
    {"strech_picture_2X2_yv12_ajust", strech_picture_2X2_yv12_ajust,
     model_strech_picture_2X2_yv12_ajust, 2},
};

class Yv12Doubling : public testing::TestWithParam<A9KernelCase> {};

TEST_P(Yv12Doubling, MatchesModelOnRandomFramesAndGeometries) {
  const A9KernelCase& k = GetParam();
  std::mt19937 rng(20261202);
  for (int i = 0; i < 120; ++i) {
    const A9Call call = random_call(rng, 1, k.dstBytesPerPixel);
    tag_ajust_contrast_info adjust = random_adjustment(rng);
    get_contrast_data(&adjust);
    ASSERT_TRUE(check_a9(k.kernel, k.model, call, adjust, rng())) << k.name << ", case " << i;
  }
}

INSTANTIATE_TEST_SUITE_P(Kernels, Yv12Doubling, testing::ValuesIn(kYv12Kernels),
                         [](const auto& info) { return std::string(info.param.name); });

constexpr uint8_t kUntouched = 0xEE;

// Identity gains with offsets that tell the planes apart.
tag_ajust_contrast_info marked_adjustment() {
  tag_ajust_contrast_info a = identity_adjustment();
  a.chromaGain = 128;  // never used by these kernels
  a.lumaOffset = 1;
  a.uOffset = 2;
  a.vOffset = 3;
  return a;
}

TEST(StrechPic1X2Adjust, RepeatsRowZeroAndEndsWithRowHeightMinusTwoTwice) {
  tag_ajust_contrast_info adjust = identity_adjustment();
  get_contrast_data(&adjust);
  const int32_t width = 16, height = 4;
  Plane src(width * height, 0);
  for (int r = 0; r < height; ++r)
    for (int x = 0; x < width; ++x) src[r * width + x] = uint8_t(10 + r + 20 * (x % 2));
  Plane dst(width * 2 * height + 16, kUntouched);
  strech_pic_1X2_adjust(src.data(), dst.data(), width, height, width, width, &adjust, 1);
  const int expected[] = {10, 10, 11, 11, 12, 12, 12, 12};  // averages round half up
  for (int line = 0; line < 2 * height; ++line)
    EXPECT_EQ(dst[line * width], expected[line]) << "line " << line;
  EXPECT_EQ(dst[2 * width + 1], 31);  // avg(30, 31)
  EXPECT_EQ(dst[2 * height * width], kUntouched);
}

TEST(StrechPic2X2, LeavesALineOfEveryOrdinaryStripForTheOneBelow) {
  const int32_t width = 16, height = 4, dstPitch = 32;
  Plane src(width * height, 0);
  std::iota(src.bytes.begin(), src.bytes.end(), 0);
  Plane dst(dstPitch * (2 * height + 1), kUntouched);
  strech_pic_2X2(src.data(), dst.data(), width, height, width, dstPitch);
  for (int line = 0; line < 2 * height; ++line) {
    EXPECT_EQ(dst[line * dstPitch + 15] == kUntouched, line == 7) << "left strip, line " << line;
    EXPECT_NE(dst[line * dstPitch + 16], kUntouched) << "right strip, line " << line;
  }
  EXPECT_EQ(dst[8 * dstPitch], 48);  // row 3 again, below the picture
  EXPECT_EQ(dst[8 * dstPitch + 16], kUntouched);
}

TEST(StrechPic2X2, DoublesAcrossStripsAndRoundsTwice) {
  const int32_t width = 24;
  Plane src(width * 2, 0);
  for (int x = 0; x < width; ++x) src[x] = uint8_t(10 * x);
  src[width + 1] = 1;  // below the pair 0, 0: the centre averages 0 and 1
  Plane dst(2 * width * 5, kUntouched);
  strech_pic_2X2(src.data(), dst.data(), width, 2, width, 2 * width);
  for (int x = 0; x < 2 * width - 1; ++x) EXPECT_EQ(dst[x], 5 * x) << "byte " << x;
  EXPECT_EQ(dst[2 * width - 1], 230) << "the last sample is its own neighbour";
  Plane flat(width * 2, 0);
  flat[width + 1] = 1;
  strech_pic_2X2(flat.data(), dst.data(), width, 2, width, 2 * width);
  EXPECT_EQ(dst[2 * width + 1], 1);
}

TEST(StrechPic2X2Adjust, PackedSourceFillsTheLastTwoLinesWithRowHeightMinusTwo) {
  tag_ajust_contrast_info adjust = identity_adjustment();
  get_contrast_data(&adjust);
  const int32_t width = 16, height = 3, dstPitch = 2 * width;
  Plane src(width * height + 1, 0);
  for (int r = 0; r < height; ++r)
    for (int x = 0; x < width; ++x) src[r * width + x] = uint8_t(20 * r);
  Plane dst(dstPitch * 2 * height + 8, kUntouched);
  strech_pic_2X2_adjust(src.data(), dst.data(), width, height, width, dstPitch, &adjust, 1);
  const int expected[] = {0, 0, 10, 20, 20, 20};
  for (int line = 0; line < 2 * height; ++line)
    EXPECT_EQ(dst[line * dstPitch], expected[line]) << "line " << line;
  EXPECT_EQ(dst[2 * height * dstPitch], kUntouched);
}

// Width 24: 16 doubled samples, then source bytes 8..23 as they are from
// destination byte 24 on; the next pair of lines starts 8 bytes left.
TEST(StrechPic2X2Adjust, EndsRowsWithTheirLastSixteenBytesUndoubled) {
  tag_ajust_contrast_info adjust = identity_adjustment();
  get_contrast_data(&adjust);
  const int32_t width = 24, height = 3, dstPitch = 64;
  Plane src(width * height + 64, 0);
  std::iota(src.bytes.begin(), src.bytes.end(), 0);
  Plane dst(dstPitch * 8, kUntouched);
  strech_pic_2X2_adjust(src.data(), dst.data(), width, height, width, dstPitch, &adjust, 1);
  const uint8_t* line1 = &dst[dstPitch];
  EXPECT_EQ(line1[22], 11);
  EXPECT_EQ(line1[23], 12);  // avg(11, 12)
  for (int k = 0; k < 16; ++k) EXPECT_EQ(line1[24 + k], 8 + k) << "byte " << k;
  EXPECT_EQ(line1[40], kUntouched);
  EXPECT_EQ(dst[3 * dstPitch - 8], 24) << "row 1 starts 8 bytes left of line 3";
}

TEST(Yv12Doubling, ChromaPlanesTakeTheLumaGainAndSwappedOffsets) {
  tag_ajust_contrast_info adjust = marked_adjustment();
  get_contrast_data(&adjust);
  const int32_t width = 32, height = 8, pitch = 64;
  Plane y(pitch * height, 100), u(pitch * height, 100), v(pitch * height, 100);
  for (auto kernel : {strech_picture_1X2_yv12_ajust, strech_picture_2X2_yv12_ajust}) {
    Plane dst(pitch * 2 * height * 2, kUntouched);
    kernel(y.data(), u.data(), v.data(), dst.data(), width, height, pitch, pitch, &adjust);
    const size_t vPlane = 2 * height * pitch, uPlane = vPlane + vPlane / 4;
    EXPECT_EQ(dst[0], 101);
    EXPECT_EQ(dst[vPlane], 102) << "V plane, U offset";
    EXPECT_EQ(dst[uPlane], 103) << "U plane, V offset";
  }
}

}  // namespace
}  // namespace yuvblit_test
