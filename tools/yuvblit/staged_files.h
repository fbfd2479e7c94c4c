// Output files are written under temporary names next to their final names
// and renamed only once the whole job has succeeded. Whatever has not been
// committed is removed when the object goes away, so a failed or interrupted
// run leaves no file that looks complete.
#pragma once

#include <string>
#include <vector>

namespace ybtool {

class StagedFiles {
 public:
  StagedFiles() = default;
  StagedFiles(const StagedFiles&) = delete;
  StagedFiles& operator=(const StagedFiles&) = delete;
  ~StagedFiles();

  // A fresh temporary path in the directory of `near` (so the final rename
  // stays within one file system), recorded for commit or removal.
  std::string add(const std::string& near);
  size_t size() const { return temps_.size(); }

  // Renames the i-th staged file to finals[i]. Throws ToolError naming the
  // file that could not be renamed; files not yet renamed are then removed.
  void commit(const std::vector<std::string>& finals);

 private:
  std::vector<std::string> temps_;
  size_t committed_ = 0;
};

}  // namespace ybtool
