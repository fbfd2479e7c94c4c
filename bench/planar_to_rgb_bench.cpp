// Planar 4:2:0 frame onto RGB32, RGB24 and RGB16 (5-6-5) surfaces: the six
// kernels, peer converters writing the same surfaces, and the copy
// rooflines of 4, 3 and 2 bytes per pixel.
//
// Peers: libyuv I420ToARGB (bytes B, G, R, A: the RGB32 order but for the
// fourth byte), I420ToRGB24 (B, G, R) and I420ToRGB565, and swscale
// yuv420p -> bgra. Each _ajust form is compared with the peer of its plain
// form, which does no adjustment.
//
//   bench/ratios.py run.json (one command line) --peer 'loadimage_rgb32*=libyuv_I420ToARGB'
//       --peer 'loadimage_rgb24*=libyuv_I420ToRGB24'
//       --peer 'loadimage_rgb16*=libyuv_I420ToRGB565'
#include <memory>

#include "bench_util.h"

#if YUVBLIT_BENCH_HAVE_LIBYUV
#include <libyuv/convert_argb.h>
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
// The libyuv planar-to-RGB converters share one signature.
using LibyuvI420ToRgb = int (*)(const uint8_t* srcY, int strideY,
                                const uint8_t* srcU, int strideU,
                                const uint8_t* srcV, int strideV,
                                uint8_t* dst, int dstStride, int width,
                                int height);

void register_libyuv(const char* name, LibyuvI420ToRgb convert,
                     const Format& format) {
  register_sizes(name, format,
                 [convert, format](Size size, benchmark::State&) -> Body {
                   auto src = std::make_shared<PlanarFrame>(size, 1234u);
                   auto dst = std::make_shared<Surface>(size, format);
                   return [convert, src, dst, size]() {
                     convert(src->y, src->pitch, src->u, src->chromaPitch,
                             src->v, src->chromaPitch, dst->data.data(),
                             dst->pitch, size.width, size.height);
                   };
                 });
}
#endif

#if YUVBLIT_BENCH_HAVE_SWSCALE
void register_swscale_yuv420p_to_bgra() {
  register_sizes(
      "swscale_bgra", kRgb32,
      [](Size size, benchmark::State& state) -> Body {
        av_log_set_level(AV_LOG_ERROR);
        auto src = std::make_shared<PlanarFrame>(size, 1234u);
        auto dst = std::make_shared<Surface>(size, kRgb32);
        // Same size in and out: swscale takes its unscaled conversion path.
        std::shared_ptr<SwsContext> ctx(
            sws_getContext(size.width, size.height, AV_PIX_FMT_YUV420P,
                           size.width, size.height, AV_PIX_FMT_BGRA,
                           SWS_POINT, nullptr, nullptr, nullptr),
            sws_freeContext);
        if (!ctx) {
          state.SkipWithError("sws_getContext failed");
          return Body();
        }
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

YUVBLIT_BENCHMARKS(planar_to_rgb) {
  register_planar_kernel("loadimage_rgb32", loadimage_rgb32, kRgb32, false);
  register_planar_kernel("loadimage_rgb24", loadimage_rgb24, kRgb24, false);
  register_planar_kernel("loadimage_rgb16", loadimage_rgb16, kRgb16, false);
  register_planar_kernel("loadimage_rgb32_ajust", loadimage_rgb32_ajust,
                         kRgb32, true);
  register_planar_kernel("loadimage_rgb24_ajust", loadimage_rgb24_ajust,
                         kRgb24, true);
  register_planar_kernel("loadimage_rgb16_ajust", loadimage_rgb16_ajust,
                         kRgb16, true);
#if YUVBLIT_BENCH_HAVE_LIBYUV
  register_libyuv("libyuv_I420ToARGB", libyuv::I420ToARGB, kRgb32);
  register_libyuv("libyuv_I420ToRGB24", libyuv::I420ToRGB24, kRgb24);
  register_libyuv("libyuv_I420ToRGB565", libyuv::I420ToRGB565, kRgb16);
#endif
#if YUVBLIT_BENCH_HAVE_SWSCALE
  register_swscale_yuv420p_to_bgra();
#endif
  register_roofline_copy(kRgb32);
  register_roofline_copy(kRgb24);
  register_roofline_copy(kRgb16);
}
