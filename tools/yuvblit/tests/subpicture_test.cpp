// Overlays as the tool prepares them for the subpicture kernels: reading
// PNGs, the alpha mapping and colour key, the planes the library makes of
// them, and mixers run through the registry.
#include <gtest/gtest.h>
#include <png.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>

#include "errors.h"
#include "fixtures.h"
#include "kernels.h"
#include "png_reader.h"
#include "subpicture.h"
#include "surface_probe.h"

namespace ybtool {
namespace {

using namespace testing;

// An overlay of w x h pixels all of one RGBA value.
RgbaImage solid(int w, int h, std::initializer_list<uint8_t> rgba) {
  RgbaImage img;
  img.allocate(w, h);
  for (size_t i = 0; i < img.pixels.size(); i += 4)
    std::copy(rgba.begin(), rgba.end(), img.pixels.begin() + static_cast<std::ptrdiff_t>(i));
  return img;
}

// ------------------------------------------------------------- PNG input

TEST(OverlayPng, ReadsRgbaExactlyAndExpandsGreyAlphaAndPalettes) {
  ScratchDir dir;
  const std::vector<uint8_t> rgba = {255, 0, 0, 255, 1, 2, 3, 0, 10, 20, 30, 128, 0, 0, 0, 7};
  RgbaImage img = read_overlay_png(write_png_file(dir, "rgba.png", 2, 2, PNG_FORMAT_RGBA, rgba), 2, 2);
  EXPECT_EQ(img.width, 2);
  EXPECT_EQ(img.height, 2);
  EXPECT_EQ(img.pixels, rgba);

  img = read_overlay_png(write_png_file(dir, "ga.png", 2, 1, PNG_FORMAT_GA, {90, 200, 5, 0}), 8, 8);
  EXPECT_EQ(img.pixels, (std::vector<uint8_t>{90, 90, 90, 200, 5, 5, 5, 0}));

  // Palette with transparency: libpng writes a PLTE and a tRNS chunk.
  const std::vector<uint8_t> palette = {0, 0, 255, 255, 200, 100, 0, 64};
  img = read_overlay_png(
      write_png_file(dir, "pal.png", 3, 1, PNG_FORMAT_RGBA_COLORMAP, {1, 0, 1}, palette), 3, 1);
  EXPECT_EQ(img.pixels, (std::vector<uint8_t>{200, 100, 0, 64, 0, 0, 255, 255, 200, 100, 0, 64}));
}

TEST(OverlayPng, RefusesWhatItCannotMixWithOneLineNamingTheFile) {
  ScratchDir dir;
  const std::string rgb = write_png_file(dir, "rgb.png", 2, 1, PNG_FORMAT_RGB, {1, 2, 3, 4, 5, 6});
  const std::string deep = write_png_file(dir, "deep.png", 1, 1, PNG_FORMAT_LINEAR_RGB_ALPHA,
                                          std::vector<uint8_t>(8, 0x80));
  const std::string big = write_png_file(dir, "big.png", 5, 2, PNG_FORMAT_RGBA,
                                         std::vector<uint8_t>(40, 0));
  std::vector<uint8_t> noise(64);
  for (size_t i = 0; i < noise.size(); ++i) noise[i] = static_cast<uint8_t>(i * 97 + 13);
  const std::string fits = write_png_file(dir, "fits.png", 4, 4, PNG_FORMAT_RGBA, noise);
  std::string whole;
  {
    std::ifstream in(fits, std::ios::binary);
    whole.assign(std::istreambuf_iterator<char>(in), {});
  }
  const struct {
    std::string path, message;
  } cases[] = {
      {dir.file("absent.png"), "absent.png: cannot open (No such file or directory)"},
      {dir.file(""), ": is a directory"},
      {dir.write("text.png", "not a png at all"), "text.png: not a readable PNG ("},
      {dir.write("cut.png", whole.substr(0, whole.size() - 20)), "cut.png: damaged PNG ("},
      // Signature and header, then a text chunk claiming 32 MiB: refused
      // before the decoder would allocate that much.
      {dir.write("claims.png", whole.substr(0, 33) + std::string("\x02\0\0\0tEXtkey\0v", 12)),
       "claims.png: damaged PNG (the tEXt chunk runs past the end of the file)"},
      {rgb, "rgb.png: has no transparency"},
      {deep, "deep.png: has 16 bits per channel (need 8)"},
      {big, "big.png: 5x2 is larger than the 4x4 frame"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.message);
    try {
      read_overlay_png(c.path, 4, 4);
      ADD_FAILURE() << "read " << c.path;
    } catch (const ToolError& e) {
      const std::string what = e.what();
      EXPECT_NE(what.find(c.message), std::string::npos) << what;
      EXPECT_EQ(what.find('\n'), std::string::npos) << what;
    }
  }
}

// ------------------------------------------------ alpha, key and planes

TEST(OverlayPreparation, AlphaMapsToTheNearestSixteenth) {
  const std::pair<int, int> cases[] = {{0, 0},   {7, 0},    {8, 1},    {23, 1},   {24, 2},
                                       {127, 8}, {128, 8},  {135, 8},  {136, 9},  {247, 15},
                                       {248, 16}, {255, 16}};
  for (auto [alpha, weight] : cases) EXPECT_EQ(alpha_weight(alpha), weight) << alpha;
  for (int a = 1; a < 256; ++a) EXPECT_GE(alpha_weight(a), alpha_weight(a - 1));
}

TEST(OverlayPreparation, BitmapsHoldTheKeyWhereTransparentAndNeverElsewhere) {
  // Pixel 0 transparent (alpha 7), 1 visible in the key's own colour, 2 a
  // colour, 3.. outside the overlay.
  RgbaImage img;
  img.allocate(3, 1);
  const uint8_t pixels[] = {9, 9, 9, 7, kKeyGrey, kKeyGrey, kKeyGrey, 255, 200, 100, 50, 136};
  std::copy(std::begin(pixels), std::end(pixels), img.pixels.begin());

  const Surface rgb32 = overlay_bitmap(img, SurfaceFormat::kRgb32, 16, 2);
  auto word = [](const uint8_t* p) { return uint32_t(p[0] | p[1] << 8 | p[2] << 16 | p[3] << 24); };
  EXPECT_EQ(word(rgb32.row(0)), overlay_key(SurfaceFormat::kRgb32));
  EXPECT_EQ(word(rgb32.row(0) + 4), overlay_key(SurfaceFormat::kRgb32) ^ 1);
  EXPECT_EQ(word(rgb32.row(0) + 8), 0x00C86432u);
  EXPECT_EQ(word(rgb32.row(0) + 12), overlay_key(SurfaceFormat::kRgb32));
  EXPECT_EQ(word(rgb32.row(1) + 8), overlay_key(SurfaceFormat::kRgb32));

  const Surface rgb16 = overlay_bitmap(img, SurfaceFormat::kRgb16Layout0, 16, 1);
  EXPECT_EQ(overlay_key(SurfaceFormat::kRgb16Layout0), 0x4208u);  // grey 64 kept exactly
  EXPECT_EQ(rgb16_at(rgb16, 0, 0), 0x4208u);
  EXPECT_EQ(rgb16_at(rgb16, 1, 0), 0x4209u);
  EXPECT_EQ(rgb16_at(rgb16, 2, 0), (200u >> 3) << 11 | (100u >> 2) << 5 | 50u >> 3);

  const Surface alpha = alpha_bitmap(img, 16, 1);
  EXPECT_EQ(word(alpha.row(0)), 0u);
  EXPECT_EQ(word(alpha.row(0) + 4), 16u);
  EXPECT_EQ(word(alpha.row(0) + 8), 9u);
}

TEST(OverlayPreparation, LibraryPlanesCarryTheOverlayAtThePitchTheMixersRead) {
  // Red in rows 0-2 of columns 0-9, a transparent rest: columns 16 on are
  // whole key groups, which Convert skips, so they keep the cleared planes.
  const RgbaImage img = solid(10, 3, {255, 0, 0, 200});
  const SubpicturePlanes p = prepare_subpicture(img, 32, 4, 40);
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 32; ++x) {
      const bool inside = x < 10 && y < 3;
      const size_t at = static_cast<size_t>(y) * 40 + x, c = static_cast<size_t>(y) * 20 + x / 2;
      ASSERT_EQ(p.alpha[at], inside ? 13 : 0) << x << "," << y;
      if (inside) {
        ASSERT_EQ(p.y[at], 81) << x << "," << y;
        ASSERT_EQ(p.u[c], 90) << x << "," << y;
        ASSERT_EQ(p.v[c], 239) << x << "," << y;
      } else if (x >= 16 || y == 3) {
        ASSERT_EQ(p.y[at], 16) << x << "," << y;
        ASSERT_EQ(p.u[c], 128) << x << "," << y;
      }
    }
}

TEST(OverlayPreparation, RestoreRoundTripsKeepTheAlphaPlane) {
  // The runners set the alpha-row term so rows stay a pitch apart; RGB24
  // reads each pixel's alpha from the byte after it.
  RgbaImage img;
  img.allocate(37, 9);
  for (int y = 0; y < 9; ++y)
    for (int x = 0; x < 37; ++x) img.at(x, y)[3] = static_cast<uint8_t>((x * 16 + y * 40) % 256);
  const KernelSource src = prepare_source(distinct_picture(37, 9), std::make_shared<RgbaImage>(img));
  const Surface a32 = run_kernel(kernel("Restore_RGB32_To_Alpha"), src, identity_adjustment());
  const Surface a24 = run_kernel(kernel("Restore_RGB24_To_Alpha"), src, identity_adjustment());
  const Surface a16 = run_kernel(kernel("Restore_RGB16_565_To_Alpha"), src, identity_adjustment());
  for (const Surface* s : {&a32, &a24, &a16}) {
    ASSERT_EQ(s->format, SurfaceFormat::kAlpha);
    ASSERT_EQ(s->width, 37);
    ASSERT_EQ(s->height, 9);
  }
  for (int y = 0; y < 9; ++y)
    for (int x = 0; x < 37; ++x) {
      const uint8_t w = alpha_weight(img.at(x, y)[3]);
      ASSERT_EQ(a32.row(y)[x], w) << x << "," << y;
      ASSERT_EQ(a16.row(y)[x], w) << x << "," << y;
      const uint8_t next = x + 1 < 37 ? alpha_weight(img.at(x + 1, y)[3]) : 0;
      ASSERT_EQ(a24.row(y)[x], next) << x << "," << y;
    }
}

// ---------------------------------------------------------------- mixers

// A flat 40x12 picture under an overlay whose columns 0-7 are opaque red,
// 8-15 white at alpha 128 (weight 8) and 16-23 transparent, in rows 0-7.
struct MixScene {
  Picture420 picture;
  KernelSource source;
  MixScene() {
    picture.allocate(40, 12);
    std::fill(picture.y.begin(), picture.y.end(), 100);
    std::fill(picture.u.begin(), picture.u.end(), 110);
    std::fill(picture.v.begin(), picture.v.end(), 140);
    auto overlay = std::make_shared<RgbaImage>();
    overlay->allocate(24, 8);
    for (int y = 0; y < 8; ++y)
      for (int x = 0; x < 16; ++x) {
        uint8_t* p = overlay->at(x, y);
        if (x < 8) p[0] = 255, p[3] = 255;
        else p[0] = p[1] = p[2] = 255, p[3] = 128;
      }
    source = prepare_source(picture, overlay);
  }
};

TEST(Mixers, ShowTheOverlayWhereItIsDrawnAndThePictureElsewhere) {
  // Identity adjustment: red converts to 81, 90, 239 and white to Y 234;
  // weight 8 gives (p*8 + s*8) >> 4.
  const MixScene scene;
  const Surface s = run_kernel(kernel("mix_ayuy2_yuy2_p_ajust"), scene.source, identity_adjustment());
  for (int y : {0, 5, 7, 8, 11}) {
    const bool covered = y < 8;
    EXPECT_EQ(yuy2_at(s, 3, y), (covered ? Yuv3{81, 90, 239} : Yuv3{100, 110, 140})) << y;
    EXPECT_EQ(yuy2_at(s, 12, y), (covered ? Yuv3{167, 119, 134} : Yuv3{100, 110, 140})) << y;
    EXPECT_EQ(yuy2_at(s, 20, y), (Yuv3{100, 110, 140})) << y;
    EXPECT_EQ(yuy2_at(s, 39, y), (Yuv3{100, 110, 140})) << y;
  }

  // Half width keeps source pixel 2j+1: output 3 is red, 5 half white.
  const Surface half =
      run_kernel(kernel("mix_ayuy2_half_yuy2_p_ajust"), scene.source, identity_adjustment());
  ASSERT_EQ(half.width, 20);
  EXPECT_EQ(yuy2_at(half, 3, 6), (Yuv3{81, 90, 239}));
  EXPECT_EQ(yuy2_at(half, 5, 6).y, 167);
  EXPECT_EQ(yuy2_at(half, 10, 6), (Yuv3{100, 110, 140}));

  // RGB: outside the overlay exactly what the plain loader writes.
  const Surface rgb = run_kernel(kernel("mix_ayuy2_rgb32_p_ajust"), scene.source, demo_adjustment());
  const Surface plain = run_kernel(kernel("loadimage_rgb32_ajust"), scene.source, demo_adjustment());
  for (auto [x, y] : {std::pair{20, 2}, {39, 0}, {0, 9}}) {
    EXPECT_EQ(rgb_at(rgb, x, y).r, rgb_at(plain, x, y).r) << x << "," << y;
    EXPECT_EQ(rgb_at(rgb, x, y).b, rgb_at(plain, x, y).b) << x << "," << y;
  }
  const Rgb3 red = rgb_at(rgb, 2, 2);
  EXPECT_GT(red.r, 200);
  EXPECT_LT(red.g, 40);
  EXPECT_LT(red.b, 40);
}

TEST(Mixers, InterlacedMixerDoublesTheTopFieldUnderAFullHeightOverlay) {
  // Frame rows 50, 60, 70, ...: the top field holds rows 0, 2, 4, so output
  // row 1 is the rounded-up mean of frame rows 0 and 2; the overlay still
  // covers output rows 0-7 row for row.
  MixScene scene;
  for (int y = 0; y < 12; ++y)
    std::fill_n(scene.picture.y.begin() + y * 40, 40, static_cast<uint8_t>(50 + 10 * y));
  const KernelSource src = prepare_source(scene.picture, scene.source.overlay);
  const Surface s = run_kernel(kernel("mix_ayuy2_yuy2_i_ajust"), src, identity_adjustment());
  const int expected_y[] = {50, 60, 70, 80, 90, 100, 110, 120, 130, 140, 150, 150};
  for (int y = 0; y < 12; ++y) {
    EXPECT_EQ(yuy2_at(s, 30, y).y, expected_y[y]) << y;
    EXPECT_EQ(yuy2_at(s, 2, y).y, y < 8 ? 81 : expected_y[y]) << y;
  }
}

}  // namespace
}  // namespace ybtool
