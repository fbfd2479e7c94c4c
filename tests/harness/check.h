// Checking any kernel against its model on every target.
//
// A call is described by the regions it touches (each a named buffer the
// kernel gets a pointer to), a model that writes what the kernel is defined
// to write through Ptrs into those regions, and a run that calls the kernel
// with the regions' real pointers. The harness measures the model's
// footprint, allocates each region to exactly that with guard bytes, runs
// the kernel on every compiled target and compares every region, guards
// included, with what the model left.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "harness/region.h"

namespace yuvblit_test {

struct CallCheck {
  // What the failure messages call this call (sizes, pitches, ...).
  std::string description;
  // One region per name, in this order for the model, prepare and run.
  std::vector<std::string> regions;
  // Writes what the kernel writes through ptrs[i] into region i. It runs
  // twice (measuring, then live) and must do the same both times; what it
  // leaves in captured state after the second run (an updated record) is
  // what `run` compares against.
  std::function<void(const std::vector<Ptr>& ptrs)> model;
  // Sets region contents before the run (random bytes otherwise). Optional.
  std::function<void(const std::vector<Region*>& regions)> prepare;
  // Calls the kernel with the regions' pointers; returns a failure when a
  // record the kernel leaves behind differs from what the model left.
  std::function<testing::AssertionResult(const std::vector<uint8_t*>& bases)> run;
};

testing::AssertionResult check_call(const CallCheck& call, uint32_t seed);

}  // namespace yuvblit_test
