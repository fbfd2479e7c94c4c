// Row operations that mix a subpicture into a picture row and write the
// result adjusted: onto YUY2, half-width YUY2, or RGB. Each takes the
// positions of its first group and a count of 16-pixel groups; a group reads
// 16 alpha, 16 picture and 16 subpicture luma bytes and 8 samples of each
// chroma row.
#pragma once

#include <cstddef>
#include <cstdint>

#include "adjust/adjustment.h"
#include "adjust/color.h"

namespace yuvblit {

// Where one output row takes its samples from. The picture row is the
// rounded average of two rows (pass the same row twice to take it as it
// is), for luma and chroma separately.
struct MixRow {
  const uint8_t* alpha;
  const uint8_t* subY;
  const uint8_t* subU;
  const uint8_t* subV;
  const uint8_t* pictureY[2];
  const uint8_t* pictureU[2];
  const uint8_t* pictureV[2];
  uint8_t* dst;

  bool interpolates() const {
    return pictureY[0] != pictureY[1] || pictureU[0] != pictureU[1] ||
           pictureV[0] != pictureV[1];
  }
  // The same row `groups` groups further right; `dstPerGroup` output bytes
  // per group.
  MixRow at(size_t groups, size_t dstPerGroup) const {
    const size_t luma = 16 * groups, chroma = 8 * groups;
    return MixRow{alpha + luma,
                  subY + luma,
                  subU + chroma,
                  subV + chroma,
                  {pictureY[0] + luma, pictureY[1] + luma},
                  {pictureU[0] + chroma, pictureU[1] + chroma},
                  {pictureV[0] + chroma, pictureV[1] + chroma},
                  dst + dstPerGroup * groups};
  }
};

// A row's groups from its first group on.
struct MixRun {
  MixRow row;
  size_t groups;
};

// 16 pixels (32 bytes) per group. Chroma pair j is weighted by the alpha of
// pixel 2j+1; weights are clamped to 16. The runs are mixed in order, so a
// walk can hand over many rows in one call (RowBatch, frame/walk.h).
void mix_rows_to_yuy2(const MixRun* runs, size_t count, const Adjustment& a);

// Half width: output pixel j of a group takes source pixel 2j+1, output pair
// k takes chroma sample 2k+1 weighted by the unclamped alpha of pixel 4k+3;
// 8 pixels (16 bytes) per group.
void mix_row_to_half_yuy2(const MixRow& row, size_t groups, const Adjustment& a);

// How a pixel pair's chroma is weighted: by the right-hand pixel's alpha
// limited to 16, or by the rounded mean of both raw alphas limited to 16
// after the averaging (alphas 0 and 255 give 16).
enum class ChromaWeight { kRightPixel, kPairMean };

// 16 pixels per group in the given RGB format; luma weights as for YUY2.
// The runs are mixed in order.
void mix_rows_to_rgb(const MixRun* runs, size_t count, const RgbFormat& format,
                     const Adjustment& a, ChromaWeight chroma = ChromaWeight::kRightPixel);

// The row operations as a RowBatch takes them: flush(runs, count).
struct Yuy2RowMixer {
  const Adjustment* adjustment;
  void operator()(const MixRun* runs, size_t count) const {
    mix_rows_to_yuy2(runs, count, *adjustment);
  }
};
struct RgbRowMixer {
  const RgbFormat* format;
  const Adjustment* adjustment;
  ChromaWeight chroma;
  void operator()(const MixRun* runs, size_t count) const {
    mix_rows_to_rgb(runs, count, *format, *adjustment, chroma);
  }
};

}  // namespace yuvblit
