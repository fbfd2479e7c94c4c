// The RGB, YV12 and packed-YUY2 families as the tool runs them: each kernel
// at sizes off the 16-pixel group, cropped back to exactly the picture; the
// RGB16 layouts; where the YV12 planes land; the packed source.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "errors.h"
#include "kernels.h"
#include "packing.h"
#include "surface_probe.h"
#include "test_pattern.h"
#include "view.h"

namespace ybtool {
namespace {

using namespace testing;

// Widths off the group (odd too, and under one group), heights odd and even.
const std::pair<int, int> kAwkwardSizes[] = {{37, 18}, {16, 10}, {50, 9}, {3, 12}, {33, 1}};

// BT.601 limited range to full-range RGB, in floating point.
Rgb3 reference_rgb(const Yuv3& s) {
  const double y = 1.164383 * (s.y - 16), u = s.u - 128.0, v = s.v - 128.0;
  auto c = [](double x) { return static_cast<int>(std::clamp(std::lround(x), 0L, 255L)); };
  return {c(y + 1.596027 * v), c(y - 0.391762 * u - 0.812968 * v), c(y + 2.017232 * u)};
}

void expect_near_rgb(const Rgb3& got, const Rgb3& want, int x, int y) {
  EXPECT_NEAR(got.r, want.r, 2) << x << "," << y;
  EXPECT_NEAR(got.g, want.g, 2) << x << "," << y;
  EXPECT_NEAR(got.b, want.b, 2) << x << "," << y;
}

// The word an RGB16 layout makes of an 8-bit colour: the top bits of each
// channel in their field.
unsigned pack_rgb16(const Rgb3& c, SurfaceFormat format) {
  const Rgb16Fields f = rgb16_fields(format);
  auto field = [](int v, Rgb16Channel ch) { return unsigned(v >> (8 - ch.bits)) << ch.shift; };
  return field(c.r, f.r) | field(c.g, f.g) | field(c.b, f.b);
}

// ------------------------------------------------------------------ RGB

TEST(RgbKernels, ConvertEveryPixelOfThePictureAndNothingElseShows) {
  const char* const kernels[] = {"loadimage_rgb32", "loadimage_rgb24", "loadimage_rgb32_ajust",
                                 "loadimage_rgb24_ajust", "LoadYUY2_RGB32", "LoadYUY2_RGB24",
                                 "LoadYUY2_RGB24_adjust"};
  for (auto [w, h] : kAwkwardSizes) {
    const Picture420 p = distinct_picture(w, h);
    const KernelSource src = prepare_source(p);
    for (const char* name : kernels) {
      SCOPED_TRACE(std::string(name) + " " + size_label(w, h));
      const Surface s = run_kernel(kernel(name), src, identity_adjustment());
      ASSERT_EQ(s.width, w);
      ASSERT_EQ(s.height, h);
      EXPECT_EQ(s.row_bytes(), static_cast<size_t>(w) * surface_format_info(s.format).bytes_per_pixel);
      for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) {
          expect_near_rgb(rgb_at(s, x, y), reference_rgb(picture_at(p, x, y)), x, y);
          if (s.format == SurfaceFormat::kRgb32) ASSERT_EQ(s.row(y)[4 * x + 3], 0);
        }
    }
  }
}

TEST(RgbKernels, Rgb16WritesTheRgb32ColourInTheChosenLayout) {
  // Same conversion, fewer bits: every word is its RGB32 sibling's colour
  // packed in the layout the record names, at awkward sizes too.
  const std::pair<const char*, const char*> pairs[] = {
      {"loadimage_rgb16", "loadimage_rgb32"},
      {"loadimage_rgb16_ajust", "loadimage_rgb32_ajust"},
      {"LoadYUY2_RGB16", "LoadYUY2_RGB32"},
      {"LoadYUY2_RGB16_adjust", "loadimage_rgb32_ajust"},
  };
  for (auto [w, h] : {std::pair{37, 18}, {3, 12}}) {
    const Picture420 p = distinct_picture(w, h);
    const KernelSource src = prepare_source(p);
    tag_ajust_contrast_info adjust = demo_adjustment();
    for (auto [rgb16, rgb32] : pairs) {
      const Surface wide = run_kernel(kernel(rgb32), src, adjust);
      for (adjust.rgb16Layout = 0; adjust.rgb16Layout < kRgb16Layouts; ++adjust.rgb16Layout) {
        SCOPED_TRACE(std::string(rgb16) + " layout " + std::to_string(adjust.rgb16Layout) +
                     " " + size_label(w, h));
        const Surface s = run_kernel(kernel(rgb16), src, adjust);
        ASSERT_EQ(s.format, rgb16_format(adjust.rgb16Layout));
        for (int y = 0; y < h; ++y)
          for (int x = 0; x < w; ++x)
            ASSERT_EQ(rgb16_at(s, x, y), pack_rgb16(rgb_at(wide, x, y), s.format)) << x << "," << y;
      }
    }
  }
}

TEST(RgbKernels, Rgb16LayoutAbove3IsRefusedOnlyByRgb16Kernels) {
  const KernelSource src = prepare_source(distinct_picture(16, 4));
  tag_ajust_contrast_info adjust = identity_adjustment();
  for (uint32_t layout : {4u, 0xFFFFFFFFu}) {
    adjust.rgb16Layout = layout;
    EXPECT_THROW(run_kernel(kernel("loadimage_rgb16"), src, adjust), ToolError);
    EXPECT_THROW(run_kernel(kernel("LoadYUY2_RGB16_adjust"), src, adjust), ToolError);
    EXPECT_NO_THROW(run_kernel(kernel("loadimage_rgb32"), src, adjust));
  }
}

TEST(RgbKernels, ViewerWidensRgb16ByRepeatingTheTopBits) {
  // 4-, 5- and 6-bit extremes and a middle value of each.
  EXPECT_EQ(widen_channel(0, 5), 0);
  EXPECT_EQ(widen_channel(31, 5), 255);
  EXPECT_EQ(widen_channel(63, 6), 255);
  EXPECT_EQ(widen_channel(15, 4), 255);
  EXPECT_EQ(widen_channel(0b10000, 5), 0b10000100);
  EXPECT_EQ(widen_channel(0b100000, 6), 0b10000010);
  EXPECT_EQ(widen_channel(0b1000, 4), 0b10001000);

  // Layout 1 leaves bit 0 clear and keeps blue in bits 5..1: a blue-only
  // word must not leak into green.
  Surface s = make_marked_surface(SurfaceFormat::kRgb16Layout1, 2, 1, 16, 1);
  s.row(0)[0] = 0x3E, s.row(0)[1] = 0x00;  // blue 31
  s.row(0)[2] = 0xC0, s.row(0)[3] = 0x07;  // green 31
  Viewer viewer;
  const RgbImage img = viewer.view(s);
  EXPECT_EQ(std::vector<uint8_t>(img.pixels.begin(), img.pixels.end()),
            (std::vector<uint8_t>{0, 0, 255, 0, 255, 0}));
}

// ----------------------------------------------------------------- YV12

void expect_planes(const Surface& s, const Picture420& p) {
  ASSERT_EQ(s.format, SurfaceFormat::kYv12);
  ASSERT_EQ(s.width, p.width);
  ASSERT_EQ(s.height, p.height);
  for (int y = 0; y < p.height; ++y)
    for (int x = 0; x < p.width; ++x) ASSERT_EQ(s.row(y)[x], p.y[y * p.width + x]) << x << "," << y;
  for (int y = 0; y < p.chroma_height(); ++y)
    for (int x = 0; x < p.chroma_width(); ++x) {
      const size_t i = static_cast<size_t>(y) * p.chroma_width() + x;
      ASSERT_EQ(s.v_row(y)[x], p.v[i]) << "V " << x << "," << y;
      ASSERT_EQ(s.u_row(y)[x], p.u[i]) << "U " << x << "," << y;
    }
}

TEST(Yv12Kernels, CopiesKeepEveryPlaneAtAwkwardSizes) {
  // loadimage_yv12 copies chroma for twice the plane height over the U
  // plane; the tool's source layout must make that land on U's own rows.
  for (auto [w, h] : kAwkwardSizes) {
    for (const char* name : {"loadimage_yv12", "loadimage_yv12_ajust"}) {
      SCOPED_TRACE(std::string(name) + " " + size_label(w, h));
      const Picture420 p = distinct_picture(w, h);
      const Surface s = run_kernel(kernel(name), prepare_source(p), identity_adjustment());
      Picture420 expected = p;
      // Its V plane starts on the luma plane's last byte: inside the
      // picture when nothing was padded.
      if (std::string(name) == "loadimage_yv12" && w % 16 == 0 && h % 2 == 0)
        expected.y.back() = p.v[0];
      expect_planes(s, expected);
    }
  }
}

TEST(Yv12Kernels, PlanesSitWhereEachKernelPutsThem) {
  const Picture420 p = distinct_picture(40, 10);  // run 48 x 10
  const KernelSource src = prepare_source(p);
  const Surface copy = run_kernel(kernel("loadimage_yv12"), src, identity_adjustment());
  EXPECT_EQ(copy.pitch, 48);
  EXPECT_EQ(copy.chroma_pitch, 24);
  EXPECT_EQ(copy.v_offset, 10u * 48 - 1);
  EXPECT_EQ(copy.u_offset, copy.v_offset + 10 * 48 / 4);

  const Surface adjusted = run_kernel(kernel("loadimage_yv12_ajust"), src, identity_adjustment());
  EXPECT_EQ(adjusted.v_offset, 10u * adjusted.pitch);
  EXPECT_EQ(adjusted.u_offset, adjusted.v_offset + 10u * adjusted.pitch / 4);

  const Surface half = run_kernel(kernel("loadimage_half_yv12_ajust"), src, identity_adjustment());
  EXPECT_EQ(half.v_offset, 10u * half.pitch);
  EXPECT_EQ(half.u_offset, half.v_offset + 5u * half.chroma_pitch);
}

TEST(Yv12Kernels, AdjustedCopyGivesVTheUOffsetAndUTheVOffset) {
  const Picture420 p = distinct_picture(37, 6);
  tag_ajust_contrast_info adjust = identity_adjustment();
  adjust.uOffset = 20;
  adjust.vOffset = -20;
  const Surface s = run_kernel(kernel("loadimage_yv12_ajust"), prepare_source(p), adjust);
  Picture420 expected = p;
  for (uint8_t& v : expected.v) v = static_cast<uint8_t>(std::min(v + 20, 255));
  for (uint8_t& u : expected.u) u = static_cast<uint8_t>(std::max(u - 20, 0));
  expect_planes(s, expected);
}

TEST(Yv12Kernels, HalfWidthKeepsTheOddSampleOfEachPair) {
  // Width 16 is a single group: its chroma rows are too short for the
  // kernel's 16-sample groups unless the tool runs it wider.
  for (auto [w, h] : {std::pair{16, 6}, {37, 18}, {3, 4}, {64, 5}}) {
    SCOPED_TRACE(size_label(w, h));
    const Picture420 p = distinct_picture(w, h);
    const KernelSource src = prepare_source(p);
    const Surface s = run_kernel(kernel("loadimage_half_yv12_ajust"), src, identity_adjustment());
    ASSERT_EQ(s.width, (w + 1) / 2);
    ASSERT_EQ(s.height, h);
    // Samples right of the picture repeat its last column.
    const int cw = p.chroma_width();
    for (int y = 0; y < h; ++y)
      for (int x = 0; x < s.width; ++x)
        ASSERT_EQ(s.row(y)[x], p.y[y * w + std::min(2 * x + 1, w - 1)]) << x << "," << y;
    for (int y = 0; y < s.chroma_height(); ++y)
      for (int x = 0; x < s.chroma_width(); ++x) {
        const size_t i = static_cast<size_t>(y) * cw + std::min(2 * x + 1, cw - 1);
        ASSERT_EQ(s.v_row(y)[x], p.v[i]) << "V " << x << "," << y;
        ASSERT_EQ(s.u_row(y)[x], p.u[i]) << "U " << x << "," << y;
      }
  }
}

// The same picture on a surface whose luma rows are `pitch` apart and
// whose chroma planes follow the luma plane.
Surface with_luma_pitch(const Surface& s, int pitch) {
  const size_t v = static_cast<size_t>(pitch) * s.height;
  const size_t u = v + static_cast<size_t>(s.chroma_pitch) * s.chroma_height();
  Surface out = make_marked_yv12(s.width, s.height, pitch, v, u, s.chroma_pitch,
                                 u + static_cast<size_t>(s.chroma_pitch) * s.chroma_height());
  for (int r = 0; r < s.height; ++r) std::copy_n(s.row(r), s.width, out.row(r));
  for (int r = 0; r < s.chroma_height(); ++r) {
    std::copy_n(s.v_row(r), s.chroma_width(), out.bytes.begin() + v + r * s.chroma_pitch);
    std::copy_n(s.u_row(r), s.chroma_width(), out.bytes.begin() + u + r * s.chroma_pitch);
  }
  return out;
}

TEST(Yv12Kernels, ViewerReadsUAndVFromTheirOwnPlanes) {
  // Blue and red differ mostly in which chroma plane is high: swapped
  // planes (or swapped U and V arguments) turn one into the other.
  Picture420 p;
  p.allocate(24, 4);
  const Yuv blue = rgb_to_yuv601(0, 0, 255), red = rgb_to_yuv601(255, 0, 0);
  for (int y = 0; y < 4; ++y)
    for (int x = 0; x < 24; ++x) p.y[y * 24 + x] = x < 12 ? blue.y : red.y;
  for (int i = 0; i < 24; ++i) {
    p.u[i] = i % 12 < 6 ? blue.u : red.u;
    p.v[i] = i % 12 < 6 ? blue.v : red.v;
  }
  auto expect_blue_then_red = [](const RgbImage& img) {
    ASSERT_EQ(img.width, 24);
    ASSERT_EQ(img.height, 4);
    for (int y : {0, 3}) {
      expect_near_rgb({img.at(2, y)[0], img.at(2, y)[1], img.at(2, y)[2]}, {0, 0, 255}, 2, y);
      expect_near_rgb({img.at(20, y)[0], img.at(20, y)[1], img.at(20, y)[2]}, {255, 0, 0}, 20, y);
    }
  };
  Viewer viewer;
  for (const char* name : {"loadimage_yv12", "loadimage_yv12_ajust", "loadimage_half_yv12_ajust"}) {
    SCOPED_TRACE(name);
    const Surface s = run_kernel(kernel(name), prepare_source(p), identity_adjustment());
    if (s.width == 24) {
      expect_blue_then_red(viewer.view(s));
      EXPECT_TRUE(viewer.used_library());
    }
    // Chroma rows no longer half the luma pitch apart, as loadimage_rgb32
    // needs them: libswscale takes over.
    const Surface wide = with_luma_pitch(s, s.chroma_pitch * 2 + 16);
    const RgbImage img = viewer.view(wide);
    EXPECT_FALSE(viewer.used_library());
    ASSERT_EQ(img.width, s.width);
    expect_near_rgb({img.at(1, 3)[0], img.at(1, 3)[1], img.at(1, 3)[2]}, {0, 0, 255}, 1, 3);
    const int right = s.width - 2;
    expect_near_rgb({img.at(right, 3)[0], img.at(right, 3)[1], img.at(right, 3)[2]},
                    {255, 0, 0}, right, 3);
  }
}

// ----------------------------------------------------------- packed YUY2

TEST(PackedYuy2, LibswscalePackingCarriesEveryPlanarSample) {
  // Both rows of a pair must carry their chroma row unchanged: a filter
  // that blends chroma rows would hand the kernels a different picture.
  const Picture420 p = distinct_picture(48, 10);
  const KernelSource src = prepare_source(p);
  const int w = src.run_width, h = src.run_height;
  const std::vector<uint8_t> packed = planar_to_packed_yuy2(
      src.y.data(), src.u.data(), src.v.data(), src.pitch, src.pitch / 2, w, h, 2 * w, h + 2);
  ASSERT_EQ(packed.size(), static_cast<size_t>(2 * w) * (h + 2));
  for (int y = 0; y < h + 2; ++y)
    for (int x = 0; x < w; ++x) {
      const int sy = std::min(y, h - 1);
      const uint8_t* pair = &packed[static_cast<size_t>(y) * 2 * w + (x / 2) * 4];
      const size_t c = static_cast<size_t>(sy / 2) * (src.pitch / 2) + x / 2;
      ASSERT_EQ(pair[(x % 2) * 2], src.y[static_cast<size_t>(sy) * src.pitch + x]) << x << "," << y;
      ASSERT_EQ(pair[1], src.u[c]) << x << "," << y;
      ASSERT_EQ(pair[3], src.v[c]) << x << "," << y;
    }
}

TEST(PackedYuy2, Yuy2KernelsCopyEveryPixelAtAwkwardSizes) {
  for (auto [w, h] : kAwkwardSizes) {
    const Picture420 p = distinct_picture(w, h);
    for (const char* name : {"LoadYUY2_YUY2", "LoadYUY2_YUY2_adjust"}) {
      SCOPED_TRACE(std::string(name) + " " + size_label(w, h));
      const Surface s = run_kernel(kernel(name), prepare_source(p), identity_adjustment());
      ASSERT_EQ(s.width, w);
      ASSERT_EQ(s.height, h);
      for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x) ASSERT_EQ(yuy2_at(s, x, y), picture_at(p, x, y)) << x << "," << y;
    }
  }
}

