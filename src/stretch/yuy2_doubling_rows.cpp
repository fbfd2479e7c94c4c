// Vector row operations of the planar-to-YUY2 doubling kernels.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "stretch/yuy2_doubling_rows.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep

#include <cstring>
#include <type_traits>

#include "hwy/highway.h"
#include "adjust/adjust-inl.h"
#include "adjust/yuy2-inl.h"
#include "frame/groups-inl.h"
#include "stretch/doubling-inl.h"
#include "stretch/yuy2_doubling-inl.h"
#include "stretch/yuy2_doubling_rows.h"

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// A group is 16 luma lanes: 8 U and 8 V.
constexpr size_t kLumaPerGroup = 16;
constexpr size_t kChromaPerGroup = 8;

template <VerticalMix kMix>
using Mix = std::integral_constant<VerticalMix, kMix>;

// Calls body(Mix<m>()) so that the loops inside are compiled per mix.
template <class Body>
HWY_INLINE void WithMix(VerticalMix m, Body&& body) {
  switch (m) {
    case VerticalMix::kRow: return body(Mix<VerticalMix::kRow>());
    case VerticalMix::kAverage: return body(Mix<VerticalMix::kAverage>());
    case VerticalMix::kFourTap: return body(Mix<VerticalMix::kFourTap>());
  }
}

// Samples at byte `at` of a line of one plane, as its mix makes them.
template <VerticalMix kMix, class D8>
HWY_INLINE hn::Vec<D8> LoadMixed(D8 d8, const LineTaps& t, size_t at) {
  if constexpr (kMix == VerticalMix::kRow) {
    return hn::LoadU(d8, t.row + at);
  } else if constexpr (kMix == VerticalMix::kAverage) {
    return RoundedAverage(hn::LoadU(d8, t.row + at), hn::LoadU(d8, t.below + at));
  } else {
    return FourTap(d8, hn::LoadU(d8, t.above + at), hn::LoadU(d8, t.row + at),
                   hn::LoadU(d8, t.below + at), hn::LoadU(d8, t.below2 + at));
  }
}

// U and V samples at byte `at` of their rows side by side: U in the lower
// half of a d8 vector, V in the upper, so one vector operation serves both.
template <class D8>
HWY_INLINE hn::Vec<D8> LoadChromaPair(D8 d8, const uint8_t* u, const uint8_t* v, size_t at) {
  const hn::Half<D8> dh;
  return hn::Combine(d8, hn::LoadU(dh, v + at), hn::LoadU(dh, u + at));
}

// ------------------------------------------------------------------ 1X2

// A line's U and V samples (half the lanes of d8 each). The four-tap
// filter runs on both planes at once.
template <VerticalMix kMix, class D8, class DH>
HWY_INLINE void LoadMixedChroma(D8 d8, DH dh, const LineTaps& u, const LineTaps& v, size_t at,
                                hn::Vec<DH>& mixedU, hn::Vec<DH>& mixedV) {
  if constexpr (kMix == VerticalMix::kFourTap) {
    const auto mixed = FourTap(d8, LoadChromaPair(d8, u.above, v.above, at),
                               LoadChromaPair(d8, u.row, v.row, at),
                               LoadChromaPair(d8, u.below, v.below, at),
                               LoadChromaPair(d8, u.below2, v.below2, at));
    mixedU = hn::LowerHalf(dh, mixed);
    mixedV = hn::UpperHalf(dh, mixed);
  } else {
    mixedU = LoadMixed<kMix>(dh, u, at);
    mixedV = LoadMixed<kMix>(dh, v, at);
  }
}

// The row operations are flattened so that the per-mix loops are inlined
// whole, and work on local copies of the taps: stores through byte
// pointers could otherwise alias them and force reloads every group.

HWY_FLATTEN void MixedLineToYuy2(const LineTaps& yRows, const LineTaps& uRows,
                                 const LineTaps& vRows, uint8_t* dst, size_t groups) {
  const LineTaps y = yRows, u = uRows, v = vRows;
  WithMix(y.mix, [&](auto lumaMix) {
    WithMix(u.mix, [&](auto chromaMix) {
      constexpr VerticalMix kLuma = decltype(lumaMix)::value;
      constexpr VerticalMix kChroma = decltype(chromaMix)::value;
      ForGroups<kLumaPerGroup>(groups, [&](auto d8, size_t g) {
        const hn::Repartition<int16_t, decltype(d8)> d16;
        const hn::Rebind<uint8_t, decltype(d16)> dh;
        hn::Vec<decltype(dh)> cu, cv;
        LoadMixedChroma<kChroma>(d8, dh, u, v, kChromaPerGroup * g, cu, cv);
        hn::Vec<decltype(d16)> even, odd;
        SplitEvenOdd(d8, LoadMixed<kLuma>(d8, y, kLumaPerGroup * g), even, odd);
        StoreYuy2(d16, even, hn::PromoteTo(d16, cu), odd, hn::PromoteTo(d16, cv),
                  dst + 2 * kLumaPerGroup * g);
      });
    });
  });
}

