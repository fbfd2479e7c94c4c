// Byte-by-byte models of the planar-to-RGB kernels.
#pragma once

#include "harness/a9.h"

namespace yuvblit_test {

enum class ModelPacking { kRgb32 = 4, kRgb24 = 3, kRgb16 = 2 };

// Stores one converted pixel at p in the given packing (RGB16 layouts 0..3).
void model_store_rgb(Ptr p, uint8_t r, uint8_t g, uint8_t b, ModelPacking packing,
                     uint32_t rgb16Layout);

void model_planar_to_rgb(const A9Ptrs&, const A9Call&, const tag_ajust_contrast_info&,
                         ModelPacking packing, bool adjusts);

}  // namespace yuvblit_test
