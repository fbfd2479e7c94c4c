// Planar 4:2:0 frame onto a YV12 surface (luma plane, then V plane, then U
// plane): the walks. Each kernel keeps its own plane placement and stride
// arithmetic, odd as some of it is; the row operations do the bytes.
#include <algorithm>

#include "adjust/adjustment.h"
#include "frame/walk.h"
#include "load/plane_rows.h"
#include "yuvblit.h"

using namespace yuvblit;

namespace {

uint8_t* bytes_of(void* p) { return static_cast<uint8_t*>(p); }

// Plane selectors of ajust_plane: which gain and offset lanes it loads.
constexpr int32_t kLumaLanes = 1;  // lumaGain, lumaOffset
constexpr int32_t kULanes = 2;     // chromaGain, uOffset
constexpr int32_t kVLanes = 3;     // chromaGain, vOffset

// Adjusts one plane in groups of 8 samples, at least one group per row and
// at least one row. The source is read as packed rows: at a row end only the
// destination steps (by dstPitch - width), the source pointer is not moved,
// so the next row is read where the last group ended and srcPitch is unused.
void ajust_plane(const uint8_t* src, uint8_t* dst, int32_t width,
                 int32_t height, int32_t /*srcPitch*/, int32_t dstPitch,
                 const tag_ajust_contrast_info* /*adjust*/, int32_t plane) {
  const Adjustment all = current_adjustment();
  const SampleAdjust a = plane == kLumaLanes ? all.luma
                         : plane == kULanes  ? all.u
                                             : all.v;
  const size_t rowBytes = 8 * passes(static_cast<uint32_t>(width), 8);
  const int64_t rowStep = static_cast<int64_t>(rowBytes) + wrap32(int64_t{dstPitch} - width);
  uint32_t rows = static_cast<uint32_t>(height);
  if (alternating_runs_disjoint(rowStep, rowStep, rowBytes)) {
    // Rows share no bytes: many rows per row-operation call.
    auto batch = row_batch<RowRun>([&](const RowRun* runs, size_t count) {
      adjust_rows(runs, count, rowBytes, a);
    });
    do {
      batch.add({src, dst});
      src += rowBytes;
      dst = step(dst + rowBytes, int64_t{dstPitch} - width);
    } while (more(rows, 1));
    batch.finish();
    return;
  }
  do {
    adjust_bytes(src, dst, rowBytes, a);
    src += rowBytes;
    dst = step(dst + rowBytes, int64_t{dstPitch} - width);
  } while (more(rows, 1));
}

// One chroma plane of the half-width kernel: per row, groups of 16 source
// samples keep their 8 odd samples, then (when width/2 is not a multiple of
// 16) one more group placed so that it ends at the row's end, which rewrites
// part of what the last group wrote.
void half_chroma_plane(const uint8_t* src, uint8_t* dst, int32_t width,
                       int32_t height, int32_t srcPitch, int32_t dstPitch,
                       SampleAdjust a) {
  const int32_t rowSamples = half(width);
  const int32_t whole = rowSamples & ~15;
  const int32_t rest = rowSamples - whole;
  const size_t groups = passes(static_cast<uint32_t>(whole), 16);
  uint32_t rows = static_cast<uint32_t>(half(height));
  do {
    odd_samples_adjusted(src, dst, groups, a);
    src += 16 * groups;
    dst += 8 * groups;
    if (rest != 0) {
      src = step(src, int64_t{rest} - 16);
      dst = step(dst, int64_t{half(rest)} - 8);
      odd_samples_adjusted(src, dst, 1, a);
      src += 16;
      dst += 8;
    }
    src = step(src, int64_t{half(srcPitch)} - half(width));
    dst = step(dst, int64_t{half(dstPitch)} - (width >> 2));
  } while (more(rows, 1));
}

// Two rows of `bytes` bytes, the second `apart` bytes after the first,
// stored group by group (B bytes), first row first. When `apart` is a
// whole number of groups and less than `bytes`, a byte both rows store
// keeps the first row's value (its group comes later), so the pass is the
// first row whole plus the second row's last `apart` bytes.
// `next`: where the next pass's first row starts (null for the last pass);
// what that row covers of this pass's second row is not stored.
void copy_row_pair(const uint8_t* s0, const uint8_t* s1, uint8_t* d0,
                   int64_t apart, size_t bytes, size_t B, const uint8_t* next) {
  uint8_t* d1 = d0 + apart;
  if (!overlaps(d0, bytes, d1, bytes)) {
    copy_bytes(s0, d0, bytes);
    // A second row that the next pass's first row overwrites whole is not
    // stored (pitches equal to the width put every second row there).
    if (next != d1) copy_bytes(s1, d1, bytes);
  } else if (apart > 0 && apart % static_cast<int64_t>(B) == 0) {
    copy_bytes(s0, d0, bytes);
    const bool covered = next != nullptr && next <= d0 + bytes &&
                         next >= d0 + apart;
    if (!covered)
      copy_bytes(s1 + bytes - apart, d0 + bytes, static_cast<size_t>(apart));
  } else {
    const uint8_t* const srcs[2] = {s0, s1};
    uint8_t* const dsts[2] = {d0, d1};
    copy_groups_interleaved(srcs, dsts, 2, B, bytes / B);
  }
}
}  // namespace

