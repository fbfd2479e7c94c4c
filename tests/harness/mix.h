// Checking a kernel that takes a tagMIX_INFO against its model on every
// target, the record it leaves behind included.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "harness/region.h"
#include "yuvblit.h"

namespace yuvblit_test {

// The record as a model sees it: every plane pointer a Ptr into its own
// region. A model updates it exactly as the kernel updates the real record.
struct ModelMix {
  int32_t picturePitch = 0, subPitch = 0, dstPitch = 0, width = 0, height = 0;
  Ptr pictureY, pictureV, pictureU, subAlpha, subY, subV, subU, dst, dstU, dstV;
  uint32_t colorKey = 0;
  // What the kernel finds behind the record's adjust pointer.
  tag_ajust_contrast_info adjust{};
};

// The planes of the record, in field order; each gets its own region named
// after its field.
enum MixPlane { kPictureY, kPictureV, kPictureU, kSubAlpha, kSubY, kSubV, kSubU, kDst, kDstU,
                kDstV, kMixPlanes };

using MixKernel = void (*)(tagMIX_INFO*);
using MixModel = std::function<void(ModelMix&)>;

// The sizes and key of a record (its planes are filled in by check_mix).
struct MixCall {
  int32_t picturePitch = 0, subPitch = 0, dstPitch = 0, width = 0, height = 0;
  uint32_t colorKey = 0;
};

std::string describe(const MixCall& c);

// Runs the model on a record made from `call` to measure each plane's
// footprint, allocates every plane with guard bytes, runs the kernel on
// every target with a fresh record and compares every plane and every field
// of the record afterwards with what the model left. `prepare` may set
// plane contents (indexed by MixPlane) before the run.
testing::AssertionResult check_mix(
    MixKernel kernel, const MixModel& model, const MixCall& call,
    const tag_ajust_contrast_info& adjust, uint32_t seed,
    const std::function<void(const std::vector<Region*>&)>& prepare = {});

}  // namespace yuvblit_test
