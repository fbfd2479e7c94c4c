#include "model/rgb_doubling_model.h"

#include <array>

#include "adjust/color.h"
#include "frame/walk.h"
#include "model/adjust_model.h"

namespace yuvblit_test {

using namespace yuvblit;

namespace {

// One strip's worth of a row, adjusted as it was read.
using LumaRow = std::array<uint8_t, 16>;
struct ChromaRow {
  std::array<uint8_t, 8> u, v;
};

template <size_t N>
std::array<uint8_t, N> averaged(const std::array<uint8_t, N>& a, const std::array<uint8_t, N>& b) {
  std::array<uint8_t, N> out;
  for (size_t i = 0; i < N; ++i) out[i] = average(a[i], b[i]);
  return out;
}

ChromaRow averaged(const ChromaRow& a, const ChromaRow& b) {
  return {averaged(a.u, b.u), averaged(a.v, b.v)};
}

}  // namespace

void model_rgb_doubling(const A9Ptrs& p, const A9Call& c, const tag_ajust_contrast_info& r,
                        ModelPacking packing) {
  if (c.height < 12) return;
  if (packing == ModelPacking::kRgb16 && r.rgb16Layout > 3) return;
  const ModelAdjust a(r);
  const int bpp = static_cast<int>(packing);
  const int64_t chromaPitch = c.srcPitch >> 1;
  Ptr y = p.srcY, u = p.srcU, v = p.srcV, d = p.dst;

  // Every row is read once, where the pointers stand, and they move on.
  auto read_luma = [&] {
    LumaRow row;
    for (int i = 0; i < 16; ++i) row[i] = a.Y(y.get(i));
    y += c.srcPitch;
    return row;
  };
  auto read_chroma = [&] {
    ChromaRow row;
    for (int i = 0; i < 8; ++i) row.u[i] = a.U(u.get(i)), row.v[i] = a.V(v.get(i));
    u += chromaPitch;
    v += chromaPitch;
    return row;
  };
  auto line = [&](const LumaRow& luma, const ChromaRow& chroma) {
    for (int px = 0; px < 16; ++px) {
      const Rgb rgb = yuv_to_rgb(luma[px], chroma_terms(chroma.u[px / 2], chroma.v[px / 2]));
      model_store_rgb(d + bpp * px, rgb.r, rgb.g, rgb.b, packing, r.rgb16Layout);
    }
    d += c.dstPitch;
  };

  uint32_t strips = c.width;
  do {
    LumaRow y0 = read_luma();
    ChromaRow c0 = read_chroma();
    uint32_t rows = c.height - 2;
    do {
      const LumaRow y1 = read_luma(), y2 = read_luma();
      const ChromaRow c1 = read_chroma();
      const ChromaRow between = averaged(c0, c1);
      line(y0, c0);
      line(averaged(y0, y1), c0);
      line(y1, between);
      line(averaged(y1, y2), between);
      y0 = y2;
      c0 = c1;
    } while (more(rows, 2));
    const LumaRow y1 = read_luma();
    line(y0, c0);
    line(averaged(y0, y1), c0);
    line(y1, c0);
    line(y1, c0);

    const int64_t pictureBytes = int64_t{c.height} * c.srcPitch;
    y -= pictureBytes;
    u -= pictureBytes >> 2;
    v -= pictureBytes >> 2;
    d -= 2 * int64_t{c.height} * c.dstPitch;
    y += 16, u += 8, v += 8, d += 16 * bpp;
  } while (more(strips, 16));
}

}  // namespace yuvblit_test
