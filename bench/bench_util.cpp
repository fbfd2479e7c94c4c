#include "bench_util.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <random>
#include <set>

namespace yuvblit_bench {

namespace {

constexpr size_t kAlign = 64;
constexpr size_t kPage = 4096;

size_t round_up(size_t v, size_t to) { return (v + to - 1) / to * to; }

}  // namespace

std::string size_name(Size s) {
  return std::to_string(s.width) + "x" + std::to_string(s.height);
}

// ------------------------------------------------------------------ buffers

void Buffer::Free::operator()(uint8_t* p) const { std::free(p); }

namespace {
Placement g_placement = Placement::kStaggered;
size_t g_buffersPlaced = 0;  // of the entry being set up

// Sets the placement of the entry about to be set up.
void begin_setup(Placement p) {
  g_placement = p;
  g_buffersPlaced = 0;
}

// Staggered buffers start 1344 bytes (21 cache lines) apart within a page,
// so that no two of one entry share an offset.
size_t next_offset() {
  if (g_placement == Placement::kPage) return 0;
  return (g_buffersPlaced++ * 1344) % kPage;
}
}  // namespace

const char* placement_name(Placement p) {
  return p == Placement::kPage ? "page" : "staggered";
}
Placement current_placement() { return g_placement; }

size_t plane_bytes(size_t bytes) {
  return round_up(bytes, g_placement == Placement::kPage ? kPage : kAlign);
}

Buffer::Buffer(size_t bytes) : Buffer(bytes, next_offset()) {}

Buffer::Buffer(size_t bytes, size_t offset) : size_(bytes) {
  void* p = std::aligned_alloc(kPage, round_up(offset + bytes + 1, kPage));
  if (p == nullptr) throw std::bad_alloc();
  base_.reset(static_cast<uint8_t*>(p));
  data_ = base_.get() + offset;
}

namespace {
size_t g_surfaceOffset = 0;
}  // namespace

size_t surface_offset() { return g_surfaceOffset; }
size_t surface_start() { return (next_offset() + g_surfaceOffset) % kPage; }
void set_surface_offset(size_t bytes) { g_surfaceOffset = bytes; }

void Buffer::fill_random(uint32_t seed) {
  std::mt19937 rng(seed);
  size_t i = 0;
  for (; i + 4 <= size_; i += 4) {
    const uint32_t r = rng();
    std::memcpy(data() + i, &r, 4);
  }
  for (; i < size_; ++i) data()[i] = static_cast<uint8_t>(rng());
}

void Buffer::fill(uint8_t value) { std::memset(data(), value, size_); }

PlanarFrame::PlanarFrame(Size s, uint32_t seed) : size(s) {
  pitch = groups_per_row(s.width) * kGroupPixels;
  chromaPitch = pitch / 2;
  // Whole row pairs, plus a spare row.
  const size_t lumaRows = round_up(static_cast<size_t>(s.height), 2) + 1;
  const size_t chromaRows = lumaRows / 2 + 1;
  const size_t lumaBytes = plane_bytes(lumaRows * static_cast<size_t>(pitch));
  const size_t chromaBytes = plane_bytes(chromaRows * static_cast<size_t>(chromaPitch));
  planes = Buffer(lumaBytes + 2 * chromaBytes);
  planes.fill_random(seed);
  y = planes.data();
  u = y + lumaBytes;
  v = u + chromaBytes;
}

PackedYuy2Frame::PackedYuy2Frame(Size s, uint32_t seed) : size(s) {
  pitchPixels = groups_per_row(s.width) * kGroupPixels;
  pitchBytes = 2 * pitchPixels;
  // Whole row pairs, plus a spare row.
  const size_t rows = round_up(static_cast<size_t>(s.height), 2) + 1;
  data = Buffer(rows * static_cast<size_t>(pitchBytes));
  data.fill_random(seed);
}

uint8_t OverlayShape::alpha(Size size, int32_t x, int32_t y) const {
  int32_t best = 0;
  for (const OverlayRect& r : rects) {
    const auto at = [](double f, int32_t n) {
      return static_cast<int32_t>(f * n + 0.5);
    };
    const int32_t x0 = at(r.left, size.width), x1 = at(r.right, size.width);
    const int32_t y0 = at(r.top, size.height), y1 = at(r.bottom, size.height);
    if (x < x0 || x >= x1 || y < y0 || y >= y1) continue;
    // Pixels from the nearest edge, 0 on the edge itself.
    const int32_t inside = std::min({x - x0, x1 - 1 - x, y - y0, y1 - 1 - y});
    const int32_t a = softEdge <= 0 ? 16 : (inside + 1) * 16 / softEdge;
    best = std::max(best, std::min(a, 16));
  }
  return static_cast<uint8_t>(best);
}

SubpictureFrame::SubpictureFrame(Size s, const OverlayShape& shape,
                                 uint32_t seed)
    : size(s) {
  subPitch = groups_per_row(s.width) * kGroupPixels;
  rows = static_cast<int32_t>(round_up(static_cast<size_t>(s.height), 4)) + 1;
  const size_t lumaBytes = plane_bytes(static_cast<size_t>(rows) * static_cast<size_t>(subPitch));
  const size_t chromaBytes =
      plane_bytes(static_cast<size_t>(rows) * static_cast<size_t>(subPitch / 2));
  planes = Buffer(2 * lumaBytes + 2 * chromaBytes);
  planes.fill_random(seed);
  alpha = planes.data();
  y = alpha + lumaBytes;
  u = y + lumaBytes;
  v = u + chromaBytes;
  for (int32_t row = 0; row < rows; ++row) {
    for (int32_t x = 0; x < subPitch; ++x) {
      alpha[static_cast<size_t>(row) * subPitch + x] = shape.alpha(s, x, row);
    }
  }
}

int64_t Format::bytes_per_row(int32_t width) const {
  return int64_t{groups_per_row(width)} * bytesPerGroup;
}

int64_t Format::bytes_written(Size s) const {
  return bytes_per_row(s.width) * s.height * rowsPerPicRow;
}

Surface::Surface(Size s, const Format& format) {
  pitch = static_cast<int32_t>(round_up(
      static_cast<size_t>(groups_per_row(s.width) + 1) * format.bytesPerGroup,
      kAlign));
  rows = (static_cast<int32_t>(round_up(static_cast<size_t>(s.height), 2)) + 2) *
         format.rowsPerPicRow;
  data = Buffer(static_cast<size_t>(pitch) * static_cast<size_t>(rows),
                surface_start());
  fill_surface(data);
}

void fill_surface(Buffer& buffer) { buffer.fill(kSurfaceFill); }

bool left_untouched(const uint8_t* p, size_t bytes) {
  return std::all_of(p, p + bytes, [](uint8_t b) { return b == kSurfaceFill; });
}

// ------------------------------------------------------------------ counters

void set_rate_counters(benchmark::State& state, Size size,
                       int64_t bytesWritten) {
  state.counters["pixels/s"] = benchmark::Counter(
      static_cast<double>(int64_t{size.width} * size.height),
      benchmark::Counter::kIsIterationInvariantRate);
  state.SetBytesProcessed(state.iterations() * bytesWritten);
}

// ------------------------------------------------------------------ registration

void register_sizes(const std::string& name, const Format& output,
                    Setup setup, const char* note) {
  std::string label = output.name;
  if (note != nullptr && *note != '\0') label += std::string("; ") + note;
  for (const Size size : kSizes) {
    for (const Placement placement : {Placement::kStaggered, Placement::kPage}) {
      const std::string full = name + "/" + size_name(size) + "/" + placement_name(placement);
      benchmark::RegisterBenchmark(
          full.c_str(),
          [setup, output, size, label, placement](benchmark::State& state) {
            begin_setup(placement);
            const Body body = setup(size, state);
            if (!body) return;
            body();  // warm caches and page tables before timing
            for (auto _ : state) {
              body();
              benchmark::ClobberMemory();
            }
            set_rate_counters(state, size, output.bytes_written(size));
            state.SetLabel(label);
          })
          ->Unit(benchmark::kMicrosecond);
    }
  }
}

tag_ajust_contrast_info bench_adjustment() {
  tag_ajust_contrast_info info{};
  info.lumaGain = 80;
  info.chromaGain = 96;
  info.lumaOffset = -8;
  info.uOffset = 128 - 192;
  info.vOffset = 128 - 192;
  return info;
}

std::shared_ptr<tag_ajust_contrast_info> kernel_record(bool adjusting) {
  auto record = std::make_shared<tag_ajust_contrast_info>(bench_adjustment());
  if (adjusting) get_contrast_data(record.get());
  return record;
}

namespace {

size_t first_row_bytes(Size size, const Format& format) {
  return static_cast<size_t>(format.bytes_per_row(size.width));
}

}  // namespace

Body checked_body(Body body, const uint8_t* firstRow, size_t bytes,
                  benchmark::State& state) {
  body();
  if (left_untouched(firstRow, bytes)) {
    state.SkipWithError("kernel left the destination untouched");
    return Body();
  }
  return body;
}

void register_planar_kernel(const char* name, Kernel9 kernel,
                            const Format& format, bool adjusting) {
  register_sizes(
      name, format,
      [kernel, format, adjusting](Size size, benchmark::State& state) -> Body {
        auto src = std::make_shared<PlanarFrame>(size, 1234u);
        auto dst = std::make_shared<Surface>(size, format);
        auto record = kernel_record(adjusting);
        Body body = [kernel, src, dst, record, size]() {
          kernel(src->y, src->u, src->v, dst->data.data(),
                 size.width, size.height, src->pitch, dst->pitch, record.get());
        };
        return checked_body(std::move(body), dst->data.data(),
                            first_row_bytes(size, format), state);
      });
}

void register_packed_yuy2_kernel(const char* name, Kernel9 kernel,
                                 const Format& format, bool adjusting,
                                 const char* note) {
  register_sizes(
      name, format,
      [kernel, format, adjusting](Size size, benchmark::State& state) -> Body {
        auto src = std::make_shared<PackedYuy2Frame>(size, 1234u);
        auto dst = std::make_shared<Surface>(size, format);
        auto record = kernel_record(adjusting);
        Body body = [kernel, src, dst, record, size]() {
          kernel(src->data.data(), nullptr, nullptr, dst->data.data(),
                 size.width, size.height, src->pitchPixels, dst->pitch,
                 record.get());
        };
        return checked_body(std::move(body), dst->data.data(),
                            first_row_bytes(size, format), state);
      },
      note);
}

void register_roofline_copy(const Format& format) {
  static std::set<std::string> registered;
  if (!registered.insert(format.name).second) return;
  register_sizes(
      std::string("roofline_copy/") + format.name, format,
      [format](Size size, benchmark::State&) -> Body {
        const size_t bytes = static_cast<size_t>(format.bytes_written(size));
        auto src = std::make_shared<Buffer>(bytes);
        auto dst = std::make_shared<Buffer>(bytes, surface_start());
        src->fill_random(99u);
        dst->fill(0);
        return [src, dst, bytes]() {
          std::memcpy(dst->data(), src->data(), bytes);
        };
      });
}

const OverlayShape kMenuOverlay{"menu",
                                {{0.10, 0.08, 0.90, 0.16},
                                 {0.35, 0.40, 0.65, 0.46},
                                 {0.35, 0.50, 0.65, 0.56},
                                 {0.35, 0.60, 0.65, 0.66},
                                 {0.35, 0.70, 0.65, 0.76}},
                                4};
const OverlayShape kOpaqueOverlay{"opaque", {{0.0, 0.0, 1.0, 1.0}}, 4};

}  // namespace yuvblit_bench
