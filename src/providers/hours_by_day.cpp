#include "providers/hours_by_day.h"

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

}  // namespace nimbara
