// Shared pieces of the kernel benchmarks: frame and surface allocation,
// rate counters, per-size registration and the memory-copy roofline.
//
// A family's bench file registers its kernels at static-initialisation time
// (formats shared by several families, such as kRgb32, are declared below):
//
//   YUVBLIT_BENCHMARKS(planar_to_rgb) {
//     register_planar_kernel("loadimage_rgb32", loadimage_rgb32, kRgb32, false);
//     register_roofline_copy(kRgb32);
//   }
//
// A peer or a kernel with its own set-up uses register_sizes() with a Setup
// that allocates its buffers and returns the per-frame body (checked_body()
// applies the untouched-destination check to it).
//
// Every entry is named <name>/<width>x<height>/<placement> (both placements,
// see Placement) and reports pixels/s over
// width x height, plus bytes_per_second over the bytes the kernel writes, so
// a kernel, its peers and the copy roofline can be compared line by line
// (bench/ratios.py turns a JSON run into that table, with --peer giving
// each kernel its own peer).
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "yuvblit.h"

namespace yuvblit_bench {

// ------------------------------------------------------------------ sizes

struct Size {
  int32_t width;
  int32_t height;
};

// The picture sizes every kernel is measured at.
inline constexpr Size kSizes[] = {{720, 480}, {1920, 1080}};

std::string size_name(Size s);  // "720x480"

// ------------------------------------------------------------------ buffers

// Where a benchmark's buffers sit relative to 4 KiB pages. Where loads and
// stores fall at the same offset within a page, a CPU can take a load as
// waiting on an unrelated store (4K aliasing), so every entry is measured
// in both placements:
//   kStaggered  each buffer starts at its own offset within a page, planes
//               laid out inside one buffer follow each other on 64 bytes;
//   kPage       every buffer and every plane starts on a page, as hosts'
//               allocators usually hand out frames and surfaces.
enum class Placement { kStaggered, kPage };
const char* placement_name(Placement p);  // "staggered", "page"
Placement current_placement();  // of the entry being set up

// Bytes a plane laid out inside a larger buffer takes before the next one:
// rounded up to 64 bytes, or to a page in the page placement.
size_t plane_bytes(size_t bytes);

// Heap bytes starting `offset` bytes into a fresh page; without an offset,
// where the current placement puts the entry's next buffer. Placing every
// buffer explicitly gives every kernel and peer the same layout in every
// run, whatever the heap did before.
class Buffer {
 public:
  Buffer() = default;
  explicit Buffer(size_t bytes);
  Buffer(size_t bytes, size_t offset);
  uint8_t* data() const { return data_; }
  size_t size() const { return size_; }
  void fill_random(uint32_t seed);
  void fill(uint8_t value);

 private:
  struct Free {
    void operator()(uint8_t* p) const;
  };
  std::unique_ptr<uint8_t, Free> base_;
  uint8_t* data_ = nullptr;
  size_t size_ = 0;
};

// Added to where a destination surface starts within its page (0 unless
// changed by yuvblit_bench --surface_offset=N).
size_t surface_offset();
void set_surface_offset(size_t bytes);
// Where the entry's next destination surface starts within its page: the
// placement's offset plus surface_offset().
size_t surface_start();

// Kernels work in groups of 16 pixels.
inline constexpr int32_t kGroupPixels = 16;
inline int32_t groups_per_row(int32_t width) {
  return width <= kGroupPixels ? 1 : (width + kGroupPixels - 1) / kGroupPixels;
}

// A planar 4:2:0 source with random samples, laid out as decoders commonly
// hand frames over: one block holding the Y, U and V planes in turn, placed
// as the entry's placement says (plane_bytes()). The luma pitch covers whole 16-pixel
// groups (chroma pitch is half of it) and every plane has a spare row below
// the picture, so kernels that round width and height up to whole groups
// and row pairs stay inside the allocation.
struct PlanarFrame {
  PlanarFrame(Size size, uint32_t seed);

