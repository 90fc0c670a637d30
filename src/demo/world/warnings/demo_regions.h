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
  /// The corners of its outline and, closing it, the first again.
  std::vector<Coordinate> outline() const;
  /// Norway's warnings draw their areas; Great Britain's name them; the others have codes.
  bool isDrawn() const { return town->countryCode == "NO"; }
  /// "48.2000,13.5000 …".
  std::string outlineText() const;
};

/// Half the extent of each region, in degrees.
inline constexpr double kDemoRegionHalfHeight = 0.4;
inline constexpr double kDemoRegionHalfWidth = 0.6;

/// Whether the service has a feed of that name.
bool isDemoFeed(std::string_view feedName);

/// The regions of the country with that feed; none where the demo has no town.
std::vector<DemoRegion> demoRegionsOfFeed(std::string_view feedName);

std::vector<DemoRegion> allDemoRegions();

}  // namespace nimbara
