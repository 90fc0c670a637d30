#include "feeds/space/geomagnetic_latitude.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace nimbara {

namespace {

constexpr double kRadians = std::numbers::pi / 180;

/// Earth's radii from its centre, and nanotesla.
using Vector = std::array<double, 3>;

Vector sum(Vector const& a, double factor, Vector const& b) {
  return {a[0] + factor * b[0], a[1] + factor * b[1], a[2] + factor * b[2]};
}

double length(Vector const& a) {
  return std::hypot(a[0], a[1], a[2]);
}

/// Gauss coefficients of a degree and order.
struct Coefficient {
  int degree, order;
  double g, h;
};

constexpr Coefficient kField[] = {
    {1, 0, -29404.8, 0},     {1, 1, -1450.9, 4652.5}, {2, 0, -2499.6, 0},
    {2, 1, 2982.0, -2991.6}, {2, 2, 1677.0, -734.6},  {3, 0, 1363.2, 0},
    {3, 1, -2381.2, -82.1},  {3, 2, 1236.2, 241.9},   {3, 3, 525.7, -543.4},
};

/// Schmidt's functions of the colatitude with cosine c and sine s, in the order of the coefficients.
std::array<double, std::size(kField)> schmidt(double c, double s) {
  double const r3 = std::sqrt(3.0), r6 = std::sqrt(6.0), r10 = std::sqrt(10.0), r15 = std::sqrt(15.0);
  return {c,
          s,
          (3 * c * c - 1) / 2,
          r3 * s * c,
          r3 / 2 * s * s,
          (5 * c * c * c - 3 * c) / 2,
          r6 / 4 * s * (5 * c * c - 1),
          r15 / 2 * s * s * c,
          r10 / 4 * s * s * s};
}

/// Their derivatives by the colatitude.
std::array<double, std::size(kField)> schmidtSlopes(double c, double s) {
  double const r3 = std::sqrt(3.0), r6 = std::sqrt(6.0), r10 = std::sqrt(10.0), r15 = std::sqrt(15.0);
  return {-s,
          c,
          -3 * c * s,
          r3 * (c * c - s * s),
          r3 * s * c,
          (-15 * c * c * s + 3 * s) / 2,
          r6 / 4 * (c * (5 * c * c - 1) - 10 * c * s * s),
          r15 / 2 * (2 * s * c * c - s * s * s),
          r10 / 4 * 3 * s * s * c};
}

Vector fieldAt(Vector const& at) {
  double const r = length(at);
  double const c = at[2] / r;
  double const s = std::max(std::sqrt(1 - c * c), 1e-9);  // the axis itself has no longitude
  double const longitude = std::atan2(at[1], at[0]);
  auto const values = schmidt(c, s);
  auto const slopes = schmidtSlopes(c, s);
  double up = 0, south = 0, east = 0;
  for (std::size_t i = 0; i < std::size(kField); ++i) {
    auto const& [degree, order, g, h] = kField[i];
    double const fade = std::pow(r, -(degree + 2));
    double const cosine = std::cos(order * longitude), sine = std::sin(order * longitude);
    double const along = g * cosine + h * sine;
    up += (degree + 1) * fade * along * values[i];
    south -= fade * along * slopes[i];
    east += fade * order * (g * sine - h * cosine) * values[i] / s;
  }
  double const cosLongitude = std::cos(longitude), sinLongitude = std::sin(longitude);
  double const outwards = up * s + south * c;
  return {outwards * cosLongitude - east * sinLongitude, outwards * sinLongitude + east * cosLongitude,
          up * c - south * s};
}

/// One step of `size` along the line of force, by the midpoint rule.
Vector followed(Vector const& at, double size) {
  Vector const here = fieldAt(at);
  Vector const middle = fieldAt(sum(at, size / 2 / length(here), here));
  return sum(at, size / length(middle), middle);
}

/// The farthest that the line of force through a point gets from Earth's centre.
double highestOf(Vector at) {
  constexpr double kFarthest = 60;  // from near the poles; beyond, the sun's wind rules
  constexpr double kStep = 0.01;    // of the distance
  Vector const field = fieldAt(at);
  bool const leads = field[0] * at[0] + field[1] * at[1] + field[2] * at[2] > 0;
  double highest = length(at);
  while (highest < kFarthest) {
    at = followed(at, (leads ? kStep : -kStep) * highest);
    if (length(at) <= highest) break;
    highest = length(at);
  }
  return highest;
}

}  // namespace

double geomagneticLatitude(Coordinate place) {
  constexpr double kBase = 1 + 110.0 / kEarthRadiusKm;  // where auroras begin
  double const latitude = place.latitude * kRadians;
  double const longitude = place.longitude * kRadians;
  Vector const foot{kBase * std::cos(latitude) * std::cos(longitude),
                    kBase * std::cos(latitude) * std::sin(longitude), kBase * std::sin(latitude)};
  return std::acos(std::sqrt(std::min(1.0, kBase / highestOf(foot)))) / kRadians;
}

}  // namespace nimbara
