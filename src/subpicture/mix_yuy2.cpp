// Mixing a subpicture into a picture onto YUY2 surfaces: the walks.
#include "adjust/adjustment.h"
#include "frame/walk.h"
#include "subpicture/mix_rows.h"
#include "subpicture/mix_walk.h"
#include "yuvblit.h"

using namespace yuvblit;

namespace {

// One field doubled to twice its rows: every output row has its own
// subpicture and destination row; the picture rows entering the blend are
// field rows or rounded averages of two, four output rows per two field
// rows and one chroma row.
class FieldMix {
 public:
  explicit FieldMix(tagMIX_INFO* info)
      : info_(info),
        adjustment_(current_adjustment()),
        groups_(passes(static_cast<uint32_t>(info->width) >> 1, 8)),
        lumaRow_(info->pictureY),
        dst_(info->dst) {}

  // Four rows from field rows r, r+1 (r+2 for the last) and chroma rows q,
  // q+1; then on by two field rows and one chroma row.
  void group() {
    const uint8_t* next = step(lumaRow_, info_->picturePitch);
    row(lumaRow_, lumaRow_, false);
    row(lumaRow_, next, false);
    row(next, next, true);
    row(next, step(next, info_->picturePitch), true);
    lumaRow_ = step(next, info_->picturePitch);
    info_->pictureU = step(info_->pictureU, chroma_pitch());
    info_->pictureV = step(info_->pictureV, chroma_pitch());
  }

  // The last four rows: nothing below field row r+1 or chroma row q is read.
  // Mixes every row still in the batch.
  void closing_group() {
    const uint8_t* next = step(lumaRow_, info_->picturePitch);
    row(lumaRow_, lumaRow_, false);
    row(lumaRow_, next, false);
    row(next, next, false);
    row(next, next, false);
    batch_.finish();
  }

 private:
  int32_t chroma_pitch() const { return half(info_->picturePitch); }

  void row(const uint8_t* luma0, const uint8_t* luma1, bool averageChroma) {
    const uint8_t* u = info_->pictureU;
    const uint8_t* v = info_->pictureV;
    const MixRow mixRow{info_->subAlpha, info_->subY, info_->subU, info_->subV,
                        {luma0, luma1},
                        {u, averageChroma ? step(u, chroma_pitch()) : u},
                        {v, averageChroma ? step(v, chroma_pitch()) : v},
                        dst_};
    batch_.add({mixRow, groups_});
    const int32_t subPitch = info_->subPitch;
    const int64_t chromaStep = int64_t{half(wrap32(int64_t{subPitch} - info_->width))} +
                               half(info_->width);
    info_->subAlpha = step(info_->subAlpha, subPitch);
    info_->subY = step(info_->subY, subPitch);
    info_->subU = step(info_->subU, chromaStep);
    info_->subV = step(info_->subV, chromaStep);
    dst_ = step(dst_, info_->dstPitch);
  }

  tagMIX_INFO* info_;
  const Adjustment adjustment_;
  const size_t groups_;
  const uint8_t* lumaRow_;
  uint8_t* dst_;
  RowBatch<MixRun, Yuy2RowMixer> batch_{Yuy2RowMixer{&adjustment_}};
};

}  // namespace

extern "C" {

YUVBLIT_API void mix_ayuy2_yuy2_p_ajust(tagMIX_INFO* info) {
  const Adjustment a = current_adjustment();
  auto batch = row_batch<MixRun>(Yuy2RowMixer{&a});
  walk_progressive_mix(info, ProgressiveMix{32, 2 * int64_t{info->width}, info->picturePitch},
                       [&](const MixRow& row, size_t groups) { batch.add({row, groups}); });
  batch.finish();
}

// Every second pixel; the picture's second row and its chroma steps follow
// the subpicture's pitch.
YUVBLIT_API void mix_ayuy2_half_yuy2_p_ajust(tagMIX_INFO* info) {
  const Adjustment a = current_adjustment();
  walk_progressive_mix(info, ProgressiveMix{16, int64_t{info->width}, info->subPitch},
                       [&](const MixRow& row, size_t groups) {
                         mix_row_to_half_yuy2(row, groups, a);
                       });
}

// Heights below 4 write nothing; 4 to 7 write the closing four rows only;
// from 8 on, full groups of four while the count reduced by 4 stays above 4
// (unsigned), then the closing group. The record's height ends at 0.
YUVBLIT_API void mix_ayuy2_yuy2_i_ajust(tagMIX_INFO* info) {
  if (info->height < 4) return;
  FieldMix field(info);
  if (info->height >= 8) {
    uint32_t rows = static_cast<uint32_t>(info->height) - 4;
    do {
      field.group();
    } while (more(rows, 4));
  }
  field.closing_group();
  info->height = 0;
}

}  // extern "C"
