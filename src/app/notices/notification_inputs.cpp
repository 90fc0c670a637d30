#include "app/notices/notification_inputs.h"

#include "analysis/alerts/alert_generator.h"
#include "app/places/place_resolver.h"
#include "feeds/air/air_quality_service.h"
#include "feeds/alerts/gov_alerts.h"
#include "feeds/fires/wildfire_service.h"
#include "feeds/nowcast/nowcast_service.h"
#include "feeds/nws/nws_alert_service.h"
#include "feeds/nws/nws_territory.h"
#include "feeds/quakes/earthquake_service.h"
#include "feeds/space/geomagnetic_service.h"
#include "feeds/stations/station_service.h"
#include "feeds/storms/lightning_source.h"
#include "feeds/storms/tropical_storm_service.h"
#include "feeds/storms/typhoon_service.h"
#include "feeds/travel/travel_advisory_service.h"
#include "gazetteer/gazetteer.h"
#include "model/weather_cache.h"
#include "notifications/custom/custom_rule_pass.h"
#include "notifications/rules/rule_constants.h"

#include <algorithm>

namespace nimbara {

namespace {

/// The first source that failed.
void noteFailure(InputReading<std::vector<WeatherAlert>>& input, GovAlerts const& alerts) {
  for (GovSourceState const& source : alerts.sources) {
    if (!source.failedSince && source.checkedAt) continue;
    input.failure = source.failure.value_or(ServiceFailure::of(ServiceFailure::Kind::noAnswer));
    input.service = source.name;
    return;
  }
}

void adoptWorld(RuleInputs& inputs, RuleInputs const& world) {
  inputs.earthquakes = world.earthquakes;
  inputs.kp = world.kp;
  inputs.storms = world.storms;
  inputs.typhoons = world.typhoons;
  inputs.station = world.station;
}

}  // namespace

std::string locationTag(Place const& place) {
  return cacheKey(place.coordinate);
}

std::vector<WatchedPlace> watchedPlaces(Place const& selected, PlaceList const& saved) {
  std::vector<WatchedPlace> watched{{selected, {}}};
  for (SavedPlace const& place : saved.places) {
    if (place.coordinate == selected.coordinate) {
      watched.front().id = place.id;
      watched.front().choice = place.notifications;
    } else {
      watched.push_back({placeOf(place), place.id, place.notifications});
    }
  }
  return watched;
}

NotificationInputs::NotificationInputs(InUse<FeedServices> feeds, Clock const& clock, Options options)
    : feeds_(std::move(feeds)),
      clock_(clock),
      options_(std::move(options)),
      units_(options_.units),
      texts_(options_.texts) {}

void NotificationInputs::setWording(Units const& units, std::shared_ptr<Texts const> texts) {
  std::lock_guard const lock(mutex_);
  units_ = units;
  texts_ = std::move(texts);
}

std::shared_ptr<Texts const> NotificationInputs::texts() const {
  std::lock_guard const lock(mutex_);
  return texts_;
}

PassInputs NotificationInputs::gather(std::vector<WatchedPlace> const& places, NeededInputs const& needed,
                                      Settings const& settings, std::vector<CustomNotification> const& rules,
                                      std::stop_token const& stop) {
  RuleSettings const values = RuleSettings::of(settings);
  PassInputs pass{{}, rules, false, texts()};
  std::vector<Place> asked;
  std::vector<RuleInputSet> wanted;
  for (WatchedPlace const& watched : places) {
    bool const isSelected = asked.empty();
    RuleInputs& inputs = pass.places.emplace_back(inputsAt(watched.place, *pass.texts, isSelected));
    inputs.place.choice = watched.choice;
    inputs.place.id = watched.id;
    PlaceChoice const choice = effectiveChoice(watched.choice, isSelected, values.everyPlace);
    RuleInputSet& set = wanted.emplace_back(needed.of(choice));
    if (choice >= PlaceChoice::severe) set.insertAll(inputsOf(rules, inputs.place));
    asked.push_back(watched.place);
  }
  readAll(pass.places, asked, wanted, values, stop);
  return pass;
}

GatheredInputs NotificationInputs::gatherFor(Place const& place, RuleInputSet needed,
                                             Settings const& settings, std::stop_token const& stop) {
  auto words = texts();
  std::vector<RuleInputs> inputs{inputsAt(place, *words, true)};
  readAll(inputs, {place}, {needed}, RuleSettings::of(settings), stop);
  return {std::move(inputs.front()), std::move(words)};
}

RuleInputs NotificationInputs::inputsAt(Place const& place, Texts const& words, bool isSelected) const {
  RuleInputs inputs;
  inputs.now = clock_.now();
  inputs.texts = &words;
  {
    std::lock_guard const lock(mutex_);
    inputs.units = units_;
  }
  std::string name = place.name.empty() ? cacheKey(place.coordinate) : place.name;
  inputs.place = {locationTag(place), std::move(name), {}, place.coordinate, isSelected};
  inputs.calendar = Calendar::forZone(timeZoneAt(place.coordinate)).value_or(options_.fallback);
  return inputs;
}

void NotificationInputs::readAll(std::vector<RuleInputs>& readings, std::vector<Place> const& places,
                                 std::vector<RuleInputSet> const& wanted, RuleSettings const& settings,
                                 std::stop_token const& stop) {
  RuleInputs world;
  std::vector<std::function<void()>> tasks;
  auto const ofWorld = [&](RuleInput input,
                           void (NotificationInputs::*read)(RuleInputs&, std::stop_token const&)) {
    bool const isNeeded =
        std::ranges::any_of(wanted, [input](RuleInputSet set) { return set.contains(input); });
    if (isNeeded) tasks.emplace_back([this, &world, &stop, read] { (this->*read)(world, stop); });
  };
  /// Each service is asked for the places in turn.
  auto const ofPlaces = [&](auto read) {
    tasks.emplace_back([&, read] {
      for (std::size_t i = 0; i < readings.size() && !stop.stop_requested(); ++i)
        read(readings[i], places[i], wanted[i]);
    });
  };
  ofWorld(RuleInput::earthquakes, &NotificationInputs::readEarthquakes);
  ofWorld(RuleInput::kp, &NotificationInputs::readKp);
  ofWorld(RuleInput::storms, &NotificationInputs::readStorms);
  ofWorld(RuleInput::typhoons, &NotificationInputs::readTyphoons);
  ofWorld(RuleInput::station, &NotificationInputs::readStation);
  ofPlaces([&](RuleInputs& inputs, Place const& place, RuleInputSet needed) {
    readForecast(inputs, place, needed, stop);
  });
  ofPlaces([&](RuleInputs& inputs, Place const& place, RuleInputSet needed) {
    readOfficial(inputs, place, needed, stop);
  });
  ofPlaces(
      [&](RuleInputs& inputs, Place const&, RuleInputSet needed) { readAirQuality(inputs, needed, stop); });
  ofPlaces([&](RuleInputs& inputs, Place const&, RuleInputSet needed) { readNowcast(inputs, needed, stop); });
  ofPlaces([&](RuleInputs& inputs, Place const&, RuleInputSet needed) {
    readFires(inputs, needed, settings, stop);
  });
  ofPlaces([&](RuleInputs& inputs, Place const&, RuleInputSet needed) {
    readLightning(inputs, needed, settings, stop);
  });
  ofPlaces([&](RuleInputs& inputs, Place const& place, RuleInputSet needed) {
    readAdvisories(inputs, place, needed, stop);
  });
  runAll(tasks, options_.waiting);
  for (RuleInputs& inputs : readings) adoptWorld(inputs, world);
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

void NotificationInputs::readOfficial(RuleInputs& inputs, Place const& place, RuleInputSet needed,
                                      std::stop_token const& stop) {
  GovAlertPlace const official =
      options_.officialPlace ? options_.officialPlace(place) : govAlertPlace(place.coordinate);
  inputs.place.countryCode = official.countryCode;
  if (needed.contains(RuleInput::govAlerts)) {
    GovAlerts alerts = feeds_()->govAlerts().fetchAlerts(official, {}, stop);
    noteFailure(inputs.govAlerts, alerts);
    inputs.isUncovered = !alerts.isCovered();
    inputs.unplacedAlerts = std::move(alerts.unplaced);
    inputs.calledOff = std::move(alerts.calledOff);
    bool const isKnown = !alerts.isCovered() || alerts.checkedAt() || !alerts.alerts.empty();
    if (isKnown) {
      inputs.govAlerts.value = std::make_shared<std::vector<WeatherAlert> const>(std::move(alerts.alerts));
    }
  }
  Coordinate const at = place.coordinate;
  if (!needed.contains(RuleInput::nwsAlerts) || !isNwsTerritory(official.countryCode, at)) return;
  NWSAlertAnswer const answer = feeds_()->nws().fetchAlerts(at.latitude, at.longitude, stop);
  inputs.nwsAlerts = InputReading<std::vector<NWSAlert>>::of(
      liveMessages(answer.readable ? *answer.readable : answer.alerts, inputs.now));
  inputs.nwsAlerts.failure = answer.failure;
  inputs.nwsAlerts.service = "nws";
}

void NotificationInputs::readAirQuality(RuleInputs& inputs, RuleInputSet needed,
                                        std::stop_token const& stop) {
  if (!needed.contains(RuleInput::airQuality)) return;
  inputs.airQuality = InputReading<AirQualityForecast>::of(
      feeds_()->airQuality().fetchForecast(inputs.place.coordinate, stop));
}

void NotificationInputs::readNowcast(RuleInputs& inputs, RuleInputSet needed, std::stop_token const& stop) {
  if (!needed.contains(RuleInput::nowcast)) return;
  NowcastReading reading = feeds_()->nowcast().fetch(inputs.place.coordinate, stop);
  if (reading.state != NowcastReading::State::failed) {
    inputs.nowcast = InputReading<Nowcast>::of(std::move(reading.nowcast));
    return;
  }
  NowcastMiss const& miss = reading.misses.front();
  inputs.nowcast.failure = miss.isRadarDown
                               ? ServiceFailure::of(ServiceFailure::Kind::unreadable, sentenceOf(miss))
                               : miss.failure;
}

void NotificationInputs::readFires(RuleInputs& inputs, RuleInputSet needed, RuleSettings const& settings,
                                   std::stop_token const& stop) {
  if (!needed.contains(RuleInput::fires)) return;
  inputs.fires = InputReading<std::vector<FireDetection>>::of(
      feeds_()->wildfires().fetchFires(inputs.place.coordinate, settings.fireRadiusKm, stop));
}

void NotificationInputs::readLightning(RuleInputs& inputs, RuleInputSet needed, RuleSettings const& settings,
                                       std::stop_token const& stop) {
  if (!needed.contains(RuleInput::lightning)) return;
  inputs.lightning = InputReading<std::vector<LightningStrike>>::of(feeds_()->lightning().fetchStrikes(
      inputs.place.coordinate, settings.lightningRadiusKm, inputs.now - cuts::kStrikeLife, stop));
}

void NotificationInputs::readEarthquakes(RuleInputs& world, std::stop_token const& stop) {
  auto reading = feeds_()->earthquakes().fetchEarthquakes(stop);
  world.earthquakes.failure = std::move(reading.failure);
  // The list of an earlier process has no time of its check.
  bool const isKnown = !world.earthquakes.failure || !reading.data.empty();
  if (!isKnown) return;
  world.earthquakes.value = std::make_shared<std::vector<EarthquakeEvent> const>(std::move(reading.data));
}

void NotificationInputs::readKp(RuleInputs& world, std::stop_token const& stop) {
  auto reading = feeds_()->geomagnetic().currentKp(stop);
  if (reading.data.now) world.kp = InputReading<double>::of(*reading.data.now);
  world.kp.failure = std::move(reading.failure);
}

void NotificationInputs::readStorms(RuleInputs& world, std::stop_token const& stop) {
  world.storms = InputReading<std::vector<TropicalStorm>>::of(feeds_()->tropicalStorms().fetchStorms(stop));
}

void NotificationInputs::readTyphoons(RuleInputs& world, std::stop_token const& stop) {
  world.typhoons = InputReading<std::vector<TropicalStorm>>::of(feeds_()->typhoons().fetchStorms(stop));
}

/// A rule looks at it as somebody who has it before the eyes does.
void NotificationInputs::readStation(RuleInputs& world, std::stop_token const& stop) {
  StationsReading const reading = feeds_()->stations().read(StationNeed::shown, stop);
  if (StationReading const* const station = reading.station())
    world.station = InputReading<StationReading>::of(*station);
  bool const isWell = reading.state == StationState::current || reading.state == StationState::notLinked;
  if (isWell) return;
  using Kind = StationProblem::Kind;
  Kind const kind = reading.problem ? reading.problem->kind : Kind::tooMany;
  if (kind == Kind::failed) {
    world.station.failure = reading.problem->failure;
    return;
  }
  std::string_view const reason =
      kind == Kind::locked ? "the desktop's keyring with the station's sign-in is locked"
      : reading.state == StationState::signInAgain ? "sign in to Netatmo again: nimbara station link"
                                                   : "the station's service has had too many requests";
  world.station.failure = ServiceFailure::of(ServiceFailure::Kind::notConfigured, std::string(reason));
}

void NotificationInputs::readAdvisories(RuleInputs& inputs, Place const& place, RuleInputSet needed,
                                        std::stop_token const& stop) {
  if (!needed.contains(RuleInput::advisories)) return;
  auto const feeds = feeds_();
  auto& service = feeds->travelAdvisories();
  auto reading = service.fetchAdvisories(service.chosen(),
                                         std::string(describePlace(place.coordinate).countryCode), stop);
  inputs.advisories = InputReading<std::vector<TravelAdvisory>>::of(std::move(reading));
}

}  // namespace nimbara
