#include "adjust/adjustment.h"

#include "yuvblit.h"

namespace yuvblit {

AdjustmentConstants g_adjustment;  // zero-initialised at load

Adjustment current_adjustment() {
  const AdjustmentConstants& c = g_adjustment;
  return Adjustment{{c.lumaGainLanes[0], c.lumaOffsetLanes[0]},
                    {c.chromaGainLanes[0], c.uOffsetLanes[0]},
                    {c.chromaGainLanes[0], c.vOffsetLanes[0]}};
}

}  // namespace yuvblit

extern "C" YUVBLIT_API void get_contrast_data(void* info) {
  using yuvblit::g_adjustment;
  const auto* in = static_cast<const tag_ajust_contrast_info*>(info);
  auto low16 = [](int32_t v) { return static_cast<uint16_t>(v); };
  auto sum16 = [&](int32_t a, int32_t b) {
    return static_cast<int16_t>(static_cast<uint16_t>(low16(a) + low16(b)));
  };
  const int16_t lumaGain = static_cast<int16_t>(low16(in->lumaGain));
  const int16_t chromaGain = static_cast<int16_t>(low16(in->chromaGain));
  const int16_t lumaOffset = sum16(in->lumaOffset, in->lumaOffsetExtra);
  const int16_t uOffset = sum16(in->uOffset, in->uOffsetExtra);
  const int16_t vOffset = sum16(in->vOffset, in->vOffsetExtra);
  // Eight rounds of five stores, one lane at a time.
  for (int lane = 0; lane < 8; ++lane) {
    g_adjustment.lumaGainLanes[lane] = lumaGain;
    g_adjustment.chromaGainLanes[lane] = chromaGain;
    g_adjustment.lumaOffsetLanes[lane] = lumaOffset;
    g_adjustment.uOffsetLanes[lane] = uOffset;
    g_adjustment.vOffsetLanes[lane] = vOffset;
  }
}
