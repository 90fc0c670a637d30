// Hours, weekdays and dates as words of the program's language, in a place's time. Owned by whoever writes
// texts; an object is cheap to make and builds its formatters at first use, so one thread uses it at a time.
#pragma once

#include "base/calendar.h"
#include "base/instant.h"
#include "base/texts.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace nimbara {

class TimeWords {
 public:
  TimeWords(Texts const& texts, Calendar calendar);
  ~TimeWords();

  /// "3 PM": the pattern "h a".
  std::string hour(Instant instant) const { return format(instant, "h a"); }
  /// "Saturday": the pattern "EEEE".
  std::string weekday(Instant instant) const { return format(instant, "EEEE"); }
  /// The hour as a text says it now: alone on the same day, wrapped by "time.tomorrowHour" on the next, with
  /// the weekday on a later one; "time.later" when the language gives no label.
  std::string hourLabel(Instant instant, Instant now) const;
  /// " around 3 PM": what messages append, from "time.aroundSuffix".
  std::string aroundSuffix(Instant instant, Instant now) const;
  /// Any CLDR date pattern ("EEEE, d MMMM yyyy").
  std::string format(Instant instant, std::string_view pattern) const;

 private:
  struct Formatter;

  Texts const& texts_;
  Calendar calendar_;
  mutable std::map<std::string, std::unique_ptr<Formatter>, std::less<>> formatters_;
};

}  // namespace nimbara
