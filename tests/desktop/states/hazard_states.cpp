#include "hazard_states.h"

namespace nimbara::test {

EarthquakeEvent quakeOf(std::string id, double magnitude, Coordinate place, std::chrono::milliseconds age) {
  EarthquakeEvent event;
  event.id = std::move(id);
  event.magnitude = magnitude;
  event.place = "somewhere";
  event.time = kNow - age;
  event.latitude = place.latitude;
  event.longitude = place.longitude;
  event.depthKm = 10;
  return event;
}

OfficialCheck checkOf(Place const& place) {
  OfficialCheck check;
  check.place = place;
  SourceCoverage coverage;
  coverage.source = "nws";
  coverage.service = "National Weather Service";
  coverage.state = CoverageState::none;
  coverage.checkedAt = kNow - std::chrono::minutes(5);
  coverage.country = "US";
  check.coverage = {coverage};
  return check;
}

void fail(OfficialCheck& check, Instant since, ServiceFailure reason) {
  SourceCoverage& coverage = check.coverage.front();
  coverage.state = CoverageState::unchecked;
  coverage.since = since;
  coverage.reason = std::move(reason);
}

HazardsState hazardsOf(OfficialCheck check) {
  HazardsState state;
  state.official = std::move(check);
  state.quakes.checkedAt = state.kp.checkedAt = state.kpForecast.checkedAt = kNow - std::chrono::minutes(5);
  state.kp.data.now = 2.0;
  Instant const newest = at("2026-11-21T12:00:00Z");
  for (int bin = 55; bin >= 0; --bin)
    state.kp.data.recent.push_back({newest - bin * std::chrono::hours(3), 2});
  for (int bin = 1; bin <= 24; ++bin) {
    state.kpForecast.data.push_back({newest + bin * std::chrono::hours(3), 5, KpKind::predicted});
  }
  return state;
}

std::shared_ptr<HazardsState const> shared(HazardsState state) {
  return std::make_shared<HazardsState const>(std::move(state));
}

}  // namespace nimbara::test