// With `lumaAsIsOut` set, each group is also stored there with the luma of
// yRows.row as it is: the two lines share the chroma, which is mixed and
// looked up once.
HWY_FLATTEN void MixedLineToYuy2Adjusted(const LineTaps& yRows, const LineTaps& uRows,
                                         const LineTaps& vRows, uint8_t* lumaAsIsOut,
                                         uint8_t* dst, size_t groups, const Adjustment a) {
  const LineTaps y = yRows, u = uRows, v = vRows;
  const AdjustmentLookup lookup(a);
  WithMix(y.mix, [&](auto lumaMix) {
    WithMix(u.mix, [&](auto chromaMix) {
      WithFlag(lumaAsIsOut != nullptr, [&](auto pair) {
        constexpr VerticalMix kLuma = decltype(lumaMix)::value;
        constexpr VerticalMix kChroma = decltype(chromaMix)::value;
        ForGroups<kLumaPerGroup>(groups, [&](auto d8, size_t g) {
          const hn::Rebind<uint8_t, hn::Repartition<int16_t, decltype(d8)>> dh;
          hn::Vec<decltype(dh)> cu, cv;
          LoadMixedChroma<kChroma>(d8, dh, u, v, kChromaPerGroup * g, cu, cv);
          if constexpr (decltype(pair)::value) {
            StoreAdjustedYuy2(d8, hn::LoadU(d8, y.row + kLumaPerGroup * g), cu, cv, lookup,
                              lumaAsIsOut + 2 * kLumaPerGroup * g);
          }
          StoreAdjustedYuy2(d8, LoadMixed<kLuma>(d8, y, kLumaPerGroup * g), cu, cv, lookup,
                            dst + 2 * kLumaPerGroup * g);
        });
      });
    });
  });
}

// ------------------------------------------------------------------ 2X2
//
// Chroma is handled as U and V side by side (LoadChromaPair), so the
// doubling and adjusting of both planes share each vector operation.

// Adjusts a vector of U and V side by side: the lower half with `u`, the
// upper half with `v`, and, when `nextTakesV`, also the last U of every
// group (a right neighbour read from the next group) with `v`.
template <class D8>
HWY_INLINE hn::Vec<D8> AdjustChromaPair(D8 d8, hn::Vec<D8> s, const SampleLookup& u,
                                        const SampleLookup& v, bool nextTakesV) {
  const size_t half = hn::Lanes(d8) / 2;
  if constexpr (SampleLookup::lookup) {
    const auto lane = hn::Iota(d8, 0);
    auto takesV = hn::Gt(lane, hn::Set(d8, static_cast<uint8_t>(half - 1)));
    if (nextTakesV) {
      const auto last = hn::Set(d8, uint8_t{kChromaPerGroup - 1});
      takesV = hn::Or(takesV, hn::Eq(hn::And(lane, last), last));
    }
    return hn::IfThenElse(takesV, LookupBytes(d8, s, v), LookupBytes(d8, s, u));
  }
  // Widened lane j holds bytes 2j (even) and 2j + 1 (odd); the last U of
  // a group is odd.
  const hn::Repartition<int16_t, D8> d16;
  hn::Vec<decltype(d16)> even, odd;
  SplitEvenOdd(d8, s, even, odd);
  const auto lane = hn::Iota(d16, 0);
  const auto upper = hn::Gt(lane, hn::Set(d16, static_cast<int16_t>(half / 2 - 1)));
  auto oddTakesV = upper;
  if (nextTakesV) {
    const auto last = hn::Set(d16, int16_t{kChromaPerGroup / 2 - 1});
    oddTakesV = hn::Or(upper, hn::Eq(hn::And(lane, last), last));
  }
  const auto gu = hn::Set(d16, u.adjust.gain), gv = hn::Set(d16, v.adjust.gain);
  const auto ou = hn::Set(d16, u.adjust.offset), ov = hn::Set(d16, v.adjust.offset);
  even = AdjustWide(d16, even, hn::IfThenElse(upper, gv, gu), hn::IfThenElse(upper, ov, ou));
  odd = AdjustWide(d16, odd, hn::IfThenElse(oddTakesV, gv, gu),
                   hn::IfThenElse(oddTakesV, ov, ou));
  return JoinEvenOdd(d16, even, odd);
}

