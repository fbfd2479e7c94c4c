// Byte-by-byte models of the kernels that mix an AYV12 subpicture into a
// planar picture onto a YV12 surface; each leaves the record as the kernel
// does (height, and for the field kernel width, halved).
#pragma once

#include "harness/mix.h"

namespace yuvblit_test {

void model_mix_ayv12_yv12_p(ModelMix& m);
void model_mix_ayv12_yv12_p_ajust(ModelMix& m);
void model_mix_ayv12_yv12_i(ModelMix& m);

}  // namespace yuvblit_test