  Size size;
  int32_t pitch;        // luma bytes per row
  int32_t chromaPitch;  // pitch / 2
  Buffer planes;
  uint8_t* y;
  uint8_t* u;
  uint8_t* v;
};

// A packed destination format, described per 16-pixel group of source
// pixels.
struct Format {
  const char* name;        // used in roofline entry names
  int32_t bytesPerGroup;   // bytes one row of one group writes
  int32_t rowsPerPicRow;   // destination rows per source row (1, or 2 when
                           // stretching vertically)
  // Bytes one destination row of a `width`-pixel picture, rounded to whole
  // groups.
  int64_t bytes_per_row(int32_t width) const;
  // Bytes a width x height picture writes, rows rounded to whole groups.
  int64_t bytes_written(Size s) const;
};

inline constexpr Format kYuy2{"yuy2", 32, 1};
inline constexpr Format kHalfYuy2{"half_yuy2", 16, 1};
// RGB surfaces: 4, 3 and 2 bytes per pixel.
inline constexpr Format kRgb32{"rgb32", 64, 1};
inline constexpr Format kRgb24{"rgb24", 48, 1};
inline constexpr Format kRgb16{"rgb16", 32, 1};
// YV12 pictures counted as the bytes of all three planes per 16 pixels of a
// row: 16 luma + 4 V + 4 U bytes (1.5 per pixel), or half of that for the
// half-width kernel.
inline constexpr Format kYv12{"yv12", 24, 1};
inline constexpr Format kHalfYv12{"half_yv12", 12, 1};
// The colour planes of an AYUY2 subpicture: Y, plus U and V at one sample
// per pixel pair on every row (2 bytes per pixel); and an alpha plane alone
// (1 byte per pixel).
inline constexpr Format kAyuy2Colour{"ayuy2_yuv", 32, 1};
inline constexpr Format kAlphaPlane{"alpha", 16, 1};

// A destination surface for `format`: pitch has room for one group beyond
// the right edge (rounded up to 64 bytes), and there is one row pair of
// spare rows below the picture. It starts surface_start() into a page. Filled with a constant so first-touch page
// faults stay out of the timed loop.
struct Surface {
  Surface(Size size, const Format& format);

  int32_t pitch;
  int32_t rows;
  Buffer data;
};

// What Surface (and any destination a bench fills with fill_surface())
// holds before a kernel runs.
inline constexpr uint8_t kSurfaceFill = 0x10;
void fill_surface(Buffer& buffer);

// True when all `bytes` bytes at p still hold kSurfaceFill: a kernel that
// returned early on a size it refuses.
bool left_untouched(const uint8_t* p, size_t bytes);

// A packed YUY2 source (Y0 U Y1 V per pixel pair) with random samples in one
// page-aligned block. Rows cover whole 16-pixel groups and there is a spare
// row below the picture (rows rounded up to whole row pairs), like
// PlanarFrame.
struct PackedYuy2Frame {
  PackedYuy2Frame(Size size, uint32_t seed);

  Size size;
  int32_t pitchPixels;  // srcPitch as the packed kernels take it
  int32_t pitchBytes;   // 2 * pitchPixels
  Buffer data;
};

// Where an overlay (a menu, captions) is drawn on a picture: rectangles,
// given as fractions of the picture's width and height, whose alpha ramps up
// from their edges to 16 (opaque) over softEdge pixels; alpha 0
// (transparent) everywhere else.
struct OverlayRect {
  double left, top, right, bottom;
};
struct OverlayShape {
  const char* name;  // the entry-name part that tells overlays apart
  std::vector<OverlayRect> rects;
  int32_t softEdge;
  // Alpha 0..16 of pixel (x, y) of a `size` picture.
  uint8_t alpha(Size size, int32_t x, int32_t y) const;
};

// The overlays the subpicture benchmarks use: a menu (a title bar and a
// column of four buttons, about 14% of the picture) and one covering the
// whole picture, softening towards its edges.
extern const OverlayShape kMenuOverlay;
extern const OverlayShape kOpaqueOverlay;

// An AYUY2 subpicture, laid out like PlanarFrame (one page-aligned block,
// planes starting on 64 bytes, subPitch covering whole 16-pixel groups):
// alpha and Y planes with rows subPitch apart, U and V planes with one
// sample per pixel pair on every row, rows subPitch/2 apart. Rows are
// rounded up to whole groups of four (what the interlaced mixers write),
// plus a spare row. Y, U and V are random; the alpha plane holds `shape`
// over the whole allocation (pad columns and rows included).
struct SubpictureFrame {
  SubpictureFrame(Size size, const OverlayShape& shape, uint32_t seed);

