#include "app/words/confidence_text.h"

#include "base/text/number.h"
#include "base/words/time_words.h"
#include "model/process.h"

#include <cmath>

namespace nimbara {

namespace {

constexpr double kFahrenheitSteps = 1.8;
/// Less than that is no figure worth printing.
constexpr double kLeastDegrees = 1;
constexpr double kLeastMM = 1;
constexpr double kLeastKmph = 5;

std::string levelText(ConfidenceLevel level, Texts const& texts) {
  return std::string(texts.text("confidence." + std::string(enumName(level))));
}

std::string nameOf(DayConfidence const& day, HazardWords const& words) {
  if (day.daysAhead == 0) return std::string(words.texts.text("brief.part.today"));
  constexpr std::chrono::hours kNoon{12};
  LocalTime const noon(std::chrono::local_days(day.day) + kNoon);
  return TimeWords(words.texts, words.calendar).format(noon, "EEEE");
}

/// What the two differ in, where that is worth a figure; that the day is far ahead, where that decides.
std::vector<std::string> figures(DayConfidence const& day, HazardWords const& words) {
  Texts const& texts = words.texts;
  bool const isFahrenheit = words.units.temperature == TemperatureUnit::fahrenheit;
  auto const degrees = [&](double celsius) {
    return roundedText(std::abs(celsius) * (isFahrenheit ? kFahrenheitSteps : 1)) + "°";
  };
  std::vector<std::string> out;
  if (std::abs(day.highestC) >= kLeastDegrees)
    out.push_back(texts.format("confidence.highest", degrees(day.highestC)));
  if (std::abs(day.lowestC) >= kLeastDegrees)
    out.push_back(texts.format("confidence.lowest", degrees(day.lowestC)));
  if (double const mm = std::abs(day.precipMM.value_or(0)); mm >= kLeastMM) {
    out.push_back(texts.format("confidence.precip", display(mm, words.units.precipitation) + " " +
                                                        std::string(symbol(words.units.precipitation))));
  }
  if (double const kmph = std::abs(day.windKmph.value_or(0)); kmph >= kLeastKmph) {
    out.push_back(texts.format(
        "confidence.wind", display(kmph, words.units.wind) + " " + std::string(symbol(words.units.wind))));
  }
  if (day.isForTime) out.emplace_back(texts.text("confidence.far"));
  return out;
}

std::string dayText(DayConfidence const& day, HazardWords const& words) {
  std::string const level = levelText(day.level, words.texts);
  std::string reasons;
  for (std::string const& figure : figures(day, words))
    reasons = reasons.empty() ? figure : words.texts.format("brief.clauses", reasons, figure);
  std::string const name = nameOf(day, words);
  return reasons.empty() ? words.texts.format("brief.named", name, level)
                         : words.texts.format("confidence.day", name, level, reasons);
}

/// Days of one level in a row as one.
std::string runsText(std::vector<DayConfidence> const& days, HazardWords const& words) {
  std::string all;
  for (std::size_t first = 0; first < days.size();) {
    std::size_t last = first;
    while (last + 1 < days.size() && days[last + 1].level == days[first].level) ++last;
    std::string const level = levelText(days[first].level, words.texts);
    std::string const from = nameOf(days[first], words);
    std::string const run =
        last == first ? words.texts.format("brief.named", from, level)
                      : words.texts.format("confidence.run", from, nameOf(days[last], words), level);
    all += (all.empty() ? "" : "  ·  ") + run;
    first = last + 1;
  }
  return all;
}

}  // namespace

std::vector<DayConfidence> confidenceDays(WeatherData const& shown, WeatherData const* other, Instant now,
                                          Calendar const& fallback) {
  if (other == nullptr) return {};
  return forecastConfidence(shown, *other, now, calendarOf(shown, fallback));
}

ConfidenceText confidenceText(std::vector<DayConfidence> const& days,
                              std::optional<WeatherProviderOption> other, HazardWords const& words) {
  ConfidenceText text;
  if (days.empty() || !other) {
    text.line = words.texts.text("confidence.none");
    return text;
  }
  text.days.reserve(days.size());
  for (DayConfidence const& day : days) text.days.push_back(dayText(day, words));
  text.line = words.texts.format("confidence.line", runsText(days, words));
  text.note =
      words.texts.format("confidence.note", words.texts.text("provider." + std::string(enumName(*other))));
  return text;
}

}  // namespace nimbara
