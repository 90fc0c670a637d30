// What the pages may have to show, from the ordinary to the worst, by name.
#pragma once

#include "air_states.h"
#include "desktop/core/desktop_options.h"
#include "hazard_states.h"
#include "notifications_states.h"
#include "settings_states.h"
#include "states.h"
#include "station_states.h"

#include <memory>
#include <string>
#include <vector>

namespace nimbara::test {

std::vector<DesktopPage> everyPage();

WeatherState polarState();

WeatherState staleState();

WeatherState alertState();

WeatherState unknownState();

WeatherState failedState();

/// Nothing is stored yet and nobody can be reached.
inline std::shared_ptr<EngineSnapshot> firstStart() {
  auto snapshot = std::make_shared<EngineSnapshot>();
  snapshot->isOffline = true;
  return snapshot;
}

inline WeatherState loadingState() {
  WeatherState state;
  state.isLoading = true;
  return state;
}

/// The first forecast of the first place.
inline std::shared_ptr<EngineSnapshot> firstForecast() {
  auto snapshot = snapshotOf(stateOf(mildWeek()));
  snapshot->settings = std::make_shared<SettingsState const>(settingsWith({}));
  return snapshot;
}

/// As many of everything as there may be.
std::shared_ptr<EngineSnapshot> manyHazards();

std::shared_ptr<EngineSnapshot> uncheckedHazards();

std::shared_ptr<EngineSnapshot> uncoveredHazards();

std::shared_ptr<EngineSnapshot> noPlaces();

/// Settings that ask for attention, and a current location that is denied.
std::shared_ptr<EngineSnapshot> troubled();

std::shared_ptr<EngineSnapshot> here();

/// The next two hours have a bar of every kind.
WeatherState rainState();

WeatherState radarDownState();

struct StateRow {
  char const* name;
  std::shared_ptr<EngineSnapshot> (*snapshot)();
};

void PrintTo(StateRow const& row, std::ostream* out);

inline constexpr StateRow kStates[] = {
    {"fresh", [] { return snapshotOf(stateOf(mildWeek())); }},
    {"stale", [] { return snapshotOf(staleState()); }},
    {"failed", [] { return snapshotOf(failedState()); }},
    {"noPlaces", noPlaces},
    {"firstStart", firstStart},
    {"loading", [] { return snapshotOf(loadingState()); }},
    {"firstForecast", firstForecast},
    {"alerts", [] { return snapshotOf(alertState()); }},
    {"manyHazards", manyHazards},
    {"uncheckedHazards", uncheckedHazards},
    {"uncoveredHazards", uncoveredHazards},
    {"air", [] { return withAir(snapshotOf(stateOf(mildWeek())), airOf); }},
    {"airFailed", [] { return withAir(snapshotOf(stateOf(mildWeek())), failedAir); }},
    {"station", [] { return withStation(snapshotOf(stateOf(mildWeek()))); }},
    {"polar", [] { return snapshotOf(polarState()); }},
    {"rain", [] { return snapshotOf(rainState()); }},
    {"radarDown", [] { return snapshotOf(radarDownState()); }},
    {"unknown", [] { return snapshotOf(unknownState()); }},
    {"notifications", [] { return notifying(crowdedState()); }},
    {"troubled", troubled},
    {"here", here},
    {"longName",
     [] {
       return snapshotOf(stateOf(mildWeek()), "Llanfair-upon-the-very-long-and-winding-river-by-the-old-sea");
     }},
};

}  // namespace nimbara::test
