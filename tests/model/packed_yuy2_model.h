// Byte-by-byte models of the packed YUY2 loaders.
#pragma once

#include "harness/a9.h"

namespace yuvblit_test {

void model_LoadYUY2_YUY2(const A9Ptrs&, const A9Call&, const tag_ajust_contrast_info&);
void model_LoadYUY2_YUY2_adjust(const A9Ptrs&, const A9Call&, const tag_ajust_contrast_info&);
void model_LoadYUY2_RGB16(const A9Ptrs&, const A9Call&, const tag_ajust_contrast_info&);
void model_LoadYUY2_RGB16_adjust(const A9Ptrs&, const A9Call&, const tag_ajust_contrast_info&);
void model_LoadYUY2_RGB24(const A9Ptrs&, const A9Call&, const tag_ajust_contrast_info&);
void model_LoadYUY2_RGB24_adjust(const A9Ptrs&, const A9Call&, const tag_ajust_contrast_info&);
void model_LoadYUY2_RGB32(const A9Ptrs&, const A9Call&, const tag_ajust_contrast_info&);
void model_LoadYUY2_RGB32_adjust(const A9Ptrs&, const A9Call&, const tag_ajust_contrast_info&);

}  // namespace yuvblit_test
