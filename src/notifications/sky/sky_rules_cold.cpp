// Cold and what it does: dry air, frost, ice on roads and glass, wind chill, heat pumps.
#include "notifications/sky/sky_constants.h"
#include "notifications/sky/sky_rules.h"
#include "notifications/sky/sky_support.h"

#include <array>
#include <cmath>

namespace nimbara {

using namespace sky;

namespace {

HourlyForecast const* coldest(std::span<HourlyForecast const> hours) {
  auto const found = std::ranges::min_element(hours, {}, &HourlyForecast::tempC);
  return found == hours.end() ? nullptr : &*found;
}

/// Open sky over the coldest hour, or snow that lies: not rain, not fog.
bool letsGroundCool(HourlyForecast const& hour) {
  return hour.condition != WeatherConditionCode::fog && !isRain(hour.condition);
}

Finding frostFinding(RuleInputs const& inputs, bool isFreeze, double low) {
  std::string_view const body = isFreeze ? "push.frost.bodyFreeze" : "push.frost.bodyNear";
  return nuisance(isFreeze ? "beta_frost_freeze" : "beta_frost_near",
                  inputs.text(isFreeze ? "push.frost.titleFreeze" : "push.frost.titleNear"),
                  inputs.texts->format(body, temperatureText(inputs, low)));
}

/// What wets the road at an entry, of the rain before it and the dew.
struct RoadWater {
  double rainMm = 0;
  std::optional<int> humidity;

