// Byte-by-byte models of the kernels that mix an AYUY2 subpicture into a
// planar picture on its way onto a YUY2 or RGB surface. Each writes the
// surface through the record's Ptrs and leaves the record as the kernel
// does.
#pragma once

#include "harness/mix.h"

namespace yuvblit_test {

void model_mix_ayuy2_yuy2_p_ajust(ModelMix& m);
void model_mix_ayuy2_half_yuy2_p_ajust(ModelMix& m);
void model_mix_ayuy2_yuy2_i_ajust(ModelMix& m);
void model_mix_ayuy2_rgb32_p_ajust(ModelMix& m);
void model_mix_ayuy2_rgb24_p_ajust(ModelMix& m);
void model_mix_ayuy2_rgb16_p_ajust(ModelMix& m);
// One field, doubled line by line; the record is left as it was.
void model_mix_ayuy2_rgb32_i_ajust(ModelMix& m);
void model_mix_ayuy2_rgb24_i_ajust(ModelMix& m);
void model_mix_ayuy2_rgb16_i_ajust(ModelMix& m);

}  // namespace yuvblit_test
