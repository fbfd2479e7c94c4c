// Overlays made ready for the subpicture kernels the way a host does it: the
// overlay drawn into an RGB bitmap whose transparent pixels hold a colour
// key, its alpha drawn into a second bitmap's blue byte, and both turned
// into the subpicture's alpha, Y, U and V planes by the library's own
// preparation kernels.
#pragma once

#include <cstdint>
#include <vector>

#include "picture.h"
#include "surface.h"
#include "yuvblit.h"

namespace ybtool {

// The mixers' weight for an 8-bit alpha: alpha * 16 / 255 rounded to the
// nearest (0-7 transparent, 248-255 opaque; there are no ties).
uint8_t alpha_weight(uint8_t alpha);

// The colour key of the overlay bitmaps: grey 64, 64, 64, which 5-6-5 keeps
// exactly. A grey because the preparation takes each pixel pair's chroma
// from its left pixel while the mixers weight it by the right pixel's
// alpha: a transparent pixel left of a visible one lends it the key's
// chroma, and a grey's is neutral.
constexpr uint8_t kKeyGrey = 64;
// The key as the Convert kernels compare it for a bitmap of `format`
// (RGB32, RGB24 or RGB16 layout 0, i.e. 5-6-5).
uint32_t overlay_key(SurfaceFormat format);

// The overlay placed at the top-left of a `width` x `rows` bitmap of
// `format` (RGB32 B G R 0, RGB24 B G R, or 5-6-5 keeping the top bits), the
// rest transparent. Pixels of weight 0 hold the key; a visible pixel that
// would equal the key has its lowest blue bit flipped. `width` must be a
// multiple of 16; each row has 16 bytes to spare, since
// Restore_RGB24_To_Alpha reads one byte beyond a row.
Surface overlay_bitmap(const RgbaImage& overlay, SurfaceFormat format,
                       int width, int rows);

// A zeroed bitmap laid out like overlay_bitmap()'s.
Surface blank_bitmap(SurfaceFormat format, int width, int rows);

// The alpha carrier: RGB32 pixels (weight, 0, 0, 0), laid out as above.
Surface alpha_bitmap(const RgbaImage& overlay, int width, int rows);

// AYUY2 subpicture planes: alpha and Y rows `pitch` bytes apart, U and V
// rows pitch/2 apart (one sample per pixel pair), `rows` rows each.
struct SubpicturePlanes {
  int width = 0;  // the width the kernels are run over
  int rows = 0;
  int pitch = 0;
  std::vector<uint8_t> alpha, y, u, v;
};

// Planes of `width` x `rows` (pitch at least `width`, even) filled with the
// given bytes.
SubpicturePlanes blank_planes(int width, int rows, int pitch, uint8_t alpha,
                              uint8_t y, uint8_t u, uint8_t v);

// The record the preparation kernels take for `planes` and a bitmap of the
// same size: the bitmap at dst, its key, and the alpha-row term set so
// that alpha rows are `pitch` apart like the mixers read them.
tagMIX_INFO preparation_record(SubpicturePlanes& planes, Surface& bitmap);

// The overlay as the mixers read it, prepared as a host does: planes
// cleared to transparent black, then Convert_RGB32_To_AYUY2 fills Y, U and
// V from overlay_bitmap() (skipping all-key groups) and
// Restore_RGB32_To_Alpha the alpha plane from alpha_bitmap().
SubpicturePlanes prepare_subpicture(const RgbaImage& overlay, int width,
                                    int rows, int pitch);

// The Y, U and V planes as a `width` x `height` YUY2 surface (the planes
// hold the same 4:2:2 samples, interleaved), alpha left out.
Surface planes_as_yuy2(const SubpicturePlanes& planes, int width, int height);

}  // namespace ybtool
