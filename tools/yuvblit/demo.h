// The `demo` subcommand: one picture through every kernel, as PNG files and
// an HTML contact sheet.
#pragma once

#include <string>
#include <vector>

namespace ybtool {

struct DemoOptions {
  std::string out_dir = "out/demo";
  std::string input;  // a YUV4MPEG2 file whose first frame is used; empty:
                      // the built-in test picture
};

// Writes source.png, overlay.png and overlay-alpha.png (the built-in
// overlay's two bitmaps), KERNEL.png for every kernel (KERNEL-layoutL.png
// for each RGB16 layout L of the kernels that read it) and index.html into
// out_dir (created when missing). Returns the paths written. Throws
// ToolError; on failure none of the files is left behind.
std::vector<std::string> run_demo(const DemoOptions& options);

}  // namespace ybtool
