#include "kernels.h"

#include <algorithm>
#include <cstring>
#include <ostream>
#include <sstream>
#include <stdexcept>

#include "errors.h"
#include "packing.h"
#include "subpicture.h"
#include "test_overlay.h"

namespace ybtool {
namespace {

constexpr int kGroupPixels = 16;
// Room beyond what a kernel is asked to write: bytes at the end of each
// surface row and whole rows below the surface.
constexpr int kSurfaceSlackBytes = 64;
constexpr int kSpareRows = 2;

int round_up(int v, int m) { return (v + m - 1) / m * m; }

// Copies a w x h plane into a padded one, repeating the last column and row.
void pad_plane(const uint8_t* src, int w, int h, uint8_t* dst, int pitch,
               int rows) {
  for (int r = 0; r < rows; ++r) {
    const uint8_t* s = src + static_cast<size_t>(std::min(r, h - 1)) * w;
    uint8_t* d = dst + static_cast<size_t>(r) * pitch;
    std::copy(s, s + w, d);
    std::fill(d + w, d + pitch, s[w - 1]);
  }
}

size_t offset_of(int rows, int pitch) {
  return static_cast<size_t>(rows) * static_cast<size_t>(pitch);
}

// The kernels take non-const pointers but only read their sources.
uint8_t* source_bytes(const std::vector<uint8_t>& p) {
  return const_cast<uint8_t*>(p.data());
}

// The record a kernel is handed, with the library's adjustment loaded from
// it when the kernel reads that.
tag_ajust_contrast_info load_record(const KernelInfo& kernel,
                                    const tag_ajust_contrast_info& adjust) {
  tag_ajust_contrast_info record = adjust;
  if (kernel.adjusts) get_contrast_data(&record);
  return record;
}

// Rows `rows` x `width` bytes of a plane with rows `pitch` apart, packed
// (rows `width` apart).
std::vector<uint8_t> packed_rows(const std::vector<uint8_t>& plane, int pitch,
                                 int width, int rows) {
  std::vector<uint8_t> out(offset_of(rows, width));
  for (int r = 0; r < rows; ++r)
    std::copy_n(plane.begin() + static_cast<std::ptrdiff_t>(offset_of(r, pitch)),
                width, out.begin() + static_cast<std::ptrdiff_t>(offset_of(r, width)));
  return out;
}

// Output pixels per source pixel, across and down.
int width_factor(Geometry g) { return g == Geometry::kDoubleBoth ? 2 : 1; }
int height_factor(Geometry g) {
  return g == Geometry::kDoubleHeight || g == Geometry::kDoubleBoth ? 2 : 1;
}

// A single-plane surface for a kernel writing whole 16-pixel groups (8 for
// the half-width ones, 32 for the ones doubling the width) over the run
// width and its rows (twice the run height for the doubling ones), with
// room to spare.
Surface group_surface(const KernelInfo& kernel, SurfaceFormat format,
                      const KernelSource& src) {
  int out_w = 0, out_h = 0;
  output_size(kernel, src.width, src.height, out_w, out_h);
  const int pixels_per_group = kernel.geometry == Geometry::kHalfWidth
                                   ? kGroupPixels / 2
                                   : kGroupPixels * width_factor(kernel.geometry);
  const int written = src.run_width / kGroupPixels * pixels_per_group *
                      surface_format_info(format).bytes_per_pixel;
  const int pitch = round_up(written + kSurfaceSlackBytes, 16);
  return make_marked_surface(format, out_w, out_h, pitch,
                             src.run_height * height_factor(kernel.geometry) + kSpareRows);
}

// Nine-argument planar kernels onto YUY2 and RGB: planes, destination, the
// run size, the source luma pitch and the destination pitch.
Surface run_planar9(const KernelInfo& kernel, const KernelSource& src,
                    const tag_ajust_contrast_info& adjust) {
  Surface surface = group_surface(kernel, surface_format(kernel, adjust), src);
  tag_ajust_contrast_info record = load_record(kernel, adjust);
  std::get<Kernel9>(kernel.entry)(
      source_bytes(src.y), source_bytes(src.u), source_bytes(src.v),
      surface.bytes.data(), src.run_width, src.run_height, src.pitch,
      surface.pitch, &record);
  return surface;
}

// loadimage_yv12. Its luma pass reads a row pair as `width` bytes and the
// `width` bytes after them, writes them `srcPitch` apart, moves the
// destination on by `width` a pair and the source by 2*srcPitch +
// 2*dstPitch - width. Only one call makes that a copy of a W-wide picture
// (W the run width): width 2W, both pitches W and a luma plane packed W
// apart. Each pass then writes rows 2k..2k+1 and 2k+1..2k+2; the later
// stores of the first run win over the second, so each row ends up with its
// own samples. Chroma then goes W/2 apart as usual, but for twice the plane
// height: the V plane's second half lands exactly on the U plane after the U
// rows were stored there, so the source keeps its U plane straight after
// its V plane (as in one YV12 frame) and those rows put the U plane back;
// the U plane's own extra rows fall below it. The V plane starts one byte
// early, on the luma plane's last byte.
Surface run_yv12_copy(const KernelInfo& kernel, const KernelSource& src,
                      const tag_ajust_contrast_info& adjust) {
  const int w = src.run_width, h = src.run_height;
  const int cw = w / 2, ch = h / 2;
  // Luma: two rows beyond the last pair are read. Chroma: V, U, then as
  // many rows again (plus one) as the U pass reads below its plane.
  const std::vector<uint8_t> y = packed_rows(src.y, src.pitch, w, h + 2);
  std::vector<uint8_t> chroma(offset_of(3 * ch + 2, cw));
  const std::vector<uint8_t> v = packed_rows(src.v, src.pitch / 2, cw, ch);
  const std::vector<uint8_t> u = packed_rows(src.u, src.pitch / 2, cw, ch);
  std::copy(v.begin(), v.end(), chroma.begin());
  std::copy(u.begin(), u.end(), chroma.begin() + static_cast<std::ptrdiff_t>(v.size()));

  const size_t luma_bytes = offset_of(h, w);
  const size_t v_offset = luma_bytes - 1;
  const size_t u_offset = v_offset + luma_bytes / 4;
  Surface surface = make_marked_yv12(
      src.width, src.height, w, v_offset, u_offset, cw,
      u_offset + offset_of(h + kSpareRows, cw) + kSurfaceSlackBytes);
  tag_ajust_contrast_info record = load_record(kernel, adjust);
  std::get<Kernel9>(kernel.entry)(source_bytes(y), chroma.data() + v.size(),
                                  chroma.data(), surface.bytes.data(), 2 * w,
                                  h, w, w, &record);
  return surface;
}

// loadimage_yv12_ajust reads each source plane as packed rows (whole groups
// of 8 samples, srcPitch unused) and places the chroma planes from the
// record: both row counts set to the run height put V straight below the
// luma plane and U a quarter plane after it.
Surface run_yv12_adjust(const KernelInfo& kernel, const KernelSource& src,
                        const tag_ajust_contrast_info& adjust) {
  const int w = src.run_width, h = src.run_height;
  const std::vector<uint8_t> y = packed_rows(src.y, src.pitch, w, h);
  const std::vector<uint8_t> u = packed_rows(src.u, src.pitch / 2, w / 2, h / 2);
  const std::vector<uint8_t> v = packed_rows(src.v, src.pitch / 2, w / 2, h / 2);

  const int pitch = round_up(w + kSurfaceSlackBytes, 16);
  const size_t v_offset = offset_of(h, pitch);
  const size_t u_offset = v_offset + offset_of(h, pitch) / 4;
  Surface surface = make_marked_yv12(
      src.width, src.height, pitch, v_offset, u_offset, pitch / 2,
      u_offset + offset_of(h / 2 + kSpareRows, pitch / 2));
  tag_ajust_contrast_info record = load_record(kernel, adjust);
  record.lumaPlaneRows = record.rowsFromDestination = h;
  std::get<Kernel9>(kernel.entry)(source_bytes(y), source_bytes(u),
                                  source_bytes(v), surface.bytes.data(), w, h,
                                  w, pitch, &record);
  return surface;
}

// loadimage_half_yv12_ajust: luma W/2 wide, V below `height` luma rows, U
// after height/2 rows of pitch/2. Its chroma rows go in 16-sample groups
// with the last one ending at the row's end; a row of 8 (a 16-pixel run)
// has no whole group and would start every row 8 bytes further right, so
// it runs at least 32 pixels wide.
Surface run_half_yv12(const KernelInfo& kernel, const KernelSource& src,
                      const tag_ajust_contrast_info& adjust) {
  const int w = std::max(src.run_width, 2 * kGroupPixels), h = src.run_height;
  int out_w = 0, out_h = 0;
  output_size(kernel, src.width, src.height, out_w, out_h);
  const int pitch = round_up(w / 2 + kSurfaceSlackBytes, 16);
  const size_t v_offset = offset_of(h, pitch);
  const size_t u_offset = v_offset + offset_of(h / 2, pitch / 2);
  Surface surface = make_marked_yv12(
      out_w, out_h, pitch, v_offset, u_offset, pitch / 2,
      u_offset + offset_of(h / 2 + kSpareRows, pitch / 2));
  tag_ajust_contrast_info record = load_record(kernel, adjust);
  std::get<Kernel9>(kernel.entry)(
      source_bytes(src.y), source_bytes(src.u), source_bytes(src.v),
      surface.bytes.data(), w, h, src.pitch, pitch, &record);
  return surface;
}

// Packed YUY2 source kernels: the padded frame packed by libswscale, rows
// run_width pixels apart (the source pitch counts pixels). srcU and srcV
// are not read.
Surface run_packed_yuy2(const KernelInfo& kernel, const KernelSource& src,
                        const tag_ajust_contrast_info& adjust) {
  Surface surface = group_surface(kernel, surface_format(kernel, adjust), src);
  const std::vector<uint8_t> packed = planar_to_packed_yuy2(
      src.y.data(), src.u.data(), src.v.data(), src.pitch, src.pitch / 2,
      src.run_width, src.run_height, 2 * src.run_width,
      src.run_height + kSpareRows);
  tag_ajust_contrast_info record = load_record(kernel, adjust);
  std::get<Kernel9>(kernel.entry)(source_bytes(packed), nullptr, nullptr,
                                  surface.bytes.data(), src.run_width,
                                  src.run_height, src.run_width, surface.pitch,
                                  &record);
  return surface;
}

// ------------------------------------------------------------ subpicture

// What the subpicture kernels are given: the source's overlay or, without
// one, the built-in overlay at the picture's size (kept in `storage`).
const RgbaImage& overlay_of(const KernelSource& src, RgbaImage& storage) {
  if (src.overlay) return *src.overlay;
  storage = make_test_overlay(src.width, src.height);
  return storage;
}

// The prepared overlay over the whole run area, with the spare rows the
// interlaced mixer writes. Its pitch is the picture's: the half-width mixer
// reads the picture's second row with the subpicture's pitch.
SubpicturePlanes mixer_subpicture(const KernelSource& src) {
  RgbaImage storage;
  return prepare_subpicture(overlay_of(src, storage), src.run_width,
                            src.run_height + kSpareRows, src.pitch);
}

// Alpha shown times this in bitmaps that carry it: 16 becomes 240.
constexpr int kAlphaGain = 15;

// Subpicture planes pre-filled with the marker, so skipped groups show.
SubpicturePlanes marked_planes(const KernelSource& src) {
  const uint8_t* m = surface_format_info(SurfaceFormat::kYuy2).marker;
  return blank_planes(src.run_width, src.run_height, src.pitch,
                      surface_format_info(SurfaceFormat::kAlpha).marker[0],
                      m[0], m[1], m[3]);
}

// Convert_*: the overlay drawn as a bitmap of `kBitmap`, converted into
// marker-filled planes, shown interleaved as YUY2.
template <SurfaceFormat kBitmap>
Surface run_overlay_to_planes(const KernelInfo& kernel, const KernelSource& src,
                              const tag_ajust_contrast_info&) {
  RgbaImage storage;
  Surface bitmap = overlay_bitmap(overlay_of(src, storage), kBitmap,
                                  src.run_width, src.run_height);
  SubpicturePlanes planes = marked_planes(src);
  tagMIX_INFO record = preparation_record(planes, bitmap);
  std::get<MixKernel>(kernel.entry)(&record);
  return planes_as_yuy2(planes, src.width, src.height);
}

// load_subpicture_alpha_*: the prepared alpha plane into a marker-filled
// bitmap of the kernel's layout.
template <SurfaceFormat kBitmap>
Surface run_alpha_to_bitmap(const KernelInfo& kernel, const KernelSource& src,
                            const tag_ajust_contrast_info&) {
  SubpicturePlanes planes = mixer_subpicture(src);
  planes.rows = src.run_height;
  const int bytes = src.run_width * surface_format_info(kBitmap).bytes_per_pixel;
  Surface bitmap = make_marked_surface(kBitmap, src.width, src.height,
                                       round_up(bytes + kSurfaceSlackBytes, 16),
                                       src.run_height + kSpareRows);
  bitmap.value_gain = kAlphaGain;
  tagMIX_INFO record = preparation_record(planes, bitmap);
  std::get<MixKernel>(kernel.entry)(&record);
  return bitmap;
}

MixKernel alpha_writer(SurfaceFormat bitmap) {
  switch (bitmap) {
    case SurfaceFormat::kRgb32: return load_subpicture_alpha_rgb32;
    case SurfaceFormat::kRgb24: return load_subpicture_alpha_rgb24;
    case SurfaceFormat::kRgb16Layout0: return load_subpicture_alpha_rgb16_565;
    default: throw std::logic_error("no alpha bitmap in this format");
  }
}

// Restore_*: a round trip. The prepared alpha plane goes into a zeroed
// bitmap of the kernel's layout through its load_subpicture_alpha_*
// sibling, and the kernel reads it back into a marker-filled plane.
template <SurfaceFormat kBitmap>
Surface run_alpha_round_trip(const KernelInfo& kernel, const KernelSource& src,
                             const tag_ajust_contrast_info&) {
  SubpicturePlanes planes = mixer_subpicture(src);
  planes.rows = src.run_height;
  Surface bitmap = blank_bitmap(kBitmap, src.run_width, src.run_height);
  tagMIX_INFO record = preparation_record(planes, bitmap);
  alpha_writer(kBitmap)(&record);

  SubpicturePlanes restored = marked_planes(src);
  record = preparation_record(restored, bitmap);
  std::get<MixKernel>(kernel.entry)(&record);
  Surface alpha;
  alpha.format = SurfaceFormat::kAlpha;
  alpha.width = src.width;
  alpha.height = src.height;
  alpha.pitch = restored.pitch;
  alpha.bytes = std::move(restored.alpha);
  return alpha;
}

// The record of a mixer: picture, prepared subpicture, surface and the
// adjustment record (read for its RGB16 layout).
tagMIX_INFO mix_record(const KernelSource& src, int picture_pitch,
                       SubpicturePlanes& sub, Surface& surface,
                       tag_ajust_contrast_info* adjust) {
  tagMIX_INFO r{};
  r.picturePitch = picture_pitch;
  r.subPitch = sub.pitch;
  r.dstPitch = surface.pitch;
  r.width = src.run_width;
  r.height = src.run_height;
  r.pictureY = source_bytes(src.y);
  r.pictureV = source_bytes(src.v);
  r.pictureU = source_bytes(src.u);
  r.subAlpha = sub.alpha.data();
  r.subY = sub.y.data();
  r.subV = sub.v.data();
  r.subU = sub.u.data();
  r.dst = surface.bytes.data();
  r.adjust = adjust;
  return r;
}

// Progressive mixers: the frame and the overlay, row for row.
Surface run_mix_frame(const KernelInfo& kernel, const KernelSource& src,
                      const tag_ajust_contrast_info& adjust) {
  Surface surface = group_surface(kernel, surface_format(kernel, adjust), src);
  SubpicturePlanes sub = mixer_subpicture(src);
  tag_ajust_contrast_info record = load_record(kernel, adjust);
  tagMIX_INFO mix = mix_record(src, src.pitch, sub, surface, &record);
  std::get<MixKernel>(kernel.entry)(&mix);
  return surface;
}

// Interlaced mixers take one field and double it: here the frame's top
// field, every other luma and chroma row, which a picture pitch of twice
// the frame's selects. The overlay supplies every output row.
Surface run_mix_top_field(const KernelInfo& kernel, const KernelSource& src,
                          const tag_ajust_contrast_info& adjust) {
  Surface surface = group_surface(kernel, surface_format(kernel, adjust), src);
  SubpicturePlanes sub = mixer_subpicture(src);
  tag_ajust_contrast_info record = load_record(kernel, adjust);
  tagMIX_INFO mix = mix_record(src, 2 * src.pitch, sub, surface, &record);
  std::get<MixKernel>(kernel.entry)(&mix);
  return surface;
}

// ------------------------------------------------------------ doubling

// A YV12 surface for a doubled picture: luma lines `pitch` apart, the V
// plane straight below them and the U plane a quarter of the luma plane
// after it, chroma lines pitch/2 apart, as the YV12 doublers place them.
// Pitches are exactly the doubled run width, so a plane's last line is
// where the end-of-plane copies land; below the U plane are spare lines for
// the strips that write one line past their plane.
Surface doubled_yv12(const KernelInfo& kernel, const KernelSource& src) {
  int out_w = 0, out_h = 0;
  output_size(kernel, src.width, src.height, out_w, out_h);
  const int pitch = src.run_width * width_factor(kernel.geometry);
  const size_t luma_bytes = offset_of(2 * src.run_height, pitch);
  const size_t v_offset = luma_bytes, u_offset = v_offset + luma_bytes / 4;
  return make_marked_yv12(out_w, out_h, pitch, v_offset, u_offset, pitch / 2,
                          u_offset + luma_bytes / 4 + offset_of(4, pitch) + kSurfaceSlackBytes);
}

// The plane doublers, run on each plane of the frame into a YV12 surface:
// luma with plane selector 1, V with 3 and U with 2 (the offsets meant for
// them), in the YV12 doublers' order so that a line written past the V
// plane is covered by the U plane. The source planes are handed over packed, rows `width` apart,
// which the adjusting 2X2 kernel assumes whatever pitch it is given.
Surface run_plane_doubler(const KernelInfo& kernel, const KernelSource& src,
                          const tag_ajust_contrast_info& adjust) {
  Surface surface = doubled_yv12(kernel, src);
  tag_ajust_contrast_info record = load_record(kernel, adjust);
  const int w = src.run_width, h = src.run_height;
  struct PlaneCall {
    const std::vector<uint8_t>& plane;
    int pitch, width, height;
    size_t dst_offset;
    int dst_pitch, selector;
  };
  const PlaneCall calls[] = {
      {src.y, src.pitch, w, h, 0, surface.pitch, 1},
      {src.v, src.pitch / 2, w / 2, h / 2, surface.v_offset, surface.chroma_pitch, 3},
      {src.u, src.pitch / 2, w / 2, h / 2, surface.u_offset, surface.chroma_pitch, 2},
  };
  for (const PlaneCall& c : calls) {
    // Plus the row below the picture that the pair loops read.
    std::vector<uint8_t> packed = packed_rows(c.plane, c.pitch, c.width, c.height + 1);
    uint8_t* dst = surface.bytes.data() + c.dst_offset;
    if (auto* k = std::get_if<PlaneKernel>(&kernel.entry)) {
      (*k)(packed.data(), dst, c.width, c.height, c.width, c.dst_pitch);
    } else {
      std::get<AdjustedPlaneKernel>(kernel.entry)(packed.data(), dst, c.width, c.height,
                                                  c.width, c.dst_pitch, &record, c.selector);
    }
  }
  return surface;
}

// The YV12 doublers: the YV12 surface above, planes packed (source pitch
// the run width), since the 2X2 plane kernel reads its rows packed.
Surface run_yv12_doubler(const KernelInfo& kernel, const KernelSource& src,
                         const tag_ajust_contrast_info& adjust) {
  Surface surface = doubled_yv12(kernel, src);
  const int w = src.run_width, h = src.run_height;
  std::vector<uint8_t> y = packed_rows(src.y, src.pitch, w, h + 1);
  std::vector<uint8_t> u = packed_rows(src.u, src.pitch / 2, w / 2, h / 2 + 1);
  std::vector<uint8_t> v = packed_rows(src.v, src.pitch / 2, w / 2, h / 2 + 1);
  tag_ajust_contrast_info record = load_record(kernel, adjust);
  std::get<Kernel9>(kernel.entry)(y.data(), u.data(), v.data(), surface.bytes.data(), w, h, w,
                                  surface.pitch, &record);
  return surface;
}

// strech_opt_yuy2_ajust reads a frame record whose planes are packed
// (lumaWidth is also the luma pitch): every row of the frame, from the top.
Surface run_frame_doubler(const KernelInfo& kernel, const KernelSource& src,
                          const tag_ajust_contrast_info& adjust) {
  Surface surface = group_surface(kernel, surface_format(kernel, adjust), src);
  const int w = src.run_width, h = src.run_height;
  std::vector<uint8_t> y = packed_rows(src.y, src.pitch, w, h);
  std::vector<uint8_t> u = packed_rows(src.u, src.pitch / 2, w / 2, h / 2);
  std::vector<uint8_t> v = packed_rows(src.v, src.pitch / 2, w / 2, h / 2);
  tagVideoFrame frame{};
  frame.lineMode = 0;
  frame.planeY = y.data();
  frame.planeU = u.data();
  frame.planeV = v.data();
  frame.lumaWidth = w;
  tag_ajust_contrast_info record = load_record(kernel, adjust);
  std::get<FrameKernel>(kernel.entry)(&frame, 0, h, surface.bytes.data(), surface.pitch,
                                      &record);
  return surface;
}

// The packed-YUY2-source doublers: the padded frame packed by libswscale
// with rows exactly their width apart, as these kernels read it; `width`
// counts bytes.
Surface run_packed_doubler(const KernelInfo& kernel, const KernelSource& src,
                           const tag_ajust_contrast_info& adjust) {
  Surface surface = group_surface(kernel, surface_format(kernel, adjust), src);
  const int row_bytes = 2 * src.run_width;
  std::vector<uint8_t> packed = planar_to_packed_yuy2(
      src.y.data(), src.u.data(), src.v.data(), src.pitch, src.pitch / 2, src.run_width,
      src.run_height, row_bytes, src.run_height + kSpareRows);
  tag_ajust_contrast_info record = load_record(kernel, adjust);
  if (auto* k = std::get_if<PackedKernel>(&kernel.entry)) {
    (*k)(packed.data(), nullptr, nullptr, surface.bytes.data(), row_bytes, src.run_height,
         surface.pitch);
  } else {
    std::get<AdjustedPackedKernel>(kernel.entry)(packed.data(), nullptr, nullptr,
                                                 surface.bytes.data(), row_bytes,
                                                 src.run_height, surface.pitch, &record);
  }
  return surface;
}

// ------------------------------------------------------------ colour keys

// The key the demo paints with: green. With only the green byte set it
// reads the same as 0x00BBGGRR (the subpicture loaders) and as bytes
// blue, green, red (the fills); RGB16 surfaces take a 5-6-5 word.
constexpr uint32_t kGreenKey = 0x0000C000;
constexpr uint32_t kGreenKey565 = 0x07E0;

// The picture as loadimage_rgb32 / _rgb24 / _rgb16 draw it, on a marked
// surface of the kernel's format.
Surface picture_surface(const KernelInfo& kernel, const KernelSource& src,
                        const tag_ajust_contrast_info& adjust) {
  const SurfaceFormat format = surface_format(kernel, adjust);
  Surface surface = group_surface(kernel, format, src);
  tag_ajust_contrast_info record = adjust;
  record.rgb16Layout = is_rgb16(format) ? rgb16_layout(format) : 0;
  const Kernel9 load = format == SurfaceFormat::kRgb32   ? loadimage_rgb32
                       : format == SurfaceFormat::kRgb24 ? loadimage_rgb24
                                                         : loadimage_rgb16;
  load(source_bytes(src.y), source_bytes(src.u), source_bytes(src.v), surface.bytes.data(),
       src.run_width, src.run_height, src.pitch, surface.pitch, &record);
  return surface;
}

// LoadColorKeyRgb*: the key filled into the middle of the picture (a
// rectangle half its size, from a quarter in), over the picture drawn by
// the matching loader.
Surface run_key_fill(const KernelInfo& kernel, const KernelSource& src,
                     const tag_ajust_contrast_info& adjust) {
  Surface surface = picture_surface(kernel, src, adjust);
  const int bpp = surface_format_info(surface.format).bytes_per_pixel;
  // Whole 16-pixel groups across: the fills step rows by the width they
  // are given but write whole groups, so other widths drift right.
  const int left = round_up(src.run_width / 4, kGroupPixels), top = src.run_height / 4 & ~1;
  const int width = std::max(src.run_width / 2 / kGroupPixels, 1) * kGroupPixels;
  std::get<KeyFillKernel>(kernel.entry)(bpp == 2 ? kGreenKey565 : kGreenKey,
                                        surface.row(top) + bpp * left, width,
                                        src.run_height / 2, 0, surface.pitch);
  return surface;
}

// RelaceMaskWithColorKey: over the picture drawn as RGB32, every byte
// whose overlay pixel is opaque (prepared alpha 16, repeated for the 4
// bytes of the pixel) becomes 0: the overlay's opaque parts in black.
Surface run_mask_replace(const KernelInfo& kernel, const KernelSource& src,
                         const tag_ajust_contrast_info& adjust) {
  Surface surface = picture_surface(kernel, src, adjust);
  SubpicturePlanes sub = mixer_subpicture(src);
  std::vector<uint8_t> mask(surface.bytes.size());
  for (int r = 0; r < src.run_height; ++r)
    for (int x = 0; x < src.run_width; ++x)
      std::fill_n(mask.begin() + static_cast<std::ptrdiff_t>(offset_of(r, surface.pitch) + 4 * x), 4,
                  sub.alpha[offset_of(r, sub.pitch) + x]);
  std::get<MaskKernel>(kernel.entry)(surface.bytes.data(), mask.data(), 16, 0,
                                     4 * src.run_width, surface.pitch, src.run_height);
  return surface;
}

// load_subpicture_yuy2_*: the prepared overlay alone, its rows back to back
// (picturePitch is its width), the key where it is transparent.
Surface run_subpicture_to_rgb(const KernelInfo& kernel, const KernelSource& src,
                              const tag_ajust_contrast_info& adjust) {
  Surface surface = group_surface(kernel, surface_format(kernel, adjust), src);
  RgbaImage storage;
  SubpicturePlanes sub = prepare_subpicture(overlay_of(src, storage), src.run_width,
                                            src.run_height, src.run_width);
  tag_ajust_contrast_info record = load_record(kernel, adjust);
  tagMIX_INFO mix{};
  mix.picturePitch = src.run_width;
  mix.dstPitch = surface.pitch;
  mix.height = src.run_height;
  mix.subAlpha = sub.alpha.data();
  mix.subY = sub.y.data();
  mix.subU = sub.u.data();
  mix.subV = sub.v.data();
  mix.dst = surface.bytes.data();
  mix.colorKey = is_rgb16(surface.format) ? kGreenKey565 : kGreenKey;
  mix.adjust = &record;
  std::get<MixKernel>(kernel.entry)(&mix);
  return surface;
}

// The YV12 mixers: the prepared overlay read as AYV12, its chroma rows a
// whole pitch apart, so they take the chroma of the even pixel rows; a
// YV12 surface with its V and U planes below the luma plane. The field
// kernel gets the frame's top field (picture pitch twice the frame's).
Surface run_mix_yv12(const KernelInfo& kernel, const KernelSource& src,
                     const tag_ajust_contrast_info& adjust, int picture_pitch) {
  int out_w = 0, out_h = 0;
  output_size(kernel, src.width, src.height, out_w, out_h);
  const int w = src.run_width, h = src.run_height;
  const int pitch = round_up(w + kSurfaceSlackBytes, 16);
  const size_t v_offset = offset_of(h + kSpareRows, pitch);
  const size_t u_offset = v_offset + offset_of(h / 2 + kSpareRows, pitch / 2);
  Surface surface = make_marked_yv12(out_w, out_h, pitch, v_offset, u_offset, pitch / 2,
                                     u_offset + offset_of(h / 2 + kSpareRows, pitch / 2));
  SubpicturePlanes sub = mixer_subpicture(src);
  tag_ajust_contrast_info record = load_record(kernel, adjust);
  tagMIX_INFO mix = mix_record(src, picture_pitch, sub, surface, &record);
  mix.dstV = surface.bytes.data() + v_offset;
  mix.dstU = surface.bytes.data() + u_offset;
  std::get<MixKernel>(kernel.entry)(&mix);
  return surface;
}

Surface run_mix_yv12_frame(const KernelInfo& kernel, const KernelSource& src,
                           const tag_ajust_contrast_info& adjust) {
  return run_mix_yv12(kernel, src, adjust, src.pitch);
}

Surface run_mix_yv12_top_field(const KernelInfo& kernel, const KernelSource& src,
                               const tag_ajust_contrast_info& adjust) {
  return run_mix_yv12(kernel, src, adjust, 2 * src.pitch);
}

constexpr const char* kPlanarToYuy2 = "planar 4:2:0 to YUY2";
constexpr const char* kPlanarToYv12 = "planar 4:2:0 to YV12";
constexpr const char* kPlanarToRgb = "planar 4:2:0 to RGB";
constexpr const char* kPackedYuy2 = "packed YUY2 to YUY2 and RGB";
constexpr const char* kPreparation = "subpicture preparation";
constexpr const char* kMixYuy2 = "subpicture mixed onto YUY2";
constexpr const char* kMixRgb = "subpicture mixed onto RGB";
constexpr const char* kMixYv12 = "subpicture mixed onto YV12";
constexpr const char* kDoubling = "picture doubling";
constexpr const char* kSubpictureToRgb = "subpicture onto RGB";
constexpr const char* kColorKeys = "colour keys";

const std::vector<FamilyInfo> kFamilies = {
    {kPlanarToYuy2,
     "a decoded frame's Y, U and V planes interleaved into a packed 4:2:2 "
     "surface"},
    {kPlanarToYv12,
     "a decoded frame's planes copied or adjusted into a planar surface, V "
     "plane before U"},
    {kPlanarToRgb,
     "a decoded frame converted to RGB; both rows of a pair share their "
     "chroma row"},
    {kPackedYuy2,
     "a packed YUY2 picture (made from the frame by libswscale) onto YUY2 or "
     "RGB; both rows of a pair take the first row's chroma"},
    {kPreparation,
     "the host's overlay bitmaps and the subpicture planes the mixers read: "
     "an RGB bitmap with transparent pixels in a colour key to Y, U and V "
     "planes; the alpha plane (weights 0..16) into a bitmap's blue byte and "
     "back"},
    {kMixYuy2,
     "a decoded frame and a subpicture mixed by alpha in YUV, then adjusted, "
     "onto a packed 4:2:2 surface; a pixel pair's chroma is weighted by its "
     "right pixel's alpha"},
    {kMixRgb,
     "a decoded frame and a subpicture mixed by alpha in YUV, adjusted and "
     "converted to RGB; both rows of a pair share the frame's chroma row but "
     "take the subpicture's chroma row by row"},
    {kSubpictureToRgb,
     "a subpicture alone converted to RGB for a colour-keyed display: the "
     "key where it is transparent, its colour elsewhere"},
    {kMixYv12,
     "a decoded frame and a subpicture mixed by alpha plane by plane onto a "
     "planar surface; a chroma sample is weighted by the alpha of the right "
     "pixel of its pair on the even row"},
    {kColorKeys,
     "the overlay colour key painted into RGB surfaces: rectangle fills, and "
     "a key byte stamped where a mask plane holds a value"},
    {kDoubling,
     "a decoded frame doubled in height (1X2) or in both directions (2X2) "
     "onto YUY2, RGB or YV12; each source row becomes two lines, the new one "
     "interpolated by a rounded average, a four-tap filter or along the "
     "direction of an edge"},
};

constexpr const char* kRgb16Details =
    "Shown in each RGB16 layout. The kernel keeps only the top bits of each "
    "channel; the PNG widens them back to 8 bits by repeating those bits, so "
    "the ramps show steps.";

constexpr const char* kConvertDetails =
    "Run on the overlay drawn as this bitmap (transparent pixels hold the key, "
    "grey 64,64,64) into planes pre-filled with magenta, shown interleaved as "
    "YUY2. Look for: magenta wherever a whole 8-pixel group was key (skipped, "
    "not cleared), key grey around the shapes in groups that are partly "
    "visible, the overlay's colours elsewhere, each pixel pair with its left "
    "pixel's chroma.";

constexpr const char* kAlphaBitmapDetails =
    "The prepared overlay's alpha plane written into a magenta-filled bitmap "
    "and shown with every stored value times 15: weight 16 is blue 240, red "
    "and green stay 0. Should look like the overlay's alpha bitmap "
    "(overlay-alpha.png).";

constexpr const char* kMixDetails =
    "The built-in menu overlay (or convert --subpicture) over the picture, "
    "adjusted together with it. Look for: the translucent panel and its soft "
    "shadow over the bars, opaque buttons and text, the top-right slider "
    "fading in from nothing, the caption's outline, and the picture "
    "elsewhere exactly as the plain loader shows it.";

constexpr const char* kFieldDetails =
    "Run on the picture's top field (every other row), doubled back to the "
    "picture's height: fine horizontal detail turns into averages, the "
    "overlay keeps every row.";

constexpr const char* kYv12MixDetails =
    "The built-in menu overlay (or convert --subpicture) read as a 4:2:0 "
    "subpicture: each chroma sample comes from the even row of its pair.";

constexpr const char* kSubToRgbDetails =
    "The built-in menu overlay (or convert --subpicture) prepared into "
    "planes whose rows lie back to back, the key green: green where the "
    "overlay is transparent, its colours (adjusted where the kernel adjusts) "
    "elsewhere, without the picture.";

constexpr const char* kKeyFillDetails =
    "Over the picture as the matching loadimage_rgb kernel draws it, the "
    "green key filled into a rectangle of about half the picture's size "
    "(whole 16-pixel groups across, whole row pairs down), from a quarter "
    "in.";

constexpr const char* kPackedDoublingDetails =
    "Run on the frame packed as YUY2 by libswscale, rows exactly their width "
    "apart. Pixels 4-7 of every 32 hold bare doubled luma, as for the planar "
    "2X2 kernels; the last two lines repeat the last row.";

constexpr const char* kPlaneEndDetails =
    "Each plane's last two lines both show its second-to-last row: the last "
    "row reaches the picture only through the line averaged from it, which "
    "the end of the plane overwrites.";

constexpr const char* kPlaneDoublerDetails =
    "Run on each plane of the frame (luma, V and U with their own offsets) "
    "into a YV12 surface. Each plane's last two lines both show its "
    "second-to-last row.";

constexpr const char* kDoublingTailDetails =
    "The last two lines repeat the last row, and chroma is not interpolated "
    "in the last four.";

constexpr const char* kDoublingBothDetails =
    "In every 32 output pixels, pixels 4-7 hold the doubled luma of pixels "
    "0-7 rather than YUY2 pixels: a column of odd colours every 32 pixels is "
    "what the kernel writes. The last two lines repeat the last row.";

const std::vector<KernelInfo> kKernels = {
    {"loadimage_yuy2", kPlanarToYuy2,
     "copies; in the second row of each pair, pixels 0-3 of every 16 keep "
     "what the surface held",
     "", SurfaceFormat::kYuy2, Geometry::kSame, false, loadimage_yuy2,
     run_planar9},
    {"loadimage_yuy2_ajust", kPlanarToYuy2,
     "adjusts luma, U and V; writes nothing when the height is 8 or less",
     "", SurfaceFormat::kYuy2, Geometry::kSame, true, loadimage_yuy2_ajust,
     run_planar9},
    {"loadimage_yuy2_mono_ajust", kPlanarToYuy2,
     "adjusts luma and writes neutral chroma (0x80): a grey picture",
     "", SurfaceFormat::kYuy2, Geometry::kSame, true, loadimage_yuy2_mono_ajust,
     run_planar9},
    {"loadimage_half_yuy2_ajust", kPlanarToYuy2,
     "half width: averages each pixel pair (rounding up), then adjusts",
     "", SurfaceFormat::kYuy2, Geometry::kHalfWidth, true,
     loadimage_half_yuy2_ajust, run_planar9},

    {"loadimage_yv12", kPlanarToYv12,
     "copies the planes with its own strides; the V plane starts one byte "
     "early, on the luma plane's last byte",
     "Run with width 2W and both pitches W (W the padded width), the one call "
     "under which its strides make a copy. It copies chroma for twice the "
     "plane height: the V plane's extra rows land on the U plane and, read "
     "from a source whose U plane follows its V plane, put it back. Where "
     "the picture's width is a multiple of 16 and its height even, the "
     "bottom-right pixel's luma is the first V sample.",
     SurfaceFormat::kYv12, Geometry::kSame, false, loadimage_yv12,
     run_yv12_copy},
    {"loadimage_yv12_ajust", kPlanarToYv12,
     "adjusts plane by plane; the V plane gets the U offset and the U plane "
     "the V offset",
     "Source planes handed over packed (it ignores the source pitch); chroma "
     "planes placed with lumaPlaneRows = rowsFromDestination = the padded "
     "height. The offset swap shows only when the U and V offsets differ.",
     SurfaceFormat::kYv12, Geometry::kSame, true, loadimage_yv12_ajust,
     run_yv12_adjust},
    {"loadimage_half_yv12_ajust", kPlanarToYv12,
     "half width by keeping the odd sample of each pair, then adjusts",
     "Chroma keeps the odd sample of each chroma pair too. Run at least 32 "
     "pixels wide: narrower chroma rows would each start 8 bytes further "
     "right.",
     SurfaceFormat::kYv12, Geometry::kHalfWidth, true,
     loadimage_half_yv12_ajust, run_half_yv12},

    {"loadimage_rgb32", kPlanarToRgb, "converts to B G R 0 per pixel", "",
     SurfaceFormat::kRgb32, Geometry::kSame, false, loadimage_rgb32,
     run_planar9},
    {"loadimage_rgb24", kPlanarToRgb, "converts to B G R per pixel", "",
     SurfaceFormat::kRgb24, Geometry::kSame, false, loadimage_rgb24,
     run_planar9},
    {"loadimage_rgb16", kPlanarToRgb,
     "converts to 16-bit words in the layout of --rgb16-layout, dropping the "
     "low bits of each channel",
     kRgb16Details, SurfaceFormat::kRgb16Layout0, Geometry::kSame, false,
     loadimage_rgb16, run_planar9},
    {"loadimage_rgb32_ajust", kPlanarToRgb,
     "adjusts luma, U and V, then converts to B G R 0", "",
     SurfaceFormat::kRgb32, Geometry::kSame, true, loadimage_rgb32_ajust,
     run_planar9},
    {"loadimage_rgb24_ajust", kPlanarToRgb,
     "adjusts luma, U and V, then converts to B G R", "",
     SurfaceFormat::kRgb24, Geometry::kSame, true, loadimage_rgb24_ajust,
     run_planar9},
    {"loadimage_rgb16_ajust", kPlanarToRgb,
     "adjusts luma, U and V, then converts to RGB16 words", kRgb16Details,
     SurfaceFormat::kRgb16Layout0, Geometry::kSame, true,
     loadimage_rgb16_ajust, run_planar9},

    {"LoadYUY2_YUY2", kPackedYuy2,
     "copies, giving the second row of each pair the first row's chroma", "",
     SurfaceFormat::kYuy2, Geometry::kSame, false, LoadYUY2_YUY2,
     run_packed_yuy2},
    {"LoadYUY2_YUY2_adjust", kPackedYuy2, "adjusts luma, U and V", "",
     SurfaceFormat::kYuy2, Geometry::kSame, true, LoadYUY2_YUY2_adjust,
     run_packed_yuy2},
    {"LoadYUY2_RGB16", kPackedYuy2,
     "converts to 16-bit words in the layout of --rgb16-layout",
     kRgb16Details, SurfaceFormat::kRgb16Layout0, Geometry::kSame, false,
     LoadYUY2_RGB16, run_packed_yuy2},
    {"LoadYUY2_RGB16_adjust", kPackedYuy2,
     "adjusts, then converts to RGB16 words", kRgb16Details,
     SurfaceFormat::kRgb16Layout0, Geometry::kSame, true,
     LoadYUY2_RGB16_adjust, run_packed_yuy2},
    {"LoadYUY2_RGB24", kPackedYuy2, "converts to B G R per pixel", "",
     SurfaceFormat::kRgb24, Geometry::kSame, false, LoadYUY2_RGB24,
     run_packed_yuy2},
    {"LoadYUY2_RGB24_adjust", kPackedYuy2,
     "adjusts, then converts to B G R", "", SurfaceFormat::kRgb24,
     Geometry::kSame, true, LoadYUY2_RGB24_adjust, run_packed_yuy2},
    {"LoadYUY2_RGB32", kPackedYuy2, "converts to B G R 0 per pixel", "",
     SurfaceFormat::kRgb32, Geometry::kSame, false, LoadYUY2_RGB32,
     run_packed_yuy2},
    {"LoadYUY2_RGB32_adjust", kPackedYuy2,
     "adjusts and converts to B G R 0, but for widths that are multiples of "
     "16 only 16 pixels of each row pair, each pair starting further short",
     "The tool always runs whole 16-pixel groups, so this is what the kernel "
     "does here: every row pair converts its first 16 pixels and then steps "
     "on as if it had done the whole row, so each later pair starts another "
     "W-16 pixels short (W the padded width), in the source and on the "
     "surface. The converted 16x2 blocks step across and down the surface; "
     "everything else stays magenta.",
     SurfaceFormat::kRgb32, Geometry::kSame, true, LoadYUY2_RGB32_adjust,
     run_packed_yuy2},

    {"Convert_RGB32_To_AYUY2", kPreparation,
     "RGB32 overlay bitmap (B G R 0) to the subpicture's Y, U and V planes "
     "(written out as YUY2), skipping 8-pixel groups that are all colour key",
     kConvertDetails, SurfaceFormat::kYuy2, Geometry::kSame, false,
     Convert_RGB32_To_AYUY2, run_overlay_to_planes<SurfaceFormat::kRgb32>,
     Inputs::kOverlay},
    {"Convert_RGB24_To_AYUY2", kPreparation,
     "RGB24 overlay bitmap (B G R) to Y, U and V planes, skipping all-key "
     "groups",
     "The same overlay packed as RGB24: the planes match "
     "Convert_RGB32_To_AYUY2's exactly.",
     SurfaceFormat::kYuy2, Geometry::kSame, false, Convert_RGB24_To_AYUY2,
     run_overlay_to_planes<SurfaceFormat::kRgb24>, Inputs::kOverlay},
    {"Convert_RGB16_565_To_AYUY2", kPreparation,
     "RGB16 5-6-5 overlay bitmap to Y, U and V planes, skipping all-key "
     "groups",
     "The same overlay packed as 5-6-5, which keeps the top bits of each "
     "channel: colours come out a little darker (white is Y 230, not 234); "
     "the skipped groups are the same as from RGB32.",
     SurfaceFormat::kYuy2, Geometry::kSame, false, Convert_RGB16_565_To_AYUY2,
     run_overlay_to_planes<SurfaceFormat::kRgb16Layout0>, Inputs::kOverlay},
    {"load_subpicture_alpha_rgb32", kPreparation,
     "alpha plane into an RGB32 bitmap, (alpha, 0, 0, 0) per pixel",
     kAlphaBitmapDetails, SurfaceFormat::kRgb32, Geometry::kSame, false,
     load_subpicture_alpha_rgb32, run_alpha_to_bitmap<SurfaceFormat::kRgb32>,
     Inputs::kOverlay},
    {"load_subpicture_alpha_rgb24", kPreparation,
     "alpha plane into an RGB24 bitmap, (alpha, 0, 0) per pixel",
     kAlphaBitmapDetails, SurfaceFormat::kRgb24, Geometry::kSame, false,
     load_subpicture_alpha_rgb24, run_alpha_to_bitmap<SurfaceFormat::kRgb24>,
     Inputs::kOverlay},
    {"load_subpicture_alpha_rgb16_565", kPreparation,
     "alpha plane into RGB16 words holding the alpha itself: bits 0-4 in "
     "blue, bits 5-7 in green's low bits; always 5-6-5",
     "Shown with every field's value times 15. Weights 0..16 fit the blue "
     "field, so it looks like the RGB32 form. --rgb16-layout is not read.",
     SurfaceFormat::kRgb16Layout0, Geometry::kSame, false,
     load_subpicture_alpha_rgb16_565,
     run_alpha_to_bitmap<SurfaceFormat::kRgb16Layout0>, Inputs::kOverlay,
     false},
    {"Restore_RGB32_To_Alpha", kPreparation,
     "alpha plane from an RGB32 bitmap's blue byte",
     "Round trip: the prepared alpha plane written by "
     "load_subpicture_alpha_rgb32, read back by this kernel into a "
     "magenta-filled plane, shown as grey (weight times 15). Should be the "
     "overlay's alpha exactly.",
     SurfaceFormat::kAlpha, Geometry::kSame, false, Restore_RGB32_To_Alpha,
     run_alpha_round_trip<SurfaceFormat::kRgb32>, Inputs::kOverlay},
    {"Restore_RGB24_To_Alpha", kPreparation,
     "alpha plane from an RGB24 bitmap, each pixel's taken from the byte "
     "after it: the plane comes back one pixel to the left",
     "Round trip through load_subpicture_alpha_rgb24 as for RGB32. Each "
     "weight is its right neighbour's, so the overlay's alpha moves one "
     "pixel left; the last pixel of a row reads the bitmap's padding (zero "
     "here).",
     SurfaceFormat::kAlpha, Geometry::kSame, false, Restore_RGB24_To_Alpha,
     run_alpha_round_trip<SurfaceFormat::kRgb24>, Inputs::kOverlay},
    {"Restore_RGB16_565_To_Alpha", kPreparation,
     "alpha plane from RGB16 words' blue field (word AND 31)",
     "Round trip through load_subpicture_alpha_rgb16_565 as for RGB32. "
     "Weights 0..16 survive; alphas above 31 would come back modulo 32.",
     SurfaceFormat::kAlpha, Geometry::kSame, false,
     Restore_RGB16_565_To_Alpha,
     run_alpha_round_trip<SurfaceFormat::kRgb16Layout0>, Inputs::kOverlay},

    {"mix_ayuy2_yuy2_p_ajust", kMixYuy2,
     "mixes the subpicture into the frame, adjusts, writes YUY2", kMixDetails,
     SurfaceFormat::kYuy2, Geometry::kSame, true, mix_ayuy2_yuy2_p_ajust,
     run_mix_frame, Inputs::kPictureAndOverlay},
    {"mix_ayuy2_half_yuy2_p_ajust", kMixYuy2,
     "half width: keeps the odd pixels of frame and subpicture, mixes, "
     "adjusts",
     "Frame and subpicture share one pitch (the kernel reads the frame's "
     "second row with the subpicture's). Only odd columns survive, so the "
     "overlay's text and the picture's fine lines thin out or vanish. The "
     "chroma weight is not limited to 16; the tool draws no alpha above 16.",
     SurfaceFormat::kYuy2, Geometry::kHalfWidth, true,
     mix_ayuy2_half_yuy2_p_ajust, run_mix_frame, Inputs::kPictureAndOverlay},
    {"mix_ayuy2_yuy2_i_ajust", kMixYuy2,
     "one field doubled to full height (rows between field rows averaged), "
     "the subpicture mixed into every output row",
     "Run on the frame's top field (picture pitch twice the frame's: every "
     "other luma and chroma row), which the kernel doubles back to H rows. "
     "One-pixel horizontal stripes of the picture vanish, the overlay stays "
     "sharp. Writes 4*ceil(H/4) rows, nothing when H is below 4.",
     SurfaceFormat::kYuy2, Geometry::kSame, true, mix_ayuy2_yuy2_i_ajust,
     run_mix_top_field, Inputs::kPictureAndOverlay},

    {"mix_ayuy2_rgb32_p_ajust", kMixRgb,
     "mixes, adjusts and converts to B G R 0", kMixDetails,
     SurfaceFormat::kRgb32, Geometry::kSame, true, mix_ayuy2_rgb32_p_ajust,
     run_mix_frame, Inputs::kPictureAndOverlay},
    {"mix_ayuy2_rgb24_p_ajust", kMixRgb,
     "mixes, adjusts and converts to B G R", kMixDetails,
     SurfaceFormat::kRgb24, Geometry::kSame, true, mix_ayuy2_rgb24_p_ajust,
     run_mix_frame, Inputs::kPictureAndOverlay},
    {"mix_ayuy2_rgb16_p_ajust", kMixRgb,
     "mixes, adjusts and converts to RGB16 words in the layout of "
     "--rgb16-layout",
     kRgb16Details, SurfaceFormat::kRgb16Layout0, Geometry::kSame, true,
     mix_ayuy2_rgb16_p_ajust, run_mix_frame, Inputs::kPictureAndOverlay},
    {"load_subpicture_yuy2_rgb32", kSubpictureToRgb,
     "converts to B G R 0; alpha 0 gives the key, 1-127 the colour, 128 and "
     "above black",
     kSubToRgbDetails, SurfaceFormat::kRgb32, Geometry::kSame, false,
     load_subpicture_yuy2_rgb32, run_subpicture_to_rgb, Inputs::kOverlay},
    {"load_subpicture_yuy2_rgb32_ajust", kSubpictureToRgb,
     "adjusts, then converts to B G R 0 with the key where transparent",
     kSubToRgbDetails, SurfaceFormat::kRgb32, Geometry::kSame, true,
     load_subpicture_yuy2_rgb32_ajust, run_subpicture_to_rgb, Inputs::kOverlay},
    {"load_subpicture_yuy2_rgb24", kSubpictureToRgb,
     "converts to B G R with the key where transparent",
     kSubToRgbDetails, SurfaceFormat::kRgb24, Geometry::kSame, false,
     load_subpicture_yuy2_rgb24, run_subpicture_to_rgb, Inputs::kOverlay},
    {"load_subpicture_yuy2_rgb24_ajust", kSubpictureToRgb,
     "adjusts, then converts to B G R with the key where transparent",
     kSubToRgbDetails, SurfaceFormat::kRgb24, Geometry::kSame, true,
     load_subpicture_yuy2_rgb24_ajust, run_subpicture_to_rgb, Inputs::kOverlay},
    {"load_subpicture_yuy2_rgb16", kSubpictureToRgb,
     "converts to 5-6-5 words (every layout alike) with the key where "
     "transparent",
     kSubToRgbDetails, SurfaceFormat::kRgb16Layout0, Geometry::kSame, false,
     load_subpicture_yuy2_rgb16, run_subpicture_to_rgb, Inputs::kOverlay, false},
    {"load_subpicture_yuy2_rgb16_ajust", kSubpictureToRgb,
     "adjusts, then converts to 5-6-5 words with the key where transparent",
     kSubToRgbDetails, SurfaceFormat::kRgb16Layout0, Geometry::kSame, true,
     load_subpicture_yuy2_rgb16_ajust, run_subpicture_to_rgb, Inputs::kOverlay, false},

    {"mix_ayuy2_rgb32_i_ajust", kMixRgb,
     "one field doubled line by line while mixed, adjusted and converted to "
     "B G R 0; chroma weighted by the rounded mean of both pixels' alphas",
     kFieldDetails, SurfaceFormat::kRgb32, Geometry::kSame, true, mix_ayuy2_rgb32_i_ajust,
     run_mix_top_field, Inputs::kPictureAndOverlay},
    {"mix_ayuy2_rgb24_i_ajust", kMixRgb,
     "one field doubled line by line while mixed, adjusted and converted to "
     "B G R",
     kFieldDetails, SurfaceFormat::kRgb24, Geometry::kSame, true, mix_ayuy2_rgb24_i_ajust,
     run_mix_top_field, Inputs::kPictureAndOverlay},
    {"mix_ayuy2_rgb16_i_ajust", kMixRgb,
     "one field doubled line by line while mixed, adjusted and converted to "
     "16-bit words in the layout of --rgb16-layout",
     kRgb16Details, SurfaceFormat::kRgb16Layout0, Geometry::kSame, true,
     mix_ayuy2_rgb16_i_ajust, run_mix_top_field, Inputs::kPictureAndOverlay},

    {"mix_ayv12_yv12_p", kMixYv12, "mixes plane by plane; no adjustment",
     kYv12MixDetails, SurfaceFormat::kYv12, Geometry::kSame, false, mix_ayv12_yv12_p,
     run_mix_yv12_frame, Inputs::kPictureAndOverlay},
    {"mix_ayv12_yv12_p_ajust", kMixYv12,
     "mixes plane by plane, then adjusts luma, U and V",
     kYv12MixDetails, SurfaceFormat::kYv12, Geometry::kSame, true, mix_ayv12_yv12_p_ajust,
     run_mix_yv12_frame, Inputs::kPictureAndOverlay},
    {"mix_ayv12_yv12_i", kMixYv12,
     "one field doubled line by line (new lines rounded averages) while "
     "mixed plane by plane; no adjustment",
     kFieldDetails, SurfaceFormat::kYv12, Geometry::kSame, false, mix_ayv12_yv12_i,
     run_mix_yv12_top_field, Inputs::kPictureAndOverlay},

    {"LoadColorKeyRgb32", kColorKeys,
     "fills a rectangle with the 32-bit key, all four bytes",
     kKeyFillDetails, SurfaceFormat::kRgb32, Geometry::kSame, false, LoadColorKeyRgb32,
     run_key_fill},
    {"LoadColorKeyRgb24", kColorKeys,
     "fills a rectangle with the key in three 8-byte words stored in the "
     "order that only keeps grey keys whole",
     "Over the picture as loadimage_rgb24 draws it, a green key: the fill "
     "stores its three words out of order, so only pixels 3 and 4 of every "
     "8 are green and the rest show the key's bytes shuffled (red and blue "
     "stripes). A grey key would fill evenly.",
     SurfaceFormat::kRgb24, Geometry::kSame, false, LoadColorKeyRgb24, run_key_fill},
    {"LoadColorKeyRgb16", kColorKeys, "fills a rectangle with the key's low 16 bits",
     kKeyFillDetails, SurfaceFormat::kRgb16Layout0, Geometry::kSame, false,
     LoadColorKeyRgb16, run_key_fill, Inputs::kPicture, false},
    {"RelaceMaskWithColorKey", kColorKeys,
     "writes a key byte wherever a mask plane holds a given value, byte by "
     "byte",
     "Over the picture as loadimage_rgb32 draws it, with the overlay's "
     "prepared alpha (repeated for each byte of a pixel) as the mask: where "
     "the overlay is opaque (16) every byte becomes 0, so its opaque parts "
     "show black.",
     SurfaceFormat::kRgb32, Geometry::kSame, false, RelaceMaskWithColorKey,
     run_mask_replace, Inputs::kPictureAndOverlay},

    {"strech_picture_1X2_yuy2", kDoubling,
     "doubles the height; new lines are the rounded average of the rows "
     "around them, chroma interpolated on every second line",
     kDoublingTailDetails, SurfaceFormat::kYuy2, Geometry::kDoubleHeight, false,
     strech_picture_1X2_yuy2, run_planar9},
    {"strech_picture_1X2_yuy2_ajust", kDoubling,
     "doubles the height with a four-tap filter inside the picture (rounded "
     "averages at its top and bottom), then adjusts",
     kDoublingTailDetails, SurfaceFormat::kYuy2, Geometry::kDoubleHeight, true,
     strech_picture_1X2_yuy2_ajust, run_planar9},
    {"strech_opt_yuy2_ajust", kDoubling,
     "doubles the height interpolating along edges: where two rows differ, "
     "each new sample averages the pair of pixels (one above, one below) "
     "that match best along five directions",
     "Run on a frame record over the frame's packed planes, every row. Look "
     "at the zone plate and the slanted lines next to the plain average's "
     "staircase; flat areas and the first and last 16 pixels of each line "
     "are plain averages.",
     SurfaceFormat::kYuy2, Geometry::kDoubleHeight, true, strech_opt_yuy2_ajust,
     run_frame_doubler},
    {"strech_picture_1X2_yuy2_ajust_rgb32", kDoubling,
     "adjusts, doubles the height by rounded averages, converts to B G R 0",
     kDoublingTailDetails, SurfaceFormat::kRgb32, Geometry::kDoubleHeight, true,
     strech_picture_1X2_yuy2_ajust_rgb32, run_planar9},
    {"strech_picture_1X2_yuy2_ajust_rgb24", kDoubling,
     "adjusts, doubles the height by rounded averages, converts to B G R",
     kDoublingTailDetails, SurfaceFormat::kRgb24, Geometry::kDoubleHeight, true,
     strech_picture_1X2_yuy2_ajust_rgb24, run_planar9},
    {"strech_picture_1X2_yuy2_ajust_rgb16", kDoubling,
     "adjusts, doubles the height by rounded averages, converts to 16-bit "
     "words in the layout of --rgb16-layout",
     kRgb16Details, SurfaceFormat::kRgb16Layout0, Geometry::kDoubleHeight, true,
     strech_picture_1X2_yuy2_ajust_rgb16, run_planar9},
    {"strech_picture_1X2_yv12_ajust", kDoubling,
     "doubles each plane's height, adjusting; the V plane gets the U offset "
     "and the U plane the V offset, both chroma planes the luma gain",
     kPlaneEndDetails, SurfaceFormat::kYv12, Geometry::kDoubleHeight, true,
     strech_picture_1X2_yv12_ajust, run_yv12_doubler},
    {"strech_pic_1X2_adjust", kDoubling,
     "one plane doubled in height and adjusted; its first two lines repeat "
     "row 0",
     kPlaneDoublerDetails,
     SurfaceFormat::kYv12, Geometry::kDoubleHeight, true, strech_pic_1X2_adjust,
     run_plane_doubler},
    {"strech_picture_2X2_yuy2", kDoubling,
     "doubles both ways: new samples are rounded averages across, then down",
     kDoublingBothDetails, SurfaceFormat::kYuy2, Geometry::kDoubleBoth, false,
     strech_picture_2X2_yuy2, run_planar9},
    {"strech_picture_2X2_yuy2_ajust", kDoubling,
     "adjusts, then doubles both ways by rounded averages",
     kDoublingBothDetails, SurfaceFormat::kYuy2, Geometry::kDoubleBoth, true,
     strech_picture_2X2_yuy2_ajust, run_planar9},
    {"strech_picture_2X2_yv12_ajust", kDoubling,
     "doubles each plane both ways, then adjusts; V and U take each other's "
     "offsets, both the luma gain",
     kPlaneEndDetails, SurfaceFormat::kYv12, Geometry::kDoubleBoth, true,
     strech_picture_2X2_yv12_ajust, run_yv12_doubler},
    {"strech_pic_2X2", kDoubling,
     "one plane doubled both ways by rounded averages, in strips 8 source "
     "bytes wide",
     "Run on each plane of the frame into a YV12 surface. Every strip but "
     "the last writes its final line one line too low, so the last line "
     "shows magenta except at the right.",
     SurfaceFormat::kYv12, Geometry::kDoubleBoth, false, strech_pic_2X2,
     run_plane_doubler},
    {"yuy2_strech_picture_2X2_yuy2", kDoubling,
     "a packed YUY2 picture doubled both ways by rounded averages",
     kPackedDoublingDetails, SurfaceFormat::kYuy2, Geometry::kDoubleBoth, false,
     yuy2_strech_picture_2X2_yuy2, run_packed_doubler},
    {"yuy2_strech_picture_2X2_yuy2_ajust", kDoubling,
     "a packed YUY2 picture adjusted, then doubled both ways by rounded "
     "averages; chroma read from the next strip takes the other chroma "
     "offset",
     kPackedDoublingDetails, SurfaceFormat::kYuy2, Geometry::kDoubleBoth, true,
     yuy2_strech_picture_2X2_yuy2_ajust, run_packed_doubler},
    {"strech_pic_2X2_adjust", kDoubling,
     "one plane doubled both ways by rounded averages, then adjusted; its "
     "first two lines repeat row 0",
     kPlaneDoublerDetails,
     SurfaceFormat::kYv12, Geometry::kDoubleBoth, true, strech_pic_2X2_adjust,
     run_plane_doubler},
};

const char* geometry_label(Geometry g) {
  switch (g) {
    case Geometry::kSame:
      return "W x H";
    case Geometry::kHalfWidth:
      return "W/2 x H";
    case Geometry::kDoubleHeight:
      return "W x 2H";
    case Geometry::kDoubleBoth:
      return "2W x 2H";
  }
  return "?";
}

}  // namespace

KernelSource prepare_source(const Picture420& picture,
                            std::shared_ptr<const RgbaImage> overlay) {
  KernelSource s;
  s.overlay = std::move(overlay);
  s.width = picture.width;
  s.height = picture.height;
  s.run_width = round_up(std::max(picture.width, 1), kGroupPixels);
  s.run_height = round_up(std::max(picture.height, 1), 2);
  s.pitch = s.run_width + kGroupPixels;
  const int chroma_pitch = s.pitch / 2;
  const int luma_rows = s.run_height + 2;
  const int chroma_rows = s.run_height / 2 + 1;
  s.y.resize(static_cast<size_t>(s.pitch) * luma_rows);
  s.u.resize(static_cast<size_t>(chroma_pitch) * chroma_rows);
  s.v.resize(s.u.size());
  pad_plane(picture.y.data(), picture.width, picture.height, s.y.data(),
            s.pitch, luma_rows);
  pad_plane(picture.u.data(), picture.chroma_width(), picture.chroma_height(),
            s.u.data(), chroma_pitch, chroma_rows);
  pad_plane(picture.v.data(), picture.chroma_width(), picture.chroma_height(),
            s.v.data(), chroma_pitch, chroma_rows);
  return s;
}

const std::vector<KernelInfo>& all_kernels() { return kKernels; }

const std::vector<FamilyInfo>& kernel_families() { return kFamilies; }

bool reads_rgb16_layout(const KernelInfo& kernel) {
  return is_rgb16(kernel.output) && kernel.rgb16_layout_from_record;
}

SurfaceFormat surface_format(const KernelInfo& kernel,
                             const tag_ajust_contrast_info& adjust) {
  return reads_rgb16_layout(kernel) ? rgb16_format(adjust.rgb16Layout)
                                    : kernel.output;
}

const KernelInfo* find_kernel(const std::string& name) {
  for (const KernelInfo& k : kKernels)
    if (name == k.name) return &k;
  return nullptr;
}

void output_size(const KernelInfo& kernel, int width, int height,
                 int& out_width, int& out_height) {
  out_width = kernel.geometry == Geometry::kHalfWidth ? (width + 1) / 2
                                                     : width * width_factor(kernel.geometry);
  out_height = height * height_factor(kernel.geometry);
}

Surface run_kernel(const KernelInfo& kernel, const KernelSource& source,
                   const tag_ajust_contrast_info& adjust) {
  return kernel.run(kernel, source, adjust);
}

tag_ajust_contrast_info identity_adjustment() {
  tag_ajust_contrast_info a{};
  a.lumaGain = 64;
  a.chromaGain = 64;
  return a;
}

tag_ajust_contrast_info pivot_adjustment(int luma_gain, int chroma_gain) {
  // A sample s becomes s*g/64 + offset; at s = 128 that is 2g + offset.
  tag_ajust_contrast_info a{};
  a.lumaGain = luma_gain;
  a.chromaGain = chroma_gain;
  a.lumaOffset = 128 - 2 * luma_gain;
  a.uOffset = a.vOffset = 128 - 2 * chroma_gain;
  return a;
}

tag_ajust_contrast_info demo_adjustment() { return pivot_adjustment(76, 80); }

std::string describe_adjustment(const tag_ajust_contrast_info& a) {
  std::ostringstream s;
  s << "luma gain " << a.lumaGain << "/64, luma offset "
    << a.lumaOffset + a.lumaOffsetExtra << ", chroma gain " << a.chromaGain
    << "/64, U offset " << a.uOffset + a.uOffsetExtra << ", V offset "
    << a.vOffset + a.vOffsetExtra;
  return s.str();
}

void print_kernel_list(std::ostream& out) {
  size_t name_width = 0;
  for (const KernelInfo& k : kKernels)
    name_width = std::max(name_width, std::string(k.name).size());

  out << "Kernels the library provides, by family. Output is the surface\n"
         "format and its size for a W x H input picture; * marks kernels\n"
         "that apply the picture adjustment (convert --luma-gain etc.).\n"
         "Subpicture kernels work on the built-in menu overlay; the mixers\n"
         "take a PNG instead with convert --subpicture.\n";
  for (const FamilyInfo& family : kFamilies) {
    out << "\n" << family.name << "\n  (" << family.description << ")\n";
    for (const KernelInfo& k : kKernels) {
      if (std::strcmp(k.family, family.name) != 0) continue;
      std::string name = k.name;
      name.resize(name_width, ' ');
      const std::string format = reads_rgb16_layout(k)
                                     ? "RGB16 (layout L)"
                                     : surface_format_info(k.output).name;
      out << "  " << name << (k.adjusts ? " * " : "   ") << format << ' '
          << geometry_label(k.geometry) << "\n"
          << "  " << std::string(name_width + 3, ' ') << k.description
          << "\n";
    }
  }
  out << "\nSurface formats (RGB16 layout L is convert's --rgb16-layout):\n";
  std::vector<SurfaceFormat> shown;
  for (const KernelInfo& k : kKernels) {
    std::vector<SurfaceFormat> formats = {k.output};
    if (reads_rgb16_layout(k)) {
      formats.clear();
      for (uint32_t l = 0; l < kRgb16Layouts; ++l) formats.push_back(rgb16_format(l));
    }
    for (SurfaceFormat f : formats) {
      if (std::find(shown.begin(), shown.end(), f) != shown.end()) continue;
      shown.push_back(f);
      const SurfaceFormatInfo& info = surface_format_info(f);
      out << "  " << info.name << ": " << info.layout << "\n";
    }
  }
}

}  // namespace ybtool
