// Fog, falling pressure and humid heat.
#include "model/upcoming_hours.h"
#include "notifications/sky/sky_constants.h"
#include "notifications/sky/sky_rules.h"
#include "notifications/sky/sky_support.h"

namespace nimbara {

using namespace sky;

namespace {

bool isFog(HourlyForecast const& hour) {
  return hour.condition == WeatherConditionCode::fog || hour.chanceOfFog >= fog::kChance;
}

bool knowsPressure(HourlyForecast const& hour) {
  return hour.has(WeatherDetailField::pressure) && hour.pressure > 0;
}

Finding pressureFinding(RuleInputs const& inputs, Hours hours, HourlyForecast const& lowest) {
  PressureUnit const unit = inputs.units.pressure;
  std::string const fall = display(hours.front().pressure - lowest.pressure, unit);
  auto const step = stepLength(hours, static_cast<std::size_t>(&lowest - hours.data()));
  // Longer steps do not say which hour.
  std::string const body =
      step > std::chrono::hours(1)
          ? inputs.texts->format("push.pressure.body", fall, symbol(unit))
          : inputs.texts->format("push.pressure.bodyTimed", fall, symbol(unit),
                                 display(lowest.pressure, unit), symbol(unit), hourText(inputs, lowest.date));
  return nuisance("beta_pressure_headache", inputs.text("push.pressure.title"), body);
}

}  // namespace

Evaluation fogAhead(RuleInputs const& inputs, RuleSettings const&) {
  Hours const hours = inputs.hoursWithin(fog::kLookAhead);
  if (hours.empty()) return Evaluation::unknown(Lack::noForecast);
  auto const found = std::ranges::find_if(hours, isFog);
  if (found != hours.end()) {
    Evaluation evaluation;
    evaluation.measured = {
        {"chanceOfFog", static_cast<double>(found->chanceOfFog), Relation::atLeast, fog::kChance, "%"}};
    if (found->condition == WeatherConditionCode::fog) evaluation.measured.clear();
    evaluation.findings.push_back(
        nuisance("beta_fog", inputs.text("push.fog.title"),
                 inputs.texts->format("push.fog.body", hourText(inputs, std::max(found->date, inputs.now)))));
    return evaluation;
  }
  double const highest = std::ranges::max(hours, {}, &HourlyForecast::chanceOfFog).chanceOfFog;
  return decide({{"chanceOfFog", highest, Relation::atLeast, fog::kChance, "%"}}, {},
                [] { return Finding{}; });
}

Evaluation pressureFall(RuleInputs const& inputs, RuleSettings const&) {
  Hours const hours = inputs.hoursWithin(pressure::kLookAhead);
  if (hours.empty()) return Evaluation::unknown(Lack::noForecast);
  if (!std::ranges::all_of(hours, knowsPressure)) return Evaluation::unknown(Lack::noDetail);
  auto const lowest = std::ranges::min_element(hours, {}, &HourlyForecast::pressure);
  return decide({{"pressureFall", hours.front().pressure - lowest->pressure, Relation::atLeast,
                  pressure::kFall, "hPa"}},
                {}, [&] { return pressureFinding(inputs, hours, *lowest); });
}

Evaluation humidHeat(RuleInputs const& inputs, RuleSettings const&) {
  if (!inputs.present) return Evaluation::unknown(Lack::noForecast);
  Present const& present = *inputs.present;
  if (!present.humidity) return Evaluation::unknown(Lack::noDetail);
  double const hotter = present.feelsLikeC - present.tempC;
  return decide(
      {{"temperature", present.tempC, Relation::atLeast, heat::kTemperature, "°C"},
       {"feltHotter", hotter, Relation::atLeast, heat::kHotter, "°C"},
       {"humidity", static_cast<double>(*present.humidity), Relation::atLeast, heat::kHumidity, "%"}},
      {}, [&] {
        auto const body = inputs.texts->format(
            "push.heatIndex.body", shownTemperature(inputs, present.tempC), temperatureSymbol(inputs),
            shownTemperature(inputs, present.feelsLikeC), temperatureSymbol(inputs), *present.humidity);
        Finding finding = nuisance("beta_heat_index", inputs.text("push.heatIndex.title"), body);
        if (hotter >= heat::kGravest) finding.severity = AlertSeverity::warning;
        return finding;
      });
}

}  // namespace nimbara
