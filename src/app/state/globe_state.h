// What the globe page shows at one moment, as its core part publishes it. Plain values; the large ones are
// shared and never change.
#pragma once

#include "feeds/quakes/earthquake_event.h"
#include "globe/satellite_layer.h"

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// One group of the catalogue as far as it was available.
struct GlobeGroup {
  enum class State { waiting, fresh, stale, failed };

  SatelliteCatalog::Group group;
  State state = State::waiting;
  std::size_t count = 0;
  Instant fetched;                        ///< when its elements came from the server
  std::optional<ServiceFailure> failure;  ///< why it is stale or failed
};

/// The loaded satellites, entry by entry; changes with loads only.
struct GlobeCatalogue {
  std::vector<std::string> names;
  std::vector<SatelliteLayer::GroupIndices> groups;
  std::vector<std::uint32_t> named;  ///< those with a label
};

/// The one satellite that is told of.
struct ChosenSatellite {
  std::uint32_t entry = 0;
  std::string_view groupKey;  ///< the group's text
  SatelliteInfo info;
  std::vector<OrbitPoint> orbit;
};

struct GlobeState {
  Instant now;
  bool isLoading = false;
  std::vector<GlobeGroup> groups;
  std::shared_ptr<GlobeCatalogue const> catalogue = std::make_shared<GlobeCatalogue>();
  /// Of the catalogue's entries; empty until the first propagation is done.
  std::shared_ptr<SatelliteLayer::Frame const> frame = std::make_shared<SatelliteLayer::Frame>();
  Vector3 sun{1, 0, 0};  ///< earth-fixed, towards the sun
  std::shared_ptr<std::vector<EarthquakeEvent> const> earthquakes =
      std::make_shared<std::vector<EarthquakeEvent>>();
  bool hasEarthquakes = false;                      ///< they have been asked for
  std::optional<ServiceFailure> earthquakeFailure;  ///< why they are old or missing
  std::optional<ChosenSatellite> chosen;
  /// Legend rows that are switched off, by their names.
  std::set<std::string, std::less<>> hidden;
};

inline constexpr std::string_view kEarthquakeRow = "earthquakes";
inline constexpr std::string_view kCloudRow = "clouds";
inline constexpr std::string_view kStormRow = "storms";
inline constexpr std::string_view kRadarRow = "radar";

/// "debris" of the legend's text "sat.group.debris": groups that share a text are one row.
std::string_view legendName(SatelliteCatalog::Group const& group);

/// Names separated by commas, as the setting "globeHidden" has them.
std::set<std::string, std::less<>> hiddenRows(std::string_view setting);
std::string hiddenSetting(std::set<std::string, std::less<>> const& rows);

}  // namespace nimbara
