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
// are all flat skip the search.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "stretch/edge_directed_rows.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep

#include <type_traits>

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

// The edge-directed samples between rows a and b at positions 0 ..
// Lanes(d8) - 1 of the pointers, which start a sub-group. Reads a and b at
// positions -2 .. Lanes(d8) + 4.
template <class D8>
HWY_INLINE hn::Vec<D8> EdgeDirected(D8 d8, const uint8_t* a, const uint8_t* b) {
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

// One stretch of a line: Lanes(d8) pixels from pixel p on. Interpolated
// planes (kLuma, kChroma: made between a row and the row below) take the
// plain vertical average, or the edge-directed one where `directed`. With
// kPair, the stretch is stored at lumaAsIsOut too with the luma of rows.y
// as it is.
template <bool kLuma, bool kChroma, bool kPair, class D8>
HWY_INLINE void LineChunk(D8 d8, const InterpolatedLine& r, size_t p, bool directed,
                          const AdjustmentLookup& lookup, uint8_t* lumaAsIsOut, uint8_t* out) {
  const hn::Rebind<uint8_t, hn::Repartition<int16_t, D8>> dc;  // chroma of those pixels
  auto plane = [&](auto d, auto interpolated, const uint8_t* row, const uint8_t* below,
                   size_t x) {
    if constexpr (!decltype(interpolated)::value) {
      return hn::LoadU(d, row + x);
    } else {
      if (!directed) return RoundedAverage(hn::LoadU(d, row + x), hn::LoadU(d, below + x));
      return EdgeDirected(d, row + x, below + x);
    }
  };
  using Chroma = std::integral_constant<bool, kChroma>;
  const auto u = plane(dc, Chroma(), r.u, r.uBelow, p / 2);
  const auto v = plane(dc, Chroma(), r.v, r.vBelow, p / 2);
  if constexpr (kPair) {
    StoreAdjustedYuy2(d8, hn::LoadU(d8, r.y + p), u, v, lookup, lumaAsIsOut + 2 * p);
  }
  StoreAdjustedYuy2(d8, plane(d8, std::integral_constant<bool, kLuma>(), r.y, r.yBelow, p), u,
                    v, lookup, out + 2 * p);
}

constexpr size_t kGroupPixels = 16;

// First group, middle groups, last group, for one choice of which planes
// are interpolated and whether a second line is stored. Flattened, with
// the lookup made here, so its tables stay in registers through the loop.
template <bool kLuma, bool kChroma, bool kPair>
HWY_FLATTEN void LineT(const InterpolatedLine& rowsInMemory, uint8_t* lumaAsIsOut,
                       uint8_t* out, size_t middleGroups, const Adjustment& a) {
  const InterpolatedLine rows = rowsInMemory;
  const AdjustmentLookup lookup(a);
  const hn::CappedTag<uint8_t, kGroupPixels> group;
  LineChunk<kLuma, kChroma, kPair>(group, rows, 0, false, lookup, lumaAsIsOut, out);
  ForGroups<kGroupPixels>(middleGroups, [&](auto d8, size_t g) {
    LineChunk<kLuma, kChroma, kPair>(d8, rows, kGroupPixels * (g + 1), true, lookup,
                                     lumaAsIsOut, out);
  });
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
