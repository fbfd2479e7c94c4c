// The adjustment a kernel applies, derived straight from the host's record:
// low 16 bits of each field, offsets summed with their Extra field modulo
// 65536.
#pragma once

#include "adjust/adjustment.h"
#include "yuvblit.h"

namespace yuvblit_test {

struct ModelAdjust {
  yuvblit::SampleAdjust luma, u, v;

  explicit ModelAdjust(const tag_ajust_contrast_info& r) {
    auto low = [](int32_t x) { return static_cast<int16_t>(static_cast<uint16_t>(x)); };
    auto sum = [&](int32_t a, int32_t b) {
      return static_cast<int16_t>(static_cast<uint16_t>(
          static_cast<uint16_t>(a) + static_cast<uint16_t>(b)));
    };
    luma = {low(r.lumaGain), sum(r.lumaOffset, r.lumaOffsetExtra)};
    u = {low(r.chromaGain), sum(r.uOffset, r.uOffsetExtra)};
    v = {low(r.chromaGain), sum(r.vOffset, r.vOffsetExtra)};
  }
  uint8_t Y(uint8_t x) const { return yuvblit::adjust_sample(x, luma); }
  uint8_t U(uint8_t x) const { return yuvblit::adjust_sample(x, u); }
  uint8_t V(uint8_t x) const { return yuvblit::adjust_sample(x, v); }
};

}  // namespace yuvblit_test
