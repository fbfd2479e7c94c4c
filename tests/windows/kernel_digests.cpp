// Loads the library by name at run time, resolves every entry point and
// prints one line per entry point: its name and an FNV-1a 64 digest of every
// buffer and of the subpicture record after calling it on fixed
// pseudo-random inputs, in two geometries (one with whole groups, one with
// partial groups and an odd height). The same source runs natively against
// the shared object and under wine against the DLL; equal lines mean equal
// bytes.
//
// usage: kernel_digests [LIBRARY]   (default libyuvblit.dll / libyuvblit.so)
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <vector>

#include "yuvblit.h"

#if defined(_WIN32)
#include <windows.h>
static const char* const kDefaultLibrary = "libyuvblit.dll";
static void* open_library(const char* name) { return (void*)LoadLibraryA(name); }
static void* find_symbol(void* library, const char* name) {
  return (void*)GetProcAddress((HMODULE)library, name);
}
static bool close_library(void* library) { return FreeLibrary((HMODULE)library) != 0; }
#else
#include <dlfcn.h>
static const char* const kDefaultLibrary = "libyuvblit.so";
static void* open_library(const char* name) { return dlopen(name, RTLD_NOW | RTLD_LOCAL); }
static void* find_symbol(void* library, const char* name) { return dlsym(library, name); }
static bool close_library(void* library) { return dlclose(library) == 0; }
#endif

namespace {

// ------------------------------------------------------------ buffers
// Every plane lives in its own buffer with room before and after it: the
// kernels read and write whole groups past the picture's edges, and some
// before the start of a row.
enum Plane { kSrcY, kSrcU, kSrcV, kDst, kDstU, kDstV, kSubA, kSubY, kSubU, kSubV, kPlanes };
constexpr size_t kBufferBytes = 128 * 1024;
constexpr size_t kOrigin = 32 * 1024;

struct Geometry {
  int32_t width, height, srcPitch, dstPitch;
  int32_t picturePitch, subPitch;
  uint32_t key;
  int32_t lineMode;
};
// Whole 16-pixel groups and an even height; then a width of partial groups,
// pitches that are not multiples of 16, an odd height and a non-grey key.
const Geometry kGeometries[] = {
    {64, 18, 128, 512, 128, 128, 0x00808080u, 0},
    {40, 13, 72, 328, 72, 88, 0x12345678u, 1},
};

// SplitMix64: a small generator that gives the same stream everywhere.
struct Random {
  uint64_t state;
  uint64_t next() {
    uint64_t z = (state += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
  }
};

// Random bytes, a quarter of them 0x00, 0x10, 0x80 or 0xFF so that alpha
// 0 and 16, black and white, mask and key bytes all occur.
void fill(std::vector<uint8_t>& bytes, Random& random) {
  static const uint8_t kEdges[4] = {0x00, 0x10, 0x80, 0xFF};
  for (uint8_t& b : bytes) {
    const uint64_t r = random.next();
    b = (r & 3) == 0 ? kEdges[(r >> 2) & 3] : uint8_t(r >> 8);
  }
}

struct Digest {
  uint64_t value = 0xCBF29CE484222325ull;
  void add(const void* data, size_t size) {
    const uint8_t* p = static_cast<const uint8_t*>(data);
    for (size_t i = 0; i < size; ++i) value = (value ^ p[i]) * 0x100000001B3ull;
  }
  void add_int(int64_t v) {
    uint8_t bytes[8];
    for (int i = 0; i < 8; ++i) bytes[i] = uint8_t(uint64_t(v) >> (8 * i));
    add(bytes, 8);
  }
};

// One call's inputs: fresh buffers, the adjustment record and a subpicture
// record pointing into the buffers.
struct Call {
  const Geometry& g;
  std::vector<uint8_t> buffers[kPlanes];
  tag_ajust_contrast_info adjust;
  tagMIX_INFO mix;
  tagVideoFrame frame;

