/*
 * yuvblit: pixel kernels for the display path of a video player.
 *
 * Every entry point is a free function that returns nothing and checks
 * nothing: no null tests, no alignment tests, no error codes. The host sizes
 * its planes and surfaces. Kernels work in fixed groups of pixels and rows
 * (most often 16 pixels by 2 rows) and always process at least one group, so
 * they read and write up to one group beyond the right and bottom edges of
 * the picture. A width that is not a multiple of the group makes later rows
 * start further right ("drift") in most planar kernels; each family below
 * says where it differs.
 *
 * Kernels whose name ends in _ajust or _adjust apply the picture adjustment
 * loaded by get_contrast_data(); until the first call every adjusted sample is
 * 0. No other kernel reads the adjustment. Source and destination buffers
 * must not overlap.
 */
#ifndef YUVBLIT_H
#define YUVBLIT_H

#include <stdint.h>

#if defined(_WIN32)
#  if defined(YUVBLIT_BUILDING)
#    define YUVBLIT_API __declspec(dllexport)
#  else
#    define YUVBLIT_API __declspec(dllimport)
#  endif
#else
#  define YUVBLIT_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ------------------------------------------------------------------------ */
/* Records                                                                   */
/* ------------------------------------------------------------------------ */

/*
 * The host's picture-adjustment record. Only the low 16 bits of fields 0..7
 * are used, and each offset only as the (wrapping 16-bit) sum with its Extra
 * field. Gains are in 1/64 units: 64 leaves a sample unchanged.
 */
typedef struct tag_ajust_contrast_info {
    int32_t lumaGain;             /* 0 */
    int32_t chromaGain;           /* 1: multiplies both U and V */
    int32_t lumaOffset;           /* 2 */
    int32_t uOffset;              /* 3 */
    int32_t vOffset;              /* 4 */
    int32_t lumaOffsetExtra;      /* 5 */
    int32_t uOffsetExtra;         /* 6 */
    int32_t vOffsetExtra;         /* 7 */
    uint32_t rgb16Layout;         /* 8: 0..3, read directly by RGB16 kernels */
    int32_t hostReserved;         /* 9: never read */
    int32_t lumaPlaneRows;        /* 10: read by loadimage_yv12_ajust */
    int32_t rowsFromDestination;  /* 11: read by loadimage_yv12_ajust */
} tag_ajust_contrast_info;

/*
 * One subpicture job. Several kernels advance plane pointers and count
 * height down inside the record: fill it afresh before every call. Note the
 * order of the chroma pointers: V before U for picture and subpicture, U
 * before V for the destination.
 */
typedef struct tagMIX_INFO {
    int32_t picturePitch;
    int32_t subPitch;
    int32_t dstPitch;
    int32_t width;
    int32_t height;
    unsigned char* pictureY;
    unsigned char* pictureV;
    unsigned char* pictureU;
    unsigned char* subAlpha;
    unsigned char* subY;
    unsigned char* subV;
    unsigned char* subU;
    unsigned char* dst;
    unsigned char* dstU;
    unsigned char* dstV;
    uint32_t colorKey;
    int32_t hostField17;
    int32_t hostField18;
    tag_ajust_contrast_info* adjust;
} tagMIX_INFO;

/*
 * A decoded frame for the optimised stretcher. Only lineMode, the three plane
 * pointers and lumaWidth are read; the host-owned fields keep them in place.
 */
typedef struct tagVideoFrame {
    int32_t hostFields1to11[11];
    int32_t lineMode;             /* 1: every second row (one field) */
    int32_t hostFields13to24[12];
    unsigned char* planeY;
    unsigned char* planeU;
    unsigned char* planeV;
    int32_t hostFields28to33[6];
    int32_t lumaWidth;            /* pixels, and the packed luma pitch */
} tagVideoFrame;

