// Packed YUY2 pictures doubled in both directions onto YUY2: both kernels
// (source rows packed, width bytes apart, as they require) and the copy
// roofline of their output. Peers: the doubling peers (libyuv I420Scale
// bilinear to twice the size).
#include <memory>

#include "bench_util.h"

using namespace yuvblit_bench;

namespace {

constexpr Format kYuy2Doubled2x2{"yuy2_2x2", 64, 2};

using PackedDoubler = void (*)(void* src, void* srcU, void* srcV, void* dst, int32_t width,
                               int32_t height, int32_t dstPitch, tag_ajust_contrast_info* adjust);

void plain(void* src, void* srcU, void* srcV, void* dst, int32_t width, int32_t height,
           int32_t dstPitch, tag_ajust_contrast_info*) {
  yuy2_strech_picture_2X2_yuy2(src, srcU, srcV, dst, width, height, dstPitch);
}

void register_packed_doubler(const char* name, PackedDoubler kernel, bool adjusting) {
  register_sizes(name, kYuy2Doubled2x2, [kernel, adjusting](Size size, benchmark::State& state) {
    const int32_t rowBytes = 2 * size.width;
    auto src = std::make_shared<Buffer>(static_cast<size_t>(rowBytes) * (size.height + 1));
    src->fill_random(1234u);
    auto dst = std::make_shared<Surface>(size, kYuy2Doubled2x2);
    auto record = kernel_record(adjusting);
    Body body = [kernel, src, dst, record, size, rowBytes]() {
      kernel(src->data(), nullptr, nullptr, dst->data.data(), rowBytes, size.height, dst->pitch,
             record.get());
    };
    return checked_body(std::move(body), dst->data.data(), static_cast<size_t>(2 * rowBytes),
                        state);
  });
}

}  // namespace

YUVBLIT_BENCHMARKS(packed_doubling) {
  register_packed_doubler("yuy2_strech_picture_2X2_yuy2", plain, false);
  register_packed_doubler("yuy2_strech_picture_2X2_yuy2_ajust", yuy2_strech_picture_2X2_yuy2_ajust,
                          true);
  register_roofline_copy(kYuy2Doubled2x2);
}
