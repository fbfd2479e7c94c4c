// Planar 4:2:0 frame onto YV12 surfaces (luma plane, then V, then U): the
// three kernels, libyuv I420Copy writing the same planes, and the copy
// roofline of the YV12 bytes (1.5 per pixel, 0.75 for the half-width
// kernel).
//
// Each kernel is called the way include/yuvblit.h says it places its
// planes, as the yuvblit tool's runners do:
//  - loadimage_yv12 copies a W-wide picture (W the padded width) only when
//    called with width 2W and srcPitch = dstPitch = W on a luma plane packed
//    W apart, and with the source's U plane straight after its V plane. It
//    copies chroma for `height` chroma rows (twice the plane), the V plane
//    starting at dst + height*W - 1; the destination is sized for that.
//  - loadimage_yv12_ajust reads its source planes packed (PlanarFrame rows
//    are: the padded width apart) and places the chroma planes from
//    lumaPlaneRows = rowsFromDestination = height.
//  - loadimage_half_yv12_ajust writes a W/2-wide picture.
// Entries report pixels/s over the source picture (W x H for all three).
//
//   bench/ratios.py run.json --peer 'loadimage_*yv12*=libyuv_I420Copy'
#include <algorithm>
#include <memory>

#include "bench_util.h"

#if YUVBLIT_BENCH_HAVE_LIBYUV
#include <libyuv/convert.h>
#endif

using namespace yuvblit_bench;

namespace {

size_t bytes(int64_t n) { return static_cast<size_t>(n); }

// A YV12 destination `lumaWidth` pixels wide: pitch has room for one group
// beyond the right edge (rounded up to 64 bytes); the V plane follows
// `height` luma rows, the U plane follows height/2 V rows of pitch/2, and a
// spare luma row follows the U plane. Starts surface_start() into a page,
// filled with kSurfaceFill.
struct Yv12Surface {
  Yv12Surface(int32_t lumaWidth, int32_t height) {
    pitch = (lumaWidth + kGroupPixels + 63) / 64 * 64;
    chromaPitch = pitch / 2;
    const int64_t lumaBytes = int64_t{height} * pitch;
    const int64_t chromaBytes = int64_t{height / 2} * chromaPitch;
    data = Buffer(bytes(lumaBytes + 2 * chromaBytes + pitch), surface_start());
    fill_surface(data);
    y = data.data();
    v = y + lumaBytes;
    u = v + chromaBytes;
  }

  int32_t pitch;
  int32_t chromaPitch;
  Buffer data;
  uint8_t* y;
  uint8_t* v;
  uint8_t* u;
};

// loadimage_yv12's one copying call (see the header comment above).
void register_loadimage_yv12() {
  register_sizes(
      "loadimage_yv12", kYv12,
      [](Size size, benchmark::State& state) -> Body {
        const int32_t w = groups_per_row(size.width) * kGroupPixels;
        const int32_t h = size.height;
        const int32_t cw = w / 2, ch = h / 2;
        // Luma: the picture and the two rows its last pair reads below it.
        auto luma = std::make_shared<Buffer>(bytes(int64_t{w} * (h + 2)));
        luma->fill_random(1234u);
        // Chroma: V plane, U plane, then the rows the U pass reads below
        // the U plane (it reads twice the plane height plus a row).
        auto chroma = std::make_shared<Buffer>(bytes(int64_t{cw} * (3 * ch + 2)));
        chroma->fill_random(4321u);
        uint8_t* srcV = chroma->data();
        uint8_t* srcU = srcV + int64_t{cw} * ch;
        // V plane one byte before the luma plane's end, U plane a quarter
        // luma plane after it; each chroma pass writes h + 1 chroma rows.
        const int64_t lumaBytes = int64_t{h} * w;
        const int64_t uOffset = lumaBytes - 1 + lumaBytes / 4;
        auto dst = std::make_shared<Buffer>(
            bytes(uOffset + int64_t{h + 2} * cw + 64), surface_start());
        fill_surface(*dst);
        auto record = std::make_shared<tag_ajust_contrast_info>(bench_adjustment());
        Body body = [luma, chroma, srcU, srcV, dst, record, w, h]() {
          loadimage_yv12(luma->data(), srcU, srcV, dst->data(), 2 * w, h, w, w,
                         record.get());
        };
        return checked_body(std::move(body), dst->data(), bytes(w), state);
      });
}

void register_loadimage_yv12_ajust() {
  register_sizes(
      "loadimage_yv12_ajust", kYv12,
      [](Size size, benchmark::State& state) -> Body {
        // PlanarFrame planes are packed rows of the padded width (chroma
        // half of it), which is what this kernel reads.
        auto src = std::make_shared<PlanarFrame>(size, 1234u);
        auto dst = std::make_shared<Yv12Surface>(src->pitch, size.height);
        auto record = std::make_shared<tag_ajust_contrast_info>(bench_adjustment());
        get_contrast_data(record.get());
        record->lumaPlaneRows = size.height;
        record->rowsFromDestination = size.height;
        Body body = [src, dst, record, size]() {
          loadimage_yv12_ajust(src->y, src->u, src->v, dst->y, size.width,
                               size.height, src->pitch, dst->pitch,
                               record.get());
        };
        return checked_body(std::move(body), dst->y, bytes(src->pitch), state);
      });
}

void register_loadimage_half_yv12_ajust() {
  register_sizes(
      "loadimage_half_yv12_ajust", kHalfYv12,
      [](Size size, benchmark::State& state) -> Body {
        auto src = std::make_shared<PlanarFrame>(size, 1234u);
        // Rows of fewer than 32 pixels would drift (see the header); both
        // benchmark sizes are far wider.
        const int32_t w = std::max(src->pitch, 2 * kGroupPixels);
        auto dst = std::make_shared<Yv12Surface>(w / 2, size.height);
        auto record = std::make_shared<tag_ajust_contrast_info>(bench_adjustment());
        get_contrast_data(record.get());
        Body body = [src, dst, record, size, w]() {
          loadimage_half_yv12_ajust(src->y, src->u, src->v, dst->y, w,
                                    size.height, src->pitch, dst->pitch,
                                    record.get());
        };
        return checked_body(std::move(body), dst->y, bytes(w / 2), state);
      });
}

#if YUVBLIT_BENCH_HAVE_LIBYUV
void register_libyuv_i420_copy() {
  register_sizes(
      "libyuv_I420Copy", kYv12,
      [](Size size, benchmark::State&) -> Body {
        auto src = std::make_shared<PlanarFrame>(size, 1234u);
        auto dst = std::make_shared<Yv12Surface>(src->pitch, size.height);
        return [src, dst, size]() {
          libyuv::I420Copy(src->y, src->pitch, src->u, src->chromaPitch,
                           src->v, src->chromaPitch, dst->y, dst->pitch,
                           dst->u, dst->chromaPitch, dst->v, dst->chromaPitch,
                           size.width, size.height);
        };
      });
}
#endif

}  // namespace

YUVBLIT_BENCHMARKS(planar_to_yv12) {
  register_loadimage_yv12();
  register_loadimage_yv12_ajust();
  register_loadimage_half_yv12_ajust();
#if YUVBLIT_BENCH_HAVE_LIBYUV
  register_libyuv_i420_copy();
#endif
  register_roofline_copy(kYv12);
  register_roofline_copy(kHalfYv12);
}
