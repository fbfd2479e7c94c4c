// Vector form of the sample adjustment (per-target Highway code).
#if defined(YUVBLIT_ADJUST_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef YUVBLIT_ADJUST_INL_H_
#undef YUVBLIT_ADJUST_INL_H_
#else
#define YUVBLIT_ADJUST_INL_H_
#endif

#include "adjust/adjustment.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// Applies one SampleAdjust to every byte of a u8 vector. The bytes are
// split into the low and high byte of each 16-bit lane, so lane order never
// changes and no shuffle is needed.
template <class D8>
HWY_INLINE hn::Vec<D8> AdjustBytes(D8 d8, hn::Vec<D8> bytes, SampleAdjust a) {
  const hn::Repartition<int16_t, D8> d16;
  const hn::Repartition<uint16_t, D8> du16;
  const auto gain = hn::Set(d16, a.gain);
  const auto offset = hn::Set(d16, a.offset);
  const auto rounding = hn::Set(d16, 32);
  const auto zero = hn::Zero(d16);
  const auto max8 = hn::Set(d16, 255);
  auto adjust = [&](hn::Vec<decltype(d16)> x) {
    auto r = hn::SaturatedAdd(hn::Mul(x, gain), rounding);
    r = hn::BitCast(d16, hn::ShiftRight<6>(hn::BitCast(du16, r)));
    r = hn::SaturatedAdd(r, offset);
    return hn::Min(hn::Max(r, zero), max8);
  };
  const auto wide = hn::BitCast(du16, bytes);
  const auto even = adjust(hn::BitCast(d16, hn::And(wide, hn::Set(du16, 0xFF))));
  const auto odd = adjust(hn::BitCast(d16, hn::ShiftRight<8>(wide)));
  return hn::BitCast(d8, hn::Or(hn::BitCast(du16, even),
                                hn::ShiftLeft<8>(hn::BitCast(du16, odd))));
}

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#endif  // YUVBLIT_ADJUST_INL_H_