#if defined(__i386__) || defined(_M_IX86)
#  ifdef __cplusplus
#    define YUVBLIT_ASSERT_LAYOUT(c, m) static_assert(c, m)
#  else
#    define YUVBLIT_ASSERT_LAYOUT(c, m) _Static_assert(c, m)
#  endif
#  include <stddef.h>
YUVBLIT_ASSERT_LAYOUT(sizeof(tag_ajust_contrast_info) == 48, "adjust record is 12 words");
YUVBLIT_ASSERT_LAYOUT(offsetof(tagMIX_INFO, pictureY) == 20, "mix record layout");
YUVBLIT_ASSERT_LAYOUT(offsetof(tagMIX_INFO, colorKey) == 60, "mix record layout");
YUVBLIT_ASSERT_LAYOUT(offsetof(tagMIX_INFO, adjust) == 72, "mix record layout");
YUVBLIT_ASSERT_LAYOUT(offsetof(tagVideoFrame, lineMode) == 44, "frame record layout");
YUVBLIT_ASSERT_LAYOUT(offsetof(tagVideoFrame, planeY) == 96, "frame record layout");
YUVBLIT_ASSERT_LAYOUT(offsetof(tagVideoFrame, lumaWidth) == 132, "frame record layout");
#endif

/* ------------------------------------------------------------------------ */
/* Nine-argument kernels                                                     */
/* ------------------------------------------------------------------------ */
/*
 * srcY, srcU, srcV: planar 4:2:0 source. Luma rows are srcPitch bytes apart,
 * chroma rows srcPitch/2 (arithmetic halving); chroma row k serves luma rows
 * 2k and 2k+1. dst: first byte of the top-left destination pixel, rows
 * dstPitch bytes apart. adjust: read only where a family says so.
 */
#define YUVBLIT_A9(name)                                                      \
    YUVBLIT_API void name(void* srcY, void* srcU, void* srcV, void* dst,      \
                          int32_t width, int32_t height, int32_t srcPitch,    \
                          int32_t dstPitch, tag_ajust_contrast_info* adjust)

/*
 * Adjustment set-up: loads the process-wide adjustment constants from fields
 * 0..7 of the tag_ajust_contrast_info that info points to. They stay in force
 * for every later adjusting kernel until the next call. Not thread-safe
 * against kernels running at the same time.
 */
YUVBLIT_API void get_contrast_data(void* info);

/*
 * Planar frame to YUY2 (Y0 U Y1 V per pixel pair). Groups of 16 pixels by a
 * row pair: a row always covers ceil(width/16) groups (at least one), and
 * height/2 row pairs (at least one) are written. Row ends step by width, so
 * for widths that are not multiples of 16 every later row starts further
 * right by the overrun. Room needed per row: 32 bytes per group (16 for the
 * half kernel).
 *
 * loadimage_yuy2: copies. In the second row of each pair the first 8 bytes of
 *   every 32-byte group are left as the surface held them.
 * loadimage_yuy2_ajust: adjusts luma, U and V. Returns without writing when
 *   height <= 8 or height is odd.
 * loadimage_yuy2_mono_ajust: adjusts luma, writes 0x80 chroma; never reads
 *   srcU or srcV.
 * loadimage_half_yuy2_ajust: half width: averages pixel pairs (rounding up),
 *   then adjusts; every source row is kept.
 */
YUVBLIT_A9(loadimage_yuy2);
YUVBLIT_A9(loadimage_yuy2_ajust);
YUVBLIT_A9(loadimage_yuy2_mono_ajust);
YUVBLIT_A9(loadimage_half_yuy2_ajust);

