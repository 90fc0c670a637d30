#include "providers/common/hours_by_day.h"

#include <algorithm>

namespace nimbara {

namespace {

using std::chrono::hours;
using std::chrono::seconds;

/// Readings of the place's clock for moments in order. The zone is asked once a day and again only on a day
/// whose end stands in another offset than its begin: no zone changes its clocks twice a day.
class LocalClock {
 public:
  explicit LocalClock(Calendar const& calendar) : calendar_(calendar) {}

  LocalTime at(Instant instant) {
    if (instant < begin_ || instant >= end_) {
      begin_ = instant;
      end_ = instant + hours(24);
      offset_ = calendar_.offset(begin_);
      isConstant_ = calendar_.offset(end_) == offset_;
    }
    seconds const offset = isConstant_ ? offset_ : calendar_.offset(instant);
    return LocalTime(std::chrono::floor<seconds>(instant).time_since_epoch() + offset);
  }

 private:
  Calendar const& calendar_;
  Instant begin_;
  Instant end_;
  seconds offset_{};
  bool isConstant_ = false;
};

template <class T>
void fill(std::optional<T>& gap, std::optional<T> const& value) {
  if (!gap) gap = value;
}

}  // namespace

HoursByDay hoursByDay(std::vector<HourlyEntry>& entries, Calendar const& calendar) {
  HoursByDay days;
  LocalClock clock(calendar);
  for (HourlyEntry& entry : entries) {
    LocalTime const local = clock.at(entry.begin);
    auto const day = std::chrono::floor<std::chrono::days>(local);
    entry.hour = static_cast<int>(std::chrono::floor<hours>(local - day).count());
    auto& stretch = days.try_emplace(Date(day), &entry, 0U).first->second;
    stretch = {stretch.data(), stretch.size() + 1};
  }
  return days;
}

HourlyEntry const* hourContaining(std::vector<HourlyEntry> const& entries, Instant instant) {
  auto const after = std::ranges::upper_bound(entries, instant, {}, &HourlyEntry::begin);
  if (after == entries.begin()) return nullptr;
  HourlyEntry const& entry = *std::prev(after);
  return instant - entry.begin < hours(1) ? &entry : nullptr;
}

void fillGaps(HourlyEntry& present, HourlyEntry const& hour) {
  if (!present.temperature2m) fill(present.apparentTemperature, hour.apparentTemperature);
  fill(present.temperature2m, hour.temperature2m);
  fill(present.relativeHumidity2m, hour.relativeHumidity2m);
  fill(present.dewPoint2m, hour.dewPoint2m);
  fill(present.weatherCode, hour.weatherCode);
  fill(present.condition, hour.condition);
  fill(present.cloudCover, hour.cloudCover);
  fill(present.precipitation, hour.precipitation);
  fill(present.windSpeed10m, hour.windSpeed10m);
  fill(present.windDirection10m, hour.windDirection10m);
  fill(present.windGusts10m, hour.windGusts10m);
  fill(present.pressureMsl, hour.pressureMsl);
  fill(present.visibility, hour.visibility);
  fill(present.uvIndex, hour.uvIndex);
  fill(present.isDay, hour.isDay);
}

}  // namespace nimbara
