#include "model/sub_to_rgb_model.h"

#include "adjust/color.h"
#include "frame/walk.h"
#include "model/adjust_model.h"
#include "model/planar_to_rgb_model.h"

namespace yuvblit_test {

using namespace yuvblit;

namespace {

// The key as the surface receives it: RGB16 its low 16 bits as they
// stand, RGB32 and RGB24 red from the low byte and blue from the third.
void store_key(Ptr d, uint32_t key, ModelPacking packing) {
  if (packing == ModelPacking::kRgb16) {
    d.put(0, uint8_t(key)), d.put(1, uint8_t(key >> 8));
    return;
  }
  model_store_rgb(d, uint8_t(key), uint8_t(key >> 8), uint8_t(key >> 16), packing, 0);
}

// Rows of picturePitch pixels lying back to back in every plane, steps of
// 16 pixels while more than 16 remain; the surface moves on by dstPitch
// less the row's bytes.
void sub_to_rgb(ModelMix& m, ModelPacking packing, bool adjusts) {
  if (packing == ModelPacking::kRgb16 && m.adjust.rgb16Layout > 3) return;
  const ModelAdjust a(m.adjust);
  const int bpp = static_cast<int>(packing);
  Ptr alpha = m.subAlpha, y = m.subY, u = m.subU, v = m.subV, d = m.dst;
  uint32_t rows = uint32_t(m.height);
  do {
    uint32_t columns = uint32_t(m.picturePitch);
    do {
      for (int k = 0; k < 8; ++k) {
        const ChromaTerms terms = adjusts ? chroma_terms(a.U(u.get(k)), a.V(v.get(k)))
                                          : chroma_terms(u.get(k), v.get(k));
        for (int px = 2 * k; px < 2 * k + 2; ++px) {
          const uint8_t luma = adjusts ? a.Y(y.get(px)) : y.get(px);
          const Rgb colour = yuv_to_rgb(luma, terms);
          const Ptr at = d + bpp * px;
          const int8_t weight = int8_t(alpha.get(px));
          if (weight == 0) {
            store_key(at, m.colorKey, packing);
          } else if (weight < 0) {
            model_store_rgb(at, 0, 0, 0, packing, 0);
          } else {
            model_store_rgb(at, colour.r, colour.g, colour.b, packing, 0);  // 5-6-5 always
          }
        }
      }
      alpha += 16, y += 16, u += 8, v += 8, d += 16 * bpp;
    } while (more(columns, 16));
    d += wrap32(int64_t{m.dstPitch} - int64_t{bpp} * m.picturePitch);
  } while (more(rows, 1));
}

}  // namespace

void model_load_subpicture_yuy2_rgb32(ModelMix& m) { sub_to_rgb(m, ModelPacking::kRgb32, false); }
void model_load_subpicture_yuy2_rgb32_ajust(ModelMix& m) {
  sub_to_rgb(m, ModelPacking::kRgb32, true);
}
void model_load_subpicture_yuy2_rgb24(ModelMix& m) { sub_to_rgb(m, ModelPacking::kRgb24, false); }
void model_load_subpicture_yuy2_rgb24_ajust(ModelMix& m) {
  sub_to_rgb(m, ModelPacking::kRgb24, true);
}
void model_load_subpicture_yuy2_rgb16(ModelMix& m) { sub_to_rgb(m, ModelPacking::kRgb16, false); }
void model_load_subpicture_yuy2_rgb16_ajust(ModelMix& m) {
  sub_to_rgb(m, ModelPacking::kRgb16, true);
}

}  // namespace yuvblit_test
