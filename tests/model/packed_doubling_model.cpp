#include "model/packed_doubling_model.h"

#include <vector>

namespace yuvblit_test {
namespace {

uint8_t average(uint8_t a, uint8_t b) { return static_cast<uint8_t>((a + b + 1) >> 1); }

// Source row j of one strip doubled across: 64 output bytes.
std::vector<uint8_t> doubled_row(Ptr row, bool lastStrip, const std::optional<ModelAdjust>& a) {
  uint8_t y[17], u[9], v[9];
  for (int i = 0; i < 16; ++i) y[i] = row.get(2 * i);
  for (int k = 0; k < 8; ++k) u[k] = row.get(4 * k + 1), v[k] = row.get(4 * k + 3);
  // Right neighbours: the next strip's first pixel pair, or the last samples again.
  y[16] = lastStrip ? y[15] : row.get(32);
  u[8] = lastStrip ? u[7] : row.get(33);
  v[8] = lastStrip ? v[7] : row.get(35);
  if (a) {
    for (uint8_t& s : y) s = a->Y(s);
    for (int k = 0; k < 8; ++k) u[k] = a->U(u[k]), v[k] = a->V(v[k]);
    if (lastStrip) {
      u[8] = a->U(u[8]), v[8] = a->V(v[8]);
    } else {
      // From the next strip: the offsets exchanged.
      u[8] = yuvblit::adjust_sample(u[8], {a->u.gain, a->v.offset});
      v[8] = yuvblit::adjust_sample(v[8], {a->v.gain, a->u.offset});
    }
  }
  uint8_t ly[32], lu[16], lv[16];
  for (int i = 0; i < 16; ++i) ly[2 * i] = y[i], ly[2 * i + 1] = average(y[i], y[i + 1]);
  for (int k = 0; k < 8; ++k) {
    lu[2 * k] = u[k], lu[2 * k + 1] = average(u[k], u[k + 1]);
    lv[2 * k] = v[k], lv[2 * k + 1] = average(v[k], v[k + 1]);
  }
  std::vector<uint8_t> out(64);
  for (int p = 0; p < 16; ++p) {
    out[4 * p] = ly[2 * p];
    out[4 * p + 1] = lu[p];
    out[4 * p + 2] = ly[2 * p + 1];
    out[4 * p + 3] = lv[p];
  }
  for (int i = 0; i < 8; ++i) out[8 + i] = ly[i];  // bytes 8-15: luma of pixels 0-7
  return out;
}

}  // namespace

void model_packed_doubling(Ptr src, Ptr dst, int32_t width, int32_t height, int32_t dstPitch,
                           const std::optional<ModelAdjust>& adjust) {
  if (height < (adjust ? 8 : 16)) return;
  if (width < 64 || width % 32 != 0) return;  // the strip counter would never reach 0
  const int strips = width / 32;
  const int64_t rows = height + (height & 1);
  const int64_t extra = rows - height;
  for (int s = 0; s < strips; ++s) {
    const Ptr top = src + s * (32 + extra * width);
    const Ptr out = dst + s * (64 + 2 * extra * int64_t{dstPitch});
    const bool last = s + 1 == strips;
    for (int64_t j = 0; j < rows; ++j) {
      const std::vector<uint8_t> h = doubled_row(top + j * width, last, adjust);
      const std::vector<uint8_t> next =
          j + 1 < rows ? doubled_row(top + (j + 1) * width, last, adjust) : h;
      for (int b = 0; b < 64; ++b) (out + 2 * j * dstPitch).put(b, h[b]);
      for (int b = 0; b < 64; ++b) (out + (2 * j + 1) * dstPitch).put(b, average(h[b], next[b]));
    }
  }
}

}  // namespace yuvblit_test
