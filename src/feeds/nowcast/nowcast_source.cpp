#include "feeds/nowcast/nowcast_source.h"

#include <algorithm>

namespace nimbara {

namespace {

/// Degrees, bounds included.
struct Box {
  NowcastSource source;
  double south, west, north, east;

  bool contains(Coordinate place) const {
    return place.latitude >= south && place.latitude <= north && place.longitude >= west &&
           place.longitude <= east;
  }
};

constexpr Box kBoxes[] = {
    // Around the Nordic radars; the service itself refuses what lies outside their reach.
    {NowcastSource::metNorway, 53, 3, 72, 32.5},
    // Within the four corners of the German composite, whose sides are slanted.
    {NowcastSource::brightSky, 45.7, 3.6, 55.8, 16.5},
    // HRRR: the contiguous United States, within its slanted sides.
    {NowcastSource::openMeteo, 24, -125, 50, -66.5},
    // ICON-D2.
    {NowcastSource::openMeteo, 43.2, -3.9, 58, 20.3},
    // AROME France.
    {NowcastSource::openMeteo, 38, -8, 53, 12},
};

}  // namespace

std::string_view properNameOf(NowcastSource source) {
  constexpr std::string_view kNames[] = {"MET Norway", "Deutscher Wetterdienst", "Open-Meteo"};
  return kNames[static_cast<std::size_t>(source)];
}

NowcastKind kindOf(NowcastSource source) {
  return source == NowcastSource::openMeteo ? NowcastKind::model15 : NowcastKind::radar;
}

std::vector<NowcastSource> nowcastSourcesAt(Coordinate place) {
  std::vector<NowcastSource> sources;
  for (Box const& box : kBoxes) {
    bool const isListed = std::ranges::find(sources, box.source) != sources.end();
    if (box.contains(place) && !isListed) sources.push_back(box.source);
  }
  return sources;
}

std::optional<double> plausibleRate(std::optional<double> mmPerHour) {
  constexpr double kMost = 1000;
  return mmPerHour && *mmPerHour >= 0 && *mmPerHour <= kMost ? mmPerHour : std::nullopt;
}

}  // namespace nimbara
