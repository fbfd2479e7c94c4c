// Byte-by-byte models of the colour-key fills and the mask replacement.
#pragma once

#include <cstdint>

#include "harness/region.h"

namespace yuvblit_test {

enum class KeyFill { kRgb32 = 4, kRgb24 = 3, kRgb16 = 2 };

// The 24 bytes a fill repeats along every row, in memory order.
struct KeyPatternBytes {
  uint8_t bytes[24];
};
KeyPatternBytes model_key_pattern(uint32_t key, KeyFill fill);

void model_load_color_key(Ptr dst, uint32_t key, int32_t width, int32_t height,
                          int32_t dstPitch, KeyFill fill);

void model_replace_mask(Ptr dst, Ptr mask, uint32_t maskValue, uint32_t key, int32_t width,
                        int32_t pitch, int32_t height);

}  // namespace yuvblit_test
