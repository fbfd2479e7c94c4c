// The one exception type the tool reports to the user. Its text is a whole
// message without the program name, normally "FILE: problem".
#pragma once

#include <stdexcept>
#include <string>

namespace ybtool {

struct ToolError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace ybtool
