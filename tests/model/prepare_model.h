// Byte-by-byte models of the subpicture preparation kernels: an RGB overlay
// bitmap into the Y, U and V planes of an AYUY2 subpicture, and the alpha
// plane into and out of such a bitmap.
#pragma once

#include "harness/mix.h"

namespace yuvblit_test {

// Widths below 8 are not modelled for the Convert kernels (they would run
// far past the planes), nor heights below 1.
void model_Convert_RGB32_To_AYUY2(ModelMix& m);
void model_Convert_RGB24_To_AYUY2(ModelMix& m);
void model_Convert_RGB16_565_To_AYUY2(ModelMix& m);

void model_Restore_RGB32_To_Alpha(ModelMix& m);
void model_Restore_RGB24_To_Alpha(ModelMix& m);
void model_Restore_RGB16_565_To_Alpha(ModelMix& m);

void model_load_subpicture_alpha_rgb32(ModelMix& m);
void model_load_subpicture_alpha_rgb24(ModelMix& m);
void model_load_subpicture_alpha_rgb16_565(ModelMix& m);

}  // namespace yuvblit_test
