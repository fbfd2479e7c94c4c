#include "model/packed_yuy2_model.h"

#include <algorithm>

#include "adjust/color.h"
#include "frame/walk.h"
#include "model/adjust_model.h"

namespace yuvblit_test {

using yuvblit::more;

namespace {

enum class Out { kYuy2, kRgb16, kRgb24, kRgb32 };

int bytes_per_pixel(Out out) { return out == Out::kRgb32 ? 4 : out == Out::kRgb24 ? 3 : 2; }

struct Kernel {
  Out out;
  const ModelAdjust* adjust;  // null: no adjustment
  yuvblit::Rgb16Layout layout;

  uint8_t Y(uint8_t x) const { return adjust ? adjust->Y(x) : x; }
  uint8_t U(uint8_t x) const { return adjust ? adjust->U(x) : x; }
  uint8_t V(uint8_t x) const { return adjust ? adjust->V(x) : x; }

  void pixel(Ptr d, int k, uint8_t y, const yuvblit::ChromaTerms& t) const {
    const yuvblit::Rgb c = yuvblit::yuv_to_rgb(y, t);
    switch (out) {
      case Out::kRgb32:
        d.put(4 * k, c.b), d.put(4 * k + 1, c.g), d.put(4 * k + 2, c.r), d.put(4 * k + 3, 0);
        break;
      case Out::kRgb24:
        d.put(3 * k, c.b), d.put(3 * k + 1, c.g), d.put(3 * k + 2, c.r);
        break;
      default: {
        const uint16_t w = yuvblit::pack_rgb16(c, layout);
        d.put(2 * k, uint8_t(w)), d.put(2 * k + 1, uint8_t(w >> 8));
      }
    }
  }

  // One group, first row then second; both take the first row's chroma.
  // The second row's group is loaded whole, its chroma bytes unused.
  void group(Ptr s0, Ptr s1, Ptr d0, Ptr d1) const {
    const int pairs = out == Out::kYuy2 ? 4 : 8;
    for (int row = 0; row < 2; ++row) {
      const Ptr s = row ? s1 : s0, d = row ? d1 : d0;
      for (int i = 0; i < pairs; ++i) {
        if (row) s1.get(4 * i + 1), s1.get(4 * i + 3);
        const uint8_t u = U(s0.get(4 * i + 1)), v = V(s0.get(4 * i + 3));
        const uint8_t y0 = Y(s.get(4 * i)), y1 = Y(s.get(4 * i + 2));
        if (out == Out::kYuy2) {
          d.put(4 * i, y0), d.put(4 * i + 1, u), d.put(4 * i + 2, y1), d.put(4 * i + 3, v);
        } else {
          const yuvblit::ChromaTerms t = yuvblit::chroma_terms(u, v);
          pixel(d, 2 * i, y0, t);
          pixel(d, 2 * i + 1, y1, t);
        }
      }
    }
  }
};

// `endTestAfterCorrection`: LoadYUY2_RGB32_adjust's group loop.
void model_packed(const A9Ptrs& p, const A9Call& c, const tag_ajust_contrast_info& r, Out out,
                  bool adjusts, bool endTestAfterCorrection = false) {
  const ModelAdjust a(r);
  Kernel k{out, adjusts ? &a : nullptr, {}};
  if (out == Out::kRgb16) {
    if (uint32_t(r.rgb16Layout) > 3) return;
    k.layout = yuvblit::kRgb16Layouts[r.rgb16Layout];
  }
  const int bpp = bytes_per_pixel(out);
  const uint32_t rb = 2u * uint32_t(c.width);
  const uint32_t gb = out == Out::kYuy2 ? 16 : 32;
  const int64_t dstGroup = int64_t{gb} / 2 * bpp;
  const uint32_t corr = rb / gb * gb - rb + gb;
  const int64_t dstCorr = out == Out::kRgb24 ? corr + corr / 2
                          : out == Out::kRgb32 ? 2 * corr : corr;
  Ptr s = p.srcY, d = p.dst;
  uint32_t rows = uint32_t(c.height);
  do {
    if (endTestAfterCorrection) {
      // Would never end unless the row is whole groups; bounded at as many
      // groups as LoadYUY2_RGB32 converts per row, then return.
      const int64_t bound = std::max<int64_t>(1, (2 * int64_t{c.width} + 31) / 32);
      for (int64_t done = 1;; ++done) {
        k.group(s, s + 2 * c.srcPitch, d, d + c.dstPitch);
        s += gb, d += dstGroup;
        if (corr == gb) break;
        s -= corr, d -= dstCorr;
        if (done == bound) return;
      }
    } else {
      uint32_t rest = rb;
      do {
        k.group(s, s + 2 * c.srcPitch, d, d + c.dstPitch);
        s += gb, d += dstGroup;
      } while (more(rest, gb));
      if (corr != gb) s -= corr, d -= dstCorr;
    }
    s += 4 * int64_t{c.srcPitch} - rb;
    d += 2 * int64_t{c.dstPitch} - int64_t{bpp} * c.width;
  } while (more(rows, 2));
}

}  // namespace

#define YUVBLIT_PACKED_MODEL(name, ...)                                                 \
  void model_##name(const A9Ptrs& p, const A9Call& c, const tag_ajust_contrast_info& r) { \
    model_packed(p, c, r, __VA_ARGS__);                                                 \
  }

YUVBLIT_PACKED_MODEL(LoadYUY2_YUY2, Out::kYuy2, false)
YUVBLIT_PACKED_MODEL(LoadYUY2_YUY2_adjust, Out::kYuy2, true)
YUVBLIT_PACKED_MODEL(LoadYUY2_RGB16, Out::kRgb16, false)
YUVBLIT_PACKED_MODEL(LoadYUY2_RGB16_adjust, Out::kRgb16, true)
YUVBLIT_PACKED_MODEL(LoadYUY2_RGB24, Out::kRgb24, false)
YUVBLIT_PACKED_MODEL(LoadYUY2_RGB24_adjust, Out::kRgb24, true)
YUVBLIT_PACKED_MODEL(LoadYUY2_RGB32, Out::kRgb32, false)
YUVBLIT_PACKED_MODEL(LoadYUY2_RGB32_adjust, Out::kRgb32, true, true)

}  // namespace yuvblit_test
