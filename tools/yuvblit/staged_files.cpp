#include "staged_files.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <stdexcept>

#include "errors.h"

namespace ybtool {

StagedFiles::~StagedFiles() {
  for (size_t i = committed_; i < temps_.size(); ++i)
    std::remove(temps_[i].c_str());
}

std::string StagedFiles::add(const std::string& near) {
  temps_.push_back(near + "." + std::to_string(getpid()) + "-" +
                   std::to_string(temps_.size() + 1) + ".part");
  return temps_.back();
}

void StagedFiles::commit(const std::vector<std::string>& finals) {
  if (finals.size() != temps_.size())
    throw std::logic_error("StagedFiles::commit: one final name per file");
  for (; committed_ < temps_.size(); ++committed_) {
    const std::string& to = finals[committed_];
    if (std::rename(temps_[committed_].c_str(), to.c_str()) != 0)
      throw ToolError(to + ": cannot create (" + std::strerror(errno) + ")");
  }
}

}  // namespace ybtool
