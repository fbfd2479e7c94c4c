// Vector row operation of the packed-YUY2-source doubling kernels.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "stretch/packed_doubling_rows.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep

#include <cstring>
#include <type_traits>

#include "hwy/highway.h"
#include "adjust/adjust-inl.h"
#include "frame/groups-inl.h"
#include "stretch/packed_doubling_rows.h"
#include "stretch/yuy2_doubling-inl.h"

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

constexpr size_t kStripBytes = 32;  // 16 source pixels

// How samples are adjusted as they are read: not at all, or by plane, the
// chroma neighbours from the next strip by `uNext` / `vNext`.
struct ReadAdjust {
  const AdjustmentLookup* own;  // null: not adjusted
  const SampleLookup* uNext;
  const SampleLookup* vNext;
};

// Packed YUY2 bytes from p: Lanes(d8) luma samples, and half as many U and
// V samples.
template <class D8, class DH = hn::Rebind<uint8_t, hn::Repartition<int16_t, D8>>>
HWY_INLINE void LoadPacked(D8 d8, const uint8_t* p, hn::Vec<D8>& y, hn::Vec<DH>& u,
                           hn::Vec<DH>& v) {
  const hn::Repartition<int16_t, D8> d16;
  const DH dh;
  hn::Vec<D8> chroma;
  hn::LoadInterleaved2(d8, p, y, chroma);
  const auto words = hn::BitCast(d16, chroma);
  u = hn::DemoteTo(dh, hn::And(words, hn::Set(d16, 0xFF)));
  v = hn::DemoteTo(dh, hn::BitCast(d16, hn::ShiftRight<8>(hn::BitCast(hn::RebindToUnsigned<decltype(d16)>(), words))));
}

// Adjusts chroma right neighbours: the last lane of every strip (lane 7 of
// each 8) came from the next strip and takes `next`, the others `own`.
template <bool kFromNextStrip, class DH>
HWY_INLINE hn::Vec<DH> AdjustNeighbours(DH dh, hn::Vec<DH> s, const SampleLookup& own,
                                        const SampleLookup& next) {
  const auto adjusted = AdjustBytes(dh, s, own);
  if (!kFromNextStrip) return adjusted;
  const auto lane = hn::Set(dh, uint8_t{7});
  return hn::IfThenElse(hn::Eq(hn::And(hn::Iota(dh, 0), lane), lane), AdjustBytes(dh, s, next),
                        adjusted);
}

// One packed row doubled: luma and the averages with the right neighbours,
// and the doubled U and V (one per output pixel pair).
template <bool kAdjust, bool kFromNextStrip, class D8>
HWY_INLINE void DoublePackedRow(D8 d8, const uint8_t* p, const ReadAdjust& a,
                                hn::Vec<D8>& luma, hn::Vec<D8>& between, hn::Vec<D8>& u2,
                                hn::Vec<D8>& v2) {
  const hn::Rebind<uint8_t, hn::Repartition<int16_t, D8>> dh;
  hn::Vec<D8> y, yNext, unused;
  hn::Vec<decltype(dh)> u, v, uNext, vNext, unusedC;
  LoadPacked(d8, p, y, u, v);
  LoadPacked(d8, p + 2, yNext, unusedC, unusedC);  // one pixel on
  LoadPacked(d8, p + 4, unused, uNext, vNext);     // one pixel pair on
  if (kAdjust) {
    y = AdjustBytes(d8, y, a.own->luma);
    yNext = AdjustBytes(d8, yNext, a.own->luma);
    u = AdjustBytes(dh, u, a.own->u);
    v = AdjustBytes(dh, v, a.own->v);
    uNext = AdjustNeighbours<kFromNextStrip>(dh, uNext, a.own->u, *a.uNext);
    vNext = AdjustNeighbours<kFromNextStrip>(dh, vNext, a.own->v, *a.vNext);
  }
  luma = y;
  between = RoundedAverage(y, yNext);
  u2 = DoubledChroma(d8, u, RoundedAverage(u, uNext));
  v2 = DoubledChroma(d8, v, RoundedAverage(v, vNext));
}

template <bool kAverage, bool kAdjust, bool kFromNextStrip, class D8>
HWY_INLINE void DoubledStrips(D8 d8, const uint8_t* row, const uint8_t* below,
                              const ReadAdjust& a, uint8_t* dst) {
  hn::Vec<D8> luma, between, u2, v2;
  DoublePackedRow<kAdjust, kFromNextStrip>(d8, row, a, luma, between, u2, v2);
  if (kAverage) {
    hn::Vec<D8> lumaB, betweenB, u2B, v2B;
    DoublePackedRow<kAdjust, kFromNextStrip>(d8, below, a, lumaB, betweenB, u2B, v2B);
    luma = RoundedAverage(luma, lumaB);
    between = RoundedAverage(between, betweenB);
    u2 = RoundedAverage(u2, u2B);
    v2 = RoundedAverage(v2, v2B);
  }
  StoreDoubledYuy2(d8, luma, between, u2, v2, dst);
}

// A strip with its last pixel pair repeated after it as its own right
// neighbours (36 bytes), so it reads nothing beyond itself.
HWY_INLINE const uint8_t* EdgeStrip(const uint8_t* p, uint8_t* copy) {
  std::memcpy(copy, p, kStripBytes);
  copy[kStripBytes] = copy[kStripBytes + 2] = p[kStripBytes - 2];  // Y15
  copy[kStripBytes + 1] = p[kStripBytes - 3];                      // U7
  copy[kStripBytes + 3] = p[kStripBytes - 1];                      // V7
  return copy;
}

