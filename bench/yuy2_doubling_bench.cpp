// Planar 4:2:0 frames doubled onto YUY2 surfaces: vertically (twice the
// lines) and in both directions (twice the lines of twice the pixels),
// with the copy rooflines of those outputs. The scaler peers are in
// doubling_peers_bench.cpp.
#include "bench_util.h"

using namespace yuvblit_bench;

namespace {

constexpr Format kYuy2Doubled1x2{"yuy2_1x2", 32, 2};
constexpr Format kYuy2Doubled2x2{"yuy2_2x2", 64, 2};

}  // namespace

YUVBLIT_BENCHMARKS(yuy2_doubling) {
  register_planar_kernel("strech_picture_1X2_yuy2", strech_picture_1X2_yuy2, kYuy2Doubled1x2,
                         false);
  register_planar_kernel("strech_picture_1X2_yuy2_ajust", strech_picture_1X2_yuy2_ajust,
                         kYuy2Doubled1x2, true);
  register_planar_kernel("strech_picture_2X2_yuy2", strech_picture_2X2_yuy2, kYuy2Doubled2x2,
                         false);
  register_planar_kernel("strech_picture_2X2_yuy2_ajust", strech_picture_2X2_yuy2_ajust,
                         kYuy2Doubled2x2, true);
  register_roofline_copy(kYuy2Doubled1x2);
  register_roofline_copy(kYuy2Doubled2x2);
}
