// printf-style messages with "%@", "%d", "%.0f", "%.1f", "%%" and positional forms ("%2$@"), filled with
// arguments that carry their own type, so that no text of a translator can read past them.
#pragma once

#include <concepts>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace nimbara {

class MessageArgument {
 public:
  MessageArgument(std::string_view text) : value_(std::string(text)) {}
  MessageArgument(std::string text) : value_(std::move(text)) {}
  MessageArgument(char const* text) : value_(std::string(text)) {}
  MessageArgument(std::integral auto number) : value_(static_cast<std::int64_t>(number)) {}
  MessageArgument(double number) : value_(number) {}

  std::variant<std::string, std::int64_t, double> const& value() const { return value_; }

 private:
  std::variant<std::string, std::int64_t, double> value_;
};

/// Fills `pattern`. A placeholder without an argument stays as it stands; "%@" takes any argument; "%d"
/// truncates a number; a text where a number is asked for is put in as it is. `decimalPoint` is the
/// language's.
std::string formatMessage(std::string_view pattern, std::span<MessageArgument const> arguments,
                          std::string_view decimalPoint = ".");

/// The placeholders of `pattern`, positional ones with their position ("2$@"), sorted: equal for a text and
/// its faithful translation.
std::vector<std::string> placeholders(std::string_view pattern);

}  // namespace nimbara
