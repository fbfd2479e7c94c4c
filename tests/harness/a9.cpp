#include "harness/a9.h"

#include <sstream>

#include "harness/check.h"

namespace yuvblit_test {

std::string describe(const A9Call& c) {
  std::ostringstream s;
  s << "width " << c.width << ", height " << c.height << ", srcPitch "
    << c.srcPitch << ", dstPitch " << c.dstPitch;
  return s.str();
}

testing::AssertionResult check_a9(
    A9Kernel kernel, const A9Model& model, const A9Call& call,
    const tag_ajust_contrast_info& adjust, uint32_t seed,
    const std::function<void(Region&, Region&, Region&)>& prepare) {
  CallCheck check;
  check.description = describe(call);
  check.regions = {"srcY", "srcU", "srcV", "dst"};
  check.model = [&](const std::vector<Ptr>& p) { model({p[0], p[1], p[2], p[3]}, call, adjust); };
  if (prepare) check.prepare = [&](const std::vector<Region*>& r) { prepare(*r[0], *r[1], *r[2]); };
  check.run = [&](const std::vector<uint8_t*>& b) {
    tag_ajust_contrast_info record = adjust;
    kernel(b[0], b[1], b[2], b[3], call.width, call.height, call.srcPitch, call.dstPitch,
           &record);
    return testing::AssertionSuccess();
  };
  return check_call(check, seed);
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