// The chroma planes are placed below `height` luma rows, the V plane one
// byte early. Luma goes by row pairs whose second row is read at `width`
// past the first and written `srcPitch` below it; the destination is not
// moved at the end of a pair (the next pair carries on where the last group
// ended) while the source skips both pitches' worth. Chroma goes two rows
// per pass for `height` / 2 passes, so it covers twice the chroma height.
YUVBLIT_A9(loadimage_yv12) {
  (void)adjust;
  const uint8_t* y = bytes_of(srcY);
  uint8_t* d = bytes_of(dst);
  const int32_t lumaBytes = wrap32(int64_t{height} * dstPitch);
  uint8_t* vd = step(d, int64_t{lumaBytes} - 1);
  uint8_t* ud = step(vd, lumaBytes >> 2);

  const size_t groups = passes(static_cast<uint32_t>(width), 16);
  uint32_t rows = static_cast<uint32_t>(height);
  do {
    const uint8_t* y1 = step(y, width);
    // The second row goes srcPitch bytes after the first.
    copy_row_pair(y, y1, d, step(d, srcPitch) - d, 16 * groups, 16,
                  rows > 2 ? d + 16 * groups : nullptr);
    y = step(y + 16 * groups,
             (2 * int64_t{srcPitch} - width) + (2 * int64_t{dstPitch} - width));
    d += 16 * groups;
  } while (more(rows, 2));

  // Chroma strides and row-end steps are halved as unsigned values.
  auto logicalHalf = [](int64_t v) { return int64_t{static_cast<uint32_t>(wrap32(v)) >> 1}; };
  const int64_t cs = logicalHalf(srcPitch), cd = logicalHalf(dstPitch);
  const int64_t srcRowEnd = logicalHalf(2 * int64_t{srcPitch} - width);
  const int64_t dstRowEnd = logicalHalf(2 * int64_t{dstPitch} - width);
  const uint8_t* u = bytes_of(srcU);
  const uint8_t* v = bytes_of(srcV);
  const size_t steps = passes(static_cast<uint32_t>(half(width)), 8);
  rows = static_cast<uint32_t>(height);
  do {
    const uint8_t* u1 = step(u, cs);
    const uint8_t* v1 = step(v, cs);
    uint8_t* ud1 = step(ud, cd);
    uint8_t* vd1 = step(vd, cd);
    // Per step: both U rows, then both V rows.
    {
      // U pair and V pair apart: each pair on its own, U first.
      const size_t n = 8 * steps;
      const uint8_t* ulo = std::min(ud, ud1);
      const uint8_t* uhi = std::max(ud, ud1) + n;
      const uint8_t* vlo = std::min(vd, vd1);
      const uint8_t* vhi = std::max(vd, vd1) + n;
      if (uhi <= vlo || vhi <= ulo) {
        const bool last = rows <= 2;
        copy_row_pair(u, u1, ud, ud1 - ud, n, 8,
                      last ? nullptr : step(ud + n, dstRowEnd));
        copy_row_pair(v, v1, vd, vd1 - vd, n, 8,
                      last ? nullptr : step(vd + n, dstRowEnd));
      } else {
        const uint8_t* const srcs[4] = {u, u1, v, v1};
        uint8_t* const dsts[4] = {ud, ud1, vd, vd1};
        copy_groups_interleaved(srcs, dsts, 4, 8, steps);
      }
    }
    u = step(u + 8 * steps, srcRowEnd);
    v = step(v + 8 * steps, srcRowEnd);
    ud = step(ud + 8 * steps, dstRowEnd);
    vd = step(vd + 8 * steps, dstRowEnd);
  } while (more(rows, 2));
}

