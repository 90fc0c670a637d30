#include "base/words/time_words.h"

#include <fmt/format.h>
#include <unicode/dtfmtsym.h>

#include <array>
#include <map>
#include <memory>
#include <mutex>

namespace nimbara {

struct TimeWords::Names {
  std::array<std::string, 7> weekdays, shortWeekdays;  // from Sunday
  std::array<std::string, 12> months;
  std::array<std::string, 2> dayHalves;
};

namespace {

template <std::size_t count>
void copyNames(icu::UnicodeString const* from, std::array<std::string, count>& to) {
  for (std::size_t i = 0; i < count; ++i) from[i].toUTF8String(to[i]);
}

/// What the letters of a pattern are filled with.
struct Reading {
  std::chrono::year_month_day date;
  unsigned weekday;  // from Sunday
  int hour;
  int minute;
  int second;
};

Reading readingOf(LocalTime time) {
  auto const day = std::chrono::floor<std::chrono::days>(time);
  std::chrono::hh_mm_ss const clock(time - day);
  return {Date(day), std::chrono::weekday(day).c_encoding(), static_cast<int>(clock.hours().count()),
          static_cast<int>(clock.minutes().count()), static_cast<int>(clock.seconds().count())};
}

std::string number(int value, std::size_t digits) {
  return fmt::format("{:0{}}", value, digits);
}

template <class Names>
std::string field(char letter, std::size_t count, Reading const& reading, Names const& names) {
  auto const month = static_cast<unsigned>(reading.date.month());
  switch (letter) {
    case 'E':
      return (count > 3 ? names.weekdays : names.shortWeekdays)[reading.weekday];
    case 'd':
      return number(static_cast<int>(static_cast<unsigned>(reading.date.day())), count);
    case 'M':
      return count > 2 ? names.months[month - 1] : number(static_cast<int>(month), count);
    case 'y':
      return number(static_cast<int>(reading.date.year()), count == 2 ? 4 : count);
    case 'h':
      return number(reading.hour % 12 == 0 ? 12 : reading.hour % 12, count);
    case 'H':
      return number(reading.hour, count);
    case 'm':
      return number(reading.minute, count);
    case 's':
      return number(reading.second, count);
    case 'a':
      return names.dayHalves[reading.hour < 12 ? 0 : 1];
    default:
      return std::string(count, letter);
  }
}

bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

}  // namespace

TimeWords::TimeWords(Texts const& texts, Calendar calendar) : texts_(texts), calendar_(std::move(calendar)) {}

/// Languages are few and their names never change: what is read once stays.
TimeWords::Names const* TimeWords::names() const {
  static std::mutex mutex;
  static std::map<std::string, std::unique_ptr<Names>, std::less<>> known;
  std::lock_guard const lock(mutex);
  auto& names = known[texts_.language()];
  if (names) return names.get();
  UErrorCode status = U_ZERO_ERROR;
  icu::DateFormatSymbols const symbols(icu::Locale(texts_.language().c_str()), status);
  if (U_FAILURE(status)) return nullptr;
  using Symbols = icu::DateFormatSymbols;
  names = std::make_unique<Names>();
  std::int32_t count = 0;
  // ICU counts weekdays from one.
  copyNames(symbols.getWeekdays(count, Symbols::FORMAT, Symbols::WIDE) + 1, names->weekdays);
  copyNames(symbols.getWeekdays(count, Symbols::FORMAT, Symbols::ABBREVIATED) + 1, names->shortWeekdays);
  copyNames(symbols.getMonths(count, Symbols::FORMAT, Symbols::WIDE), names->months);
  copyNames(symbols.getAmPmStrings(count), names->dayHalves);
  return names.get();
}

std::string TimeWords::format(LocalTime time, std::string_view pattern) const {
  constexpr std::string_view kClock = "jmm";
  Names const* const known = names();
  if (known == nullptr) return {};
  Reading const reading = readingOf(time);
  std::string out;
  for (std::size_t at = 0; at < pattern.size();) {
    char const c = pattern[at];
    if (c == '\'') {
      auto const end = std::min(pattern.find('\'', at + 1), pattern.size());
      out += pattern.substr(at + 1, end - at - 1);
      at = end + 1;
      continue;
    }
    if (pattern.substr(at).starts_with(kClock)) {
      out += clock(time);
      at += kClock.size();
      continue;
    }
    std::size_t const end = isLetter(c) ? std::min(pattern.find_first_not_of(c, at), pattern.size()) : at + 1;
    out += isLetter(c) ? field(c, end - at, reading, *known) : std::string(1, c);
    at = end;
  }
  return out;
}

std::string TimeWords::hourLabel(Instant instant, Instant now) const {
  std::string label = hour(instant);
  if (label.empty()) return std::string(texts_.text("time.later"));
  int const days = daysBetween(calendar_.day(now), calendar_.day(instant));
  if (days == 0) return label;
  if (days == 1) return texts_.format("time.tomorrowHour", label);
  return texts_.format("time.weekdayHour", weekday(instant), label);
}

std::string TimeWords::aroundSuffix(Instant instant, Instant now) const {
  return texts_.format("time.aroundSuffix", hourLabel(instant, now));
}

std::string TimeWords::moment(Instant moment, Instant now) const {
  std::string clock = this->clock(moment);
  if (calendar_.isSameDay(moment, now)) return clock;
  int const days = daysBetween(calendar_.day(now), calendar_.day(moment));
  if (std::abs(days) > 6) return formatDate(calendar_.day(moment)) + " " + clock;
  return weekday(moment) + " " + clock;
}

std::string ageText(Instant then, Instant now, Texts const& texts) {
  using namespace std::chrono;
  constexpr minutes kClocksDiffer{2};
  auto const age = now - then;
  if (age < -kClocksDiffer) return std::string(texts.text("report.inFuture"));
  if (age < minutes(1)) return std::string(texts.text("report.justNow"));
  if (age < hours(2)) return texts.format("report.minutesAgo", floor<minutes>(age).count());
  if (age < hours(48)) return texts.format("report.hoursAgo", floor<hours>(age).count());
  return texts.format("report.daysAgo", floor<days>(age).count());
}

}  // namespace nimbara