/*
 * Planar frame to YV12 (luma plane, then V plane, then U plane).
 *
 * loadimage_yv12: copies with its own historical stride arithmetic. Per row
 *   pair and 16-byte group it copies srcY -> dst and srcY + width ->
 *   dst + srcPitch; the destination is not moved at row-pair ends (rows
 *   continue where the last group ended) and the source moves by
 *   2*srcPitch - width + 2*dstPitch - width. The V plane starts at
 *   dst + height*dstPitch - 1, the U plane (height*dstPitch >> 2) after it;
 *   chroma is copied for `height` chroma rows (twice the chroma plane's
 *   height), U rows before V rows in each step. Chroma strides are the
 *   unsigned halves of the pitches: pitches must not be negative.
 * loadimage_yv12_ajust: adjusts plane by plane, 8 samples per step, at
 *   least one row and 8*ceil(width/8) bytes per row. The source planes are
 *   read as packed rows of that length (srcPitch is ignored). The V plane is
 *   placed at dst + rowsFromDestination*dstPitch +
 *   (((lumaPlaneRows - rowsFromDestination)*dstPitch) >> 2) and the U plane
 *   ((lumaPlaneRows*dstPitch) >> 2) after it, from the two record fields.
 *   The V plane (from srcV) gets the U offset and the U plane the V offset.
 * loadimage_half_yv12_ajust: half width by keeping the odd samples of each
 *   pair, adjusted; 8*ceil(width/16) bytes per luma row, every row kept. V
 *   plane at dst + height*dstPitch, U plane (dstPitch/2)*(height/2) after
 *   it. The last chroma step of a row is moved back to end at the row's
 *   end.
 */
YUVBLIT_A9(loadimage_yv12);
YUVBLIT_A9(loadimage_yv12_ajust);
YUVBLIT_A9(loadimage_half_yv12_ajust);

/*
 * Planar frame to RGB32 (bytes B G R 0), RGB24 (B G R) and RGB16 (one
 * little-endian word per pixel in layout adjust->rgb16Layout: 0 = 5-6-5,
 * 1 = 5-5-5 in bits 15..1, 2 = 6-6-4, 3 = 6-5-5; low bits are dropped, no
 * rounding; above 3 the RGB16 kernels return without writing). Fixed-point
 * conversion of studio-range YUV (Y 16..235), truncating. Groups of 16
 * pixels by a row pair sharing one chroma row: a row writes
 * ceil(width/16)*16 pixels (64, 48 or 32 bytes per group), at least one row
 * pair; row pairs drift right for widths that are not multiples of 16. The
 * _ajust forms adjust the samples before converting.
 */
YUVBLIT_A9(loadimage_rgb32);
YUVBLIT_A9(loadimage_rgb24);
YUVBLIT_A9(loadimage_rgb16);
YUVBLIT_A9(loadimage_rgb32_ajust);
YUVBLIT_A9(loadimage_rgb24_ajust);
YUVBLIT_A9(loadimage_rgb16_ajust);

/*
 * Packed YUY2 source (srcY, pixel pairs Y0 U Y1 V; srcPitch in pixels, so
 * source rows are 2*srcPitch bytes apart; srcU and srcV are not read) onto
 * YUY2 and RGB surfaces. Row pairs use the first row's chroma for both rows.
 * Groups are 8 pixels for YUY2 output and 16 pixels for RGB output, read in
 * whole groups on both rows; a row writes ceil(width/8)*16 bytes (YUY2) or
 * ceil(width/16) groups of 32, 48 or 64 bytes (RGB16, RGB24, RGB32), at
 * least one group. After a row's groups both pointers move back to the
 * row's end, so later rows do not drift (except at width 0, where every row
 * pair starts one group further right). RGB16 kernels read
 * adjust->rgb16Layout and write nothing above 3.
 *
 * LoadYUY2_RGB32_adjust applies the end-of-row correction after every group
 * and tests for the end of the row after that correction:
 *  - Widths that are multiples of 16 (0 included): each row pair converts
 *    only its first 16 pixels (64 bytes in each of its two rows). The pair
 *    steps are those of a full row, so row pair k reads from
 *    srcY + k*(4*srcPitch - 2*width + 32) and writes to
 *    dst + k*(2*dstPitch - 4*width + 64). height/2 row pairs are done (at
 *    least one).
 *  - Other widths (r = width mod 16): the loop as defined would never end.
 *    This library converts the first row pair only and returns, without
 *    reading height: ceil(width/16) groups (what LoadYUY2_RGB32 converts per
 *    row), group k converting source pixels k*r .. k*r+15 of rows 0 and 1
 *    into destination pixels k*r .. k*r+15 of both rows, with row 0's
 *    chroma; a later group overwrites what it shares with an earlier one.
 *    When r is odd, odd groups start on the second pixel of a pair and so
 *    read a pair's V byte as U and the next pair's U byte as V. Nothing is
 *    written outside what LoadYUY2_RGB32 writes for the same arguments.
 */
