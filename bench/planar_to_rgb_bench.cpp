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
#include "swscale_peer.h"

#if YUVBLIT_BENCH_HAVE_LIBYUV
#include <libyuv/convert_argb.h>
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
  register_swscale_peer("swscale_bgra", PeerSource::kPlanar420, PeerOutput::kBgra, kRgb32);
  register_roofline_copy(kRgb32);
  register_roofline_copy(kRgb24);
  register_roofline_copy(kRgb16);
}
