#include "model/yv12_mix_model.h"

#include <algorithm>
#include <optional>
#include <tuple>

#include "frame/walk.h"
#include "model/adjust_model.h"

namespace yuvblit_test {

using yuvblit::more;

namespace {

uint8_t blend(uint8_t picture, uint8_t sub, uint8_t alpha) {
  const int w = std::min<int>(alpha, 16);
  return static_cast<uint8_t>((picture * (16 - w) + sub * w) >> 4);
}

uint8_t average(uint8_t a, uint8_t b) { return static_cast<uint8_t>((a + b + 1) >> 1); }

uint32_t halved(int32_t v) { return static_cast<uint32_t>(v) >> 1; }

// 8 * steps samples of one row: sample i blends picture (or the average of
// two picture rows) with the subpicture by alpha[i], or alpha[2i + 1] for
// chroma; adjusted when asked.
void mix_row(Ptr picture, std::optional<Ptr> below, Ptr sub, Ptr alpha, Ptr dst, uint32_t samples,
             bool chroma, const yuvblit::SampleAdjust* adjust) {
  uint32_t left = samples;
  int64_t i = 0;
  do {
    for (int k = 0; k < 8; ++k, ++i) {
      const uint8_t p = below ? average(picture.get(i), below->get(i)) : picture.get(i);
      const uint8_t mixed = blend(p, sub.get(i), alpha.get(chroma ? 2 * i + 1 : i));
      dst.put(i, adjust ? yuvblit::adjust_sample(mixed, *adjust) : mixed);
    }
  } while (more(left, 8));
}

void model_p(ModelMix& m, bool adjusting) {
  const ModelAdjust a(m.adjust);
  const int64_t width = m.width;
  const int64_t covered = 8 * static_cast<int64_t>(yuvblit::passes(static_cast<uint32_t>(width), 8));
  Ptr picture = m.pictureY, alpha = m.subAlpha, sub = m.subY, dst = m.dst;
  uint32_t rows = static_cast<uint32_t>(m.height);
  do {
    mix_row(picture, std::nullopt, sub, alpha, dst, static_cast<uint32_t>(width), false,
            adjusting ? &a.luma : nullptr);
    picture += covered + m.picturePitch - width;
    dst += covered + m.dstPitch - width;
    alpha += covered + m.subPitch - width;
    sub += covered + m.subPitch - width;
  } while (more(rows, 1));

  m.height = static_cast<int32_t>(halved(m.height));
  const uint32_t chromaWidth = halved(m.width);
  const int64_t chromaCovered = 8 * static_cast<int64_t>(yuvblit::passes(chromaWidth, 8));
  const struct {
    Ptr picture, sub, dst;
    const yuvblit::SampleAdjust* adjust;
  } planes[] = {{m.pictureV, m.subV, m.dstV, &a.v}, {m.pictureU, m.subU, m.dstU, &a.u}};
  for (auto plane : planes) {
    alpha = m.subAlpha;
    rows = static_cast<uint32_t>(m.height);
    do {
      mix_row(plane.picture, std::nullopt, plane.sub, alpha, plane.dst, chromaWidth, true,
              adjusting ? plane.adjust : nullptr);
      plane.picture += chromaCovered + ((m.picturePitch - width) >> 1);
      plane.dst += chromaCovered + ((m.dstPitch - width) >> 1);
      alpha += 2 * chromaCovered + 2 * int64_t{m.subPitch} - width;
      plane.sub += chromaCovered + m.subPitch - chromaWidth;
    } while (more(rows, 1));
  }
}

// Output rows 2n and 2n + 1 from picture row n and the average of rows n
// and n + 1, while the row count, less 2 per pair, was above 2.
void field_plane(Ptr picture, int64_t picturePitch, Ptr sub, int64_t subPitch, Ptr alpha,
                 int64_t alphaPitch, Ptr dst, int64_t dstPitch, uint32_t rows, uint32_t samples,
                 bool chroma) {
  int64_t n = 0;
  do {
    for (int64_t r = 2 * n; r < 2 * n + 2; ++r) {
      const Ptr above = picture + n * picturePitch;
      std::optional<Ptr> below;
      if (r % 2) below = above + picturePitch;
      mix_row(above, below, sub + r * subPitch, alpha + r * alphaPitch, dst + r * dstPitch,
              samples, chroma, nullptr);
    }
    ++n;
  } while (more(rows, 2));
}

}  // namespace

void model_mix_ayv12_yv12_p(ModelMix& m) { model_p(m, false); }
void model_mix_ayv12_yv12_p_ajust(ModelMix& m) { model_p(m, true); }

void model_mix_ayv12_yv12_i(ModelMix& m) {
  field_plane(m.pictureY, m.picturePitch, m.subY, m.subPitch, m.subAlpha, m.subPitch, m.dst,
              m.dstPitch, static_cast<uint32_t>(m.height), static_cast<uint32_t>(m.width), false);
  m.height = static_cast<int32_t>(halved(m.height));
  m.width = static_cast<int32_t>(halved(m.width));
  for (auto [picture, sub, dst] : {std::tuple{m.pictureV, m.subV, m.dstV},
                                   std::tuple{m.pictureU, m.subU, m.dstU}}) {
    field_plane(picture, halved(m.picturePitch), sub, m.subPitch, m.subAlpha, 2 * int64_t{m.subPitch},
                dst, halved(m.dstPitch), static_cast<uint32_t>(m.height),
                static_cast<uint32_t>(m.width), true);
  }
}

}  // namespace yuvblit_test
