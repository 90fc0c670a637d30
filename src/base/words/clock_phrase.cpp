#include "base/words/clock_phrase.h"

namespace nimbara {

namespace {

using std::chrono::hours;
using std::chrono::minutes;

constexpr int kNoon = 12;

bool isWhole(LocalTime time) {
  return time == std::chrono::floor<hours>(time);
}

int hourOf(LocalTime time) {
  auto const day = std::chrono::floor<std::chrono::days>(time);
  return static_cast<int>(std::chrono::floor<hours>(time - day).count());
}

}  // namespace

ClockPhrase::ClockPhrase(Texts const& texts, Calendar calendar)
    : texts_(texts),
      calendar_(std::move(calendar)),
      time_(texts, calendar_),
      isOfTwelve_(texts.text("time.hourPattern").find('H') == std::string_view::npos) {}

ClockPhrase::Form ClockPhrase::formOf(Instant instant, Precision precision) const {
  LocalTime const local = calendar_.local(instant);
  int const hour = hourOf(local);
  if (hour == 1 || (isOfTwelve_ && hour == 1 + kNoon)) return Form::one;
  bool const isNamed = precision == Precision::hour || isWhole(std::chrono::floor<minutes>(local));
  if (isNamed && hour == kNoon) return Form::noon;
  return isNamed && hour == 0 ? Form::midnight : Form::usual;
}

std::string ClockPhrase::figures(Instant instant, Precision precision) const {
  LocalTime const local = calendar_.local(instant);
  LocalTime const hour = std::chrono::floor<hours>(local);
  bool const isHour = precision == Precision::hour || isWhole(std::chrono::floor<minutes>(local));
  if (isOfTwelve_) return time_.format(local, texts_.text(isHour ? "time.hourPattern" : "time.clockPattern"));
  return isHour ? time_.format(hour, texts_.text("clock.pattern.hour"))
                : time_.format(local, texts_.text("clock.pattern.minute"));
}

std::string ClockPhrase::name(Instant instant, Precision precision) const {
  Form const form = formOf(instant, precision);
  if (form == Form::noon) return std::string(texts_.text("clock.noon"));
  if (form == Form::midnight) return std::string(texts_.text("clock.midnight"));
  return figures(instant, precision);
}

std::string ClockPhrase::led(ClockRole role, Form form, std::string const& clock) const {
  constexpr std::string_view kForms[] = {"", ".one", ".noon", ".midnight"};
  return texts_.format(
      "clock." + std::string(enumName(role)) + std::string(kForms[static_cast<std::size_t>(form)]), clock);
}

std::string ClockPhrase::phrase(ClockRole role, Instant instant, Precision precision) const {
  return led(role, formOf(instant, precision), name(instant, precision));
}

std::string ClockPhrase::phraseOnDay(ClockRole role, Instant instant, Instant now,
                                     Precision precision) const {
  Form const form = formOf(instant, precision);
  bool const endsDay = form == Form::midnight && (role == ClockRole::until || role == ClockRole::last);
  Instant const within = endsDay ? instant - minutes(1) : instant;
  std::string clock = name(instant, precision);
  int const days = daysBetween(calendar_.day(now), calendar_.day(within));
  if (days == 1) clock = texts_.format("time.tomorrowHour", clock);
  if (days > 1) clock = texts_.format("clock.onDay", time_.weekday(within), clock);
  return led(role, form, clock);
}

bool ClockPhrase::isFigure(Instant instant, Precision precision) const {
  std::string const clock = name(instant, precision);
  return !clock.empty() && clock.front() >= '0' && clock.front() <= '9';
}

std::string ClockPhrase::span(Instant begin, Instant end, Precision precision) const {
  bool const isHour = precision == Precision::hour || isWhole(calendar_.local(begin));
  bool const isUnitShared = !isOfTwelve_ && isHour && isFigure(begin, precision) && isFigure(end, precision);
  std::string const first =
      isUnitShared ? time_.format(begin, texts_.text("clock.pattern.first")) : name(begin, precision);
  return texts_.format("clock.span", led(ClockRole::first, formOf(begin, precision), first),
                       phrase(ClockRole::last, end, precision));
}

}  // namespace nimbara
