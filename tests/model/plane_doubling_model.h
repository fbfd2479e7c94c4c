// Byte-by-byte models of the one-plane doubling kernels and of the YV12
// kernels that run them plane by plane.
#pragma once

#include <cstdint>

#include "harness/a9.h"
#include "harness/region.h"

namespace yuvblit_test {

// The arguments of a plane kernel other than its pointers.
struct PlaneCall {
  int32_t width, height, srcPitch, dstPitch;
  int32_t plane;  // offset selector of the adjusting kernels
};

std::string describe(const PlaneCall& c);

void model_strech_pic_1X2_adjust(Ptr src, Ptr dst, const PlaneCall& c,
                                 const tag_ajust_contrast_info& adjust);
void model_strech_pic_2X2(Ptr src, Ptr dst, const PlaneCall& c);
void model_strech_pic_2X2_adjust(Ptr src, Ptr dst, const PlaneCall& c,
                                 const tag_ajust_contrast_info& adjust);

void model_strech_picture_1X2_yv12_ajust(const A9Ptrs&, const A9Call&,
                                         const tag_ajust_contrast_info&);
void model_strech_picture_2X2_yv12_ajust(const A9Ptrs&, const A9Call&,
                                         const tag_ajust_contrast_info&);

}  // namespace yuvblit_test
