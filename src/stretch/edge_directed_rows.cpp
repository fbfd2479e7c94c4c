// Vector row operations of the edge-directed vertical doubler.
//
// A sample between row A (above) and row B (below) at position x is the
// rounded average along one of five directions d = -2..2: of A[x + d] and
// B[x - d]. The direction is the one whose window
// SAD(x, d) = sum over j = 0..3 of |A[x + d + j] - B[x - d + j]| is
// smallest, the more negative d winning ties. Sub-groups of four samples
// (starting at multiples of four) whose vertical activity, the sum of
// |B - A| over the sub-group, is at most 32 take the plain vertical average
// instead.
//
// A vector works on all its positions at once: absolute differences as
// bytes, window sums as 16-bit lanes for the even and the odd positions,
// each cost packed with its direction index in the low three bits so that
// one running minimum yields cost and direction. Vectors whose sub-groups
// are all flat skip the search. With AVX-512, double-block SADs make the
// window sums and byte permutes gather the chosen samples (EdgeDirected512).
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "stretch/edge_directed_rows.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep

#include "hwy/highway.h"
#include "adjust/adjust-inl.h"
#include "adjust/yuy2-inl.h"
#include "frame/groups-inl.h"
#include "stretch/edge_directed_rows.h"

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// |a - b| of unsigned bytes.
template <class V>
HWY_INLINE V AbsDiffBytes(V a, V b) {
  return hn::Sub(hn::Max(a, b), hn::Min(a, b));
}

// Byte pairs summed into 16-bit lanes and shifted left by kShift: lane k =
// (byte 2k + byte 2k+1) << kShift. On x86 one multiply-add of the bytes by
// 1 << kShift does it, a quarter of the general form; the direction search
// takes 20 of these per vector.
#if HWY_ARCH_X86 && HWY_TARGET <= HWY_SSSE3
template <int kShift>
HWY_INLINE __m128i SumBytePairs(__m128i v) {
  return _mm_maddubs_epi16(v, _mm_set1_epi8(1 << kShift));
}
#if HWY_TARGET <= HWY_AVX2
template <int kShift>
HWY_INLINE __m256i SumBytePairs(__m256i v) {
  return _mm256_maddubs_epi16(v, _mm256_set1_epi8(1 << kShift));
}
#endif
#if HWY_TARGET <= HWY_AVX3
template <int kShift>
HWY_INLINE __m512i SumBytePairs(__m512i v) {
  return _mm512_maddubs_epi16(v, _mm512_set1_epi8(1 << kShift));
}
#endif

template <int kShift, class D8>
HWY_INLINE hn::Vec<hn::Repartition<int16_t, D8>> PairSums(D8 /*d8*/, hn::Vec<D8> bytes) {
  return hn::Vec<hn::Repartition<int16_t, D8>>{SumBytePairs<kShift>(bytes.raw)};
}
#else
template <int kShift, class D8>
HWY_INLINE hn::Vec<hn::Repartition<int16_t, D8>> PairSums(D8 /*d8*/, hn::Vec<D8> bytes) {
  const hn::Repartition<uint16_t, D8> du16;
  const hn::Repartition<int16_t, D8> d16;
  const auto w = hn::BitCast(du16, bytes);
  const auto sums = hn::Add(hn::And(w, hn::Set(du16, 0xFF)), hn::ShiftRight<8>(w));
  return hn::BitCast(d16, hn::ShiftLeft<kShift>(sums));
}
#endif

// Lanes of 32 bits that are true where the sub-group of four bytes they
// cover is flat: the sum of |below - above| over it is at most 32.
template <class D8>
HWY_INLINE hn::Mask<hn::Repartition<int32_t, D8>> FlatSubGroups(D8 d8, hn::Vec<D8> above,
                                                                hn::Vec<D8> below) {
  const hn::Repartition<int32_t, D8> d32;
  const auto pairs = hn::BitCast(d32, PairSums<0>(d8, AbsDiffBytes(above, below)));
  const auto sums = hn::Add(hn::And(pairs, hn::Set(d32, 0xFFFF)), hn::ShiftRight<16>(pairs));
  return hn::Lt(sums, hn::Set(d32, 33));
}

