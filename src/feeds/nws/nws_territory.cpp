#include "feeds/nws/nws_territory.h"

#include "gazetteer/gazetteer.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr std::string_view kCountries[] = {"US", "PR", "VI", "GU", "AS", "MP", "UM", "FM", "MH", "PW"};
/// Its offshore forecasts reach about 250 nautical miles from the coast.
constexpr double kOffshoreKm = 460;

bool isNwsCountry(std::string_view code) {
  return std::ranges::count(kCountries, code) > 0;
}

}  // namespace

bool isNwsTerritory(std::string_view countryCode, Coordinate coordinate) {
  if (!countryCode.empty()) return isNwsCountry(countryCode);
  auto const nearest = nearestCity(coordinate);
  return nearest && nearest->km <= kOffshoreKm && isNwsCountry(nearest->city.countryCode);
}

}  // namespace nimbara
