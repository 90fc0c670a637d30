#include "globe_states.h"

namespace nimbara::test {

std::shared_ptr<GlobeState const> crowdedGlobe() {
  GlobeStateMaker maker;
  maker.group("stations")
      .satellite("A-very-long-name-of-a-satellite-that-does-not-fit-anywhere-60", {0, 0}, 1.06, true);
  maker.group("starlink");
  for (int i = 0; i < 11'000; ++i)
    maker.satellite("STARLINK-" + std::to_string(i), {(i % 107) - 53.0, (i * 7 % 360) - 180.0}, 1.09);
  maker.state().hasEarthquakes = true;
  maker.state().chosen = ChosenSatellite{0, "sat.group.stations", {}, {{kNow, 0, 0, 400}, {kNow, 5, 5, 400}}};
  return maker.made();
}

EarthquakeEvent quakeOf(double magnitude, Coordinate at, Instant time) {
  EarthquakeEvent event;
  event.magnitude = magnitude;
  event.latitude = at.latitude;
  event.longitude = at.longitude;
  event.time = time;
  return event;
}

}  // namespace nimbara::test