#if HWY_TARGET == HWY_AVX3_DL
// Positions 8 .. 66 of a 64-byte stretch: the differences a window sum
// needs beyond the first eight, loaded under this mask so that nothing
// past position 68 of either row is read.
constexpr __mmask64 kUpToLastWindow = (__mmask64{1} << 59) - 1;
// Double-block SAD control that makes the sliding sums of positions 0..7 of
// every 16-byte block (dwords 0, 1, 1, 2 of the block).
constexpr int kSlidingSums = 0x94;

alignas(64) static constexpr uint8_t kPositions[64] = {
    0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21,
    22, 23, 24, 25, 26, 27, 28, 29, 30, 31, 32, 33, 34, 35, 36, 37, 38, 39, 40, 41, 42, 43,
    44, 45, 46, 47, 48, 49, 50, 51, 52, 53, 54, 55, 56, 57, 58, 59, 60, 61, 62, 63};

HWY_INLINE __m512i AbsDiff512(__m512i x, __m512i y) {
  return _mm512_sub_epi8(_mm512_max_epu8(x, y), _mm512_min_epu8(x, y));
}

// Window sums of direction d: 16-bit SAD(x, d) for positions 0..7 of every
// 16-byte block in `near` and 8..15 in `far`. The differences
// |A[x + d] - B[x - d]| are bytes; one double-block SAD against zero sums
// four of them at each of eight sliding positions.
HWY_INLINE void DirectionSads(const uint8_t* a, const uint8_t* b, int d, __m512i& near,
                              __m512i& far) {
  const __m512i zero = _mm512_setzero_si512();
  const __m512i first = AbsDiff512(_mm512_loadu_si512(a + d), _mm512_loadu_si512(b - d));
  const __m512i rest = AbsDiff512(_mm512_maskz_loadu_epi8(kUpToLastWindow, a + 8 + d),
                                  _mm512_maskz_loadu_epi8(kUpToLastWindow, b + 8 - d));
  near = _mm512_dbsad_epu8(zero, first, kSlidingSums);
  far = _mm512_dbsad_epu8(zero, rest, kSlidingSums);
}

// (SAD << 3) | i in one funnel shift.
HWY_INLINE __m512i PackedCost(__m512i sad, int i) {
  return _mm512_shldi_epi16(sad, _mm512_set1_epi16(static_cast<int16_t>(i << 13)), 3);
}