template <bool kAverage, bool kAdjust>
void Line(const uint8_t* row, const uint8_t* below, uint8_t* dst, size_t strips,
          bool endsAtEdge, const ReadAdjust& a) {
  const size_t ordinary = endsAtEdge ? strips - 1 : strips;
  // 16 luma lanes of d8 per strip.
  ForGroups<16>(ordinary, [&](auto d8, size_t s) {
    DoubledStrips<kAverage, kAdjust, true>(d8, row + kStripBytes * s,
                                           kAverage ? below + kStripBytes * s : nullptr, a,
                                           dst + 64 * s);
  });
  if (!endsAtEdge) return;
  const size_t last = strips - 1;
  alignas(16) uint8_t rowCopy[kStripBytes + 4], belowCopy[kStripBytes + 4];
  DoubledStrips<kAverage, kAdjust, false>(
      hn::CappedTag<uint8_t, 16>(), EdgeStrip(row + kStripBytes * last, rowCopy),
      kAverage ? EdgeStrip(below + kStripBytes * last, belowCopy) : nullptr, a, dst + 64 * last);
}

// Source row doubled into `keep` (scratch), then copied to `line`, and
// averaged with the kept doubled row above into `between` when there is
// one. The stored layout is a fixed byte selection of the doubled samples,
// so averaging stored bytes equals averaging samples before the store.
template <class D8>
HWY_INLINE void EmitKept(D8 d8, const uint8_t* keep, const uint8_t* above, uint8_t* between,
                         uint8_t* line) {
  const size_t n = hn::Lanes(d8);
  for (size_t k = 0; k < 4; ++k) {
    const auto h = hn::LoadU(d8, keep + k * n);
    hn::StoreU(h, d8, line + k * n);
    if (above) hn::StoreU(RoundedAverage(hn::LoadU(d8, above + k * n), h), d8, between + k * n);
  }
}

template <bool kAdjust>
void RowKept(const uint8_t* row, const uint8_t* above, uint8_t* between, uint8_t* line,
             uint8_t* keep, size_t strips, bool endsAtEdge, const ReadAdjust& a) {
  auto strip = [&](auto d8, const uint8_t* src, size_t s, auto fromNextStrip) {
    hn::Vec<decltype(d8)> luma, mid, u2, v2;
    DoublePackedRow<kAdjust, decltype(fromNextStrip)::value>(d8, src, a, luma, mid, u2, v2);
    StoreDoubledYuy2(d8, luma, mid, u2, v2, keep + 64 * s);
    EmitKept(d8, keep + 64 * s, above ? above + 64 * s : nullptr, between + 64 * s,
             line + 64 * s);
  };
  const size_t ordinary = endsAtEdge ? strips - 1 : strips;
  ForGroups<16>(ordinary, [&](auto d8, size_t s) {
    strip(d8, row + kStripBytes * s, s, std::true_type());
  });
  if (!endsAtEdge) return;
  alignas(16) uint8_t rowCopy[kStripBytes + 4];
  strip(hn::CappedTag<uint8_t, 16>(), EdgeStrip(row + kStripBytes * (strips - 1), rowCopy),
        strips - 1, std::false_type());
}

template <bool kAdjust>
void LineAdjusting(const uint8_t* row, const uint8_t* below, uint8_t* dst, size_t strips,
                   bool endsAtEdge, const ReadAdjust& a) {
  if (below) return Line<true, kAdjust>(row, below, dst, strips, endsAtEdge, a);
  Line<false, kAdjust>(row, below, dst, strips, endsAtEdge, a);
}

void PackedDoubledLineToYuy2(const uint8_t* row, const uint8_t* below, uint8_t* dst,
                             size_t strips, bool endsAtEdge, const Adjustment* adjust) {
  if (!adjust) return LineAdjusting<false>(row, below, dst, strips, endsAtEdge, ReadAdjust{});
  const AdjustmentLookup own(*adjust);
  LineAdjusting<true>(row, below, dst, strips, endsAtEdge, ReadAdjust{&own, &own.v, &own.u});
}

void PackedDoubledRowKept(const uint8_t* row, const uint8_t* above, uint8_t* between,
                          uint8_t* line, uint8_t* keep, size_t strips, bool endsAtEdge,
                          const Adjustment* adjust) {
  if (!adjust) return RowKept<false>(row, above, between, line, keep, strips, endsAtEdge, {});
  const AdjustmentLookup own(*adjust);
  RowKept<true>(row, above, between, line, keep, strips, endsAtEdge,
                ReadAdjust{&own, &own.v, &own.u});
}

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace yuvblit {

HWY_EXPORT(PackedDoubledLineToYuy2);
HWY_EXPORT(PackedDoubledRowKept);

void packed_doubled_line_to_yuy2(const uint8_t* row, const uint8_t* below, uint8_t* dst,
                                 size_t strips, bool endsAtEdge, const Adjustment* adjust) {
  HWY_DYNAMIC_DISPATCH(PackedDoubledLineToYuy2)(row, below, dst, strips, endsAtEdge, adjust);
}

void packed_doubled_row_kept(const uint8_t* row, const uint8_t* above, uint8_t* between,
                             uint8_t* line, uint8_t* keep, size_t strips, bool endsAtEdge,
                             const Adjustment* adjust) {
  HWY_DYNAMIC_DISPATCH(PackedDoubledRowKept)(row, above, between, line, keep, strips, endsAtEdge,
                                             adjust);
}

}  // namespace yuvblit
#endif  // HWY_ONCE