// One source row of luma doubled horizontally: its samples, and the
// rounded averages with their right neighbours (read at p + 1).
template <bool kAdjust, class D8>
HWY_INLINE void DoubleLumaRow(D8 d8, const uint8_t* p, const AdjustmentLookup* a,
                              hn::Vec<D8>& samples, hn::Vec<D8>& between) {
  samples = hn::LoadU(d8, p);
  auto right = hn::LoadU(d8, p + 1);
  if constexpr (kAdjust) {
    samples = AdjustBytes(d8, samples, a->luma);
    right = AdjustBytes(d8, right, a->luma);
  }
  between = RoundedAverage(samples, right);
}

// The same for U and V side by side.
template <bool kAdjust, class D8>
HWY_INLINE void DoubleChromaRow(D8 d8, const uint8_t* u, const uint8_t* v,
                                const AdjustmentLookup* a, bool edge, hn::Vec<D8>& samples,
                                hn::Vec<D8>& between) {
  samples = LoadChromaPair(d8, u, v, 0);
  auto right = LoadChromaPair(d8, u, v, 1);
  if constexpr (kAdjust) {
    samples = AdjustChromaPair(d8, samples, a->u, a->v, false);
    // The U neighbour read from the next group takes the V adjustment;
    // the edge copies repeat a U sample, which keeps the U adjustment.
    right = AdjustChromaPair(d8, right, a->u, a->v, !edge);
  }
  between = RoundedAverage(samples, right);
}

// A line's doubled luma (or chroma pair): one row, or the average of the
// doubled row and the doubled row below.
template <VerticalMix kMix, class D8, class DoubleRow>
HWY_INLINE void DoubleMixed(D8, DoubleRow double_row, hn::Vec<D8>& samples,
                            hn::Vec<D8>& between) {
  double_row(0, samples, between);
  if constexpr (kMix == VerticalMix::kAverage) {
    hn::Vec<D8> samplesBelow, betweenBelow;
    double_row(1, samplesBelow, betweenBelow);
    samples = RoundedAverage(samples, samplesBelow);
    between = RoundedAverage(between, betweenBelow);
  }
}

template <VerticalMix kLuma, VerticalMix kChroma, bool kAdjust, class D8>
HWY_INLINE void DoubledGroups(D8 d8, const LineTaps& y, const LineTaps& u, const LineTaps& v,
                              size_t g, const AdjustmentLookup* a, bool edge, uint8_t* dst) {
  const hn::Half<D8> dh;
  const size_t ly = kLumaPerGroup * g, lc = kChromaPerGroup * g;
  hn::Vec<D8> luma, between, chroma, chromaBetween;
  DoubleMixed<kLuma>(d8, [&](int below, hn::Vec<D8>& s, hn::Vec<D8>& b) {
    DoubleLumaRow<kAdjust>(d8, (below ? y.below : y.row) + ly, a, s, b);
  }, luma, between);
  DoubleMixed<kChroma>(d8, [&](int below, hn::Vec<D8>& s, hn::Vec<D8>& b) {
    DoubleChromaRow<kAdjust>(d8, (below ? u.below : u.row) + lc, (below ? v.below : v.row) + lc,
                             a, edge, s, b);
  }, chroma, chromaBetween);
  StoreDoubledYuy2(
      d8, luma, between,
      DoubledChroma(d8, hn::LowerHalf(dh, chroma), hn::LowerHalf(dh, chromaBetween)),
      DoubledChroma(d8, hn::UpperHalf(dh, chroma), hn::UpperHalf(dh, chromaBetween)),
      dst + 4 * kLumaPerGroup * g);
}

// The rows a line's last group reads, copied with their last sample
// repeated as its own right neighbour, so the group reads nothing beyond
// the row. `rows` holds two rows of up to 32 bytes.
HWY_INLINE LineTaps EdgeTaps(const LineTaps& t, size_t at, size_t n, uint8_t (*rows)[32]) {
  const bool below = t.mix == VerticalMix::kAverage;
  for (int r = 0; r < (below ? 2 : 1); ++r) {
    std::memcpy(rows[r], (r ? t.below : t.row) + at, n);
    rows[r][n] = rows[r][n - 1];
  }
  return LineTaps{nullptr, rows[0], rows[1], nullptr, t.mix};
}

