// The storms of the world as several centres report on them: which are there, who could not be checked, and
// what that leaves open. Plain values and functions.
#pragma once

#include "feeds/fetching/feed_reading.h"
#include "feeds/storms/tropical_storm.h"

#include <vector>

namespace nimbara {

struct StormMiss {
  StormCentre centre = StormCentre::nhc;
  ServiceFailure failure;

  bool operator==(StormMiss const&) const = default;
};

struct WorldStorms {
  std::vector<TropicalStorm> storms;  ///< each once
  std::vector<StormMiss> misses;      ///< centres whose list is not current

  bool operator==(WorldStorms const&) const = default;
};

/// Current as long as every sea has a centre that is: the National Hurricane Center its own, the Typhoon
/// Warning Center the others, in whose stead the coordination system's list will do. `checkedAt` is the
/// oldest check of those that count.
FeedReading<WorldStorms> worldStorms(FeedReading<std::vector<TropicalStorm>> nhc,
                                     FeedReading<std::vector<TropicalStorm>> const& jtwc,
                                     FeedReading<std::vector<TropicalStorm>> const& gdacs);

/// "National Hurricane Center".
std::string_view properNameOf(StormCentre centre);

}  // namespace nimbara
