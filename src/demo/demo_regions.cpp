#include "demo/demo_regions.h"

#include <algorithm>

namespace nimbara {

namespace {

struct DemoFeed {
  std::string_view name;
  std::string_view country;
};

constexpr DemoFeed kFeeds[] = {
    {"austria", "AT"}, {"finland", "FI"},  {"france", "FR"}, {"germany", "DE"},
    {"greece", "GR"},  {"iceland", "IS"},  {"italy", "IT"},  {"norway", "NO"},
    {"poland", "PL"},  {"portugal", "PT"}, {"spain", "ES"},  {"united-kingdom", "GB"},
};

/// "DE801", "DE802": numbers that the service gives to no region on land.
std::string codeOf(DemoPlace const& town, bool isBeside) {
  constexpr int kFirst = 8001;
  return std::string(town.countryCode) + std::to_string(kFirst + 2 * town.id + (isBeside ? 1 : 0));
}

std::vector<DemoRegion> regionsOf(std::string_view country) {
  std::vector<DemoRegion> regions;
  for (DemoPlace const& town : demoPlaces()) {
    if (town.countryCode != country) continue;
    regions.push_back({&town, false, codeOf(town, false), std::string(town.region)});
    regions.push_back({&town, true, codeOf(town, true), "Demo Lowlands"});
  }
  return regions;
}

}  // namespace

Coordinate DemoRegion::center() const {
  Coordinate center = town->coordinate;
  if (isBeside) center.longitude += 2 * kDemoRegionHalfWidth;
  return center;
}

std::vector<DemoRegion> demoRegionsOfFeed(std::string_view feedName) {
  auto const* const feed = std::ranges::find(kFeeds, feedName, &DemoFeed::name);
  return feed == std::end(kFeeds) ? std::vector<DemoRegion>() : regionsOf(feed->country);
}

std::vector<DemoRegion> allDemoRegions() {
  std::vector<DemoRegion> all;
  for (DemoFeed const& feed : kFeeds) std::ranges::move(regionsOf(feed.country), std::back_inserter(all));
  return all;
}

}  // namespace nimbara
