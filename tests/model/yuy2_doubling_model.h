// Byte-by-byte models of the planar-to-YUY2 doubling kernels.
#pragma once

#include "harness/a9.h"

namespace yuvblit_test {

void model_strech_picture_1X2_yuy2(const A9Ptrs&, const A9Call&,
                                   const tag_ajust_contrast_info&);
void model_strech_picture_1X2_yuy2_ajust(const A9Ptrs&, const A9Call&,
                                         const tag_ajust_contrast_info&);
void model_strech_picture_2X2_yuy2(const A9Ptrs&, const A9Call&,
                                   const tag_ajust_contrast_info&);
void model_strech_picture_2X2_yuy2_ajust(const A9Ptrs&, const A9Call&,
                                         const tag_ajust_contrast_info&);

}  // namespace yuvblit_test
