#include "desktop/views/now/next_hours.h"

#include "model/present.h"
#include "model/process.h"
#include "model/upcoming_hours.h"

#include <algorithm>
#include <span>

namespace nimbara {

namespace {

bool isSnow(WeatherConditionCode condition) {
  ConditionCategory const sky = category(condition);
  return sky == ConditionCategory::lightSnow || sky == ConditionCategory::heavySnow;
}

/// Nothing where neither the amount nor the chance is known and no rain is seen in the sky.
std::optional<bool> isWet(HourlyForecast const& hour) {
  constexpr double kLeastMM = 0.1;
  constexpr int kLeastChance = 40;
  bool const knowsAmount = hour.knows(ForecastValue::precipitation);
  bool const knowsChance = hour.knows(ForecastValue::precipitationChance);
  if (!knowsAmount && !knowsChance) {
    return isPrecipitation(hour.condition) ? std::optional(true) : std::nullopt;
  }
  bool const isEnough = !knowsAmount || hour.precipMM >= kLeastMM;
  bool const isLikely = !knowsChance || std::max(hour.chanceOfRain, hour.chanceOfSnow) >= kLeastChance;
  return isEnough && isLikely;
}

/// What the page shows as the present; nothing where that is not known.
std::optional<WeatherConditionCode> skyNow(WeatherData const& data, ViewContext const& context) {
  auto const present = presentAt(data, context.now);
  if (!present || present->condition == WeatherConditionCode::unknown) return std::nullopt;
  return present->condition;
}

/// Near freezing it may be either that falls.
bool allowSnow(std::span<HourlyForecast const> hours) {
  constexpr double kWarmestSnow = 2;  // °C
  return std::ranges::any_of(hours, [](HourlyForecast const& hour) { return hour.tempC <= kWarmestSnow; });
}

}  // namespace

std::string nextHoursSentence(WeatherData const& data, ViewContext const& context) {
  constexpr std::chrono::hours kAhead{12};
  Instant const end = context.now + kAhead;
  auto hours = upcomingHours(data.allHourly, context.now);
  auto const isBeyond = [&](HourlyForecast const& hour) { return hour.date >= end || !isWet(hour); };
  hours = hours.first(static_cast<std::size_t>(std::ranges::find_if(hours, isBeyond) - hours.begin()));
  if (hours.empty() || hours.front().date > context.now) return {};
  bool const isForecastWet = *isWet(hours.front());
  auto const change =
      std::ranges::find_if(hours, [&](HourlyForecast const& hour) { return *isWet(hour) != isForecastWet; });
  bool const changes = change != hours.end();
  // Twelve hours are spoken of only where twelve are known.
  if (!changes && hours.back().date + stepLength(hours, hours.size() - 1) < end) return {};
  auto const sky = skyNow(data, context);
  bool const isWetNow = sky ? isPrecipitation(*sky) : isForecastWet;
  HourlyForecast const& kind = isForecastWet || !changes ? hours.front() : *change;
  bool const isSnowy = isSnow(sky && isWetNow ? *sky : kind.condition);
  std::string const fall = isSnowy ? "snow" : "rain";
  std::string const when =
      changes ? TimeWords(context.texts, calendarOf(data, context.fallback)).moment(change->date, context.now)
              : std::string();
  if (isWetNow && !isForecastWet) return context.text("desktop.next." + fall + "Stops");
  if (!isWetNow && isForecastWet) {
    return changes ? context.texts.format("desktop.next." + fall + "PossibleUntil", when)
                   : context.text("desktop.next." + fall + "Possible");
  }
  if (!changes && isWetNow) return context.text("desktop.next." + fall);
  if (!changes) return context.text(allowSnow(hours) ? "desktop.next.dryCold" : "desktop.next.dry");
  return context.texts.format("push." + fall + (isWetNow ? "Stop" : "Start") + ".bodyAt", when);
}

std::string aheadSentence(WeatherState const& state, NowcastNow const& nowcast, ViewContext const& context) {
  WeatherData const& data = *state.weatherData;
  bool const isDryAhead = nowcast.isKnown && !nowcast.isWetAhead;
  bool const isForecastWet =
      std::ranges::any_of(upcomingHours(data.allHourly, context.now), [&](HourlyForecast const& hour) {
        return hour.date < nowcast.dryUntil && isWet(hour).value_or(false);
      });
  if (!nowcast.isWetAhead && !(isDryAhead && isForecastWet)) return nextHoursSentence(data, context);
  TimeWords const words(context.texts, calendarOf(data, context.fallback));
  NowcastReading const reading = withFall(*state.nowcast, data.allHourly);
  return context.texts.format("nowcast.whole",
                              nowcastText(reading, context.now, context.texts, words).sentence);
}

}  // namespace nimbara
