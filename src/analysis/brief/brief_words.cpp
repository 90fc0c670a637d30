#include "analysis/brief/brief_words.h"

#include "base/text/utf8.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

constexpr double kCmOfInch = 2.54;

/// Of the letters that begin words in our languages.
char32_t upper(char32_t letter) {
  bool const isLatin1 = letter >= 0xE0 && letter <= 0xFE && letter != 0xF7;
  if ((letter >= 'a' && letter <= 'z') || isLatin1) return letter - 0x20;
  // Latin Extended-A: pairs, the capital first; even in its first and last part, odd between.
  bool const isOdd = letter % 2 == 1;
  bool const pairsAreEven = letter < 0x138 || (letter >= 0x14A && letter < 0x178);
  if (letter >= 0x100 && letter < 0x17F && isOdd == pairsAreEven && letter != 0x131) return letter - 1;
  return letter;
}

std::string capital(std::string_view text) {
  if (text.empty()) return {};
  std::string out;
  appendCharacter(out, upper(takeCharacter(text)));
  return out.append(text);
}

std::string_view nameKey(EventKind kind) {
  switch (kind) {
    case EventKind::freezingRain:
      return "brief.freezingRain";
    case EventKind::thunder:
      return "brief.sky.thunderyShowers";
    case EventKind::snow:
      return "brief.snow";
    case EventKind::sleet:
      return "brief.sky.lightSleet";
    case EventKind::fog:
      return "brief.sky.fog";
    default:
      return "brief.rain";
  }
}

/// How titles say what they are, in the languages of their authors; of letters without case.
constexpr std::string_view kWarningWords[] = {"arn",   "atch",  "dvisor", "lert",  "vigilan",
                                              "viso",  "rohun", "aarsch", "strze", "aution",
                                              "arsel", "警報",  "注意報", "警告",  "预警"};

}  // namespace

std::string BriefWords::officialName(std::string const& title) const {
  bool const isNamed =
      std::ranges::any_of(kWarningWords, [&](auto word) { return title.find(word) != title.npos; });
  return isNamed ? title : texts_.format("brief.official", title);
}

std::string BriefWords::sky(WeatherConditionCode condition, bool isDay) const {
  if (condition == WeatherConditionCode::unknown) return {};
  bool const isClearNight = condition == WeatherConditionCode::sunny && !isDay;
  return std::string(
      texts_.text(isClearNight ? "brief.sky.clearNight" : "brief.sky." + std::string(enumName(condition))));
}

std::string BriefWords::nameOf(WeatherEvent const& event) const {
  // Thunder is an event of its own, often shorter than the rain around it.
  bool const isThunder = category(event.condition) == ConditionCategory::thunderstorm;
  bool const isNamedByCondition = (event.kind == EventKind::rain || event.kind == EventKind::snow) &&
                                  isPrecipitation(event.condition) && !isThunder;
  return isNamedByCondition ? sky(event.condition, true) : std::string(texts_.text(nameKey(event.kind)));
}

std::string BriefWords::during(std::string name, WeatherEvent const& event, Instant begin,
                               Instant end) const {
  constexpr std::chrono::minutes kAtOnce{30};
  bool const fromStart = event.begin <= begin + kAtOnce;
  bool const toEnd = event.end > end || (event.isOpen && event.end == end);
  if (fromStart && toEnd) return name;
  // A day that is told of before its morning reaches into the next one, whose early hours are named like its
  // own.
  constexpr std::chrono::hours kLongestNight{16};
  bool const isOfNextDay = event.end - begin > kLongestNight;
  using enum ClockPhrase::Precision;
  if (fromStart)
    return texts_.format("brief.until", name,
                         isOfNextDay ? clock_.phraseOnDay(ClockRole::until, event.end, begin, hour)
                                     : clock_.phrase(ClockRole::until, event.end));
  if (toEnd) return texts_.format("brief.during", name, clock_.phrase(ClockRole::from, event.begin));
  return texts_.format("brief.during", name, clock_.span(event.begin, event.end));
}

std::string BriefWords::rainAmount(double mm) const {
  if (mm < 1) return {};
  bool const isMetric = units_.precipitation == PrecipitationUnit::mm;
  std::string const number =
      isMetric ? std::to_string(std::lround(mm)) : texts_.format("brief.oneDecimal", mm / 10 / kCmOfInch);
  if (!isMetric && mm / 10 / kCmOfInch < 0.1) return {};
  return texts_.format("brief.amount", number + " " + std::string(symbol(units_.precipitation)));
}

std::string BriefWords::snowAmount(double cm, bool isFalling) const {
  if (cm < 1) return {};
  bool const isMetric = units_.precipitation == PrecipitationUnit::mm;
  double const inches = cm / kCmOfInch;
  std::string const number = isMetric      ? std::to_string(std::lround(cm)) + " cm"
                             : inches >= 2 ? std::to_string(std::lround(inches)) + " in"
                                           : texts_.format("brief.oneDecimal", inches) + " in";
  return texts_.format(isFalling ? "brief.snowMore" : "brief.snowAmount", number);
}

std::string BriefWords::temperature(double celsius, double fahrenheit) const {
  return displayTemperature(celsius, fahrenheit, units_.temperature) + " " +
         std::string(symbol(units_.temperature));
}

std::string BriefWords::temperature(double celsius) const {
  return display(celsius, units_.temperature) + " " + std::string(symbol(units_.temperature));
}

std::string BriefWords::degrees(double celsius) const {
  bool const isFahrenheit = units_.temperature == TemperatureUnit::fahrenheit;
  return std::to_string(std::lround(std::abs(isFahrenheit ? celsius * 9 / 5 : celsius))) + "°";
}

std::string BriefWords::wind(double kmph) const {
  return display(kmph, units_.wind) + " " + std::string(symbol(units_.wind));
}

std::string BriefWords::heading(std::string_view clause) const {
  return capital(clause);
}

std::string BriefWords::sentence(std::vector<std::string> const& clauses) const {
  std::string all;
  for (std::string const& clause : clauses) {
    if (clause.empty()) continue;
    all = all.empty() ? clause : texts_.format("brief.clauses", all, clause);
  }
  return all.empty() ? all : texts_.format("brief.sentence", capital(all));
}

std::string BriefWords::paragraph(std::vector<std::string> const& sentences) const {
  std::string all;
  for (std::string const& sentence : sentences)
    all = all.empty() ? sentence : texts_.format("brief.sentences", all, sentence);
  return all;
}

}  // namespace nimbara
