#include "app/engine/engine_hazards.h"

#include "app/services/feed_services.h"
#include "app/services/world_hazards.h"
#include "app/settings/settings_registry.h"
#include "app/state/supplement_state.h"
#include "feeds/air/air_quality_service.h"
#include "feeds/fires/wildfire_service.h"
#include "feeds/quakes/earthquake_service.h"
#include "feeds/quakes/emsc_service.h"
#include "feeds/space/geomagnetic_service.h"
#include "feeds/space/kp_forecast_service.h"
#include "feeds/storms/lightning_source.h"
#include "feeds/travel/travel_advisory_service.h"
#include "gazetteer/gazetteer.h"

#include <utility>

namespace nimbara {

namespace {

/// Whatever it is called.
bool isSameSpot(std::optional<Place> const& one, std::optional<Place> const& other) {
  return one && other && one->coordinate == other->coordinate;
}

}  // namespace

EngineHazards::EngineHazards(InUse<FeedServices> feeds, SettingsStore& store, TaskRunner& runner,
                             Surroundings surroundings)
    : feeds_(std::move(feeds)), store_(store), runner_(runner), surroundings_(std::move(surroundings)) {}

std::shared_ptr<HazardsState const> EngineHazards::state() const {
  std::lock_guard const lock(mutex_);
  return state_;
}

template <class Change>
void EngineHazards::change(Change apply) {
  std::lock_guard const lock(mutex_);
  auto next = std::make_shared<HazardsState>(*state_);
  apply(*next);
  state_ = std::move(next);
}

void EngineHazards::setPlace(std::optional<Place> const& place) {
  std::lock_guard const turn(officialTurn_);
  change([&](HazardsState& state) {
    bool const isOnlyRenamed = isSameSpot(state.official.place, place);
    if (!isOnlyRenamed) state.official = {};
    state.official.place = place;
    state.official.isAsking = !isOnlyRenamed || state.official.isAsking;
  });
}

void EngineHazards::showKept() {
  std::lock_guard const turn(officialTurn_);
  OfficialCheck const check = state()->official;
  if (check.place) showOfficial(*check.place, check.isAsking);
  // What is kept of the others lies in files, which the first moments of the window do without.
  if (!check.isAsking) showPlaces();
}

/// In its turn.
void EngineHazards::showOfficial(Place const& place, bool isAsking) {
  GovAlertPlace const asked = govAlertPlace(place.coordinate);
  GovAlerts alerts = feeds_()->govAlerts().keptAlerts(asked);
  auto coverage = coverageOf(alerts, asked.countryCode);
  change([&](HazardsState& state) {
    state.official = {place, std::move(coverage), isAsking, std::move(alerts.unplaced)};
  });
  surroundings_.showAlerts(place, std::move(alerts.alerts));
}

void EngineHazards::finishOfficial(Place const& place) {
  std::lock_guard const turn(officialTurn_);
  auto const shown = state()->official.place;
  if (isSameSpot(shown, place)) showOfficial(*shown, false);
  showPlaces();
}

/// In its turn.
void EngineHazards::showPlaces() {
  std::vector<PlaceCoverage> places;
  for (Place const& place : surroundings_.savedPlaces()) {
    GovAlertPlace const asked = govAlertPlace(place.coordinate);
    GovAlerts kept = feeds_()->govAlerts().keptAlerts(asked);
    auto coverage = coverageOf(kept, asked.countryCode);
    places.push_back({place.coordinate, std::move(coverage), std::move(kept.alerts)});
  }
  change([&](HazardsState& state) { state.places = std::move(places); });
}

void EngineHazards::askOfficial(Place const& place) {
  runner_.run([this, place](std::stop_token const& stop) {
    std::ignore = feeds_()->govAlerts().fetchAlerts(govAlertPlace(place.coordinate), {}, stop);
    if (stop.stop_requested()) return;
    finishOfficial(place);
    surroundings_.publish();
  });
}

SupplementalOutcome EngineHazards::refresh(Place const& place, std::stop_token const& stop) {
  std::ignore = feeds_()->govAlerts().fetchAlerts(govAlertPlace(place.coordinate), {}, stop);
  if (!stop.stop_requested()) finishOfficial(place);
  askWorld(stop);
  askSupplement(place, stop);
  auto const now = state();
  bool const isComplete = !now->official.hasFailed() && !now->quakes.failure && !now->kp.failure;
  return isComplete ? SupplementalOutcome::complete : SupplementalOutcome::incomplete;
}

/// One feed after the other, each shown as soon as it has answered.
void EngineHazards::askWorld(std::stop_token const& stop) {
  auto const show = [&](auto const& apply) {
    if (stop.stop_requested()) return;
    change(apply);
    surroundings_.publish();
  };
  auto const feeds = feeds_();
  auto quakes = feeds->earthquakes().fetchEarthquakes(stop);
  // At first what there is; later the second source's stay until they are renewed too.
  if (!surroundings_.showSupplement || !state()->quakes.isSettled())
    show([&](HazardsState& state) { state.quakes = quakes; });
  if (surroundings_.showSupplement) {
    quakes.data = mergedEarthquakes(std::move(quakes.data), feeds->emsc().fetchEarthquakes(stop).data);
    show([&](HazardsState& state) { state.quakes = std::move(quakes); });
  }
  auto kp = feeds->geomagnetic().currentKp(stop);
  show([&](HazardsState& state) { state.kp = std::move(kp); });
  auto forecast = feeds->kpForecast().fetchForecast(stop);
  show([&](HazardsState& state) { state.kpForecast = std::move(forecast); });
}

/// The like for a place's feeds; what is not asked yet is not known.
void EngineHazards::askSupplement(Place const& place, std::stop_token const& stop) {
  if (!surroundings_.showSupplement) return;
  SupplementState known;
  known.place = place;
  known.country = govAlertPlace(place.coordinate).countryCode;
  auto const feeds = feeds_();
  auto const show = [&] {
    if (stop.stop_requested()) return;
    surroundings_.showSupplement(place, std::make_shared<SupplementState const>(known));
  };
  known.airQuality = feeds->airQuality().fetchForecast(place.coordinate, stop);
  show();
  Calendar const calendar =
      Calendar::forZone(std::string(timeZoneAt(place.coordinate))).value_or(Calendar::utc());
  known.climate = feeds->climate().fetch(place.coordinate, dayAt(calendar, surroundings_.now()), stop);
  show();
  known.activeStorms = fetchWorldStorms(*feeds, stop, Waiting::oneAfterTheOther);
  show();
  known.activeFires = feeds->wildfires().fetchFires(place.coordinate, SupplementState::kFireRadiusKm, stop);
  known.lightning = feeds->lightning().fetchStrikes(place.coordinate, SupplementState::kLightningRadiusKm,
                                                    surroundings_.now() - SupplementState::kStrikesOf, stop);
  show();
  known.advisories =
      feeds->travelAdvisories().fetchAdvisories(feeds->travelAdvisories().chosen(), known.country, stop);
  known.advisorySource = feeds->travelAdvisories().chosen();
  std::erase_if(known.advisories.data,
                [&](TravelAdvisory const& entry) { return entry.country != known.country; });
  show();
}

void EngineHazards::look() {
  if (isLooking_.exchange(true)) return;
  runner_.run([this](std::stop_token const& stop) {
    askWorld(stop);
    isLooking_ = false;
  });
}

void EngineHazards::lookAtPlaces() {
  if (isCheckingPlaces_.exchange(true)) return;
  runner_.run([this](std::stop_token const& stop) {
    checkPlaces(stop);
    isCheckingPlaces_ = false;
  });
}

/// A source that was asked a moment ago rests.
void EngineHazards::checkPlaces(std::stop_token const& stop) {
  change([](HazardsState& state) { state.isCheckingPlaces = true; });
  {
    std::lock_guard const turn(officialTurn_);
    showPlaces();
  }
  surroundings_.publish();
  for (Place const& place : surroundings_.savedPlaces()) {
    std::ignore = feeds_()->govAlerts().fetchAlerts(govAlertPlace(place.coordinate), {}, stop);
    if (stop.stop_requested()) break;
    finishOfficial(place);
    surroundings_.publish();
  }
  change([](HazardsState& state) { state.isCheckingPlaces = false; });
  surroundings_.publish();
}

void EngineHazards::readFilter() {
  Settings const settings = store_.settings().settings;
  QuakeFilter const filter{settings.real(kQuakeRadiusSetting), settings.real(kQuakeMagnitudeSetting)};
  if (filter == state()->filter) return;
  change([&](HazardsState& state) { state.filter = filter; });
  surroundings_.publish();
}

void EngineHazards::setRadius(double km) {
  change([km](HazardsState& state) { state.filter.radiusKm = km; });
  choose(kQuakeRadiusSetting, km);
}

void EngineHazards::setMagnitude(double least) {
  change([least](HazardsState& state) { state.filter.minMagnitude = least; });
  choose(kQuakeMagnitudeSetting, least);
}

/// A choice that cannot be written holds while the window is open.
void EngineHazards::choose(std::string_view setting, double value) {
  surroundings_.publish();
  std::ignore = store_.set(setting, value);
}

}  // namespace nimbara
