// Hosts call kernels from several threads at once (a player per window, a
// thumbnailer beside it). The only state the library keeps between calls is
// the adjustment loaded by get_contrast_data; with one adjustment in force,
// 16 threads running kernels of every family at once must write exactly
// what one thread writes.
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <thread>
#include <vector>

#include "test_util.h"
#include "yuvblit.h"

namespace {

constexpr int32_t kWidth = 96, kHeight = 36;

struct Inputs {
  std::vector<uint8_t> y, u, v, alpha, subY, subU, subV, bitmap;
  explicit Inputs(std::mt19937& rng) {
    auto random = [&](size_t n) {
      std::vector<uint8_t> bytes(n);
      for (auto& b : bytes) b = static_cast<uint8_t>(rng());
      return bytes;
    };
    y = random(kWidth * kHeight), u = random(kWidth * kHeight / 4), v = random(kWidth * kHeight / 4);
    alpha = random(kWidth * kHeight);
    for (auto& a : alpha) a %= 17;
    subY = random(kWidth * kHeight), subU = random(kWidth * kHeight), subV = random(kWidth * kHeight);
    bitmap = random(4 * kWidth * kHeight);
  }
};

// Every call writes into a fresh buffer of `bytes` and returns it.
using Call = std::function<std::vector<uint8_t>(const Inputs&)>;

tagMIX_INFO mix_record(const Inputs& in, uint8_t* dst, int32_t dstPitch) {
  tagMIX_INFO r{};
  r.picturePitch = r.subPitch = kWidth;
  r.dstPitch = dstPitch;
  r.width = kWidth, r.height = kHeight;
  r.pictureY = const_cast<uint8_t*>(in.y.data());
  r.pictureU = const_cast<uint8_t*>(in.u.data());
  r.pictureV = const_cast<uint8_t*>(in.v.data());
  r.subAlpha = const_cast<uint8_t*>(in.alpha.data());
  r.subY = const_cast<uint8_t*>(in.subY.data());
  r.subU = const_cast<uint8_t*>(in.subU.data());
  r.subV = const_cast<uint8_t*>(in.subV.data());
  r.dst = dst;
  return r;
}

std::vector<Call> calls_of_every_family() {
  auto planar = [](auto kernel, int32_t bytesPerPixel) -> Call {
    return [=](const Inputs& in) {
      std::vector<uint8_t> out(bytesPerPixel * kWidth * kHeight, 0xEE);
      tag_ajust_contrast_info record = yuvblit_test::identity_adjustment();
      kernel(const_cast<uint8_t*>(in.y.data()), const_cast<uint8_t*>(in.u.data()),
             const_cast<uint8_t*>(in.v.data()), out.data(), kWidth, kHeight, kWidth,
             bytesPerPixel * kWidth, &record);
      return out;
    };
  };
  auto mixer = [](void (*kernel)(tagMIX_INFO*), int32_t bytesPerPixel) -> Call {
    return [=](const Inputs& in) {
      std::vector<uint8_t> out(bytesPerPixel * kWidth * kHeight, 0xEE);
      tagMIX_INFO record = mix_record(in, out.data(), bytesPerPixel * kWidth);
      kernel(&record);
      return out;
    };
  };
  auto convert = [](const Inputs& in) {
    std::vector<uint8_t> out(3 * kWidth * kHeight, 0xEE);
    tagMIX_INFO record = mix_record(in, nullptr, 4 * kWidth);
    record.subY = out.data();
    record.subU = out.data() + kWidth * kHeight;
    record.subV = out.data() + 2 * kWidth * kHeight;
    record.dst = const_cast<uint8_t*>(in.bitmap.data());
    Convert_RGB32_To_AYUY2(&record);
    return out;
  };
  return {planar(loadimage_yuy2_ajust, 2), planar(loadimage_rgb32_ajust, 4),
          planar(loadimage_rgb16_ajust, 2), mixer(mix_ayuy2_yuy2_p_ajust, 2),
          mixer(mix_ayuy2_rgb24_p_ajust, 3), convert};
}

TEST(Threads, SixteenThreadsWriteWhatOneThreadWrites) {
  std::mt19937 rng(99);
  tag_ajust_contrast_info adjust = yuvblit_test::random_adjustment(rng);
  adjust.rgb16Layout = 1;
  get_contrast_data(&adjust);
  const Inputs inputs(rng);
  const std::vector<Call> calls = calls_of_every_family();
  std::vector<std::vector<uint8_t>> expected;
  for (const Call& call : calls) expected.push_back(call(inputs));

  constexpr int kThreads = 16, kRounds = 40;
  std::vector<int> mismatches(kThreads, 0);
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&, t] {
      for (int round = 0; round < kRounds; ++round) {
        const size_t k = (t + round) % calls.size();  // threads run different kernels at once
        if (calls[k](inputs) != expected[k]) ++mismatches[t];
      }
    });
  }
  for (auto& thread : threads) thread.join();
  for (int t = 0; t < kThreads; ++t) EXPECT_EQ(mismatches[t], 0) << "thread " << t;
}

}  // namespace
