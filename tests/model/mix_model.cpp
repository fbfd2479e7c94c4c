#include "model/mix_model.h"

#include <algorithm>

#include "adjust/color.h"
#include "frame/walk.h"
#include "model/adjust_model.h"
#include "model/planar_to_rgb_model.h"

namespace yuvblit_test {

using yuvblit::more;

namespace {

// Weight min(alpha, 16) out of 16, truncating; never above 255.
uint8_t blend(uint8_t picture, uint8_t sub, uint8_t alpha) {
  const int w = std::min<int>(alpha, 16);
  return static_cast<uint8_t>((picture * (16 - w) + sub * w) >> 4);
}

// The half kernel's chroma: alpha taken as it stands, in 16-bit lanes with
// wrapping products, a saturating sum and a logical shift.
uint8_t blend_unclamped(uint8_t picture, uint8_t sub, uint8_t alpha) {
  const int16_t inverse = yuvblit::sat16(16 - alpha);
  const int16_t kept = static_cast<int16_t>(static_cast<uint16_t>(picture * inverse));
  const int16_t added = static_cast<int16_t>(static_cast<uint16_t>(sub * alpha));
  const int16_t sum = yuvblit::sat16(kept + added);
  return yuvblit::sat8(static_cast<uint16_t>(sum) >> 4);
}

// The picture samples that enter one row of a 16-pixel group.
struct PictureRow {
  uint8_t y[16], u[8], v[8];
};

// The subpicture at the start of one row of a group.
struct SubRow {
  Ptr alpha, y, u, v;
};

struct MixedRow {
  uint8_t y[16], u[8], v[8];
};

PictureRow read_picture(Ptr y, Ptr u, Ptr v) {
  PictureRow p;
  for (int i = 0; i < 16; ++i) p.y[i] = y.get(i);
  for (int k = 0; k < 8; ++k) p.u[k] = u.get(k), p.v[k] = v.get(k);
  return p;
}

// Luma by each pixel's alpha, chroma pair k by the alpha of pixel 2k + 1.
MixedRow mix_row(const PictureRow& p, const SubRow& s) {
  MixedRow m;
  for (int i = 0; i < 16; ++i) m.y[i] = blend(p.y[i], s.y.get(i), s.alpha.get(i));
  for (int k = 0; k < 8; ++k) {
    const uint8_t a = s.alpha.get(2 * k + 1);
    m.u[k] = blend(p.u[k], s.u.get(k), a);
    m.v[k] = blend(p.v[k], s.v.get(k), a);
  }
  return m;
}

void store_yuy2(Ptr d, const MixedRow& m, const ModelAdjust& a) {
  for (int k = 0; k < 8; ++k) {
    d.put(4 * k, a.Y(m.y[2 * k]));
    d.put(4 * k + 1, a.U(m.u[k]));
    d.put(4 * k + 2, a.Y(m.y[2 * k + 1]));
    d.put(4 * k + 3, a.V(m.v[k]));
  }
}

void store_rgb(Ptr d, const MixedRow& m, const ModelAdjust& a, ModelPacking packing,
               uint32_t rgb16Layout) {
  const int bpp = static_cast<int>(packing);
  for (int k = 0; k < 8; ++k) {
    const yuvblit::ChromaTerms terms = yuvblit::chroma_terms(a.U(m.u[k]), a.V(m.v[k]));
    for (int px = 2 * k; px < 2 * k + 2; ++px) {
      const yuvblit::Rgb c = yuvblit::yuv_to_rgb(a.Y(m.y[px]), terms);
      model_store_rgb(d + bpp * px, c.r, c.g, c.b, packing, rgb16Layout);
    }
  }
}

// Where a progressive kernel finds the second row of a pair and how far it
// moves the picture and the surface.
struct PairLayout {
  int32_t pictureRowPitch;     // its (>> 1) * 2 places the picture's second luma row
  int32_t pictureChromaPitch;  // its >> 1 moves the picture chroma per row pair
  int64_t dstGroupBytes;
  int64_t dstRowBytes;         // subtracted from two surface rows at each pair's end
};

// Row pairs of 16-pixel groups, both rows of a group before the next group;
// `group(pictureY, subRow, dst)` mixes and stores one row of a group with
// the record's picture chroma.
template <class Group>
void walk_row_pairs(ModelMix& m, const PairLayout& l, Group group) {
  const int64_t width = m.width, halfWidth = static_cast<uint32_t>(m.width) >> 1;
  const int64_t subRow = m.subPitch >> 1;
  Ptr pictureY = m.pictureY, dst = m.dst;
  do {
    uint32_t columns = static_cast<uint32_t>(m.width);
    do {
      for (int row = 0; row < 2; ++row) {
        const SubRow s{m.subAlpha + row * 2 * subRow, m.subY + row * 2 * subRow,
                       m.subU + row * subRow, m.subV + row * subRow};
        group(pictureY + row * 2 * (l.pictureRowPitch >> 1), s, dst + row * m.dstPitch);
      }
      pictureY += 16, m.pictureU += 8, m.pictureV += 8;
      m.subAlpha += 16, m.subY += 16, m.subU += 8, m.subV += 8;
      dst += l.dstGroupBytes;
    } while (more(columns, 16));
    pictureY += 2 * int64_t{m.picturePitch} - width;
    dst += 2 * int64_t{m.dstPitch} - l.dstRowBytes;
    m.subAlpha += 2 * int64_t{m.subPitch} - width;
    m.subY += 2 * int64_t{m.subPitch} - width;
    m.pictureU += (l.pictureChromaPitch >> 1) - halfWidth;
    m.pictureV += (l.pictureChromaPitch >> 1) - halfWidth;
    m.subU += m.subPitch - halfWidth;
    m.subV += m.subPitch - halfWidth;
    m.height -= 2;
  } while (m.height > 0);
}

void model_rgb_p(ModelMix& m, ModelPacking packing) {
  const uint32_t layout = m.adjust.rgb16Layout;
  if (packing == ModelPacking::kRgb16 && layout > 3) return;
  const ModelAdjust a(m.adjust);
  const int32_t bpp = static_cast<int32_t>(packing);
  walk_row_pairs(m, {m.picturePitch, m.picturePitch, 16 * bpp, int64_t{bpp} * m.width},
                 [&](Ptr y, const SubRow& s, Ptr d) {
                   store_rgb(d, mix_row(read_picture(y, m.pictureU, m.pictureV), s), a,
                             packing, layout);
                 });
}

// One field doubled onto RGB, column by column (16 pixels), each column in
// blocks of four output rows, rewound by 32-bit products of the height. The
// record is only read.
void model_rgb_i(ModelMix& record, ModelPacking packing) {
  const uint32_t layout = record.adjust.rgb16Layout;
  if (packing == ModelPacking::kRgb16 && layout > 3) return;
  const ModelAdjust a(record.adjust);
  ModelMix m = record;
  const int32_t h = m.height, bpp = static_cast<int32_t>(packing);
  const int64_t pp = m.picturePitch, cp = m.picturePitch >> 1;
  const int64_t sp = m.subPitch, scp = m.subPitch >> 1, dp = m.dstPitch;
  const int32_t dstBack = yuvblit::wrap32(dp * h);
  const int32_t lumaBack = yuvblit::wrap32(pp * h) >> 1;
  const int32_t chromaBack = lumaBack >> 2;
  const int32_t subBack = yuvblit::wrap32(sp * h);
  const int32_t subChromaBack = subBack >> 1;

  // Output row r of a block: luma avg(y0, y1), chroma avg(c0, c1).
  auto row = [&](Ptr y0, Ptr y1, int64_t chromaBelow, int r) {
    PictureRow p;
    for (int i = 0; i < 16; ++i) p.y[i] = yuvblit::average(y0.get(i), y1.get(i));
    for (int k = 0; k < 8; ++k) {
      p.u[k] = yuvblit::average(m.pictureU.get(k), m.pictureU.get(k + chromaBelow));
      p.v[k] = yuvblit::average(m.pictureV.get(k), m.pictureV.get(k + chromaBelow));
    }
    const Ptr alpha = m.subAlpha + r * sp, subY = m.subY + r * sp;
    const Ptr subU = m.subU + r * scp, subV = m.subV + r * scp;
    MixedRow mixed;
    for (int i = 0; i < 16; ++i) mixed.y[i] = blend(p.y[i], subY.get(i), alpha.get(i));
    for (int k = 0; k < 8; ++k) {
      // Rounded mean of both alphas, limited after the averaging.
      const uint8_t weight = static_cast<uint8_t>(
          std::min((alpha.get(2 * k) + alpha.get(2 * k + 1) + 1) >> 1, 16));
      mixed.u[k] = blend(p.u[k], subU.get(k), weight);
      mixed.v[k] = blend(p.v[k], subV.get(k), weight);
    }
    store_rgb(m.dst + r * dp, mixed, a, packing, layout);
  };
  auto block = [&](bool last) {
    const Ptr f0 = m.pictureY, f1 = f0 + pp, f2 = f1 + pp;
    row(f0, f0, 0, 0);
    row(f0, f1, 0, 1);
    row(f1, f1, last ? 0 : cp, 2);
    row(f1, last ? f1 : f2, last ? 0 : cp, 3);
    m.pictureY += 2 * pp;
    m.pictureU += cp, m.pictureV += cp;
    m.subAlpha += 4 * sp, m.subY += 4 * sp;
    m.subU += 4 * scp, m.subV += 4 * scp;
    m.dst += 4 * dp;
  };
  int32_t columns = m.width;
  do {
    if (h >= 8) {
      int32_t rows = h - 4;
      do {
        block(false);
        rows -= 4;
      } while (rows > 0);
    }
    block(true);
    m.dst += 16 * bpp - int64_t{dstBack};
    m.pictureY += 16 - int64_t{lumaBack};
    m.pictureU += 8 - int64_t{chromaBack}, m.pictureV += 8 - int64_t{chromaBack};
    m.subAlpha += 16 - int64_t{subBack}, m.subY += 16 - int64_t{subBack};
    m.subU += 8 - int64_t{subChromaBack}, m.subV += 8 - int64_t{subChromaBack};
    columns -= 16;
  } while (columns > 0);
}

}  // namespace

void model_mix_ayuy2_yuy2_p_ajust(ModelMix& m) {
  const ModelAdjust a(m.adjust);
  walk_row_pairs(m, {m.picturePitch, m.picturePitch, 32, 2 * int64_t{m.width}},
                 [&](Ptr y, const SubRow& s, Ptr d) {
                   store_yuy2(d, mix_row(read_picture(y, m.pictureU, m.pictureV), s), a);
                 });
}

// Reads whole groups, keeps the odd pixels and the odd chroma samples; the
// picture's second row and its chroma steps go by the subpicture's pitch.
void model_mix_ayuy2_half_yuy2_p_ajust(ModelMix& m) {
  const ModelAdjust a(m.adjust);
  walk_row_pairs(m, {m.subPitch, m.subPitch, 16, m.width}, [&](Ptr y, const SubRow& s, Ptr d) {
    const PictureRow p = read_picture(y, m.pictureU, m.pictureV);
    const MixedRow mixed = mix_row(p, s);
    for (int k = 0; k < 4; ++k) {
      const uint8_t alpha = s.alpha.get(4 * k + 3);
      const int sample = 2 * k + 1;
      d.put(4 * k, a.Y(mixed.y[4 * k + 1]));
      d.put(4 * k + 1, a.U(blend_unclamped(p.u[sample], s.u.get(sample), alpha)));
      d.put(4 * k + 2, a.Y(mixed.y[4 * k + 3]));
      d.put(4 * k + 3, a.V(blend_unclamped(p.v[sample], s.v.get(sample), alpha)));
    }
  });
}

// Output rows in groups of four from two picture rows (the second and
// fourth interpolated), every row with its own subpicture and surface row;
// a closing group reads no picture row beyond the group's second.
void model_mix_ayuy2_yuy2_i_ajust(ModelMix& m) {
  if (m.height < 4) return;
  const ModelAdjust a(m.adjust);
  const int64_t lumaRow = m.picturePitch, chromaRow = m.picturePitch >> 1;
  const int64_t subChromaRow =
      ((int64_t{m.subPitch} - m.width) >> 1) + (static_cast<uint32_t>(m.width) >> 1);
  Ptr luma = m.pictureY, dst = m.dst;

  // One output row: picture luma avg(y0, y1), chroma avg of the record's
  // chroma row and the one `chroma1` further (equal rows: no interpolation).
  auto row = [&](Ptr y0, Ptr y1, int64_t chroma1) {
    uint32_t steps = static_cast<uint32_t>(m.width) >> 1;
    int64_t x = 0;
    do {
      PictureRow p;
      for (int i = 0; i < 16; ++i) p.y[i] = yuvblit::average(y0.get(x + i), y1.get(x + i));
      for (int k = 0; k < 8; ++k) {
        const int64_t at = x / 2 + k;
        p.u[k] = yuvblit::average(m.pictureU.get(at), m.pictureU.get(at + chroma1));
        p.v[k] = yuvblit::average(m.pictureV.get(at), m.pictureV.get(at + chroma1));
      }
      const SubRow s{m.subAlpha + x, m.subY + x, m.subU + x / 2, m.subV + x / 2};
      store_yuy2(dst + 2 * x, mix_row(p, s), a);
      x += 16;
    } while (more(steps, 8));
    dst += m.dstPitch;
    m.subAlpha += m.subPitch, m.subY += m.subPitch;
    m.subU += subChromaRow, m.subV += subChromaRow;
  };
  auto group = [&] {
    row(luma, luma, 0);
    row(luma, luma + lumaRow, 0);
    row(luma + lumaRow, luma + lumaRow, chromaRow);
    row(luma + lumaRow, luma + 2 * lumaRow, chromaRow);
    luma += 2 * lumaRow;
    m.pictureU += chromaRow, m.pictureV += chromaRow;
  };
  auto closing_group = [&] {
    row(luma, luma, 0);
    row(luma, luma + lumaRow, 0);
    row(luma + lumaRow, luma + lumaRow, 0);
    row(luma + lumaRow, luma + lumaRow, 0);
  };

  if (m.height >= 8) {
    uint32_t rest = static_cast<uint32_t>(m.height) - 4;
    do group();
    while (more(rest, 4));
  }
  closing_group();
  m.height = 0;
}

void model_mix_ayuy2_rgb32_p_ajust(ModelMix& m) { model_rgb_p(m, ModelPacking::kRgb32); }
void model_mix_ayuy2_rgb24_p_ajust(ModelMix& m) { model_rgb_p(m, ModelPacking::kRgb24); }
void model_mix_ayuy2_rgb16_p_ajust(ModelMix& m) { model_rgb_p(m, ModelPacking::kRgb16); }
void model_mix_ayuy2_rgb32_i_ajust(ModelMix& m) { model_rgb_i(m, ModelPacking::kRgb32); }
void model_mix_ayuy2_rgb24_i_ajust(ModelMix& m) { model_rgb_i(m, ModelPacking::kRgb24); }
void model_mix_ayuy2_rgb16_i_ajust(ModelMix& m) { model_rgb_i(m, ModelPacking::kRgb16); }

}  // namespace yuvblit_test
