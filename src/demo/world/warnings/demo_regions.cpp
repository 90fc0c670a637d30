#include "demo/world/warnings/demo_regions.h"

#include <fmt/format.h>

#include <algorithm>

namespace nimbara {

namespace {

/// A feed, and the codes of its town's region and of one that is really near: those that the service has, so
/// that they are known without preparation. Great Britain's regions have none and are told by their names.
struct DemoFeed {
  std::string_view name;
  std::string_view country;
  std::string_view code;
  std::string_view codeBeside;
};

constexpr DemoFeed kFeeds[] = {
    {"austria", "AT", "AT901", "AT308"},  {"finland", "FI", "FI034", "FI036"},
    {"france", "FR", "FR101", "FR076"},   {"germany", "DE", "DE202", "DE233"},
    {"greece", "GR", "GR011", "GR003"},   {"iceland", "IS", "IS001", "IS002"},
    {"italy", "IT", "IT012", "IT013"},    {"norway", "NO", "NO020", "NO015"},
    {"poland", "PL", "PL1465", "PL1426"}, {"portugal", "PT", "PT016", "PT019"},
    {"spain", "ES", "ES219", "ES168"},    {"united-kingdom", "GB", "", ""},
};

/// The service's other feeds. The demo has no town there: no warning is in force.
constexpr std::string_view kCalmFeeds[] = {
    "andorra",
    "belgium",
    "bosnia-herzegovina",
    "bulgaria",
    "croatia",
    "cyprus",
    "czechia",
    "denmark",
    "estonia",
    "hungary",
    "ireland",
    "israel",
    "latvia",
    "lithuania",
    "luxembourg",
    "malta",
    "moldova",
    "montenegro",
    "netherlands",
    "republic-of-north-macedonia",
    "romania",
    "serbia",
    "slovakia",
    "slovenia",
    "sweden",
    "switzerland",
    "ukraine",
};

std::vector<DemoRegion> regionsOf(DemoFeed const& feed) {
  bool const hasCodes = !feed.code.empty();
  std::vector<DemoRegion> regions;
  for (DemoPlace const& town : demoPlaces()) {
    if (town.countryCode != feed.country) continue;
    std::string const name(hasCodes ? town.region : "London & South East England");
    std::string const nameBeside(hasCodes ? "Demo Lowlands" : "East of England");
    regions.push_back({&town, false, std::string(feed.code), name});
    regions.push_back({&town, true, std::string(feed.codeBeside), nameBeside});
  }
  return regions;
}

}  // namespace

Coordinate DemoRegion::center() const {
  Coordinate center = town->coordinate;
  if (isBeside) center.longitude += 2 * kDemoRegionHalfWidth;
  return center;
}

std::vector<Coordinate> DemoRegion::outline() const {
  struct Corner {
    double north, east;
  };
  constexpr Corner kCorners[] = {{-1, -1}, {-1, 1}, {1, 1}, {1, -1}, {-1, -1}};
  Coordinate const middle = center();
  std::vector<Coordinate> corners;
  for (auto const [north, east] : kCorners) {
    corners.push_back(
        {middle.latitude + north * kDemoRegionHalfHeight, middle.longitude + east * kDemoRegionHalfWidth});
  }
  return corners;
}

std::string DemoRegion::outlineText() const {
  std::string text;
  for (Coordinate const corner : outline()) {
    text += fmt::format("{}{:.4f},{:.4f}", text.empty() ? "" : " ", corner.latitude, corner.longitude);
  }
  return text;
}

std::vector<DemoRegion> demoRegionsOfFeed(std::string_view feedName) {
  auto const* const feed = std::ranges::find(kFeeds, feedName, &DemoFeed::name);
  return feed == std::end(kFeeds) ? std::vector<DemoRegion>() : regionsOf(*feed);
}

bool isDemoFeed(std::string_view feedName) {
  return std::ranges::find(kFeeds, feedName, &DemoFeed::name) != std::end(kFeeds) ||
         std::ranges::find(kCalmFeeds, feedName) != std::end(kCalmFeeds);
}

std::vector<DemoRegion> allDemoRegions() {
  std::vector<DemoRegion> all;
  for (DemoFeed const& feed : kFeeds) std::ranges::move(regionsOf(feed), std::back_inserter(all));
  return all;
}

}  // namespace nimbara
