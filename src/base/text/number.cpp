#include "base/text/number.h"

#include "base/text/text.h"

#include <array>
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

/// The digits of `whole` with a point before the last `decimals` of them.
std::string withPoint(std::int64_t whole, int decimals) {
  char buffer[24];
  char* const end = buffer + sizeof buffer;
  char* first = end;
  bool const negative = whole < 0;
  if (negative) whole = -whole;
  for (int digits = 0; whole > 0 || digits <= decimals; ++digits, whole /= 10) {
    if (digits == decimals && decimals > 0) *--first = '.';
    *--first = static_cast<char>('0' + whole % 10);
  }
  if (negative) *--first = '-';
  return {first, end};
}

/// The texts of small whole numbers, which are most of what a forecast record holds.
class SmallNumbers {
 public:
  static constexpr int kLeast = -99;
  static constexpr int kMost = 1099;

  constexpr SmallNumbers() {
    for (int number = kLeast; number <= kMost; ++number)
      write(number, entries_[static_cast<std::size_t>(number - kLeast)]);
  }
  std::string_view text(int number) const {
    Entry const& entry = entries_[static_cast<std::size_t>(number - kLeast)];
    return {entry.digits, static_cast<std::size_t>(entry.length)};
  }

 private:
  struct Entry {
    char digits[7];
    signed char length;
  };

  static constexpr void write(int number, Entry& entry) {
    char reversed[6]{};
    signed char count = 0;
    for (int rest = number < 0 ? -number : number; rest > 0 || count == 0; rest /= 10) {
      reversed[count++] = static_cast<char>('0' + rest % 10);
    }
    if (number < 0) reversed[count++] = '-';
    entry.length = count;
    for (signed char i = 0; i < count; ++i) entry.digits[i] = reversed[count - 1 - i];
  }

  std::array<Entry, kMost - kLeast + 1> entries_{};
};

constexpr SmallNumbers kSmallNumbers;

/// Exact printing of a double's decimals is slow. Where the value is small and stays clear of a tie, rounding
/// the scaled value gives the same digits.
std::optional<std::string> quickFixedDecimal(double value, int decimals) {
  constexpr double kScales[] = {1, 10, 100, 1000};
  if (decimals < 0 || decimals > 3 || !(std::abs(value) < 1e9)) return std::nullopt;
  double const scaled = value * kScales[decimals];
  auto const whole = static_cast<std::int64_t>(scaled);
  double const rest = std::abs(scaled - static_cast<double>(whole));
  if (std::abs(rest - 0.5) < 1e-6) return std::nullopt;
  std::int64_t const away = rest < 0.5 ? 0 : scaled < 0 ? -1 : 1;
  return withPoint(whole + away, decimals);
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
  // Whole numbers beyond 2^52 have no halves; below, this is several times faster than the library's call.
  if (!(std::abs(value) < 0x1p52)) return std::round(value);
  auto const whole = static_cast<std::int64_t>(value);
  double const rest = value - static_cast<double>(whole);
  return static_cast<double>(whole + (rest >= 0.5 ? 1 : rest <= -0.5 ? -1 : 0));
}

std::string plainDecimal(double value) {
  char buffer[400];
  auto const result = std::to_chars(buffer, buffer + sizeof buffer, value + 0.0, std::chars_format::fixed);
  return {buffer, result.ptr};
}

std::string fixedDecimal(double value, int decimals) {
  if (auto quick = quickFixedDecimal(value, decimals)) return std::move(*quick);
  char buffer[400];
  auto const result =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
  std::string_view text(buffer, result.ptr);
  if (text.starts_with('-') && text.find_first_not_of("-0.") == std::string_view::npos) text.remove_prefix(1);
  return std::string(text);
}

std::string roundedText(double value) {
  double const rounded = roundHalfAway(value);
  if (rounded >= SmallNumbers::kLeast && rounded <= SmallNumbers::kMost) {
    return std::string(kSmallNumbers.text(static_cast<int>(rounded)));
  }
  if (!(std::abs(rounded) < 1e15)) return fixedDecimal(rounded, 0);
  return withPoint(static_cast<std::int64_t>(rounded), 0);
}

}  // namespace nimbara
