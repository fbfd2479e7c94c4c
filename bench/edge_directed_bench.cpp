// Edge-directed vertical doubling of a decoded frame onto YUY2, on a
// detailed picture (noise: every sub-group runs the direction search) and
// a flat one (every sub-group takes the plain average), and the copy
// roofline of the doubled output. Peers doubling 4:2:0 planes are in
// doubling_peers_bench.cpp.
#include <memory>

#include "bench_util.h"

using namespace yuvblit_bench;

namespace {

constexpr Format kYuy2Doubled{"yuy2_1x2", 32, 2};

// Soft horizontal ramps that change by at most one step from row to row.
void make_flat(PlanarFrame& f) {
  auto ramp = [](uint8_t* plane, int32_t pitch, int32_t rows) {
    for (int32_t r = 0; r < rows; ++r)
      for (int32_t x = 0; x < pitch; ++x)
        plane[static_cast<size_t>(r) * pitch + x] = static_cast<uint8_t>(64 + x % 97 + r / 16);
  };
  ramp(f.y, f.pitch, f.size.height + 1);
  ramp(f.u, f.chromaPitch, f.size.height / 2 + 1);
  ramp(f.v, f.chromaPitch, f.size.height / 2 + 1);
}

void register_picture(const char* picture, bool flat) {
  register_sizes(std::string("strech_opt_yuy2_ajust/") + picture, kYuy2Doubled,
                 [flat](Size size, benchmark::State& state) -> Body {
                   auto src = std::make_shared<PlanarFrame>(size, 1234u);
                   if (flat) make_flat(*src);
                   auto dst = std::make_shared<Surface>(size, kYuy2Doubled);
                   auto record = kernel_record(true);
                   auto frame = std::make_shared<tagVideoFrame>();
                   frame->lineMode = 0;
                   frame->lumaWidth = src->pitch;
                   frame->planeY = src->y;
                   frame->planeU = src->u;
                   frame->planeV = src->v;
                   return checked_body(
                       [src, dst, record, frame, size]() {
                         strech_opt_yuy2_ajust(frame.get(), 0, size.height, dst->data.data(),
                                               dst->pitch, record.get());
                       },
                       dst->data.data(), 2 * static_cast<size_t>(size.width), state);
                 });
}

}  // namespace

YUVBLIT_BENCHMARKS(edge_directed) {
  register_picture("detailed", false);
  register_picture("flat", true);
  register_roofline_copy(kYuy2Doubled);
}
