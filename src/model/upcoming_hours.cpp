#include "model/upcoming_hours.h"

#include <algorithm>

namespace nimbara {

namespace {

using std::chrono::hours;
using std::chrono::milliseconds;

constexpr milliseconds kLongestStep = hours(6);

}  // namespace

milliseconds stepLength(std::span<HourlyForecast const> entries, std::size_t index) {
  if (entries.size() < 2) return hours(1);
  std::size_t const first = std::min(index, entries.size() - 2);
  return std::clamp<milliseconds>(entries[first + 1].date - entries[first].date, milliseconds(0),
                                  kLongestStep);
}

std::span<HourlyForecast const> upcomingHours(std::span<HourlyForecast const> entries, Instant now) {
  auto const after = std::ranges::upper_bound(entries, now, {}, &HourlyForecast::date);
  auto index = static_cast<std::size_t>(after - entries.begin());
  if (index > 0 && now < entries[index - 1].date + stepLength(entries, index - 1)) --index;
  return entries.subspan(index);
}

HourlyForecast const* hourAt(std::span<HourlyForecast const> entries, Instant now) {
  auto const upcoming = upcomingHours(entries, now);
  return upcoming.empty() || upcoming.front().date > now ? nullptr : &upcoming.front();
}

}  // namespace nimbara
