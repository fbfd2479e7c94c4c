// Byte-by-byte model of the edge-directed vertical doubler.
#pragma once

#include <string>

#include "harness/region.h"
#include "yuvblit.h"

namespace yuvblit_test {

// The arguments of one call and the fields of its frame record.
struct OptCall {
  int32_t lineMode, lumaWidth, top, height, dstPitch;
};

std::string describe(const OptCall& c);

// The frame record and the memory it and the call point to.
struct OptPtrs {
  Ptr record, planeY, planeU, planeV, dst;
};

void model_strech_opt_yuy2_ajust(const OptPtrs& p, const OptCall& c,
                                 const tag_ajust_contrast_info& adjust);

}  // namespace yuvblit_test
