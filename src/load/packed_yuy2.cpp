// Packed YUY2 pictures onto YUY2 and RGB surfaces: the walks. Both rows of
// a pair take the first row's chroma. Groups are 8 pixels for YUY2 output
// and 16 for RGB; after a row's last group both pointers move back by that
// group's overrun, so every row pair starts where it belongs whatever the
// width (width 0 excepted: its one group is not taken back, and each pair
// starts one group further right).
#include <optional>

#include "adjust/adjustment.h"
#include "frame/walk.h"
#include "load/packed_yuy2_rows.h"
#include "load/rgb_rows.h"
#include "yuvblit.h"

namespace yuvblit {
namespace {

// Where a walk stands and the steps it takes. srcPitch counts pixels, so
// source rows are 2 * srcPitch bytes apart.
struct PackedWalk {
  const uint8_t* s;
  uint8_t* d;
  int32_t width, srcPitch, dstPitch;
  uint32_t rowBytes;    // 2 * width, counted down by groupBytes
  uint32_t groupBytes;  // source bytes per group row: 16 or 32
  size_t dstPerGroup;   // destination bytes per group row
  int32_t bpp;          // destination bytes per pixel
  uint32_t corr;        // how far the last group reaches past the row
  uint32_t dstCorr;     // the same on the destination

  PackedWalk(void* srcY, void* dst, int32_t width_, int32_t srcPitch_, int32_t dstPitch_,
             uint32_t groupBytes_, int32_t bpp_)
      : s(static_cast<const uint8_t*>(srcY)),
        d(static_cast<uint8_t*>(dst)),
        width(width_),
        srcPitch(srcPitch_),
        dstPitch(dstPitch_),
        rowBytes(2u * static_cast<uint32_t>(width_)),
        groupBytes(groupBytes_),
        dstPerGroup(groupBytes_ / 2 * static_cast<size_t>(bpp_)),
        bpp(bpp_),
        // (rowBytes rounded down to whole groups) - rowBytes + groupBytes:
        // a whole group when the row is whole groups.
        corr((rowBytes & ~(groupBytes - 1)) - rowBytes + groupBytes),
        // corr, corr + corr / 2 or 2 * corr: corr / 2 pixels (corr is even).
        dstCorr(corr / 2 * static_cast<uint32_t>(bpp_)) {}

  const uint8_t* second_source_row() const { return step(s, 2 * int64_t{srcPitch}); }
  uint8_t* second_dst_row() const { return step(d, dstPitch); }

