// Running registered kernels on padded sources, cropping their surfaces,
// and turning pictures and surfaces into RGB and PNG.
#include <gtest/gtest.h>
#include <png.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <tuple>

#include "demo.h"
#include "errors.h"
#include "fixtures.h"
#include "kernels.h"
#include "png_writer.h"
#include "surface_probe.h"
#include "test_pattern.h"
#include "view.h"

namespace ybtool {
namespace {

using testing::distinct_picture;
using testing::is_marker;
using testing::kernel;
using testing::Yuv3;
using testing::yuy2_at;
using testing::yv12_at;
using testing::size_label;

TEST(KernelRun, UnadjustedOutputMatchesSourceAtAwkwardSizes) {
  // Widths off the 16-pixel group (odd too) and an odd height: the tool pads,
  // runs whole groups and crops, so every pixel must land where it belongs.
  for (auto [w, h] : {std::pair{37, 18}, {16, 10}, {50, 9}, {3, 12}}) {
    SCOPED_TRACE(std::to_string(w) + "x" + std::to_string(h));
    const Picture420 p = distinct_picture(w, h);
    const Surface s = run_kernel(kernel("loadimage_yuy2_ajust"), prepare_source(p),
                                 identity_adjustment());
    ASSERT_EQ(s.width, w);
    ASSERT_EQ(s.height, h);
    EXPECT_EQ(s.row_bytes(), static_cast<size_t>((w + 1) / 2 * 4));
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < w; ++x) {
        const size_t c = static_cast<size_t>(y / 2) * p.chroma_width() + x / 2;
        const Yuv3 got = yuy2_at(s, x, y);
        ASSERT_EQ(got.y, p.y[static_cast<size_t>(y) * w + x]) << x << "," << y;
        ASSERT_EQ(got.u, p.u[c]) << x << "," << y;
        ASSERT_EQ(got.v, p.v[c]) << x << "," << y;
      }
  }
}

TEST(KernelRun, CopyShowsTheMarkerWhereItLeavesTheSurface) {
  const Picture420 p = distinct_picture(40, 6);
  const Surface s = run_kernel(kernel("loadimage_yuy2"), prepare_source(p),
                               identity_adjustment());
  for (int y = 0; y < 6; ++y)
    for (int x = 0; x < 40; ++x) {
      const bool untouched = y % 2 == 1 && x % 16 < 4;
      EXPECT_EQ(is_marker(s, x, y), untouched) << x << "," << y;
      if (!untouched) {
        EXPECT_EQ(yuy2_at(s, x, y).y, p.y[y * 40 + x]) << x << "," << y;
      }
    }
}

TEST(KernelRun, HalfWidthKernelAveragesPairsIntoHalfTheColumns) {
  const Picture420 p = distinct_picture(34, 10);
  const Surface s = run_kernel(kernel("loadimage_half_yuy2_ajust"),
                               prepare_source(p), identity_adjustment());
  ASSERT_EQ(s.width, 17);
  ASSERT_EQ(s.stored_width(), 18);
  for (int y = 0; y < 10; ++y)
    for (int x = 0; x < 17; ++x) {
      const uint8_t* row = &p.y[y * 34];
      EXPECT_EQ(yuy2_at(s, x, y).y, (row[2 * x] + row[2 * x + 1] + 1) / 2)
          << x << "," << y;
    }
}

TEST(KernelRun, DemoAdjustmentKeepsGreyAndStretchesAwayFromIt) {
  Picture420 p;
  p.allocate(16, 10);  // luma 0, chroma 128
  std::fill(p.y.begin(), p.y.end(), 128);
  std::fill(p.y.begin(), p.y.begin() + 16, 180);  // first row brighter
  std::fill(p.u.begin(), p.u.begin() + 8, 170);   // first chroma row bluer
  const Surface s = run_kernel(kernel("loadimage_yuy2_ajust"), prepare_source(p),
                               demo_adjustment());
  const Yuv3 grey = yuy2_at(s, 5, 4), bright = yuy2_at(s, 5, 0);
  EXPECT_EQ(grey.y, 128);
  EXPECT_EQ(grey.u, 128);
  EXPECT_EQ(grey.v, 128);
  EXPECT_GT(bright.y, 180);
  EXPECT_GT(bright.u, 170);
  EXPECT_EQ(bright.v, 128);
}

TEST(KernelRun, DoublersPutEverySourceRowOnItsLines) {
  // Identity adjustment: the lines that copy a source row hold it exactly,
  // in every output format the doublers write (YUY2, YV12 made plane by
  // plane or by a YV12 doubler), at the doubled size. The YUY2 doublers put
  // row k on line 2k; the plane doublers one line lower.
  const Picture420 p = distinct_picture(64, 20);
  const KernelSource src = prepare_source(p);
  const struct {
    const char* name;
    int first_copy;  // the line holding source row 0
  } kCases[] = {{"strech_picture_1X2_yuy2", 0},  {"strech_opt_yuy2_ajust", 0},
                {"strech_picture_2X2_yuy2", 0},  {"yuy2_strech_picture_2X2_yuy2", 0},
                {"strech_picture_1X2_yv12_ajust", 1},
                {"strech_pic_1X2_adjust", 1},    {"strech_pic_2X2", 0},
                {"strech_picture_2X2_yv12_ajust", 1}};
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    const KernelInfo& k = kernel(c.name);
    const Surface s = run_kernel(k, src, identity_adjustment());
    const int factor = k.geometry == Geometry::kDoubleBoth ? 2 : 1;
    ASSERT_EQ(s.width, p.width * factor);
    ASSERT_EQ(s.height, 2 * p.height);
    // Rows 0 .. h-3: the last pair's lines repeat the last rows.
    for (int row = 0; row < p.height - 2; ++row)
      for (int x = 0; x < p.width; ++x) {
        const int line = c.first_copy + 2 * row, ox = factor * x;
        // Pixels 4-7 of every 32 in 2X2 YUY2 output hold bare luma bytes.
        if (factor == 2 && k.output == SurfaceFormat::kYuy2 && ox % 32 >= 4 && ox % 32 < 8)
          continue;
        const Yuv3 got = k.output == SurfaceFormat::kYuy2 ? yuy2_at(s, ox, line)
                                                          : yv12_at(s, ox, line);
        ASSERT_EQ(got.y, p.y[static_cast<size_t>(row) * p.width + x]) << x << "," << row;
      }
  }
}

