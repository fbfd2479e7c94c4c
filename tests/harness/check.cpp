#include "harness/check.h"

#include <memory>

#include "harness/targets.h"

namespace yuvblit_test {

namespace {

// Guard bytes before every region, and after every region the model
// writes. Regions that are only read end right at the inaccessible page,
// so reading one byte too far faults.
constexpr size_t kGuardBytes = 64;

testing::AssertionResult compare(const Region& r, const std::vector<uint8_t>& expected,
                                 const std::string& context) {
  const std::vector<uint8_t> actual = r.snapshot();
  for (size_t i = 0; i < expected.size(); ++i) {
    if (actual[i] != expected[i]) {
      const int64_t off = r.offset_of(i);
      const bool guard = off < r.lo() || off > r.hi();
      return testing::AssertionFailure()
             << context << ": " << r.name() << " byte at offset " << off
             << (guard ? " (guard, outside the footprint)" : "") << " is " << int(actual[i])
             << ", expected " << int(expected[i]);
    }
  }
  return testing::AssertionSuccess();
}

}  // namespace

testing::AssertionResult check_call(const CallCheck& call, uint32_t seed) {
  std::vector<std::unique_ptr<Region>> owned;
  std::vector<Region*> regions;
  std::vector<Ptr> ptrs;
  for (const std::string& name : call.regions) {
    owned.push_back(std::make_unique<Region>(name));
    regions.push_back(owned.back().get());
    ptrs.push_back(Ptr{regions.back(), 0});
  }
  call.model(ptrs);

  std::mt19937 rng(seed);
  for (Region* r : regions) r->allocate(kGuardBytes, r->written() ? kGuardBytes : 0, rng);
  if (call.prepare) call.prepare(regions);
  std::vector<std::vector<uint8_t>> before;
  for (Region* r : regions) before.push_back(r->snapshot());
  call.model(ptrs);
  std::vector<std::vector<uint8_t>> expected;
  std::vector<uint8_t*> bases;
  for (Region* r : regions) {
    expected.push_back(r->snapshot());
    bases.push_back(r->base());
  }

  testing::AssertionResult result = testing::AssertionSuccess();
  for_each_target([&](const std::string& target) {
    if (!result) return;
    for (size_t i = 0; i < regions.size(); ++i) regions[i]->restore(before[i]);
    const std::string context = target + ", " + call.description;
    testing::AssertionResult ran = call.run(bases);
    if (!ran) {
      result = testing::AssertionFailure() << context << ": " << ran.message();
      return;
    }
    for (size_t i = 0; i < regions.size(); ++i) {
      testing::AssertionResult same = compare(*regions[i], expected[i], context);
      if (!same) {
        result = same;
        return;
      }
    }
  });
  return result;
}

}  // namespace yuvblit_test
