#include "harness/a9.h"

#include <sstream>

#include "harness/targets.h"

namespace yuvblit_test {

std::string describe(const A9Call& c) {
  std::ostringstream s;
  s << "width " << c.width << ", height " << c.height << ", srcPitch "
    << c.srcPitch << ", dstPitch " << c.dstPitch;
  return s.str();
}

namespace {

testing::AssertionResult compare(const Region& r,
                                 const std::vector<uint8_t>& expected,
                                 const std::string& context) {
  const std::vector<uint8_t> actual = r.snapshot();
  for (size_t i = 0; i < expected.size(); ++i) {
    if (actual[i] != expected[i]) {
      const int64_t off = r.offset_of(i);
      const bool guard = off < r.lo() || off > r.hi();
      return testing::AssertionFailure()
             << context << ": " << r.name() << " byte at offset " << off
             << (guard ? " (guard, outside the footprint)" : "") << " is "
             << int(actual[i]) << ", expected " << int(expected[i]);
    }
  }
  return testing::AssertionSuccess();
}

}  // namespace

testing::AssertionResult check_a9(
    A9Kernel kernel, const A9Model& model, const A9Call& call,
    const tag_ajust_contrast_info& adjust, uint32_t seed,
    const std::function<void(Region&, Region&, Region&)>& prepare) {
  Region y("srcY"), u("srcU"), v("srcV"), d("dst");
  const A9Ptrs ptrs{{&y, 0}, {&u, 0}, {&v, 0}, {&d, 0}};
  model(ptrs, call, adjust);

  std::mt19937 rng(seed);
  y.allocate(64, 0, rng);
  u.allocate(64, 0, rng);
  v.allocate(64, 0, rng);
  d.allocate(64, 64, rng);
  if (prepare) prepare(y, u, v);
  const auto srcY = y.snapshot(), srcU = u.snapshot(), srcV = v.snapshot();
  const auto before = d.snapshot();
  model(ptrs, call, adjust);
  const auto expected = d.snapshot();

  testing::AssertionResult result = testing::AssertionSuccess();
  for_each_target([&](const std::string& target) {
    if (!result) return;
    d.restore(before);
    tag_ajust_contrast_info record = adjust;
    kernel(y.base(), u.base(), v.base(), d.base(), call.width, call.height,
           call.srcPitch, call.dstPitch, &record);
    const std::string context = target + ", " + describe(call);
    for (auto check : {compare(d, expected, context), compare(y, srcY, context),
                       compare(u, srcU, context), compare(v, srcV, context)}) {
      if (!check) {
        result = check;
        return;
      }
    }
  });
  return result;
}

A9Call random_call(std::mt19937& rng, int32_t srcBytesPerPixel,
                   int32_t dstBytesPerPixel) {
  auto pick = [&](int lo, int hi) {
    return std::uniform_int_distribution<int>(lo, hi)(rng);
  };
  A9Call c{};
  switch (pick(0, 3)) {
    case 0: c.width = pick(0, 40); break;                 // one to three groups
    case 1: c.width = 16 * pick(1, 12); break;            // whole groups
    default: c.width = pick(1, 200); break;
  }
  c.height = pick(0, 3) == 0 ? pick(0, 4) : pick(5, 24);
  auto pitch = [&](int32_t rowBytes) {
    switch (pick(0, 5)) {
      case 0: return rowBytes + pick(-rowBytes / 2, 0);   // overlapping rows
      case 1: return -(rowBytes + pick(0, 64));           // bottom-up
      default: return rowBytes + pick(0, 67);             // looser, often odd
    }
  };
  const int32_t groupedWidth = 16 * ((c.width + 15) / 16 + 1);
  c.srcPitch = pitch(groupedWidth * srcBytesPerPixel);
  c.dstPitch = pitch(groupedWidth * dstBytesPerPixel);
  return c;
}

}  // namespace yuvblit_test