TEST(KernelRegistry, EveryKernelWritesItsDeclaredFirstRowInEveryLayout) {
  // A new table entry with the wrong geometry, format or runner leaves
  // marker pixels (or the wrong size) in the first row, which every kernel
  // writes; LoadYUY2_RGB32_adjust writes only its first 16 pixels there.
  // An overlay opaque everywhere keeps Convert_* from skipping groups.
  const Picture420 p = distinct_picture(48, 16);
  auto opaque = std::make_shared<RgbaImage>();
  opaque->allocate(48, 16);
  for (size_t i = 0; i < opaque->pixels.size(); i += 4) opaque->pixels[i + 3] = 255;
  const KernelSource src = prepare_source(p, opaque);
  for (const KernelInfo& k : all_kernels()) {
    SCOPED_TRACE(k.name);
    EXPECT_EQ(find_kernel(k.name), &k);
    int w = 0, h = 0;
    output_size(k, p.width, p.height, w, h);
    const int written = std::string(k.name) == "LoadYUY2_RGB32_adjust" ? 16 : w;
    tag_ajust_contrast_info adjust = identity_adjustment();
    for (adjust.rgb16Layout = 0; adjust.rgb16Layout < kRgb16Layouts; ++adjust.rgb16Layout) {
      SCOPED_TRACE(adjust.rgb16Layout);
      const Surface s = run_kernel(k, src, adjust);
      EXPECT_EQ(s.format, surface_format(k, adjust));
      EXPECT_EQ(s.format == k.output, !reads_rgb16_layout(k) || adjust.rgb16Layout == 0);
      EXPECT_EQ(s.width, w);
      EXPECT_EQ(s.height, h);
      for (int x = 0; x < w; ++x) EXPECT_EQ(is_marker(s, x, 0), x >= written) << x;
    }
  }
}

