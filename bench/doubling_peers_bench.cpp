// Peers of the doubling kernels: the scalers a player would otherwise use
// to double a 4:2:0 frame, vertically (1X2) and in both directions (2X2),
// each writing the doubled 4:2:0 planes; and, for the 1X2 kernels that
// write a display surface, the two passes a player would otherwise run to
// get the same surface: bilinear doubling of the planes, then conversion
// of the doubled frame (libyuv_bilinear_1x2_then_<converter>). The
// kernels' own entries and their output rooflines are in the family bench
// files.
#include <memory>

#include "bench_util.h"

#if YUVBLIT_BENCH_HAVE_LIBYUV
#include <libyuv/convert_argb.h>
#include <libyuv/convert_from.h>
#include <libyuv/scale.h>
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

// How a peer doubles: the output size for a source size.
struct Doubling {
  const char* suffix;  // "1x2" or "2x2"
  int32_t widthFactor;
  Format planar;  // the three doubled planes
  Format plane;   // the doubled luma plane alone
};

constexpr Doubling kDoublings[] = {
    {"1x2", 1, {"yv12_1x2", 24, 2}, {"plane_1x2", 16, 2}},
    {"2x2", 2, {"yv12_2x2", 48, 2}, {"plane_2x2", 32, 2}},
};

// The doubled 4:2:0 planes, one block, rows on 64 bytes.
struct DoubledPlanes {
  DoubledPlanes(Size out)
      : pitch((out.width + 63) & ~63),
        chromaPitch(pitch / 2),
        data(static_cast<size_t>(pitch) * out.height * 3 / 2 + 4096) {
    fill_surface(data);
    y = data.data();
    u = y + static_cast<size_t>(pitch) * out.height;
    v = u + static_cast<size_t>(chromaPitch) * (out.height / 2);
  }
  int32_t pitch, chromaPitch;
  Buffer data;
  uint8_t* y;
  uint8_t* u;
  uint8_t* v;
};

Size doubled(Size s, const Doubling& d) { return {s.width * d.widthFactor, s.height * 2}; }

#if YUVBLIT_BENCH_HAVE_LIBYUV
void register_libyuv(const Doubling& d, libyuv::FilterMode filter, const char* filterName) {
  register_sizes(std::string("libyuv_I420Scale_") + filterName + "_" + d.suffix, d.planar,
                 [d, filter](Size size, benchmark::State&) -> Body {
                   auto src = std::make_shared<PlanarFrame>(size, 1234u);
                   const Size out = doubled(size, d);
                   auto dst = std::make_shared<DoubledPlanes>(out);
                   return [src, dst, size, out, filter]() {
                     libyuv::I420Scale(src->y, src->pitch, src->u, src->chromaPitch, src->v,
                                       src->chromaPitch, size.width, size.height, dst->y,
                                       dst->pitch, dst->u, dst->chromaPitch, dst->v,
                                       dst->chromaPitch, out.width, out.height, filter);
                   };
                 });
  register_sizes(std::string("libyuv_ScalePlane_") + filterName + "_" + d.suffix, d.plane,
                 [d, filter](Size size, benchmark::State&) -> Body {
                   auto src = std::make_shared<PlanarFrame>(size, 1234u);
                   const Size out = doubled(size, d);
                   auto dst = std::make_shared<DoubledPlanes>(out);
                   return [src, dst, size, out, filter]() {
                     libyuv::ScalePlane(src->y, src->pitch, size.width, size.height, dst->y,
                                        dst->pitch, out.width, out.height, filter);
                   };
                 });
}

// A converter from 4:2:0 planes to a display surface, as libyuv declares
// them, and the surface it writes per source picture doubled vertically.
using Converter = int (*)(const uint8_t*, int, const uint8_t*, int, const uint8_t*, int,
                          uint8_t*, int, int, int);
struct DoubledSurface {
  const char* converter;
  Converter convert;
  Format format;
};