// EdgeDirected for 64 bytes. Each 64-bit lane of the SAD vectors holds the
// four positions of one sub-group, the first of them the sub-group's
// activity (its direction-0 window), so flat sub-groups are whole lanes and
// take direction index 2, the vertical average. The chosen samples
// A[x - 2 + i] and B[x + 2 - i] are gathered by byte permutes from the
// rows at -2 (positions 62..65 from a second, masked load).
HWY_INLINE __m512i EdgeDirected512(const uint8_t* a, const uint8_t* b) {
  // Where every two neighbouring sub-groups together have an activity of at
  // most 32, each of them is flat: one sum per eight bytes settles the
  // common case of a flat stretch.
  const __m512i above = _mm512_loadu_si512(a);
  const __m512i below = _mm512_loadu_si512(b);
  const __m512i flatLimit = _mm512_set1_epi64(32);
  if (_mm512_cmple_epu64_mask(_mm512_sad_epu8(above, below), flatLimit) == 0xFF) {
    return _mm512_avg_epu8(above, below);
  }
  __m512i verticalNear, verticalFar;
  DirectionSads(a, b, 0, verticalNear, verticalFar);
  const __m512i activity = _mm512_set1_epi64(0xFFFF);
  const __mmask8 flatNear =
      _mm512_cmple_epu64_mask(_mm512_and_si512(verticalNear, activity), flatLimit);
  const __mmask8 flatFar =
      _mm512_cmple_epu64_mask(_mm512_and_si512(verticalFar, activity), flatLimit);
  if ((flatNear & flatFar) == 0xFF) return _mm512_avg_epu8(above, below);
  __m512i bestNear = PackedCost(verticalNear, 2);
  __m512i bestFar = PackedCost(verticalFar, 2);
  for (int i : {0, 1, 3, 4}) {
    __m512i near, far;
    DirectionSads(a, b, i - 2, near, far);
    bestNear = _mm512_min_epu16(bestNear, PackedCost(near, i));
    bestFar = _mm512_min_epu16(bestFar, PackedCost(far, i));
  }
  const __m512i seven = _mm512_set1_epi16(7);
  const __m512i two = _mm512_set1_epi16(2);
  const __m512i indexNear = _mm512_mask_mov_epi64(_mm512_and_si512(bestNear, seven), flatNear, two);
  const __m512i indexFar = _mm512_mask_mov_epi64(_mm512_and_si512(bestFar, seven), flatFar, two);
  const __m512i index = _mm512_packus_epi16(indexNear, indexFar);
  const __m512i positions = _mm512_load_si512(kPositions);
  const __m512i fromA = _mm512_permutex2var_epi8(_mm512_loadu_si512(a - 2),
                                                 _mm512_add_epi8(positions, index),
                                                 _mm512_maskz_loadu_epi8(0xF, a + 62));
  const __m512i fromB = _mm512_permutex2var_epi8(
      _mm512_loadu_si512(b - 2),
      _mm512_sub_epi8(_mm512_add_epi8(positions, _mm512_set1_epi8(4)), index),
      _mm512_maskz_loadu_epi8(0xF, b + 62));
  return _mm512_avg_epu8(fromA, fromB);
}
#endif

// The edge-directed samples between rows a and b at positions 0 ..
// Lanes(d8) - 1 of the pointers, which start a sub-group. Reads a and b at
// positions -2 .. Lanes(d8) + 4.
template <class D8>
HWY_INLINE hn::Vec<D8> EdgeDirected(D8 d8, const uint8_t* a, const uint8_t* b) {
#if HWY_TARGET == HWY_AVX3_DL
  if constexpr (hn::MaxLanes(d8) == 64) return hn::Vec<D8>{EdgeDirected512(a, b)};
#endif
  const hn::Repartition<int16_t, D8> d16;
  const hn::Repartition<int32_t, D8> d32;
  const auto above = hn::LoadU(d8, a);
  const auto below = hn::LoadU(d8, b);
  const auto vertical = RoundedAverage(above, below);
  const auto flat = FlatSubGroups(d8, above, below);
  if (hn::AllTrue(d32, flat)) return vertical;

  // Direction i (d = i - 2): |A[x + d] - B[x - d]| for x = o .. o + n - 1
  // at o = 0..3 gives the window sums of the even positions as the pair
  // sums of o = 0 plus those of o = 2, and of the odd positions from o = 1
  // and o = 3. Cost = SAD * 8 + i, at most 8164: signed 16-bit lanes, the
  // factor 8 taken into the pair sums.
  auto bestEven = hn::Set(d16, hwy::LimitsMax<int16_t>());
  auto bestOdd = bestEven;
  for (int i = 0; i < 5; ++i) {
    const int d = i - 2;
    auto differences = [&](int o) {
      return PairSums<3>(d8,
                         AbsDiffBytes(hn::LoadU(d8, a + o + d), hn::LoadU(d8, b + o - d)));
    };
    const auto index = hn::Set(d16, static_cast<int16_t>(i));
    const auto even = hn::Or(hn::Add(differences(0), differences(2)), index);
    const auto odd = hn::Or(hn::Add(differences(1), differences(3)), index);
    bestEven = hn::Min(bestEven, even);
    bestOdd = hn::Min(bestOdd, odd);
  }
  const auto seven = hn::Set(d16, 7);
  const auto chosen = JoinEvenOdd(d16, hn::And(bestEven, seven), hn::And(bestOdd, seven));

  auto directed = RoundedAverage(hn::LoadU(d8, a - 2), hn::LoadU(d8, b + 2));
  for (int i = 1; i < 5; ++i) {
    const int d = i - 2;
    directed = hn::IfThenElse(hn::Eq(chosen, hn::Set(d8, static_cast<uint8_t>(i))),
                              RoundedAverage(hn::LoadU(d8, a + d), hn::LoadU(d8, b - d)),
                              directed);
  }
  const auto flatBytes = hn::MaskFromVec(hn::BitCast(d8, hn::VecFromMask(d32, flat)));
  return hn::IfThenElse(flatBytes, vertical, directed);
}

