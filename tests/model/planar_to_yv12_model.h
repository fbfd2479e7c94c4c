// Byte-by-byte models of the planar-to-YV12 kernels.
#pragma once

#include "harness/a9.h"

namespace yuvblit_test {

void model_loadimage_yv12(const A9Ptrs&, const A9Call&, const tag_ajust_contrast_info&);
void model_loadimage_yv12_ajust(const A9Ptrs&, const A9Call&, const tag_ajust_contrast_info&);
void model_loadimage_half_yv12_ajust(const A9Ptrs&, const A9Call&,
                                     const tag_ajust_contrast_info&);

}  // namespace yuvblit_test
