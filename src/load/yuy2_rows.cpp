// Vector row operations from planar rows to YUY2.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "load/yuy2_rows.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep

#include "hwy/highway.h"
#include "adjust/adjust-inl.h"
#include "frame/groups-inl.h"
#include "load/yuy2_rows.h"

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// A group is 8 chroma lanes: 16 luma bytes in, 32 YUY2 bytes out.
constexpr size_t kChromaPerGroup = 8;

void PlanarPairToYuy2(const uint8_t* y0, const uint8_t* y1, const uint8_t* u,
                      const uint8_t* v, uint8_t* d0, uint8_t* d1,
                      size_t groups) {
  ForGroups<kChromaPerGroup>(groups, [&](auto d, size_t g) {
    const size_t n = hn::Lanes(d);
    const auto cu = hn::LoadU(d, u + 8 * g);
    const auto cv = hn::LoadU(d, v + 8 * g);
    hn::Vec<decltype(d)> ye, yo;
    hn::LoadInterleaved2(d, y0 + 16 * g, ye, yo);
    hn::StoreInterleaved4(ye, cu, yo, cv, d, d0 + 32 * g);

    // Second row: bytes 0..7 of each 32-byte group keep the surface's bytes.
    hn::LoadInterleaved2(d, y1 + 16 * g, ye, yo);
    HWY_ALIGN uint8_t packed[4 * HWY_MAX_BYTES];
    hn::StoreInterleaved4(ye, cu, yo, cv, d, packed);
    for (size_t i = 0; i < 4; ++i) {
      const hn::RebindToSigned<decltype(d)> di;
      const auto index = hn::BitCast(
          di, hn::And(hn::Iota(d, static_cast<uint8_t>(i * n)),
                      hn::Set(d, uint8_t{31})));
      const auto written =
          hn::RebindMask(d, hn::Gt(index, hn::Set(di, int8_t{7})));
      hn::BlendedStore(hn::Load(d, packed + i * n), written, d,
                       d1 + 32 * g + i * n);
    }
  });
}

void PlanarRowToYuy2Adjusted(const uint8_t* y, const uint8_t* u,
                             const uint8_t* v, uint8_t* dst, size_t groups,
                             const Adjustment& a) {
  ForGroups<kChromaPerGroup>(groups, [&](auto d, size_t g) {
    const auto cu = AdjustBytes(d, hn::LoadU(d, u + 8 * g), a.u);
    const auto cv = AdjustBytes(d, hn::LoadU(d, v + 8 * g), a.v);
    hn::Vec<decltype(d)> ye, yo;
    hn::LoadInterleaved2(d, y + 16 * g, ye, yo);
    hn::StoreInterleaved4(AdjustBytes(d, ye, a.luma), cu,
                          AdjustBytes(d, yo, a.luma), cv, d, dst + 32 * g);
  });
}

void PlanarRowToYuy2Mono(const uint8_t* y, uint8_t* dst, size_t groups,
                         const Adjustment& a) {
  ForGroups<kChromaPerGroup>(groups, [&](auto d, size_t g) {
    const auto grey = hn::Set(d, uint8_t{0x80});
    hn::Vec<decltype(d)> ye, yo;
    hn::LoadInterleaved2(d, y + 16 * g, ye, yo);
    hn::StoreInterleaved4(AdjustBytes(d, ye, a.luma), grey,
                          AdjustBytes(d, yo, a.luma), grey, d, dst + 32 * g);
  });
}

// Half width: a group is 16 luma in, 8 pixels (16 bytes) out, i.e. 4 lanes
// per output stream.
void PlanarRowToHalfYuy2(const uint8_t* y, const uint8_t* u, const uint8_t* v,
                         uint8_t* dst, size_t groups, const Adjustment& a) {
  ForGroups<4>(groups, [&](auto d, size_t g) {
    hn::Vec<decltype(d)> y0, y1, y2, y3, c0, c1;
    hn::LoadInterleaved4(d, y + 16 * g, y0, y1, y2, y3);
    const auto evenPixels = AdjustBytes(d, hn::AverageRound(y0, y1), a.luma);
    const auto oddPixels = AdjustBytes(d, hn::AverageRound(y2, y3), a.luma);
    hn::LoadInterleaved2(d, u + 8 * g, c0, c1);
    const auto cu = AdjustBytes(d, hn::AverageRound(c0, c1), a.u);
    hn::LoadInterleaved2(d, v + 8 * g, c0, c1);
    const auto cv = AdjustBytes(d, hn::AverageRound(c0, c1), a.v);
    hn::StoreInterleaved4(evenPixels, cu, oddPixels, cv, d, dst + 16 * g);
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

void planar_pair_to_yuy2(const uint8_t* y0, const uint8_t* y1,
                         const uint8_t* u, const uint8_t* v, uint8_t* d0,
                         uint8_t* d1, size_t groups) {
  HWY_DYNAMIC_DISPATCH(PlanarPairToYuy2)(y0, y1, u, v, d0, d1, groups);
}
void planar_row_to_yuy2_adjusted(const uint8_t* y, const uint8_t* u,
                                 const uint8_t* v, uint8_t* d, size_t groups,
                                 const Adjustment& a) {
  HWY_DYNAMIC_DISPATCH(PlanarRowToYuy2Adjusted)(y, u, v, d, groups, a);
}
void planar_row_to_yuy2_mono(const uint8_t* y, uint8_t* d, size_t groups,
                             const Adjustment& a) {
  HWY_DYNAMIC_DISPATCH(PlanarRowToYuy2Mono)(y, d, groups, a);
}
void planar_row_to_half_yuy2(const uint8_t* y, const uint8_t* u,
                             const uint8_t* v, uint8_t* d, size_t groups,
                             const Adjustment& a) {
  HWY_DYNAMIC_DISPATCH(PlanarRowToHalfYuy2)(y, u, v, d, groups, a);
}

}  // namespace yuvblit
#endif  // HWY_ONCE
