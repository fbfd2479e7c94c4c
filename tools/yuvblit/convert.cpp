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

#include "errors.h"
#include "kernels.h"
#include "png_reader.h"
#include "png_writer.h"
#include "staged_files.h"
#include "test_overlay.h"
#include "view.h"
#include "y4m.h"

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

bool ends_with_png(const std::string& s) {
  if (s.size() < 4) return false;
  std::string ext = s.substr(s.size() - 4);
  for (char& c : ext) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return ext == ".png";
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

// Prints "\rframe i/n" and ends the line when it goes away, also when the
// conversion fails, so an error message starts on a line of its own.
class Progress {
 public:
  Progress(std::ostream* out, long total) : out_(out), total_(total) {}
  ~Progress() {
    if (out_ && shown_) *out_ << '\n' << std::flush;
  }
  void frame(long n) {
    if (!out_ || total_ == 1) return;
    *out_ << "\rframe " << n;
    if (total_ >= n) *out_ << '/' << total_;
    *out_ << std::flush;
    shown_ = true;
  }

 private:
  std::ostream* out_;
  long total_;
  bool shown_ = false;
};

// One raw output file fed surface by surface.
class RawWriter {
 public:
  RawWriter(std::string path, std::string shown)
      : path_(std::move(path)), shown_(std::move(shown)) {
    file_ = std::fopen(path_.c_str(), "wb");
    if (!file_) fail();
  }
  ~RawWriter() {
    if (file_) std::fclose(file_);
  }
  void write(const Surface& s) {
    s.for_each_raw_row([&](const uint8_t* row, size_t bytes) {
      if (std::fwrite(row, 1, bytes, file_) != bytes) fail();
    });
  }
  void close() {
    FILE* f = file_;
    file_ = nullptr;
    if (std::fclose(f) != 0) fail();
  }

 private:
  [[noreturn]] void fail() {
    throw ToolError(shown_ + ": cannot write (" + std::strerror(errno) + ")");
  }
  std::string path_, shown_;
  FILE* file_ = nullptr;
};

}  // namespace

std::vector<std::string> png_names(const std::string& output, int frames) {
  if (frames == 1) return {output};
  const std::string stem = output.substr(0, output.size() - 4);
  const std::string ext = output.substr(output.size() - 4);
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

  const bool png = ends_with_png(options.output);
  const fs::path out_dir = fs::path(options.output).parent_path();
  if (!out_dir.empty() && !fs::is_directory(out_dir))
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
  if (!from_stdin && fs::equivalent(options.input, options.output, same_ec))
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

  InterruptGuard interrupt_guard;
  StagedFiles staged;
  std::unique_ptr<RawWriter> raw;
  if (!png) raw = std::make_unique<RawWriter>(staged.add(options.output),
                                              options.output);
  Viewer viewer;
  ConvertResult result;
  {
    Progress progress(progress_out, total);
    Picture420 picture;
    while ((options.max_frames == 0 || result.frames < options.max_frames) &&
           reader.read_frame(picture)) {
      if (g_interrupted) throw ToolError("interrupted; no output written");
      const Surface surface =
          run_kernel(*kernel, prepare_source(picture, overlay), options.adjust);
      if (png)
        write_png(staged.add(options.output), viewer.view(surface));
      else
        raw->write(surface);
      result.width = png ? surface.width : surface.stored_width();
      result.height = surface.height;
      result.format = surface_format_info(surface.format).name;
      progress.frame(++result.frames);
    }
  }
  if (g_interrupted) throw ToolError("interrupted; no output written");
  if (result.frames == 0) throw ToolError(name + ": contains no frames");
  result.raw = !png;
  if (overlay)
    result.overlay = options.subpicture.empty() ? "the built-in overlay" : options.subpicture;
  if (raw) {
    raw->close();
    result.files = {options.output};
  } else {
    result.files = png_names(options.output, result.frames);
  }
  staged.commit(result.files);
  return result;
}

}  // namespace ybtool
