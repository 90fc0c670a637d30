#include "feeds/cap/shape_geometry.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace nimbara {

namespace {

constexpr double kHalfTurn = 180;
constexpr double kFullTurn = 360;
constexpr double kPole = 90;
constexpr double kRadians = std::numbers::pi / 180;
constexpr double kKmInADegree = kEarthRadiusKm * kRadians;

/// Of two meridians the way from one to the other, within ±180. What is given lies within ±360.
double shortWay(double degrees) {
  if (degrees > kHalfTurn) return degrees - kFullTurn;
  return degrees < -kHalfTurn ? degrees + kFullTurn : degrees;
}

/// From one corner to the next, as seen from a place.
struct Edge {
  double north = 0;       ///< of the first corner from the place
  double east = 0;        ///< the same, within ±180
  double northwards = 0;  ///< to the second corner
  double eastwards = 0;
};

/// The edges of an outline, which need not repeat its first corner.
class Edges {
 public:
  explicit Edges(WarningPolygon const& polygon) : polygon_(polygon), isWhole_(goesRoundAsDrawn(polygon)) {}

  double eastwards(Coordinate from, Coordinate to) const {
    double const degrees = to.longitude - from.longitude;
    return isWhole_ ? degrees : shortWay(degrees);
  }

  template <class Visit>
  void visit(Visit const& visit) const {
    for (std::size_t i = 0, before = polygon_.size() - 1; i < polygon_.size(); before = i++)
      visit(polygon_[before], polygon_[i]);
  }

 private:
  /// A box around the whole earth whose only meridian is the one at ±180°: the shorter way would leave
  /// nothing of it.
  static bool goesRoundAsDrawn(WarningPolygon const& polygon) {
    return std::ranges::all_of(polygon,
                               [](Coordinate corner) { return std::abs(corner.longitude) == kHalfTurn; });
  }

  WarningPolygon const& polygon_;
  bool isWhole_;
};

/// What a walk along an outline finds.
struct Walk {
  double south = kPole;
  double north = -kPole;
  double west = 0;  ///< from the first corner
  double east = 0;
  double turned = 0;  ///< in all: not 0 round a pole
  double latitudes = 0;
};

Walk walkAlong(WarningPolygon const& polygon) {
  Walk walk;
  Edges const edges(polygon);
  edges.visit([&](Coordinate from, Coordinate to) {
    walk.turned += edges.eastwards(from, to);
    walk.west = std::min(walk.west, walk.turned);
    walk.east = std::max(walk.east, walk.turned);
    walk.south = std::min(walk.south, to.latitude);
    walk.north = std::max(walk.north, to.latitude);
    walk.latitudes += to.latitude;
  });
  return walk;
}

bool goesRoundPole(Walk const& walk) {
  return std::abs(walk.turned) > kHalfTurn;
}

bool goesRoundNorthPole(Walk const& walk) {
  return goesRoundPole(walk) && walk.latitudes >= 0;
}

/// The nearest point of an edge, as seen from the place at `latitude`.
double kmToEdge(Coordinate place, Edge const& edge) {
  double share = 0;
  double latitude = place.latitude;
  // The second round takes the scale of the meridians' distances from where the first one has led.
  for (int round = 0; round < 2; ++round) {
    double const scale = std::cos(latitude * kRadians);
    double const x = edge.east * scale;
    double const dx = edge.eastwards * scale;
    double const length = dx * dx + edge.northwards * edge.northwards;
    if (length == 0) break;
    share = std::clamp(-(x * dx + edge.north * edge.northwards) / length, 0.0, 1.0);
    latitude = place.latitude + (edge.north + share * edge.northwards) / 2;
  }
  return haversineKm(place, {place.latitude + edge.north + share * edge.northwards,
                             place.longitude + edge.east + share * edge.eastwards});
}

bool hasBoxes(CapArea const& area) {
  return area.boxes.list.size() == area.polygons.size();
}

}  // namespace

ShapeBox boxOf(WarningPolygon const& polygon) {
  if (polygon.empty()) return {};
  Walk const walk = walkAlong(polygon);
  ShapeBox box{walk.south, walk.north, polygon.back().longitude + walk.west, walk.east - walk.west};
  if (!goesRoundPole(walk)) return box;
  (goesRoundNorthPole(walk) ? box.north : box.south) = goesRoundNorthPole(walk) ? kPole : -kPole;
  box.width = kFullTurn;
  return box;
}

bool isNear(ShapeBox const& box, Coordinate place, double km) {
  constexpr double kBeyondRounding = 1.01;
  double const north = km / kKmInADegree * kBeyondRounding;
  if (place.latitude < box.south - north || place.latitude > box.north + north) return false;
  double const narrowest = std::cos(std::min(kPole, std::abs(place.latitude) + north) * kRadians);
  if (narrowest * kFullTurn <= north) return true;
  double const east = north / narrowest;
  double const fromWest = std::fmod(place.longitude - box.west + east, kFullTurn);
  return (fromWest < 0 ? fromWest + kFullTurn : fromWest) <= box.width + 2 * east;
}

