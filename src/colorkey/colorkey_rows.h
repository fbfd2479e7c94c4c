// Row operations of the colour-key kernels: fill a run with a repeating key
// pattern, and stamp a key byte where a mask byte matches. They take
// pointers and lengths and know nothing of pitches.
#pragma once

#include <cstddef>
#include <cstdint>

namespace yuvblit {

// A fill pattern of three 8-byte little-endian words, repeating every 24
// bytes, laid out over one period more than three vectors of the widest
// target (256 bytes): a row operation of any target loads its pattern
// vectors from it at any phase. Built once per call, so rows do not rebuild it.
struct KeyTile {
  static constexpr size_t kBytes = 33 * 24;
  alignas(64) uint8_t bytes[kBytes];

  explicit KeyTile(const uint64_t (&words)[3]);
};

// Writes the pattern over rows[r][0, bytes) for each of `count` rows that
// share no bytes, each starting at the pattern's first byte; bytes is a
// multiple of 8 and at least 32.
void fill_key_rows(uint8_t* const* rows, size_t count, size_t bytes, const KeyTile& tile);

// For each of 16 * groups bytes: dst[i] = key where mask[i] == maskValue,
// dst[i] unchanged elsewhere (every byte is written back). The two runs of
// one call must not share bytes unless they are the same run.
void replace_mask_row(uint8_t* dst, const uint8_t* mask, size_t groups, uint8_t maskValue,
                      uint8_t key);

}  // namespace yuvblit
