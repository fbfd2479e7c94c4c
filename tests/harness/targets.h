// Runs a check once per SIMD target compiled into the library and supported
// by this CPU (the portable fallback included).
#pragma once

#include <string>

#include "hwy/targets.h"

namespace yuvblit_test {

template <class F>
void for_each_target(F&& check) {
  for (int64_t target : hwy::SupportedAndGeneratedTargets()) {
    hwy::SetSupportedTargetsForTest(target);
    check(std::string(hwy::TargetName(target)));
  }
  hwy::SetSupportedTargetsForTest(0);
}

}  // namespace yuvblit_test
