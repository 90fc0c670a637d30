// The storms of several centres as one list, and how near a storm's forecast track comes to a place. Plain
// functions.
#pragma once

#include "feeds/storms/tropical_storm.h"

#include <vector>

namespace nimbara {

/// The same name within 500 km and 24 hours, or the same identifier: two centres that report on one storm. A
/// storm that one centre still calls by a number is another's named one within 200 km.
bool isSameStorm(TropicalStorm const& one, TropicalStorm const& other);

/// Adds to `storms` those of another centre that it does not have; of the others it is noted who reports on
/// them too.
void addStorms(std::vector<TropicalStorm>& storms, std::vector<TropicalStorm> const& others);

struct StormApproach {
  Instant time;
  double km = 0;
  std::optional<double> windMs;        ///< forecast for the point of the track before
  std::optional<double> galeRadiusKm;  ///< likewise

  bool operator==(StormApproach const&) const = default;
};

/// Where the storm and its forecast track from `now` on are nearest to a place: along great circles between
/// the points, by time. Nothing where no track lies ahead.
std::optional<StormApproach> closestApproach(TropicalStorm const& storm, Coordinate place, Instant now);

/// Of the nearest storm first.
void sortByDistance(std::vector<TropicalStorm>& storms, Coordinate place);

}  // namespace nimbara
