// Byte-by-byte models of the kernels that show an AYUY2 subpicture by
// itself on an RGB surface. The record is left as it was.
#pragma once

#include "harness/mix.h"

namespace yuvblit_test {

void model_load_subpicture_yuy2_rgb32(ModelMix& m);
void model_load_subpicture_yuy2_rgb32_ajust(ModelMix& m);
void model_load_subpicture_yuy2_rgb24(ModelMix& m);
void model_load_subpicture_yuy2_rgb24_ajust(ModelMix& m);
void model_load_subpicture_yuy2_rgb16(ModelMix& m);
void model_load_subpicture_yuy2_rgb16_ajust(ModelMix& m);

}  // namespace yuvblit_test