TEST(PackedYuy2, Rgb32AdjustConvertsOneGroupPerRowPairEachFurtherShort) {
  // Run widths are whole groups, where the kernel converts 16 pixels of
  // each row pair and then steps on as if it had done the row: pair k
  // starts k*(W-16) pixels before its rows, in the source and on the
  // surface; both rows take the chroma of the pair's first row. Anything
  // else the tool did to the pitches moves the blocks.
  const Picture420 p = distinct_picture(40, 8);
  const KernelSource src = prepare_source(p);
  const int w = src.run_width;  // 48
  const Surface s = run_kernel(kernel("LoadYUY2_RGB32_adjust"), src, identity_adjustment());
  // Per picture pixel: the source pixels (index into the padded frame,
  // rows w apart) of its luma and of its chroma; -1: not written.
  std::vector<std::pair<int, int>> from(static_cast<size_t>(p.width) * p.height, {-1, -1});
  for (int k = 0; k < src.run_height / 2; ++k)
    for (int j = 0; j < 2; ++j)
      for (int x = 0; x < 16; ++x) {
        const long at = (2L * k + j) * s.pitch - 4L * k * (w - 16) + 4 * x;
        const int row = static_cast<int>(at / s.pitch), col = static_cast<int>(at % s.pitch / 4);
        if (row < p.height && col < p.width)
          from[row * p.width + col] = {(2 * k + j) * w - k * (w - 16) + x,
                                       2 * k * w - k * (w - 16) + x};
      }
  int written = 0;
  for (int y = 0; y < p.height; ++y)
    for (int x = 0; x < p.width; ++x) {
      const auto [luma, chroma] = from[y * p.width + x];
      ASSERT_EQ(is_marker(s, x, y), luma < 0) << x << "," << y;
      if (luma < 0) continue;
      ++written;
      const int c = chroma / w / 2 * (src.pitch / 2) + chroma % w / 2;
      const Yuv3 sample{src.y[luma / w * src.pitch + luma % w], src.u[c], src.v[c]};
      expect_near_rgb(rgb_at(s, x, y), reference_rgb(sample), x, y);
    }
  EXPECT_GE(written, 16 * 2 + 8 * 2);  // all of pair 0, part of pair 1 at least
}

}  // namespace
}  // namespace ybtool
