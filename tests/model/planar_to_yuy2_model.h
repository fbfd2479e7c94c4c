// Byte-by-byte models of the planar-to-YUY2 kernels.
#pragma once

#include "harness/a9.h"

namespace yuvblit_test {

void model_loadimage_yuy2(const A9Ptrs&, const A9Call&, const tag_ajust_contrast_info&);
void model_loadimage_yuy2_ajust(const A9Ptrs&, const A9Call&, const tag_ajust_contrast_info&);
void model_loadimage_yuy2_mono_ajust(const A9Ptrs&, const A9Call&, const tag_ajust_contrast_info&);
void model_loadimage_half_yuy2_ajust(const A9Ptrs&, const A9Call&, const tag_ajust_contrast_info&);

}  // namespace yuvblit_test
