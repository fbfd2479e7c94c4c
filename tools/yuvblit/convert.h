// The `convert` subcommand: a YUV4MPEG2 clip through one kernel to PNG
// files, a YUV4MPEG2 clip or a raw surface file, or to standard output.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "kernels.h"

namespace ybtool {

enum class OutputFormat {
  kByName,  // from the output name: .png, .y4m, anything else (and -) raw
  kPng,
  kY4m,
  kRaw,
};

struct ConvertOptions {
  std::string input;   // "-" reads standard input
  std::string output;  // "-" writes standard output
  OutputFormat format = OutputFormat::kByName;
  std::string kernel;
  long max_frames = 0;  // 0: every frame
  std::string subpicture;  // PNG overlay for a mixer; empty: the built-in one
  tag_ajust_contrast_info adjust = identity_adjustment();
};

struct ConvertResult {
  int frames = 0;
  int width = 0, height = 0;  // of each output picture (raw: as stored)
  std::string format;         // surface format name
  OutputFormat written_as = OutputFormat::kRaw;  // never kByName
  std::string overlay;        // what the subpicture kernels got; or empty
  std::vector<std::string> files;  // {"-"} for standard output
};

// The format `options` ask for, kByName resolved.
OutputFormat output_format(const ConvertOptions& options);

// Final PNG names: OUTPUT itself for one frame, otherwise STEM-0001.png,
// STEM-0002.png, ... where STEM is OUTPUT without ".png".
std::vector<std::string> png_names(const std::string& output, int frames);

// Runs the conversion. `progress`, when given, gets a progress line redrawn
// in place (meant for a terminal). Throws ToolError; on any failure nothing
// is left at the output names (standard output keeps what was written).
ConvertResult run_convert(const ConvertOptions& options,
                          std::ostream* progress);

}  // namespace ybtool
