// Byte-by-byte model of the packed-YUY2-source kernels that double a
// picture in both directions onto YUY2.
#pragma once

#include <cstdint>
#include <optional>

#include "harness/region.h"
#include "model/adjust_model.h"

namespace yuvblit_test {

// `adjust` empty: the plain kernel (heights below 16 write nothing);
// otherwise the adjusting one (below 8).
void model_packed_doubling(Ptr src, Ptr dst, int32_t width, int32_t height, int32_t dstPitch,
                           const std::optional<ModelAdjust>& adjust);

}  // namespace yuvblit_test