TEST(KernelRegistry, ListShowsEveryFamilyAndKernel) {
  std::ostringstream out;
  print_kernel_list(out);
  const std::string text = out.str();
  for (const FamilyInfo& f : kernel_families()) {
    EXPECT_NE(text.find(std::string(f.name) + "\n  (" + f.description + ")"),
              std::string::npos) << f.name;
    EXPECT_TRUE(std::any_of(all_kernels().begin(), all_kernels().end(),
                            [&](const KernelInfo& k) { return k.family == f.name; }))
        << f.name << " has no kernels";
  }
  for (const KernelInfo& k : all_kernels()) {
    EXPECT_NE(text.find(std::string("  ") + k.name + " "), std::string::npos) << k.name;
    EXPECT_TRUE(std::any_of(kernel_families().begin(), kernel_families().end(),
                            [&](const FamilyInfo& f) { return k.family == f.name; }))
        << k.name << " is in no listed family";
  }
  for (uint32_t l = 0; l < kRgb16Layouts; ++l)
    EXPECT_NE(text.find(surface_format_info(rgb16_format(l)).name), std::string::npos);
}

TEST(KernelRegistry, DemoShowsEveryKernelAndTheOverlay) {
  // A small first frame keeps it quick; every kernel gets its PNG (one per
  // layout where it follows the record's) and its card on the sheet.
  testing::ScratchDir dir;
  DemoOptions options;
  options.input = dir.write("in.y4m", testing::y4m_clip(40, 12, 1));
  options.out_dir = dir.file("demo");
  const std::vector<std::string> written = run_demo(options);
  std::ifstream in(dir.file("demo/index.html"));
  const std::string html{std::istreambuf_iterator<char>(in), {}};
  auto expect_shown = [&](const std::string& file) {
    EXPECT_TRUE(std::filesystem::exists(dir.file("demo/" + file))) << file;
    EXPECT_NE(html.find("src=\"" + file + "\""), std::string::npos) << file;
  };
  for (const char* file :
       {"source.png", "overlay.png", "overlay-alpha.png", "doubling-compare.png"})
    expect_shown(file);
  size_t pngs = 4;
  for (const KernelInfo& k : all_kernels()) {
    const bool layouts = reads_rgb16_layout(k);
    for (uint32_t l = 0; l < (layouts ? kRgb16Layouts : 1); ++l, ++pngs)
      expect_shown(k.name + (layouts ? "-layout" + std::to_string(l) : std::string()) + ".png");
  }
  for (const FamilyInfo& f : kernel_families())
    EXPECT_NE(html.find(std::string("<h2>") + f.name + "</h2>"), std::string::npos) << f.name;
  EXPECT_EQ(written.size(), pngs + 1);
}

void expect_rgb(const RgbImage& img, int x, int y, int r, int g, int b) {
  const uint8_t* p = img.at(x, y);
  EXPECT_NEAR(p[0], r, 3) << x << "," << y;
  EXPECT_NEAR(p[1], g, 3) << x << "," << y;
  EXPECT_NEAR(p[2], b, 3) << x << "," << y;
}

TEST(Viewer, ShowsTestPictureBarsAndTheMarkerInTheirColours) {
  Viewer viewer;
  const Picture420 picture = make_test_picture(720, 480);
  const RgbImage source = viewer.view(picture);
  ASSERT_EQ(source.width, 720);
  ASSERT_EQ(source.height, 480);
  const int bars[8][3] = {{255, 255, 255}, {255, 255, 0}, {0, 255, 255}, {0, 255, 0},
                          {255, 0, 255},   {255, 0, 0},   {0, 0, 255},   {0, 0, 0}};
  for (int i = 0; i < 8; ++i) {
    SCOPED_TRACE(i);
    expect_rgb(source, i * 90 + 45, 100, bars[i][0], bars[i][1], bars[i][2]);
  }

  // The YUY2 surface of the copy kernel: bars survive, the marker is magenta
  // and the cropped odd width keeps its last column.
  const Surface s = run_kernel(*find_kernel("loadimage_yuy2"),
                               prepare_source(picture), identity_adjustment());
  const RgbImage out = viewer.view(s);
  EXPECT_TRUE(viewer.used_library());
  ASSERT_EQ(out.width, 720);
  expect_rgb(out, 5 * 90 + 45, 100, 255, 0, 0);
  expect_rgb(out, 1, 101, 255, 0, 255);  // untouched pixel of an odd row
}

