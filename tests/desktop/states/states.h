// Snapshots of tests: what the window may have to show, made of mild forecasts.
#pragma once

#include "app/state/engine_snapshot.h"
#include "desktop/views/view_context.h"
#include "support/forecasts.h"

#include <memory>
#include <string>

namespace nimbara::test {

inline Instant const kNow = at("2026-11-21T12:20:00Z");

/// With the clock of Britain.
Texts const& english();

ViewContext contextAt(Instant now);

/// Eight days from the midnight before `kNow` on, at the equator of Greenwich.
WeatherData mildWeek();

WeatherState stateOf(WeatherData data);

SavedPlace savedPlace(std::string name, Coordinate coordinate);

std::shared_ptr<EngineSnapshot> snapshotOf(WeatherState state, std::string const& name = "Testville");

WeatherAlert alertOf(AlertSeverity severity, std::string title);

}  // namespace nimbara::test
