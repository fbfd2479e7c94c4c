// Vector row operations on single planes.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "load/plane_rows.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep

#include "hwy/highway.h"
#include "adjust/adjust-inl.h"
#include "frame/groups-inl.h"
#include "load/plane_rows.h"

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// Copies [0, bytes) in vectors of tag d when the run holds at least one.
// After one unaligned vector, stores are aligned in dst, so none splits a
// cache line whatever the destination's offset (loads may); the last vector
// ends exactly at the run's end. Overlapping vectors store again bytes the
// previous one stored (same values, as the runs do not share bytes).
template <class D>
HWY_INLINE bool CopyInVectors(D d, const uint8_t* HWY_RESTRICT src,
                              uint8_t* HWY_RESTRICT dst, size_t bytes) {
  const size_t n = hn::Lanes(d);
  if (bytes < n) return false;
  hn::StoreU(hn::LoadU(d, src), d, dst);
  size_t i = AlignedStart(dst, n);
  for (; i + 2 * n <= bytes; i += 2 * n) {
    const auto a = hn::LoadU(d, src + i);
    const auto b = hn::LoadU(d, src + i + n);
    hn::StoreU(a, d, dst + i);
    hn::StoreU(b, d, dst + i + n);
  }
  if (i + n <= bytes) {
    hn::StoreU(hn::LoadU(d, src + i), d, dst + i);
    i += n;
  }
  if (i < bytes) hn::StoreU(hn::LoadU(d, src + bytes - n), d, dst + bytes - n);
  return true;
}

void CopyBytes(const uint8_t* HWY_RESTRICT src, uint8_t* HWY_RESTRICT dst,
               size_t bytes) {
  if (CopyInVectors(hn::ScalableTag<uint8_t>(), src, dst, bytes)) return;
  if (CopyInVectors(hn::CappedTag<uint8_t, 32>(), src, dst, bytes)) return;
  if (CopyInVectors(hn::CappedTag<uint8_t, 16>(), src, dst, bytes)) return;
  if (CopyInVectors(hn::CappedTag<uint8_t, 8>(), src, dst, bytes)) return;
  for (size_t i = 0; i < bytes; ++i) dst[i] = src[i];
}

// Adjusts whole vectors of tag d from byte i on; returns where it stopped.
// Every byte is read once before it is written, so src == dst works too.
template <class D>
HWY_INLINE size_t AdjustInVectors(D d, const uint8_t* src, uint8_t* dst,
                                  size_t i, size_t bytes, const SampleLookup& a) {
  const size_t n = hn::Lanes(d);
  for (; i + n <= bytes; i += n) {
    hn::StoreU(AdjustBytes(d, hn::LoadU(d, src + i), a), d, dst + i);
  }
  return i;
}

HWY_INLINE void AdjustRunWith(const uint8_t* src, uint8_t* dst, size_t bytes,
                               const SampleLookup& lookup) {
  size_t i = AdjustInVectors(hn::ScalableTag<uint8_t>(), src, dst, 0, bytes, lookup);
  i = AdjustInVectors(hn::CappedTag<uint8_t, 32>(), src, dst, i, bytes, lookup);
  i = AdjustInVectors(hn::CappedTag<uint8_t, 16>(), src, dst, i, bytes, lookup);
  i = AdjustInVectors(hn::CappedTag<uint8_t, 8>(), src, dst, i, bytes, lookup);
  for (; i < bytes; ++i) dst[i] = adjust_sample(src[i], lookup.adjust);
}

void AdjustRun(const uint8_t* src, uint8_t* dst, size_t bytes, SampleAdjust a) {
  AdjustRunWith(src, dst, bytes, SampleLookup(a));
}

void AdjustRows(const RowRun* rows, size_t count, size_t bytes, SampleAdjust a) {
  const SampleLookup lookup(a);
  for (size_t r = 0; r < count; ++r) AdjustRunWith(rows[r].src, rows[r].dst, bytes, lookup);
}

