#include "demo.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include "errors.h"
#include "kernels.h"
#include "png_writer.h"
#include "staged_files.h"
#include "subpicture.h"
#include "test_overlay.h"
#include "test_pattern.h"
#include "view.h"
#include "y4m.h"

namespace ybtool {
namespace {

namespace fs = std::filesystem;

std::string html_escape(const std::string& s) {
  std::string out;
  for (char c : s) {
    switch (c) {
      case '&': out += "&amp;"; break;
      case '<': out += "&lt;"; break;
      case '>': out += "&gt;"; break;
      case '"': out += "&quot;"; break;
      default: out += c;
    }
  }
  return out;
}

struct Card {
  std::string file, title, description, details;
};

// Cards under a heading: the source, then one section per kernel family.
struct Section {
  std::string title, description;
  std::vector<Card> cards;
};

Picture420 first_frame(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw ToolError(path + ": cannot open (" + std::strerror(errno) + ")");
  Y4mReader reader(in, path);
  Picture420 picture;
  if (!reader.read_frame(picture)) throw ToolError(path + ": contains no frames");
  return picture;
}

std::string contact_sheet(const std::string& picture_name,
                          const std::vector<Section>& sections) {
  std::ostringstream h;
  h << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
       "<title>yuvblit kernels</title>\n<style>\n"
       "body { font-family: sans-serif; background: #222; color: #ddd; margin: 1.5em; }\n"
       ".sheet { display: flex; flex-wrap: wrap; gap: 1.5em; align-items: flex-start; }\n"
       "figure { margin: 0; background: #333; padding: 0.75em; border-radius: 6px; }\n"
       "img { display: block; image-rendering: pixelated; }\n"
       "figcaption { max-width: 720px; margin-top: 0.5em; line-height: 1.4; }\n"
       "code { color: #fff; font-weight: bold; }\n"
       "h2 { margin-top: 1.5em; border-bottom: 1px solid #555; }\n"
       ".details { color: #aaa; font-size: 90%; }\n"
       "</style>\n</head>\n<body>\n<h1>yuvblit kernels</h1>\n<p>"
    << html_escape(picture_name)
    << " run through every kernel of the library, shown at 1:1, grouped by "
       "family. Surfaces are filled with magenta before each kernel runs, so "
       "magenta pixels are ones the kernel did not write.</p>\n<p>How the "
       "surfaces are shown: RGB surfaces as they are, RGB16 ones with each "
       "channel widened back to 8 bits by repeating its top bits; YUY2 "
       "surfaces through the library's own LoadYUY2_RGB32 (run from the first "
       "and from the second row, so every row keeps its own chroma) and YV12 "
       "surfaces through its loadimage_rgb32; the source picture through "
       "libswscale, independently of the library. Alpha planes show each "
       "weight as grey (weight &times; 15, so 16 is 240; anything above 16, "
       "the marker included, magenta) and bitmaps carrying alpha show every "
       "stored value &times; 15.</p>\n";
  for (const Section& section : sections) {
    h << "<h2>" << html_escape(section.title) << "</h2>\n<p>"
      << html_escape(section.description) << "</p>\n<div class=\"sheet\">\n";
    for (const Card& c : section.cards) {
      h << "<figure>\n<img src=\"" << html_escape(c.file) << "\" alt=\""
        << html_escape(c.title) << "\">\n<figcaption><code>"
        << html_escape(c.title) << "</code> &mdash; "
        << html_escape(c.description) << "<br><span class=\"details\">"
        << html_escape(c.details) << "</span></figcaption>\n</figure>\n";
    }
    h << "</div>\n";
  }
  h << "</body>\n</html>\n";
  return h.str();
}


// The interpolators of the vertical doublers side by side: the same crop
// (the picture's centre near the bottom, where the built-in picture has the
// zone plate's edge and slanted lines) doubled by the rounded average, the
// four-tap filter and the edge-directed stretch, each without adjustment so
// only the interpolation differs, enlarged `kScale` times without
// smoothing.
constexpr int kScale = 3;
constexpr int kGap = 12;
constexpr const char* kComparedDoublers[] = {
    "strech_picture_1X2_yuy2", "strech_picture_1X2_yuy2_ajust", "strech_opt_yuy2_ajust"};

RgbImage doubling_comparison(const KernelSource& source, Viewer& viewer) {
  const int crop_w = std::min(source.width, 96), crop_rows = std::min(source.height, 48);
  const int x0 = std::max(0, source.width / 2 - crop_w / 2);
  const int y0 = std::clamp(source.height * 85 / 100 - crop_rows / 2, 0,
                            source.height - crop_rows);
  const int panel_w = crop_w * kScale, panel_h = 2 * crop_rows * kScale;
  RgbImage out;
  out.width = 3 * panel_w + 2 * kGap;
  out.height = panel_h;
  out.pixels.assign(static_cast<size_t>(out.width) * out.height * 3, 0x22);
  int left = 0;
  for (const char* name : kComparedDoublers) {
    const KernelInfo* k = find_kernel(name);
    const RgbImage doubled = viewer.view(run_kernel(*k, source, identity_adjustment()));
    for (int y = 0; y < panel_h; ++y)
      for (int x = 0; x < panel_w; ++x)
        std::copy_n(doubled.at(x0 + x / kScale, 2 * y0 + y / kScale), 3,
                    out.pixels.begin() +
                        static_cast<std::ptrdiff_t>((static_cast<size_t>(y) * out.width + left + x) * 3));
    left += panel_w + kGap;
  }
  return out;
}
}  // namespace

std::vector<std::string> run_demo(const DemoOptions& options) {
  const fs::path dir(options.out_dir);
  std::error_code ec;
  fs::create_directories(dir, ec);
  if (ec || !fs::is_directory(dir))
    throw ToolError(options.out_dir + ": cannot create directory (" +
                    (ec ? ec.message() : std::string("not a directory")) + ")");

  const bool builtin = options.input.empty();
  const Picture420 picture =
      builtin ? make_test_picture() : first_frame(options.input);
  const std::string picture_name =
      builtin ? "The built-in test picture" : "The first frame of " + options.input;
  const std::string size =
      std::to_string(picture.width) + "x" + std::to_string(picture.height);
  const auto overlay =
      std::make_shared<const RgbaImage>(make_test_overlay(picture.width, picture.height));
  const KernelSource source = prepare_source(picture, overlay);

  StagedFiles staged;
  std::vector<std::string> written;
  Viewer viewer;
  auto stage_png = [&](const std::string& file, const RgbImage& image) {
    const std::string path = (dir / file).string();
    write_png(staged.add(path), image);
    written.push_back(path);
  };

  std::vector<Section> sections;
  stage_png("source.png", viewer.view(picture));
  // The overlay as a host hands it to the preparation kernels.
  Surface colour = overlay_bitmap(*overlay, SurfaceFormat::kRgb32, source.run_width,
                                  source.run_height);
  Surface alpha = alpha_bitmap(*overlay, source.run_width, source.run_height);
  colour.width = alpha.width = picture.width;
  colour.height = alpha.height = picture.height;
  alpha.value_gain = 15;
  stage_png("overlay.png", viewer.view(colour));
  stage_png("overlay-alpha.png", viewer.view(alpha));
  sections.push_back(
      {"Source",
       "The picture every kernel starts from, and the overlay the subpicture "
       "kernels get: drawn into an RGB32 bitmap whose transparent pixels hold "
       "the colour key, with its alpha in a second bitmap's blue byte. "
       "Convert_RGB32_To_AYUY2 and Restore_RGB32_To_Alpha turn them into the "
       "subpicture planes the mixers read.",
       {{"source.png", "source",
         builtin ? "the built-in test picture: colour bars, luma ramp, U and V "
                   "ramps, zone plate and fine lines"
                 : "first frame of " + options.input,
         "planar 4:2:0, " + size},
        {"overlay.png", "overlay bitmap",
         "the built-in menu overlay as drawn: RGB32, transparent pixels in the "
         "colour key (grey 64,64,64)",
         "RGB32 " + size + ". A translucent panel over a soft shadow, opaque "
         "buttons and text, a slider whose alpha fades in from 0, an outlined "
         "caption."},
        {"overlay-alpha.png", "overlay alpha bitmap",
         "the overlay's alpha as weights 0..16 in the blue byte, (weight, 0, "
         "0, 0) per pixel",
         "RGB32 " + size + ", shown with every byte times 15. 8-bit alpha a "
         "becomes the weight a*16/255 rounded."}}});

  for (const FamilyInfo& family : kernel_families()) {
    Section section{family.name, family.description, {}};
    for (const KernelInfo& k : all_kernels()) {
      if (std::string(k.family) != family.name) continue;
      tag_ajust_contrast_info adjust =
          k.adjusts ? demo_adjustment() : identity_adjustment();
      const std::string adjustment =
          k.adjusts ? describe_adjustment(adjust) +
                          " (more contrast and saturation, grey kept)"
                    : "none (this kernel does not read it)";
      // RGB16 kernels once per layout, the others once.
      const bool rgb16 = reads_rgb16_layout(k);
      for (uint32_t layout = 0; layout < (rgb16 ? kRgb16Layouts : 1); ++layout) {
        adjust.rgb16Layout = layout;
        const Surface surface = run_kernel(k, source, adjust);
        const SurfaceFormatInfo& format = surface_format_info(surface.format);
        const std::string suffix = rgb16 ? "-layout" + std::to_string(layout) : "";
        const std::string file = std::string(k.name) + suffix + ".png";
        stage_png(file, viewer.view(surface));
        std::string details = std::string(format.name) + " " +
                               std::to_string(surface.width) + "x" +
                               std::to_string(surface.height);
        if (rgb16) details += std::string(" (") + format.layout + ")";
        details += "; adjustment: " + adjustment + ".";
        if (*k.details) details += std::string(" ") + k.details;
        section.cards.push_back(
            {file, std::string(k.name) + (rgb16 ? " layout " + std::to_string(layout) : ""),
             k.description, details});
      }
    }
    if (std::string(family.name) == find_kernel(kComparedDoublers[0])->family) {
      stage_png("doubling-compare.png", doubling_comparison(source, viewer));
      section.cards.insert(
          section.cards.begin(),
          {"doubling-compare.png", "rounded average | four-tap | edge-directed",
           "the same crop doubled in height by strech_picture_1X2_yuy2, "
           "strech_picture_1X2_yuy2_ajust and strech_opt_yuy2_ajust, without "
           "adjustment, enlarged " + std::to_string(kScale) + " times",
           "Look at the slanted lines: the average and the four-tap filter "
           "keep them whole (the filter a little sharper); the edge-directed "
           "stretch searches for the direction in which the rows match, "
           "which a one-pixel line falling one pixel per row does not have "
           "(it would need half a pixel), so it breaks such lines into dots "
           "while keeping wider edges sharp."});
    }
    sections.push_back(std::move(section));
  }

  const std::string index = (dir / "index.html").string();
  {
    const std::string temp = staged.add(index);
    std::ofstream html(temp, std::ios::binary);
    html << contact_sheet(picture_name, sections);
    html.close();
    if (!html)
      throw ToolError(index + ": cannot write (" + std::strerror(errno) + ")");
  }
  written.push_back(index);
  staged.commit(written);
  return written;
}

}  // namespace ybtool
