#include "globe/satellite_info.h"

#include "globe/propagation/sgp4_batch.h"

#include <cmath>

namespace nimbara {

double circularSpeedKmh(double distanceKm) {
  constexpr double kAtSurface = 7.905370510517633;  // km/s: the root of µ over the equatorial radius
  constexpr double kSecondsAnHour = 3600;
  return kAtSurface * std::sqrt(SGP4::kEarthRadiusKm / distanceKm) * kSecondsAnHour;
}

std::optional<SatelliteInfo> satelliteInfo(SatelliteCatalog::Entry const& entry, std::string_view groupID,
                                           Instant now) {
  SGP4::Moment const moment = SGP4::momentOf(now);
  auto const state = SGP4::propagate(entry.satrec, SGP4::minutesSince(entry.satrec.tle, moment));
  if (state.error != SGP4::errorCode::kNone) return std::nullopt;
  auto const ground = groundPosition(EarthRotation::at(moment).toEarthFixed(state.position));
  return SatelliteInfo{std::to_string(entry.satrec.tle.satnum),
                       entry.name,
                       entry.satrec.tle.satnum,
                       SatelliteCatalog::kindKey(entry.kind, groupID),
                       std::string(SatelliteCatalog::systemImage(entry.kind)),
                       ground.altitudeKm,
                       circularSpeedKmh(ground.altitudeKm + SGP4::kEarthRadiusKm),
                       ground.latitude,
                       ground.longitude,
                       entry.satrec.periodMinutes(),
                       isSunlit(state.position, sunDirection(moment))};
}

std::vector<OrbitPoint> orbitPath(SGP4::SatRec const& record, Instant from, int steps) {
  double const first = SGP4::minutesSince(record.tle, SGP4::momentOf(from));
  double const step = record.periodMinutes() / steps;
  std::vector<double> minutes(static_cast<std::size_t>(steps) + 1);
  for (std::size_t i = 0; i < minutes.size(); ++i) minutes[i] = first + step * static_cast<double>(i);
  std::vector<SGP4::StateVector> states(minutes.size());
  SGP4::propagateMany(record, minutes, states);
  std::vector<OrbitPoint> path;
  for (std::size_t i = 0; i < states.size(); ++i) {
    if (states[i].error != SGP4::errorCode::kNone) continue;
    auto const after = std::llround(step * static_cast<double>(i) * 60'000);
    Instant const time = from + std::chrono::milliseconds(after);
    auto const ground =
        groundPosition(EarthRotation::at(SGP4::momentOf(time)).toEarthFixed(states[i].position));
    path.push_back({time, ground.latitude, ground.longitude, ground.altitudeKm});
  }
  return path;
}

}  // namespace nimbara
