#include "model/colorkey_model.h"

#include "frame/walk.h"

namespace yuvblit_test {

using yuvblit::more;
using yuvblit::wrap32;

KeyPatternBytes model_key_pattern(uint32_t key, KeyFill fill) {
  KeyPatternBytes p{};
  const auto k = [key](int i) { return static_cast<uint8_t>(key >> (8 * i)); };
  switch (fill) {
    case KeyFill::kRgb32:
      for (int i = 0; i < 24; ++i) p.bytes[i] = k(i % 4);
      break;
    case KeyFill::kRgb16:
      for (int i = 0; i < 24; ++i) p.bytes[i] = k(i % 2);
      break;
    case KeyFill::kRgb24: {
      // Per 8-byte word: which colour byte each position takes, and where
      // the top byte is ORed in as well.
      const int colour[3][8] = {{1, 2, 0, 1, 2, 0, 1, 2},
                                {2, 0, 1, 2, 0, 1, 2, 0},
                                {0, 1, 2, 0, 1, 2, 0, 1}};
      const bool top[3][8] = {{0, 0, 1, 0, 0, 1, 0, 0},
                              {0, 1, 0, 0, 1, 0, 0, 1},
                              {0, 0, 0, 1, 0, 0, 1, 0}};
      for (int w = 0; w < 3; ++w)
        for (int i = 0; i < 8; ++i)
          p.bytes[8 * w + i] = static_cast<uint8_t>(k(colour[w][i]) | (top[w][i] ? k(3) : 0));
      break;
    }
  }
  return p;
}

void model_load_color_key(Ptr dst, uint32_t key, int32_t width, int32_t height,
                          int32_t dstPitch, KeyFill fill) {
  if (height == 0) return;
  const KeyPatternBytes pattern = model_key_pattern(key, fill);
  const int bpp = static_cast<int>(fill);
  uint32_t rows = static_cast<uint32_t>(height);
  do {
    uint32_t columns = static_cast<uint32_t>(width);
    do {
      for (int row = 0; row < 2; ++row)
        for (int i = 0; i < 16 * bpp; ++i)
          dst.put(int64_t{row} * dstPitch + i, pattern.bytes[i % 24]);
      dst += 16 * bpp;
    } while (more(columns, 16));
    dst += wrap32(2 * int64_t{dstPitch} - int64_t{bpp} * width);
  } while (more(rows, 2));
}

void model_replace_mask(Ptr dst, Ptr mask, uint32_t maskValue, uint32_t key, int32_t width,
                        int32_t pitch, int32_t height) {
  const uint8_t m = static_cast<uint8_t>(maskValue), k = static_cast<uint8_t>(key);
  uint32_t rows = static_cast<uint32_t>(height);
  do {
    uint32_t columns = static_cast<uint32_t>(width);
    do {
      for (int i = 0; i < 16; ++i) dst.put(i, mask.get(i) == m ? k : dst.get(i));
      dst += 16, mask += 16;
    } while (more(columns, 16));
    dst += wrap32(int64_t{pitch} - width);
    mask += wrap32(int64_t{pitch} - width);
  } while (more(rows, 1));
}

}  // namespace yuvblit_test