  Call(const Geometry& geometry, const std::vector<uint8_t>* pristine) : g(geometry) {
    for (int i = 0; i < kPlanes; ++i) buffers[i] = pristine[i];
    adjust = tag_ajust_contrast_info{};
    adjust.lumaGain = 70;
    adjust.chromaGain = 58;
    adjust.lumaOffset = -6;
    adjust.uOffset = 3;
    adjust.vOffset = -2;
    adjust.lumaOffsetExtra = 1;
    adjust.uOffsetExtra = 2;
    adjust.vOffsetExtra = -1;
    adjust.rgb16Layout = 0;
    adjust.lumaPlaneRows = g.height;
    adjust.rowsFromDestination = g.height;
    mix = tagMIX_INFO{};
    mix.picturePitch = g.picturePitch;
    mix.subPitch = g.subPitch;
    mix.dstPitch = g.dstPitch;
    mix.width = g.width;
    mix.height = g.height;
    mix.pictureY = at(kSrcY);
    mix.pictureV = at(kSrcV);
    mix.pictureU = at(kSrcU);
    mix.subAlpha = at(kSubA);
    mix.subY = at(kSubY);
    mix.subV = at(kSubV);
    mix.subU = at(kSubU);
    mix.dst = at(kDst);
    mix.dstU = at(kDstU);
    mix.dstV = at(kDstV);
    mix.colorKey = g.key;
    mix.adjust = &adjust;
    frame = tagVideoFrame{};
    frame.lineMode = g.lineMode;
    frame.planeY = at(kSrcY);
    frame.planeU = at(kSrcU);
    frame.planeV = at(kSrcV);
    frame.lumaWidth = g.width;
  }
  unsigned char* at(Plane p) { return buffers[p].data() + kOrigin; }

