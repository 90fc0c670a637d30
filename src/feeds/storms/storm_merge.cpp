#include "feeds/storms/storm_merge.h"

#include "base/text/text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace nimbara {

namespace {

constexpr double kSameKm = 500;
constexpr double kSameUnnamedKm = 200;
constexpr std::chrono::hours kSameTime{24};
constexpr double kRadian = std::numbers::pi / 180;

using Vector = std::array<double, 3>;

Vector vectorOf(Coordinate place) {
  double const north = place.latitude * kRadian;
  double const east = place.longitude * kRadian;
  return {std::cos(north) * std::cos(east), std::cos(north) * std::sin(east), std::sin(north)};
}

Coordinate coordinateOf(Vector const& v) {
  return {std::atan2(v[2], std::hypot(v[0], v[1])) / kRadian, std::atan2(v[1], v[0]) / kRadian};
}

double dot(Vector const& a, Vector const& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

/// On the great circle from `a` to `b`, at a fraction of the way.
Coordinate between(Coordinate a, Coordinate b, double fraction) {
  Vector const begin = vectorOf(a);
  Vector const end = vectorOf(b);
  double const angle = haversineKm(a, b) / kEarthRadiusKm;
  if (angle < 1e-9) return a;
  double const first = std::sin((1 - fraction) * angle);
  double const second = std::sin(fraction * angle);
  Vector way{};
  for (std::size_t i = 0; i < way.size(); ++i) way[i] = first * begin[i] + second * end[i];
  return coordinateOf(way);
}

/// The fraction of the way from `a` to `b` that is nearest to `place`.
double nearestFraction(Coordinate a, Coordinate b, Coordinate place) {
  Vector const begin = vectorOf(a);
  Vector const end = vectorOf(b);
  Vector const point = vectorOf(place);
  double const angle = haversineKm(a, b) / kEarthRadiusKm;
  if (angle < 1e-9) return 0;
  // Within the plane of the way, from its beginning: along it, and at right angles to the beginning.
  double const along = dot(point, begin);
  double const across = (dot(point, end) - along * std::cos(angle)) / std::sin(angle);
  double const turned = std::atan2(across, along);
  if (turned >= 0 && turned <= angle) return turned / angle;
  return haversineKm(a, place) <= haversineKm(b, place) ? 0 : 1;
}

/// "TWENTYFIVE", "Twenty-five", "Seven-E": what a depression is called before it has a name.
bool isNumber(std::string_view name) {
  static constexpr std::string_view kTens[] = {"twenty", "thirty", "forty", "fifty"};
  static constexpr std::string_view kUnits[] = {"one",     "two",       "three",    "four",     "five",
                                                "six",     "seven",     "eight",    "nine",     "ten",
                                                "eleven",  "twelve",    "thirteen", "fourteen", "fifteen",
                                                "sixteen", "seventeen", "eighteen", "nineteen"};
  std::string text = asciiLowered(name);
  // The letter of a sea.
  if (text.size() > 2 && text[text.size() - 2] == '-') text.resize(text.size() - 2);
  std::erase(text, '-');
  std::erase(text, ' ');
  std::string_view rest = text;
  for (std::string_view const ten : kTens) {
    if (!rest.starts_with(ten)) continue;
    rest.remove_prefix(ten.size());
    if (rest.empty()) return true;
    break;
  }
  return std::ranges::find(kUnits, rest) != std::ranges::end(kUnits);
}

/// The same name; or close together, where one of them has not heard the name yet.
bool mayBeSame(TropicalStorm const& one, TropicalStorm const& other) {
  double const km = haversineKm(one.coordinate, other.coordinate);
  if (asciiLowered(one.name) == asciiLowered(other.name)) return !one.name.empty() && km <= kSameKm;
  return isNumber(one.name) != isNumber(other.name) && km <= kSameUnnamedKm;
}

struct Leg {
  TropicalTrackPoint const& from;
  TropicalTrackPoint const& to;

  Instant timeAt(double fraction) const {
    return from.time + std::chrono::duration_cast<Instant::duration>((to.time - from.time) * fraction);
  }
};

}  // namespace

bool isSameStorm(TropicalStorm const& one, TropicalStorm const& other) {
  if (one.id == other.id) return true;
  bool const isThen = !one.lastUpdate || !other.lastUpdate ||
                      std::chrono::abs(*one.lastUpdate - *other.lastUpdate) <= kSameTime;
  return isThen && mayBeSame(one, other);
}

void addStorms(std::vector<TropicalStorm>& storms, std::vector<TropicalStorm> const& others) {
  for (TropicalStorm const& other : others) {
    auto const known =
        std::ranges::find_if(storms, [&](TropicalStorm const& storm) { return isSameStorm(storm, other); });
    if (known == storms.end()) {
      storms.push_back(other);
    } else if (known->centre != other.centre) {
      known->alsoBy.push_back(other.centre);
    }
  }
}

std::optional<StormApproach> closestApproach(TropicalStorm const& storm, Coordinate place, Instant now) {
  std::vector<TropicalTrackPoint> points;
  if (storm.lastUpdate)
    points.push_back({*storm.lastUpdate, storm.coordinate, storm.windMs, storm.galeRadiusKm});
  for (TropicalTrackPoint const& point : storm.track) {
    if (points.empty() || point.time > points.back().time) points.push_back(point);
  }
  std::optional<StormApproach> nearest;
  for (std::size_t i = 1; i < points.size(); ++i) {
    Leg const leg{points[i - 1], points[i]};
    if (leg.to.time < now) continue;
    TropicalTrackPoint begin = leg.from;
    if (begin.time < now) {
      double const gone = std::chrono::duration<double>(now - begin.time) / (leg.to.time - leg.from.time);
      begin.coordinate = between(leg.from.coordinate, leg.to.coordinate, gone);
      begin.time = now;
    }
    double const fraction = nearestFraction(begin.coordinate, leg.to.coordinate, place);
    double const km = haversineKm(between(begin.coordinate, leg.to.coordinate, fraction), place);
    if (nearest && km >= nearest->km) continue;
    nearest = StormApproach{Leg{begin, leg.to}.timeAt(fraction), km, leg.from.windMs, leg.from.galeRadiusKm};
  }
  return nearest;
}

void sortByDistance(std::vector<TropicalStorm>& storms, Coordinate place) {
  std::ranges::stable_sort(
      storms, {}, [place](TropicalStorm const& storm) { return haversineKm(storm.coordinate, place); });
}

}  // namespace nimbara
