#include "base/time/hour_clock.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr std::string_view kTwelve = "@hours=h12";
constexpr std::string_view kTwentyFour = "@hours=h23";

}  // namespace

HourClock hourClockOf(std::string_view locale) {
  constexpr std::string_view kTwelveHours[] = {"", "C", "POSIX", "en_US", "en-US"};
  bool const isTwelve = std::ranges::count(kTwelveHours, locale.substr(0, locale.find_first_of(".@"))) > 0;
  return isTwelve ? HourClock::twelve : HourClock::twentyFour;
}

std::string withHourClock(std::string_view locale, HourClock clock) {
  std::string_view const plain = locale.substr(0, locale.find('@'));
  return std::string(plain).append(clock == HourClock::twelve ? kTwelve : kTwentyFour);
}

HourClock hourClockIn(std::string_view locale) {
  return locale.ends_with(kTwentyFour) ? HourClock::twentyFour : HourClock::twelve;
}

}  // namespace nimbara
