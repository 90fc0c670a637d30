// What the weather stations of a neighbourhood say together. Single ones stand in the sun, under eaves or
// indoors; the middle of several seldom does. Pure.
#pragma once

#include "feeds/stations/station_reading.h"

#include <vector>

namespace nimbara {

struct PublicStations {
  StationReading reading;  ///< the medians, as modules of the kinds that measured them; empty without any
  int used = 0;            ///< stations with a believed temperature
  int leftOut = 0;         ///< whose temperature is an outlier
  double withinKm = 0;     ///< the farthest of those that were used
  std::vector<std::string> outliers = {};  ///< identifiers of those that are left out
  std::vector<StationReading> nearest;     ///< all of them, the nearest first

  bool operator==(PublicStations const&) const = default;
};

/// How many say more than one: below, nothing is overlaid.
inline constexpr int kFewestPublic = 3;
inline constexpr double kPublicReachKm = 5;

/// `altitude` is the place's in m, if it is known; else that of the stations' median. Temperatures are
/// brought to it by 6.5 °C per km. A value more than three MAD (at least half of its unit's usual spread)
/// from the median is left out; what was measured more than half an hour ago does not count.
PublicStations publicStations(std::vector<StationReading> stations, Coordinate place,
                              std::optional<double> altitude, Instant now);

}  // namespace nimbara
