// Byte-by-byte model of the adjusted vertical doubling onto RGB surfaces.
#pragma once

#include "harness/a9.h"
#include "model/planar_to_rgb_model.h"

namespace yuvblit_test {

void model_rgb_doubling(const A9Ptrs&, const A9Call&, const tag_ajust_contrast_info&,
                        ModelPacking packing);

}  // namespace yuvblit_test
