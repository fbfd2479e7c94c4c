// Repacking planar pictures for kernels that take another source layout.
#pragma once

#include <cstdint>
#include <vector>

namespace ybtool {

// A width x height planar 4:2:0 picture (chroma rows `chroma_pitch` bytes
// apart, luma rows `luma_pitch`) as packed YUY2, converted by libswscale with
// point sampling: every pixel keeps its luma sample and the chroma pair of
// its 2x2 block, so both rows of a pair carry the same chroma. Rows are
// `out_pitch` bytes apart; rows from `height` to `out_rows` repeat the last
// one. Throws ToolError when libswscale cannot do the conversion.
std::vector<uint8_t> planar_to_packed_yuy2(const uint8_t* y, const uint8_t* u,
                                           const uint8_t* v, int luma_pitch,
                                           int chroma_pitch, int width,
                                           int height, int out_pitch,
                                           int out_rows);

}  // namespace ybtool