YUVBLIT_A9(LoadYUY2_YUY2);
YUVBLIT_A9(LoadYUY2_YUY2_adjust);
YUVBLIT_A9(LoadYUY2_RGB16);
YUVBLIT_A9(LoadYUY2_RGB16_adjust);
YUVBLIT_A9(LoadYUY2_RGB24);
YUVBLIT_A9(LoadYUY2_RGB24_adjust);
YUVBLIT_A9(LoadYUY2_RGB32);
YUVBLIT_A9(LoadYUY2_RGB32_adjust);

/* ------------------------------------------------------------------------ */
/* Subpicture kernels (one tagMIX_INFO argument)                             */
/* ------------------------------------------------------------------------ */

/*
 * Subpicture planes (AYUY2): alpha and Y one byte per pixel, rows subPitch
 * apart; U and V one sample per pixel pair on every row, rows subPitch/2
 * apart. Alpha weighs the subpicture in sixteenths: 0 shows the picture,
 * 16 and above the subpicture.
 *
 * Overlay bitmaps at dst, rows dstPitch apart: RGB32 (bytes B G R X), RGB24
 * (B G R) or RGB16 5-6-5 (little-endian words).
 *
 * Convert_*_To_AYUY2: bitmap colours into subY, subU, subV (BT.601 studio
 *   range in 1/1024 units, truncating; an RGB32 pixel's fourth byte takes
 *   part: it is OR-ed with 16 (Y) or 128 (U, V) and weighted 1024, so 0xFF
 *   gives Y 255; RGB16 fields are widened with zero low bits). Groups of 8
 *   pixels: a group whose pixels all equal colorKey (RGB32 the whole word,
 *   RGB24 as 0x00RRGGBB, RGB16 the low 16 bits) is skipped and its 8 Y, 4 U
 *   and 4 V bytes keep what they held, so clear the planes first; other
 *   groups write Y of every pixel and U, V of pixels 0, 2, 4, 6. width/8
 *   groups per row (rows slip when width is not a multiple of 8; below 8
 *   this library converts one group per row), height rows (at least one).
 *   Leaves subY, subU, subV (and subAlpha, by subPitch - width a row,
 *   although the alpha plane is not touched) advanced past the last row.
 * load_subpicture_alpha_*: the alpha plane into a bitmap, each alpha byte
 *   in the blue position and the rest of the pixel zero (RGB16: the byte
 *   zero-extended to a word). 16 pixels a group, ceil(width/16) groups per
 *   row (at least one).
 * Restore_*_To_Alpha: the alpha plane back from such a bitmap: RGB32 the
 *   blue byte, RGB24 the byte after each pixel (so a round trip moves the
 *   plane one pixel left), RGB16 the blue field (alpha AND 31). Groups of 8
 *   pixels (16 for RGB16).
 * Both alpha directions: the alpha plane steps by the processed row plus
 *   (picturePitch - width) >> 1 a row, not by subPitch; the bitmap by
 *   dstPitch less the row's bytes. At least one row; after the first only
 *   while dstPitch holds a row's bytes (a bottom-up bitmap gets one row).
 *   The RGB24 forms count the record's height down (to 0; -1 from 0).
 */
YUVBLIT_API void Convert_RGB32_To_AYUY2(tagMIX_INFO* info);
YUVBLIT_API void Convert_RGB24_To_AYUY2(tagMIX_INFO* info);
YUVBLIT_API void Convert_RGB16_565_To_AYUY2(tagMIX_INFO* info);
YUVBLIT_API void Restore_RGB32_To_Alpha(tagMIX_INFO* info);
YUVBLIT_API void Restore_RGB24_To_Alpha(tagMIX_INFO* info);
YUVBLIT_API void Restore_RGB16_565_To_Alpha(tagMIX_INFO* info);
YUVBLIT_API void load_subpicture_alpha_rgb32(tagMIX_INFO* info);
YUVBLIT_API void load_subpicture_alpha_rgb24(tagMIX_INFO* info);
YUVBLIT_API void load_subpicture_alpha_rgb16_565(tagMIX_INFO* info);

