// libswscale as a peer: the same conversion a kernel family does, same size
// in and out, so swscale takes its unscaled path where it has one.
#pragma once

#include "bench_util.h"

namespace yuvblit_bench {

enum class PeerSource { kPlanar420, kPackedYuy2 };
enum class PeerOutput { kBgra, kYuyv422 };

// Registers `name` at every size, converting the family's source into
// `output` on a surface of `format`. Does nothing when the benchmark was
// built without libswscale.
void register_swscale_peer(const char* name, PeerSource source, PeerOutput output,
                           const Format& format);

}  // namespace yuvblit_bench
