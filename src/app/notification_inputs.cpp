#include "app/notification_inputs.h"

#include "analysis/alert_generator.h"
#include "feeds/gov_alerts.h"
#include "feeds/nws_territory.h"
#include "gazetteer/gazetteer.h"
#include "model/weather_cache.h"

namespace nimbara {

namespace {

/// The first source that failed, in words.
std::string problemOf(GovAlerts const& alerts) {
  for (GovSourceState const& source : alerts.sources) {
    if (source.failedSince || !source.checkedAt) {
      return "the warnings of " + source.name + " could not be had: " + source.problem;
    }
  }
  return {};
}

}  // namespace

std::string locationTag(Place const& place) {
  return cacheKey(place.coordinate);
}

NotificationInputs::NotificationInputs(FeedServices& feeds, Clock const& clock, Options options)
    : feeds_(feeds), clock_(clock), options_(std::move(options)) {}

std::vector<RuleInputs> NotificationInputs::gather(std::vector<Place> const& places,
                                                   NeededInputs const& needed, std::stop_token const& stop) {
  std::vector<RuleInputs> all;
  all.reserve(places.size());
  RuleInputs world;
  readWorld(world, needed.selected, stop);
  for (Place const& place : places) {
    bool const isSelected = all.empty();
    RuleInputs inputs = inputsOf(place, isSelected, isSelected ? needed.selected : needed.everywhere, stop);
    inputs.earthquakes = world.earthquakes;
    inputs.kp = world.kp;
    all.push_back(std::move(inputs));
    if (stop.stop_requested()) break;
  }
  return all;
}

RuleInputs NotificationInputs::inputsOf(Place const& place, bool isSelected, RuleInputSet needed,
                                        std::stop_token const& stop) {
  RuleInputs inputs;
  inputs.now = clock_.now();
  inputs.units = options_.units;
  inputs.texts = options_.texts.get();
  GovAlertPlace const official =
      options_.officialPlace ? options_.officialPlace(place) : govAlertPlace(place.coordinate);
  std::string name = place.name.empty() ? cacheKey(place.coordinate) : place.name;
  inputs.place = {locationTag(place), std::move(name), official.countryCode, place.coordinate, isSelected};
  inputs.calendar = Calendar::forZone(timeZoneAt(place.coordinate)).value_or(options_.fallback);
  readForecast(inputs, place, needed, stop);
  readOfficial(inputs, official, needed, stop);
  return inputs;
}

void NotificationInputs::readForecast(RuleInputs& inputs, Place const& place, RuleInputSet needed,
                                      std::stop_token const& stop) {
  bool const isNeeded = needed.contains(RuleInput::hourly) || needed.contains(RuleInput::generatedAlerts);
  if (!isNeeded || !options_.weather) return;
  inputs.weather = options_.weather(place, stop);
  if (!inputs.weather) return;
  if (auto const zone = inputs.weather->location.timeZone) {
    inputs.calendar = Calendar::forZone(*zone).value_or(inputs.calendar);
  }
  inputs.readWeather();
  if (!needed.contains(RuleInput::generatedAlerts)) return;
  inputs.generatedAlerts = InputReading<std::vector<WeatherAlert>>::of(
      AlertGenerator{}.generate(*inputs.weather, inputs.now, inputs.units, *inputs.texts, inputs.calendar));
}

void NotificationInputs::readOfficial(RuleInputs& inputs, GovAlertPlace const& place, RuleInputSet needed,
                                      std::stop_token const& stop) {
  if (needed.contains(RuleInput::govAlerts)) {
    GovAlerts alerts = feeds_.govAlerts().fetchAlerts(place, {}, stop);
    bool const isKnown = !alerts.isCovered() || alerts.checkedAt();
    inputs.govAlerts.problem = problemOf(alerts);
    if (isKnown || !alerts.alerts.empty()) {
      inputs.govAlerts.value = std::make_shared<std::vector<WeatherAlert> const>(std::move(alerts.alerts));
    }
  }
  bool const asksNws =
      needed.contains(RuleInput::nwsAlerts) && isNwsTerritory(place.countryCode, place.coordinate);
  if (!asksNws) return;
  NWSAlertAnswer answer =
      feeds_.nws().fetchAlerts(place.coordinate.latitude, place.coordinate.longitude, stop);
  inputs.nwsAlerts = InputReading<std::vector<NWSAlert>>::of(
      liveMessages(answer.readable ? *answer.readable : answer.alerts, inputs.now));
  if (!answer.ok) inputs.nwsAlerts.problem = answer.problem;
}

void NotificationInputs::readWorld(RuleInputs& inputs, RuleInputSet needed, std::stop_token const& stop) {
  if (needed.contains(RuleInput::earthquakes)) {
    EarthquakeService& service = feeds_.earthquakes();
    inputs.earthquakes = InputReading<std::vector<EarthquakeEvent>>::of(service.fetchEarthquakes(stop));
    inputs.earthquakes.problem = service.problem();
  }
  if (needed.contains(RuleInput::kp)) {
    GeomagneticService& service = feeds_.geomagnetic();
    if (auto const kp = service.currentKp(stop)) inputs.kp = InputReading<double>::of(*kp);
    inputs.kp.problem = service.problem();
  }
}

}  // namespace nimbara