// Calls body(Mix<m>()) for the two mixes a doubled line uses.
template <class Body>
HWY_INLINE void WithRowOrAverage(VerticalMix m, Body&& body) {
  if (m == VerticalMix::kAverage) return body(Mix<VerticalMix::kAverage>());
  return body(Mix<VerticalMix::kRow>());
}

// `groups` - 1 groups with neighbours from the source, then the last group
// from edge copies.
template <bool kAdjust>
HWY_INLINE void DoubledLine(const LineTaps y, const LineTaps u, const LineTaps v, uint8_t* dst,
                            size_t groups, const AdjustmentLookup* a) {
  WithRowOrAverage(y.mix, [&](auto lumaMix) {
    WithRowOrAverage(u.mix, [&](auto chromaMix) {
      constexpr VerticalMix kLuma = decltype(lumaMix)::value;
      constexpr VerticalMix kChroma = decltype(chromaMix)::value;
      ForGroups<kLumaPerGroup>(groups - 1, [&](auto d8, size_t g) {
        DoubledGroups<kLuma, kChroma, kAdjust>(d8, y, u, v, g, a, false, dst);
      });
      const size_t last = groups - 1;
      alignas(32) uint8_t ly[2][32], lu[2][32], lv[2][32];
      const hn::CappedTag<uint8_t, kLumaPerGroup> d8;
      DoubledGroups<kLuma, kChroma, kAdjust>(
          d8, EdgeTaps(y, kLumaPerGroup * last, kLumaPerGroup, ly),
          EdgeTaps(u, kChromaPerGroup * last, kChromaPerGroup, lu),
          EdgeTaps(v, kChromaPerGroup * last, kChromaPerGroup, lv), 0, a, true,
          dst + 4 * kLumaPerGroup * last);
    });
  });
}

HWY_FLATTEN void DoubledLineToYuy2(const LineTaps& yRows, const LineTaps& uRows,
                                   const LineTaps& vRows, uint8_t* dst, size_t groups) {
  DoubledLine<false>(yRows, uRows, vRows, dst, groups, nullptr);
}

HWY_FLATTEN void DoubledLineToYuy2Adjusted(const LineTaps& yRows, const LineTaps& uRows,
                                           const LineTaps& vRows, uint8_t* dst, size_t groups,
                                           const Adjustment a) {
  const AdjustmentLookup lookup(a);
  DoubledLine<true>(yRows, uRows, vRows, dst, groups, &lookup);
}

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace yuvblit {

HWY_EXPORT(MixedLineToYuy2);
HWY_EXPORT(MixedLineToYuy2Adjusted);
HWY_EXPORT(DoubledLineToYuy2);
HWY_EXPORT(DoubledLineToYuy2Adjusted);

void mixed_line_to_yuy2(const LineTaps& y, const LineTaps& u, const LineTaps& v, uint8_t* dst,
                        size_t groups) {
  HWY_DYNAMIC_DISPATCH(MixedLineToYuy2)(y, u, v, dst, groups);
}
// Adjustments are passed by value: byte stores may alias any object, and a
// value in registers need not be reloaded after each store.
void mixed_line_to_yuy2_adjusted(const LineTaps& y, const LineTaps& u, const LineTaps& v,
                                 uint8_t* dst, size_t groups, const Adjustment& a) {
  HWY_DYNAMIC_DISPATCH(MixedLineToYuy2Adjusted)(y, u, v, nullptr, dst, groups, a);
}
void mixed_line_pair_to_yuy2_adjusted(const LineTaps& y, const LineTaps& u, const LineTaps& v,
                                      uint8_t* lumaAsIsOut, uint8_t* dst, size_t groups,
                                      const Adjustment& a) {
  HWY_DYNAMIC_DISPATCH(MixedLineToYuy2Adjusted)(y, u, v, lumaAsIsOut, dst, groups, a);
}
void doubled_line_to_yuy2(const LineTaps& y, const LineTaps& u, const LineTaps& v,
                          uint8_t* dst, size_t groups) {
  HWY_DYNAMIC_DISPATCH(DoubledLineToYuy2)(y, u, v, dst, groups);
}
void doubled_line_to_yuy2_adjusted(const LineTaps& y, const LineTaps& u, const LineTaps& v,
                                   uint8_t* dst, size_t groups, const Adjustment& a) {
  HWY_DYNAMIC_DISPATCH(DoubledLineToYuy2Adjusted)(y, u, v, dst, groups, a);
}

}  // namespace yuvblit
#endif  // HWY_ONCE
