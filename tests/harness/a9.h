// Checking a nine-argument kernel against its model on every target.
#pragma once

#include <cstdint>
#include <functional>
#include <ostream>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "harness/region.h"
#include "yuvblit.h"

namespace yuvblit_test {

using A9Kernel = void (*)(void*, void*, void*, void*, int32_t, int32_t,
                          int32_t, int32_t, tag_ajust_contrast_info*);

struct A9Call {
  int32_t width, height, srcPitch, dstPitch;
};

struct A9Ptrs {
  Ptr srcY, srcU, srcV, dst;
};

// A model writes exactly what the kernel is defined to write, byte by byte,
// through the Ptrs; `adjust` is the record the kernel is given.
using A9Model = std::function<void(const A9Ptrs&, const A9Call&,
                                   const tag_ajust_contrast_info&)>;

std::string describe(const A9Call& c);

// One kernel of a family as the parameterised tests take it: the entry
// point, its model and the destination bytes per source pixel (for sizing
// random pitches).
struct A9KernelCase {
  const char* name;
  A9Kernel kernel;
  A9Model model;
  int32_t dstBytesPerPixel = 1;
};

inline void PrintTo(const A9KernelCase& k, std::ostream* os) { *os << k.name; }

// Sizes buffers to the model's footprint, fills them with random bytes,
// runs the kernel on every target and compares the destination (guard bytes
// included) and the sources with what the model says. `prepare` may set
// source contents before the run.
testing::AssertionResult check_a9(
    A9Kernel kernel, const A9Model& model, const A9Call& call,
    const tag_ajust_contrast_info& adjust, uint32_t seed,
    const std::function<void(Region& y, Region& u, Region& v)>& prepare = {});

// Random sizes and pitches: small and odd widths, heights around the row
// pair, pitches looser and tighter than a row (rows that overlap), odd and
// negative (bottom-up).
A9Call random_call(std::mt19937& rng, int32_t srcBytesPerPixel,
                   int32_t dstBytesPerPixel);

}  // namespace yuvblit_test
