#include "model/planar_to_yv12_model.h"

#include "frame/walk.h"
#include "model/adjust_model.h"

namespace yuvblit_test {

using yuvblit::more;
using yuvblit::SampleAdjust;

namespace {

// Unsigned halving of a 32-bit value, as an offset.
int64_t logical_half(int64_t v) { return static_cast<uint32_t>(v) >> 1; }

void model_ajust_plane(Ptr s, Ptr d, int32_t width, int32_t height,
                       int32_t dstPitch, SampleAdjust a) {
  uint32_t rows = height;
  do {
    uint32_t cols = width;
    do {
      for (int i = 0; i < 8; ++i) d.put(i, yuvblit::adjust_sample(s.get(i), a));
      s += 8;
      d += 8;
    } while (more(cols, 8));
    d += int64_t{dstPitch} - width;  // the source stays where the row ended
  } while (more(rows, 1));
}

// One group of the half kernel: 16 samples in, the odd ones adjusted out.
void model_odd_group(Ptr s, Ptr d, SampleAdjust a) {
  for (int i = 0; i < 8; ++i) d.put(i, yuvblit::adjust_sample(s.get(2 * i + 1), a));
}

void model_half_chroma(Ptr s, Ptr d, const A9Call& c, SampleAdjust a) {
  uint32_t rows = c.height >> 1;
  do {
    const int32_t w2 = c.width >> 1;
    const int32_t main = w2 / 16 * 16;
    const int32_t rest = w2 - main;
    uint32_t groups = main;
    do {
      model_odd_group(s, d, a);
      s += 16;
      d += 8;
    } while (more(groups, 16));
    if (rest != 0) {
      s = s - 16 + rest;
      d = d - 8 + (rest >> 1);
      model_odd_group(s, d, a);
      s += 16;
      d += 8;
    }
    s += (c.srcPitch >> 1) - (c.width >> 1);
    d += (c.dstPitch >> 1) - (c.width >> 2);
  } while (more(rows, 1));
}

}  // namespace

void model_loadimage_yv12(const A9Ptrs& p, const A9Call& c,
                          const tag_ajust_contrast_info&) {
  Ptr y = p.srcY, d = p.dst;
  Ptr vd = p.dst + (int64_t{c.height} * c.dstPitch - 1);
  Ptr ud = vd + ((int64_t{c.height} * c.dstPitch) >> 2);
  uint32_t rows = c.height;
  do {
    uint32_t cols = c.width;
    do {
      for (int i = 0; i < 16; ++i) d.put(i, y.get(i));
      for (int i = 0; i < 16; ++i) d.put(c.srcPitch + i, y.get(c.width + i));
      y += 16;
      d += 16;
    } while (more(cols, 16));
    y += 2 * int64_t{c.srcPitch} - c.width + 2 * int64_t{c.dstPitch} - c.width;
  } while (more(rows, 2));

  const int64_t cs = logical_half(c.srcPitch), cd = logical_half(c.dstPitch);
  Ptr u = p.srcU, v = p.srcV;
  rows = c.height;
  do {
    uint32_t cols = c.width >> 1;
    do {
      for (int i = 0; i < 8; ++i) ud.put(i, u.get(i));
      for (int i = 0; i < 8; ++i) ud.put(cd + i, u.get(cs + i));
      for (int i = 0; i < 8; ++i) vd.put(i, v.get(i));
      for (int i = 0; i < 8; ++i) vd.put(cd + i, v.get(cs + i));
      u += 8, v += 8, ud += 8, vd += 8;
    } while (more(cols, 8));
    u += logical_half(2 * int64_t{c.srcPitch} - c.width);
    v += logical_half(2 * int64_t{c.srcPitch} - c.width);
    ud += logical_half(2 * int64_t{c.dstPitch} - c.width);
    vd += logical_half(2 * int64_t{c.dstPitch} - c.width);
  } while (more(rows, 2));
}

void model_loadimage_yv12_ajust(const A9Ptrs& p, const A9Call& c,
                                const tag_ajust_contrast_info& r) {
  const ModelAdjust a(r);
  const int64_t R = r.lumaPlaneRows, below = r.rowsFromDestination;
  // >> on a negative int64 floors, as the arithmetic shift does.
  const Ptr vd = p.dst + below * c.dstPitch + (((R - below) * c.dstPitch) >> 2);
  const Ptr ud = vd + ((R * c.dstPitch) >> 2);
  model_ajust_plane(p.srcY, p.dst, c.width, c.height, c.dstPitch, a.luma);
  // Offsets swapped: the V plane gets U's, the U plane V's.
  model_ajust_plane(p.srcV, vd, c.width >> 1, c.height >> 1, c.dstPitch >> 1, a.u);
  model_ajust_plane(p.srcU, ud, c.width >> 1, c.height >> 1, c.dstPitch >> 1, a.v);
}

void model_loadimage_half_yv12_ajust(const A9Ptrs& p, const A9Call& c,
                                     const tag_ajust_contrast_info& r) {
  const ModelAdjust a(r);
  Ptr y = p.srcY, d = p.dst;
  uint32_t rows = c.height;
  do {
    uint32_t cols = c.width;
    do {
      model_odd_group(y, d, a.luma);
      y += 16;
      d += 8;
    } while (more(cols, 16));
    y += c.srcPitch - c.width;
    d += c.dstPitch - (c.width >> 1);
  } while (more(rows, 1));

  const Ptr vd = p.dst + int64_t{c.height} * c.dstPitch;
  const Ptr ud = vd + int64_t{c.dstPitch >> 1} * (c.height >> 1);
  model_half_chroma(p.srcV, vd, c, a.v);
  model_half_chroma(p.srcU, ud, c, a.u);
}

}  // namespace yuvblit_test
