// Destination surfaces the kernels write, and what the tool knows about each
// surface format. Adding a format: one enumerator, one row in
// surface_format_info() (surface.cpp) and one case in the viewer (view.cpp).
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ybtool {

enum class SurfaceFormat {
  kYuy2,  // packed 4:2:2, bytes Y0 U Y1 V per pixel pair
};

struct SurfaceFormatInfo {
  const char* name;         // as shown to the user
  const char* layout;       // one-line description of the bytes
  int bytes_per_pixel;
  int pixels_per_unit;      // smallest whole run of pixels (2 for YUY2)
  uint8_t marker[4];        // a saturated magenta, repeated over the surface
  int marker_bytes;         // how many bytes of `marker` form the pattern
};

const SurfaceFormatInfo& surface_format_info(SurfaceFormat format);

// A surface as a kernel left it. `width` x `height` pixels are the picture;
// the allocation around it (pitch beyond the row, rows below) is the room
// the kernels are allowed to spill into.
struct Surface {
  SurfaceFormat format = SurfaceFormat::kYuy2;
  int width = 0;
  int height = 0;
  int pitch = 0;  // bytes from one row to the next
  std::vector<uint8_t> bytes;

  const uint8_t* row(int r) const { return bytes.data() + static_cast<size_t>(r) * pitch; }
  uint8_t* row(int r) { return bytes.data() + static_cast<size_t>(r) * pitch; }

  // Width rounded up to whole units of the format (YUY2 comes in pairs).
  int stored_width() const;
  // Bytes of one picture row as written to a raw file.
  size_t row_bytes() const;
};

// A surface of `pitch` x `rows` bytes filled with the format's marker colour,
// so that bytes a kernel leaves alone stay visible in the output.
Surface make_marked_surface(SurfaceFormat format, int width, int height,
                            int pitch, int rows);

}  // namespace ybtool
