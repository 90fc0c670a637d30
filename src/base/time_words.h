// Hours, weekdays and dates as words of the program's language, in a place's time. Names come from ICU's
// locale data; the few pattern letters that we use are filled here, since a whole ICU formatter takes a
// megabyte and milliseconds to make. The names of a language are read once a process; any thread may use it.
#pragma once

#include "base/calendar.h"
#include "base/instant.h"
#include "base/texts.h"

#include <string>
#include <string_view>

namespace nimbara {

class TimeWords {
 public:
  TimeWords(Texts const& texts, Calendar calendar);

  /// "3 PM": the pattern "h a".
  std::string hour(Instant instant) const { return format(instant, "h a"); }
  /// "Saturday": the pattern "EEEE".
  std::string weekday(Instant instant) const { return format(instant, "EEEE"); }
  /// The hour as a text says it now: alone on the same day, wrapped by "time.tomorrowHour" on the next, with
  /// the weekday on a later one; "time.later" when the language gives no label.
  std::string hourLabel(Instant instant, Instant now) const;
  /// " around 3 PM": what messages append, from "time.aroundSuffix".
  std::string aroundSuffix(Instant instant, Instant now) const;
  /// "15:00": the clock alone on the same day, with the weekday in the days around it, else with the date.
  std::string moment(Instant moment, Instant now) const;
  /// A CLDR date pattern of the letters E (EEEE in full), d, M (MMMM in full), y, h, H, m and a, with
  /// 'quoted' texts; a letter stands as often as its number has digits at least. Empty when the language's
  /// names cannot be read.
  std::string format(Instant instant, std::string_view pattern) const;

 private:
  struct Names;
  Names const* names() const;

  Texts const& texts_;
  Calendar calendar_;
};

/// How old something is, in words: "just now", "25 min ago".
std::string ageText(Instant then, Instant now, Texts const& texts);

}  // namespace nimbara
