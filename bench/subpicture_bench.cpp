// Subpicture kernels: the mixers of an AYUY2 subpicture into a planar 4:2:0
// picture (onto YUY2, half-width YUY2 and RGB surfaces, progressive and one
// field doubled), of an AYV12 subpicture onto YV12 surfaces, the nine
// kernels that move overlays between RGB bitmaps and subpicture planes,
// their peers and the copy rooflines.
//
// Overlays: "menu" is mostly transparent (alpha 0 but for a title bar and
// four buttons with soft edges, about 14% of the picture; its bitmap holds
// the colour key elsewhere, so the converters skip most groups); "opaque"
// has alpha 16 but for a 3-pixel soft border, and its bitmap is drawn
// everywhere. Mixers and converters are named <kernel>/<overlay>/<W>x<H>.
// The kernels advance pointers and count height down inside their record,
// so every iteration runs on a fresh copy of a record filled once.
//
// Sizes: pixels/s is over the output picture, W x H (source pixels for the
// half kernel, as for the half loaders); the interlaced mixers read a field
// of W x H/2. The Restore_* and load_subpicture_alpha_* kernels get alpha
// rows back to back (picturePitch chosen so that their alpha row advance is
// the subpicture's pitch).
//
// Peers (libyuv):
//  - RGB mixers: the passes a player runs without a mixing kernel:
//    I420ToARGB onto the surface, then ARGBBlend in place of the same
//    subpicture held as premultiplied ARGB (ARGBBlend's contract: the
//    foreground premultiplied by its own alpha, blended over the
//    background), made once outside the timing; onto RGB24 and RGB16
//    surfaces the two passes go to a scratch ARGB frame and ARGBToRGB24 /
//    ARGBToRGB565 is a third. The one-pass converters alone are the
//    planar-to-RGB family's libyuv_I420ToARGB, _I420ToRGB24, _I420ToRGB565.
//  - YUY2 mixers: I420Blend of the subpicture (subsampled to 4:2:0 once)
//    over the picture into a scratch frame, then I420ToYUY2; and the
//    planar-to-YUY2 family's libyuv_I420ToYUY2 alone. The half kernel writes
//    half their bytes; the interlaced one also interpolates lines.
//  - YV12 mixers: I420Blend alone (libyuv_I420Blend), onto a planar frame.
//    The interlaced RGB mixers against the same one-pass converters and
//    pipelines as the progressive ones.
//  - Convert_*: ARGBToI422 writes the same planes (Y, and U and V per pixel
//    pair on every row) from the same byte order (B, G, R, X). libyuv has no
//    one-pass RGB24 or RGB565 converter to 4:2:2 (RGB24ToI420 and
//    RGB565ToI420 write half the chroma rows), so for those bitmaps it is
//    RGB24ToARGB / RGB565ToARGB then ARGBToI422, row by row through one ARGB
//    row, as a player would chain them. libyuv averages each pixel pair's
//    chroma and skips nothing.
//  - Restore_RGB32_To_Alpha: ARGBExtractAlpha (one byte of every 4-byte
//    pixel into a plane). Restore_RGB24_To_Alpha: RGB24ToJ400 (3 bytes per
//    pixel into 1, with a weighted sum on top). load_subpicture_alpha_rgb32:
//    J400ToARGB (1 byte per pixel out to 4). The RGB16 forms and
//    load_subpicture_alpha_rgb24 have no libyuv analogue of that shape and
//    are measured against the roofline only.
//  - Rooflines: memcpy of the bytes each kernel writes: ayuy2_yuv (2 per
//    pixel) for Convert_*, alpha (1 per pixel) for Restore_*, the bitmap's
//    rgb32 / rgb24 / rgb16 for load_subpicture_alpha_*.
//
// Against the multi-pass peers (one command line each; --ref none shows
// "-" for the kernels without a peer):
//   bench/ratios.py run.json --ref none --only 'mix_*' --only 'Convert_*'
//       --only 'Restore_*' --only 'load_subpicture_alpha_*'
//       --peer 'mix_ayuy2_rgb32_p_ajust/*=libyuv_I420ToARGB_ARGBBlend/*'
//       --peer 'mix_ayuy2_rgb24_p_ajust/*=libyuv_I420ToARGB_ARGBBlend_ARGBToRGB24/*'
//       --peer 'mix_ayuy2_rgb16_p_ajust/*=libyuv_I420ToARGB_ARGBBlend_ARGBToRGB565/*'
//       --peer 'mix_ayuy2_*yuy2_*/*=libyuv_I420Blend_I420ToYUY2/*'
//       --peer 'Convert_RGB32*=libyuv_ARGBToI422'
//       --peer 'Convert_RGB24*=libyuv_RGB24ToARGB_ARGBToI422'
//       --peer 'Convert_RGB16*=libyuv_RGB565ToARGB_ARGBToI422'
//       --peer 'Restore_RGB32*=libyuv_ARGBExtractAlpha'
//       --peer 'Restore_RGB24*=libyuv_RGB24ToJ400'
//       --peer 'load_subpicture_alpha_rgb32=libyuv_J400ToARGB'
// Against the one-pass converters:
//   bench/ratios.py run.json --only 'mix_*'
//       --peer 'mix_ayuy2_rgb32*=libyuv_I420ToARGB'
//       --peer 'mix_ayuy2_rgb24*=libyuv_I420ToRGB24'
//       --peer 'mix_ayuy2_rgb16*=libyuv_I420ToRGB565'
//       --peer 'mix_ayuy2_*yuy2*=libyuv_I420ToYUY2'
#include <algorithm>
#include <memory>
#include <string>

