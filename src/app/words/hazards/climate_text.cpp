#include "app/words/hazards/climate_text.h"

#include "base/text/number.h"
#include "base/words/time_words.h"

#include <cmath>

namespace nimbara {

namespace {

constexpr double kFahrenheitSteps = 1.8;
constexpr unsigned kEarlyUntil = 10;
constexpr unsigned kMidUntil = 20;

/// "mid-November".
std::string timeOfYear(Date date, HazardWords const& words) {
  auto const day = static_cast<unsigned>(date.day());
  std::string_view const part = day <= kEarlyUntil ? "early" : day <= kMidUntil ? "mid" : "late";
  LocalTime const noon(std::chrono::local_days(date) + std::chrono::hours(12));
  std::string const month = TimeWords(words.texts, words.calendar).format(noon, "MMMM");
  return words.texts.format("climate." + std::string(part), month);
}

/// A difference has no freezing point: only its steps change with the unit.
std::string differenceText(double celsius, HazardWords const& words) {
  bool const isFahrenheit = words.units.temperature == TemperatureUnit::fahrenheit;
  return roundedText(std::abs(celsius) * (isFahrenheit ? kFahrenheitSteps : 1)) + "°";
}

std::string temperatureText(double celsius, HazardWords const& words) {
  return display(celsius, words.units.temperature) + "\u00A0" + std::string(symbol(words.units.temperature));
}

}  // namespace

ClimateText climateText(ClimateOutlook const& outlook, HazardWords const& words) {
  Texts const& texts = words.texts;
  ClimateText text;
  text.source = texts.text("climate.source");
  text.today = texts.format("desktop.air.today", outlook.today ? temperatureText(*outlook.today, words)
                                                               : std::string(texts.text("air.notKnown")));
  std::string const when = timeOfYear(outlook.date, words);
  if (!outlook.usual) {
    text.band = texts.format("climate.none", when);
    return text;
  }
  text.band = texts.format("climate.band", when, temperatureText(outlook.usual->p20, words),
                           temperatureText(outlook.usual->p80, words));
  auto const word = outlook.word();
  if (word && *word != ClimateWord::usual) {
    text.sentence = texts.format("climate." + std::string(enumName(*word)),
                                 differenceText(*outlook.anomaly(), words), when);
  }
  return text;
}

}  // namespace nimbara
