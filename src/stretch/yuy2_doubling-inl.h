// Doubled YUY2 output (per-target Highway code): chroma doubled into one
// value per output pixel pair, and the 64-byte output group of 16 source
// pixels doubled in both directions. Shared by every kernel that doubles a
// picture horizontally onto YUY2, whatever its source layout.
#if defined(YUVBLIT_YUY2_DOUBLING_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef YUVBLIT_YUY2_DOUBLING_INL_H_
#undef YUVBLIT_YUY2_DOUBLING_INL_H_
#else
#define YUVBLIT_YUY2_DOUBLING_INL_H_
#endif

#include "adjust/adjust-inl.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// Chroma samples c (half the lanes of d8) and the averages with their right
// neighbours, interleaved into Lanes(d8) doubled samples c0 a0 c1 a1 ...:
// output pixel pair 2i takes c[i], pair 2i + 1 the average.
template <class D8, class DH = hn::Rebind<uint8_t, hn::Repartition<uint16_t, D8>>>
HWY_INLINE hn::Vec<D8> DoubledChroma(D8 d8, hn::Vec<DH> c, hn::Vec<DH> between) {
  const hn::Repartition<uint16_t, D8> du16;
  return hn::BitCast(d8, hn::Or(hn::PromoteTo(du16, c),
                                hn::ShiftLeft<8>(hn::PromoteTo(du16, between))));
}

// Stores 64 bytes per 16 lanes of d8 (one group of 16 source pixels, 32
// output pixels). Output pixel 2j has luma luma[j], pixel 2j + 1 has
// between[j] (the doubled luma), pair j has chroma u[j] and v[j] (doubled
// chroma). Bytes 8-15 of every group hold the doubled luma of output pixels
// 0-7 (luma[0], between[0], ..., between[3]) in place of pixels 4-7: that
// layout is part of the format these kernels write.
template <class D8>
HWY_INLINE void StoreDoubledYuy2(D8 d8, hn::Vec<D8> luma, hn::Vec<D8> between,
                                 hn::Vec<D8> u, hn::Vec<D8> v, uint8_t* dst) {
  // Byte 4j + k of a group comes from lane j of the k-th vector, so bytes
  // 8-15 are lanes 2 and 3 of each vector of every 16-lane block: refill
  // them from lanes 0-3 of luma and between (block-local lookups).
  alignas(16) static constexpr uint8_t kEvenSamples[16] = {0, 1, 0, 2, 4, 5, 6, 7,
                                                          8, 9, 10, 11, 12, 13, 14, 15};
  alignas(16) static constexpr uint8_t kOddSamples[16] = {0, 1, 1, 3, 4, 5, 6, 7,
                                                         8, 9, 10, 11, 12, 13, 14, 15};
  alignas(16) static constexpr uint8_t kLanes2And3[16] = {0, 0, 0xFF, 0xFF};
  const auto even = hn::LoadDup128(d8, kEvenSamples);
  const auto odd = hn::LoadDup128(d8, kOddSamples);
  const auto refill = hn::MaskFromVec(hn::LoadDup128(d8, kLanes2And3));
  hn::StoreInterleaved4(hn::IfThenElse(refill, hn::TableLookupBytes(luma, even), luma),
                        hn::IfThenElse(refill, hn::TableLookupBytes(between, even), u),
                        hn::IfThenElse(refill, hn::TableLookupBytes(luma, odd), between),
                        hn::IfThenElse(refill, hn::TableLookupBytes(between, odd), v), d8,
                        dst);
}

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#endif  // YUVBLIT_YUY2_DOUBLING_INL_H_