#include "bench_util.h"

#if YUVBLIT_BENCH_HAVE_LIBYUV
#include <libyuv/convert.h>
#include <libyuv/convert_argb.h>
#include <libyuv/convert_from.h>
#include <libyuv/convert_from_argb.h>
#include <libyuv/planar_functions.h>
#endif

using namespace yuvblit_bench;

namespace {

using MixKernel = void (*)(tagMIX_INFO*);

const OverlayShape* const kOverlays[] = {&kMenuOverlay, &kOpaqueOverlay};

size_t bytes(int64_t n) { return static_cast<size_t>(n); }

// ------------------------------------------------------------------ bitmaps

// An overlay bitmap layout with the colour key a host would fill it with
// (magenta, fourth byte 0).
struct BitmapLayout {
  const Format* format;
  int32_t bytesPerPixel;
  uint32_t key;
};
const BitmapLayout kBitmap32{&kRgb32, 4, 0x00FF00FFu};
const BitmapLayout kBitmap24{&kRgb24, 3, 0x00FF00FFu};
const BitmapLayout kBitmap16{&kRgb16, 2, 0xF81Fu};

// Writes pixel(x, y) as bytesPerPixel little-endian bytes at every whole
// pixel of every row of `bitmap`, spare columns and rows included (kernels
// read whole groups past the right edge).
template <class Pixel>
void paint(Surface& bitmap, int32_t bytesPerPixel, Pixel pixel) {
  for (int32_t y = 0; y < bitmap.rows; ++y) {
    uint8_t* row = bitmap.data.data() + bytes(int64_t{y} * bitmap.pitch);
    for (int32_t x = 0; x + bytesPerPixel <= bitmap.pitch; x += bytesPerPixel) {
      const uint32_t value = pixel(x / bytesPerPixel, y);
      for (int32_t b = 0; b < bytesPerPixel; ++b) {
        row[x + b] = static_cast<uint8_t>(value >> (8 * b));
      }
    }
  }
}

// A drawn colour that is not the key: hashed from the position, fourth
// byte 0 (the bits that a 24- or 16-bit pixel holds).
uint32_t drawn_colour(const BitmapLayout& layout, int32_t x, int32_t y) {
  uint32_t h = static_cast<uint32_t>(x) * 0x9E3779B1u ^
               static_cast<uint32_t>(y) * 0x85EBCA77u;
  h ^= h >> 15;
  h *= 0x2C1B3C6Du;
  h ^= h >> 12;
  const uint32_t mask = layout.bytesPerPixel == 2 ? 0xFFFFu : 0xFFFFFFu;
  const uint32_t colour = h & mask;
  return colour == layout.key ? colour ^ 1u : colour;
}

// The bitmap a host draws `shape` into: the key where the overlay is
// transparent, drawn colours elsewhere.
std::shared_ptr<Surface> drawn_bitmap(Size size, const BitmapLayout& layout,
                                      const OverlayShape& shape) {
  auto bitmap = std::make_shared<Surface>(size, *layout.format);
  paint(*bitmap, layout.bytesPerPixel, [&](int32_t x, int32_t y) {
    return shape.alpha(size, x, y) == 0 ? layout.key
                                        : drawn_colour(layout, x, y);
  });
  return bitmap;
}

// A bitmap carrying `shape`'s alpha in each pixel's blue position, the rest
// 0 (what load_subpicture_alpha_* writes).
std::shared_ptr<Surface> alpha_bitmap(Size size, const BitmapLayout& layout,
                                      const OverlayShape& shape) {
  auto bitmap = std::make_shared<Surface>(size, *layout.format);
  paint(*bitmap, layout.bytesPerPixel,
        [&](int32_t x, int32_t y) { return uint32_t{shape.alpha(size, x, y)}; });
  return bitmap;
}

// ------------------------------------------------------------------ mixers

// The record of a mixer: the picture, the subpicture and a surface of
// `size` output pixels at dst.
tagMIX_INFO mixer_record(const PlanarFrame& picture, const SubpictureFrame& sub, Size size,
                         uint8_t* dst, int32_t dstPitch) {
  tagMIX_INFO info{};
  info.picturePitch = picture.pitch;
  info.subPitch = sub.subPitch;
  info.dstPitch = dstPitch;
  info.width = size.width;
  info.height = size.height;
  info.pictureY = picture.y;
  info.pictureV = picture.v;
  info.pictureU = picture.u;
  info.subAlpha = sub.alpha;
  info.subY = sub.y;
  info.subV = sub.v;
  info.subU = sub.u;
  info.dst = dst;
  return info;
}

// Registers <name>/<overlay>/WxH for both overlays. `fieldPicture`: the
// kernel reads a picture of half the output's rows.
void register_mixer(const char* name, MixKernel kernel, const Format& format,
                    bool fieldPicture) {
  for (const OverlayShape* shape : kOverlays) {
    register_sizes(
        std::string(name) + "/" + shape->name, format,
        [kernel, format, fieldPicture, shape](Size size,
                                              benchmark::State& state) -> Body {
          const Size pictureSize{size.width,
                                 fieldPicture ? size.height / 2 : size.height};
          auto picture = std::make_shared<PlanarFrame>(pictureSize, 1234u);
          auto sub = std::make_shared<SubpictureFrame>(size, *shape, 4321u);
          auto dst = std::make_shared<Surface>(size, format);
          auto adjust = kernel_record(true);
          tagMIX_INFO info = mixer_record(*picture, *sub, size, dst->data.data(), dst->pitch);
          info.adjust = adjust.get();
          Body body = [kernel, info, picture, sub, dst, adjust]() {
            tagMIX_INFO fresh = info;
            kernel(&fresh);
          };
          return checked_body(std::move(body), dst->data.data(),
                              bytes(format.bytes_per_row(size.width)), state);
        });
  }
}

// Registers <name>/<overlay>/WxH for a YV12 mixer: the subpicture's chroma
// planes read as AYV12 (rows subPitch apart, half as many), the surface's
// chroma planes at half its pitch. `fieldPicture` as for register_mixer.
void register_yv12_mixer(const char* name, MixKernel kernel, bool fieldPicture) {
  for (const OverlayShape* shape : kOverlays) {
    register_sizes(
        std::string(name) + "/" + shape->name, kYv12,
        [kernel, fieldPicture, shape](Size size, benchmark::State& state) -> Body {
          const Size pictureSize{size.width, fieldPicture ? size.height / 2 : size.height};
          auto picture = std::make_shared<PlanarFrame>(pictureSize, 1234u);
          auto sub = std::make_shared<SubpictureFrame>(size, *shape, 4321u);
          // One block: luma rows, then V and U planes of half pitch.
          const int32_t pitch = (size.width + 63) & ~63;
          const size_t lumaBytes = bytes(int64_t{pitch} * (size.height + 2));
          const size_t chromaBytes = bytes(int64_t{pitch / 2} * (size.height / 2 + 2));
          auto dst = std::make_shared<Buffer>(lumaBytes + 2 * chromaBytes);
          fill_surface(*dst);
          kernel_record(true);  // loads the adjustment the adjusting kernel reads
          // Output rows, for the field kernel too.
          tagMIX_INFO info = mixer_record(*picture, *sub, size, dst->data(), pitch);
          info.dstV = dst->data() + lumaBytes;
          info.dstU = info.dstV + chromaBytes;
          Body body = [kernel, info, picture, sub, dst]() {
            tagMIX_INFO fresh = info;
            kernel(&fresh);
          };
          return checked_body(std::move(body), dst->data(), bytes(size.width), state);
        });
  }
}

// ------------------------------------------------------------------ preparation

// Registers Convert_*/<overlay>/WxH: the bitmap holds the overlay drawn
// over the key, the planes are written in a SubpictureFrame.
void register_convert(const char* name, MixKernel kernel,
                      const BitmapLayout& layout) {
  for (const OverlayShape* shape : kOverlays) {
    register_sizes(
        std::string(name) + "/" + shape->name, kAyuy2Colour,
        [kernel, &layout, shape](Size size, benchmark::State& state) -> Body {
          auto bitmap = drawn_bitmap(size, layout, *shape);
          auto planes = std::make_shared<SubpictureFrame>(size, *shape, 4321u);
          fill_surface(planes->planes);
          tagMIX_INFO info{};
          info.subPitch = planes->subPitch;
          info.dstPitch = bitmap->pitch;
          info.width = size.width;
          info.height = size.height;
          info.subAlpha = planes->alpha;
          info.subY = planes->y;
          info.subV = planes->v;
          info.subU = planes->u;
          info.dst = bitmap->data.data();
          info.colorKey = layout.key;
          Body body = [kernel, info, bitmap, planes]() {
            tagMIX_INFO fresh = info;
            kernel(&fresh);
          };
          // The menu's first rows are all key: look for a write anywhere in
          // the Y plane.
          return checked_body(std::move(body), planes->y,
                              bytes(int64_t{planes->subPitch} * size.height),
                              state);
        });
  }
}

// The record of the alpha-plane kernels: alpha rows back to back at the
// subpicture's pitch. Their alpha advance per row is the width rounded up
// to `groupPixels` plus (picturePitch - width) >> 1.
tagMIX_INFO alpha_record(Size size, int32_t groupPixels, int32_t subPitch,
                         uint8_t* alpha, const Surface& bitmap) {
  const int32_t rounded =
      (size.width + groupPixels - 1) / groupPixels * groupPixels;
  tagMIX_INFO info{};
  info.picturePitch = size.width + 2 * (subPitch - rounded);
  info.dstPitch = bitmap.pitch;
  info.width = size.width;
  info.height = size.height;
  info.subAlpha = alpha;
  info.dst = bitmap.data.data();
  return info;
}

// Registers Restore_*: alpha read from the blue position of a bitmap into
// an alpha plane.
void register_restore(const char* name, MixKernel kernel,
                      const BitmapLayout& layout, int32_t groupPixels) {
  register_sizes(
      name, kAlphaPlane,
      [kernel, &layout, groupPixels](Size size,
                                     benchmark::State& state) -> Body {
        auto bitmap = alpha_bitmap(size, layout, kMenuOverlay);
        auto sub = std::make_shared<SubpictureFrame>(size, kMenuOverlay, 4321u);
        fill_surface(sub->planes);
        const tagMIX_INFO info =
            alpha_record(size, groupPixels, sub->subPitch, sub->alpha, *bitmap);
        Body body = [kernel, info, bitmap, sub]() {
          tagMIX_INFO fresh = info;
          kernel(&fresh);
        };
        return checked_body(std::move(body), sub->alpha,
                            bytes(kAlphaPlane.bytes_per_row(size.width)), state);
      });
}

// Registers load_subpicture_alpha_*: the menu's alpha plane into a bitmap.
void register_load_alpha(const char* name, MixKernel kernel,
                         const BitmapLayout& layout) {
  register_sizes(
      name, *layout.format,
      [kernel, &layout](Size size, benchmark::State& state) -> Body {
        auto sub = std::make_shared<SubpictureFrame>(size, kMenuOverlay, 4321u);
        auto bitmap = std::make_shared<Surface>(size, *layout.format);
        const tagMIX_INFO info =
            alpha_record(size, kGroupPixels, sub->subPitch, sub->alpha, *bitmap);
        Body body = [kernel, info, bitmap, sub]() {
          tagMIX_INFO fresh = info;
          kernel(&fresh);
        };
        return checked_body(std::move(body), bitmap->data.data(),
                            bytes(layout.format->bytes_per_row(size.width)),
                            state);
      });
}

// ------------------------------------------------------------------ peers

#if YUVBLIT_BENCH_HAVE_LIBYUV
// A packed ARGB frame (4 bytes per pixel, rows a multiple of 64 bytes
// apart).
struct ArgbFrame {
  explicit ArgbFrame(Size size)
      : pitch((size.width * 4 + 63) / 64 * 64),
        data(bytes(int64_t{pitch} * size.height)) {
    data.fill(0);
  }
  int32_t pitch;
  Buffer data;
};

// An alpha plane scaled from the subpicture's weights 0..16 to libyuv's
// 0..255, rows sub.subPitch apart.
std::shared_ptr<Buffer> alpha_255(const SubpictureFrame& sub) {
  const size_t n = bytes(int64_t{sub.subPitch} * sub.rows);
  auto plane = std::make_shared<Buffer>(n);
  for (size_t i = 0; i < n; ++i) {
    const int w = std::min<int>(sub.alpha[i], 16);
    plane->data()[i] = static_cast<uint8_t>((w * 255 + 8) / 16);
  }
  return plane;
}

// The subpicture as premultiplied ARGB for ARGBBlend: its colours converted
// (the planes are I422), its alpha scaled to 0..255, then attenuated.
std::shared_ptr<ArgbFrame> premultiplied_overlay(const SubpictureFrame& sub) {
  const Size size = sub.size;
  auto overlay = std::make_shared<ArgbFrame>(size);
  uint8_t* argb = overlay->data.data();
  libyuv::I422ToARGB(sub.y, sub.subPitch, sub.u, sub.subPitch / 2, sub.v,
                     sub.subPitch / 2, argb, overlay->pitch, size.width,
                     size.height);
  libyuv::ARGBCopyYToAlpha(alpha_255(sub)->data(), sub.subPitch, argb,
                           overlay->pitch, size.width, size.height);
  libyuv::ARGBAttenuate(argb, overlay->pitch, argb, overlay->pitch, size.width,
                        size.height);
  return overlay;
}

// Packs an ARGB frame into an RGB24 or RGB565 surface.
using ArgbPacker = int (*)(const uint8_t* src, int srcStride, uint8_t* dst,
                           int dstStride, int width, int height);

// libyuv_I420ToARGB_ARGBBlend[_<packer>]/<overlay>: the picture converted,
// the overlay blended over it, and, for packed surfaces, the result packed.
void register_argb_blend_pipeline(const std::string& name,
                                  const Format& format, ArgbPacker pack) {
  for (const OverlayShape* shape : kOverlays) {
    register_sizes(
        name + "/" + shape->name, format,
        [format, pack, shape](Size size, benchmark::State&) -> Body {
          auto picture = std::make_shared<PlanarFrame>(size, 1234u);
          auto overlay =
              premultiplied_overlay(SubpictureFrame(size, *shape, 4321u));
          auto dst = std::make_shared<Surface>(size, format);
          // RGB32 surfaces take the passes in place; others go through a
          // scratch ARGB frame.
          auto scratch = pack ? std::make_shared<ArgbFrame>(size) : nullptr;
          return [picture, overlay, dst, scratch, pack, size]() {
            uint8_t* argb = scratch ? scratch->data.data() : dst->data.data();
            const int argbPitch = scratch ? scratch->pitch : dst->pitch;
            libyuv::I420ToARGB(picture->y, picture->pitch, picture->u,
                               picture->chromaPitch, picture->v,
                               picture->chromaPitch, argb, argbPitch,
                               size.width, size.height);
            libyuv::ARGBBlend(overlay->data.data(), overlay->pitch, argb,
                              argbPitch, argb, argbPitch, size.width,
                              size.height);
            if (pack) {
              pack(argb, argbPitch, dst->data.data(), dst->pitch, size.width,
                   size.height);
            }
          };
        });
  }
}

// libyuv_I420Blend_I420ToYUY2/<overlay>: the subpicture (as I420) blended
// over the picture into a scratch frame, then packed as YUY2; without
// `packYuy2`, libyuv_I420Blend/<overlay>: the blend alone, onto a planar
// frame as the YV12 mixers write.
void register_i420_blend_pipeline(bool packYuy2) {
  for (const OverlayShape* shape : kOverlays) {
    register_sizes(
        std::string(packYuy2 ? "libyuv_I420Blend_I420ToYUY2/" : "libyuv_I420Blend/") + shape->name,
        packYuy2 ? kYuy2 : kYv12,
        [shape, packYuy2](Size size, benchmark::State&) -> Body {
          auto picture = std::make_shared<PlanarFrame>(size, 1234u);
          auto scratch = std::make_shared<PlanarFrame>(size, 99u);
          auto sub420 = std::make_shared<PlanarFrame>(size, 99u);
          const SubpictureFrame sub(size, *shape, 4321u);
          libyuv::I422ToI420(sub.y, sub.subPitch, sub.u, sub.subPitch / 2,
                             sub.v, sub.subPitch / 2, sub420->y, sub420->pitch,
                             sub420->u, sub420->chromaPitch, sub420->v,
                             sub420->chromaPitch, size.width, size.height);
          auto alpha = alpha_255(sub);
          const int32_t alphaPitch = sub.subPitch;
          auto dst = std::make_shared<Surface>(size, kYuy2);
          return [picture, scratch, sub420, alpha, alphaPitch, dst, size, packYuy2]() {
            libyuv::I420Blend(
                sub420->y, sub420->pitch, sub420->u, sub420->chromaPitch,
                sub420->v, sub420->chromaPitch, picture->y, picture->pitch,
                picture->u, picture->chromaPitch, picture->v,
                picture->chromaPitch, alpha->data(), alphaPitch, scratch->y,
                scratch->pitch, scratch->u, scratch->chromaPitch, scratch->v,
                scratch->chromaPitch, size.width, size.height);
            if (!packYuy2) return;
            libyuv::I420ToYUY2(scratch->y, scratch->pitch, scratch->u,
                               scratch->chromaPitch, scratch->v,
                               scratch->chromaPitch, dst->data.data(),
                               dst->pitch, size.width, size.height);
          };
        });
  }
}

// Unpacks rows of an RGB24 or RGB565 bitmap into ARGB.
using ArgbUnpacker = int (*)(const uint8_t* src, int srcStride, uint8_t* dst,
                             int dstStride, int width, int height);

// libyuv bitmap-to-4:2:2 converters writing a SubpictureFrame's Y, U and V
// planes; `unpack` null: ARGBToI422 straight from the RGB32 bitmap,
// otherwise `unpack` and ARGBToI422 row by row through one ARGB row.
void register_to_i422(const char* name, const BitmapLayout& layout,
                      ArgbUnpacker unpack) {
  register_sizes(
      name, kAyuy2Colour,
      [&layout, unpack](Size size, benchmark::State&) -> Body {
        auto bitmap = drawn_bitmap(size, layout, kOpaqueOverlay);
        auto planes = std::make_shared<SubpictureFrame>(size, kOpaqueOverlay, 4321u);
        auto row = std::make_shared<ArgbFrame>(Size{size.width, 1});
        return [bitmap, planes, row, unpack, size]() {
          const SubpictureFrame& p = *planes;
          const int chromaPitch = p.subPitch / 2;
          if (!unpack) {
            libyuv::ARGBToI422(bitmap->data.data(), bitmap->pitch, p.y,
                               p.subPitch, p.u, chromaPitch, p.v, chromaPitch,
                               size.width, size.height);
            return;
          }
          for (int32_t y = 0; y < size.height; ++y) {
            unpack(bitmap->data.data() + bytes(int64_t{y} * bitmap->pitch),
                   bitmap->pitch, row->data.data(), row->pitch, size.width, 1);
            libyuv::ARGBToI422(row->data.data(), row->pitch,
                               p.y + bytes(int64_t{y} * p.subPitch), p.subPitch,
                               p.u + bytes(int64_t{y} * chromaPitch), chromaPitch,
                               p.v + bytes(int64_t{y} * chromaPitch), chromaPitch,
                               size.width, 1);
          }
        };
      });
}

// libyuv converters between a bitmap and a one-byte-per-pixel plane, shaped
// like Restore_* (bitmap in) or load_subpicture_alpha_* (bitmap out).
using PlaneConverter = int (*)(const uint8_t* src, int srcStride, uint8_t* dst,
                               int dstStride, int width, int height);

void register_bitmap_to_plane(const char* name, const BitmapLayout& layout,
                              PlaneConverter convert) {
  register_sizes(
      name, kAlphaPlane, [&layout, convert](Size size, benchmark::State&) -> Body {
        auto bitmap = alpha_bitmap(size, layout, kMenuOverlay);
        auto sub = std::make_shared<SubpictureFrame>(size, kMenuOverlay, 4321u);
        return [bitmap, sub, convert, size]() {
          convert(bitmap->data.data(), bitmap->pitch, sub->alpha, sub->subPitch,
                  size.width, size.height);
        };
      });
}

void register_plane_to_bitmap(const char* name, const BitmapLayout& layout,
                              PlaneConverter convert) {
  register_sizes(
      name, *layout.format,
      [&layout, convert](Size size, benchmark::State&) -> Body {
        auto sub = std::make_shared<SubpictureFrame>(size, kMenuOverlay, 4321u);
        auto bitmap = std::make_shared<Surface>(size, *layout.format);
        return [bitmap, sub, convert, size]() {
          convert(sub->alpha, sub->subPitch, bitmap->data.data(), bitmap->pitch,
                  size.width, size.height);
        };
      });
}

void register_libyuv_peers() {
  register_argb_blend_pipeline("libyuv_I420ToARGB_ARGBBlend", kRgb32, nullptr);
  register_argb_blend_pipeline("libyuv_I420ToARGB_ARGBBlend_ARGBToRGB24",
                               kRgb24, libyuv::ARGBToRGB24);
  register_argb_blend_pipeline("libyuv_I420ToARGB_ARGBBlend_ARGBToRGB565",
                               kRgb16, libyuv::ARGBToRGB565);
  register_i420_blend_pipeline(true);
  register_i420_blend_pipeline(false);
  register_to_i422("libyuv_ARGBToI422", kBitmap32, nullptr);
  register_to_i422("libyuv_RGB24ToARGB_ARGBToI422", kBitmap24,
                   libyuv::RGB24ToARGB);
  register_to_i422("libyuv_RGB565ToARGB_ARGBToI422", kBitmap16,
                   libyuv::RGB565ToARGB);
  register_bitmap_to_plane("libyuv_ARGBExtractAlpha", kBitmap32,
                           libyuv::ARGBExtractAlpha);
  register_bitmap_to_plane("libyuv_RGB24ToJ400", kBitmap24, libyuv::RGB24ToJ400);
  register_plane_to_bitmap("libyuv_J400ToARGB", kBitmap32, libyuv::J400ToARGB);
}
#endif

}  // namespace

