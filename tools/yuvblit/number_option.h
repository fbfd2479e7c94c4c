// Range checks for numeric command-line options that explain a refusal in
// one line of words: "--frames must be at least 1 (got 0)".
#pragma once

#include <CLI/CLI.hpp>
#include <climits>

namespace ybtool {

// What a failed check throws: a parse error whose text is the whole message.
struct OptionValueError : CLI::ParseError {
  explicit OptionValueError(const std::string& message)
      : CLI::ParseError(message, CLI::ExitCodes::ValidationError) {}
};

// Upper bound meaning "no limit worth naming": the message then says only
// "at least MIN".
constexpr long long kNoUpperLimit = INT_MAX;

// Adds a check to `option` (before its value is converted) that the value is
// a whole number from `min` to `max`, and shows the range in the help. Returns
// `option` for chaining.
CLI::Option* limit_to(CLI::Option* option, long long min,
                      long long max = kNoUpperLimit);

}  // namespace ybtool
