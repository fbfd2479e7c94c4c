#include "swscale_peer.h"

#include <memory>

#if YUVBLIT_BENCH_HAVE_SWSCALE
extern "C" {
#include <libavutil/log.h>
#include <libavutil/pixfmt.h>
#include <libswscale/swscale.h>
}
#endif

namespace yuvblit_bench {

void register_swscale_peer(const char* name, PeerSource source, PeerOutput output,
                           const Format& format) {
#if YUVBLIT_BENCH_HAVE_SWSCALE
  register_sizes(name, format, [=](Size size, benchmark::State& state) -> Body {
    av_log_set_level(AV_LOG_ERROR);
    const bool planar = source == PeerSource::kPlanar420;
    auto frame = planar ? std::make_shared<PlanarFrame>(size, 1234u) : nullptr;
    auto packed = planar ? nullptr : std::make_shared<PackedYuy2Frame>(size, 1234u);
    auto dst = std::make_shared<Surface>(size, format);
    std::shared_ptr<SwsContext> ctx(
        sws_getContext(size.width, size.height, planar ? AV_PIX_FMT_YUV420P : AV_PIX_FMT_YUYV422,
                       size.width, size.height, output == PeerOutput::kBgra ? AV_PIX_FMT_BGRA : AV_PIX_FMT_YUYV422,
                       SWS_POINT, nullptr, nullptr, nullptr),
        sws_freeContext);
    if (!ctx) {
      state.SkipWithError("sws_getContext failed");
      return Body();
    }
    return [frame, packed, dst, ctx, size]() {
      const uint8_t* planes[3] = {};
      int strides[3] = {};
      if (frame) {
        planes[0] = frame->y, planes[1] = frame->u, planes[2] = frame->v;
        strides[0] = frame->pitch, strides[1] = strides[2] = frame->chromaPitch;
      } else {
        planes[0] = packed->data.data();
        strides[0] = packed->pitchBytes;
      }
      uint8_t* const out[1] = {dst->data.data()};
      const int outStrides[1] = {dst->pitch};
      sws_scale(ctx.get(), planes, strides, 0, size.height, out, outStrides);
    };
  });
#else
  (void)name, (void)source, (void)output, (void)format;
#endif
}

}  // namespace yuvblit_bench
