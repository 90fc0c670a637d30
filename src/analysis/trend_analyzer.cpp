#include "analysis/trend_analyzer.h"

#include "model/process.h"
#include "model/upcoming_hours.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace nimbara {

namespace {

using Hours = std::span<HourlyForecast const>;
using std::chrono::hours;

constexpr double kDayChangeC = 5;
constexpr double kLastingC = 3;
constexpr hours kReach{24};
constexpr hours kFrontLength{3};
constexpr double kFrontChangeC = 3;
constexpr double kLeastWindKmph = 12;
constexpr double kTurnDegrees = 67.5;
constexpr double kFrontTurnDegrees = 45;
constexpr std::array kPoints = std::to_array<std::string_view>(
    {"N", "NNE", "NE", "ENE", "E", "ESE", "SE", "SSE", "S", "SSW", "SW", "WSW", "W", "WNW", "NW", "NNW"});

std::optional<double> degreesOf(HourlyForecast const& hour) {
  if (!hour.knows(ForecastValue::windSpeed) || hour.windSpeedKmph < kLeastWindKmph) return std::nullopt;
  auto const found = std::ranges::find(kPoints, hour.windDirection);
  if (found == kPoints.end()) return std::nullopt;
  return 22.5 * static_cast<double>(found - kPoints.begin());
}

/// -180 to 180, clockwise positive; nothing where a direction is not known or the wind is light.
std::optional<double> turnBetween(HourlyForecast const& from, HourlyForecast const& to) {
  auto const begin = degreesOf(from);
  auto const end = degreesOf(to);
  if (!begin || !end) return std::nullopt;
  return std::remainder(*end - *begin, 360.0);
}

std::optional<TemperatureChange> temperatureChange(std::span<DailyForecast const> days) {
  double sum = 0;
  for (std::size_t i = 0; i < days.size(); ++i) {
    double const high = days[i].maxTempC;
    if (i > 0) {
      double const before = sum / static_cast<double>(i);
      double const by = high - before;
      bool const lasts =
          i + 1 >= days.size() || std::copysign(1.0, by) * (days[i + 1].maxTempC - before) >= kLastingC;
      if (std::abs(by) >= kDayChangeC && lasts) return TemperatureChange{days[i].date, by};
    }
    sum += high;
  }
  return std::nullopt;
}

std::optional<PressureTrend> pressureTrend(Hours all, Instant now) {
  auto const knownAt = [&](Instant instant) {
    HourlyForecast const* const hour = hourAt(all, instant);
    return hour != nullptr && hour->has(WeatherDetailField::pressure) && hour->pressure > 0 ? hour : nullptr;
  };
  HourlyForecast const* from = knownAt(now - kFrontLength);
  HourlyForecast const* to = knownAt(now);
  if (from == nullptr) {
    from = to;
    to = knownAt(now + kFrontLength);
  }
  if (from == nullptr || to == nullptr || to->date - from->date != kFrontLength) return std::nullopt;
  double const change = to->pressure - from->pressure;
  return PressureTrend{pressureTendency(change), change};
}

std::optional<WindTurn> windTurn(Hours ahead) {
  if (ahead.empty()) return std::nullopt;
  for (std::size_t i = 1; i < ahead.size() && ahead[i].date - ahead.front().date <= kReach; ++i) {
    auto const turn = turnBetween(ahead.front(), ahead[i]);
    if (!turn || std::abs(*turn) < kTurnDegrees) continue;
    bool const stays = i + 2 >= ahead.size() ||
                       std::abs(turnBetween(ahead.front(), ahead[i + 2]).value_or(0)) >= kTurnDegrees / 2;
    if (stays) return WindTurn{ahead[i].date, ahead.front().windDirection, ahead[i].windDirection, *turn > 0};
  }
  return std::nullopt;
}

/// Sun and night alone do not make the air that much colder by day or warmer by night.
bool isAgainstTheDay(double change, int hour) {
  return change < 0 ? hour >= 6 && hour < 14 : hour >= 18 || hour < 4;
}

std::optional<FrontPassage> frontPassage(Hours ahead, bool isNorth, Calendar const& calendar) {
  for (std::size_t i = 0; i + 3 < ahead.size() && ahead[i].date - ahead.front().date <= kReach; ++i) {
    HourlyForecast const& begin = ahead[i];
    HourlyForecast const& end = ahead[i + 3];
    if (end.date - begin.date != kFrontLength) continue;
    double const change = end.tempC - begin.tempC;
    auto const turn = turnBetween(begin, end);
    bool const turns = turn && (isNorth ? *turn : -*turn) >= kFrontTurnDegrees;
    if (!turns || std::abs(change) < kFrontChangeC) continue;
    if (isAgainstTheDay(change, calendar.hour(begin.date)))
      return FrontPassage{ahead[i + 1].date, change < 0, change};
  }
  return std::nullopt;
}

}  // namespace

PressureTendency pressureTendency(double hPa) {
  using enum PressureTendency;
  double const tenths = std::round(std::abs(hPa) * 10);
  if (tenths < 1) return steady;
  if (tenths <= 15) return hPa > 0 ? risingSlowly : fallingSlowly;
  if (tenths <= 35) return hPa > 0 ? rising : falling;
  if (tenths <= 60) return hPa > 0 ? risingQuickly : fallingQuickly;
  return hPa > 0 ? risingVeryRapidly : fallingVeryRapidly;
}

Trends TrendAnalyzer::analyze(WeatherData const& weather, Instant now, Calendar const& fallback) const {
  Calendar const calendar = calendarOf(weather, fallback);
  Date const today = calendar.day(now);
  auto const first = std::ranges::find_if(
      weather.daily, [&](DailyForecast const& day) { return calendar.day(day.date) >= today; });
  Hours const ahead = upcomingHours(weather.allHourly, now);
  return {temperatureChange({first, weather.daily.end()}), pressureTrend(weather.allHourly, now),
          windTurn(ahead), frontPassage(ahead, weather.location.latitude >= 0, calendar)};
}

}  // namespace nimbara
