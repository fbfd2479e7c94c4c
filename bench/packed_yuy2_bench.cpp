// Packed YUY2 picture onto YUY2, RGB16 (5-6-5), RGB24 and RGB32 surfaces:
// the eight kernels, peers writing the same surfaces, and the copy
// rooflines.
//
// Source: PackedYuy2Frame (srcPitch in pixels, srcU and srcV null).
// Peers: libyuv YUY2ToARGB and swscale yuyv422 -> bgra for the RGB32
// kernels; libyuv CopyPlane of the 2W-byte rows as the copy peer of
// YUY2 -> YUY2.
//
// LoadYUY2_RGB32_adjust converts, for widths that are multiples of 16 (both
// benchmark sizes), only the first 16 pixels of each row pair and then steps
// on as if it had done the whole row (see include/yuvblit.h). It is measured
// as it is and labelled "first group per pair only"; its pixels/s is over
// the nominal W x H, not over what it converts. Its first destination row
// does get those 16 pixels, so the untouched-destination check passes.
//
//   bench/ratios.py run.json (one command line) --peer 'LoadYUY2_RGB*=libyuv_YUY2ToARGB'
//       --peer 'LoadYUY2_YUY2*=libyuv_CopyPlane_yuy2'
#include <memory>

#include "bench_util.h"
#include "swscale_peer.h"

#if YUVBLIT_BENCH_HAVE_LIBYUV
#include <libyuv/convert_argb.h>
#include <libyuv/planar_functions.h>
#endif

using namespace yuvblit_bench;

namespace {

#if YUVBLIT_BENCH_HAVE_LIBYUV
void register_libyuv_yuy2_to_argb() {
  register_sizes(
      "libyuv_YUY2ToARGB", kRgb32,
      [](Size size, benchmark::State&) -> Body {
        auto src = std::make_shared<PackedYuy2Frame>(size, 1234u);
        auto dst = std::make_shared<Surface>(size, kRgb32);
        return [src, dst, size]() {
          libyuv::YUY2ToARGB(src->data.data(), src->pitchBytes,
                             dst->data.data(), dst->pitch, size.width,
                             size.height);
        };
      });
}

void register_libyuv_copy_plane_yuy2() {
  register_sizes(
      "libyuv_CopyPlane_yuy2", kYuy2,
      [](Size size, benchmark::State&) -> Body {
        auto src = std::make_shared<PackedYuy2Frame>(size, 1234u);
        auto dst = std::make_shared<Surface>(size, kYuy2);
        return [src, dst, size]() {
          libyuv::CopyPlane(src->data.data(), src->pitchBytes,
                            dst->data.data(), dst->pitch, 2 * size.width,
                            size.height);
        };
      });
}
#endif

}  // namespace

YUVBLIT_BENCHMARKS(packed_yuy2) {
  register_packed_yuy2_kernel("LoadYUY2_YUY2", LoadYUY2_YUY2, kYuy2, false);
  register_packed_yuy2_kernel("LoadYUY2_YUY2_adjust", LoadYUY2_YUY2_adjust,
                              kYuy2, true);
  register_packed_yuy2_kernel("LoadYUY2_RGB16", LoadYUY2_RGB16, kRgb16, false);
  register_packed_yuy2_kernel("LoadYUY2_RGB16_adjust", LoadYUY2_RGB16_adjust,
                              kRgb16, true);
  register_packed_yuy2_kernel("LoadYUY2_RGB24", LoadYUY2_RGB24, kRgb24, false);
  register_packed_yuy2_kernel("LoadYUY2_RGB24_adjust", LoadYUY2_RGB24_adjust,
                              kRgb24, true);
  register_packed_yuy2_kernel("LoadYUY2_RGB32", LoadYUY2_RGB32, kRgb32, false);
  register_packed_yuy2_kernel("LoadYUY2_RGB32_adjust", LoadYUY2_RGB32_adjust,
                              kRgb32, true, "first group per pair only");
#if YUVBLIT_BENCH_HAVE_LIBYUV
  register_libyuv_yuy2_to_argb();
  register_libyuv_copy_plane_yuy2();
#endif
  register_swscale_peer("swscale_yuyv422_bgra", PeerSource::kPackedYuy2, PeerOutput::kBgra, kRgb32);
  register_roofline_copy(kYuy2);
  register_roofline_copy(kRgb16);
  register_roofline_copy(kRgb24);
  register_roofline_copy(kRgb32);
}
