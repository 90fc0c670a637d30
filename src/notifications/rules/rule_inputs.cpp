#include "notifications/rules/rule_inputs.h"

#include "base/words/time_words.h"
#include "feeds/alerts/routing/official_sources.h"
#include "model/upcoming_hours.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

template <class Unit>
std::string withSymbol(double value, Unit unit) {
  return display(value, unit) + " " + std::string(symbol(unit));
}

/// In the order of the enumerators.
constexpr std::array<std::string_view, enumNames<RuleInput>.size()> kFeeds{"the forecast",
                                                                           "the forecast",
                                                                           "the warnings",
                                                                           "the warnings",
                                                                           "the list of earthquakes",
                                                                           "the K index",
                                                                           "the air quality forecast",
                                                                           "the list of tropical cyclones",
                                                                           "the list of wildfires",
                                                                           "the travel advisories",
                                                                           "the list of lightning strikes",
                                                                           "the list of typhoons",
                                                                           "the nowcast",
                                                                           "the weather station"};

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

std::optional<InputFailure> RuleInputs::failureOf(RuleInputSet inputs) const {
  std::optional<InputFailure> found;
  auto const look = [&](RuleInput input, auto const& reading) {
    if (found || !inputs.contains(input) || !reading.failure) return;
    found = InputFailure{input, reading.service, *reading.failure};
  };
  look(RuleInput::govAlerts, govAlerts);
  look(RuleInput::nwsAlerts, nwsAlerts);
  look(RuleInput::earthquakes, earthquakes);
  look(RuleInput::kp, kp);
  look(RuleInput::airQuality, airQuality);
  look(RuleInput::storms, storms);
  look(RuleInput::fires, fires);
  look(RuleInput::advisories, advisories);
  look(RuleInput::lightning, lightning);
  look(RuleInput::typhoons, typhoons);
  look(RuleInput::nowcast, nowcast);
  look(RuleInput::station, station);
  return found;
}

std::string sentenceOf(InputFailure const& failure) {
  if (failure.failure.kind == ServiceFailure::Kind::notConfigured) return sentenceOf(failure.failure);
  std::string feed(kFeeds[static_cast<std::size_t>(failure.input)]);
  if (OfficialSource const* const source = officialSource(failure.service)) {
    feed.append(source->takesArticle ? " of the " : " of ").append(source->service);
  }
  return feed + " could not be fetched: " + sentenceOf(failure.failure);
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

DistanceUnit distanceUnit(RuleInputs const& inputs) {
  return inputs.units.wind == WindUnit::mph ? DistanceUnit::miles : DistanceUnit::km;
}

std::string distanceText(RuleInputs const& inputs, double km) {
  return withSymbol(km, distanceUnit(inputs));
}

std::string windText(RuleInputs const& inputs, double kmh) {
  return withSymbol(kmh, inputs.units.wind);
}

}  // namespace nimbara
