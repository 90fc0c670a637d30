#include "base/time/http_date.h"

#include "base/text/number.h"
#include "base/text/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

using std::chrono::days;
using std::chrono::floor;
using std::chrono::seconds;

constexpr std::array<std::string_view, 7> kWeekdays{"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
constexpr std::array<std::string_view, 12> kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                   "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

/// Exactly two digits and more are wanted where HTTP has them, so that no other form slips through.
std::optional<int> digits(std::string_view text) {
  bool const allDigits = std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
  return allDigits ? parseInteger(text) : std::nullopt;
}

}  // namespace

std::optional<Instant> parseHttpDate(std::string_view text) {
  text = trimmed(text);
  constexpr std::string_view kForm = "ddd, 21 mmm 2026 10:30:12 GMT";
  if (text.size() != kForm.size() || text.substr(3, 2) != ", " || !text.ends_with(" GMT"))
    return std::nullopt;
  auto const month = std::ranges::find(kMonths, text.substr(8, 3));
  auto const day = digits(text.substr(5, 2));
  auto const year = digits(text.substr(12, 4));
  auto const hour = digits(text.substr(17, 2));
  auto const minute = digits(text.substr(20, 2));
  auto const second = digits(text.substr(23, 2));
  if (month == kMonths.end() || !day || !year || !hour || !minute || !second) return std::nullopt;
  Date const date(std::chrono::year(*year),
                  std::chrono::month(static_cast<unsigned>(month - kMonths.begin()) + 1),
                  std::chrono::day(static_cast<unsigned>(*day)));
  if (!date.ok() || *hour > 23 || *minute > 59 || *second > 60) return std::nullopt;
  return Instant(std::chrono::sys_days(date)) + std::chrono::hours(*hour) + std::chrono::minutes(*minute) +
         seconds(*second);
}

std::string formatHttpDate(Instant instant) {
  auto const day = floor<days>(instant);
  Date const date(day);
  std::chrono::hh_mm_ss const time(floor<seconds>(instant - day));
  return fmt::format("{}, {:02} {} {:04} {:02}:{:02}:{:02} GMT",
                     kWeekdays[std::chrono::weekday(day).c_encoding()], static_cast<unsigned>(date.day()),
                     kMonths[static_cast<unsigned>(date.month()) - 1], static_cast<int>(date.year()),
                     time.hours().count(), time.minutes().count(), time.seconds().count());
}

}  // namespace nimbara
