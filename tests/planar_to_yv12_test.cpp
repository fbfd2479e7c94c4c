// Planar 4:2:0 frames onto YV12 surfaces.
#include <gtest/gtest.h>

#include <cstdlib>
#include <numeric>

#include "harness/a9.h"
#include "model/planar_to_yv12_model.h"
#include "test_util.h"

namespace yuvblit_test {
namespace {

const A9KernelCase kKernels[] = {
    {"loadimage_yv12", loadimage_yv12, model_loadimage_yv12},
    {"loadimage_yv12_ajust", loadimage_yv12_ajust, model_loadimage_yv12_ajust},
    {"loadimage_half_yv12_ajust", loadimage_half_yv12_ajust, model_loadimage_half_yv12_ajust},
};

int pick(std::mt19937& rng, int lo, int hi) {
  return std::uniform_int_distribution<int>(lo, hi)(rng);
}

// Where loadimage_yv12_ajust puts the chroma planes: at the top of the
// surface, further down a taller surface, or anywhere (over the luma plane,
// before dst, at odd and negative offsets).
void place_chroma_planes(std::mt19937& rng, int32_t height, tag_ajust_contrast_info& r) {
  switch (pick(rng, 0, 2)) {
    case 0:
      r.lumaPlaneRows = r.rowsFromDestination = height;
      break;
    case 1:
      r.lumaPlaneRows = height + pick(rng, 0, 30);
      r.rowsFromDestination = r.lumaPlaneRows - pick(rng, 0, r.lumaPlaneRows - height);
      break;
    default:
      r.lumaPlaneRows = pick(rng, -20, 60);
      r.rowsFromDestination = pick(rng, -20, 60);
      break;
  }
}

class PlanarToYv12 : public testing::TestWithParam<A9KernelCase> {};

TEST_P(PlanarToYv12, MatchesModelOnRandomFramesAndGeometries) {
  const A9KernelCase& k = GetParam();
  std::mt19937 rng(20261122);
  for (int i = 0; i < 300; ++i) {
    A9Call call = random_call(rng, 1, 1);
    if (k.kernel == loadimage_yv12) {
      // Its chroma strides are pitches halved as unsigned values: a
      // bottom-up pitch would put the chroma rows 2 GiB away.
      call.srcPitch = std::abs(call.srcPitch);
      call.dstPitch = std::abs(call.dstPitch);
    }
    tag_ajust_contrast_info adjust = random_adjustment(rng);
    place_chroma_planes(rng, call.height, adjust);
    get_contrast_data(&adjust);
    ASSERT_TRUE(check_a9(k.kernel, k.model, call, adjust, rng())) << k.name << ", case " << i;
  }
}

TEST_P(PlanarToYv12, MatchesModelOnOddSizes) {
  const A9KernelCase& k = GetParam();
  tag_ajust_contrast_info adjust = identity_adjustment();
  adjust.lumaGain = 90;
  adjust.uOffset = 7;
  adjust.vOffset = -7;
  get_contrast_data(&adjust);
  std::mt19937 rng(11);
  for (int32_t width : {0, 1, 7, 8, 9, 15, 16, 17, 31, 33, 40, 42, 47, 48, 63, 64, 65, 129}) {
    for (int32_t height : {0, 1, 2, 3, 4, 5, 9}) {
      adjust.lumaPlaneRows = adjust.rowsFromDestination = height;
      const A9Call call{width, height, 165, 211};
      ASSERT_TRUE(check_a9(k.kernel, k.model, call, adjust, rng())) << k.name;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Kernels, PlanarToYv12, testing::ValuesIn(kKernels),
                         [](const auto& info) { return std::string(info.param.name); });

constexpr uint8_t kUntouched = 0xEE;

Plane counting_plane(size_t n, uint8_t first) {
  Plane p(n, 0);
  std::iota(p.bytes.begin(), p.bytes.end(), first);
  return p;
}

// Chroma placement from the record: a 480-row surface with pitch 720, and a
// picture 48 rows down a 576-row surface.
TEST(LoadImageYv12Ajust, PlacesChromaPlanesFromTheRecord) {
  tag_ajust_contrast_info adjust = identity_adjustment();
  get_contrast_data(&adjust);
  {
    Plane y(720 * 480, 50), v(360 * 240, 60), u(360 * 240, 70);
    std::vector<uint8_t> s(720 * 480 * 3 / 2 + 64, kUntouched);
    adjust.lumaPlaneRows = adjust.rowsFromDestination = 480;
    loadimage_yv12_ajust(y.data(), u.data(), v.data(), s.data(), 720, 480, 720, 720, &adjust);
    EXPECT_EQ(s[345599], 50);
    EXPECT_EQ(s[345600], 60);  // V plane
    EXPECT_EQ(s[431999], 60);
    EXPECT_EQ(s[432000], 70);  // U plane
    EXPECT_EQ(s[518399], 70);
    EXPECT_EQ(s[518400], kUntouched);
  }
  {
    const int32_t pitch = 64, top = 48;
    Plane y(pitch * 528, 50), v(32 * 264, 60), u(32 * 264, 70);
    std::vector<uint8_t> s(pitch * 576 * 3 / 2 + 64, kUntouched);
    adjust.lumaPlaneRows = 576;
    adjust.rowsFromDestination = 528;
    uint8_t* dst = s.data() + top * pitch;
    loadimage_yv12_ajust(y.data(), u.data(), v.data(), dst, pitch, 528, pitch, pitch, &adjust);
    const size_t vRow24 = 576 * pitch + 12 * pitch;  // dst + 528*pitch + 12*pitch
    const size_t uRow24 = vRow24 + 576 * pitch / 4;
    EXPECT_EQ(s[top * pitch - 1], kUntouched);
    EXPECT_EQ(s[top * pitch], 50);
    EXPECT_EQ(s[vRow24 - 1], kUntouched);
    EXPECT_EQ(s[vRow24], 60);
    EXPECT_EQ(s[uRow24 - 1], kUntouched);
    EXPECT_EQ(s[uRow24], 70);
    EXPECT_EQ(s[s.size() - 64 - 1], 70);
    EXPECT_EQ(s[s.size() - 64], kUntouched);
  }
}

TEST(LoadImageYv12Ajust, ReadsSourcesPackedAndSwapsChromaOffsets) {
  tag_ajust_contrast_info adjust = identity_adjustment();
  adjust.uOffset = 10;
  adjust.vOffset = -10;
  adjust.lumaPlaneRows = adjust.rowsFromDestination = 2;
  get_contrast_data(&adjust);
  Plane y = counting_plane(64 * 2, 0), u(64, 100), v(64, 100);
  const int32_t dstPitch = 32;
  std::vector<uint8_t> s(dstPitch * 3, kUntouched);
  loadimage_yv12_ajust(y.data(), u.data(), v.data(), s.data(), 16, 2, 64, dstPitch, &adjust);
  for (int x = 0; x < 16; ++x) {
    EXPECT_EQ(s[x], x);
    EXPECT_EQ(s[dstPitch + x], 16 + x) << "the second row follows the first in the source";
  }
  EXPECT_EQ(s[2 * dstPitch], 110);      // V plane: raised by the U offset
  EXPECT_EQ(s[2 * dstPitch + 16], 90);  // U plane: lowered by the V offset
}

// Its own strides: the second luma row of a pair is read `width` past the
// first and written `srcPitch` below it; V starts one byte early; U rows are
// stored before V rows, so where they meet V wins.
TEST(LoadImageYv12, PlacesRowsAndPlanesWithItsOwnStrides) {
  const int32_t width = 16, height = 2, srcPitch = 40, dstPitch = 64;
  Plane y = counting_plane(srcPitch * 2, 0), u = counting_plane(64, 100),
        v = counting_plane(64, 200);
  std::vector<uint8_t> s(dstPitch * 4, kUntouched);
  tag_ajust_contrast_info adjust{};
  loadimage_yv12(y.data(), u.data(), v.data(), s.data(), width, height, srcPitch, dstPitch,
                 &adjust);
  for (int x = 0; x < 16; ++x) {
    EXPECT_EQ(s[x], x);
    EXPECT_EQ(s[srcPitch + x], 16 + x);
  }
  EXPECT_EQ(s[16], kUntouched);
  const size_t vStart = height * dstPitch - 1, uStart = vStart + height * dstPitch / 4;
  EXPECT_EQ(s[vStart - 1], kUntouched);
  EXPECT_EQ(s[vStart], 200);
  // Chroma rows are srcPitch/2 = 20 apart in the source, dstPitch/2 = 32 on
  // the surface: V's second row lands on U's first.
  EXPECT_EQ(s[uStart], 200 + 20);
  EXPECT_EQ(s[uStart + 32], 100 + 20);
}

TEST(LoadImageHalfYv12Ajust, KeepsOddSamplesWithAnAlignedLastChromaGroup) {
  tag_ajust_contrast_info adjust = identity_adjustment();
  get_contrast_data(&adjust);
  {
    Plane y(64, 0), u(64, 0), v(64, 0);
    for (int i = 0; i < 4; ++i) y[i] = uint8_t(10 * (i + 1));
    std::vector<uint8_t> s(64 * 2, kUntouched);
    loadimage_half_yv12_ajust(y.data(), u.data(), v.data(), s.data(), 16, 1, 16, 32, &adjust);
    EXPECT_EQ(s[0], 20);
    EXPECT_EQ(s[1], 40);
  }
  // Width 48: chroma rows of 24 samples are one group from sample 0 and one
  // from sample 8. Width 42 (21 samples): the second group starts at sample
  // 5, so from output byte 2 on it keeps even samples.
  struct Case { int32_t width; std::vector<int> kept; };
  const Case cases[] = {
      {48, {1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23}},
      {42, {1, 3, 6, 8, 10, 12, 14, 16, 18, 20}},
  };
  for (const Case& c : cases) {
    const int32_t pitch = 64;
    Plane y(pitch * 2, 0), u(pitch, 0), v = counting_plane(pitch, 0);
    std::vector<uint8_t> s(pitch * 4, kUntouched);
    loadimage_half_yv12_ajust(y.data(), u.data(), v.data(), s.data(), c.width, 2, pitch, pitch,
                              &adjust);
    const size_t vPlane = 2 * pitch;
    for (size_t i = 0; i < c.kept.size(); ++i)
      EXPECT_EQ(s[vPlane + i], c.kept[i]) << "width " << c.width << ", byte " << i;
    EXPECT_EQ(s[vPlane + c.kept.size()], kUntouched) << "width " << c.width;
  }
}

}  // namespace
}  // namespace yuvblit_test