  // The row-pair loop: `groups` groups per pair, each group's first row
  // stored before its second. row(s0, s1, d0, d1, count).
  template <class Row>
  void pairs(int32_t height, size_t groups, Row row) {
    uint32_t rows = static_cast<uint32_t>(height);
    do {
      const uint8_t* s1 = second_source_row();
      uint8_t* d1 = second_dst_row();
      run_row_groups({d, d1}, dstPerGroup, groups, [&](size_t g, size_t n) {
        row(s + groupBytes * g, s1 + groupBytes * g, d + dstPerGroup * g,
            d1 + dstPerGroup * g, n);
      });
      s += groupBytes * groups;
      d += dstPerGroup * groups;
      if (corr != groupBytes) {
        s -= corr;
        d -= dstCorr;
      }
      s = step(s, 4 * int64_t{srcPitch} - rowBytes);
      d = step(d, 2 * int64_t{dstPitch} - int64_t{bpp} * width);
    } while (more(rows, 2));
  }
};

void packed_to_yuy2(void* srcY, void* dst, int32_t width, int32_t height, int32_t srcPitch,
                    int32_t dstPitch, bool adjusts) {
  const Adjustment a = adjusts ? current_adjustment() : Adjustment{};
  PackedWalk w(srcY, dst, width, srcPitch, dstPitch, 16, 2);
  w.pairs(height, passes(w.rowBytes, 16),
          [&](const uint8_t* s0, const uint8_t* s1, uint8_t* d0, uint8_t* d1, size_t n) {
            packed_pair_to_yuy2(s0, s1, d0, d1, n, adjusts ? &a : nullptr);
          });
}

void packed_to_rgb(void* srcY, void* dst, int32_t width, int32_t height, int32_t srcPitch,
                   int32_t dstPitch, const tag_ajust_contrast_info* record, RgbPacking packing,
                   bool adjusts) {
  const std::optional<RgbFormat> format = rgb_format(packing, record);
  if (!format) return;
  const Adjustment a = adjusts ? current_adjustment() : Adjustment{};
  PackedWalk w(srcY, dst, width, srcPitch, dstPitch, 32,
               static_cast<int32_t>(bytes_per_pixel(packing)));
  w.pairs(height, passes(w.rowBytes, 32),
          [&](const uint8_t* s0, const uint8_t* s1, uint8_t* d0, uint8_t* d1, size_t n) {
            packed_pair_to_rgb(s0, s1, d0, d1, n, *format, adjusts ? &a : nullptr);
          });
}

// LoadYUY2_RGB32_adjust tests for the end of a row after taking the overrun
// back, not after counting groups. For widths that are multiples of 16 that
// test ends the row after its first group and the pair step, made for a
// whole row, leaves every later pair 2 * width - 32 source bytes (and
// 4 * width - 64 destination bytes) further short. For other widths the
// test never ends the row; this library converts the first row pair's
// groups, each starting `corr` bytes before the end of the previous one, as
// many as LoadYUY2_RGB32 converts per row, and returns without a pair step,
// so it never writes outside what LoadYUY2_RGB32 writes.
void packed_to_rgb32_adjust(void* srcY, void* dst, int32_t width, int32_t height,
                            int32_t srcPitch, int32_t dstPitch) {
  const Adjustment a = current_adjustment();
  const RgbFormat format{RgbPacking::kRgb32, {}};
  PackedWalk w(srcY, dst, width, srcPitch, dstPitch, 32, 4);
  auto convert = [&](const uint8_t* s0, const uint8_t* s1, uint8_t* d0, uint8_t* d1,
                     size_t n) { packed_pair_to_rgb(s0, s1, d0, d1, n, format, &a); };
  if (w.corr == w.groupBytes) {
    w.pairs(height, 1, convert);
    return;
  }
  const size_t groups = passes(w.rowBytes, 32);
  for (size_t g = 0; g < groups; ++g) {
    convert(w.s, w.second_source_row(), w.d, w.second_dst_row(), 1);
    w.s += w.groupBytes - w.corr;
    w.d += w.dstPerGroup - w.dstCorr;
  }
}

}  // namespace
}  // namespace yuvblit

using yuvblit::RgbPacking;

YUVBLIT_A9(LoadYUY2_YUY2) {
  (void)srcU, (void)srcV, (void)adjust;
  yuvblit::packed_to_yuy2(srcY, dst, width, height, srcPitch, dstPitch, false);
}

YUVBLIT_A9(LoadYUY2_YUY2_adjust) {
  (void)srcU, (void)srcV, (void)adjust;
  yuvblit::packed_to_yuy2(srcY, dst, width, height, srcPitch, dstPitch, true);
}

#define YUVBLIT_PACKED_TO_RGB(name, packing, adjusts)                                  \
  YUVBLIT_A9(name) {                                                                   \
    (void)srcU, (void)srcV;                                                            \
    yuvblit::packed_to_rgb(srcY, dst, width, height, srcPitch, dstPitch, adjust, packing, \
                           adjusts);                                                   \
  }

YUVBLIT_PACKED_TO_RGB(LoadYUY2_RGB16, RgbPacking::kRgb16, false)
YUVBLIT_PACKED_TO_RGB(LoadYUY2_RGB16_adjust, RgbPacking::kRgb16, true)
YUVBLIT_PACKED_TO_RGB(LoadYUY2_RGB24, RgbPacking::kRgb24, false)
YUVBLIT_PACKED_TO_RGB(LoadYUY2_RGB24_adjust, RgbPacking::kRgb24, true)
YUVBLIT_PACKED_TO_RGB(LoadYUY2_RGB32, RgbPacking::kRgb32, false)

YUVBLIT_A9(LoadYUY2_RGB32_adjust) {
  (void)srcU, (void)srcV, (void)adjust;
  yuvblit::packed_to_rgb32_adjust(srcY, dst, width, height, srcPitch, dstPitch);
}