// The samples of one plane of a stretch: taken as they are, or
// interpolated (kInterpolated) between the row and the row below, by the
// plain vertical average or, where `directed`, the edge-directed one.
template <bool kInterpolated, class D>
HWY_INLINE hn::Vec<D> PlaneSamples(D d, const uint8_t* row, const uint8_t* below, size_t x,
                                   bool directed) {
  if constexpr (!kInterpolated) {
    return hn::LoadU(d, row + x);
  } else {
    if (!directed) return RoundedAverage(hn::LoadU(d, row + x), hn::LoadU(d, below + x));
    return EdgeDirected(d, row + x, below + x);
  }
}

// Lanes(d8) pixels from pixel p on, with their chroma u and v. Interpolated
// luma (kLuma) is made between rows.y and the row below. With kPair, the
// stretch is stored at lumaAsIsOut too with the luma of rows.y as it is.
template <bool kLuma, bool kPair, class D8, class VC>
HWY_INLINE void StoreLineChunk(D8 d8, const InterpolatedLine& r, size_t p, bool directed,
                               VC u, VC v, const AdjustmentLookup& lookup,
                               uint8_t* lumaAsIsOut, uint8_t* out) {
  if constexpr (kPair) {
    StoreAdjustedYuy2(d8, hn::LoadU(d8, r.y + p), u, v, lookup, lumaAsIsOut + 2 * p);
  }
  StoreAdjustedYuy2(d8, PlaneSamples<kLuma>(d8, r.y, r.yBelow, p, directed), u, v, lookup,
                    out + 2 * p);
}

// One stretch of a line: Lanes(d8) pixels from pixel p on, chroma
// (kChroma: interpolated) at half the width.
template <bool kLuma, bool kChroma, bool kPair, class D8>
HWY_INLINE void LineChunk(D8 d8, const InterpolatedLine& r, size_t p, bool directed,
                          const AdjustmentLookup& lookup, uint8_t* lumaAsIsOut, uint8_t* out) {
  const hn::Rebind<uint8_t, hn::Repartition<int16_t, D8>> dc;  // chroma of those pixels
  StoreLineChunk<kLuma, kPair>(d8, r, p, directed,
                               PlaneSamples<kChroma>(dc, r.u, r.uBelow, p / 2, directed),
                               PlaneSamples<kChroma>(dc, r.v, r.vBelow, p / 2, directed),
                               lookup, lumaAsIsOut, out);
}

// Twice Lanes(dc) pixels from pixel p on, whose chroma fills a whole
// vector: U and V are interpolated at the full width, the luma in two
// vectors that take a half each.
template <bool kLuma, bool kChroma, bool kPair, class DC>
HWY_INLINE void WideLineChunk(DC dc, const InterpolatedLine& r, size_t p,
                              const AdjustmentLookup& lookup, uint8_t* lumaAsIsOut,
                              uint8_t* out) {
  const hn::Half<DC> dh;
  const size_t n = hn::Lanes(dc);
  const auto u = PlaneSamples<kChroma>(dc, r.u, r.uBelow, p / 2, true);
  const auto v = PlaneSamples<kChroma>(dc, r.v, r.vBelow, p / 2, true);
  StoreLineChunk<kLuma, kPair>(dc, r, p, true, hn::LowerHalf(dh, u), hn::LowerHalf(dh, v),
                               lookup, lumaAsIsOut, out);
  StoreLineChunk<kLuma, kPair>(dc, r, p + n, true, hn::UpperHalf(dh, u),
                               hn::UpperHalf(dh, v), lookup, lumaAsIsOut, out);
}

