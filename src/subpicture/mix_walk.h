// The walk of the progressive mixers: row pairs of 16-pixel groups, both
// rows of a pair sharing the picture's chroma row, every subpicture and
// picture-chroma position kept (and left advanced) in the host's record.
#pragma once

#include <cstddef>
#include <cstdint>

#include "frame/walk.h"
#include "subpicture/mix_rows.h"
#include "yuvblit.h"

namespace yuvblit {

struct ProgressiveMix {
  size_t dstPerGroup;      // output bytes per group and row
  int64_t dstRowBytes;     // what the end-of-pair destination step takes back
  int32_t pictureRowPitch; // the picture's second row lies 2 * (this >> 1)
                           // below the first, and its chroma steps by this >> 1
};

// Runs `row(MixRow, groups)` over both rows of every row pair, first row
// before second within each group. The second row of the subpicture lies
// 2 * (subPitch >> 1) below the first (its chroma subPitch >> 1), the
// destination's dstPitch below. Row pairs end with steps computed from
// `width`, so other widths drift right; `height` counts down by 2 in the
// record while it stays above 0.
template <class Row>
void walk_progressive_mix(tagMIX_INFO* info, const ProgressiveMix& mix, Row row) {
  const int32_t width = info->width;
  const int64_t halfWidth = static_cast<uint32_t>(width) >> 1;
  const size_t groups = passes(static_cast<uint32_t>(width), 16);
  const size_t luma = 16 * groups, chroma = 8 * groups;
  const uint8_t* pictureY = info->pictureY;
  uint8_t* dst = info->dst;
  do {
    const MixRow first{info->subAlpha, info->subY, info->subU, info->subV,
                       {pictureY, pictureY}, {info->pictureU, info->pictureU},
                       {info->pictureV, info->pictureV}, dst};
    MixRow second = first;
    const int64_t subRow = 2 * int64_t{half(info->subPitch)};
    second.alpha = step(first.alpha, subRow);
    second.subY = step(first.subY, subRow);
    second.subU = step(first.subU, half(info->subPitch));
    second.subV = step(first.subV, half(info->subPitch));
    second.pictureY[0] = second.pictureY[1] =
        step(pictureY, 2 * int64_t{half(mix.pictureRowPitch)});
    second.dst = step(dst, info->dstPitch);
    run_row_groups({first.dst, second.dst}, mix.dstPerGroup, groups, [&](size_t g, size_t n) {
      row(first.at(g, mix.dstPerGroup), n);
      row(second.at(g, mix.dstPerGroup), n);
    });

    pictureY = step(pictureY + luma, 2 * int64_t{info->picturePitch} - width);
    dst = step(dst + mix.dstPerGroup * groups, 2 * int64_t{info->dstPitch} - mix.dstRowBytes);
    info->subAlpha = step(info->subAlpha + luma, 2 * int64_t{info->subPitch} - width);
    info->subY = step(info->subY + luma, 2 * int64_t{info->subPitch} - width);
    info->pictureU = step(info->pictureU + chroma, half(mix.pictureRowPitch) - halfWidth);
    info->pictureV = step(info->pictureV + chroma, half(mix.pictureRowPitch) - halfWidth);
    info->subU = step(info->subU + chroma, int64_t{info->subPitch} - halfWidth);
    info->subV = step(info->subV + chroma, int64_t{info->subPitch} - halfWidth);
    info->height = wrap32(int64_t{info->height} - 2);
  } while (info->height > 0);
}

}  // namespace yuvblit
