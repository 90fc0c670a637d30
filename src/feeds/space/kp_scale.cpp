#include "feeds/space/kp_scale.h"

#include "feeds/space/geomagnetic_latitude.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

constexpr double kHighest = 9;
/// The geomagnetic latitude down to which the aurora's oval reaches at Kp 0, and how much farther with each
/// step: the table of NOAA's Space Weather Prediction Center in its "Tips on viewing the aurora" (66.5°
/// to 48.1° at Kp 9).
constexpr double kQuietEdge = 66.5;
/// Light a hundred kilometres up and more stands above the horizon for places this far outside the oval;
/// degrees.
constexpr double kOverTheHorizon = 6;

}  // namespace

int kpLevel(double kp) {
  if (kp >= kHighest) return kKpLevels - 1;
  return std::clamp(static_cast<int>(std::lround(kp)) - 2, 0, kKpLevels - 2);
}

AuroraSight auroraSight(Coordinate place, double kp) {
  constexpr double kStep = (66.5 - 48.1) / 9;
  double const edge = kQuietEdge - kStep * std::clamp(kp, 0.0, kHighest);
  double const latitude = geomagneticLatitude(place);
  if (latitude >= edge) return AuroraSight::high;
  return latitude >= edge - kOverTheHorizon ? AuroraSight::low : AuroraSight::none;
}

}  // namespace nimbara
