// YUY2 packing from 16-bit lanes, shared by every row operation that writes
// YUY2 (per-target Highway code).
//
// YUY2 is handled as 16-bit words: pixel 2i's word is Y(2i) | U(i) << 8 and
// pixel 2i+1's is Y(2i+1) | V(i) << 8. Luma splits into even and odd pixels
// by byte position within 16-bit lanes and chroma widens to 16-bit lanes, so
// each chroma lane meets its two pixels without any shuffle; only the final
// store interleaves the even and odd words.
#if defined(YUVBLIT_YUY2_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef YUVBLIT_YUY2_INL_H_
#undef YUVBLIT_YUY2_INL_H_
#else
#define YUVBLIT_YUY2_INL_H_
#endif

#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// Chroma samples for the luma vector of tag d8 (half as many), widened.
template <class D8, class D16 = hn::Repartition<int16_t, D8>>
HWY_INLINE hn::Vec<D16> LoadChroma(D8 /*d8*/, const uint8_t* p) {
  const D16 d16;
  const hn::Rebind<uint8_t, D16> dh;
  return hn::PromoteTo(d16, hn::LoadU(dh, p));
}

// Even-pixel words Y | U << 8 and odd-pixel words Y | V << 8, interleaved
// into pixel order.
template <class D16>
HWY_INLINE void StoreYuy2(D16 /*d16*/, hn::Vec<D16> evenY, hn::Vec<D16> u,
                          hn::Vec<D16> oddY, hn::Vec<D16> v, uint8_t* dst) {
  const hn::RebindToUnsigned<D16> du16;
  hn::StoreInterleaved2(hn::BitCast(du16, hn::Or(evenY, hn::ShiftLeft<8>(u))),
                        hn::BitCast(du16, hn::Or(oddY, hn::ShiftLeft<8>(v))), du16,
                        reinterpret_cast<uint16_t*>(dst));
}

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#endif  // YUVBLIT_YUY2_INL_H_
