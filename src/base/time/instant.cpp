#include "base/time/instant.h"

#include <fmt/format.h>

#include <cctype>

namespace nimbara {

namespace {

using std::chrono::days;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;

/// Reads a text from its front; every step says whether the text went on as expected.
class Cursor {
 public:
  explicit Cursor(std::string_view text) : rest_(text) {}

  bool atEnd() const { return rest_.empty(); }
  char peek() const { return rest_.empty() ? '\0' : rest_.front(); }

  bool take(char expected) {
    if (peek() != expected) return false;
    rest_.remove_prefix(1);
    return true;
  }

  std::optional<int> digits(int count) {
    if (rest_.size() < static_cast<std::size_t>(count)) return std::nullopt;
    int value = 0;
    for (int i = 0; i < count; ++i) {
      char const c = rest_[static_cast<std::size_t>(i)];
      if (c < '0' || c > '9') return std::nullopt;
      value = value * 10 + (c - '0');
    }
    rest_.remove_prefix(static_cast<std::size_t>(count));
    return value;
  }

  /// A fraction of a second behind its point, any number of digits, to the millisecond.
  std::optional<milliseconds> fraction() {
    int value = 0;
    int count = 0;
    for (; peek() >= '0' && peek() <= '9'; ++count, rest_.remove_prefix(1)) {
      if (count < 3) value = value * 10 + (peek() - '0');
    }
    if (count == 0) return std::nullopt;
    for (; count < 3; ++count) value *= 10;
    return milliseconds(value);
  }

 private:
  std::string_view rest_;
};

std::optional<Date> takeDate(Cursor& cursor) {
  auto const year = cursor.digits(4);
  if (!year || !cursor.take('-')) return std::nullopt;
  auto const month = cursor.digits(2);
  if (!month || !cursor.take('-')) return std::nullopt;
  auto const day = cursor.digits(2);
  if (!day) return std::nullopt;
  Date const date{std::chrono::year(*year), std::chrono::month(static_cast<unsigned>(*month)),
                  std::chrono::day(static_cast<unsigned>(*day))};
  return date.ok() ? std::optional(date) : std::nullopt;
}

std::optional<milliseconds> takeClock(Cursor& cursor) {
  auto const hour = cursor.digits(2);
  if (!hour || !cursor.take(':')) return std::nullopt;
  auto const minute = cursor.digits(2);
  if (!minute || *hour > 23 || *minute > 59) return std::nullopt;
  milliseconds clock = std::chrono::hours(*hour) + minutes(*minute);
  if (!cursor.take(':')) return clock;
  auto const second = cursor.digits(2);
  if (!second || *second > 60) return std::nullopt;
  clock += seconds(std::min(*second, 59));
  if (!cursor.take('.')) return clock;
  auto const fraction = cursor.fraction();
  return fraction ? std::optional(clock + *fraction) : std::nullopt;
}

std::optional<minutes> takeOffset(Cursor& cursor) {
  if (cursor.take('Z')) return minutes(0);
  int const sign = cursor.peek() == '-' ? -1 : 1;
  if (!cursor.take('+') && !cursor.take('-')) return std::nullopt;
  auto const hour = cursor.digits(2);
  if (!hour || *hour > 18) return std::nullopt;
  int minute = 0;
  if (!cursor.atEnd()) {
    cursor.take(':');
    auto const read = cursor.digits(2);
    if (!read || *read > 59) return std::nullopt;
    minute = *read;
  }
  return sign * minutes(*hour * 60 + minute);
}

std::optional<std::chrono::local_time<milliseconds>> takeLocal(Cursor& cursor) {
  auto const date = takeDate(cursor);
  if (!date || !(cursor.take('T') || cursor.take(' '))) return std::nullopt;
  auto const clock = takeClock(cursor);
  if (!clock) return std::nullopt;
  return std::chrono::local_days(*date) + *clock;
}

long minuteOfDay(LocalTime time) {
  return std::chrono::floor<minutes>(time - std::chrono::floor<days>(time)).count();
}

}  // namespace

std::string formatIso8601(Instant instant) {
  auto const day = std::chrono::floor<days>(instant);
  std::chrono::hh_mm_ss const clock(instant - day);
  std::string const fraction =
      clock.subseconds().count() == 0 ? "" : fmt::format(".{:03}", clock.subseconds().count());
  return fmt::format("{}T{:02}:{:02}:{:02}{}Z", formatDate(Date(day)), clock.hours().count(),
                     clock.minutes().count(), clock.seconds().count(), fraction);
}

std::optional<Instant> parseIso8601(std::string_view text) {
  Cursor cursor(text);
  auto const local = takeLocal(cursor);
  if (!local) return std::nullopt;
  auto const offset = takeOffset(cursor);
  if (!offset || !cursor.atEnd()) return std::nullopt;
  return Instant(local->time_since_epoch() - *offset);
}

std::optional<LocalTime> parseLocalTime(std::string_view text) {
  Cursor cursor(text);
  auto const local = takeLocal(cursor);
  if (!local || !cursor.atEnd()) return std::nullopt;
  return std::chrono::floor<seconds>(*local);
}

std::string formatLocalTime(LocalTime time) {
  return formatDate(Date(std::chrono::floor<std::chrono::days>(time))) + "T" + formatClock24(time);
}

std::string formatDate(Date date) {
  return fmt::format("{:04}-{:02}-{:02}", static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                     static_cast<unsigned>(date.day()));
}

std::optional<Date> parseDate(std::string_view text) {
  Cursor cursor(text);
  auto const date = takeDate(cursor);
  return cursor.atEnd() ? date : std::nullopt;
}

int daysBetween(Date from, Date to) {
  return static_cast<int>((std::chrono::sys_days(to) - std::chrono::sys_days(from)).count());
}

Date addDays(Date date, int count) {
  return Date(std::chrono::sys_days(date) + days(count));
}

std::string formatClock12(LocalTime time) {
  auto const minute = minuteOfDay(time);
  auto const hour = minute / 60;
  return fmt::format("{:02}:{:02} {}", hour % 12 == 0 ? 12 : hour % 12, minute % 60, hour < 12 ? "AM" : "PM");
}

std::string formatClock24(LocalTime time) {
  auto const minute = minuteOfDay(time);
  return fmt::format("{:02}:{:02}", minute / 60, minute % 60);
}

std::optional<int> parseClock12(std::string_view text) {
  auto const colon = text.find(':');
  if (colon == std::string_view::npos || colon == 0 || colon > 2) return std::nullopt;
  Cursor cursor(text);
  auto const hour = cursor.digits(static_cast<int>(colon));
  cursor.take(':');
  auto const minute = cursor.digits(2);
  if (!hour || !minute || *hour < 1 || *hour > 12 || *minute > 59) return std::nullopt;
  cursor.take(' ');
  bool const afternoon = cursor.peek() == 'P' || cursor.peek() == 'p';
  bool const halfNamed =
      afternoon ? cursor.take('P') || cursor.take('p') : cursor.take('A') || cursor.take('a');
  if (!halfNamed || !(cursor.take('M') || cursor.take('m')) || !cursor.atEnd()) return std::nullopt;
  return (*hour % 12 + (afternoon ? 12 : 0)) * 60 + *minute;
}

}  // namespace nimbara
