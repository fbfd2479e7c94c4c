// A subpicture shown by itself on RGB32, RGB24 and RGB16 surfaces: the six
// kernels, their peers and the copy rooflines.
//
// Overlays (bench_util.h's shapes, as the mixers use them): "menu" is
// mostly alpha 0, which these kernels turn into the colour key without
// converting; "opaque" has alpha 1..16 everywhere, so every pixel is
// converted. The subpicture planes lie back to back (picturePitch is the
// width); entries are <kernel>/<overlay>/<W>x<H>.
//
// Peers (libyuv): I422ToARGB, I422ToRGB24 and I422ToRGB565 convert the same
// 4:2:2 planes onto the same surfaces (no alpha, no key); the planar
// family's libyuv_I420ToARGB, _I420ToRGB24 and _I420ToRGB565 read a
// quarter less chroma. Each _ajust form is compared with the peer of its
// plain form, which does no adjustment.
//
//   bench/ratios.py run.json --only 'load_subpicture_yuy2_*'
//       --peer 'load_subpicture_yuy2_rgb32*=libyuv_I422ToARGB'
//       --peer 'load_subpicture_yuy2_rgb24*=libyuv_I422ToRGB24'
//       --peer 'load_subpicture_yuy2_rgb16*=libyuv_I422ToRGB565'
#include <memory>
#include <string>

#include "bench_util.h"

#if YUVBLIT_BENCH_HAVE_LIBYUV
#include <libyuv/convert_argb.h>
#endif

using namespace yuvblit_bench;

namespace {

using MixKernel = void (*)(tagMIX_INFO*);


void register_kernel(const char* name, MixKernel kernel, const Format& format, bool adjusting) {
  for (const OverlayShape* shape : {&kMenuOverlay, &kOpaqueOverlay}) {
    register_sizes(
        std::string(name) + "/" + shape->name, format,
        [kernel, format, adjusting, shape](Size size, benchmark::State& state) -> Body {
          auto sub = std::make_shared<SubpictureFrame>(size, *shape, 4321u);
          auto dst = std::make_shared<Surface>(size, format);
          auto adjust = kernel_record(adjusting);
          if (sub->subPitch != size.width) {
            state.SkipWithError("subpicture rows are not back to back at this width");
            return Body{};
          }
          tagMIX_INFO info{};
          info.picturePitch = size.width;
          info.dstPitch = dst->pitch;
          info.height = size.height;
          info.subAlpha = sub->alpha;
          info.subY = sub->y;
          info.subU = sub->u;
          info.subV = sub->v;
          info.dst = dst->data.data();
          info.colorKey = 0x00FF00FFu;
          info.adjust = adjust.get();
          Body body = [kernel, info, sub, dst, adjust]() {
            tagMIX_INFO fresh = info;
            kernel(&fresh);
          };
          return checked_body(std::move(body), dst->data.data(),
                              static_cast<size_t>(format.bytes_per_row(size.width)), state);
        });
  }
}

#if YUVBLIT_BENCH_HAVE_LIBYUV
using LibyuvI422ToRgb = int (*)(const uint8_t* srcY, int strideY, const uint8_t* srcU,
                                int strideU, const uint8_t* srcV, int strideV, uint8_t* dst,
                                int dstStride, int width, int height);

void register_libyuv(const char* name, LibyuvI422ToRgb convert, const Format& format) {
  register_sizes(name, format, [convert, format](Size size, benchmark::State&) -> Body {
    auto sub = std::make_shared<SubpictureFrame>(size, kOpaqueOverlay, 4321u);
    auto dst = std::make_shared<Surface>(size, format);
    return [convert, sub, dst, size]() {
      convert(sub->y, sub->subPitch, sub->u, sub->subPitch / 2, sub->v, sub->subPitch / 2,
              dst->data.data(), dst->pitch, size.width, size.height);
    };
  });
}
#endif

}  // namespace

YUVBLIT_BENCHMARKS(sub_to_rgb) {
  register_kernel("load_subpicture_yuy2_rgb32", load_subpicture_yuy2_rgb32, kRgb32, false);
  register_kernel("load_subpicture_yuy2_rgb32_ajust", load_subpicture_yuy2_rgb32_ajust, kRgb32,
                  true);
  register_kernel("load_subpicture_yuy2_rgb24", load_subpicture_yuy2_rgb24, kRgb24, false);
  register_kernel("load_subpicture_yuy2_rgb24_ajust", load_subpicture_yuy2_rgb24_ajust, kRgb24,
                  true);
  register_kernel("load_subpicture_yuy2_rgb16", load_subpicture_yuy2_rgb16, kRgb16, false);
  register_kernel("load_subpicture_yuy2_rgb16_ajust", load_subpicture_yuy2_rgb16_ajust, kRgb16,
                  true);
#if YUVBLIT_BENCH_HAVE_LIBYUV
  register_libyuv("libyuv_I422ToARGB", libyuv::I422ToARGB, kRgb32);
  register_libyuv("libyuv_I422ToRGB24", libyuv::I422ToRGB24, kRgb24);
  register_libyuv("libyuv_I422ToRGB565", libyuv::I422ToRGB565, kRgb16);
#endif
  register_roofline_copy(kRgb32);
  register_roofline_copy(kRgb24);
  register_roofline_copy(kRgb16);
}
