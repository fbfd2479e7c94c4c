// A binary output stream the convert command writes into: a file it opens
// (normally a staged temporary name) or standard output for "-o -".
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>

namespace ybtool {

class OutputFile {
 public:
  // Opens `path` for writing, or takes standard output when `path` is "-".
  // Errors name `shown`, the name the user gave.
  OutputFile(const std::string& path, std::string shown);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  static bool is_standard_output(const std::string& path) { return path == "-"; }

  // Throws ToolError "SHOWN: cannot write (reason)".
  void write(const void* bytes, size_t size);
  void write(const std::string& text) { write(text.data(), text.size()); }

  // For writers that talk to the stream directly (libpng); report their
  // failures through fail().
  FILE* stream() const { return file_; }
  [[noreturn]] void fail() const;

  // Flushes, and closes a file it opened; a failure here (a full disk found
  // late) is a write error like any other.
  void finish();

 private:
  std::string shown_;
  FILE* file_ = nullptr;
  bool owned_ = false;
};

}  // namespace ybtool