// Plane by plane through ajust_plane. The record places the chroma planes:
// with the picture starting at row t of a luma plane of R rows
// (lumaPlaneRows = R, rowsFromDestination = R - t) the V plane's pointer is
// its chroma row t/2 and the U plane follows a V plane of R*dstPitch/4
// bytes. The plane read from srcV gets the U offset and the plane read from
// srcU the V offset.
YUVBLIT_A9(loadimage_yv12_ajust) {
  const int32_t planeRows = adjust->lumaPlaneRows;
  const int32_t rowsBelow = adjust->rowsFromDestination;
  const int32_t rowsAbove = wrap32(int64_t{planeRows} - rowsBelow);
  uint8_t* d = bytes_of(dst);
  uint8_t* vd = step(d, int64_t{wrap32(int64_t{rowsBelow} * dstPitch)} +
                            (wrap32(int64_t{rowsAbove} * dstPitch) >> 2));
  uint8_t* ud = step(vd, wrap32(int64_t{planeRows} * dstPitch) >> 2);

  ajust_plane(bytes_of(srcY), d, width, height, srcPitch, dstPitch, adjust,
              kLumaLanes);
  ajust_plane(bytes_of(srcV), vd, half(width), half(height), half(srcPitch),
              half(dstPitch), adjust, kULanes);
  ajust_plane(bytes_of(srcU), ud, half(width), half(height), half(srcPitch),
              half(dstPitch), adjust, kVLanes);
}

// Half width by keeping the odd sample of each pair. Every luma row is
// kept; the chroma planes go row by row with an aligned last group. The V
// plane sits below `height` luma rows, the U plane after height/2 rows of
// dstPitch/2.
YUVBLIT_A9(loadimage_half_yv12_ajust) {
  (void)adjust;
  const Adjustment a = current_adjustment();
  const uint8_t* y = bytes_of(srcY);
  uint8_t* d = bytes_of(dst);
  uint8_t* vd = step(d, int64_t{height} * dstPitch);
  uint8_t* ud = step(vd, int64_t{half(dstPitch)} * half(height));

  const size_t groups = passes(static_cast<uint32_t>(width), 16);
  uint32_t rows = static_cast<uint32_t>(height);
  do {
    odd_samples_adjusted(y, d, groups, a.luma);
    y = step(y + 16 * groups, int64_t{srcPitch} - width);
    d = step(d + 8 * groups, int64_t{dstPitch} - half(width));
  } while (more(rows, 1));

  half_chroma_plane(bytes_of(srcV), vd, width, height, srcPitch, dstPitch, a.v);
  half_chroma_plane(bytes_of(srcU), ud, width, height, srcPitch, dstPitch, a.u);
}
