// Animals, and people in the open: spiders, birds, mosquitoes, hours to be outside, sun for vitamin D.
#include "model/upcoming_hours.h"
#include "notifications/sky/sky_constants.h"
#include "notifications/sky/sky_rules.h"
#include "notifications/sky/sky_support.h"

#include <array>
#include <cmath>

namespace nimbara {

using namespace sky;

namespace {

constexpr double kDegreesAPoint = 22.5;
constexpr std::array<std::string_view, 16> kCompass{"N", "NNE", "NE", "ENE", "E", "ESE", "SE", "SSE",
                                                    "S", "SSW", "SW", "WSW", "W", "WNW", "NW", "NNW"};

/// Where the wind comes from; nothing for a text that is no compass point.
std::optional<double> degreesOf(std::string_view point) {
  auto const found = std::ranges::find(kCompass, point);
  if (found == kCompass.end()) return std::nullopt;
  return static_cast<double>(found - kCompass.begin()) * kDegreesAPoint;
}

/// Birds fly north in the first half of the year and south in the second, in both hemispheres.
struct Migration {
  bool isNorthbound = false;
  std::string_view season;
};

std::optional<Migration> migrationOf(RuleInputs const& inputs) {
  using namespace birds;
  auto const month = static_cast<unsigned>(inputs.calendar.day(inputs.now).month());
  bool const isNorthbound = month >= kSpringFrom && month < kSpringUntil;
  bool const isSouthbound = month >= kFallFrom && month < kFallUntil;
  if (!isNorthbound && !isSouthbound) return std::nullopt;
  bool const isSpring = isNorthbound == (inputs.place.coordinate.latitude >= 0);
  return Migration{isNorthbound, isSpring ? "push.season.spring" : "push.season.fall"};
}

bool isTailwind(Migration const& migration, double degrees) {
  bool const isSoutherly = degrees >= birds::kSoutherlyFrom && degrees <= birds::kSoutherlyUntil;
  return isSoutherly == migration.isNorthbound;
}

/// Air of mosquitoes, by its lowest warmth and humidity and its highest wind.
std::vector<Measurement> mosquitoAir(Present const& present, double warmth, double humidity, double wind) {
  return {{"temperature", present.tempC, Relation::atLeast, warmth, "°C"},
          {"humidity", static_cast<double>(*present.humidity), Relation::atLeast, humidity, "%"},
          {"windSpeed", present.windSpeedKmph, Relation::below, wind, "km/h"}};
}

std::vector<Measurement> idealHour(HourlyForecast const& hour) {
  using namespace outdoor;
  return {{"temperature", hour.tempC, Relation::atLeast, kCoolest, "°C"},
          {"temperature", hour.tempC, Relation::atMost, kWarmest, "°C"},
          {"feelsLike", hour.feelsLikeC, Relation::atMost, kFeltWarmest, "°C"},
          {"uvIndex", static_cast<double>(hour.uvIndex), Relation::atMost, kUv, ""},
          {"chanceOfRain", static_cast<double>(hour.chanceOfRain), Relation::below, kRainChance, "%"},
          {"windSpeed", hour.windSpeedKmph, Relation::atMost, kWind, "km/h"},
          {"windGust", hour.windGustKmph, Relation::atMost, kGust, "km/h"}};
}

bool isIdeal(HourlyForecast const& hour) {
  bool const isKnown = hour.knows(ForecastValue::precipitationChance) && hour.knows(ForecastValue::windSpeed);
  return isKnown && isDry(hour) && std::ranges::all_of(idealHour(hour), &Measurement::holds);
}

/// The rest of today's hours that people spend outside, as far as the forecast goes by the hour.
Hours outdoorHours(RuleInputs const& inputs) {
  auto const isOutside = [&](HourlyForecast const& entry) {
    int const hour = localHour(inputs, entry.date);
    return inputs.calendar.isSameDay(entry.date, inputs.now) && hour >= outdoor::kFromHour &&
           hour <= outdoor::kUntilHour;
  };
  Hours const hours = inputs.hoursWithin(std::chrono::hours(24));
  auto const begin = std::ranges::find_if(hours, isOutside);
  auto end = begin;
  while (end != hours.end() && isOutside(*end) &&
         stepLength(hours, static_cast<std::size_t>(end - hours.begin())) == outdoor::kStep) {
    ++end;
  }
  return {begin, end};
}

/// The longest run of ideal hours, the earliest of equals; empty when there is none.
Hours bestWindow(Hours hours) {
  Hours best;
  auto begin = hours.begin();
  while (begin != hours.end()) {
    auto const end = std::find_if_not(begin, hours.end(), isIdeal);
    if (static_cast<std::size_t>(end - begin) > best.size()) best = {begin, end};
    begin = std::find_if(end, hours.end(), isIdeal);
  }
  return best;
}

/// "⚠️ Wind Warning in effect …" for the most severe warning that is in force in the window, else nothing.
std::string caution(RuleInputs const& inputs, Instant begin, Instant end) {
  if (!inputs.govAlerts) return {};
  auto const found = std::ranges::find_if(*inputs.govAlerts, [&](WeatherAlert const& alert) {
    return (!alert.onset || *alert.onset < end) && (!alert.expires || *alert.expires > begin);
  });
  if (found == inputs.govAlerts->end()) return {};
  return inputs.texts->format("push.outdoorCaution", found->title);
}

Finding outdoorFinding(RuleInputs const& inputs, Hours window) {
  Instant const begin = std::max(window.front().date, inputs.now);
  Instant const end = window.back().date + outdoor::kStep;
  auto const warmest = std::ranges::max(window, {}, &HourlyForecast::tempC);
  auto const span =
      inputs.texts->format("push.outdoor.window", hourText(inputs, begin), hourText(inputs, end));
  auto const body = inputs.texts->format("push.outdoor.body", span, temperatureText(inputs, warmest.tempC));
  Finding finding =
      pleasant("beta_outdoor", inputs.text("push.outdoor.title"), caution(inputs, begin, end) + body);
  finding.ends = end;
  return finding;
}

/// Minutes of sun that suffice, by the index.
std::string_view minutesOfSun(int uvIndex) {
  if (uvIndex >= vitaminD::kVeryStrongUv) return "5–10";
  return uvIndex >= vitaminD::kStrongUv ? "10–15" : "15–20";
}

bool isBetween(int hour, int from, int until) {
  return hour >= from && hour <= until;
}

}  // namespace

Evaluation spiderBallooning(RuleInputs const& inputs, RuleSettings const&) {
  using namespace spider;
  if (!inputs.present || inputs.hours.empty()) return Evaluation::unknown(Lack::noForecast);
  Present const& present = *inputs.present;
  if (!present.knowsWind) return Evaluation::unknown(Lack::noDetail);
  double const rain = rainBefore(inputs, inputs.hours.front().date, kRainBefore);
  return decide({{"windSpeed", present.windSpeedKmph, Relation::below, kWind, "km/h"},
                 {"windGust", present.windGustKmph.value_or(0), Relation::below, kGust, "km/h"},
                 {"temperature", present.tempC, Relation::atLeast, kWarm, "°C"},
                 {"recentRain", rain, Relation::atLeast, kWetMm, "mm"}},
                {{isBetween(localHour(inputs, inputs.now), kFromHour, kUntilHour), "notTheHour"},
                 {isOpenSky(present.condition), "notClear"}},
                [&] {
                  return pleasant("beta_spider_ballooning", inputs.text("push.spider.title"),
                                  inputs.text("push.spider.body"));
                });
}

Evaluation birdMigration(RuleInputs const& inputs, RuleSettings const&) {
  if (!inputs.present) return Evaluation::unknown(Lack::noForecast);
  Present const& present = *inputs.present;
  auto const migration = migrationOf(inputs);
  if (!migration) return Evaluation::none("notTheSeason");
  auto const degrees = degreesOf(present.windDirection);
  if (!degrees || !present.pressure) return Evaluation::unknown(Lack::noDetail);
  return decide(
      {{"pressure", *present.pressure, Relation::atLeast, birds::kPressure, "hPa"},
       {"windSpeed", present.windSpeedKmph, Relation::atLeast, birds::kTailwind, "km/h"}},
      {{isTailwind(*migration, *degrees), "noTailwind"}, {isOpenSky(present.condition), "notClear"}}, [&] {
        return pleasant("beta_bird_migration", inputs.text("push.birdMigration.title"),
                        inputs.texts->format("push.birdMigration.body", inputs.text(migration->season)));
      });
}

Evaluation mosquitoSwarm(RuleInputs const& inputs, RuleSettings const&) {
  using namespace mosquito;
  if (!inputs.present || inputs.hours.empty()) return Evaluation::unknown(Lack::noForecast);
  Present const& present = *inputs.present;
  if (!present.humidity || !present.knowsWind) return Evaluation::unknown(Lack::noDetail);
  auto measured = mosquitoAir(present, kSwarmTemperature, kSwarmHumidity, kSwarmWind);
  double const rain = rainBefore(inputs, inputs.hours.front().date, kRainBefore);
  measured.push_back({"recentRain", rain, Relation::atLeast, kSwarmRainMm, "mm"});
  return decide(std::move(measured), {{!isWet(present.condition), "wet"}}, [&] {
    return nuisance("beta_mosquito_swarm", inputs.text("push.mosquitoSwarm.title"),
                    inputs.texts->format("push.mosquitoSwarm.body", temperatureText(inputs, present.tempC),
                                         *present.humidity));
  });
}

Evaluation mosquitoesActive(RuleInputs const& inputs, RuleSettings const&) {
  using namespace mosquito;
  if (!inputs.present) return Evaluation::unknown(Lack::noForecast);
  Present const& present = *inputs.present;
  if (!present.humidity || !present.knowsWind || !present.chanceOfRain)
    return Evaluation::unknown(Lack::noDetail);
  auto measured = mosquitoAir(present, kTemperature, kHumidity, kWind);
  measured.push_back(
      {"chanceOfRain", static_cast<double>(*present.chanceOfRain), Relation::atMost, kRainChance, "%"});
  return decide(std::move(measured), {}, [&] {
    return nuisance("beta_mosquito", inputs.text("push.mosquito.title"), inputs.text("push.mosquito.body"));
  });
}

Evaluation outdoorWindow(RuleInputs const& inputs, RuleSettings const&) {
  if (inputs.hours.empty()) return Evaluation::unknown(Lack::noForecast);
  if (localHour(inputs, inputs.now) < outdoor::kFromHour) return Evaluation::none("tooEarly");
  Hours const hours = outdoorHours(inputs);
  if (hours.empty()) return Evaluation::none("tooLate");
  bool const knowsUv =
      std::ranges::all_of(hours, [](auto const& hour) { return hour.has(WeatherDetailField::uvIndex); });
  if (!knowsUv) return Evaluation::unknown(Lack::noDetail);
  Hours const window = bestWindow(hours);
  return decide({{"idealHours", static_cast<double>(window.size()), Relation::atLeast,
                  static_cast<double>(outdoor::kShortest.count()), "h"}},
                {}, [&] { return outdoorFinding(inputs, window); });
}

Evaluation vitaminDWindow(RuleInputs const& inputs, RuleSettings const&) {
  using namespace vitaminD;
  if (!inputs.present) return Evaluation::unknown(Lack::noForecast);
  Present const& present = *inputs.present;
  if (!present.uvIndex) return Evaluation::unknown(Lack::noDetail);
  int const uv = *present.uvIndex;
  return decide({{"uvIndex", static_cast<double>(uv), Relation::atLeast, kUv, ""}},
                {{isBetween(localHour(inputs, inputs.now), kFromHour, kUntilHour), "notTheHour"},
                 {isOpenSky(present.condition), "notClear"}},
                [&] {
                  return pleasant("beta_vitamin_d", inputs.text("push.vitaminD.title"),
                                  inputs.texts->format("push.vitaminD.body", uv, minutesOfSun(uv)));
                });
}

}  // namespace nimbara