YUVBLIT_BENCHMARKS(subpicture) {
  register_mixer("mix_ayuy2_yuy2_p_ajust", mix_ayuy2_yuy2_p_ajust, kYuy2, false);
  register_mixer("mix_ayuy2_half_yuy2_p_ajust", mix_ayuy2_half_yuy2_p_ajust,
                 kHalfYuy2, false);
  register_mixer("mix_ayuy2_yuy2_i_ajust", mix_ayuy2_yuy2_i_ajust, kYuy2, true);
  register_mixer("mix_ayuy2_rgb32_p_ajust", mix_ayuy2_rgb32_p_ajust, kRgb32,
                 false);
  register_mixer("mix_ayuy2_rgb24_p_ajust", mix_ayuy2_rgb24_p_ajust, kRgb24,
                 false);
  register_mixer("mix_ayuy2_rgb16_p_ajust", mix_ayuy2_rgb16_p_ajust, kRgb16,
                 false);
  register_mixer("mix_ayuy2_rgb32_i_ajust", mix_ayuy2_rgb32_i_ajust, kRgb32, true);
  register_mixer("mix_ayuy2_rgb24_i_ajust", mix_ayuy2_rgb24_i_ajust, kRgb24, true);
  register_mixer("mix_ayuy2_rgb16_i_ajust", mix_ayuy2_rgb16_i_ajust, kRgb16, true);
  register_yv12_mixer("mix_ayv12_yv12_p", mix_ayv12_yv12_p, false);
  register_yv12_mixer("mix_ayv12_yv12_p_ajust", mix_ayv12_yv12_p_ajust, false);
  register_yv12_mixer("mix_ayv12_yv12_i", mix_ayv12_yv12_i, true);

  register_convert("Convert_RGB32_To_AYUY2", Convert_RGB32_To_AYUY2, kBitmap32);
  register_convert("Convert_RGB24_To_AYUY2", Convert_RGB24_To_AYUY2, kBitmap24);
  register_convert("Convert_RGB16_565_To_AYUY2", Convert_RGB16_565_To_AYUY2,
                   kBitmap16);
  register_restore("Restore_RGB32_To_Alpha", Restore_RGB32_To_Alpha, kBitmap32, 8);
  register_restore("Restore_RGB24_To_Alpha", Restore_RGB24_To_Alpha, kBitmap24, 8);
  register_restore("Restore_RGB16_565_To_Alpha", Restore_RGB16_565_To_Alpha,
                   kBitmap16, 16);
  register_load_alpha("load_subpicture_alpha_rgb32", load_subpicture_alpha_rgb32,
                      kBitmap32);
  register_load_alpha("load_subpicture_alpha_rgb24", load_subpicture_alpha_rgb24,
                      kBitmap24);
  register_load_alpha("load_subpicture_alpha_rgb16_565",
                      load_subpicture_alpha_rgb16_565, kBitmap16);

#if YUVBLIT_BENCH_HAVE_LIBYUV
  register_libyuv_peers();
#endif
  for (const Format* format :
       {&kYuy2, &kHalfYuy2, &kRgb32, &kRgb24, &kRgb16, &kAyuy2Colour, &kAlphaPlane}) {
    register_roofline_copy(*format);
  }
}
