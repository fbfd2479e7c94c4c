#include "output_file.h"

#include <cerrno>
#include <cstring>

#include "errors.h"

namespace ybtool {

OutputFile::OutputFile(const std::string& path, std::string shown)
    : shown_(std::move(shown)) {
  if (is_standard_output(path)) {
    file_ = stdout;
    return;
  }
  file_ = std::fopen(path.c_str(), "wb");
  if (!file_) fail();
  owned_ = true;
}

OutputFile::~OutputFile() {
  if (owned_ && file_) std::fclose(file_);
}

void OutputFile::fail() const {
  // errno is 0 when a short write left no reason (e.g. libpng failed).
  const std::string why = errno ? std::strerror(errno) : "write error";
  throw ToolError(shown_ + ": cannot write (" + why + ")");
}

void OutputFile::write(const void* bytes, size_t size) {
  errno = 0;
  if (std::fwrite(bytes, 1, size, file_) != size) fail();
}

void OutputFile::finish() {
  errno = 0;
  if (!owned_) {
    if (std::fflush(file_) != 0 || std::ferror(file_)) fail();
    return;
  }
  FILE* f = file_;
  file_ = nullptr;
  if (std::fclose(f) != 0) fail();
}

}  // namespace ybtool
