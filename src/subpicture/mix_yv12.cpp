// Mixing an AYV12 subpicture into a picture onto YV12 surfaces: the walks.
// Each kernel writes the luma plane, then V, then U, each in its own pass
// of 8-sample steps; a chroma sample is weighted by the alpha of the
// right-hand pixel of its pair on the even row.
#include "adjust/adjustment.h"
#include "frame/walk.h"
#include "subpicture/plane_mix_rows.h"
#include "yuvblit.h"

using namespace yuvblit;

namespace {

// The planes of one pass.
struct PlanePass {
  const uint8_t* picture;
  const uint8_t* sub;
  uint8_t* dst;
  const SampleAdjust* adjust;  // null: not adjusted
};

// Progressive: every row advanced from where its steps ended by a step
// computed from `width`, so widths off the 8-sample step drift right.
void mix_progressive(tagMIX_INFO* info, const Adjustment* adjustment) {
  const int32_t width = info->width;
  const int32_t subPitch = info->subPitch;
  const size_t steps = passes(static_cast<uint32_t>(width), 8);
  const uint8_t* picture = info->pictureY;
  const uint8_t* alpha = info->subAlpha;
  const uint8_t* sub = info->subY;
  uint8_t* dst = info->dst;
  uint32_t rows = static_cast<uint32_t>(info->height);
  do {
    mix_plane_row({{picture, picture}, sub, alpha, dst}, steps, AlphaSampling::kPerSample,
                  adjustment ? &adjustment->luma : nullptr);
    const size_t covered = 8 * steps;
    picture = step(picture + covered, int64_t{info->picturePitch} - width);
    dst = step(dst + covered, int64_t{info->dstPitch} - width);
    alpha = step(alpha + covered, int64_t{subPitch} - width);
    sub = step(sub + covered, int64_t{subPitch} - width);
  } while (more(rows, 1));

  info->height = static_cast<int32_t>(static_cast<uint32_t>(info->height) >> 1);
  const uint32_t chromaWidth = static_cast<uint32_t>(width) >> 1;
  const size_t chromaSteps = passes(chromaWidth, 8);
  const PlanePass chroma[] = {
      {info->pictureV, info->subV, info->dstV, adjustment ? &adjustment->v : nullptr},
      {info->pictureU, info->subU, info->dstU, adjustment ? &adjustment->u : nullptr}};
  for (PlanePass pass : chroma) {
    alpha = info->subAlpha;
    rows = static_cast<uint32_t>(info->height);
    do {
      mix_plane_row({{pass.picture, pass.picture}, pass.sub, alpha, pass.dst}, chromaSteps,
                    AlphaSampling::kRightOfPair, pass.adjust);
      const size_t covered = 8 * chromaSteps;
      pass.picture = step(pass.picture + covered, half(wrap32(int64_t{info->picturePitch} - width)));
      pass.dst = step(pass.dst + covered, half(wrap32(int64_t{info->dstPitch} - width)));
      alpha = step(alpha + 2 * covered, 2 * int64_t{subPitch} - width);
      pass.sub = step(pass.sub + covered, int64_t{subPitch} - chromaWidth);
    } while (more(rows, 1));
  }
}

// One field doubled: output row pair m takes picture row m, then the
// rounded average of rows m and m + 1; rows lie exactly their pitches
// apart. Pairs go on while the count, less 2 per pair, was above 2.
// `alphaRows` alpha rows per output row (2 for chroma: the even pixel rows).
void mix_field_plane(const uint8_t* picture, int64_t picturePitch, const uint8_t* sub,
                     int64_t subPitch, const uint8_t* alpha, int64_t alphaPitch, uint8_t* dst,
                     int64_t dstPitch, uint32_t rows, size_t steps, AlphaSampling sampling) {
  int64_t m = 0;
  do {
    const uint8_t* above = step(picture, m * picturePitch);
    const uint8_t* below = step(picture, (m + 1) * picturePitch);
    for (int64_t r = 2 * m; r < 2 * m + 2; ++r) {
      const uint8_t* second = r == 2 * m ? above : below;
      mix_plane_row({{above, second}, step(sub, r * subPitch), step(alpha, r * alphaPitch),
                     step(dst, r * dstPitch)},
                    steps, sampling, nullptr);
    }
    ++m;
  } while (more(rows, 2));
}

}  // namespace

extern "C" {

YUVBLIT_API void mix_ayv12_yv12_p(tagMIX_INFO* info) { mix_progressive(info, nullptr); }

YUVBLIT_API void mix_ayv12_yv12_p_ajust(tagMIX_INFO* info) {
  const Adjustment a = current_adjustment();
  mix_progressive(info, &a);
}

// The record's height and width are halved between the luma and the chroma
// passes; the chroma passes take the halved sizes, picture chroma rows
// half the picture pitch apart (logical halving), as are the destination's.
YUVBLIT_API void mix_ayv12_yv12_i(tagMIX_INFO* info) {
  const int64_t subPitch = info->subPitch;
  mix_field_plane(info->pictureY, info->picturePitch, info->subY, subPitch, info->subAlpha,
                  subPitch, info->dst, info->dstPitch, static_cast<uint32_t>(info->height),
                  passes(static_cast<uint32_t>(info->width), 8), AlphaSampling::kPerSample);
  info->height = static_cast<int32_t>(static_cast<uint32_t>(info->height) >> 1);
  info->width = static_cast<int32_t>(static_cast<uint32_t>(info->width) >> 1);
  const int64_t picturePitch = static_cast<uint32_t>(info->picturePitch) >> 1;
  const int64_t dstPitch = static_cast<uint32_t>(info->dstPitch) >> 1;
  const size_t steps = passes(static_cast<uint32_t>(info->width), 8);
  mix_field_plane(info->pictureV, picturePitch, info->subV, subPitch, info->subAlpha,
                  2 * subPitch, info->dstV, dstPitch, static_cast<uint32_t>(info->height), steps,
                  AlphaSampling::kRightOfPair);
  mix_field_plane(info->pictureU, picturePitch, info->subU, subPitch, info->subAlpha,
                  2 * subPitch, info->dstU, dstPitch, static_cast<uint32_t>(info->height), steps,
                  AlphaSampling::kRightOfPair);
}

}  // extern "C"
