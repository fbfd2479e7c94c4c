#include "harness/mix.h"

#include <cstring>
#include <sstream>
#include <vector>

#include "harness/check.h"

namespace yuvblit_test {

std::string describe(const MixCall& c) {
  std::ostringstream s;
  s << "width " << c.width << ", height " << c.height << ", picturePitch " << c.picturePitch
    << ", subPitch " << c.subPitch << ", dstPitch " << c.dstPitch;
  return s.str();
}

namespace {

// The record's plane fields, in MixPlane order.
template <class Record, class Field>
void for_each_plane(Record& r, Field f) {
  f(kPictureY, r.pictureY), f(kPictureV, r.pictureV), f(kPictureU, r.pictureU);
  f(kSubAlpha, r.subAlpha), f(kSubY, r.subY), f(kSubV, r.subV), f(kSubU, r.subU);
  f(kDst, r.dst), f(kDstU, r.dstU), f(kDstV, r.dstV);
}

const char* const kPlaneNames[kMixPlanes] = {"pictureY", "pictureV", "pictureU", "subAlpha",
                                             "subY",     "subV",     "subU",     "dst",
                                             "dstU",     "dstV"};

}  // namespace

testing::AssertionResult check_mix(
    MixKernel kernel, const MixModel& model, const MixCall& call,
    const tag_ajust_contrast_info& adjust, uint32_t seed,
    const std::function<void(const std::vector<Region*>&)>& prepare) {
  ModelMix start;
  start.picturePitch = call.picturePitch, start.subPitch = call.subPitch;
  start.dstPitch = call.dstPitch, start.width = call.width, start.height = call.height;
  start.colorKey = call.colorKey;
  start.adjust = adjust;
  ModelMix expected;

  CallCheck check;
  check.description = describe(call);
  check.regions.assign(kPlaneNames, kPlaneNames + kMixPlanes);
  check.model = [&](const std::vector<Ptr>& p) {
    expected = start;
    for_each_plane(expected, [&](int i, Ptr& field) { field = p[i]; });
    model(expected);
  };
  check.prepare = prepare;
  check.run = [&](const std::vector<uint8_t*>& b) -> testing::AssertionResult {
    tag_ajust_contrast_info adjustRecord = adjust;
    tagMIX_INFO info{};
    info.picturePitch = call.picturePitch, info.subPitch = call.subPitch;
    info.dstPitch = call.dstPitch, info.width = call.width, info.height = call.height;
    info.colorKey = call.colorKey;
    info.hostField17 = 0x17171717, info.hostField18 = 0x18181818;
    info.adjust = &adjustRecord;
    for_each_plane(info, [&](int i, unsigned char*& field) { field = b[i]; });
    kernel(&info);

    auto differs = [](const char* field, int64_t actual, int64_t want) {
      return testing::AssertionFailure()
             << "record field " << field << " is " << actual << " after the call, expected "
             << want;
    };
    const struct { const char* name; int64_t actual, want; } ints[] = {
        {"picturePitch", info.picturePitch, expected.picturePitch},
        {"subPitch", info.subPitch, expected.subPitch},
        {"dstPitch", info.dstPitch, expected.dstPitch},
        {"width", info.width, expected.width},
        {"height", info.height, expected.height},
        {"colorKey", info.colorKey, expected.colorKey},
        {"hostField17", info.hostField17, 0x17171717},
        {"hostField18", info.hostField18, 0x18181818}};
    for (const auto& f : ints)
      if (f.actual != f.want) return differs(f.name, f.actual, f.want);
    if (info.adjust != &adjustRecord) return testing::AssertionFailure() << "adjust pointer changed";
    if (std::memcmp(&adjustRecord, &adjust, sizeof adjust) != 0)
      return testing::AssertionFailure() << "adjustment record changed";
    testing::AssertionResult planes = testing::AssertionSuccess();
    std::vector<Ptr> want;
    for_each_plane(expected, [&](int, Ptr& field) { want.push_back(field); });
    for_each_plane(info, [&](int i, unsigned char*& field) {
      // Offsets from the region the field started in.
      const int64_t moved = reinterpret_cast<intptr_t>(field) - reinterpret_cast<intptr_t>(b[i]);
      if (planes && moved != want[i].off)
        planes = differs(kPlaneNames[i], moved, want[i].off) << " (bytes from its start)";
    });
    return planes;
  };
  return check_call(check, seed);
}

}  // namespace yuvblit_test
