#include "adjust/adjustment.h"

#include "yuvblit.h"

namespace yuvblit {

AdjustmentConstants g_adjustment;         // zero-initialised at load
AdjustmentTables g_adjustment_tables;     // likewise: every sample adjusts to 0

Adjustment current_adjustment() {
  const AdjustmentConstants& c = g_adjustment;
  const AdjustmentTables& t = g_adjustment_tables;
  return Adjustment{{c.lumaGainLanes[0], c.lumaOffsetLanes[0], t.luma},
                    {c.chromaGainLanes[0], c.uOffsetLanes[0], t.u},
                    {c.chromaGainLanes[0], c.vOffsetLanes[0], t.v}};
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
  for (int x = 0; x < 256; ++x) {
    const uint8_t sample = static_cast<uint8_t>(x);
    yuvblit::g_adjustment_tables.luma[x] = yuvblit::adjust_sample(sample, {lumaGain, lumaOffset});
    yuvblit::g_adjustment_tables.u[x] = yuvblit::adjust_sample(sample, {chromaGain, uOffset});
    yuvblit::g_adjustment_tables.v[x] = yuvblit::adjust_sample(sample, {chromaGain, vOffset});
  }
}
