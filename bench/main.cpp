// yuvblit_bench: Google Benchmark runner for the kernels and their peers.
//
// Besides the usual --benchmark_* flags it takes
//   --disable_simd=NAME[,NAME...]   Highway targets (e.g. AVX3,AVX3_DL) the
//                                   kernels must not dispatch to, to compare
//                                   vector widths on one machine.
// The context block records which target the kernels run on.
#include <benchmark/benchmark.h>
#include <hwy/targets.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

namespace {

int64_t target_named(const std::string& name) {
  for (int bit = 0; bit < 63; ++bit) {
    const int64_t t = int64_t{1} << bit;
    if (name == hwy::TargetName(t)) return t;
  }
  return 0;
}

// Consumes --disable_simd=...; returns false on an unknown target name.
bool apply_disable_simd(int* argc, char** argv) {
  static const char kFlag[] = "--disable_simd=";
  int out = 1;
  bool ok = true;
  for (int i = 1; i < *argc; ++i) {
    if (std::strncmp(argv[i], kFlag, sizeof(kFlag) - 1) != 0) {
      argv[out++] = argv[i];
      continue;
    }
    std::string list = argv[i] + sizeof(kFlag) - 1;
    int64_t mask = 0;
    size_t start = 0;
    while (start <= list.size()) {
      const size_t comma = std::min(list.find(',', start), list.size());
      const std::string name = list.substr(start, comma - start);
      const int64_t t = target_named(name);
      if (t == 0) {
        std::fprintf(stderr, "unknown Highway target '%s'\n", name.c_str());
        ok = false;
      }
      mask |= t;
      start = comma + 1;
    }
    hwy::DisableTargets(mask);
  }
  *argc = out;
  argv[out] = nullptr;
  return ok;
}

// The target Highway's dynamic dispatch picks for code built with the
// library's default target set.
const char* dispatched_target() {
  const int64_t usable = hwy::SupportedTargets() & HWY_TARGETS;
  return usable == 0 ? "none" : hwy::TargetName(usable & -usable);
}

}  // namespace

int main(int argc, char** argv) {
  if (!apply_disable_simd(&argc, argv)) return 1;
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::AddCustomContext("simd_target", dispatched_target());
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
