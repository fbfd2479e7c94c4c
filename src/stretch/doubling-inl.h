// Sample operations of the doubling kernels on vectors (per-target Highway
// code): the four-tap half-line filter and horizontal doubling. Scalar
// forms in doubling.h.
#if defined(YUVBLIT_DOUBLING_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef YUVBLIT_DOUBLING_INL_H_
#undef YUVBLIT_DOUBLING_INL_H_
#else
#define YUVBLIT_DOUBLING_INL_H_
#endif

#include "adjust/adjust-inl.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// floor((5 p0 + 5 p1 - pm - p2) / 8) clamped to 0..255, on int16 lanes
// holding samples (no sum leaves int16 for 8-bit samples).
template <class D16>
HWY_INLINE hn::Vec<D16> FourTapWide(D16 d16, hn::Vec<D16> pm, hn::Vec<D16> p0,
                                    hn::Vec<D16> p1, hn::Vec<D16> p2) {
  const auto inner = hn::Add(p0, p1);  // 5 p0 + 5 p1 = 5 (p0 + p1)
  const auto t = hn::Sub(hn::Add(hn::ShiftLeft<2>(inner), inner), hn::Add(pm, p2));
  return ClampToByte(d16, hn::ShiftRight<3>(t));
}

// The four-tap filter on byte lanes: between rows p0 and p1, with the row
// above p0 (pm) and the row below p1 (p2).
template <class D8>
HWY_INLINE hn::Vec<D8> FourTap(D8 d8, hn::Vec<D8> pm, hn::Vec<D8> p0, hn::Vec<D8> p1,
                               hn::Vec<D8> p2) {
  const hn::Repartition<int16_t, D8> d16;
  hn::Vec<decltype(d16)> me, mo, ae, ao, be, bo, pe, po;
  SplitEvenOdd(d8, pm, me, mo);
  SplitEvenOdd(d8, p0, ae, ao);
  SplitEvenOdd(d8, p1, be, bo);
  SplitEvenOdd(d8, p2, pe, po);
  return JoinEvenOdd(d16, FourTapWide(d16, me, ae, be, pe), FourTapWide(d16, mo, ao, bo, po));
}

// Horizontal doubling of a vector of samples s whose right neighbours are
// `right` (s[i + 1], the last one from beyond the vector): 2 Lanes(d8)
// bytes s[0], avg(s[0], s[1]), s[1], avg(s[1], s[2]), ... stored at dst.
template <class D8>
HWY_INLINE void StoreDoubled(D8 d8, hn::Vec<D8> s, hn::Vec<D8> right, uint8_t* dst) {
  hn::StoreInterleaved2(s, RoundedAverage(s, right), d8, dst);
}

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#endif  // YUVBLIT_DOUBLING_INL_H_
