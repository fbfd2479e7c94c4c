// Vector row operations from planar rows to YUY2 (packing: adjust/yuy2-inl.h).
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "load/yuy2_rows.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep

#include "hwy/highway.h"
#include "adjust/adjust-inl.h"
#include "adjust/yuy2-inl.h"
#include "frame/groups-inl.h"
#include "load/yuy2_rows.h"

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// A full-width group is 16 luma lanes: 8 U, 8 V, 32 bytes out.
constexpr size_t kLumaPerGroup = 16;

void PlanarPairToYuy2(const uint8_t* y0, const uint8_t* y1, const uint8_t* u,
                      const uint8_t* v, uint8_t* d0, uint8_t* d1, size_t groups) {
  ForGroups<kLumaPerGroup>(groups, [&](auto d8, size_t g) {
    const hn::Repartition<int16_t, decltype(d8)> d16;
    const size_t n = hn::Lanes(d8);
    const auto cu = LoadChroma(d8, u + 8 * g);
    const auto cv = LoadChroma(d8, v + 8 * g);
    hn::Vec<decltype(d16)> even, odd;
    SplitEvenOdd(d8, hn::LoadU(d8, y0 + 16 * g), even, odd);
    StoreYuy2(d16, even, cu, odd, cv, d0 + 32 * g);

    // Second row: bytes 0..7 of each 32-byte group keep the surface's bytes.
    SplitEvenOdd(d8, hn::LoadU(d8, y1 + 16 * g), even, odd);
    HWY_ALIGN uint8_t packed[2 * HWY_MAX_BYTES];
    StoreYuy2(d16, even, cu, odd, cv, packed);
    const hn::RebindToSigned<decltype(d8)> di;
    for (size_t i = 0; i < 2; ++i) {
      const auto index = hn::BitCast(
          di, hn::And(hn::Iota(d8, static_cast<uint8_t>(i * n)), hn::Set(d8, uint8_t{31})));
      // Limited to the tag's lanes: on scalable vectors a comparison also
      // sets lanes beyond a capped tag, and the store would write them.
      const auto written = hn::And(hn::RebindMask(d8, hn::Gt(index, hn::Set(di, int8_t{7}))),
                                   hn::FirstN(d8, n));
      hn::BlendedStore(hn::Load(d8, packed + i * n), written, d8, d1 + 32 * g + i * n);
    }
  });
}

// One row, or with y1 set a second row over the same chroma into d1: the
// chroma is loaded and looked up once for both.
void PlanarRowToYuy2Adjusted(const uint8_t* y, const uint8_t* y1, const uint8_t* u,
                             const uint8_t* v, uint8_t* dst, uint8_t* d1, size_t groups,
                             const Adjustment a) {
  const AdjustmentLookup lookup(a);
  WithFlag(y1 != nullptr, [&](auto second) {
    ForGroups<kLumaPerGroup>(groups, [&](auto d8, size_t g) {
      const hn::Rebind<uint8_t, hn::Repartition<int16_t, decltype(d8)>> dh;
      const auto cu = hn::LoadU(dh, u + 8 * g), cv = hn::LoadU(dh, v + 8 * g);
      StoreAdjustedYuy2(d8, hn::LoadU(d8, y + 16 * g), cu, cv, lookup, dst + 32 * g);
      if constexpr (decltype(second)::value) {
        StoreAdjustedYuy2(d8, hn::LoadU(d8, y1 + 16 * g), cu, cv, lookup, d1 + 32 * g);
      }
    });
  });
}

void PlanarRowToYuy2Mono(const uint8_t* y, uint8_t* dst, size_t groups, const Adjustment a) {
  const SampleLookup luma(a.luma);
  ForGroups<kLumaPerGroup>(groups, [&](auto d8, size_t g) {
    const hn::Repartition<int16_t, decltype(d8)> d16;
    const auto grey = hn::Set(d16, 0x80);
    hn::Vec<decltype(d16)> even, odd;
    SplitEvenOddAdjusted(d8, hn::LoadU(d8, y + 16 * g), luma, even, odd);
    StoreYuy2(d16, even, grey, odd, grey, dst + 32 * g);
  });
}

