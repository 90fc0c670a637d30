// How strongly an earthquake is felt, by its magnitude and the distance from its focus. Pure.
#pragma once

#include <algorithm>
#include <cmath>

namespace nimbara {

/// From here on the Modified Mercalli scale says "weak": felt by some indoors.
inline constexpr double kFeltIntensity = 3;

/// The Modified Mercalli intensity on average ground: T. I. Allen, D. J. Wald and C. B. Worden, "Intensity
/// attenuation for active crustal regions", Journal of Seismology 16 (2012), for distances from the focus.
inline double feltIntensity(double magnitude, double km, double depthKm) {
  constexpr double kShallowest = 5;  // km, below which no focus counts
  double const way = std::hypot(km, std::max(depthKm, kShallowest));
  double const reach = -0.209 + 2.042 * std::exp(magnitude - 5);
  double const far = way > 50 ? 0.078 * std::log(way / 50) : 0;
  return 2.085 + 1.428 * magnitude - 1.402 * std::log(std::hypot(way, reach)) + far;
}

/// How far from the epicentre it reaches `kFeltIntensity`; 0 where nowhere.
inline double feltDistanceKm(double magnitude, double depthKm) {
  double least = 0;
  double most = 20'000;
  if (feltIntensity(magnitude, 0, depthKm) < kFeltIntensity) return 0;
  for (int i = 0; i < 40; ++i) {
    double const middle = (least + most) / 2;
    (feltIntensity(magnitude, middle, depthKm) >= kFeltIntensity ? least : most) = middle;
  }
  return least;
}

}  // namespace nimbara
