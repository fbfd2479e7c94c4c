#include "bench_util.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <random>

namespace yuvblit_bench {

namespace {

constexpr size_t kAlign = 64;
constexpr size_t kPage = 4096;

size_t round_up(size_t v, size_t to) { return (v + to - 1) / to * to; }

// What a fresh surface holds (an unlikely run of output bytes).
constexpr uint8_t kSurfaceFill = 0x10;

}  // namespace

std::string size_name(Size s) {
  return std::to_string(s.width) + "x" + std::to_string(s.height);
}

// ------------------------------------------------------------------ buffers

void Buffer::Free::operator()(uint8_t* p) const { std::free(p); }

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
  const size_t lumaBytes = round_up(lumaRows * static_cast<size_t>(pitch), kAlign);
  const size_t chromaBytes =
      round_up(chromaRows * static_cast<size_t>(chromaPitch), kAlign);
  planes = Buffer(lumaBytes + 2 * chromaBytes);
  planes.fill_random(seed);
  y = planes.data();
  u = y + lumaBytes;
  v = u + chromaBytes;
}

int64_t Format::bytes_written(Size s) const {
  return int64_t{groups_per_row(s.width)} * bytesPerGroup * s.height *
         rowsPerPicRow;
}

Surface::Surface(Size s, const Format& format) {
  pitch = static_cast<int32_t>(round_up(
      static_cast<size_t>(groups_per_row(s.width) + 1) * format.bytesPerGroup,
      kAlign));
  rows = (static_cast<int32_t>(round_up(static_cast<size_t>(s.height), 2)) + 2) *
         format.rowsPerPicRow;
  data = Buffer(static_cast<size_t>(pitch) * static_cast<size_t>(rows),
                surface_offset());
  data.fill(kSurfaceFill);
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
                    Setup setup) {
  for (const Size size : kSizes) {
    const std::string full = name + "/" + size_name(size);
    benchmark::RegisterBenchmark(
        full.c_str(),
        [setup, output, size](benchmark::State& state) {
          const Body body = setup(size, state);
          if (!body) return;
          body();  // warm caches and page tables before timing
          for (auto _ : state) {
            body();
            benchmark::ClobberMemory();
          }
          set_rate_counters(state, size, output.bytes_written(size));
          state.SetLabel(output.name);
        })
        ->Unit(benchmark::kMicrosecond);
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

void register_planar_kernel(const char* name, Kernel9 kernel,
                            const Format& format, bool adjusting) {
  register_sizes(
      name, format,
      [kernel, format, adjusting](Size size, benchmark::State& state) -> Body {
        auto src = std::make_shared<PlanarFrame>(size, 1234u);
        auto dst = std::make_shared<Surface>(size, format);
        auto adjust = std::make_shared<tag_ajust_contrast_info>(
            bench_adjustment());
        if (adjusting) get_contrast_data(adjust.get());
        tag_ajust_contrast_info* arg = adjusting ? adjust.get() : nullptr;
        Body body = [kernel, src, dst, arg, size]() {
          kernel(src->y, src->u, src->v, dst->data.data(),
                 size.width, size.height, src->pitch, dst->pitch, arg);
        };
        // Kernels return early on sizes they refuse; timing that would
        // measure nothing.
        body();
        const uint8_t* row = dst->data.data();
        const size_t rowBytes =
            static_cast<size_t>(groups_per_row(size.width)) * format.bytesPerGroup;
        if (std::all_of(row, row + rowBytes,
                        [](uint8_t b) { return b == kSurfaceFill; })) {
          state.SkipWithError("kernel left the destination untouched");
          return Body();
        }
        return body;
      });
}

void register_roofline_copy(const Format& format) {
  register_sizes(
      std::string("roofline_copy/") + format.name, format,
      [format](Size size, benchmark::State&) -> Body {
        const size_t bytes = static_cast<size_t>(format.bytes_written(size));
        auto src = std::make_shared<Buffer>(bytes);
        auto dst = std::make_shared<Buffer>(bytes, surface_offset());
        src->fill_random(99u);
        dst->fill(0);
        return [src, dst, bytes]() {
          std::memcpy(dst->data(), src->data(), bytes);
        };
      });
}

}  // namespace yuvblit_bench