// Half width: 16 luma in, 8 pixels (16 bytes) out per group. In 16-bit
// lanes the luma averages come out in pixel order; seen as 32-bit lanes each
// holds the two pixels of an output pair, and the averaged U and V of that
// pair go into the other two bytes.
void PlanarRowToHalfYuy2(const uint8_t* y, const uint8_t* u, const uint8_t* v,
                         uint8_t* dst, size_t groups, const Adjustment a) {
  ForGroups<kLumaPerGroup>(groups, [&](auto d8, size_t g) {
    const hn::Repartition<int16_t, decltype(d8)> d16;
    const hn::Repartition<uint32_t, decltype(d8)> d32;
    const auto one = hn::Set(d16, 1);
    hn::Vec<decltype(d16)> even, odd;
    SplitEvenOdd(d8, hn::LoadU(d8, y + 16 * g), even, odd);
    const auto luma =
        AdjustWide(d16, hn::ShiftRight<1>(hn::Add(hn::Add(even, odd), one)), a.luma);

    // Pairwise chroma averages in the low 16 bits of 32-bit lanes.
    auto average = [&](const uint8_t* p) {
      const auto c = hn::BitCast(d32, LoadChroma(d8, p));
      const auto sum = hn::Add(hn::And(c, hn::Set(d32, 0xFFFFu)), hn::ShiftRight<16>(c));
      return hn::ShiftRight<1>(hn::Add(sum, hn::Set(d32, 1u)));
    };
    const auto uv = hn::BitCast(d16, hn::Or(average(u + 8 * g),
                                            hn::ShiftLeft<16>(average(v + 8 * g))));
    const auto gain = hn::Set(d16, a.u.gain);
    const auto offsets = hn::BitCast(
        d16, hn::Set(d32, static_cast<uint16_t>(a.u.offset) |
                              static_cast<uint32_t>(static_cast<uint16_t>(a.v.offset)) << 16));
    const auto chroma = AdjustWide(d16, uv, gain, offsets);
    const auto out = hn::Or(hn::BitCast(d32, luma), hn::ShiftLeft<8>(hn::BitCast(d32, chroma)));
    hn::StoreU(hn::BitCast(d8, out), d8, dst + 16 * g);
  });
}

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace yuvblit {

HWY_EXPORT(PlanarPairToYuy2);
HWY_EXPORT(PlanarRowToYuy2Adjusted);
HWY_EXPORT(PlanarRowToYuy2Mono);
HWY_EXPORT(PlanarRowToHalfYuy2);

// Adjustments are passed by value: byte stores may alias any object, and a
// value in registers need not be reloaded after each store.
void planar_pair_to_yuy2(const uint8_t* y0, const uint8_t* y1, const uint8_t* u,
                         const uint8_t* v, uint8_t* d0, uint8_t* d1, size_t groups) {
  HWY_DYNAMIC_DISPATCH(PlanarPairToYuy2)(y0, y1, u, v, d0, d1, groups);
}
void planar_row_to_yuy2_adjusted(const uint8_t* y, const uint8_t* u, const uint8_t* v,
                                 uint8_t* d, size_t groups, const Adjustment& a) {
  HWY_DYNAMIC_DISPATCH(PlanarRowToYuy2Adjusted)(y, nullptr, u, v, d, nullptr, groups, a);
}
void planar_rows_to_yuy2_adjusted(const uint8_t* y0, const uint8_t* y1, const uint8_t* u,
                                  const uint8_t* v, uint8_t* d0, uint8_t* d1, size_t groups,
                                  const Adjustment& a) {
  HWY_DYNAMIC_DISPATCH(PlanarRowToYuy2Adjusted)(y0, y1, u, v, d0, d1, groups, a);
}
void planar_row_to_yuy2_mono(const uint8_t* y, uint8_t* d, size_t groups,
                             const Adjustment& a) {
  HWY_DYNAMIC_DISPATCH(PlanarRowToYuy2Mono)(y, d, groups, a);
}
void planar_row_to_half_yuy2(const uint8_t* y, const uint8_t* u, const uint8_t* v,
                             uint8_t* d, size_t groups, const Adjustment& a) {
  HWY_DYNAMIC_DISPATCH(PlanarRowToHalfYuy2)(y, u, v, d, groups, a);
}

}  // namespace yuvblit
#endif  // HWY_ONCE
