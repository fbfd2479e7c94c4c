// Mixing a subpicture into one field of a picture, doubled line by line,
// onto RGB32, RGB24 and RGB16 surfaces: the walk.
//
// The kernels go column by column (16 pixels wide), each column in blocks
// of four output rows, and rewind each column by steps computed once from
// the height. Where every column returns exactly to the top and no two
// surface rows share bytes, the columns of one row produce the same bytes
// whichever order they are written in, and whole rows are mixed at once.
#include <optional>

#include "adjust/adjustment.h"
#include "adjust/color.h"
#include "frame/walk.h"
#include "subpicture/mix_rows.h"
#include "yuvblit.h"

namespace yuvblit {
namespace {

// The positions a column starts from (and a block moves on).
struct FieldPositions {
  const uint8_t* pictureY;
  const uint8_t* pictureU;
  const uint8_t* pictureV;
  const uint8_t* alpha;
  const uint8_t* subY;
  const uint8_t* subU;
  const uint8_t* subV;
  uint8_t* dst;
};

class FieldToRgb {
 public:
  FieldToRgb(const tagMIX_INFO& info, const RgbFormat& format)
      : info_(info),
        format_(format),
        adjustment_(current_adjustment()),
        bpp_(bytes_per_pixel(format.packing)),
        chromaPitch_(info.picturePitch >> 1),
        subChromaPitch_(info.subPitch >> 1) {}

  // Mixes every row before it returns.
  void run() {
    const int32_t h = info_.height;
    const int32_t width = info_.width;
    FieldPositions p{info_.pictureY, info_.pictureU, info_.pictureV, info_.subAlpha,
                     info_.subY,     info_.subU,     info_.subV,     info_.dst};
    // 32-bit products, as the column rewinds use them.
    const int32_t dstBack = wrap32(int64_t{info_.dstPitch} * h);
    const int32_t lumaBack = wrap32(int64_t{info_.picturePitch} * h) >> 1;
    const int32_t chromaBack = lumaBack >> 2;
    const int32_t subBack = wrap32(int64_t{info_.subPitch} * h);
    const int32_t subChromaBack = subBack >> 1;

    const size_t columns = passes(static_cast<uint32_t>(width > 0 ? width : 1), 16);
    const int64_t blocks = h >= 8 ? (int64_t{h} - 4 + 3) / 4 + 1 : 1;
    // What one column's blocks advance, against what its rewind takes back.
    const bool returnsToTop =
        wrap32(blocks * 4 * info_.dstPitch) == dstBack &&
        wrap32(blocks * 2 * info_.picturePitch) == lumaBack &&
        wrap32(blocks * chromaPitch_) == chromaBack &&
        wrap32(blocks * 4 * info_.subPitch) == subBack &&
        wrap32(blocks * 4 * subChromaPitch_) == subChromaBack;
    const int64_t rowBytes = static_cast<int64_t>(16 * bpp_ * columns);
    const int64_t dstPitch = info_.dstPitch;
    if (width > 0 && returnsToTop && (dstPitch >= rowBytes || -dstPitch >= rowBytes)) {
      column(p, columns);
      batch_.finish();
      return;
    }
    int32_t left = width;
    do {
      column(p, 1);
      p.dst = step(p.dst, int64_t{16} * static_cast<int64_t>(bpp_) - dstBack);
      p.pictureY = step(p.pictureY, 16 - int64_t{lumaBack});
      p.pictureU = step(p.pictureU, 8 - int64_t{chromaBack});
      p.pictureV = step(p.pictureV, 8 - int64_t{chromaBack});
      p.alpha = step(p.alpha, 16 - int64_t{subBack});
      p.subY = step(p.subY, 16 - int64_t{subBack});
      p.subU = step(p.subU, 8 - int64_t{subChromaBack});
      p.subV = step(p.subV, 8 - int64_t{subChromaBack});
      left = wrap32(int64_t{left} - 16);
    } while (left > 0);
    batch_.finish();
  }

