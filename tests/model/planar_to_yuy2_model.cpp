#include "model/planar_to_yuy2_model.h"

#include "frame/walk.h"
#include "model/adjust_model.h"

namespace yuvblit_test {

using yuvblit::more;

void model_loadimage_yuy2(const A9Ptrs& p, const A9Call& c,
                          const tag_ajust_contrast_info&) {
  Ptr y = p.srcY, u = p.srcU, v = p.srcV, d = p.dst;
  uint32_t rows = c.height;
  do {
    uint32_t cols = c.width;
    do {
      for (int row = 0; row < 2; ++row) {
        const Ptr ly = y + row * c.srcPitch;
        const Ptr ld = d + row * c.dstPitch;
        for (int i = 0; i < 8; ++i) {
          const int at = 4 * i;
          // The second row leaves bytes 0..7 of the group as they were.
          auto put = [&](int k, uint8_t b) {
            if (row == 0 || at + k >= 8) ld.put(at + k, b);
          };
          put(0, ly.get(2 * i));
          put(1, u.get(i));
          put(2, ly.get(2 * i + 1));
          put(3, v.get(i));
        }
      }
      y += 16, u += 8, v += 8, d += 32;
    } while (more(cols, 16));
    y += 2 * c.srcPitch - c.width;
    u += (c.srcPitch - c.width) >> 1;
    v += (c.srcPitch - c.width) >> 1;
    d += 2 * (c.dstPitch - c.width);
  } while (more(rows, 2));
}

namespace {

// The row-by-row walk shared by the three adjusting kernels; `group` writes
// one group and returns the destination bytes it wrote.
template <class Group>
void model_rows_of_pairs(const A9Ptrs& p, const A9Call& c,
                         int32_t dstWidthBytes, Group group) {
  Ptr y = p.srcY, u = p.srcU, v = p.srcV, d = p.dst;
  uint32_t rows = c.height;
  auto row = [&] {
    uint32_t cols = c.width;
    do {
      d += group(y, u, v, d);
      y += 16, u += 8, v += 8;
    } while (more(cols, 16));
  };
  do {
    row();
    y += c.srcPitch - c.width;
    d += c.dstPitch - dstWidthBytes;
    u -= c.width >> 1;
    v -= c.width >> 1;
    row();
    y += c.srcPitch - c.width;
    u += (c.srcPitch - c.width) >> 1;
    v += (c.srcPitch - c.width) >> 1;
    d += c.dstPitch - dstWidthBytes;
  } while (more(rows, 2));
}

}  // namespace

void model_loadimage_yuy2_ajust(const A9Ptrs& p, const A9Call& c,
                                const tag_ajust_contrast_info& r) {
  if (c.height <= 8 || (c.height & 1)) return;
  const ModelAdjust a(r);
  model_rows_of_pairs(p, c, 2 * c.width, [&](Ptr y, Ptr u, Ptr v, Ptr d) {
    for (int i = 0; i < 8; ++i) {
      d.put(4 * i + 0, a.Y(y.get(2 * i)));
      d.put(4 * i + 1, a.U(u.get(i)));
      d.put(4 * i + 2, a.Y(y.get(2 * i + 1)));
      d.put(4 * i + 3, a.V(v.get(i)));
    }
    return 32;
  });
}

void model_loadimage_yuy2_mono_ajust(const A9Ptrs& p, const A9Call& c,
                                     const tag_ajust_contrast_info& r) {
  const ModelAdjust a(r);
  model_rows_of_pairs(p, c, 2 * c.width, [&](Ptr y, Ptr, Ptr, Ptr d) {
    for (int i = 0; i < 16; ++i) {
      d.put(2 * i, a.Y(y.get(i)));
      d.put(2 * i + 1, 0x80);
    }
    return 32;
  });
}

void model_loadimage_half_yuy2_ajust(const A9Ptrs& p, const A9Call& c,
                                     const tag_ajust_contrast_info& r) {
  const ModelAdjust a(r);
  auto avg = [](Ptr s, int i) { return uint8_t((s.get(2 * i) + s.get(2 * i + 1) + 1) >> 1); };
  model_rows_of_pairs(p, c, c.width, [&](Ptr y, Ptr u, Ptr v, Ptr d) {
    for (int j = 0; j < 4; ++j) {
      d.put(4 * j + 0, a.Y(avg(y, 2 * j)));
      d.put(4 * j + 1, a.U(avg(u, j)));
      d.put(4 * j + 2, a.Y(avg(y, 2 * j + 1)));
      d.put(4 * j + 3, a.V(avg(v, j)));
    }
    return 16;
  });
}

}  // namespace yuvblit_test
