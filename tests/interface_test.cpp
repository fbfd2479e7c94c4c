// Record layouts of the public interface on this build.
#include <gtest/gtest.h>

#include <cstddef>
#include <iostream>
#include <string>
#include <vector>

#include "harness/targets.h"
#include "hwy/highway.h"
#include "hwy/targets.h"
#include "yuvblit.h"

extern "C" int yuvblit_header_compiles_as_c(void);

namespace {

TEST(Interface, RecordsKeepFieldOrderWithNativePointers) {
  EXPECT_GT(yuvblit_header_compiles_as_c(), 0);
  EXPECT_EQ(sizeof(tag_ajust_contrast_info), 48u);
  EXPECT_EQ(offsetof(tag_ajust_contrast_info, rgb16Layout), 32u);
  EXPECT_EQ(offsetof(tag_ajust_contrast_info, rowsFromDestination), 44u);

  const size_t p = sizeof(void*);
  const size_t firstPointer = (20 + p - 1) / p * p;  // after five 32-bit fields
  EXPECT_EQ(offsetof(tagMIX_INFO, pictureY), firstPointer);
  EXPECT_EQ(offsetof(tagMIX_INFO, dstV), firstPointer + 9 * p);
  EXPECT_EQ(offsetof(tagMIX_INFO, colorKey), firstPointer + 10 * p);
  EXPECT_EQ(offsetof(tagMIX_INFO, hostField18), firstPointer + 10 * p + 8);
  EXPECT_EQ(offsetof(tagMIX_INFO, adjust) % p, 0u);

  EXPECT_EQ(offsetof(tagVideoFrame, lineMode), 44u);
  EXPECT_EQ(offsetof(tagVideoFrame, planeY), 96u);
  EXPECT_EQ(offsetof(tagVideoFrame, planeV), 96u + 2 * p);
  EXPECT_EQ(offsetof(tagVideoFrame, lumaWidth), 96u + 3 * p + 24);
}

// The kernel tests run on every target this machine supports; that must
// include the portable fallback the build has for CPUs without any SIMD
// extension it targets (the 128-bit emulation on x86, NEON on 64-bit Arm)
// and, on x86, SIMD targets.
TEST(Interface, KernelTestsCoverTheFallbackAndSimdTargets) {
  std::vector<std::string> names;
  yuvblit_test::for_each_target([&](const std::string& t) { names.push_back(t); });
  std::string all;
  for (const auto& n : names) all += n + " ";
  std::cout << "targets checked: " << all << "\n";
  EXPECT_NE(all.find(hwy::TargetName(HWY_STATIC_TARGET)), std::string::npos) << all;
#if HWY_ARCH_X86
  EXPECT_EQ(HWY_STATIC_TARGET, HWY_EMU128);
  EXPECT_NE(all.find("SSSE3"), std::string::npos) << all;
#endif
}

}  // namespace