void register_libyuv_two_pass(const DoubledSurface& target) {
  register_sizes(std::string("libyuv_bilinear_1x2_then_") + target.converter, target.format,
                 [target](Size size, benchmark::State&) -> Body {
                   auto src = std::make_shared<PlanarFrame>(size, 1234u);
                   const Size out = doubled(size, kDoublings[0]);
                   auto planes = std::make_shared<DoubledPlanes>(out);
                   auto dst = std::make_shared<Surface>(size, target.format);
                   return [src, planes, dst, size, out, target]() {
                     DoubledPlanes& p = *planes;
                     libyuv::I420Scale(src->y, src->pitch, src->u, src->chromaPitch, src->v,
                                       src->chromaPitch, size.width, size.height, p.y,
                                       p.pitch, p.u, p.chromaPitch, p.v, p.chromaPitch,
                                       out.width, out.height, libyuv::kFilterBilinear);
                     target.convert(p.y, p.pitch, p.u, p.chromaPitch, p.v, p.chromaPitch,
                                    dst->data.data(), dst->pitch, out.width, out.height);
                   };
                 });
}
#endif

#if YUVBLIT_BENCH_HAVE_SWSCALE
void register_swscale_bicubic(const Doubling& d) {
  register_sizes(std::string("swscale_bicubic_") + d.suffix, d.planar,
                 [d](Size size, benchmark::State& state) -> Body {
                   av_log_set_level(AV_LOG_ERROR);
                   auto src = std::make_shared<PlanarFrame>(size, 1234u);
                   const Size out = doubled(size, d);
                   auto dst = std::make_shared<DoubledPlanes>(out);
                   std::shared_ptr<SwsContext> ctx(
                       sws_getContext(size.width, size.height, AV_PIX_FMT_YUV420P, out.width,
                                      out.height, AV_PIX_FMT_YUV420P, SWS_BICUBIC, nullptr,
                                      nullptr, nullptr),
                       sws_freeContext);
                   if (!ctx) {
                     state.SkipWithError("sws_getContext failed");
                     return Body();
                   }
                   return [src, dst, ctx, size]() {
                     const uint8_t* planes[3] = {src->y, src->u, src->v};
                     const int strides[3] = {src->pitch, src->chromaPitch, src->chromaPitch};
                     uint8_t* const outPlanes[3] = {dst->y, dst->u, dst->v};
                     const int outStrides[3] = {dst->pitch, dst->chromaPitch, dst->chromaPitch};
                     sws_scale(ctx.get(), planes, strides, 0, size.height, outPlanes, outStrides);
                   };
                 });
}
#endif

}  // namespace

YUVBLIT_BENCHMARKS(doubling_peers) {
  for (const Doubling& d : kDoublings) {
#if YUVBLIT_BENCH_HAVE_LIBYUV
    register_libyuv(d, libyuv::kFilterBilinear, "bilinear");
    register_libyuv(d, libyuv::kFilterBox, "box");
#endif
#if YUVBLIT_BENCH_HAVE_SWSCALE
    register_swscale_bicubic(d);
#endif
    register_roofline_copy(d.planar);
    register_roofline_copy(d.plane);
  }
#if YUVBLIT_BENCH_HAVE_LIBYUV
  const DoubledSurface surfaces[] = {
      {"I420ToYUY2", libyuv::I420ToYUY2, {"yuy2_1x2", 32, 2}},
      {"I420ToARGB", libyuv::I420ToARGB, {"rgb32_1x2", 64, 2}},
      {"I420ToRGB24", libyuv::I420ToRGB24, {"rgb24_1x2", 48, 2}},
      {"I420ToRGB565", libyuv::I420ToRGB565, {"rgb16_1x2", 32, 2}},
  };
  for (const DoubledSurface& surface : surfaces) register_libyuv_two_pass(surface);
#endif
}