// The odd bytes of a u8 vector as int16 lanes 0..255 (the high byte of each
// little-endian 16-bit lane), i.e. already widened.
template <class D8>
HWY_INLINE hn::Vec<hn::Repartition<int16_t, D8>> OddBytesWide(
    D8 d8, const uint8_t* src) {
  const hn::Repartition<uint16_t, D8> du16;
  const hn::Repartition<int16_t, D8> d16;
  return hn::BitCast(d16, hn::ShiftRight<8>(hn::BitCast(du16, hn::LoadU(d8, src))));
}

void OddSamplesAdjusted(const uint8_t* HWY_RESTRICT src,
                        uint8_t* HWY_RESTRICT dst, size_t groups,
                        SampleAdjust a) {
  const hn::ScalableTag<uint8_t> d8;
  const hn::Repartition<int16_t, decltype(d8)> d16;
  const size_t n = hn::Lanes(d8);
  // Two input vectors give one full output vector.
  const size_t perStep = 2 * n / 16;
  size_t g = 0;
  for (; g + perStep <= groups; g += perStep) {
    const uint8_t* s = src + 16 * g;
    const auto lo = AdjustWide(d16, OddBytesWide(d8, s), a);
    const auto hi = AdjustWide(d16, OddBytesWide(d8, s + n), a);
    hn::StoreU(hn::ConcatEven(d8, hn::BitCast(d8, hi), hn::BitCast(d8, lo)), d8,
               dst + 8 * g);
  }
  // The rest: one input vector gives half an output vector.
  ForGroups<16>(groups - g, [&](auto d, size_t k) {
    const hn::Repartition<int16_t, decltype(d)> dw;
    const hn::Rebind<uint8_t, decltype(dw)> dOut;
    const auto kept = AdjustWide(dw, OddBytesWide(d, src + 16 * (g + k)), a);
    hn::StoreU(hn::DemoteTo(dOut, kept), dOut, dst + 8 * (g + k));
  });
}

template <class D>
HWY_INLINE void CopyGroupsIn(D d, const uint8_t* const* srcs, uint8_t* const* dsts,
                             size_t rows, size_t groups) {
  const size_t n = hn::Lanes(d);
  for (size_t g = 0; g < groups; ++g) {
    for (size_t r = 0; r < rows; ++r) {
      hn::StoreU(hn::LoadU(d, srcs[r] + n * g), d, dsts[r] + n * g);
    }
  }
}

void CopyGroupsInterleaved(const uint8_t* const* srcs, uint8_t* const* dsts, size_t rows,
                           size_t groupBytes, size_t groups) {
  if (groupBytes == 16) return CopyGroupsIn(hn::CappedTag<uint8_t, 16>(), srcs, dsts, rows, groups);
  return CopyGroupsIn(hn::CappedTag<uint8_t, 8>(), srcs, dsts, rows, groups);
}

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace yuvblit {

HWY_EXPORT(CopyBytes);
HWY_EXPORT(AdjustRun);
HWY_EXPORT(AdjustRows);
HWY_EXPORT(OddSamplesAdjusted);
HWY_EXPORT(CopyGroupsInterleaved);

void copy_groups_interleaved(const uint8_t* const* srcs, uint8_t* const* dsts,
                             size_t rows, size_t groupBytes, size_t groups) {
  HWY_DYNAMIC_DISPATCH(CopyGroupsInterleaved)(srcs, dsts, rows, groupBytes, groups);
}

void copy_bytes(const uint8_t* src, uint8_t* dst, size_t bytes) {
  HWY_DYNAMIC_DISPATCH(CopyBytes)(src, dst, bytes);
}
void adjust_bytes(const uint8_t* src, uint8_t* dst, size_t bytes,
                  SampleAdjust a) {
  HWY_DYNAMIC_DISPATCH(AdjustRun)(src, dst, bytes, a);
}
void adjust_rows(const RowRun* rows, size_t count, size_t bytes, SampleAdjust a) {
  HWY_DYNAMIC_DISPATCH(AdjustRows)(rows, count, bytes, a);
}
void odd_samples_adjusted(const uint8_t* src, uint8_t* dst, size_t groups,
                          SampleAdjust a) {
  HWY_DYNAMIC_DISPATCH(OddSamplesAdjusted)(src, dst, groups, a);
}

}  // namespace yuvblit
#endif  // HWY_ONCE
