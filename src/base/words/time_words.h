// Hours, weekdays and dates as words of the program's language, in a place's time. Names come from ICU's
// locale data; the few pattern letters that we use are filled here, since a whole ICU formatter takes a
// megabyte and milliseconds to make. The names of a language are read once a process; any thread may use it.
#pragma once

#include "base/time/calendar.h"
#include "base/time/instant.h"
#include "base/words/texts.h"

#include <string>
#include <string_view>

namespace nimbara {

class TimeWords {
 public:
  TimeWords(Texts const& texts, Calendar calendar);

  /// "3 PM" (the pattern "h a"), or "15:00" where texts have 24 hours.
  std::string hour(Instant instant) const { return format(instant, texts_.text("time.hourPattern")); }
  /// The same where there is little room: "3 PM" or "15".
  std::string hourColumn(Instant instant) const {
    return format(instant, texts_.text("time.hourColumnPattern"));
  }
  /// "3:05 PM" or "15:05".
  std::string clock(Instant instant) const { return format(instant, texts_.text("time.clockPattern")); }
  std::string clock(LocalTime time) const { return format(time, texts_.text("time.clockPattern")); }
  /// "3:05:09 PM" or "15:05:09".
  std::string clockWithSeconds(Instant instant) const {
    return format(instant, texts_.text("time.secondsPattern"));
  }
  /// "Saturday": the pattern "EEEE".
  std::string weekday(Instant instant) const { return format(instant, "EEEE"); }
  /// The hour as a text says it now: alone on the same day, wrapped by "time.tomorrowHour" on the next, with
  /// the weekday on a later one; "time.later" when the language gives no label.
  std::string hourLabel(Instant instant, Instant now) const;
  /// " around 3 PM": what messages append, from "time.aroundSuffix".
  std::string aroundSuffix(Instant instant, Instant now) const;
  /// "3:05 PM": the clock alone on the same day, with the weekday in the days around it, else with the date.
  std::string moment(Instant moment, Instant now) const;
  /// A CLDR date pattern of the letters E (EEEE in full), d, M (MMMM in full), y, h, H, m, s and a, with
  /// 'quoted' texts; a letter stands as often as its number has digits at least; "jmm" is the clock as
  /// `clock` writes it. Empty when the language's names cannot be read.
  std::string format(Instant instant, std::string_view pattern) const {
    return format(calendar_.local(instant), pattern);
  }
  std::string format(LocalTime time, std::string_view pattern) const;

 private:
  struct Names;
  Names const* names() const;

  Texts const& texts_;
  Calendar calendar_;
};

/// How old something is, in words: "just now", "25 min ago".
std::string ageText(Instant then, Instant now, Texts const& texts);

}  // namespace nimbara
