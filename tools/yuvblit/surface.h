// Destination surfaces the kernels write, and what the tool knows about each
// surface format. Adding a format: one enumerator, one row in
// surface_format_info() (surface.cpp) and one case in the viewer (view.cpp).
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ybtool {

enum class SurfaceFormat {
  kYuy2,         // packed 4:2:2, bytes Y0 U Y1 V per pixel pair
  kYv12,         // planar 4:2:0: luma plane, V plane, U plane
  kRgb32,        // bytes B G R 0 per pixel
  kRgb24,        // bytes B G R per pixel
  kRgb16Layout0,  // little-endian words, R 15..11 G 10..5 B 4..0
  kRgb16Layout1,  // R 15..11 G 10..6 B 5..1, bit 0 clear
  kRgb16Layout2,  // R 15..10 G 9..4 B 3..0
  kRgb16Layout3,  // R 15..10 G 9..5 B 4..0
  kAlpha,        // one byte per pixel: a subpicture's alpha (weights 0..16)
};

struct SurfaceFormatInfo {
  const char* name;         // as shown to the user
  const char* layout;       // one-line description of the bytes
  int bytes_per_pixel;      // of the first (for YV12 the luma) plane
  int pixels_per_unit;      // smallest whole run of pixels (2 for YUY2)
  uint8_t marker[4];        // a saturated magenta, repeated over the surface
                            // (YV12: Y, V, U of each plane)
  int marker_bytes;         // how many bytes of `marker` form the pattern
};

const SurfaceFormatInfo& surface_format_info(SurfaceFormat format);

// The RGB16 layouts 0..3 the RGB16 kernels read from the adjustment record.
constexpr uint32_t kRgb16Layouts = 4;
bool is_rgb16(SurfaceFormat format);
// Throws ToolError for layouts above 3, for which the kernels write nothing.
SurfaceFormat rgb16_format(uint32_t layout);
uint32_t rgb16_layout(SurfaceFormat format);  // for RGB16 formats only

// Bit positions of the channels of an RGB16 word.
struct Rgb16Channel {
  int bits, shift;
};
struct Rgb16Fields {
  Rgb16Channel r, g, b;
};
Rgb16Fields rgb16_fields(SurfaceFormat format);

// A surface as a kernel left it. `width` x `height` pixels are the picture;
// the allocation around it (pitch beyond the row, rows below) is the room
// the kernels are allowed to spill into. YV12 surfaces hold three planes at
// the offsets the kernel put them; the luma plane is the one `pitch` and
// row() describe.
struct Surface {
  SurfaceFormat format = SurfaceFormat::kYuy2;
  int width = 0;
  int height = 0;
  int pitch = 0;  // bytes from one row to the next
  std::vector<uint8_t> bytes;
  // YV12 only: first byte of each chroma plane and their row pitch.
  size_t v_offset = 0, u_offset = 0;
  int chroma_pitch = 0;
  // Non-zero for RGB bitmaps that carry small numbers rather than colours
  // (an alpha plane in the blue byte): the viewer shows each channel's
  // stored value (byte, or RGB16 field) times this gain, limited to 255.
  int value_gain = 0;

  const uint8_t* row(int r) const { return bytes.data() + static_cast<size_t>(r) * pitch; }
  uint8_t* row(int r) { return bytes.data() + static_cast<size_t>(r) * pitch; }
  const uint8_t* v_row(int r) const {
    return bytes.data() + v_offset + static_cast<size_t>(r) * chroma_pitch;
  }
  const uint8_t* u_row(int r) const {
    return bytes.data() + u_offset + static_cast<size_t>(r) * chroma_pitch;
  }
  int chroma_width() const { return (width + 1) / 2; }
  int chroma_height() const { return (height + 1) / 2; }

  // Width rounded up to whole units of the format (YUY2 comes in pairs).
  int stored_width() const;
  // Bytes of one picture row (of the luma plane) as written to a raw file.
  size_t row_bytes() const;

  // Calls f(pointer, bytes) for every row of a raw file, in file order:
  // one plane, or for YV12 the luma, V and U planes cropped to the picture.
  template <class F>
  void for_each_raw_row(F f) const {
    for (int r = 0; r < height; ++r) f(row(r), row_bytes());
    if (format != SurfaceFormat::kYv12) return;
    const size_t cw = static_cast<size_t>(chroma_width());
    for (int r = 0; r < chroma_height(); ++r) f(v_row(r), cw);
    for (int r = 0; r < chroma_height(); ++r) f(u_row(r), cw);
  }
};

// A surface of `pitch` x `rows` bytes filled with the format's marker colour,
// so that bytes a kernel leaves alone stay visible in the output. Not for
// YV12.
Surface make_marked_surface(SurfaceFormat format, int width, int height,
                            int pitch, int rows);

// A YV12 surface of `total_bytes`: luma marker up to the V plane, V marker
// from there to the U plane, U marker after it.
Surface make_marked_yv12(int width, int height, int pitch, size_t v_offset,
                         size_t u_offset, int chroma_pitch, size_t total_bytes);

}  // namespace ybtool
