#include "surface.h"

#include <stdexcept>

namespace ybtool {

const SurfaceFormatInfo& surface_format_info(SurfaceFormat format) {
  // Magenta is RGB 255,0,255: BT.601 limited-range Y 106, U 202, V 222.
  static const SurfaceFormatInfo kYuy2{
      "YUY2", "packed 4:2:2, Y0 U Y1 V per pixel pair", 2, 2,
      {106, 202, 106, 222}, 4};
  switch (format) {
    case SurfaceFormat::kYuy2:
      return kYuy2;
  }
  throw std::logic_error("surface format without a description");
}

int Surface::stored_width() const {
  const int unit = surface_format_info(format).pixels_per_unit;
  return (width + unit - 1) / unit * unit;
}

size_t Surface::row_bytes() const {
  return static_cast<size_t>(stored_width()) *
         surface_format_info(format).bytes_per_pixel;
}

Surface make_marked_surface(SurfaceFormat format, int width, int height,
                            int pitch, int rows) {
  const SurfaceFormatInfo& info = surface_format_info(format);
  Surface s;
  s.format = format;
  s.width = width;
  s.height = height;
  s.pitch = pitch;
  s.bytes.resize(static_cast<size_t>(pitch) * rows);
  for (int r = 0; r < rows; ++r) {
    uint8_t* p = s.row(r);
    for (int i = 0; i < pitch; ++i) p[i] = info.marker[i % info.marker_bytes];
  }
  return s;
}

}  // namespace ybtool