constexpr size_t kGroupPixels = 16;

// First group, middle groups, last group, for one choice of which planes
// are interpolated and whether a second line is stored. Flattened, with
// the lookup made here, so its tables stay in registers through the loop.
// Middle groups go in runs whose chroma fills a vector where chroma is
// interpolated, then in whole luma vectors and halved widths.
template <bool kLuma, bool kChroma, bool kPair>
HWY_FLATTEN void LineT(const InterpolatedLine& rowsInMemory, uint8_t* lumaAsIsOut,
                       uint8_t* out, size_t middleGroups, const Adjustment& a) {
  const InterpolatedLine rows = rowsInMemory;
  const AdjustmentLookup lookup(a);
  const hn::CappedTag<uint8_t, kGroupPixels> group;
  LineChunk<kLuma, kChroma, kPair>(group, rows, 0, false, lookup, lumaAsIsOut, out);
  auto middle = [&](auto d8, size_t g) {
    LineChunk<kLuma, kChroma, kPair>(d8, rows, kGroupPixels * (g + 1), true, lookup,
                                     lumaAsIsOut, out);
  };
  const hn::ScalableTag<uint8_t> full;
  size_t g = 0;
  if constexpr (kChroma) {
    const size_t wide = hn::Lanes(full) / (kGroupPixels / 2);
    for (; g + wide <= middleGroups; g += wide) {
      WideLineChunk<kLuma, kChroma, kPair>(full, rows, kGroupPixels * (g + 1), lookup,
                                           lumaAsIsOut, out);
    }
  }
  const size_t perVector = hn::Lanes(full) / kGroupPixels;
  for (; g + perVector <= middleGroups; g += perVector) middle(full, g);
  ForRemainingGroups<HWY_MAX_BYTES / 2, kGroupPixels>(g, middleGroups, middle);
  LineChunk<kLuma, kChroma, kPair>(group, rows, kGroupPixels * (middleGroups + 1), false,
                                   lookup, lumaAsIsOut, out);
}

// The case is settled once per line, not tested per vector.
void Line(const InterpolatedLine& rows, uint8_t* lumaAsIsOut, uint8_t* out,
          size_t middleGroups, const Adjustment& a) {
  WithFlag(rows.yBelow != nullptr, [&](auto luma) {
    WithFlag(rows.uBelow != nullptr, [&](auto chroma) {
      WithFlag(lumaAsIsOut != nullptr, [&](auto pair) {
        LineT<decltype(luma)::value, decltype(chroma)::value, decltype(pair)::value>(
            rows, lumaAsIsOut, out, middleGroups, a);
      });
    });
  });
}

void EdgeDirectedLine(const InterpolatedLine& rows, uint8_t* out, size_t middleGroups,
                      const Adjustment a) {
  Line(rows, nullptr, out, middleGroups, a);
}

void EdgeDirectedLinePair(const InterpolatedLine& rows, uint8_t* lumaAsIsOut, uint8_t* out,
                          size_t middleGroups, const Adjustment a) {
  Line(rows, lumaAsIsOut, out, middleGroups, a);
}

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace yuvblit {

HWY_EXPORT(EdgeDirectedLine);
HWY_EXPORT(EdgeDirectedLinePair);

void edge_directed_line(const InterpolatedLine& rows, uint8_t* out, size_t middleGroups,
                        const Adjustment& a) {
  HWY_DYNAMIC_DISPATCH(EdgeDirectedLine)(rows, out, middleGroups, a);
}
void edge_directed_line_pair(const InterpolatedLine& rows, uint8_t* lumaAsIsOut, uint8_t* out,
                             size_t middleGroups, const Adjustment& a) {
  HWY_DYNAMIC_DISPATCH(EdgeDirectedLinePair)(rows, lumaAsIsOut, out, middleGroups, a);
}

}  // namespace yuvblit
#endif  // HWY_ONCE
