#include "base/time/zone_rules.h"

#include <algorithm>

namespace nimbara {

namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::sys_seconds;

/// Reads a text from its front; every step says whether the text went on as expected.
class TextCursor {
 public:
  explicit TextCursor(std::string_view text) : rest_(text) {}

  bool atEnd() const { return rest_.empty(); }

  bool take(char expected) {
    if (rest_.empty() || rest_.front() != expected) return false;
    rest_.remove_prefix(1);
    return true;
  }

  std::optional<int> number(int lowest, int highest) {
    int value = 0;
    std::size_t digits = 0;
    for (; digits < rest_.size() && digits < 4 && isDigit(rest_[digits]); ++digits) {
      value = value * 10 + (rest_[digits] - '0');
    }
    if (digits == 0 || value < lowest || value > highest) return std::nullopt;
    rest_.remove_prefix(digits);
    return value;
  }

  /// "CET" or "<+0530>": three characters at least.
  bool name() {
    bool const isQuoted = take('<');
    std::size_t length = 0;
    while (length < rest_.size() && (isLetter(rest_[length]) || (isQuoted && isSign(rest_[length]))))
      ++length;
    if (length < 3) return false;
    rest_.remove_prefix(length);
    return !isQuoted || take('>');
  }

  /// "-5:30": hours with or without minutes and seconds.
  std::optional<seconds> time(int mostHours) {
    bool const isNegative = take('-');
    if (!isNegative) take('+');
    auto const hour = number(0, mostHours);
    if (!hour) return std::nullopt;
    seconds sum = hours(*hour);
    for (seconds const unit : {seconds(minutes(1)), seconds(1)}) {
      if (!take(':')) break;
      auto const part = number(0, 59);
      if (!part) return std::nullopt;
      sum += *part * unit;
    }
    return isNegative ? -sum : sum;
  }

 private:
  static bool isDigit(char c) { return c >= '0' && c <= '9'; }
  static bool isSign(char c) { return isDigit(c) || c == '+' || c == '-'; }
  static bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

  std::string_view rest_;
};

/// Texts count westwards.
std::optional<seconds> takeOffset(TextCursor& cursor) {
  auto const west = cursor.time(24);
  if (!west) return std::nullopt;
  return -*west;
}

bool takeDay(TextCursor& cursor, ClockChangeRule& rule) {
  using Kind = ClockChangeRule::Kind;
  if (cursor.take('M')) {
    auto const month = cursor.number(1, 12);
    auto const week = month && cursor.take('.') ? cursor.number(1, 5) : std::nullopt;
    auto const day = week && cursor.take('.') ? cursor.number(0, 6) : std::nullopt;
    if (!day) return false;
    rule = {Kind::weekdayOfMonth, *month, *week, *day, rule.time};
    return true;
  }
  bool const skipsLeapDay = cursor.take('J');
  auto const day = skipsLeapDay ? cursor.number(1, 365) : cursor.number(0, 365);
  if (!day) return false;
  rule.kind = skipsLeapDay ? Kind::dayWithoutLeapDay : Kind::dayOfYear;
  rule.day = *day;
  return true;
}

std::optional<ClockChangeRule> takeRule(TextCursor& cursor) {
  constexpr int kMostHours = 167;
  ClockChangeRule rule;
  if (!cursor.take(',') || !takeDay(cursor, rule)) return std::nullopt;
  if (!cursor.take('/')) return rule;
  auto const time = cursor.time(kMostHours);
  if (!time) return std::nullopt;
  rule.time = *time;
  return rule;
}

sys_days dayOf(ClockChangeRule const& rule, std::chrono::year year) {
  using Kind = ClockChangeRule::Kind;
  if (rule.kind == Kind::weekdayOfMonth) {
    std::chrono::month const month(static_cast<unsigned>(rule.month));
    std::chrono::weekday const weekday(static_cast<unsigned>(rule.day));
    if (rule.week == 5) return year / month / weekday[std::chrono::last];
    return year / month / weekday[static_cast<unsigned>(rule.week)];
  }
  constexpr int kFirstOfMarch = 60;
  sys_days const newYear = year / std::chrono::January / 1;
  if (rule.kind == Kind::dayOfYear) return newYear + days(rule.day);
  bool const isBehindLeapDay = year.is_leap() && rule.day >= kFirstOfMarch;
  return newYear + days(rule.day - 1 + (isBehindLeapDay ? 1 : 0));
}

}  // namespace

seconds PosixZone::offset(sys_seconds moment) const {
  if (!saving) return standard;
  auto const year = std::chrono::year_month_day(std::chrono::floor<days>(moment + standard)).year();
  sys_seconds const begin = dayOf(saving->begin, year) + saving->begin.time - standard;
  sys_seconds const end = dayOf(saving->end, year) + saving->end.time - saving->offset;
  // South of the equator summer reaches over the new year.
  bool const isSaving = begin < end ? moment >= begin && moment < end : moment >= begin || moment < end;
  return isSaving ? saving->offset : standard;
}

std::optional<PosixZone> parsePosixZone(std::string_view text) {
  TextCursor cursor(text);
  if (!cursor.name()) return std::nullopt;
  auto const standard = takeOffset(cursor);
  if (!standard) return std::nullopt;
  if (cursor.atEnd()) return PosixZone{*standard, {}};
  if (!cursor.name()) return std::nullopt;
  seconds saving = *standard + hours(1);
  if (auto const given = takeOffset(cursor)) saving = *given;
  auto const begin = takeRule(cursor);
  auto const end = begin ? takeRule(cursor) : std::nullopt;
  if (!end || !cursor.atEnd()) return std::nullopt;
  return PosixZone{*standard, PosixZone::Saving{saving, *begin, *end}};
}

}  // namespace nimbara
