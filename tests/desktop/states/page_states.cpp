#include "page_states.h"

#include "feeds/nowcast/nowcast_service.h"

namespace nimbara::test {

std::vector<DesktopPage> everyPage() {
  std::vector<DesktopPage> pages;
  pages.reserve(enumNames<DesktopPage>.size());
  for (std::size_t i = 0; i < enumNames<DesktopPage>.size(); ++i)
    pages.push_back(static_cast<DesktopPage>(i));
  return pages;
}

WeatherState polarState() {
  WeatherState state = stateOf(mildWeek());
  state.weatherData->location.latitude = 80;
  return state;
}

WeatherState staleState() {
  WeatherState state = stateOf(mildWeek());
  state.isShowingStaleData = true;
  state.lastUpdated = kNow - std::chrono::days(3);
  state.error = AppError{AppError::Case::networkError, "The service has a fault"};
  return state;
}

WeatherState rainState() {
  NowcastReading reading{
      NowcastReading::State::current, {"metNorway", NowcastKind::radar, kNow, {}}, kNow, {}};
  Instant from = kNow - std::chrono::minutes(5);
  for (int i = 0; i < 24; ++i, from += std::chrono::minutes(5)) {
    NowcastStep step{from, from + std::chrono::minutes(5), 0.2 * i, static_cast<Fall>(i / 5 % 4)};
    if (i == 20) step.mmPerHour.reset();
    reading.nowcast.steps.push_back(step);
  }
  WeatherState state = stateOf(mildWeek());
  state.nowcast = std::make_shared<NowcastReading const>(std::move(reading));
  return state;
}

WeatherState radarDownState() {
  NowcastReading reading;
  reading.state = NowcastReading::State::failed;
  reading.misses = {{NowcastSource::metNorway, true, {}}};
  WeatherState state = stateOf(mildWeek());
  state.nowcast = std::make_shared<NowcastReading const>(std::move(reading));
  return state;
}

WeatherState alertState() {
  WeatherState state = stateOf(mildWeek());
  for (int i = 0; i < 500; ++i) {
    state.govAlerts.push_back(alertOf(static_cast<AlertSeverity>(i % 4), "Warning " + std::to_string(i)));
    state.govAlerts.back().description = std::string(2000, 'w');
  }
  return state;
}

WeatherState unknownState() {
  WeatherState state = stateOf(mildWeek());
  state.weatherData->current.condition = WeatherConditionCode::unknown;
  for (HourlyForecast& hour : state.weatherData->allHourly) hour.condition = WeatherConditionCode::unknown;
  return state;
}

WeatherState failedState() {
  WeatherState state;
  state.error = AppError{AppError::Case::offline, {}};
  return state;
}

std::shared_ptr<EngineSnapshot> manyHazards() {
  WeatherState state = alertState();
  for (WeatherAlert& alert : state.govAlerts) alert.isGovAlert = true;
  auto snapshot = snapshotOf(std::move(state));
  HazardsState hazards = hazardsOf(checkOf(*snapshot->place));
  for (int i = 0; i < 600; ++i) {
    hazards.quakes.data.push_back(
        quakeOf(std::to_string(i), i % 9, {i % 170 - 85.0, i % 360 - 180.0}, std::chrono::minutes(2 * i)));
  }
  hazards.filter = {0, -10};
  snapshot->hazards = shared(std::move(hazards));
  return snapshot;
}

std::shared_ptr<EngineSnapshot> uncheckedHazards() {
  auto snapshot = snapshotOf(stateOf(mildWeek()));
  HazardsState hazards = hazardsOf(checkOf(*snapshot->place));
  auto const failure = ServiceFailure::answered(503);
  fail(hazards.official, kNow, failure);
  hazards.quakes.failure = hazards.kp.failure = failure;
  hazards.kp.checkedAt.reset();
  hazards.kp.data = {};
  hazards.kpForecast.data.clear();
  snapshot->hazards = shared(std::move(hazards));
  return snapshot;
}

std::shared_ptr<EngineSnapshot> uncoveredHazards() {
  auto snapshot = snapshotOf(stateOf(mildWeek()));
  HazardsState hazards = hazardsOf(checkOf(*snapshot->place));
  hazards.official.coverage = {SourceCoverage{}};
  hazards.filter = {500, 2.5};
  hazards.quakes.data = {quakeOf("a", 6, snapshot->place->coordinate, std::chrono::minutes(5))};
  snapshot->hazards = shared(std::move(hazards));
  return snapshot;
}

std::shared_ptr<EngineSnapshot> noPlaces() {
  auto snapshot = std::make_shared<EngineSnapshot>();
  snapshot->problem = StoreError{StoreError::Kind::unreadable, "it is no database"};
  return snapshot;
}

std::shared_ptr<EngineSnapshot> troubled() {
  auto snapshot = snapshotOf(stateOf(mildWeek()));
  snapshot->settings = std::make_shared<SettingsState const>(troubledSettings());
  snapshot->location.phase = LocationState::Phase::denied;
  return snapshot;
}

std::shared_ptr<EngineSnapshot> here() {
  auto snapshot = snapshotOf(stateOf(mildWeek()));
  snapshot->places.offersCurrentLocation = true;
  snapshot->places.lastFix = LocationFix{{52.52, 13.41}, 1000, kNow};
  snapshot->places.selected = kCurrentLocation;
  snapshot->kept[kCurrentLocation] = std::make_shared<WeatherData const>(mildWeek());
  return snapshot;
}

void PrintTo(StateRow const& row, std::ostream* out) {
  *out << row.name;
}

}  // namespace nimbara::test
