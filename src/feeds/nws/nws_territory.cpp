#include "feeds/nws/nws_territory.h"

#include "gazetteer/gazetteer.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

constexpr std::string_view kCountries[] = {"US", "PR", "VI", "GU", "AS", "MP", "UM", "FM", "MH", "PW"};
/// Its offshore forecasts reach about 250 nautical miles from the coast.
constexpr double kOffshoreKm = 460;

/// Waters off Alaska, where towns are far apart; an estimate that keeps to this side of the line between
/// America and Asia.
struct Waters {
  double south, north, west, east;
};
constexpr std::array kAlaskanWaters{Waters{65.5, 74, -168.5, -141}, Waters{63, 65.5, -170, -161},
                                    Waters{60, 63, -173, -160}, Waters{49, 60, -180, -138},
                                    Waters{49, 54, 170, 180}};

bool isAlaskanWater(Coordinate coordinate) {
  return std::ranges::any_of(kAlaskanWaters, [&](Waters const& waters) {
    return waters.south <= coordinate.latitude && coordinate.latitude <= waters.north &&
           waters.west <= coordinate.longitude && coordinate.longitude <= waters.east;
  });
}

bool isNwsCountry(std::string_view code) {
  return std::ranges::count(kCountries, code) > 0;
}

}  // namespace

bool isNwsTerritory(std::string_view countryCode, Coordinate coordinate) {
  if (!countryCode.empty()) return isNwsCountry(countryCode);
  if (isAlaskanWater(coordinate)) return true;
  auto const nearest = nearestCity(coordinate);
  return nearest && nearest->km <= kOffshoreKm && isNwsCountry(nearest->city.countryCode);
}

}  // namespace nimbara
