#include "model/planar_to_rgb_model.h"

#include "adjust/color.h"
#include "frame/walk.h"
#include "model/adjust_model.h"

namespace yuvblit_test {

using namespace yuvblit;

void model_store_rgb(Ptr p, uint8_t r, uint8_t g, uint8_t b, ModelPacking packing,
                     uint32_t rgb16Layout) {
  switch (packing) {
    case ModelPacking::kRgb32:
      p.put(0, b), p.put(1, g), p.put(2, r), p.put(3, 0);
      break;
    case ModelPacking::kRgb24:
      p.put(0, b), p.put(1, g), p.put(2, r);
      break;
    case ModelPacking::kRgb16: {
      const uint16_t w = pack_rgb16(Rgb{r, g, b}, kRgb16Layouts[rgb16Layout]);
      p.put(0, uint8_t(w)), p.put(1, uint8_t(w >> 8));
      break;
    }
  }
}

void model_planar_to_rgb(const A9Ptrs& p, const A9Call& c, const tag_ajust_contrast_info& r,
                         ModelPacking packing, bool adjusts) {
  if (packing == ModelPacking::kRgb16 && r.rgb16Layout > 3) return;
  const ModelAdjust a(r);
  const int bpp = static_cast<int>(packing);
  Ptr y = p.srcY, u = p.srcU, v = p.srcV, d = p.dst;
  uint32_t rows = c.height;
  do {
    uint32_t cols = c.width;
    do {
      ChromaTerms terms[8];
      for (int i = 0; i < 8; ++i)
        terms[i] = adjusts ? chroma_terms(a.U(u.get(i)), a.V(v.get(i)))
                           : chroma_terms(u.get(i), v.get(i));
      for (int row = 0; row < 2; ++row) {
        for (int px = 0; px < 16; ++px) {
          const uint8_t luma = y.get(row * c.srcPitch + px);
          const Rgb rgb = yuv_to_rgb(adjusts ? a.Y(luma) : luma, terms[px / 2]);
          model_store_rgb(d + row * c.dstPitch + bpp * px, rgb.r, rgb.g, rgb.b, packing,
                          r.rgb16Layout);
        }
      }
      y += 16, u += 8, v += 8, d += 16 * bpp;
    } while (more(cols, 16));
    y += 2 * c.srcPitch - c.width;
    u += (c.srcPitch - c.width) >> 1;
    v += (c.srcPitch - c.width) >> 1;
    d += 2 * c.dstPitch - bpp * c.width;
  } while (more(rows, 2));
}

}  // namespace yuvblit_test
