// Colour-key fills of RGB32, RGB24 and RGB16 rectangles, and replacement of
// the bytes a mask selects with a key byte: the walks.
#include <cstdint>

#include "colorkey/colorkey_rows.h"
#include "frame/walk.h"
#include "yuvblit.h"

namespace yuvblit {
namespace {

// The three 8-byte words stored per 24 bytes, in store order. RGB24 builds
// them from shifted copies of the key, so the top key byte is ORed into
// bytes 2 and 5, 9, 12 and 15, and 19 and 22; and it stores them in an
// order that puts blue, green and red in place only for pixels 3 and 4 of
// every 8 (keys with three equal colour bytes come out whole).
struct KeyWords {
  uint64_t words[3];
};

KeyWords rgb32_words(uint32_t key) {
  const uint64_t w = uint64_t{key} | uint64_t{key} << 32;
  return {{w, w, w}};
}

KeyWords rgb24_words(uint32_t key) {
  const uint64_t k = key;
  return {{k << 40 | k << 16 | k >> 8, k << 56 | k << 32 | k << 8 | k >> 16,
           k << 48 | k << 24 | k}};
}

KeyWords rgb16_words(uint32_t key) {
  const uint64_t w = uint64_t{key & 0xFFFF} * 0x0001000100010001u;
  return {{w, w, w}};
}

// Row pairs of 16-pixel steps, each step writing its 16 pixels into both
// rows of the pair; the pair ends with a step computed from `width`, so
// other widths drift right. Nothing at all for height 0; otherwise
// ceil(width / 16) steps (at least one) and ceil(height / 2) pairs, both
// counted as unsigned. When no two rows can share a byte, whole rows are
// filled, many per row-operation call; otherwise step by step in order.
void fill_key(void* dst, int32_t width, int32_t height, int32_t dstPitch,
              int32_t bytesPerPixel, const KeyWords& key) {
  if (height == 0) return;
  const KeyTile tile(key.words);
  const size_t groupBytes = 16 * static_cast<size_t>(bytesPerPixel);
  const size_t groups = passes(static_cast<uint32_t>(width), 16);
  const size_t rowBytes = groupBytes * groups;
  const int64_t pairDrift = 2 * int64_t{dstPitch} - int64_t{bytesPerPixel} * width;
  const int64_t pairStep = static_cast<int64_t>(rowBytes) + wrap32(pairDrift);
  uint8_t* first = static_cast<uint8_t*>(dst);
  uint32_t rows = static_cast<uint32_t>(height);
  if (alternating_runs_disjoint(dstPitch, pairStep - dstPitch, rowBytes)) {
    auto batch = row_batch<uint8_t*>([&](uint8_t* const* starts, size_t count) {
      fill_key_rows(starts, count, rowBytes, tile);
    });
    do {
      batch.add(first);
      batch.add(step(first, dstPitch));
      first = step(first + rowBytes, pairDrift);
    } while (more(rows, 2));
    batch.finish();
    return;
  }
  do {
    uint8_t* second = step(first, dstPitch);
    for (size_t g = 0; g < groups; ++g) {
      fill_key_rows(&first, 1, groupBytes, tile);
      uint8_t* at = second + groupBytes * g;
      fill_key_rows(&at, 1, groupBytes, tile);
      first += groupBytes;
    }
    first = step(first, pairDrift);
  } while (more(rows, 2));
}

// Rows of 16-byte steps, ceil(width / 16) (at least one) per row, both
// planes moving on by pitch - width after the row; at least one row, even
// for height 0.
void replace_mask(uint8_t* dst, const uint8_t* mask, uint32_t maskValue, uint32_t key,
                  int32_t width, int32_t pitch, int32_t height) {
  const size_t groups = passes(static_cast<uint32_t>(width), 16);
  const int64_t rowStep = int64_t{pitch} - width;
  uint32_t rows = static_cast<uint32_t>(height);
  do {
    run_row_groups({dst, mask}, 16, groups, [&](size_t g, size_t n) {
      replace_mask_row(dst + 16 * g, mask + 16 * g, n, static_cast<uint8_t>(maskValue),
                       static_cast<uint8_t>(key));
    });
    dst = step(dst + 16 * groups, rowStep);
    mask = step(mask + 16 * groups, rowStep);
  } while (more(rows, 1));
}

}  // namespace
}  // namespace yuvblit

extern "C" {

YUVBLIT_API void LoadColorKeyRgb32(uint32_t key, void* dst, int32_t width, int32_t height,
                                   int32_t /*reserved*/, int32_t dstPitch) {
  yuvblit::fill_key(dst, width, height, dstPitch, 4, yuvblit::rgb32_words(key));
}
YUVBLIT_API void LoadColorKeyRgb24(uint32_t key, void* dst, int32_t width, int32_t height,
                                   int32_t /*reserved*/, int32_t dstPitch) {
  yuvblit::fill_key(dst, width, height, dstPitch, 3, yuvblit::rgb24_words(key));
}
YUVBLIT_API void LoadColorKeyRgb16(uint32_t key, void* dst, int32_t width, int32_t height,
                                   int32_t /*reserved*/, int32_t dstPitch) {
  yuvblit::fill_key(dst, width, height, dstPitch, 2, yuvblit::rgb16_words(key));
}
YUVBLIT_API void RelaceMaskWithColorKey(unsigned char* dst, unsigned char* mask,
                                        uint32_t maskValue, uint32_t key, int32_t width,
                                        int32_t pitch, int32_t height) {
  yuvblit::replace_mask(dst, mask, maskValue, key, width, pitch, height);
}

}  // extern "C"
