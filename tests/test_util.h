// Small helpers shared by the kernel tests.
#pragma once

#include <cstdint>
#include <random>
#include <vector>

#include "yuvblit.h"

namespace yuvblit_test {

inline tag_ajust_contrast_info identity_adjustment() {
  tag_ajust_contrast_info a{};
  a.lumaGain = 64;
  a.chromaGain = 64;
  return a;
}

// A random record that exercises wrapping products, saturating sums and the
// split offsets, mixed with ordinary picture controls.
inline tag_ajust_contrast_info random_adjustment(std::mt19937& rng) {
  auto pick = [&](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
  tag_ajust_contrast_info a{};
  const bool wild = pick(0, 3) == 0;
  a.lumaGain = wild ? pick(-70000, 70000) : pick(32, 128);
  a.chromaGain = wild ? pick(-70000, 70000) : pick(32, 128);
  a.lumaOffset = wild ? pick(-40000, 40000) : pick(-40, 40);
  a.uOffset = wild ? pick(-40000, 40000) : 128 - 2 * a.chromaGain + pick(-20, 20);
  a.vOffset = wild ? pick(-40000, 40000) : 128 - 2 * a.chromaGain + pick(-20, 20);
  a.lumaOffsetExtra = wild ? pick(-40000, 40000) : 0;
  a.uOffsetExtra = wild ? pick(-40000, 40000) : 0;
  a.vOffsetExtra = wild ? pick(-40000, 40000) : 0;
  a.rgb16Layout = static_cast<uint32_t>(pick(0, 3));
  return a;
}

// A plain buffer for hand-written cases: planes with a known fill.
struct Plane {
  std::vector<uint8_t> bytes;
  Plane(size_t n, uint8_t fill) : bytes(n, fill) {}
  uint8_t* data() { return bytes.data(); }
  uint8_t& operator[](size_t i) { return bytes[i]; }
};

}  // namespace yuvblit_test
