// Clauses of a brief in the words of a language: fragments as they stand within a sentence, and the sentences
// and paragraphs made of them. Pure.
#pragma once

#include "analysis/event_detector.h"
#include "base/units.h"
#include "base/words/clock_phrase.h"
#include "base/words/time_words.h"

#include <string>
#include <vector>

namespace nimbara {

class BriefWords {
 public:
  BriefWords(Units const& units, Texts const& texts, Calendar const& calendar)
      : units_(units), texts_(texts), time_(texts, calendar), clock_(texts, calendar) {}

  Texts const& texts() const { return texts_; }
  TimeWords const& time() const { return time_; }
  ClockPhrase const& clock() const { return clock_; }

  /// "light rain", "clear"; empty for `unknown`.
  std::string sky(WeatherConditionCode condition, bool isDay) const;
  /// "light rain", "freezing rain": what an event is.
  std::string nameOf(WeatherEvent const& event) const;
  /// A warning's title, which is its author's and often names the weather alone, so that it is not taken for
  /// a forecast: "Flood (official warning)".
  std::string officialName(std::string const& title) const;
  /// "light rain from 2 PM to 5 PM": an event as far as it lies within [begin, end).
  std::string during(std::string name, WeatherEvent const& event, Instant begin, Instant end) const;
  /// "about 6 mm", "8 cm of new snow"; empty below 1 mm and 1 cm.
  std::string rainAmount(double mm) const;
  std::string snowAmount(double cm, bool isFalling) const;

  std::string temperature(double celsius, double fahrenheit) const;
  std::string temperature(double celsius) const;
  /// "8°": a difference.
  std::string degrees(double celsius) const;
  /// 0 where it would round to nothing.
  std::string wind(double kmph) const;

  /// A clause as a heading: with a capital.
  std::string heading(std::string_view clause) const;
  /// Clauses with the language's commas, as a sentence that begins with a capital; empty without clauses.
  std::string sentence(std::vector<std::string> const& clauses) const;
  std::string paragraph(std::vector<std::string> const& sentences) const;

 private:
  Units const& units_;
  Texts const& texts_;
  TimeWords time_;
  ClockPhrase clock_;
};

}  // namespace nimbara
