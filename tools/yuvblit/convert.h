// The `convert` subcommand: a YUV4MPEG2 clip through one kernel to PNG
// files or a raw surface file.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "kernels.h"

namespace ybtool {

struct ConvertOptions {
  std::string input;   // "-" reads standard input
  std::string output;  // ends in .png: PNG files; otherwise one raw file
  std::string kernel;
  long max_frames = 0;  // 0: every frame
  std::string subpicture;  // PNG overlay for a mixer; empty: the built-in one
  tag_ajust_contrast_info adjust = identity_adjustment();
};

struct ConvertResult {
  int frames = 0;
  int width = 0, height = 0;  // of each output picture (raw: as stored)
  std::string format;         // surface format name
  bool raw = false;           // one raw file rather than PNGs
  std::string overlay;        // what the subpicture kernels got; or empty
  std::vector<std::string> files;
};

// Final PNG names: OUTPUT itself for one frame, otherwise STEM-0001.png,
// STEM-0002.png, ... where STEM is OUTPUT without ".png".
std::vector<std::string> png_names(const std::string& output, int frames);

// Runs the conversion. `progress`, when given, gets a "\rframe i/n" line
// per frame. Throws ToolError; on any failure nothing is left at the output
// names.
ConvertResult run_convert(const ConvertOptions& options,
                          std::ostream* progress);

}  // namespace ybtool
