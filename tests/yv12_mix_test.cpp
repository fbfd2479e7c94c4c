// Mixing an AYV12 subpicture onto YV12 surfaces: the documented values.
// (The three kernels are checked against their models, on every target
// and geometry, with the other mixers in mix_test.cpp.)
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "harness/mix.h"
#include "test_util.h"
#include "yuvblit.h"

namespace yuvblit_test {
namespace {

// Picture, subpicture and surface planes of one value each (pitch 64 for
// all of them, chroma rows 32 apart in the picture and the surface), the
// surface marked with 0xEE.
struct Yv12Scene {
  static constexpr int32_t kPitch = 64, kRows = 16;
  static constexpr size_t kBytes = kPitch * kRows;
  Plane pictureY{kBytes, 100}, pictureU{kBytes, 90}, pictureV{kBytes, 200};
  Plane alpha{kBytes, 0}, subY{kBytes, 60}, subU{kBytes, 30}, subV{kBytes, 70};
  Plane dstY{kBytes, 0xEE}, dstU{kBytes, 0xEE}, dstV{kBytes, 0xEE};

  tagMIX_INFO run(MixKernel kernel, int32_t width, int32_t height) {
    for (Plane* p : {&dstY, &dstU, &dstV}) std::fill(p->bytes.begin(), p->bytes.end(), 0xEE);
    tagMIX_INFO r{};
    r.picturePitch = r.subPitch = r.dstPitch = kPitch;
    r.width = width, r.height = height;
    r.pictureY = pictureY.data(), r.pictureU = pictureU.data(), r.pictureV = pictureV.data();
    r.subAlpha = alpha.data(), r.subY = subY.data(), r.subU = subU.data(), r.subV = subV.data();
    r.dst = dstY.data(), r.dstU = dstU.data(), r.dstV = dstV.data();
    kernel(&r);
    return r;
  }
  uint8_t y(int row, int x) { return dstY[row * kPitch + x]; }
  uint8_t u(int row, int x) { return dstU[row * kPitch / 2 + x]; }
  uint8_t v(int row, int x) { return dstV[row * kPitch / 2 + x]; }
};

const MixKernel kKernels[] = {mix_ayv12_yv12_p, mix_ayv12_yv12_p_ajust, mix_ayv12_yv12_i};

TEST(MixYv12Values, AlphaZeroKeepsThePictureSixteenAndAboveTakeTheSubpicture) {
  tag_ajust_contrast_info neutral = identity_adjustment();
  get_contrast_data(&neutral);  // the adjusting kernel then writes what the plain one does
  Yv12Scene s;
  for (MixKernel k : kKernels) {
    for (uint8_t a : {0, 16, 200}) {
      std::fill(s.alpha.bytes.begin(), s.alpha.bytes.end(), a);
      s.run(k, 16, 4);
      const bool sub = a != 0;
      for (int row = 0; row < 4; ++row)
        for (int x = 0; x < 16; ++x) ASSERT_EQ(s.y(row, x), sub ? 60 : 100) << int{a};
      for (int row = 0; row < 2; ++row)
        for (int x = 0; x < 8; ++x) {
          ASSERT_EQ(s.u(row, x), sub ? 30 : 90) << int{a};
          ASSERT_EQ(s.v(row, x), sub ? 70 : 200) << int{a};
        }
      EXPECT_EQ(s.y(0, 16), 0xEE);
      EXPECT_EQ(s.u(0, 8), 0xEE);
    }
  }
}

TEST(MixYv12Values, ChromaFollowsTheRightPixelOfTheEvenRow) {
  tag_ajust_contrast_info neutral = identity_adjustment();
  get_contrast_data(&neutral);
  Yv12Scene s;
  for (MixKernel k : kKernels) {
    std::fill(s.alpha.bytes.begin(), s.alpha.bytes.end(), 0);
    s.alpha[1] = 16;                   // right pixel of pair 0, row 0
    s.alpha[Yv12Scene::kPitch + 2] = 16;  // left pixel of pair 1, row 1: ignored
    s.run(k, 16, 4);
    EXPECT_EQ(s.y(0, 0), 100);
    EXPECT_EQ(s.y(0, 1), 60);
    EXPECT_EQ(s.u(0, 0), 30);
    EXPECT_EQ(s.v(0, 0), 70);
    EXPECT_EQ(s.u(0, 1), 90);
    EXPECT_EQ(s.v(0, 1), 200);
  }
}

TEST(MixYv12Values, RecordKeepsItsPointersAndHalvesItsSizes) {
  const int32_t w = 720, h = 576;
  std::vector<uint8_t> y(w * (h + 1)), c(w / 2 * (h / 2 + 1)), a(w * h), sub(w * h), d(w * h),
      dc(w * h / 4);
  tagMIX_INFO r{};
  r.picturePitch = r.subPitch = r.dstPitch = w;
  r.pictureY = y.data(), r.pictureU = r.pictureV = c.data();
  r.subAlpha = a.data(), r.subY = r.subU = r.subV = sub.data();
  r.dst = d.data(), r.dstU = r.dstV = dc.data();
  for (MixKernel k : kKernels) {
    const bool field = k == mix_ayv12_yv12_i;
    r.width = w, r.height = field ? h / 2 : h;
    k(&r);
    EXPECT_EQ(r.height, field ? h / 4 : h / 2);
    EXPECT_EQ(r.width, field ? w / 2 : w);
    EXPECT_EQ(r.pictureY, y.data());
    EXPECT_EQ(r.subAlpha, a.data());
    EXPECT_EQ(r.dstU, dc.data());
  }
}

TEST(MixYv12IValues, InterpolatedRowsRoundUpAndOddHeightsWriteAWholePair) {
  Yv12Scene s;
  for (int i = 0; i < 16; ++i) s.pictureY[i] = 10, s.pictureY[Yv12Scene::kPitch + i] = 13;
  const tagMIX_INFO r = s.run(mix_ayv12_yv12_i, 16, 5);
  EXPECT_EQ(s.y(0, 0), 10);
  EXPECT_EQ(s.y(1, 0), 12);
  EXPECT_EQ(s.y(2, 0), 13);
  // Height 5: three pairs of luma rows; chroma on the halved height 2, one
  // pair of chroma rows.
  EXPECT_NE(s.y(5, 0), 0xEE);
  EXPECT_EQ(s.y(6, 0), 0xEE);
  EXPECT_NE(s.u(1, 0), 0xEE);
  EXPECT_EQ(s.u(2, 0), 0xEE);
  EXPECT_EQ(r.height, 2);
  EXPECT_EQ(r.width, 8);
}

}  // namespace
}  // namespace yuvblit_test
