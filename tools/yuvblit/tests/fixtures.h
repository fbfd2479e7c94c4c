// Helpers shared by the tool's tests: YUV4MPEG2 text, scratch folders and
// PNG files to read.
#pragma once

#include <png.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "picture.h"

namespace ybtool::testing {

// Frame f of a w x h clip: luma (x*7 + y*3 + f) & 255, U 100 + f, V 150 + f.
inline Picture420 clip_frame(int w, int h, int f) {
  Picture420 p;
  p.allocate(w, h);
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x)
      p.y[static_cast<size_t>(y) * w + x] =
          static_cast<uint8_t>((x * 7 + y * 3 + f) & 255);
  std::fill(p.u.begin(), p.u.end(), static_cast<uint8_t>(100 + f));
  std::fill(p.v.begin(), p.v.end(), static_cast<uint8_t>(150 + f));
  return p;
}

inline std::string y4m_header(int w, int h, const std::string& tags = " C420jpeg") {
  return "YUV4MPEG2 W" + std::to_string(w) + " H" + std::to_string(h) +
         " F25:1 Ip A1:1" + tags + "\n";
}

inline std::string y4m_frame(const Picture420& p, const std::string& marker = "FRAME\n") {
  std::string s = marker;
  for (const auto* plane : {&p.y, &p.u, &p.v}) s.append(plane->begin(), plane->end());
  return s;
}

inline std::string y4m_clip(int w, int h, int frames) {
  std::string s = y4m_header(w, h);
  for (int f = 0; f < frames; ++f) s += y4m_frame(clip_frame(w, h, f));
  return s;
}

// A fresh directory removed with everything in it at the end of the test.
class ScratchDir {
 public:
  ScratchDir() {
    static std::atomic<int> counter{0};
    path_ = std::filesystem::temp_directory_path() /
            ("yuvblit_tool_test_" + std::to_string(getpid()) + "_" +
             std::to_string(counter++));
    std::filesystem::create_directories(path_);
  }
  ~ScratchDir() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
  }
  std::string file(const std::string& name) const { return (path_ / name).string(); }
  std::string write(const std::string& name, const std::string& bytes) const {
    std::ofstream(file(name), std::ios::binary) << bytes;
    return file(name);
  }
  std::vector<std::string> names() const {
    std::vector<std::string> out;
    for (const auto& e : std::filesystem::directory_iterator(path_))
      out.push_back(e.path().filename().string());
    std::sort(out.begin(), out.end());
    return out;
  }

 private:
  std::filesystem::path path_;
};

// Writes `bytes` (rows packed) as a PNG of the simplified API's `format`;
// a colormap format takes `bytes` as indices into `colormap`.
inline std::string write_png_file(const ScratchDir& dir, const std::string& name, int w, int h,
                           png_uint_32 format, const std::vector<uint8_t>& bytes,
                           const std::vector<uint8_t>& colormap = {}) {
  png_image png;
  std::memset(&png, 0, sizeof png);
  png.version = PNG_IMAGE_VERSION;
  png.width = w;
  png.height = h;
  png.format = format;
  png.colormap_entries = static_cast<png_uint_32>(colormap.size() / 4);
  const std::string path = dir.file(name);
  EXPECT_TRUE(png_image_write_to_file(&png, path.c_str(), 0, bytes.data(), 0,
                                      colormap.empty() ? nullptr : colormap.data()))
      << png.message;
  return path;
}

}  // namespace ybtool::testing
