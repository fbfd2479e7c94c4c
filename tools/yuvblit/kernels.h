// The registry of library kernels the tool can run. Each entry says what the
// kernel is, what it writes and which runner calls it; a runner knows how
// one family wants its source, pitches, record and surface. Adding a kernel
// to a known family is one table row in kernels.cpp; a new family also needs
// its runner, a new signature its alternative in KernelEntry, and a new
// output format its row in surface.cpp and its case in view.cpp.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "picture.h"
#include "surface.h"
#include "yuvblit.h"

namespace ybtool {

// A planar frame laid out the way the kernels need it: width rounded up to
// whole 16-pixel groups, height to whole row pairs, one spare group at the
// right of every row and spare rows at the bottom, all padding repeating the
// picture's edge pixels. The kernels are run over run_width x run_height, so
// no row ever drifts, and the tool crops their output to the picture.
//
// The subpicture kernels also get an overlay, placed at the picture's
// top-left (the rest transparent); without one they draw the built-in
// overlay at the picture's size.
struct KernelSource {
  int width = 0, height = 0;          // the picture
  int run_width = 0, run_height = 0;  // the area the kernels are asked to cover
  int pitch = 0;                      // luma bytes per row; chroma uses pitch/2
  std::vector<uint8_t> y, u, v;
  std::shared_ptr<const RgbaImage> overlay;  // may be null
};

KernelSource prepare_source(const Picture420& picture,
                            std::shared_ptr<const RgbaImage> overlay = nullptr);

// Output picture size relative to the input picture.
enum class Geometry {
  kSame,       // W x H
  kHalfWidth,  // ceil(W/2) x H
  kDoubleHeight,  // W x 2H
  kDoubleBoth,    // 2W x 2H
};

struct KernelInfo;

using Kernel9 = void (*)(void*, void*, void*, void*, int32_t, int32_t,
                         int32_t, int32_t, tag_ajust_contrast_info*);
using MixKernel = void (*)(tagMIX_INFO*);
// One plane in, one plane out: unadjusted, and adjusted with a plane
// selector.
using PlaneKernel = void (*)(unsigned char*, unsigned char*, int32_t, int32_t,
                             int32_t, int32_t);
using AdjustedPlaneKernel = void (*)(unsigned char*, unsigned char*, int32_t,
                                     int32_t, int32_t, int32_t,
                                     tag_ajust_contrast_info*, int32_t);
using FrameKernel = void (*)(tagVideoFrame*, int32_t, int32_t, unsigned char*,
                             int32_t, tag_ajust_contrast_info*);
// Packed YUY2 source, unadjusted and adjusted.
using PackedKernel = void (*)(void*, void*, void*, void*, int32_t, int32_t, int32_t);
using AdjustedPackedKernel = void (*)(void*, void*, void*, void*, int32_t, int32_t, int32_t,
                                      tag_ajust_contrast_info*);
// Colour keys: a key fill of a rectangle, and the key stamped where a mask
// holds a value.
using KeyFillKernel = void (*)(uint32_t, void*, int32_t, int32_t, int32_t, int32_t);
using MaskKernel = void (*)(unsigned char*, unsigned char*, uint32_t, uint32_t, int32_t,
                            int32_t, int32_t);
// The entry point in whichever signature it has; its runner knows which.
using KernelEntry =
    std::variant<Kernel9, MixKernel, PlaneKernel, AdjustedPlaneKernel, FrameKernel,
                 PackedKernel, AdjustedPackedKernel, KeyFillKernel, MaskKernel>;
using KernelRunner = Surface (*)(const KernelInfo&, const KernelSource&,
                                 const tag_ajust_contrast_info&);

// What a kernel reads besides the adjustment.
enum class Inputs {
  kPicture,            // the frame
  kOverlay,            // an overlay bitmap or the subpicture made from it
  kPictureAndOverlay,  // both: the mixers
};

struct KernelInfo {
  const char* name;         // the library's entry point
  const char* family;       // kernels are listed grouped by this
  const char* description;  // one line
  const char* details;      // how the tool calls it, what to look for; or ""
  SurfaceFormat output;     // RGB16 kernels: layout 0, see surface_format()
  Geometry geometry;
  bool adjusts;             // reads the get_contrast_data() constants
  KernelEntry entry;
  KernelRunner run;
  Inputs inputs = Inputs::kPicture;
  // RGB16 output: false when it is always 5-6-5 and adjust.rgb16Layout is
  // not read.
  bool rgb16_layout_from_record = true;
};

// A family: its name as in KernelInfo::family and a one-line description.
struct FamilyInfo {
  const char* name;
  const char* description;
};

const std::vector<KernelInfo>& all_kernels();
// In the order the families first appear in all_kernels().
const std::vector<FamilyInfo>& kernel_families();
const KernelInfo* find_kernel(const std::string& name);

void output_size(const KernelInfo& kernel, int width, int height,
                 int& out_width, int& out_height);

// Whether the kernel's RGB16 output follows adjust.rgb16Layout (the demo
// then shows every layout).
bool reads_rgb16_layout(const KernelInfo& kernel);

// The format the kernel writes under `adjust`: RGB16 kernels take their
// layout from adjust.rgb16Layout (ToolError above 3, where they would write
// nothing); every other kernel writes its declared format.
SurfaceFormat surface_format(const KernelInfo& kernel,
                             const tag_ajust_contrast_info& adjust);

// Loads `adjust` into the library when the kernel reads it, then runs it on
// a fresh marker-filled surface. Throws ToolError for an RGB16 layout above 3.
Surface run_kernel(const KernelInfo& kernel, const KernelSource& source,
                   const tag_ajust_contrast_info& adjust);

// Gains 64, offsets 0: every sample unchanged.
tag_ajust_contrast_info identity_adjustment();
// Gains `luma_gain` and `chroma_gain` pivoting about 128, so mid-grey and
// neutral chroma stay where they are.
tag_ajust_contrast_info pivot_adjustment(int luma_gain, int chroma_gain);
// The adjustment the demo shows: more contrast and saturation.
tag_ajust_contrast_info demo_adjustment();
std::string describe_adjustment(const tag_ajust_contrast_info& adjust);

// The `list` subcommand's text.
void print_kernel_list(std::ostream& out);

}  // namespace ybtool
