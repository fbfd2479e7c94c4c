// yuvblit: runs the library's pixel kernels on pictures and shows what they
// produce. Subcommands: demo, convert, list.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cctype>
#include <iostream>
#include <new>
#include <optional>
#include <string>

#include "convert.h"
#include "demo.h"
#include "errors.h"
#include "kernels.h"
#include "number_option.h"

#ifndef YUVBLIT_VERSION
#define YUVBLIT_VERSION "unknown"
#endif

namespace {

constexpr const char* kAbout =
    "yuvblit runs the yuvblit library's pixel kernels - the routines a video\n"
    "player's display path uses to turn decoded planar 4:2:0 frames and\n"
    "packed YUY2 pictures into YUY2, YV12 and RGB display surfaces, with\n"
    "optional picture adjustment, and mix subpictures (menus, captions)\n"
    "into them - on real pictures, and saves what they wrote as PNG images\n"
    "you can look at.\n"
    "\n"
    "Surfaces are filled with magenta before a kernel runs, so any magenta\n"
    "in the output is where the kernel wrote nothing.";

constexpr const char* kFooter =
    "Examples:\n"
    "  yuvblit demo                      every kernel on the built-in picture,\n"
    "                                    then open out/demo/index.html\n"
    "  yuvblit list                      what each kernel does\n"
    "  yuvblit convert clip.y4m -k loadimage_yuy2 -o clip.png\n"
    "  yuvblit convert clip.y4m -k mix_ayuy2_rgb32_p_ajust -s menu.png -o mixed.png\n"
    "  yuvblit convert clip.y4m -k loadimage_yv12_ajust --luma-gain 80 -o out.y4m\n"
    "  yuvblit convert clip.y4m -k loadimage_yuy2 -f y4m -o - | ffplay -\n"
    "\n"
    "Run 'yuvblit SUBCOMMAND --help' for the options of each subcommand.";

constexpr const char* kConvertAbout =
    "Runs one kernel on every frame of an 8-bit 4:2:0 YUV4MPEG2 file\n"
    "(colour space C420jpeg, C420mpeg2, C420paldv, C420 or none given) and\n"
    "saves the result.\n"
    "\n"
    "Output format: --format, or else OUT's name: .png for PNG, .y4m for\n"
    "YUV4MPEG2, anything else (and -) raw.\n"
    "  PNG: one frame is written to OUT itself and several to OUT's name\n"
    "  with -0001, -0002, ... before the extension (clip.png ->\n"
    "  clip-0001.png, clip-0002.png); to standard output, one PNG after\n"
    "  another.\n"
    "  YUV4MPEG2, for YUY2 and YV12 kernels: YUY2 becomes planar 4:2:2\n"
    "  (C422), YV12 planar 4:2:0 with U before V and the input's colour\n"
    "  space tag; the frame rate and interlacing are the input's, the size\n"
    "  is the kernel's output size (some kernels halve or double it) and\n"
    "  the pixel aspect is scaled with it so the picture keeps its shape.\n"
    "  Raw: the surfaces frame after frame, each row cropped to the picture:\n"
    "    YUY2   packed Y0 U Y1 V, 2 bytes per pixel, width rounded up to even\n"
    "    YV12   the luma plane, then the V plane, then the U plane, each\n"
    "           tightly packed (chroma planes ceil(W/2) x ceil(H/2))\n"
    "    RGB32  B G R 0 per pixel;  RGB24  B G R per pixel\n"
    "    RGB16  one little-endian 16-bit word per pixel in the layout of\n"
    "           --rgb16-layout: 0 5-6-5 (R 15-11, G 10-5, B 4-0), 1 5-5-5\n"
    "           (R 15-11, G 10-6, B 5-1, bit 0 clear), 2 6-6-4 (R 15-10,\n"
    "           G 9-4, B 3-0), 3 6-5-5 (R 15-10, G 9-5, B 4-0)\n"
    "PNG output shows RGB surfaces as they are. The RGB16 kernels drop the\n"
    "low bits of each channel; the PNG widens what is left back to 8 bits by\n"
    "repeating the top bits, so smooth ramps show steps.\n"
    "\n"
    "Kernels reading packed YUY2 (LoadYUY2_*) get the frame packed by\n"
    "libswscale, each pixel keeping its own luma and its 2x2 block's chroma.\n"
    "\n"
    "Subpicture kernels: the mixers (mix_*) mix an overlay into every frame,\n"
    "the built-in menu overlay or, with --subpicture, a PNG placed at the\n"
    "frame's top-left corner (the rest of the frame stays uncovered). The PNG\n"
    "must fit the frame and have transparency: 8-bit RGBA or grey+alpha, or a\n"
    "palette, grey or RGB image with a tRNS chunk (these are expanded to\n"
    "RGBA); images without transparency and 16-bit images are refused. Its\n"
    "alpha a (0..255) becomes the mixing weight round(a*16/255) out of 16:\n"
    "0-7 transparent, 248-255 opaque. The overlay is prepared as a host\n"
    "does: drawn into an RGB32 bitmap with transparent pixels in a colour key\n"
    "and into an alpha bitmap, then turned into subpicture planes by the\n"
    "library's Convert_RGB32_To_AYUY2 and Restore_RGB32_To_Alpha.\n"
    "mix_ayuy2_yuy2_i_ajust mixes into the frame's top field, doubled back to\n"
    "the frame's height. The preparation kernels (Convert_*, Restore_*,\n"
    "load_subpicture_alpha_*) do not read the frames: they run on the\n"
    "built-in overlay at the frame's size.\n"
    "\n"
    "Widths are rounded up to whole 16-pixel groups (repeating the right edge)\n"
    "and heights to even before a kernel runs; the output is cropped back.\n"
    "Without adjustment options the adjusting kernels get the identity\n"
    "adjustment (gains 64, offsets 0). A sample s becomes s*gain/64 + offset;\n"
    "chroma stays neutral when the U and V offsets are 128 - 2*chroma-gain.\n"
    "\n"
    "Files are written under temporary names and renamed only when every\n"
    "frame has been converted: a bad, truncated or interrupted input leaves\n"
    "no output behind. With -o - the output goes to standard output (which\n"
    "must not be a terminal) as it is made, and the summary line to standard\n"
    "error. On a terminal, standard error shows the frames done and the\n"
    "frames per second while a long conversion runs.";

constexpr const char* kDemoAbout =
    "Renders a picture through every kernel the library provides and writes\n"
    "DIR/source.png, one DIR/KERNEL.png per kernel (kernels writing RGB16\n"
    "in the record's layout: one DIR/KERNEL-layoutL.png for each layout L,\n"
    "0 to 3) and DIR/index.html,\n"
    "a contact sheet showing them by family with what each kernel does and\n"
    "the adjustment used. Without INPUT the built-in 720x480 test picture is\n"
    "used (colour bars, luma and chroma ramps, zone plate, fine lines);\n"
    "adjusting kernels get more contrast and saturation with grey kept grey.\n"
    "Subpicture kernels get a built-in menu overlay drawn at the picture's\n"
    "size (translucent panel, soft shadow, buttons, text, an alpha ramp); its\n"
    "two bitmaps are DIR/overlay.png and DIR/overlay-alpha.png.\n"
    "RGB16 PNGs widen the bits the kernel kept back to 8 bits per channel;\n"
    "the low bits are dropped by the kernel, so ramps show steps.";

constexpr const char* kListAbout =
    "Lists the kernels by family, with what each does and the surface it "
    "writes.";

// One-line summaries for the top-level help; the long texts above open each
// subcommand's own help.
constexpr const char* kDemoSummary =
    "render a picture through every kernel into PNGs and an HTML contact sheet";
constexpr const char* kConvertSummary =
    "run one kernel on every frame of a YUV4MPEG2 file, write PNG, YUV4MPEG2 "
    "or raw";
constexpr const char* kListSummary = "list the kernels and what they write";

// CLI11 shows a subcommand's description both in the parent's list and at
// the top of its own help; keep the list short and the own help complete.
CLI::App* add_command(CLI::App& app, const char* name, const char* summary,
                      const char* about) {
  CLI::App* cmd = app.add_subcommand(name, summary);
  cmd->footer(about);
  return cmd;
}

// Parses the command line. A mistake in it is reported in one line; returns
// the exit code when the program stops here (also after --help).
std::optional<int> parse_command_line(CLI::App& app, int argc, char** argv) {
  try {
    app.parse(argc, argv);
    return std::nullopt;
  } catch (const ybtool::OptionValueError& e) {
    std::cerr << "yuvblit: " << e.what() << "\n";
    return e.get_exit_code();
  } catch (const CLI::ParseError& e) {
    if (e.get_exit_code() == 0) return app.exit(e);  // --help, --version
    std::cerr << "yuvblit: " << e.what() << " (see --help)\n";
    return e.get_exit_code();
  }
}

// --format's value, already checked to be one of these in any case.
ybtool::OutputFormat format_from_name(std::string name) {
  for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  if (name == "png") return ybtool::OutputFormat::kPng;
  if (name == "y4m") return ybtool::OutputFormat::kY4m;
  if (name == "raw") return ybtool::OutputFormat::kRaw;
  return ybtool::OutputFormat::kByName;
}

const char* written_as(ybtool::OutputFormat format) {
  switch (format) {
    case ybtool::OutputFormat::kPng: return "as PNG";
    case ybtool::OutputFormat::kY4m: return "as YUV4MPEG2";
    default: return "raw";
  }
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app(kAbout, "yuvblit");
  app.footer(kFooter);
  app.set_version_flag("--version", std::string("yuvblit ") + YUVBLIT_VERSION);
  app.require_subcommand(1);
  app.get_formatter()->column_width(28);

  ybtool::DemoOptions demo;
  CLI::App* demo_cmd = add_command(app, "demo", kDemoSummary, kDemoAbout);
  demo_cmd->add_option("INPUT", demo.input,
                       "YUV4MPEG2 file whose first frame to use instead of the "
                       "built-in picture");
  demo_cmd->add_option("--out,-o", demo.out_dir, "output directory")
      ->capture_default_str()
      ->type_name("DIR");

  ybtool::ConvertOptions convert;
  CLI::App* convert_cmd = add_command(app, "convert", kConvertSummary, kConvertAbout);
  convert_cmd->add_option("INPUT", convert.input,
                          "YUV4MPEG2 file, or - for standard input")
      ->required();
  convert_cmd->add_option("--kernel,-k", convert.kernel,
                          "kernel to run (see 'yuvblit list')")
      ->required()
      ->type_name("NAME");
  convert_cmd->add_option("--output,-o", convert.output,
                          "output file (OUT.png: PNG, OUT.y4m: YUV4MPEG2, "
                          "other names: raw), or - for standard output")
      ->required()
      ->type_name("OUT");
  std::string format_name;
  convert_cmd->add_option("--format,-f", format_name,
                          "output format instead of the one OUT's name "
                          "implies")
      ->check(CLI::IsMember({"png", "y4m", "raw"}, CLI::ignore_case))
      ->type_name("FORMAT");
  ybtool::limit_to(convert_cmd->add_option("--frames,-n", convert.max_frames,
                                           "convert only the first N frames"),
                   1)
      ->type_name("N");
  convert_cmd->add_option("--subpicture,-s", convert.subpicture,
                          "PNG overlay with transparency for a mix_* kernel, "
                          "placed top-left (see below)")
      ->type_name("OVERLAY.png");
  auto& a = convert.adjust;
  auto adjustment = [&](const char* name, int32_t& field, const char* help,
                        const char* type) {
    ybtool::limit_to(convert_cmd->add_option(name, field, help), -32768, 32767)
        ->capture_default_str()
        ->type_name(type);
  };
  adjustment("--luma-gain", a.lumaGain, "luma gain in 1/64 (64 = unchanged)", "G");
  adjustment("--chroma-gain", a.chromaGain, "U and V gain in 1/64 (64 = unchanged)", "G");
  adjustment("--luma-offset", a.lumaOffset, "added to luma after the gain", "O");
  adjustment("--u-offset", a.uOffset, "added to U after the gain", "O");
  adjustment("--v-offset", a.vOffset, "added to V after the gain", "O");
  ybtool::limit_to(
      convert_cmd->add_option("--rgb16-layout", a.rgb16Layout,
                              "RGB16 word layout: 0 5-6-5, 1 5-5-5 (bit 0 "
                              "clear), 2 6-6-4, 3 6-5-5; read by RGB16 kernels "
                              "only"),
      0, 3)
      ->capture_default_str()
      ->type_name("L");

  add_command(app, "list", kListSummary, kListAbout);

  if (const std::optional<int> stop = parse_command_line(app, argc, argv))
    return *stop;

  try {
    if (app.got_subcommand("list")) {
      ybtool::print_kernel_list(std::cout);
    } else if (app.got_subcommand("demo")) {
      for (const std::string& f : ybtool::run_demo(demo))
        std::cout << "wrote " << f << "\n";
    } else if (app.got_subcommand("convert")) {
      convert.format = format_from_name(format_name);
      const bool to_stdout = convert.output == "-";
      if (to_stdout && isatty(STDOUT_FILENO))
        throw ybtool::ToolError(
            "-o -: standard output is a terminal; redirect it to a file or a "
            "program");
      const bool tty = isatty(STDERR_FILENO);
      const ybtool::ConvertResult r =
          ybtool::run_convert(convert, tty ? &std::cerr : nullptr);
      // Standard output may carry the pictures themselves: the summary then
      // goes to a terminal's standard error, or nowhere.
      if (to_stdout && !tty) return 0;
      std::ostream& report = to_stdout ? std::cerr : std::cout;
      report << "wrote "
             << (to_stdout ? std::string("standard output") : r.files.front());
      if (r.files.size() > 1) report << " .. " << r.files.back();
      report << ": " << r.frames << (r.frames == 1 ? " frame" : " frames")
             << " through " << convert.kernel << " (" << r.format << " "
             << r.width << "x" << r.height << ", " << written_as(r.written_as)
             << (r.overlay.empty() ? "" : ", with " + r.overlay) << ")\n";
    }
  } catch (const ybtool::ToolError& e) {
    std::cerr << "yuvblit: " << e.what() << "\n";
    return 1;
  } catch (const std::bad_alloc&) {
    std::cerr << "yuvblit: out of memory\n";
    return 1;
  } catch (const std::exception& e) {
    std::cerr << "yuvblit: " << e.what() << "\n";
    return 1;
  }
  return 0;
}