  bool isThere() const { return rainMm >= kWetMm || (humidity && *humidity >= blackIce::kHumidity); }
  Measurement measurement() const {
    bool const isDew = rainMm < kWetMm && humidity;
    return isDew ? Measurement{"humidity", static_cast<double>(*humidity), Relation::atLeast,
                               blackIce::kHumidity, "%"}
                 : Measurement{"recentRain", rainMm, Relation::atLeast, kWetMm, "mm"};
  }
};

RoadWater roadWater(RuleInputs const& inputs, HourlyForecast const& hour) {
  bool const knowsHumidity = hour.has(WeatherDetailField::humidity);
  // The hour's own rain counts as well.
  return {rainBefore(inputs, hour.date, blackIce::kRoadStaysWet) + hour.precipMM,
          knowsHumidity ? std::optional(hour.humidity) : std::nullopt};
}

bool isNearFreezing(HourlyForecast const& hour) {
  return std::abs(hour.tempC) <= blackIce::kNearFreezing;
}

/// One level of a heat pump's icing, the most severe first.
struct IcingLevel {
  double warmest;
  double leastHumidity;
  double widestSpread;
  std::string_view title;
  std::string_view body;
};

constexpr std::array kIcing{IcingLevel{heatPump::kHeavy, heatPump::kHeavyHumidity, heatPump::kSpread,
                                       "push.heatPump.titleHeavy", "push.heatPump.bodyHeavy"},
                            IcingLevel{heatPump::kFrequent, heatPump::kFrequentHumidity, heatPump::kSpread,
                                       "push.heatPump.titleFrequent", "push.heatPump.bodyFrequent"},
                            IcingLevel{heatPump::kLight, 0, heatPump::kLightSpread,
                                       "push.heatPump.titleLight", "push.heatPump.bodyLight"}};

std::vector<Measurement> icing(IcingLevel const& level, HourlyForecast const& hour) {
  double const spread = hour.tempC - magnusDewPoint(hour.tempC, hour.humidity);
  return {{"temperature", hour.tempC, Relation::atMost, level.warmest, "°C"},
          {"temperature", hour.tempC, Relation::atLeast, heatPump::kColdest, "°C"},
          {"humidity", static_cast<double>(hour.humidity), Relation::atLeast, level.leastHumidity, "%"},
          {"dewPointSpread", spread, Relation::atMost, level.widestSpread, "°C"}};
}

/// The most severe level that is reached, else the lightest.
IcingLevel const& icingLevel(HourlyForecast const& hour) {
  auto const found = std::ranges::find_if(kIcing, [&](IcingLevel const& level) {
    return std::ranges::all_of(icing(level, hour), &Measurement::holds);
  });
  return found == kIcing.end() ? kIcing.back() : *found;
}

}  // namespace

double magnusDewPoint(double celsius, double humidity) {
  using namespace heatPump;
  double const share = std::max(humidity, kLeastHumidity) / 100;
  double const gamma = std::log(share) + kMagnusFactor * celsius / (kMagnusCelsius + celsius);
  return kMagnusCelsius * gamma / (kMagnusFactor - gamma);
}

Evaluation staticShockRisk(RuleInputs const& inputs, RuleSettings const&) {
  if (!inputs.present) return Evaluation::unknown(Lack::noForecast);
  if (!inputs.present->humidity) return Evaluation::unknown(Lack::noDetail);
  int const humidity = *inputs.present->humidity;
  return decide({{"humidity", static_cast<double>(humidity), Relation::atMost, staticShock::kHumidity, "%"},
                 {"temperature", inputs.present->tempC, Relation::below, staticShock::kTemperature, "°C"}},
                {}, [&] {
                  bool const isVeryDry = humidity < staticShock::kVeryDry;
                  auto const risk =
                      inputs.text(isVeryDry ? "push.qualifier.veryHigh" : "push.qualifier.elevated");
                  return nuisance("beta_static_shock", inputs.text("push.staticShock.title"),
                                  inputs.texts->format("push.staticShock.body", humidity, risk));
                });
}

Evaluation frostTonight(RuleInputs const& inputs, RuleSettings const&) {
  auto const night = comingNight(inputs);
  HourlyForecast const* const low = coldest(night);
  if (low == nullptr) return Evaluation::unknown(Lack::noForecast);
  bool const isFreeze = low->tempC <= frost::kFreeze;
  std::vector<Measurement> measured{{"low", low->tempC, Relation::atMost, frost::kNear, "°C"}};
  bool const knowsCloud = low->has(WeatherDetailField::cloudCover);
  if (!isFreeze && knowsCloud) {
    measured.push_back(
        {"cloudCover", static_cast<double>(low->cloudCover), Relation::atMost, frost::kCloud, "%"});
  }
  return decide(std::move(measured),
                {{isTimeForTonight(inputs), "tooEarly"},
                 {isFreeze || knowsCloud, enumName(Lack::noDetail), true},
                 {isFreeze || letsGroundCool(*low), "groundStaysWarm"}},
                [&] { return frostFinding(inputs, isFreeze, low->tempC); });
}

Evaluation windChill(RuleInputs const& inputs, RuleSettings const&) {
  if (!inputs.present) return Evaluation::unknown(Lack::noForecast);
  Present const& present = *inputs.present;
  return decide({{"temperature", present.tempC, Relation::atMost, chill::kTemperature, "°C"},
                 {"feltColder", present.tempC - present.feelsLikeC, Relation::atLeast, chill::kColder, "°C"},
                 {"windSpeed", present.windSpeedKmph, Relation::atLeast, chill::kWind, "km/h"}},
                {}, [&] {
                  auto const body = inputs.texts->format(
                      "push.windChill.body", shownTemperature(inputs, present.tempC),
                      temperatureSymbol(inputs), shownTemperature(inputs, present.feelsLikeC),
                      temperatureSymbol(inputs), display(present.windSpeedKmph, inputs.units.wind),
                      symbol(inputs.units.wind));
                  return nuisance("beta_wind_chill", inputs.text("push.windChill.title"), body);
                });
}

Evaluation blackIceAhead(RuleInputs const& inputs, RuleSettings const&) {
  auto const hours = inputs.hoursWithin(blackIce::kLookAhead);
  if (hours.empty()) return Evaluation::unknown(Lack::noForecast);
  auto const freezing = std::ranges::find_if(hours, isNearFreezing);
  auto const icy = std::ranges::find_if(hours, [&](HourlyForecast const& hour) {
    return isNearFreezing(hour) && roadWater(inputs, hour).isThere();
  });
  HourlyForecast const& hour = icy != hours.end()        ? *icy
                               : freezing != hours.end() ? *freezing
                                                         : hours.front();
  return decide({{"nearFreezing", std::abs(hour.tempC), Relation::atMost, blackIce::kNearFreezing, "°C"},
                 roadWater(inputs, hour).measurement()},
                {}, [&] {
                  return nuisance("beta_black_ice", inputs.text("push.blackIce.title"),
                                  inputs.text("push.blackIce.body"));
                });
}

Evaluation windshieldFrost(RuleInputs const& inputs, RuleSettings const&) {
  using enum WeatherDetailField;
  auto const night = comingNight(inputs);
  HourlyForecast const* const low = coldest(night);
  if (low == nullptr) return Evaluation::unknown(Lack::noForecast);
  bool const isKnown = low->has(cloudCover) && low->has(dewPoint) && low->knows(ForecastValue::windSpeed);
  if (!isKnown) return Evaluation::unknown(Lack::noDetail);
  return decide(
      {{"low", low->tempC, Relation::atMost, windshield::kLow, "°C"},
       {"dewPointSpread", low->tempC - low->dewPointC, Relation::atMost, windshield::kSpread, "°C"},
       {"cloudCover", static_cast<double>(low->cloudCover), Relation::atMost, windshield::kCloud, "%"},
       {"windSpeed", low->windSpeedKmph, Relation::atMost, windshield::kWind, "km/h"}},
      {{isTimeForTonight(inputs), "tooEarly"}, {!isWet(low->condition), "wet"}}, [&] {
        return nuisance(
            "beta_windshield_frost", inputs.text("push.windshieldFrost.title"),
            inputs.texts->format("push.windshieldFrost.body", temperatureText(inputs, low->tempC)));
      });
}

Evaluation heatPumpIcing(RuleInputs const& inputs, RuleSettings const&) {
  HourlyForecast const* const low = coldest(inputs.hoursWithin(heatPump::kLookAhead));
  if (low == nullptr) return Evaluation::unknown(Lack::noForecast);
  if (!low->has(WeatherDetailField::humidity)) return Evaluation::unknown(Lack::noDetail);
  IcingLevel const& level = icingLevel(*low);
  return decide(icing(level, *low), {}, [&] {
    return nuisance("beta_heat_pump_freeze", inputs.text(level.title),
                    inputs.texts->format(level.body, temperatureText(inputs, low->tempC)));
  });
}

}  // namespace nimbara
