#include "surface.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "errors.h"

namespace ybtool {

const SurfaceFormatInfo& surface_format_info(SurfaceFormat format) {
  // Magenta is RGB 255,0,255: BT.601 limited-range Y 106, U 202, V 222; as
  // RGB16 words (stored low byte first) 0xF81F, 0xF83E, 0xFC0F and 0xFC1F.
  static const SurfaceFormatInfo kInfo[] = {
      {"YUY2", "packed 4:2:2, Y0 U Y1 V per pixel pair", 2, 2,
       {106, 202, 106, 222}, 4},
      {"YV12",
       "planar 4:2:0: luma plane, then V plane, then U plane (chroma planes "
       "half the width and height)",
       1, 1, {106, 222, 202, 0}, 1},
      {"RGB32", "B G R 0 per pixel", 4, 1, {255, 0, 255, 0}, 4},
      {"RGB24", "B G R per pixel", 3, 1, {255, 0, 255, 0}, 3},
      {"RGB16 layout 0",
       "little-endian 16-bit words, 5-6-5: R bits 15-11, G 10-5, B 4-0", 2, 1,
       {0x1F, 0xF8, 0, 0}, 2},
      {"RGB16 layout 1",
       "little-endian 16-bit words, 5-5-5: R bits 15-11, G 10-6, B 5-1, bit 0 "
       "clear",
       2, 1, {0x3E, 0xF8, 0, 0}, 2},
      {"RGB16 layout 2",
       "little-endian 16-bit words, 6-6-4: R bits 15-10, G 9-4, B 3-0", 2, 1,
       {0x0F, 0xFC, 0, 0}, 2},
      {"RGB16 layout 3",
       "little-endian 16-bit words, 6-5-5: R bits 15-10, G 9-5, B 4-0", 2, 1,
       {0x1F, 0xFC, 0, 0}, 2},
      // The marker is above every weight the tool draws (0..16).
      {"alpha",
       "one byte per pixel: the mixing weight, 0 transparent to 16 opaque "
       "(shown as grey, 16 = 240; bytes above 16 magenta)",
       1, 1, {0xFF, 0, 0, 0}, 1},
  };
  const auto i = static_cast<size_t>(format);
  if (i >= std::size(kInfo))
    throw std::logic_error("surface format without a description");
  return kInfo[i];
}

bool is_rgb16(SurfaceFormat format) {
  return format >= SurfaceFormat::kRgb16Layout0 &&
         format <= SurfaceFormat::kRgb16Layout3;
}

SurfaceFormat rgb16_format(uint32_t layout) {
  if (layout >= kRgb16Layouts)
    throw ToolError("RGB16 layout " + std::to_string(layout) +
                    " does not exist (layouts are 0 to 3)");
  return static_cast<SurfaceFormat>(
      static_cast<uint32_t>(SurfaceFormat::kRgb16Layout0) + layout);
}

uint32_t rgb16_layout(SurfaceFormat format) {
  if (!is_rgb16(format)) throw std::logic_error("not an RGB16 format");
  return static_cast<uint32_t>(format) -
         static_cast<uint32_t>(SurfaceFormat::kRgb16Layout0);
}

Rgb16Fields rgb16_fields(SurfaceFormat format) {
  static const Rgb16Fields kFields[kRgb16Layouts] = {
      {{5, 11}, {6, 5}, {5, 0}},
      {{5, 11}, {5, 6}, {5, 1}},
      {{6, 10}, {6, 4}, {4, 0}},
      {{6, 10}, {5, 5}, {5, 0}},
  };
  return kFields[rgb16_layout(format)];
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
  if (format == SurfaceFormat::kYv12)
    throw std::logic_error("YV12 surfaces are made by make_marked_yv12");
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

Surface make_marked_yv12(int width, int height, int pitch, size_t v_offset,
                         size_t u_offset, int chroma_pitch, size_t total_bytes) {
  if (v_offset > u_offset || u_offset > total_bytes)
    throw std::logic_error("YV12 planes out of order");
  const uint8_t* marker = surface_format_info(SurfaceFormat::kYv12).marker;
  Surface s;
  s.format = SurfaceFormat::kYv12;
  s.width = width;
  s.height = height;
  s.pitch = pitch;
  s.v_offset = v_offset;
  s.u_offset = u_offset;
  s.chroma_pitch = chroma_pitch;
  s.bytes.resize(total_bytes);
  auto at = [&](size_t offset) { return s.bytes.begin() + static_cast<std::ptrdiff_t>(offset); };
  std::fill(at(0), at(v_offset), marker[0]);
  std::fill(at(v_offset), at(u_offset), marker[1]);
  std::fill(at(u_offset), s.bytes.end(), marker[2]);
  return s;
}

}  // namespace ybtool
