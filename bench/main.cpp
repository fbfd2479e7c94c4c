// yuvblit_bench: Google Benchmark runner for the kernels and their peers.
//
// Besides the usual --benchmark_* flags it takes
//   --disable_simd=NAME[,NAME...]   Highway targets (e.g. AVX3,AVX3_DL) the
//                                   kernels must not dispatch to, to compare
//                                   vector widths on one machine.
//   --surface_offset=N              start destination surfaces (and the
//                                   roofline's destination) N bytes into a
//                                   page instead of on it, to see how much a
//                                   result owes to buffer placement.
// The context block records both, and the target the kernels run on.
#include <benchmark/benchmark.h>
#include <hwy/targets.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "bench_util.h"

namespace {

int64_t target_named(const std::string& name) {
  for (int bit = 0; bit < 63; ++bit) {
    const int64_t t = int64_t{1} << bit;
    if (name == hwy::TargetName(t)) return t;
  }
  return 0;
}

// Turns "AVX3,AVX3_DL" into a target mask; 0 with a message on a bad name.
int64_t target_mask(const std::string& list) {
  int64_t mask = 0;
  size_t start = 0;
  while (start <= list.size()) {
    const size_t comma = std::min(list.find(',', start), list.size());
    const std::string name = list.substr(start, comma - start);
    const int64_t t = target_named(name);
    if (t == 0) {
      std::fprintf(stderr, "unknown Highway target '%s'\n", name.c_str());
      return 0;
    }
    mask |= t;
    start = comma + 1;
  }
  return mask;
}

// Consumes this program's own flags from argv; false on a bad value.
bool parse_own_flags(int* argc, char** argv, std::string* disabled) {
  static const char kDisable[] = "--disable_simd=";
  static const char kOffset[] = "--surface_offset=";
  int out = 1;
  for (int i = 1; i < *argc; ++i) {
    const char* arg = argv[i];
    if (std::strncmp(arg, kDisable, sizeof(kDisable) - 1) == 0) {
      *disabled = arg + sizeof(kDisable) - 1;
      const int64_t mask = target_mask(*disabled);
      if (mask == 0) return false;
      hwy::DisableTargets(mask);
    } else if (std::strncmp(arg, kOffset, sizeof(kOffset) - 1) == 0) {
      char* end = nullptr;
      const unsigned long n = std::strtoul(arg + sizeof(kOffset) - 1, &end, 0);
      if (*end != '\0' || n >= 4096) {
        std::fprintf(stderr, "--surface_offset takes 0..4095\n");
        return false;
      }
      yuvblit_bench::set_surface_offset(n);
    } else {
      argv[out++] = argv[i];
    }
  }
  *argc = out;
  argv[out] = nullptr;
  return true;
}

// The target Highway's dynamic dispatch picks for code built with the
// library's default target set.
const char* dispatched_target() {
  const int64_t usable = hwy::SupportedTargets() & HWY_TARGETS;
  return usable == 0 ? "none" : hwy::TargetName(usable & -usable);
}

}  // namespace

int main(int argc, char** argv) {
  std::string disabled;
  if (!parse_own_flags(&argc, argv, &disabled)) return 1;
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::AddCustomContext("simd_target", dispatched_target());
  if (!disabled.empty()) benchmark::AddCustomContext("simd_disabled", disabled);
  benchmark::AddCustomContext("surface_offset",
                              std::to_string(yuvblit_bench::surface_offset()));
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
