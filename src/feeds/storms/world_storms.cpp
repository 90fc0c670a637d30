#include "feeds/storms/world_storms.h"

#include "feeds/storms/storm_merge.h"

#include <algorithm>

namespace nimbara {

namespace {

using Reading = FeedReading<std::vector<TropicalStorm>>;

void noteMiss(WorldStorms& world, StormCentre centre, Reading const& reading) {
  if (reading.isCurrent()) return;
  auto failure = reading.failure.value_or(ServiceFailure::of(ServiceFailure::Kind::noAnswer));
  world.misses.push_back({centre, std::move(failure)});
}

}  // namespace

FeedReading<WorldStorms> worldStorms(Reading nhc, Reading const& jtwc, Reading const& gdacs) {
  FeedReading<WorldStorms> world;
  noteMiss(world.data, StormCentre::nhc, nhc);
  noteMiss(world.data, StormCentre::jtwc, jtwc);
  noteMiss(world.data, StormCentre::gdacs, gdacs);
  world.data.storms = std::move(nhc.data);
  addStorms(world.data.storms, jtwc.data);
  addStorms(world.data.storms, gdacs.data);
  Reading const& others = jtwc.isCurrent() || !gdacs.isCurrent() ? jtwc : gdacs;
  Reading const& worse = nhc.isCurrent() ? others : nhc;
  world.state = worse.state;
  world.failedSince = worse.failedSince;
  world.failure = worse.failure;
  if (nhc.checkedAt && others.checkedAt) world.checkedAt = std::min(*nhc.checkedAt, *others.checkedAt);
  return world;
}

std::string_view properNameOf(StormCentre centre) {
  switch (centre) {
    case StormCentre::nhc:
      return "National Hurricane Center";
    case StormCentre::jtwc:
      return "Joint Typhoon Warning Center";
    case StormCentre::gdacs:
      break;
  }
  return "GDACS";
}

}  // namespace nimbara
