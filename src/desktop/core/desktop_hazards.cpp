#include "desktop/core/desktop_hazards.h"

#include "app/settings_registry.h"

#include <utility>

namespace nimbara {

namespace {

OfficialCheck checkOf(Place const& place, bool isAsking, GovAlerts const& alerts) {
  OfficialCheck check;
  check.place = place;
  check.isAsking = isAsking;
  check.checkedAt = alerts.checkedAt();
  check.failedSince = alerts.failedSince();
  for (GovSourceState const& source : alerts.sources) {
    check.sources.push_back(source.name);
    if (source.failedSince) check.problem = source.problem;
  }
  return check;
}

}  // namespace

DesktopHazards::DesktopHazards(FeedServices& feeds, SettingsStore& store, TaskRunner& runner,
                               Surroundings surroundings)
    : feeds_(feeds), store_(store), runner_(runner), surroundings_(std::move(surroundings)) {}

std::shared_ptr<HazardsState const> DesktopHazards::state() const {
  std::lock_guard const lock(mutex_);
  return state_;
}

template <class Change>
void DesktopHazards::change(Change apply) {
  std::lock_guard const lock(mutex_);
  auto next = std::make_shared<HazardsState>(*state_);
  apply(*next);
  state_ = std::move(next);
}

void DesktopHazards::setPlace(std::optional<Place> const& place) {
  std::lock_guard const turn(officialTurn_);
  change([&](HazardsState& state) {
    state.official = {};
    state.official.place = place;
    state.official.isAsking = true;
  });
}

void DesktopHazards::showKept() {
  std::lock_guard const turn(officialTurn_);
  OfficialCheck const check = state()->official;
  if (check.place) showOfficial(*check.place, check.isAsking);
}

/// In its turn.
void DesktopHazards::showOfficial(Place const& place, bool isAsking) {
  GovAlerts alerts = feeds_.govAlerts().keptAlerts(govAlertPlace(place.coordinate));
  change([&](HazardsState& state) { state.official = checkOf(place, isAsking, alerts); });
  surroundings_.showAlerts(place, std::move(alerts.alerts));
}

void DesktopHazards::finishOfficial(Place const& place) {
  std::lock_guard const turn(officialTurn_);
  if (state()->official.place == place) showOfficial(place, false);
}

SupplementalOutcome DesktopHazards::refresh(Place const& place, std::stop_token const& stop) {
  std::ignore = feeds_.govAlerts().fetchAlerts(govAlertPlace(place.coordinate), {}, stop);
  if (!stop.stop_requested()) finishOfficial(place);
  askWorld(stop);
  auto const now = state();
  bool const isComplete =
      !now->official.failedSince && now->quakes.problem.empty() && now->kp.problem.empty();
  return isComplete ? SupplementalOutcome::complete : SupplementalOutcome::incomplete;
}

/// One feed after the other, each shown as soon as it has answered.
void DesktopHazards::askWorld(std::stop_token const& stop) {
  auto const show = [&](auto const& apply) {
    if (stop.stop_requested()) return;
    change(apply);
    surroundings_.publish();
  };
  EarthquakeService& quakes = feeds_.earthquakes();
  auto events = quakes.fetchEarthquakes(stop);
  show(
      [&](HazardsState& state) { state.quakes = {std::move(events), quakes.checkedAt(), quakes.problem()}; });
  GeomagneticService& field = feeds_.geomagnetic();
  auto const kp = field.currentKp(stop);
  show([&](HazardsState& state) {
    state.kp = {kp, field.checkedAt(), field.problem()};
    state.kpRecent = field.recent();
  });
  auto forecast = feeds_.kpForecast().fetchForecast(stop);
  show([&](HazardsState& state) {
    state.kpForecast = {std::move(forecast.data), forecast.checkedAt, forecast.problem};
  });
}

void DesktopHazards::look() {
  if (isLooking_.exchange(true)) return;
  runner_.run([this](std::stop_token const& stop) {
    askWorld(stop);
    isLooking_ = false;
  });
}

void DesktopHazards::readFilter() {
  Settings const settings = store_.settings().settings;
  QuakeFilter const filter{settings.real(kQuakeRadiusSetting), settings.real(kQuakeMagnitudeSetting)};
  if (filter == state()->filter) return;
  change([&](HazardsState& state) { state.filter = filter; });
  surroundings_.publish();
}

void DesktopHazards::setRadius(double km) {
  change([km](HazardsState& state) { state.filter.radiusKm = km; });
  choose(kQuakeRadiusSetting, km);
}

void DesktopHazards::setMagnitude(double least) {
  change([least](HazardsState& state) { state.filter.minMagnitude = least; });
  choose(kQuakeMagnitudeSetting, least);
}

/// A choice that cannot be written holds while the window is open.
void DesktopHazards::choose(std::string_view setting, double value) {
  surroundings_.publish();
  std::ignore = store_.set(setting, value);
}

}  // namespace nimbara
