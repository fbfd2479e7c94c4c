#include "model/plane_doubling_model.h"

#include <algorithm>
#include <sstream>
#include <vector>

#include "frame/walk.h"
#include "model/adjust_model.h"

namespace yuvblit_test {

using yuvblit::average;
using yuvblit::more;
using yuvblit::SampleAdjust;

namespace {

// Luma gain for every plane; plane 1, 2, 3 add the luma, U, V offset, any
// other value none.
SampleAdjust plane_adjust(const tag_ajust_contrast_info& record, int32_t plane) {
  const ModelAdjust m(record);
  const int16_t offset = plane == 1 ? m.luma.offset
                         : plane == 2 ? m.u.offset
                         : plane == 3 ? m.v.offset
                                      : 0;
  return {m.luma.gain, offset};
}

// Negative widths count as 0.
int32_t model_width(int32_t width) { return width < 0 ? 0 : width; }

// Row passes: a counter from height - 1, one pass at least, and one pass
// where it would start below zero.
uint32_t row_counter(int32_t height) { return height < 1 ? 0 : uint32_t(height - 1); }

// 8 samples of a row doubled: s[i] and avg(s[i], s[i + 1]); the right
// neighbour of s[7] is `last`.
void double8(Ptr s, uint8_t last, uint8_t out[16]) {
  for (int i = 0; i < 8; ++i) {
    const uint8_t right = i < 7 ? s.get(i + 1) : last;
    out[2 * i] = s.get(i);
    out[2 * i + 1] = average(s.get(i), right);
  }
}

// Groups of 8 source bytes doubled and adjusted, `groups` of them.
void put_doubled_adjusted(Ptr s, Ptr d, uint32_t groups, SampleAdjust a) {
  for (uint32_t g = 0; g < groups; ++g) {
    uint8_t h[16];
    double8(s + 8 * g, s.get(8 * g + 8), h);
    for (int k = 0; k < 16; ++k) d.put(16 * g + k, yuvblit::adjust_sample(h[k], a));
  }
}

// How many groups of n a do-while over `count` runs.
uint32_t groups_of(int32_t count, uint32_t n) {
  uint32_t c = count, groups = 0;
  do ++groups; while (more(c, n));
  return groups;
}

}  // namespace

std::string describe(const PlaneCall& c) {
  std::ostringstream s;
  s << "width " << c.width << ", height " << c.height << ", srcPitch " << c.srcPitch
    << ", dstPitch " << c.dstPitch << ", plane " << c.plane;
  return s.str();
}

void model_strech_pic_1X2_adjust(Ptr src, Ptr dst, const PlaneCall& c,
                                 const tag_ajust_contrast_info& record) {
  const SampleAdjust a = plane_adjust(record, c.plane);
  auto adj = [&](uint8_t x) { return yuvblit::adjust_sample(x, a); };
  const int32_t width = model_width(c.width);
  const int64_t shortBytes = 8 * int64_t{groups_of(width, 8)};

  for (int64_t i = 0; i < shortBytes; ++i) dst.put(i, adj(src.get(i)));

  // Steps of 16 bytes; the last of a width that is no multiple of 16 ends
  // at the width.
  std::vector<int64_t> steps;
  for (int64_t x = 0; x + 16 <= width; x += 16) steps.push_back(x);
  if (steps.empty()) steps.push_back(0);
  else if (width % 16 != 0) steps.push_back(width - 16);

  uint32_t rows = row_counter(c.height);
  int64_t r = 0;
  do {
    const Ptr a0 = src + r * c.srcPitch, a1 = a0 + c.srcPitch;
    const Ptr d0 = dst + (2 * r + 1) * c.dstPitch, d1 = d0 + c.dstPitch;
    for (int64_t x : steps) {
      for (int i = 0; i < 16; ++i) d0.put(x + i, adj(a0.get(x + i)));
      for (int i = 0; i < 16; ++i) d1.put(x + i, adj(average(a0.get(x + i), a1.get(x + i))));
    }
    ++r;
  } while (more(rows, 1));

  // Row r - 1 (height - 2) over line 2r (2 * height - 2), and again right
  // after those bytes.
  const Ptr last = src + (r - 1) * c.srcPitch;
  const Ptr d = dst + 2 * r * c.dstPitch;
  for (int64_t i = 0; i < shortBytes; ++i) d.put(i, adj(last.get(i)));
  for (int64_t i = 0; i < shortBytes; ++i) d.put(shortBytes + i, adj(last.get(i)));
}

void model_strech_pic_2X2(Ptr src, Ptr dst, const PlaneCall& c) {
  const int32_t width = model_width(c.width);
  const int32_t ordinary = std::max(width / 8 - 1, 1);
  for (int32_t strip = 0; strip <= ordinary; ++strip) {
    const bool last = strip == ordinary;
    auto doubled = [&](int64_t row, uint8_t out[16]) {
      const Ptr s = src + row * c.srcPitch + 8 * strip;
      double8(s, last ? s.get(7) : s.get(8), out);
    };
    auto put = [&](int64_t line, const uint8_t bytes[16]) {
      const Ptr d = dst + line * c.dstPitch + 16 * strip;
      for (int k = 0; k < 16; ++k) d.put(k, bytes[k]);
    };
    uint8_t above[16], below[16], between[16];
    doubled(0, above);
    put(0, above);
    uint32_t rows = row_counter(c.height);
    int64_t r = 0;
    do {
      doubled(r + 1, below);
      for (int k = 0; k < 16; ++k) between[k] = average(above[k], below[k]);
      put(2 * r + 1, between);
      put(2 * r + 2, below);
      std::copy(below, below + 16, above);
      ++r;
    } while (more(rows, 1));
    // The last row once more: on the next line in the last strip, a line
    // further down in the others.
    put(last ? 2 * r + 1 : 2 * r + 2, above);
  }
}

void model_strech_pic_2X2_adjust(Ptr src, Ptr dst, const PlaneCall& c,
                                 const tag_ajust_contrast_info& record) {
  const SampleAdjust a = plane_adjust(record, c.plane);
  auto adj = [&](uint8_t x) { return yuvblit::adjust_sample(x, a); };
  const int32_t width = model_width(c.width);
  const uint32_t shortGroups = groups_of(width, 8);

  put_doubled_adjusted(src, dst, shortGroups, a);

  const int32_t whole = width / 16 * 16, rest = width % 16;
  Ptr s = src, d = dst + c.dstPitch;
  uint32_t rows = row_counter(c.height);
  do {
    const Ptr lower = d + c.dstPitch;
    for (int32_t g = 0; g < whole / 8; ++g) {
      uint8_t ha[16], hb[16];
      double8(s + 8 * g, s.get(8 * g + 8), ha);
      double8(s + c.srcPitch + 8 * g, s.get(c.srcPitch + 8 * g + 8), hb);
      for (int k = 0; k < 16; ++k) d.put(16 * g + k, adj(ha[k]));
      for (int k = 0; k < 16; ++k) lower.put(16 * g + k, adj(average(ha[k], hb[k])));
    }
    int64_t end = 2 * whole;
    if (rest != 0) {
      // The row's last 16 bytes, not doubled.
      const int64_t from = width - 16, to = 2 * whole - 16 + rest;
      for (int k = 0; k < 16; ++k) d.put(to + k, adj(s.get(from + k)));
      for (int k = 0; k < 16; ++k)
        lower.put(to + k, adj(average(s.get(from + k), s.get(c.srcPitch + from + k))));
      end = to + 16;
    }
    s += width;
    d += end + 2 * int64_t{c.dstPitch} - 2 * width;
  } while (more(rows, 1));

  s -= c.srcPitch;
  d -= c.dstPitch;
  put_doubled_adjusted(s, d, shortGroups, a);
  put_doubled_adjusted(s + 8 * shortGroups - c.srcPitch, d + 16 * shortGroups, shortGroups, a);
}

namespace {

// The three plane calls of the YV12 kernels.
template <class PlaneModel>
void model_yv12(PlaneModel plane, const A9Ptrs& p, const A9Call& c) {
  const int32_t lumaBytes = yuvblit::wrap32(2 * int64_t{c.height} * c.dstPitch);
  const Ptr v = p.dst + lumaBytes;
  const Ptr u = v + (lumaBytes >> 2);
  plane(p.srcY, p.dst, PlaneCall{c.width, c.height, c.srcPitch, c.dstPitch, 1});
  const PlaneCall chroma{c.width >> 1, c.height >> 1, c.srcPitch >> 1, c.dstPitch >> 1, 2};
  plane(p.srcV, v, chroma);
  plane(p.srcU, u, PlaneCall{chroma.width, chroma.height, chroma.srcPitch, chroma.dstPitch, 3});
}

}  // namespace

void model_strech_picture_1X2_yv12_ajust(const A9Ptrs& p, const A9Call& c,
                                         const tag_ajust_contrast_info& record) {
  model_yv12([&](Ptr s, Ptr d, const PlaneCall& pc) { model_strech_pic_1X2_adjust(s, d, pc, record); },
             p, c);
}

void model_strech_picture_2X2_yv12_ajust(const A9Ptrs& p, const A9Call& c,
                                         const tag_ajust_contrast_info& record) {
  model_yv12([&](Ptr s, Ptr d, const PlaneCall& pc) { model_strech_pic_2X2_adjust(s, d, pc, record); },
             p, c);
}

}  // namespace yuvblit_test
