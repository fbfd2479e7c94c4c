// Planar 4:2:0 frame onto YUY2 surfaces: the four kernels, two peer
// converters writing the same surface, and the copy roofline.
#include <memory>

#include "bench_util.h"
#include "swscale_peer.h"

#if YUVBLIT_BENCH_HAVE_LIBYUV
#include <libyuv/convert_from.h>
#endif

using namespace yuvblit_bench;

namespace {

#if YUVBLIT_BENCH_HAVE_LIBYUV
void register_libyuv_i420_to_yuy2() {
  register_sizes(
      "libyuv_I420ToYUY2", kYuy2,
      [](Size size, benchmark::State&) -> Body {
        auto src = std::make_shared<PlanarFrame>(size, 1234u);
        auto dst = std::make_shared<Surface>(size, kYuy2);
        return [src, dst, size]() {
          libyuv::I420ToYUY2(src->y, src->pitch, src->u,
                             src->chromaPitch, src->v, src->chromaPitch,
                             dst->data.data(), dst->pitch, size.width,
                             size.height);
        };
      });
}
#endif

}  // namespace

YUVBLIT_BENCHMARKS(planar_to_yuy2) {
  register_planar_kernel("loadimage_yuy2", loadimage_yuy2, kYuy2, false);
  register_planar_kernel("loadimage_yuy2_ajust", loadimage_yuy2_ajust, kYuy2,
                         true);
  register_planar_kernel("loadimage_yuy2_mono_ajust",
                         loadimage_yuy2_mono_ajust, kYuy2, true);
  register_planar_kernel("loadimage_half_yuy2_ajust",
                         loadimage_half_yuy2_ajust, kHalfYuy2, true);
#if YUVBLIT_BENCH_HAVE_LIBYUV
  register_libyuv_i420_to_yuy2();
#endif
  register_swscale_peer("swscale_yuyv422", PeerSource::kPlanar420, PeerOutput::kYuyv422, kYuy2);
  register_roofline_copy(kYuy2);
  register_roofline_copy(kHalfYuy2);
}
