#include "model/prepare_model.h"

#include "adjust/adjustment.h"
#include "frame/walk.h"

namespace yuvblit_test {

using yuvblit::more;
using yuvblit::wrap32;

namespace {

enum class Bitmap { kRgb32, kRgb24, kRgb16 };

int bytes_per_pixel(Bitmap b) { return b == Bitmap::kRgb32 ? 4 : b == Bitmap::kRgb24 ? 3 : 2; }

// One output sample of a pixel widened to lanes B, G, R, X: the bias is
// OR-ed into X, the weighted sum shifted down arithmetically and narrowed
// twice.
uint8_t weigh(const int32_t (&w)[4], int b, int g, int r, int x, int bias) {
  const int32_t sum = w[0] * b + w[1] * g + w[2] * r + w[3] * (x | bias);
  return yuvblit::sat8(yuvblit::sat16(sum >> 10));
}

constexpr int32_t kYWeights[4] = {100, 516, 263, 1024};
constexpr int32_t kUWeights[4] = {449, -297, -151, 1024};
constexpr int32_t kVWeights[4] = {-72, -376, 449, 1024};

struct Pixel {
  uint32_t value;  // as compared with the key
  int b, g, r, x;
};

// Pixel i of a group as it lies in the bitmap; RGB16 expands without
// replicating the top bits.
Pixel read_pixel(Ptr p, Bitmap layout) {
  Pixel px{};
  const int n = bytes_per_pixel(layout);
  for (int k = 0; k < n; ++k) px.value |= uint32_t{p.get(k)} << (8 * k);
  if (layout == Bitmap::kRgb16) {
    px.r = (px.value & 0xF800) >> 8, px.g = (px.value & 0x07E0) >> 3, px.b = (px.value & 0x1F) << 3;
  } else {
    px.b = p.get(0), px.g = p.get(1), px.r = p.get(2);
    px.x = layout == Bitmap::kRgb32 ? p.get(3) : 0;
  }
  return px;
}

// A skipped group keeps its bytes; touching them keeps the group inside the
// footprint the harness measures.
void keep(Ptr p, int n) {
  for (int i = 0; i < n; ++i) p.put(i, p.get(i));
}

void convert(ModelMix& m, Bitmap layout) {
  const int n = bytes_per_pixel(layout);
  const uint32_t key = layout == Bitmap::kRgb16 ? m.colorKey & 0xFFFF : m.colorKey;
  const uint32_t groups = uint32_t(m.width) / 8;
  const int64_t lumaStep = wrap32(int64_t{m.subPitch} - m.width);
  const int64_t chromaStep = uint32_t(lumaStep) >> 1;
  Ptr bitmap = m.dst;
  uint32_t rows = uint32_t(m.height);
  do {
    for (uint32_t g = 0; g < groups; ++g) {
      Pixel px[8];
      bool allKey = true;
      for (int i = 0; i < 8; ++i) {
        px[i] = read_pixel(bitmap + n * i, layout);
        allKey &= px[i].value == key;
      }
      if (allKey) {
        keep(m.subY, 8), keep(m.subU, 4), keep(m.subV, 4);
      } else {
        for (int i = 0; i < 8; ++i)
          m.subY.put(i, weigh(kYWeights, px[i].b, px[i].g, px[i].r, px[i].x, 16));
        for (int i = 0; i < 4; ++i) {
          const Pixel& p = px[2 * i];
          m.subU.put(i, weigh(kUWeights, p.b, p.g, p.r, p.x, 128));
        }
        for (int i = 0; i < 4; ++i) {
          const Pixel& p = px[2 * i];
          m.subV.put(i, weigh(kVWeights, p.b, p.g, p.r, p.x, 128));
        }
      }
      bitmap += 8 * n, m.subY += 8, m.subU += 4, m.subV += 4;
    }
    // Steps from the exact width: rows slip when it is not whole groups.
    bitmap += wrap32(int64_t{m.dstPitch} - int64_t{m.width} * n);
    m.subY += lumaStep, m.subU += chromaStep, m.subV += chromaStep;
    m.subAlpha += lumaStep;
  } while (more(rows, 1));
}

// The walk shared by Restore and load_subpicture_alpha: groups of `group`
// pixels while the remaining width exceeds the group, then the alpha plane
// moves on by half the pitch difference and the bitmap to its next row.
// At least one row; a bitmap pitch below the bytes of a row (a bottom-up
// bitmap) ends the walk after the first. `countsHeight`: the kernel counts
// `height` down in the record.
template <class Group>
void alpha_walk(ModelMix& m, Bitmap layout, uint32_t group, bool countsHeight, Group op) {
  const int n = bytes_per_pixel(layout);
  const int64_t rowBytes = int64_t{m.width} * n;
  Ptr alpha = m.subAlpha, bitmap = m.dst;
  uint32_t rows = uint32_t(m.height);
  bool go;
  do {
    uint32_t left = uint32_t(m.width);
    do {
      op(alpha, bitmap);
      alpha += group, bitmap += group * n;
    } while (more(left, group));
    alpha += yuvblit::half(wrap32(int64_t{m.picturePitch} - m.width));
    bitmap += wrap32(m.dstPitch - rowBytes);
    go = more(rows, 1);
  } while (go && m.dstPitch >= rowBytes);
  if (countsHeight) m.height = int32_t(rows);
}

void load_alpha(ModelMix& m, Bitmap layout, bool countsHeight) {
  const int n = bytes_per_pixel(layout);
  alpha_walk(m, layout, 16, countsHeight, [n](Ptr alpha, Ptr bitmap) {
    for (int i = 0; i < 16; ++i) {
      bitmap.put(n * i, alpha.get(i));
      for (int k = 1; k < n; ++k) bitmap.put(n * i + k, 0);
    }
  });
}

}  // namespace

void model_Convert_RGB32_To_AYUY2(ModelMix& m) { convert(m, Bitmap::kRgb32); }
void model_Convert_RGB24_To_AYUY2(ModelMix& m) { convert(m, Bitmap::kRgb24); }
void model_Convert_RGB16_565_To_AYUY2(ModelMix& m) { convert(m, Bitmap::kRgb16); }

void model_Restore_RGB32_To_Alpha(ModelMix& m) {
  alpha_walk(m, Bitmap::kRgb32, 8, false, [](Ptr alpha, Ptr bitmap) {
    for (int i = 0; i < 8; ++i) {
      for (int k = 1; k < 4; ++k) bitmap.get(4 * i + k);
      alpha.put(i, bitmap.get(4 * i));
    }
  });
}

// Each alpha byte comes from the pixel after its own: the last one of a
// group from the byte after the group.
void model_Restore_RGB24_To_Alpha(ModelMix& m) {
  alpha_walk(m, Bitmap::kRgb24, 8, true, [](Ptr alpha, Ptr bitmap) {
    for (int k = 0; k < 25; ++k) bitmap.get(k);
    for (int i = 0; i < 8; ++i) alpha.put(i, bitmap.get(3 * i + 3));
  });
}

void model_Restore_RGB16_565_To_Alpha(ModelMix& m) {
  alpha_walk(m, Bitmap::kRgb16, 16, false, [](Ptr alpha, Ptr bitmap) {
    for (int i = 0; i < 16; ++i) {
      bitmap.get(2 * i + 1);
      alpha.put(i, bitmap.get(2 * i) & 0x1F);
    }
  });
}

void model_load_subpicture_alpha_rgb32(ModelMix& m) { load_alpha(m, Bitmap::kRgb32, false); }
void model_load_subpicture_alpha_rgb24(ModelMix& m) { load_alpha(m, Bitmap::kRgb24, true); }
void model_load_subpicture_alpha_rgb16_565(ModelMix& m) { load_alpha(m, Bitmap::kRgb16, false); }

}  // namespace yuvblit_test
