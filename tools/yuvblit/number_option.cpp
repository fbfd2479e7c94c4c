#include "number_option.h"

#include <charconv>
#include <string>

namespace ybtool {

CLI::Option* limit_to(CLI::Option* option, long long min, long long max) {
  const std::string name = option->get_name();
  auto check = [name, min, max](const std::string& text) -> std::string {
    // A leading '+' is fine; from_chars takes only '-'.
    const bool plus = !text.empty() && text[0] == '+';
    const char* first = text.data() + plus;
    const char* last = text.data() + text.size();
    long long value = 0;
    const auto [end, error] = std::from_chars(first, last, value);
    const bool whole = first != last && end == last &&
                       error != std::errc::invalid_argument && !(plus && *first == '-');
    // Beyond long long the sign says which side it is out on.
    const bool huge = error == std::errc::result_out_of_range;
    const bool below = huge ? *first == '-' : value < min;
    const bool above = huge ? *first != '-' : value > max;
    std::string problem;
    if (!whole)
      problem = "must be a whole number";
    else if (!below && !above)
      return {};
    else if (max != kNoUpperLimit)
      problem = "must be from " + std::to_string(min) + " to " + std::to_string(max);
    else
      problem = below ? "must be at least " + std::to_string(min)
                      : "must be at most " + std::to_string(max);
    // CLI11 would print a returned message as "NAME: message"; thrown as an
    // error of its own, the sentence reaches the user as written.
    throw OptionValueError(name + " " + problem + " (got " + text + ")");
  };
  const std::string shown = max == kNoUpperLimit ? ">=" + std::to_string(min)
                                                 : std::to_string(min) + ".." +
                                                       std::to_string(max);
  return option->check(CLI::Validator(check, shown));
}

}  // namespace ybtool