/*
 * A subpicture alone on an RGB surface. picturePitch is the subpicture's
 * width and row length (alpha and Y rows back to back, U and V rows of
 * picturePitch / 2); width and subPitch are not read. Alpha 0 gives colorKey
 * (RGB32 / RGB24 read as 0x00BBGGRR, RGB16 its low 16 bits as they stand),
 * 1..127 the converted (adjusted) colour, 128..255 black. RGB16 is always
 * 5-6-5 and a layout above 3 writes nothing. Each row is ceil(picturePitch /
 * 16) groups of 16 pixels and the surface moves on by dstPitch - picturePitch
 * * bytes per pixel, so other widths drift; height rows, at least one. The
 * record is left unchanged.
 */
YUVBLIT_API void load_subpicture_yuy2_rgb32(tagMIX_INFO* info);
YUVBLIT_API void load_subpicture_yuy2_rgb32_ajust(tagMIX_INFO* info);
YUVBLIT_API void load_subpicture_yuy2_rgb24(tagMIX_INFO* info);
YUVBLIT_API void load_subpicture_yuy2_rgb24_ajust(tagMIX_INFO* info);
YUVBLIT_API void load_subpicture_yuy2_rgb16(tagMIX_INFO* info);
YUVBLIT_API void load_subpicture_yuy2_rgb16_ajust(tagMIX_INFO* info);

/*
 * Mixers: a planar 4:2:0 picture (pictureY rows picturePitch apart, its
 * chroma picturePitch/2) and an AYUY2 subpicture blended in YUV, the mixed
 * samples adjusted, written to the surface at dst (rows dstPitch apart)
 * without reading it. Chroma pair j is weighted by the alpha of its
 * right-hand pixel 2j+1. Groups of 16 pixels: ceil(width/16) per row (at
 * least one), row steps computed from width (other widths drift right).
 * Row 1 of a pair is read 2*(pitch >> 1) below row 0 (subpicture chroma
 * subPitch >> 1); both rows share the picture's chroma row. The progressive
 * kernels keep pictureU, pictureV, subAlpha, subY, subU, subV in the record
 * and leave them past the processed rows, and count height down by 2 while
 * it stays above 0: ceil(height/2) row pairs (one for height 0), ending at
 * 0, -1, or -2 for 0.
 *
 * mix_ayuy2_yuy2_p_ajust: 32 bytes a group.
 * mix_ayuy2_half_yuy2_p_ajust: half width: every odd pixel (16 bytes a
 *   group); chroma samples 1, 3, 5, 7 of each 8, weighted by the alpha of
 *   pixel 4k+3 as it stands (not clamped to 16, wrapping 16-bit products).
 *   The picture's second row and its chroma steps use subPitch, not
 *   picturePitch.
 * mix_ayuy2_yuy2_i_ajust: the picture is one field of height/2 rows; each
 *   field row gives two output rows, the second the rounded average of
 *   neighbouring field rows (chroma likewise, per four output rows). Below
 *   height 4 nothing is written; otherwise 4*ceil(height/4) rows (4 for
 *   heights 4..7); the closing four rows repeat the last field row and
 *   chroma row instead of reading past them. Groups per row: (width/2)/8 rounded up, at least one; rows do not
 *   drift. Leaves height 0 and the subpicture positions one row past the
 *   last row written, pictureU/pictureV one chroma row on per full group.
 */
YUVBLIT_API void mix_ayuy2_yuy2_p_ajust(tagMIX_INFO* info);
YUVBLIT_API void mix_ayuy2_half_yuy2_p_ajust(tagMIX_INFO* info);
YUVBLIT_API void mix_ayuy2_yuy2_i_ajust(tagMIX_INFO* info);

