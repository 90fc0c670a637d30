// The warning regions around the demo's European towns.
#pragma once

#include "demo/world/demo_places.h"

#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

struct DemoRegion {
  DemoPlace const* town = nullptr;
  bool isBeside = false;  ///< the region east of the town's own
  std::string code;       ///< EMMA_ID; empty where regions have none
  std::string name;

  /// The middle of the region.
  Coordinate center() const;
};

/// Half the extent of each region, in degrees.
inline constexpr double kDemoRegionHalfHeight = 0.4;
inline constexpr double kDemoRegionHalfWidth = 0.6;

/// The regions of the country with that feed; nothing for a feed that the demo does not have.
std::vector<DemoRegion> demoRegionsOfFeed(std::string_view feedName);

std::vector<DemoRegion> allDemoRegions();

}  // namespace nimbara