bool holds(WarningPolygon const& polygon, Coordinate place) {
  if (polygon.empty()) return false;
  // Of the edges that cross the place's meridian those to the north of it. The pole is outside, unless the
  // outline goes round it.
  Edges const edges(polygon);
  double turned = 0;
  double latitudes = 0;
  bool isOdd = false;
  edges.visit([&](Coordinate from, Coordinate to) {
    double const eastwards = edges.eastwards(from, to);
    turned += eastwards;
    latitudes += to.latitude;
    double const west = edges.eastwards(place, from);
    double const east = edges.eastwards(place, to);
    // Otherwise the edge gets to the other side behind the place's back.
    bool const goesPast = std::abs(east - west - eastwards) < kHalfTurn;
    if ((west >= 0) == (east >= 0) || !goesPast) return;
    // From the western corner whichever way the edge is walked: neighbours agree about their border.
    bool const isFromWest = west < east;
    Coordinate const& first = isFromWest ? from : to;
    Coordinate const& second = isFromWest ? to : from;
    double const share = -std::min(west, east) / std::abs(eastwards);
    if (first.latitude + (second.latitude - first.latitude) * share > place.latitude) isOdd = !isOdd;
  });
  bool const hasNorthPole = std::abs(turned) > kHalfTurn && latitudes >= 0;
  return isOdd != hasNorthPole;
}

bool holds(WarningCircle const& circle, Coordinate place) {
  return circle.radiusKm > 0 && haversineKm(place, circle.center) <= circle.radiusKm;
}

std::optional<double> kmTo(WarningPolygon const& polygon, Coordinate place, double mostKm) {
  if (holds(polygon, place)) return 0;
  double const degrees = mostKm / kKmInADegree;
  double const narrowest = std::cos(std::min(kPole, std::abs(place.latitude) + degrees) * kRadians);
  double const meridians = narrowest * kHalfTurn > degrees ? degrees / narrowest : kHalfTurn;
  double nearest = std::numeric_limits<double>::max();
  Edges const edges(polygon);
  edges.visit([&](Coordinate from, Coordinate to) {
    Edge const edge{from.latitude - place.latitude, shortWay(from.longitude - place.longitude),
                    to.latitude - from.latitude, edges.eastwards(from, to)};
    auto const isFar = [](double begin, double way, double reach) {
      return std::min(begin, begin + way) > reach || std::max(begin, begin + way) < -reach;
    };
    if (isFar(edge.north, edge.northwards, degrees) || isFar(edge.east, edge.eastwards, meridians)) return;
    nearest = std::min(nearest, kmToEdge(place, edge));
  });
  return nearest <= mostKm ? std::optional(nearest) : std::nullopt;
}

std::optional<double> kmTo(WarningCircle const& circle, Coordinate place, double mostKm) {
  double const km = std::max(0.0, haversineKm(place, circle.center) - circle.radiusKm);
  return km <= mostKm ? std::optional(km) : std::nullopt;
}

bool isDrawn(CapArea const& area) {
  if (std::ranges::any_of(area.circles, [](WarningCircle const& circle) { return circle.radiusKm > 0; }))
    return true;
  // The corners of most outlines need not be fetched from memory.
  if (hasBoxes(area)) {
    return std::ranges::any_of(area.boxes.list,
                               [](ShapeBox const& box) { return box.width > 0 || box.north > box.south; });
  }
  return std::ranges::any_of(area.polygons, [](WarningPolygon const& polygon) {
    return std::ranges::any_of(polygon, [&](Coordinate corner) { return corner != polygon.front(); });
  });
}

std::optional<double> kmTo(CapArea const& area, Coordinate place, double mostKm) {
  std::optional<double> nearest;
  auto const take = [&](std::optional<double> km) {
    if (km && (!nearest || *km < *nearest)) nearest = km;
  };
  for (WarningCircle const& circle : area.circles) take(kmTo(circle, place, mostKm));
  bool const isBoxed = hasBoxes(area);
  for (std::size_t i = 0; i < area.polygons.size() && nearest != 0.0; ++i) {
    ShapeBox const box = isBoxed ? area.boxes.list[i] : boxOf(area.polygons[i]);
    if (isNear(box, place, mostKm)) take(kmTo(area.polygons[i], place, mostKm));
  }
  return nearest;
}

void noteBoxes(CapAlert& message) {
  for (CapInfo& info : message.infos) {
    for (CapArea& area : info.areas) {
      area.boxes.list.clear();
      area.boxes.list.reserve(area.polygons.size());
      for (WarningPolygon const& polygon : area.polygons) area.boxes.list.push_back(boxOf(polygon));
    }
  }
}

}  // namespace nimbara