 private:
  // One column of `groups` groups from p, which it leaves below its last
  // block: blocks of the general rule while the row count less 4 stays
  // above 0, then the last block; heights below 8 the last block only.
  void column(FieldPositions& p, size_t groups) {
    const int32_t h = info_.height;
    if (h >= 8) {
      int32_t rows = h - 4;
      do {
        block(p, groups, false);
        rows -= 4;
      } while (rows > 0);
    }
    block(p, groups, true);
  }

  // Four output rows from field rows m, m+1 (m+2) and chroma rows j, j+1;
  // the last block reads neither field row m+2 nor chroma row j+1.
  void block(FieldPositions& p, size_t groups, bool last) {
    const uint8_t* f0 = p.pictureY;
    const uint8_t* f1 = step(f0, info_.picturePitch);
    const uint8_t* f2 = step(f1, info_.picturePitch);
    const uint8_t* u1 = step(p.pictureU, chromaPitch_);
    const uint8_t* v1 = step(p.pictureV, chromaPitch_);
    const struct {
      const uint8_t* luma[2];
      bool averageChroma;
    } rows[4] = {{{f0, f0}, false},
                 {{f0, f1}, false},
                 {{f1, f1}, !last},
                 {{f1, last ? f1 : f2}, !last}};
    for (int r = 0; r < 4; ++r) {
      const MixRow row{step(p.alpha, int64_t{r} * info_.subPitch),
                       step(p.subY, int64_t{r} * info_.subPitch),
                       step(p.subU, int64_t{r} * subChromaPitch_),
                       step(p.subV, int64_t{r} * subChromaPitch_),
                       {rows[r].luma[0], rows[r].luma[1]},
                       {p.pictureU, rows[r].averageChroma ? u1 : p.pictureU},
                       {p.pictureV, rows[r].averageChroma ? v1 : p.pictureV},
                       step(p.dst, int64_t{r} * info_.dstPitch)};
      batch_.add({row, groups});
    }
    p.pictureY = step(p.pictureY, 2 * int64_t{info_.picturePitch});
    p.pictureU = u1;
    p.pictureV = v1;
    p.alpha = step(p.alpha, 4 * int64_t{info_.subPitch});
    p.subY = step(p.subY, 4 * int64_t{info_.subPitch});
    p.subU = step(p.subU, 4 * int64_t{subChromaPitch_});
    p.subV = step(p.subV, 4 * int64_t{subChromaPitch_});
    p.dst = step(p.dst, 4 * int64_t{info_.dstPitch});
  }

  const tagMIX_INFO& info_;
  const RgbFormat format_;
  const Adjustment adjustment_;
  const size_t bpp_;
  const int32_t chromaPitch_, subChromaPitch_;
  RowBatch<MixRun, RgbRowMixer> batch_{
      RgbRowMixer{&format_, &adjustment_, ChromaWeight::kPairMean}};
};

void mix_field_to_rgb(tagMIX_INFO* info, RgbPacking packing) {
  // RGB16 with a layout above 3 returns before anything is read or written.
  const std::optional<RgbFormat> format = rgb_format(packing, info->adjust);
  if (!format) return;
  FieldToRgb(*info, *format).run();
}

}  // namespace
}  // namespace yuvblit

using yuvblit::RgbPacking;

extern "C" {

YUVBLIT_API void mix_ayuy2_rgb32_i_ajust(tagMIX_INFO* info) {
  yuvblit::mix_field_to_rgb(info, RgbPacking::kRgb32);
}
YUVBLIT_API void mix_ayuy2_rgb24_i_ajust(tagMIX_INFO* info) {
  yuvblit::mix_field_to_rgb(info, RgbPacking::kRgb24);
}
YUVBLIT_API void mix_ayuy2_rgb16_i_ajust(tagMIX_INFO* info) {
  yuvblit::mix_field_to_rgb(info, RgbPacking::kRgb16);
}

}  // extern "C"
