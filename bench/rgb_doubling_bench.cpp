// Planar 4:2:0 frames doubled vertically onto RGB32, RGB24 and RGB16 (5-6-5)
// surfaces with adjustment, and the copy rooflines of their doubled output
// (two lines per source row). Peers: the two passes that make the same
// surface with libyuv (libyuv_bilinear_1x2_then_I420ToARGB, ..._I420ToRGB24,
// ..._I420ToRGB565) and the scalers doubling 4:2:0 planes alone are in
// doubling_peers_bench.cpp; I420ToARGB and friends convert without
// doubling (planar_to_rgb_bench.cpp).
//
//   bench/ratios.py run.json --only 'strech_picture_1X2_yuy2_ajust_rgb*'
//       --peer 'strech_picture_1X2_yuy2_ajust_rgb32=libyuv_bilinear_1x2_then_I420ToARGB'
//       (likewise rgb24 with _I420ToRGB24, rgb16 with _I420ToRGB565)
#include "bench_util.h"

using namespace yuvblit_bench;

namespace {

constexpr Format kRgb32Doubled{"rgb32_1x2", 64, 2};
constexpr Format kRgb24Doubled{"rgb24_1x2", 48, 2};
constexpr Format kRgb16Doubled{"rgb16_1x2", 32, 2};

}  // namespace

YUVBLIT_BENCHMARKS(rgb_doubling) {
  register_planar_kernel("strech_picture_1X2_yuy2_ajust_rgb32",
                         strech_picture_1X2_yuy2_ajust_rgb32, kRgb32Doubled, true);
  register_planar_kernel("strech_picture_1X2_yuy2_ajust_rgb24",
                         strech_picture_1X2_yuy2_ajust_rgb24, kRgb24Doubled, true);
  register_planar_kernel("strech_picture_1X2_yuy2_ajust_rgb16",
                         strech_picture_1X2_yuy2_ajust_rgb16, kRgb16Doubled, true);
  register_roofline_copy(kRgb32Doubled);
  register_roofline_copy(kRgb24Doubled);
  register_roofline_copy(kRgb16Doubled);
}