// A YUY2 surface whose rows are red, blue, green (pairs with different
// chroma in their two rows) and `pitch` bytes apart.
Surface three_colour_yuy2(int width, int pitch) {
  Surface s = make_marked_surface(SurfaceFormat::kYuy2, width, 3, pitch, 4);
  const Yuv colours[3] = {rgb_to_yuv601(255, 0, 0), rgb_to_yuv601(0, 0, 255),
                          rgb_to_yuv601(0, 255, 0)};
  for (int r = 0; r < 3; ++r)
    for (int x = 0; x < s.stored_width() / 2; ++x) {
      uint8_t* pair = s.row(r) + 4 * x;
      pair[0] = pair[2] = colours[r].y;
      pair[1] = colours[r].u;
      pair[3] = colours[r].v;
    }
  return s;
}

TEST(Viewer, Yuy2RowsKeepTheirOwnChromaThroughTheLibraryAndTheFallback) {
  // LoadYUY2_RGB32 gives both rows of a pair the first row's chroma; the
  // viewer must not (row 1 would show red). A pitch too tight for whole
  // 16-pixel groups goes through libswscale instead.
  Viewer viewer;
  for (const auto& [width, pitch, library] :
       {std::tuple{21, 128, true}, {21, 44, false}, {2, 64, true}}) {
    SCOPED_TRACE(size_label(width, pitch));
    const RgbImage img = viewer.view(three_colour_yuy2(width, pitch));
    EXPECT_EQ(viewer.used_library(), library);
    ASSERT_EQ(img.width, width);
    ASSERT_EQ(img.height, 3);
    for (int x : {0, width - 1}) {
      expect_rgb(img, x, 0, 255, 0, 0);
      expect_rgb(img, x, 1, 0, 0, 255);
      expect_rgb(img, x, 2, 0, 255, 0);
    }
  }
}

TEST(Viewer, CropsOddWidthSurfaces) {
  Picture420 p;
  p.allocate(21, 4);
  std::fill(p.y.begin(), p.y.end(), 235);  // white, neutral chroma
  const Surface s = run_kernel(*find_kernel("loadimage_yuy2_mono_ajust"),
                               prepare_source(p), identity_adjustment());
  Viewer viewer;
  const RgbImage img = viewer.view(s);
  ASSERT_EQ(img.width, 21);
  ASSERT_EQ(img.height, 4);
  expect_rgb(img, 20, 3, 255, 255, 255);
}

TEST(PngWriter, RoundTripsPixelsAndNamesUnwritablePaths) {
  testing::ScratchDir dir;
  RgbImage img;
  img.width = 3;
  img.height = 2;
  img.pixels = {255, 0, 0, 0, 255, 0, 0, 0, 255, 1, 2, 3, 4, 5, 6, 7, 8, 9};
  const std::string path = dir.file("t.png");
  write_png(path, img);

  png_image read;
  std::memset(&read, 0, sizeof read);
  read.version = PNG_IMAGE_VERSION;
  ASSERT_TRUE(png_image_begin_read_from_file(&read, path.c_str())) << read.message;
  read.format = PNG_FORMAT_RGB;
  std::vector<uint8_t> pixels(PNG_IMAGE_SIZE(read));
  ASSERT_TRUE(png_image_finish_read(&read, nullptr, pixels.data(), 0, nullptr));
  EXPECT_EQ(read.width, 3u);
  EXPECT_EQ(read.height, 2u);
  EXPECT_EQ(pixels, img.pixels);

  const std::string bad = dir.file("missing/t.png");
  try {
    write_png(bad, img);
    ADD_FAILURE() << "no error for " << bad;
  } catch (const ToolError& e) {
    EXPECT_EQ(std::string(e.what()).rfind(bad + ": ", 0), 0u) << e.what();
  }
}

}  // namespace
}  // namespace ybtool