/* Mixing onto YV12 surfaces. */
YUVBLIT_API void mix_ayv12_yv12_p(tagMIX_INFO* info);
YUVBLIT_API void mix_ayv12_yv12_i(tagMIX_INFO* info);
YUVBLIT_API void mix_ayv12_yv12_p_ajust(tagMIX_INFO* info);

/*
 * Progressive mixing onto RGB32, RGB24 and RGB16 (64, 48 or 32 bytes per
 * group and row), as the YUY2 mixers above. mix_ayuy2_rgb16_p_ajust reads
 * info->adjust->rgb16Layout and, above 3, returns without writing or
 * changing the record; the others never read info->adjust.
 */
YUVBLIT_API void mix_ayuy2_rgb32_p_ajust(tagMIX_INFO* info);
YUVBLIT_API void mix_ayuy2_rgb24_p_ajust(tagMIX_INFO* info);
YUVBLIT_API void mix_ayuy2_rgb16_p_ajust(tagMIX_INFO* info);

/* Interlaced mixing onto RGB surfaces (one field, doubled line by line). */
YUVBLIT_API void mix_ayuy2_rgb32_i_ajust(tagMIX_INFO* info);
YUVBLIT_API void mix_ayuy2_rgb24_i_ajust(tagMIX_INFO* info);
YUVBLIT_API void mix_ayuy2_rgb16_i_ajust(tagMIX_INFO* info);

/* ------------------------------------------------------------------------ */
/* Stretching                                                                */
/* ------------------------------------------------------------------------ */

/*
 * Vertical doubling onto YUY2 with edge-directed interpolation. Returns
 * without reading anything below 8 rows; adjust is never read. Writes
 * 2 * height lines (2 * (height - 1) for odd heights) of whole 16-pixel
 * groups: copied lines ceil(lumaWidth / 16) groups (one when lumaWidth <= 0),
 * interpolated lines the first group, ceil((lumaWidth - 32) / 16) middle
 * groups and the last group; below a lumaWidth of 48 (where the middle
 * count would never end) exactly 3 groups.
 */
YUVBLIT_API void strech_opt_yuy2_ajust(tagVideoFrame* frame, int32_t top,
                                       int32_t height, unsigned char* dst,
                                       int32_t dstPitch,
                                       tag_ajust_contrast_info* adjust);

/* Vertical doubling (1X2). */
YUVBLIT_A9(strech_picture_1X2_yuy2);
YUVBLIT_A9(strech_picture_1X2_yuy2_ajust);
/*
 * Adjusted planar 4:2:0 onto RGB32 / RGB24 / RGB16, doubled vertically:
 * 2 * height lines of ceil(width / 16) groups of 16 pixels (at least one;
 * 64 / 48 / 32 bytes per group). New lines are rounded averages of adjusted
 * samples; the last two lines are equal. Below 12 rows nothing is written
 * and adjust is not read; the RGB16 member then reads adjust->rgb16Layout
 * and writes nothing above 3. Rows never drift with width. Odd heights read
 * one luma and one chroma row past the picture and write 2 * (height + 1)
 * lines per 16-pixel column, each column after the first starting one
 * source row and two lines lower.
 */
YUVBLIT_A9(strech_picture_1X2_yuy2_ajust_rgb32);
YUVBLIT_A9(strech_picture_1X2_yuy2_ajust_rgb24);
YUVBLIT_A9(strech_picture_1X2_yuy2_ajust_rgb16);
YUVBLIT_A9(strech_picture_1X2_yv12_ajust);
/*
 * Plane doublers (strech_pic_*): plane 1, 2 or 3 adds the luma, U or V
 * offset, any other value none; the gain is always the luma gain and adjust
 * is not read. Their row loop runs height - 1 times, at least once, so a
 * height below 2 writes what height 2 writes; a negative width acts as 0.
 * strech_pic_2X2 writes one line below its 2 * height lines for every strip
 * but the last. strech_pic_2X2_adjust reads its source packed (width bytes
 * per row; srcPitch only reaches the row below) and one byte past each run
 * of groups; with a width that is not a multiple of 16 each later pair of
 * lines starts width % 16 bytes further left, and below 16 wide it reads
 * and writes up to 16 - width bytes before the row or line start.
 */
