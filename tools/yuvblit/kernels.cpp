#include "kernels.h"

#include <algorithm>
#include <cstring>
#include <ostream>
#include <sstream>

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

// Nine-argument planar kernels: planes, destination, the run size, the
// source luma pitch and the destination pitch.
Surface run_planar9(const KernelInfo& kernel, const KernelSource& src,
                    const tag_ajust_contrast_info& adjust) {
  const SurfaceFormatInfo& format = surface_format_info(kernel.output);
  int out_w = 0, out_h = 0;
  output_size(kernel, src.width, src.height, out_w, out_h);
  const int pixels_per_group =
      kernel.geometry == Geometry::kHalfWidth ? kGroupPixels / 2 : kGroupPixels;
  const int written = src.run_width / kGroupPixels * pixels_per_group *
                      format.bytes_per_pixel;
  const int pitch = round_up(written + kSurfaceSlackBytes, 16);
  Surface surface = make_marked_surface(kernel.output, out_w, out_h, pitch,
                                        src.run_height + kSpareRows);

  tag_ajust_contrast_info record = adjust;
  if (kernel.adjusts) get_contrast_data(&record);
  // The kernels take non-const pointers but only read the source planes.
  auto plane = [](const std::vector<uint8_t>& p) {
    return const_cast<uint8_t*>(p.data());
  };
  kernel.entry(plane(src.y), plane(src.u), plane(src.v), surface.bytes.data(),
               src.run_width, src.run_height, src.pitch, pitch, &record);
  return surface;
}

constexpr const char* kPlanarToYuy2 = "planar 4:2:0 to YUY2";

const std::vector<KernelInfo> kKernels = {
    {"loadimage_yuy2", kPlanarToYuy2,
     "copies; in the second row of each pair, pixels 0-3 of every 16 keep "
     "what the surface held",
     SurfaceFormat::kYuy2, Geometry::kSame, false, loadimage_yuy2,
     run_planar9},
    {"loadimage_yuy2_ajust", kPlanarToYuy2,
     "adjusts luma, U and V; writes nothing when the height is 8 or less",
     SurfaceFormat::kYuy2, Geometry::kSame, true, loadimage_yuy2_ajust,
     run_planar9},
    {"loadimage_yuy2_mono_ajust", kPlanarToYuy2,
     "adjusts luma and writes neutral chroma (0x80): a grey picture",
     SurfaceFormat::kYuy2, Geometry::kSame, true, loadimage_yuy2_mono_ajust,
     run_planar9},
    {"loadimage_half_yuy2_ajust", kPlanarToYuy2,
     "half width: averages each pixel pair (rounding up), then adjusts",
     SurfaceFormat::kYuy2, Geometry::kHalfWidth, true,
     loadimage_half_yuy2_ajust, run_planar9},
};

const char* geometry_label(Geometry g) {
  switch (g) {
    case Geometry::kSame:
      return "W x H";
    case Geometry::kHalfWidth:
      return "W/2 x H";
  }
  return "?";
}

}  // namespace

KernelSource prepare_source(const Picture420& picture) {
  KernelSource s;
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

const KernelInfo* find_kernel(const std::string& name) {
  for (const KernelInfo& k : kKernels)
    if (name == k.name) return &k;
  return nullptr;
}

void output_size(const KernelInfo& kernel, int width, int height,
                 int& out_width, int& out_height) {
  out_width = kernel.geometry == Geometry::kHalfWidth ? (width + 1) / 2 : width;
  out_height = height;
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
  std::vector<const char*> families;
  for (const KernelInfo& k : kKernels)
    if (std::none_of(families.begin(), families.end(),
                     [&](const char* f) { return std::strcmp(f, k.family) == 0; }))
      families.push_back(k.family);

  size_t name_width = 0;
  for (const KernelInfo& k : kKernels)
    name_width = std::max(name_width, std::string(k.name).size());

  out << "Kernels the library provides, by family. Output is the surface\n"
         "format and its size for a W x H input picture; * marks kernels\n"
         "that apply the picture adjustment (convert --luma-gain etc.).\n";
  for (const char* family : families) {
    out << "\n" << family << "\n";
    for (const KernelInfo& k : kKernels) {
      if (std::strcmp(k.family, family) != 0) continue;
      const SurfaceFormatInfo& f = surface_format_info(k.output);
      std::string name = k.name;
      name.resize(name_width, ' ');
      out << "  " << name << (k.adjusts ? " * " : "   ") << f.name << ' '
          << geometry_label(k.geometry) << "\n"
          << "  " << std::string(name_width + 3, ' ') << k.description
          << "\n";
    }
  }
  out << "\nSurface formats:\n";
  std::vector<SurfaceFormat> shown;
  for (const KernelInfo& k : kKernels) {
    if (std::find(shown.begin(), shown.end(), k.output) != shown.end())
      continue;
    shown.push_back(k.output);
    const SurfaceFormatInfo& f = surface_format_info(k.output);
    out << "  " << f.name << ": " << f.layout << "\n";
  }
}

}  // namespace ybtool
