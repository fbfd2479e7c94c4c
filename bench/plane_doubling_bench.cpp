// Doubling single planes and YV12 pictures: the luma plane alone through
// strech_pic_1X2_adjust, strech_pic_2X2 and strech_pic_2X2_adjust, and all
// three planes through the YV12 kernels, with the copy roofline of the
// doubled output. Entries report pixels/s over the source picture; the
// output has 2x (1X2) or 4x (2X2) as many.
//
// The kernels are called as a host would: the source planes packed (the
// frames' pitch is the width at both sizes, which strech_pic_2X2_adjust
// reads as it is), the destination pitch the doubled width, so that the
// end-of-plane copies fill the last two lines.
#include <memory>

#include "bench_util.h"

using namespace yuvblit_bench;

namespace {

size_t bytes(int64_t n) { return static_cast<size_t>(n); }

// The doubled outputs, as the doubling peers name them.
constexpr Format kPlane1x2{"plane_1x2", 16, 2};
constexpr Format kPlane2x2{"plane_2x2", 32, 2};
constexpr Format kYv12_1x2{"yv12_1x2", 24, 2};
constexpr Format kYv12_2x2{"yv12_2x2", 48, 2};

// A doubled destination: 2 * height lines of `pitch` bytes (YV12: then the
// V and U planes of height lines at pitch / 2) and two spare lines, which
// strech_pic_2X2 writes below its last line.
struct DoubledSurface {
  DoubledSurface(int32_t pitch, int32_t height, bool yv12)
      : pitch(pitch),
        data(bytes(int64_t{pitch} * (2 * height + 2) * (yv12 ? 3 : 2) / 2), surface_start()) {
    fill_surface(data);
  }
  int32_t pitch;
  Buffer data;
};

using PlaneKernel = void (*)(unsigned char*, unsigned char*, int32_t, int32_t, int32_t, int32_t,
                             tag_ajust_contrast_info*, int32_t);

void register_plane(const char* name, PlaneKernel kernel, int32_t widthFactor,
                    const Format& format) {
  register_sizes(name, format,
                 [kernel, widthFactor](Size size, benchmark::State& state) -> Body {
                   auto src = std::make_shared<PlanarFrame>(size, 1234u);
                   auto dst = std::make_shared<DoubledSurface>(widthFactor * size.width,
                                                               size.height, false);
                   auto record = kernel_record(true);
                   Body body = [kernel, src, dst, record, size]() {
                     kernel(src->y, dst->data.data(), size.width, size.height, src->pitch,
                            dst->pitch, record.get(), 1);
                   };
                   return checked_body(std::move(body), dst->data.data(), bytes(dst->pitch),
                                       state);
                 });
}

void strech_pic_2X2_as_plane_kernel(unsigned char* src, unsigned char* dst, int32_t width,
                                    int32_t height, int32_t srcPitch, int32_t dstPitch,
                                    tag_ajust_contrast_info*, int32_t) {
  strech_pic_2X2(src, dst, width, height, srcPitch, dstPitch);
}

void register_yv12(const char* name, Kernel9 kernel, int32_t widthFactor, const Format& format) {
  register_sizes(name, format,
                 [kernel, widthFactor](Size size, benchmark::State& state) -> Body {
                   auto src = std::make_shared<PlanarFrame>(size, 1234u);
                   auto dst = std::make_shared<DoubledSurface>(widthFactor * size.width,
                                                               size.height, true);
                   auto record = kernel_record(true);
                   Body body = [kernel, src, dst, record, size]() {
                     kernel(src->y, src->u, src->v, dst->data.data(), size.width, size.height,
                            src->pitch, dst->pitch, record.get());
                   };
                   return checked_body(std::move(body), dst->data.data(), bytes(dst->pitch),
                                       state);
                 });
}

}  // namespace

YUVBLIT_BENCHMARKS(plane_doubling) {
  register_plane("strech_pic_1X2_adjust", strech_pic_1X2_adjust, 1, kPlane1x2);
  register_plane("strech_pic_2X2", strech_pic_2X2_as_plane_kernel, 2, kPlane2x2);
  register_plane("strech_pic_2X2_adjust", strech_pic_2X2_adjust, 2, kPlane2x2);
  register_yv12("strech_picture_1X2_yv12_ajust", strech_picture_1X2_yv12_ajust, 1, kYv12_1x2);
  register_yv12("strech_picture_2X2_yv12_ajust", strech_picture_2X2_yv12_ajust, 2, kYv12_2x2);
  for (const Format& f : {kPlane1x2, kPlane2x2, kYv12_1x2, kYv12_2x2}) register_roofline_copy(f);
}