YUVBLIT_API void strech_pic_1X2_adjust(unsigned char* src, unsigned char* dst,
                                       int32_t width, int32_t height,
                                       int32_t srcPitch, int32_t dstPitch,
                                       tag_ajust_contrast_info* adjust,
                                       int32_t plane);

/*
 * Doubling in both directions (2X2). The YUY2 members write 2 * height lines
 * of max(width / 16 - 1, 1) * 64 + 64 bytes; below a width of 32, where the
 * step count would wrap, a line is one ordinary step and the edge step
 * (reading 32 luma and 16 of each chroma bytes), and each later line starts
 * 32 - width luma, 16 - width / 2 chroma and 128 - 4 * width destination
 * bytes further on.
 */
YUVBLIT_A9(strech_picture_2X2_yuy2);
YUVBLIT_A9(strech_picture_2X2_yuy2_ajust);
YUVBLIT_A9(strech_picture_2X2_yv12_ajust);
YUVBLIT_API void strech_pic_2X2(unsigned char* src, unsigned char* dst,
                                int32_t width, int32_t height,
                                int32_t srcPitch, int32_t dstPitch);
YUVBLIT_API void strech_pic_2X2_adjust(unsigned char* src, unsigned char* dst,
                                       int32_t width, int32_t height,
                                       int32_t srcPitch, int32_t dstPitch,
                                       tag_ajust_contrast_info* adjust,
                                       int32_t plane);

/*
 * Packed YUY2 source (width bytes per row, rows packed width apart) doubled
 * in both directions onto YUY2: 2 * height lines of 2 * width bytes, in
 * strips of 32 source bytes. The plain kernel writes nothing below 16 rows,
 * the adjusting one below 8. width must be a multiple of 32 and at least 64;
 * for any other width the strip count never comes out and the library writes
 * nothing. Odd heights read one row past the picture and write two more
 * lines. srcU, srcV and adjust are not read.
 */
YUVBLIT_API void yuy2_strech_picture_2X2_yuy2(void* src, void* srcU,
                                              void* srcV, void* dst,
                                              int32_t width, int32_t height,
                                              int32_t dstPitch);
YUVBLIT_API void yuy2_strech_picture_2X2_yuy2_ajust(
    void* src, void* srcU, void* srcV, void* dst, int32_t width,
    int32_t height, int32_t dstPitch, tag_ajust_contrast_info* adjust);

/* ------------------------------------------------------------------------ */
/* Colour keys                                                               */
/* ------------------------------------------------------------------------ */

/*
 * Key fills: height 0 writes nothing; otherwise rows go in pairs, each
 * ceil(width / 16) * 16 pixels (16 for width 0), so other widths drift.
 * Widths and heights count as unsigned. The RGB24 fill stores its three
 * words in an order that keeps only grey keys whole and ORs the key's top
 * byte into some bytes. reserved is not read. RelaceMaskWithColorKey works
 * on bytes, processes at least one row (height 0 too), and both planes move
 * on by pitch - width per row.
 */

YUVBLIT_API void LoadColorKeyRgb32(uint32_t key, void* dst, int32_t width,
                                   int32_t height, int32_t reserved,
                                   int32_t dstPitch);
YUVBLIT_API void LoadColorKeyRgb24(uint32_t key, void* dst, int32_t width,
                                   int32_t height, int32_t reserved,
                                   int32_t dstPitch);
YUVBLIT_API void LoadColorKeyRgb16(uint32_t key, void* dst, int32_t width,
                                   int32_t height, int32_t reserved,
                                   int32_t dstPitch);
YUVBLIT_API void RelaceMaskWithColorKey(unsigned char* dst,
                                        unsigned char* mask,
                                        uint32_t maskValue, uint32_t key,
                                        int32_t width, int32_t pitch,
                                        int32_t height);

#ifdef __cplusplus
}
#endif

#endif /* YUVBLIT_H */