  Size size;
  int32_t subPitch;
  int32_t rows;  // allocated rows of every plane
  Buffer planes;
  uint8_t* alpha;
  uint8_t* y;
  uint8_t* u;
  uint8_t* v;
};

// ------------------------------------------------------------------ counters

// Sets pixels/s (width x height per iteration) and bytes_per_second (bytes
// the kernel writes per iteration). Call after the timed loop.
void set_rate_counters(benchmark::State& state, Size size,
                       int64_t bytesWritten);

// ------------------------------------------------------------------ registration

// Runs one frame. Built by a Setup outside the timed loop; owns or shares
// whatever buffers it touches. A Setup that finds something wrong calls
// state.SkipWithError() and returns an empty Body.
using Body = std::function<void()>;
using Setup = std::function<Body(Size, benchmark::State& state)>;

// Registers `name`/WxH for every size in kSizes. Each run calls setup(size)
// once, untimed, then times body() per iteration. `output` is what one run
// writes: it feeds bytes_per_second and labels the entry with format.name,
// which ties the entry to roofline_copy/<format.name> in bench/ratios.py.
// A non-empty `note` is appended to the label as "<format.name>; <note>"
// (bench/ratios.py reads the format up to the semicolon and shows the note).
void register_sizes(const std::string& name, const Format& output,
                    Setup setup, const char* note = nullptr);

// The nine-argument kernel signature.
using Kernel9 = void (*)(void* srcY, void* srcU, void* srcV, void* dst,
                         int32_t width, int32_t height, int32_t srcPitch,
                         int32_t dstPitch, tag_ajust_contrast_info* adjust);

// For Setups: runs `body` once, then returns it, or, when the `bytes` bytes
// at firstRow (the start of the destination's first row) still hold
// kSurfaceFill, reports "kernel left the destination untouched" as the
// entry's error and returns an empty Body. Kernels return early on sizes
// they refuse; timing that would measure nothing.
Body checked_body(Body body, const uint8_t* firstRow, size_t bytes,
                  benchmark::State& state);

// A picture adjustment that changes every sample (gains away from 64,
// offsets away from 0), loaded with get_contrast_data() before adjusting
// kernels run.
tag_ajust_contrast_info bench_adjustment();

// The record every registered kernel is passed: bench_adjustment() (its
// rgb16Layout 0, 5-6-5), loaded into the library's constants when
// `adjusting`.
std::shared_ptr<tag_ajust_contrast_info> kernel_record(bool adjusting);

// Registers a planar 4:2:0 source kernel writing `format`, one entry per
// size. Every kernel is passed a bench_adjustment() record (rgb16Layout 0,
// 5-6-5, for the RGB16 kernels, which read it whether or not they adjust);
// for adjusting kernels it is loaded with get_contrast_data() before
// timing. An entry whose kernel leaves its first destination row untouched
// is reported as an error rather than timed.
void register_planar_kernel(const char* name, Kernel9 kernel,
                            const Format& format, bool adjusting);

// The same for a packed YUY2 source kernel (PackedYuy2Frame, srcPitch in
// pixels, srcU and srcV null) writing `format` onto a Surface. `note` as
// for register_sizes().
void register_packed_yuy2_kernel(const char* name, Kernel9 kernel,
                                 const Format& format, bool adjusting,
                                 const char* note = nullptr);

// Registers roofline_copy/<format.name>/WxH: memcpy of the bytes a kernel
// writing `format` produces, from a source buffer of that size. Families
// sharing a format may each register it; only the first call registers.
void register_roofline_copy(const Format& format);

}  // namespace yuvblit_bench

// Declares a registration function run once at start-up.
#define YUVBLIT_BENCHMARKS(family)                                        \
  static void yuvblit_register_##family();                                \
  [[maybe_unused]] static const bool yuvblit_registered_##family =        \
      (yuvblit_register_##family(), true);                                \
  static void yuvblit_register_##family()
