#include "notifications/rules/rule_inputs.h"

#include "base/words/time_words.h"
#include "model/upcoming_hours.h"

#include <algorithm>

namespace nimbara {

namespace {

template <class Unit>
std::string withSymbol(double value, Unit unit) {
  return display(value, unit) + " " + std::string(symbol(unit));
}

}  // namespace

void RuleInputs::readWeather() {
  hours = {};
  present.reset();
  if (!weather) return;
  hours = upcomingHours(weather->allHourly, now);
  present = presentAt(*weather, now);
}

std::span<HourlyForecast const> RuleInputs::hoursWithin(std::chrono::hours span) const {
  auto const end = std::ranges::lower_bound(hours, now + span, {}, &HourlyForecast::date);
  return hours.first(static_cast<std::size_t>(end - hours.begin()));
}

std::string RuleInputs::problemOf(RuleInputSet inputs) const {
  std::pair<RuleInput, std::string const*> const problems[] = {
      {RuleInput::govAlerts, &govAlerts.problem},
      {RuleInput::nwsAlerts, &nwsAlerts.problem},
      {RuleInput::earthquakes, &earthquakes.problem},
      {RuleInput::kp, &kp.problem},
      {RuleInput::airQuality, &airQuality.problem},
      {RuleInput::storms, &storms.problem},
      {RuleInput::fires, &fires.problem},
      {RuleInput::advisories, &advisories.problem},
      {RuleInput::lightning, &lightning.problem},
  };
  for (auto const& [input, problem] : problems) {
    if (inputs.contains(input) && !problem->empty()) return *problem;
  }
  return {};
}

std::string hourText(RuleInputs const& inputs, Instant instant) {
  return TimeWords(*inputs.texts, inputs.calendar).hour(instant);
}

double shownTemperature(RuleInputs const& inputs, double celsius) {
  return convert(celsius, inputs.units.temperature);
}

std::string_view temperatureSymbol(RuleInputs const& inputs) {
  return symbol(inputs.units.temperature);
}

std::string temperatureText(RuleInputs const& inputs, double celsius) {
  return display(celsius, inputs.units.temperature) + std::string(temperatureSymbol(inputs));
}

std::string distanceText(RuleInputs const& inputs, double km) {
  bool const inMiles = inputs.units.wind == WindUnit::mph;
  return withSymbol(km, inMiles ? DistanceUnit::miles : DistanceUnit::km);
}

std::string windText(RuleInputs const& inputs, double kmh) {
  return withSymbol(kmh, inputs.units.wind);
}

}  // namespace nimbara
