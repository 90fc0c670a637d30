#include "base/number.h"

#include "base/text.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace nimbara {

namespace {

/// from_chars takes no "+", people and services write it.
std::string_view withoutPlus(std::string_view text) {
  bool const plus = text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+';
  return plus ? text.substr(1) : text;
}

template <class Number>
std::optional<Number> parseWhole(std::string_view text) {
  text = withoutPlus(text);
  Number number{};
  auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return number;
}

/// Most texts of a forecast record are whole numbers of few digits; reading them by hand is several times
/// faster.
bool readShortInteger(std::string_view text, double& number) {
  bool const negative = !text.empty() && text[0] == '-';
  std::string_view const digits = negative ? text.substr(1) : text;
  if (digits.empty() || digits.size() > 9) return false;
  int value = 0;
  for (char const c : digits) {
    if (c < '0' || c > '9') return false;
    value = value * 10 + (c - '0');
  }
  number = negative ? -value : value;
  return true;
}

}  // namespace

std::optional<double> parseDouble(std::string_view text) {
  if (double number = 0; readShortInteger(text, number)) return number;
  auto const number = parseWhole<double>(text);
  if (!number || !std::isfinite(*number)) return std::nullopt;
  return number;
}

std::optional<int> parseInteger(std::string_view text) {
  return parseWhole<int>(text);
}

double lenientDouble(std::string_view text) {
  return parseDouble(trimmed(text)).value_or(0);
}

int lenientInteger(std::string_view text) {
  return truncatedInteger(lenientDouble(text));
}

int truncatedInteger(double value) {
  if (std::isnan(value)) return 0;
  if (value >= std::numeric_limits<int>::max()) return std::numeric_limits<int>::max();
  if (value <= std::numeric_limits<int>::min()) return std::numeric_limits<int>::min();
  return static_cast<int>(value);
}

double roundHalfAway(double value) {
  return std::round(value) + 0.0;
}

std::string plainDecimal(double value) {
  char buffer[400];
  auto const result = std::to_chars(buffer, buffer + sizeof buffer, value + 0.0, std::chars_format::fixed);
  return {buffer, result.ptr};
}

std::string fixedDecimal(double value, int decimals) {
  char buffer[400];
  auto const result =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
  std::string_view text(buffer, result.ptr);
  if (text.starts_with('-') && text.find_first_not_of("-0.") == std::string_view::npos) text.remove_prefix(1);
  return std::string(text);
}

std::string roundedText(double value) {
  double const rounded = roundHalfAway(value);
  if (!(std::abs(rounded) < 1e15)) return fixedDecimal(rounded, 0);
  char buffer[24];
  auto const result = std::to_chars(buffer, buffer + sizeof buffer, static_cast<std::int64_t>(rounded));
  return {buffer, result.ptr};
}

}  // namespace nimbara
