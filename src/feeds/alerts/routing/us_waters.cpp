#include "feeds/alerts/routing/us_waters.h"

#include "feeds/nws/nws_territory.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <numbers>
#include <vector>

namespace nimbara {

namespace {

/// Rings of land: the number of points, then their latitudes and longitudes in hundredths of a degree.
constexpr std::int16_t kShore[] = {
#include "feeds/us_shore.inc"
};

constexpr double kPerDegree = 100;
constexpr double kKmPerDegree = kEarthRadiusKm * std::numbers::pi / 180;
/// Farther off a stretch of shore says nothing of the waters near a place.
constexpr double kNeighbourhoodKm = 30;

constexpr int kBearings = 24;
constexpr double kSteps[] = {2, 4, 6, 8, 10, 12, 14};
/// Off an open shore, and in a bay or a sound.
constexpr double kClearances[] = {2, 1};

/// Kilometres east and north of the place: near enough to a plane.
struct Offset {
  double east = 0;
  double north = 0;
};

struct Stretch {
  Offset from, to;
};

constexpr std::array kMarineZones = std::to_array<std::string_view>(
    {"AM", "AN", "GM", "LC", "LE", "LH", "LM", "LO", "LS", "PH", "PK", "PM", "PS", "PZ", "SL"});

double wrapped(double degrees) {
  return std::remainder(degrees, 360);
}

/// The shore as it is seen from a place.
class Shore {
 public:
  explicit Shore(Coordinate place)
      : place_(place), kmPerLongitude_(kKmPerDegree * std::cos(place.latitude * std::numbers::pi / 180)) {
    for (std::size_t at = 0; at < std::size(kShore);) {
      auto const count = static_cast<std::size_t>(kShore[at++]);
      for (std::size_t i = 0; i < count; ++i) {
        add(&kShore[at + 2 * i], &kShore[at + 2 * ((i + 1) % count)]);
      }
      at += 2 * count;
    }
  }

  double kmFrom(Offset point) const {
    double nearest = std::numeric_limits<double>::infinity();
    for (Stretch const& stretch : near_) nearest = std::min(nearest, kmBetween(point, stretch));
    return nearest;
  }

  /// Even-odd rule along the parallel.
  bool isLand(Offset point) const {
    bool inside = false;
    for (Stretch const& stretch : level_) {
      if ((stretch.from.north > point.north) == (stretch.to.north > point.north)) continue;
      double const share = (point.north - stretch.from.north) / (stretch.to.north - stretch.from.north);
      double const east = stretch.from.east + share * (stretch.to.east - stretch.from.east);
      if (point.east < east) inside = !inside;
    }
    return inside;
  }

  Coordinate coordinate(Offset point) const {
    return {std::clamp(place_.latitude + point.north / kKmPerDegree, -90.0, 90.0),
            wrapped(place_.longitude + point.east / kmPerLongitude_)};
  }

 private:
  void add(std::int16_t const* from, std::int16_t const* to) {
    Stretch const stretch{offset(from), offset(to)};
    auto const [south, north] = std::minmax(stretch.from.north, stretch.to.north);
    if (south > kNeighbourhoodKm || north < -kNeighbourhoodKm) return;
    // One that is on both ends of the map when seen from here is on the other side of the world.
    if (std::abs(stretch.from.east - stretch.to.east) > 180 * kmPerLongitude_) return;
    level_.push_back(stretch);
    auto const [west, east] = std::minmax(stretch.from.east, stretch.to.east);
    if (west <= kNeighbourhoodKm && east >= -kNeighbourhoodKm) near_.push_back(stretch);
  }

  Offset offset(std::int16_t const* point) const {
    return {wrapped(point[1] / kPerDegree - place_.longitude) * kmPerLongitude_,
            (point[0] / kPerDegree - place_.latitude) * kKmPerDegree};
  }

  static double kmBetween(Offset point, Stretch const& stretch) {
    double const east = stretch.to.east - stretch.from.east;
    double const north = stretch.to.north - stretch.from.north;
    double const square = east * east + north * north;
    double const along =
        ((point.east - stretch.from.east) * east + (point.north - stretch.from.north) * north) / square;
    double const share = square > 0 ? std::clamp(along, 0.0, 1.0) : 0;
    return std::hypot(point.east - stretch.from.east - share * east,
                      point.north - stretch.from.north - share * north);
  }

  Coordinate place_;
  double kmPerLongitude_;
  std::vector<Stretch> near_;
  std::vector<Stretch> level_;  ///< between the parallels of the neighbourhood
};

/// Beyond the outline lie the waters, but also the neighbour countries.
bool isOwnWater(Coordinate point) {
  return isNwsTerritory(describePlace(point).countryCode, point);
}

}  // namespace

std::optional<Coordinate> usWatersOff(Coordinate place) {
  Shore const shore(place);
  if (shore.kmFrom({}) > kShoreKm) return std::nullopt;
  for (double const clearance : kClearances) {
    for (double const km : kSteps) {
      for (int i = 0; i < kBearings; ++i) {
        double const bearing = 2 * std::numbers::pi * i / kBearings;
        Offset const point{km * std::sin(bearing), km * std::cos(bearing)};
        if (shore.isLand(point) || shore.kmFrom(point) < clearance) continue;
        Coordinate const at = shore.coordinate(point);
        if (isOwnWater(at)) return at;
      }
    }
  }
  return std::nullopt;
}

bool isMarineZone(std::string_view code) {
  constexpr std::size_t kLength = std::string_view("LMZ741").size();
  return code.size() == kLength && code[2] == 'Z' && std::ranges::count(kMarineZones, code.substr(0, 2)) > 0;
}

}  // namespace nimbara
