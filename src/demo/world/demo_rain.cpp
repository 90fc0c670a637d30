#include "demo/world/demo_rain.h"

#include "demo/world/demo_places.h"
#include "demo/world/demo_weather.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

constexpr double kTownReachKm = 45;

double eased(double part) {
  return part * part * (3 - 2 * part);
}

}  // namespace

double DemoRain::at(Coordinate place) {
  auto const south = static_cast<int>(std::floor(std::clamp(place.latitude, -89.0, 88.999)));
  auto const west = static_cast<int>(std::floor(place.longitude));
  double const up = eased(place.latitude - south);
  double const right = eased(place.longitude - west);
  double const below = ofNode(south, west) * (1 - right) + ofNode(south, west + 1) * right;
  double const above = ofNode(south + 1, west) * (1 - right) + ofNode(south + 1, west + 1) * right;
  double rain = below * (1 - up) + above * up;
  for (DemoPlace const& town : demoPlaces()) {
    if (std::abs(town.coordinate.latitude - place.latitude) > 1) continue;
    double const km = haversineKm(town.coordinate, place);
    if (km >= kTownReachKm) continue;
    auto const known = towns_.try_emplace(town.id, 0.0);
    if (known.second) known.first->second = demoWeather(town.coordinate, instant_).precipitation;
    double const weight = eased(1 - km / kTownReachKm);
    rain = rain * (1 - weight) + known.first->second * weight;
  }
  return rain;
}

double DemoRain::ofNode(int latitude, int longitude) {
  int const east = longitude > 179 ? longitude - 360 : longitude < -180 ? longitude + 360 : longitude;
  auto const known = nodes_.try_emplace({latitude, east}, 0.0);
  if (known.second) {
    known.first->second =
        demoWeather({static_cast<double>(latitude), static_cast<double>(east)}, instant_).precipitation;
  }
  return known.first->second;
}

}  // namespace nimbara
