// Clocks as a written sentence has them, with the word that leads to them: "from 3 PM", "until midnight",
// "around noon", "dalle 14 alle 17". Languages bend the word by the hour, so the two stand in one text.
#pragma once

#include "base/enum_names.h"
#include "base/words/time_words.h"

#include <string>

namespace nimbara {

enum class ClockRole {
  from,   ///< "from 3 PM", of what does not end
  until,  ///< "until 3 PM"
  around,
  first,  ///< "from 3 PM", of a span
  last    ///< "to 5 PM"
};
template <>
inline constexpr auto enumNames<ClockRole> =
    std::to_array<std::string_view>({"from", "until", "around", "first", "last"});
static_assert(enumNamesComplete(ClockRole::last));

class ClockPhrase {
 public:
  enum class Precision { hour, minute };

  /// What is given outlives it; `calendar` is copied.
  ClockPhrase(Texts const& texts, Calendar calendar);

  /// "noon", "midnight", "3 PM", "18:30 Uhr": without a word before it.
  std::string name(Instant instant, Precision precision = Precision::hour) const;
  /// The same in figures only: "12:05 AM", "0:05 Uhr".
  std::string figures(Instant instant, Precision precision) const;
  /// "until 3 PM".
  std::string phrase(ClockRole role, Instant instant, Precision precision = Precision::hour) const;
  /// The same with the day where that is not the one of `now`: "until 3 PM tomorrow". Midnight ends the day
  /// before.
  std::string phraseOnDay(ClockRole role, Instant instant, Instant now, Precision precision) const;
  /// "from 3 PM to 5 PM"; "von 18 bis 20 Uhr" names the unit once.
  std::string span(Instant begin, Instant end, Precision precision = Precision::hour) const;

 private:
  enum class Form { usual, one, noon, midnight };

  Form formOf(Instant instant, Precision precision) const;
  /// Nothing that has a name of its own.
  bool isFigure(Instant instant, Precision precision) const;
  std::string led(ClockRole role, Form form, std::string const& clock) const;

  Texts const& texts_;
  Calendar calendar_;
  TimeWords time_;
  bool isOfTwelve_;  ///< hours are written by a clock of 12
};

}  // namespace nimbara