  // Every buffer, then the record with its pointers as offsets into their
  // buffers (addresses differ between runs, offsets must not).
  void digest(Digest& d) {
    for (const std::vector<uint8_t>& b : buffers) d.add(b.data(), b.size());
    const int32_t fields[] = {mix.picturePitch, mix.subPitch, mix.dstPitch, mix.width,
                              mix.height, int32_t(mix.colorKey)};
    for (int32_t f : fields) d.add_int(f);
    const struct { unsigned char* p; Plane plane; } pointers[] = {
        {mix.pictureY, kSrcY}, {mix.pictureV, kSrcV}, {mix.pictureU, kSrcU},
        {mix.subAlpha, kSubA}, {mix.subY, kSubY},     {mix.subV, kSubV},
        {mix.subU, kSubU},     {mix.dst, kDst},       {mix.dstU, kDstU},
        {mix.dstV, kDstV}};
    for (const auto& ptr : pointers) d.add_int(ptr.p - buffers[ptr.plane].data());
  }
};

// ------------------------------------------------------------ entry points
// The types come from the header's declarations, so a signature that
// changes there changes here.
using A9 = decltype(&loadimage_yuy2);
using Mix = decltype(&mix_ayuy2_yuy2_p_ajust);
using ContrastSetup = decltype(&get_contrast_data);
using Opt = decltype(&strech_opt_yuy2_ajust);
using PlaneDoubler = decltype(&strech_pic_1X2_adjust);
using PlainPlaneDoubler = decltype(&strech_pic_2X2);
using PackedDoubler = decltype(&yuy2_strech_picture_2X2_yuy2);
using PackedDoublerAdjust = decltype(&yuy2_strech_picture_2X2_yuy2_ajust);
using KeyFill = decltype(&LoadColorKeyRgb32);
using MaskReplace = decltype(&RelaceMaskWithColorKey);

enum Kind { kA9, kMix, kContrast, kOpt, kPlaneDoubler, kPlainPlaneDoubler,
            kPackedDoubler, kPackedDoublerAdjust, kKeyFill, kMaskReplace };

struct Entry {
  const char* name;
  Kind kind;
  void* address;
};

Entry entries[] = {
    {"get_contrast_data", kContrast, nullptr},
    {"loadimage_yuy2", kA9, nullptr},
    {"loadimage_yuy2_ajust", kA9, nullptr},
    {"loadimage_yuy2_mono_ajust", kA9, nullptr},
    {"loadimage_half_yuy2_ajust", kA9, nullptr},
    {"loadimage_yv12", kA9, nullptr},
    {"loadimage_yv12_ajust", kA9, nullptr},
    {"loadimage_half_yv12_ajust", kA9, nullptr},
    {"loadimage_rgb32", kA9, nullptr},
    {"loadimage_rgb24", kA9, nullptr},
    {"loadimage_rgb16", kA9, nullptr},
    {"loadimage_rgb32_ajust", kA9, nullptr},
    {"loadimage_rgb24_ajust", kA9, nullptr},
    {"loadimage_rgb16_ajust", kA9, nullptr},
    {"LoadYUY2_YUY2", kA9, nullptr},
    {"LoadYUY2_YUY2_adjust", kA9, nullptr},
    {"LoadYUY2_RGB16", kA9, nullptr},
    {"LoadYUY2_RGB16_adjust", kA9, nullptr},
    {"LoadYUY2_RGB24", kA9, nullptr},
    {"LoadYUY2_RGB24_adjust", kA9, nullptr},
    {"LoadYUY2_RGB32", kA9, nullptr},
    {"LoadYUY2_RGB32_adjust", kA9, nullptr},
    {"Convert_RGB32_To_AYUY2", kMix, nullptr},
    {"Convert_RGB24_To_AYUY2", kMix, nullptr},
    {"Convert_RGB16_565_To_AYUY2", kMix, nullptr},
    {"Restore_RGB32_To_Alpha", kMix, nullptr},
    {"Restore_RGB24_To_Alpha", kMix, nullptr},
    {"Restore_RGB16_565_To_Alpha", kMix, nullptr},
    {"load_subpicture_alpha_rgb32", kMix, nullptr},
    {"load_subpicture_alpha_rgb24", kMix, nullptr},
    {"load_subpicture_alpha_rgb16_565", kMix, nullptr},
    {"load_subpicture_yuy2_rgb32", kMix, nullptr},
    {"load_subpicture_yuy2_rgb32_ajust", kMix, nullptr},
    {"load_subpicture_yuy2_rgb24", kMix, nullptr},
    {"load_subpicture_yuy2_rgb24_ajust", kMix, nullptr},
    {"load_subpicture_yuy2_rgb16", kMix, nullptr},
    {"load_subpicture_yuy2_rgb16_ajust", kMix, nullptr},
    {"mix_ayuy2_yuy2_p_ajust", kMix, nullptr},
    {"mix_ayuy2_half_yuy2_p_ajust", kMix, nullptr},
    {"mix_ayuy2_yuy2_i_ajust", kMix, nullptr},
    {"mix_ayv12_yv12_p", kMix, nullptr},
    {"mix_ayv12_yv12_i", kMix, nullptr},
    {"mix_ayv12_yv12_p_ajust", kMix, nullptr},
    {"mix_ayuy2_rgb32_p_ajust", kMix, nullptr},
    {"mix_ayuy2_rgb24_p_ajust", kMix, nullptr},
    {"mix_ayuy2_rgb16_p_ajust", kMix, nullptr},
    {"mix_ayuy2_rgb32_i_ajust", kMix, nullptr},
    {"mix_ayuy2_rgb24_i_ajust", kMix, nullptr},
    {"mix_ayuy2_rgb16_i_ajust", kMix, nullptr},
    {"strech_opt_yuy2_ajust", kOpt, nullptr},
    {"strech_picture_1X2_yuy2", kA9, nullptr},
    {"strech_picture_1X2_yuy2_ajust", kA9, nullptr},
    {"strech_picture_1X2_yuy2_ajust_rgb32", kA9, nullptr},
    {"strech_picture_1X2_yuy2_ajust_rgb24", kA9, nullptr},
    {"strech_picture_1X2_yuy2_ajust_rgb16", kA9, nullptr},
    {"strech_picture_1X2_yv12_ajust", kA9, nullptr},
    {"strech_pic_1X2_adjust", kPlaneDoubler, nullptr},
    {"strech_picture_2X2_yuy2", kA9, nullptr},
    {"strech_picture_2X2_yuy2_ajust", kA9, nullptr},
    {"strech_picture_2X2_yv12_ajust", kA9, nullptr},
    {"strech_pic_2X2", kPlainPlaneDoubler, nullptr},
    {"strech_pic_2X2_adjust", kPlaneDoubler, nullptr},
    {"yuy2_strech_picture_2X2_yuy2", kPackedDoubler, nullptr},
    {"yuy2_strech_picture_2X2_yuy2_ajust", kPackedDoublerAdjust, nullptr},
    {"LoadColorKeyRgb32", kKeyFill, nullptr},
    {"LoadColorKeyRgb24", kKeyFill, nullptr},
    {"LoadColorKeyRgb16", kKeyFill, nullptr},
    {"RelaceMaskWithColorKey", kMaskReplace, nullptr},
};

void run(const Entry& e, Call& c) {
  const Geometry& g = c.g;
  switch (e.kind) {
    case kA9:
      reinterpret_cast<A9>(e.address)(c.at(kSrcY), c.at(kSrcU), c.at(kSrcV), c.at(kDst), g.width,
                                      g.height, g.srcPitch, g.dstPitch, &c.adjust);
      break;
    case kMix:
      reinterpret_cast<Mix>(e.address)(&c.mix);
      break;
    case kContrast:
      reinterpret_cast<ContrastSetup>(e.address)(&c.adjust);
      break;
    case kOpt:
      reinterpret_cast<Opt>(e.address)(&c.frame, 0, g.height, c.at(kDst), g.dstPitch, &c.adjust);
      break;
    case kPlaneDoubler:
      reinterpret_cast<PlaneDoubler>(e.address)(c.at(kSrcY), c.at(kDst), g.width, g.height,
                                                g.srcPitch, g.dstPitch, &c.adjust, 1 + g.lineMode);
      break;
    case kPlainPlaneDoubler:
      reinterpret_cast<PlainPlaneDoubler>(e.address)(c.at(kSrcY), c.at(kDst), g.width, g.height,
                                                     g.srcPitch, g.dstPitch);
      break;
    case kPackedDoubler:
      reinterpret_cast<PackedDoubler>(e.address)(c.at(kSrcY), c.at(kSrcU), c.at(kSrcV), c.at(kDst),
                                                 g.width, g.height, g.dstPitch);
      break;
    case kPackedDoublerAdjust:
      reinterpret_cast<PackedDoublerAdjust>(e.address)(c.at(kSrcY), c.at(kSrcU), c.at(kSrcV),
                                                       c.at(kDst), g.width, g.height, g.dstPitch,
                                                       &c.adjust);
      break;
    case kKeyFill:
      reinterpret_cast<KeyFill>(e.address)(g.key, c.at(kDst), g.width, g.height, 0, g.dstPitch);
      break;
    case kMaskReplace:
      reinterpret_cast<MaskReplace>(e.address)(c.at(kDst), c.at(kSrcY), 0xFF, g.key, g.width,
                                               g.dstPitch, g.height);
      break;
  }
}

// 32-bit Windows keeps the stack only 4-byte aligned, so hosts built by
// other compilers call in at any offset. The 32-bit program is built with
// -mpreferred-stack-boundary=2, where alloca moves the stack by whole words:
// it calls each kernel at all four offsets, which must give the same bytes.
#if defined(_WIN32) && defined(__i386__)
constexpr int kStackShifts = 4;
#else
constexpr int kStackShifts = 1;
#endif

__attribute__((noinline)) void run_shifted(const Entry& e, Call& c, int bytes) {
  volatile char* pad = static_cast<volatile char*>(__builtin_alloca(4 + bytes));
  pad[0] = 0;
  run(e, c);
}

}  // namespace

int main(int argc, char** argv) {
  const char* name = argc > 1 ? argv[1] : kDefaultLibrary;
  void* library = open_library(name);
  if (!library) {
    std::fprintf(stderr, "kernel_digests: cannot load %s\n", name);
    return 1;
  }
  int missing = 0;
  for (Entry& e : entries) {
    e.address = find_symbol(library, e.name);
    if (!e.address) {
      std::fprintf(stderr, "kernel_digests: %s has no entry point %s\n", name, e.name);
      ++missing;
    }
  }
  if (missing) return 1;
  // The adjusting kernels read the constants loaded by the set-up call.
  const auto setup = reinterpret_cast<ContrastSetup>(entries[0].address);

  std::vector<uint8_t> pristine[std::size(kGeometries)][kPlanes];
  Random random{0x5EEDu};
  for (auto& geometry : pristine)
    for (std::vector<uint8_t>& b : geometry) {
      b.resize(kBufferBytes);
      fill(b, random);
    }

  int status = 0;
  for (const Entry& e : entries) {
    Digest d;
    for (size_t i = 0; i < std::size(kGeometries); ++i) {
      uint64_t first = 0;
      for (int shift = 0; shift < kStackShifts; ++shift) {
        Call c(kGeometries[i], pristine[i]);
        setup(&c.adjust);
        run_shifted(e, c, 4 * shift);
        Digest one;
        c.digest(one);
        if (shift == 0) {
          first = one.value;
        } else if (one.value != first) {
          std::fprintf(stderr, "kernel_digests: %s writes differently with the stack moved by %d bytes\n",
                       e.name, 4 * shift);
          status = 1;
        }
      }
      d.add_int(int64_t(first));
    }
    std::printf("%s %016llx\n", e.name, (unsigned long long)d.value);
  }
  // Unloading runs the library's detach path.
  if (!close_library(library)) {
    std::fprintf(stderr, "kernel_digests: cannot unload %s\n", name);
    status = 1;
  }
  return status;
}
