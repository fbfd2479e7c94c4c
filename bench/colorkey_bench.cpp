// Colour-key kernels: the three rectangle fills and the mask replacement,
// their peers and the store rooflines.
//
// The fills write the key into a whole picture-sized surface (row pairs of
// 16-pixel steps); the mask replacement runs over the bytes of an RGB32
// surface (width x 4 bytes per row) with a mask plane of the same geometry
// that selects about half of them.
//
// Peers (libyuv): ARGBRect fills a rectangle with a 32-bit value (RGB32
// exactly; RGB16 as a rectangle of half the width with the key twice in
// each value); SetPlane fills width x bytes-per-pixel bytes per row with
// one byte (a grey key, any width). Rooflines: memset of the bytes a fill
// writes (roofline_memset/<format>, the store-only bound) and memcpy of them
// (roofline_copy/<format>). The mask replacement reads two planes and
// writes one, so its bound is the copy; libyuv has no analogue.
//
//   bench/ratios.py run.json --only 'LoadColorKey*' --only 'Relace*'
//       --peer 'LoadColorKeyRgb32=libyuv_ARGBRect/rgb32'
//       --peer 'LoadColorKeyRgb24=libyuv_SetPlane/rgb24'
//       --peer 'LoadColorKeyRgb16=libyuv_ARGBRect/rgb16'
//       --peer 'RelaceMaskWithColorKey=roofline_copy/rgb32'
//   and against the store bound:
//       --peer 'LoadColorKeyRgb32=roofline_memset/rgb32' (likewise rgb24, rgb16)
#include <cstring>
#include <memory>
#include <string>

#include "bench_util.h"

#if YUVBLIT_BENCH_HAVE_LIBYUV
#include <libyuv/planar_functions.h>
#endif

using namespace yuvblit_bench;

namespace {

using FillKernel = void (*)(uint32_t, void*, int32_t, int32_t, int32_t, int32_t);

// Magenta, as a host keys its overlay surfaces.
constexpr uint32_t kKey = 0x00FF00FFu;
constexpr uint32_t kKey16 = 0xF81Fu;

size_t bytes(int64_t n) { return static_cast<size_t>(n); }

void register_fill(const char* name, FillKernel kernel, const Format& format, uint32_t key) {
  register_sizes(name, format, [kernel, format, key](Size size, benchmark::State& state) -> Body {
    auto dst = std::make_shared<Surface>(size, format);
    Body body = [kernel, dst, size, key]() {
      kernel(key, dst->data.data(), size.width, size.height, 0, dst->pitch);
    };
    return checked_body(std::move(body), dst->data.data(), bytes(format.bytes_per_row(size.width)),
                        state);
  });
}

// The mask: runs of 0 and 1 of varying length, matched against 1.
void register_mask_replacement() {
  register_sizes("RelaceMaskWithColorKey", kRgb32, [](Size size, benchmark::State& state) -> Body {
    auto dst = std::make_shared<Surface>(size, kRgb32);
    auto mask = std::make_shared<Surface>(size, kRgb32);
    uint8_t* m = mask->data.data();
    for (size_t i = 0; i < mask->data.size(); ++i) m[i] = ((i * 7) / 97 + i / 1531) & 1;
    const int32_t rowBytes = 4 * size.width;
    Body body = [dst, mask, size, rowBytes]() {
      RelaceMaskWithColorKey(dst->data.data(), mask->data.data(), 1, 0x00, rowBytes, dst->pitch,
                             size.height);
    };
    return checked_body(std::move(body), dst->data.data(), bytes(kRgb32.bytes_per_row(size.width)),
                        state);
  });
}

// roofline_memset/<format>: memset of the bytes a kernel writing `format`
// produces.
void register_roofline_memset(const Format& format) {
  register_sizes(std::string("roofline_memset/") + format.name, format,
                 [format](Size size, benchmark::State&) -> Body {
                   const size_t n = bytes(format.bytes_written(size));
                   auto dst = std::make_shared<Buffer>(n, surface_start());
                   dst->fill(0);
                   return [dst, n]() { std::memset(dst->data(), 0x5A, n); };
                 });
}

#if YUVBLIT_BENCH_HAVE_LIBYUV
// libyuv_ARGBRect/<format>: the surface's rows filled with a 32-bit value,
// width x bytes-per-pixel / 4 values per row.
void register_argb_rect(const Format& format, int32_t bytesPerPixel, uint32_t value) {
  register_sizes(std::string("libyuv_ARGBRect/") + format.name, format,
                 [format, bytesPerPixel, value](Size size, benchmark::State&) -> Body {
                   auto dst = std::make_shared<Surface>(size, format);
                   return [dst, size, bytesPerPixel, value]() {
                     libyuv::ARGBRect(dst->data.data(), dst->pitch, 0, 0,
                                      size.width * bytesPerPixel / 4, size.height, value);
                   };
                 });
}

// libyuv_SetPlane/<format>: the surface's rows filled with one byte.
void register_set_plane(const Format& format, int32_t bytesPerPixel) {
  register_sizes(std::string("libyuv_SetPlane/") + format.name, format,
                 [format, bytesPerPixel](Size size, benchmark::State&) -> Body {
                   auto dst = std::make_shared<Surface>(size, format);
                   return [dst, size, bytesPerPixel]() {
                     libyuv::SetPlane(dst->data.data(), dst->pitch, size.width * bytesPerPixel,
                                      size.height, 0x10);
                   };
                 });
}
#endif

}  // namespace

YUVBLIT_BENCHMARKS(colorkey) {
  register_fill("LoadColorKeyRgb32", LoadColorKeyRgb32, kRgb32, kKey);
  register_fill("LoadColorKeyRgb24", LoadColorKeyRgb24, kRgb24, kKey);
  register_fill("LoadColorKeyRgb16", LoadColorKeyRgb16, kRgb16, kKey16);
  register_mask_replacement();
#if YUVBLIT_BENCH_HAVE_LIBYUV
  register_argb_rect(kRgb32, 4, kKey);
  register_argb_rect(kRgb16, 2, kKey16 * 0x10001u);
  for (const auto& [format, bpp] : {std::pair{&kRgb32, 4}, {&kRgb24, 3}, {&kRgb16, 2}})
    register_set_plane(*format, bpp);
#endif
  for (const Format* format : {&kRgb32, &kRgb24, &kRgb16}) {
    register_roofline_memset(*format);
    register_roofline_copy(*format);
  }
}
