#include "convert.h"

#include <cctype>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>

#include <png.h>

#include "errors.h"
#include "kernels.h"
#include "output_file.h"
#include "png_reader.h"
#include "progress.h"
#include "staged_files.h"
#include "test_overlay.h"
#include "view.h"
#include "y4m.h"
#include "y4m_writer.h"

namespace ybtool {
namespace {

namespace fs = std::filesystem;

volatile std::sig_atomic_t g_interrupted = 0;

extern "C" void on_interrupt(int) { g_interrupted = 1; }

// Catches SIGINT and SIGTERM for its lifetime so that an interrupted run
// still goes through the clean-up path between frames.
class InterruptGuard {
 public:
  InterruptGuard() {
    g_interrupted = 0;
    old_int_ = std::signal(SIGINT, on_interrupt);
    old_term_ = std::signal(SIGTERM, on_interrupt);
  }
  ~InterruptGuard() {
    std::signal(SIGINT, old_int_);
    std::signal(SIGTERM, old_term_);
  }

 private:
  void (*old_int_)(int);
  void (*old_term_)(int);
};

// Case-insensitive: clip.PNG is a PNG name too.
bool has_extension(const std::string& name, const std::string& ext) {
  if (name.size() < ext.size()) return false;
  for (size_t i = 0; i < ext.size(); ++i)
    if (std::tolower(static_cast<unsigned char>(name[name.size() - ext.size() + i])) != ext[i])
      return false;
  return true;
}

// Frames in the file (a partial last one counted) if every FRAME line is
// bare; a guess for the progress line only.
long estimate_frames(const std::string& path, const Y4mReader& reader) {
  std::error_code ec;
  const auto size = fs::file_size(path, ec);
  if (ec || size < reader.header().header_bytes) return 0;
  const auto per_frame = reader.frame_bytes() + 6;  // "FRAME\n" + planes
  return static_cast<long>((size - reader.header().header_bytes + per_frame - 1) /
                           per_frame);
}

// One RGB PNG into `out`.
void write_png(OutputFile& out, const RgbImage& image) {
  png_image png;
  std::memset(&png, 0, sizeof png);
  png.version = PNG_IMAGE_VERSION;
  png.width = static_cast<png_uint_32>(image.width);
  png.height = static_cast<png_uint_32>(image.height);
  png.format = PNG_FORMAT_RGB;
  errno = 0;
  const int ok = png_image_write_to_stdio(&png, out.stream(), 0, image.pixels.data(),
                                          image.width * 3, nullptr);
  png_image_free(&png);
  if (!ok) out.fail();
}

// Where the frames go: one stream (raw, YUV4MPEG2, or PNGs to standard
// output back to back) or one staged PNG file per frame.
class FrameOutput {
 public:
  FrameOutput(const std::string& output, OutputFormat format,
              const Y4mHeader& y4m_header, SurfaceFormat surface_format)
      : output_(output), format_(format) {
    const bool to_stdout = OutputFile::is_standard_output(output_);
    if (format_ != OutputFormat::kPng || to_stdout)
      stream_ = std::make_unique<OutputFile>(to_stdout ? output_ : staged_.add(output_),
                                             shown_name());
    if (format_ == OutputFormat::kY4m)
      y4m_ = std::make_unique<Y4mWriter>(*stream_, y4m_header, surface_format);
  }

  void write(const Surface& surface) {
    ++frames_;
    switch (format_) {
      case OutputFormat::kY4m:
        y4m_->write(surface);
        break;
      case OutputFormat::kPng:
        if (stream_) {
          write_png(*stream_, viewer_.view(surface));
        } else {
          OutputFile file(staged_.add(output_), output_);
          write_png(file, viewer_.view(surface));
          file.finish();
        }
        break;
      default:
        surface.for_each_raw_row(
            [&](const uint8_t* row, size_t bytes) { stream_->write(row, bytes); });
    }
  }

  // Completes the output; returns the names written.
  std::vector<std::string> finish() {
    if (stream_) stream_->finish();
    if (OutputFile::is_standard_output(output_)) return {output_};
    std::vector<std::string> names =
        stream_ ? std::vector<std::string>{output_} : png_names(output_, frames_);
    staged_.commit(names);
    return names;
  }

 private:
  std::string shown_name() const {
    return OutputFile::is_standard_output(output_) ? "standard output" : output_;
  }

