// Picture adjustment: the process-wide constants loaded by get_contrast_data
// and the per-sample arithmetic every adjusting kernel applies.
#pragma once

#include <cstdint>

namespace yuvblit {

// Five arrays of eight equal 16-bit lanes, zero until get_contrast_data runs.
struct AdjustmentConstants {
  alignas(16) int16_t lumaGainLanes[8];
  alignas(16) int16_t chromaGainLanes[8];
  alignas(16) int16_t lumaOffsetLanes[8];
  alignas(16) int16_t uOffsetLanes[8];
  alignas(16) int16_t vOffsetLanes[8];
};

extern AdjustmentConstants g_adjustment;

// Gain and offset for one kind of sample, and the 256 results of that
// adjustment as a table. Every adjustment a row operation applies has its
// table (current_adjustment's, or a TabledSampleAdjust's): CPUs with byte
// permutes always look samples up. Only the scalar arithmetic below takes
// one without.
struct SampleAdjust {
  int16_t gain;
  int16_t offset;
  const uint8_t* table = nullptr;
};

// The luma, U and V adjustments of every sample value, filled by
// get_contrast_data next to the constants: CPUs with byte permutes look
// samples up instead of computing them.
struct AdjustmentTables {
  alignas(64) uint8_t luma[256];
  alignas(64) uint8_t u[256];
  alignas(64) uint8_t v[256];
};

extern AdjustmentTables g_adjustment_tables;

// What a kernel reads once per call: luma, U and V adjustment.
struct Adjustment {
  SampleAdjust luma, u, v;
};

Adjustment current_adjustment();

inline int16_t sat16(int32_t v) {
  return static_cast<int16_t>(v < -32768 ? -32768 : v > 32767 ? 32767 : v);
}
inline uint8_t sat8(int32_t v) {
  return static_cast<uint8_t>(v < 0 ? 0 : v > 255 ? 255 : v);
}

// sample x gain (low 16 bits), +32 saturating, logical >> 6, + offset
// saturating, narrowed to 0..255.
inline uint8_t adjust_sample(uint8_t x, SampleAdjust a) {
  const uint16_t product = static_cast<uint16_t>(x * static_cast<uint16_t>(a.gain));
  const int16_t rounded = sat16(static_cast<int16_t>(product) + 32);
  const uint16_t scaled = static_cast<uint16_t>(rounded) >> 6;
  return sat8(sat16(static_cast<int16_t>(scaled) + a.offset));
}

// A gain and offset pair that get_contrast_data keeps no table for (an
// offset paired with another sample kind's gain), with its own table of
// the 256 results, so CPUs with byte permutes can look it up too.
class TabledSampleAdjust {
 public:
  explicit TabledSampleAdjust(SampleAdjust a) : adjust_{a.gain, a.offset, table_} {
    for (int x = 0; x < 256; ++x) table_[x] = adjust_sample(static_cast<uint8_t>(x), a);
  }
  TabledSampleAdjust(const TabledSampleAdjust&) = delete;
  TabledSampleAdjust& operator=(const TabledSampleAdjust&) = delete;

  SampleAdjust get() const { return adjust_; }

 private:
  alignas(64) uint8_t table_[256];
  SampleAdjust adjust_;
};

// Rounded average of two samples, (a + b + 1) >> 1.
inline uint8_t average(uint8_t a, uint8_t b) {
  return static_cast<uint8_t>((a + b + 1) >> 1);
}

}  // namespace yuvblit
