// Planar 4:2:0 frame onto YUY2 surfaces: the four kernels, two peer
// converters writing the same surface, and the copy roofline.
#include <memory>

#include "bench_util.h"

#if YUVBLIT_BENCH_HAVE_LIBYUV
#include <libyuv/convert_from.h>
#endif
#if YUVBLIT_BENCH_HAVE_SWSCALE
extern "C" {
#include <libavutil/log.h>
#include <libavutil/pixfmt.h>
#include <libswscale/swscale.h>
}
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

#if YUVBLIT_BENCH_HAVE_SWSCALE
void register_swscale_yuv420p_to_yuyv422() {
  register_sizes(
      "swscale_yuyv422", kYuy2,
      [](Size size, benchmark::State&) -> Body {
        av_log_set_level(AV_LOG_ERROR);
        auto src = std::make_shared<PlanarFrame>(size, 1234u);
        auto dst = std::make_shared<Surface>(size, kYuy2);
        // Same size in and out: swscale takes its unscaled packing path.
        std::shared_ptr<SwsContext> ctx(
            sws_getContext(size.width, size.height, AV_PIX_FMT_YUV420P,
                           size.width, size.height, AV_PIX_FMT_YUYV422,
                           SWS_POINT, nullptr, nullptr, nullptr),
            sws_freeContext);
        return [src, dst, ctx, size]() {
          const uint8_t* const planes[3] = {src->y, src->u, src->v};
          const int strides[3] = {src->pitch, src->chromaPitch,
                                  src->chromaPitch};
          uint8_t* const out[1] = {dst->data.data()};
          const int outStrides[1] = {dst->pitch};
          sws_scale(ctx.get(), planes, strides, 0, size.height, out,
                    outStrides);
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
#if YUVBLIT_BENCH_HAVE_SWSCALE
  register_swscale_yuv420p_to_yuyv422();
#endif
  register_roofline_copy(kYuy2);
  register_roofline_copy(kHalfYuy2);
}