  std::string output_;
  OutputFormat format_;
  int frames_ = 0;
  StagedFiles staged_;
  std::unique_ptr<OutputFile> stream_;
  std::unique_ptr<Y4mWriter> y4m_;
  Viewer viewer_;
};

}  // namespace

OutputFormat output_format(const ConvertOptions& options) {
  if (options.format != OutputFormat::kByName) return options.format;
  if (has_extension(options.output, ".png")) return OutputFormat::kPng;
  if (has_extension(options.output, ".y4m")) return OutputFormat::kY4m;
  return OutputFormat::kRaw;
}

std::vector<std::string> png_names(const std::string& output, int frames) {
  if (frames == 1) return {output};
  // The number goes before the extension, or at the end of a name without.
  const std::string ext = fs::path(output).extension().string();
  const std::string stem = output.substr(0, output.size() - ext.size());
  std::vector<std::string> names;
  for (int i = 1; i <= frames; ++i) {
    char number[16];
    std::snprintf(number, sizeof number, "-%04d", i);
    names.push_back(stem + number + ext);
  }
  return names;
}

ConvertResult run_convert(const ConvertOptions& options,
                          std::ostream* progress_out) {
  const KernelInfo* kernel = find_kernel(options.kernel);
  if (!kernel)
    throw ToolError("unknown kernel '" + options.kernel +
                    "' (run 'yuvblit list' to see the kernels)");
  if (!options.subpicture.empty() && kernel->inputs != Inputs::kPictureAndOverlay)
    throw ToolError("--subpicture " + options.subpicture + ": " + options.kernel +
                    " does not mix a subpicture (the mixers are the mix_* kernels)");
  if (options.adjust.rgb16Layout >= kRgb16Layouts)
    throw ToolError("--rgb16-layout " + std::to_string(options.adjust.rgb16Layout) +
                    ": not a layout (0 to 3)");

  const OutputFormat format = output_format(options);
  const SurfaceFormat written = surface_format(*kernel, options.adjust);
  const bool to_stdout = OutputFile::is_standard_output(options.output);
  const std::string shown_output = to_stdout ? "standard output" : options.output;
  if (format == OutputFormat::kY4m && !y4m_can_hold(written))
    throw ToolError(shown_output + ": " + options.kernel + " writes " +
                    surface_format_info(written).name +
                    ", which YUV4MPEG2 cannot hold (it takes the YUY2 and YV12 "
                    "kernels); write PNG or raw instead");
  const fs::path out_dir = fs::path(options.output).parent_path();
  if (!to_stdout && !out_dir.empty() && !fs::is_directory(out_dir))
    throw ToolError(options.output + ": directory " + out_dir.string() +
                    " does not exist");

  const bool from_stdin = options.input == "-";
  const std::string name = from_stdin ? "stdin" : options.input;
  std::ifstream file;
  if (!from_stdin) {
    if (fs::is_directory(options.input))
      throw ToolError(name + ": is a directory");
    file.open(options.input, std::ios::binary);
    if (!file)
      throw ToolError(name + ": cannot open (" + std::strerror(errno) + ")");
  }
  std::error_code same_ec;
  if (!from_stdin && !to_stdout && fs::equivalent(options.input, options.output, same_ec))
    throw ToolError(options.output + ": is the input file; choose another output name");
  Y4mReader reader(from_stdin ? std::cin : file, name);

  // One overlay for every frame, read or drawn at the frame's size.
  std::shared_ptr<const RgbaImage> overlay;
  const int frame_w = reader.header().width, frame_h = reader.header().height;
  if (kernel->inputs != Inputs::kPicture)
    overlay = std::make_shared<const RgbaImage>(
        options.subpicture.empty()
            ? make_test_overlay(frame_w, frame_h)
            : read_overlay_png(options.subpicture, frame_w, frame_h));

  long total = from_stdin ? 0 : estimate_frames(options.input, reader);
  if (options.max_frames > 0 && (total == 0 || total > options.max_frames))
    total = options.max_frames;

  // The registry's output size, not the frame's: some kernels halve or
  // double it.
  int out_w = 0, out_h = 0;
  output_size(*kernel, frame_w, frame_h, out_w, out_h);
  const Y4mHeader y4m_header = format == OutputFormat::kY4m
      ? y4m_output_header(reader.header(), written, out_w, out_h)
      : Y4mHeader();

  const char* const interrupted =
      to_stdout ? "interrupted" : "interrupted; no output written";
  InterruptGuard interrupt_guard;
  FrameOutput output(options.output, format, y4m_header, written);
  ConvertResult result;
  Progress progress(progress_out, total);
  Picture420 picture;
  while ((options.max_frames == 0 || result.frames < options.max_frames) &&
         reader.read_frame(picture)) {
    if (g_interrupted) throw ToolError(interrupted);
    const Surface surface =
        run_kernel(*kernel, prepare_source(picture, overlay), options.adjust);
    output.write(surface);
    result.width = format == OutputFormat::kRaw ? surface.stored_width() : surface.width;
    result.height = surface.height;
    result.format = surface_format_info(surface.format).name;
    ++result.frames;
    progress.frame_done();
  }
  if (g_interrupted) throw ToolError(interrupted);
  if (result.frames == 0) throw ToolError(name + ": contains no frames");
  result.written_as = format;
  if (overlay)
    result.overlay = options.subpicture.empty() ? "the built-in overlay" : options.subpicture;
  result.files = output.finish();
  progress.finish();
  return result;
}

}  // namespace ybtool
