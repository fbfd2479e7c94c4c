// Vector row operations of the colour-key kernels.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "colorkey/colorkey_rows.cpp"
#include "hwy/foreach_target.h"  // IWYU pragma: keep

#include <cstring>

#include "hwy/highway.h"
#include "colorkey/colorkey_rows.h"
#include "frame/groups-inl.h"

HWY_BEFORE_NAMESPACE();
namespace yuvblit {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// Fills [0, bytes) with vectors of tag d when the run holds at least one.
// Byte i of the run is byte i % 24 of the pattern. One unaligned vector
// covers the head; the body then stores at addresses aligned to the vector
// (at most a cache line), so no store splits a line, from the pattern read
// at the matching phase; three vectors in a row cover whole periods and
// repeat. The last vector ends exactly at the run's end; overlapping stores
// write again bytes that hold the same values.
template <class D>
HWY_INLINE bool FillInVectors(D d, uint8_t* dst, size_t bytes, const uint8_t* tile) {
  const size_t n = hn::Lanes(d);
  if (bytes < n) return false;
  hn::StoreU(hn::LoadU(d, tile), d, dst);
  size_t i = AlignedStart(dst, n);
  const uint8_t* phased = tile + i % 24;
  const auto v0 = hn::LoadU(d, phased);
  const auto v1 = hn::LoadU(d, phased + n);
  const auto v2 = hn::LoadU(d, phased + 2 * n);
  for (; i + 3 * n <= bytes; i += 3 * n) {
    hn::StoreU(v0, d, dst + i);
    hn::StoreU(v1, d, dst + i + n);
    hn::StoreU(v2, d, dst + i + 2 * n);
  }
  if (i + n <= bytes) {
    hn::StoreU(v0, d, dst + i);
    i += n;
  }
  if (i + n <= bytes) {
    hn::StoreU(v1, d, dst + i);
    i += n;
  }
  if (i < bytes) hn::StoreU(hn::LoadU(d, tile + (bytes - n) % 24), d, dst + bytes - n);
  return true;
}

void FillKeyRows(uint8_t* const* rows, size_t count, size_t bytes, const KeyTile& tile) {
  for (size_t r = 0; r < count; ++r) {
    if (FillInVectors(hn::ScalableTag<uint8_t>(), rows[r], bytes, tile.bytes)) continue;
    FillInVectors(hn::CappedTag<uint8_t, 32>(), rows[r], bytes, tile.bytes);  // runs hold 32 or more
  }
}

void ReplaceMaskRow(uint8_t* dst, const uint8_t* mask, size_t groups, uint8_t maskValue,
                    uint8_t key) {
  ForGroups<16>(groups, [&](auto d8, size_t g) {
    const auto match = hn::Eq(hn::LoadU(d8, mask + 16 * g), hn::Set(d8, maskValue));
    uint8_t* at = dst + 16 * g;
    hn::StoreU(hn::IfThenElse(match, hn::Set(d8, key), hn::LoadU(d8, at)), d8, at);
  });
}

}  // namespace HWY_NAMESPACE
}  // namespace yuvblit
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace yuvblit {

KeyTile::KeyTile(const uint64_t (&words)[3]) {
  for (size_t i = 0; i < kBytes; i += 8) {
    uint8_t le[8];
    for (int b = 0; b < 8; ++b) le[b] = static_cast<uint8_t>(words[i / 8 % 3] >> (8 * b));
    std::memcpy(bytes + i, le, 8);
  }
}

HWY_EXPORT(FillKeyRows);
HWY_EXPORT(ReplaceMaskRow);

void fill_key_rows(uint8_t* const* rows, size_t count, size_t bytes, const KeyTile& tile) {
  HWY_DYNAMIC_DISPATCH(FillKeyRows)(rows, count, bytes, tile);
}
void replace_mask_row(uint8_t* dst, const uint8_t* mask, size_t groups, uint8_t maskValue,
                      uint8_t key) {
  HWY_DYNAMIC_DISPATCH(ReplaceMaskRow)(dst, mask, groups, maskValue, key);
}

}  // namespace yuvblit
#endif  // HWY_ONCE
