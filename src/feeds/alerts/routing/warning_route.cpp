#include "feeds/alerts/routing/warning_route.h"

#include "feeds/nws/nws_territory.h"
#include "feeds/regions/meteo_alarm_countries.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

/// From a town of Norway's, as far as the offshore waters of the National Weather Service; an estimate.
constexpr double kNorwegianSeaKm = 460;

/// A rule and what it leads to; the first that fits a place decides.
struct Leg {
  bool (*fits)(GovAlertPlace const& place, std::string_view country);
  std::vector<std::string_view> route;   ///< the usual one
  std::vector<std::string_view> others;  ///< that may be chosen, beside the two of the world
};

bool isOf(std::string_view country, std::string_view code) {
  return country == code;
}

/// Offshore areas of the Norwegian forecasts that reach farther, as its service draws them.
struct Waters {
  double south, north, west, east;
};
constexpr std::array kNorwegianWaters{Waters{65, 70, -5, 10}, Waters{70, 72.5, -10, 10},
                                      Waters{72.5, 80, -10, 30}, Waters{80, 81.6, 10, 31},
                                      Waters{69.25, 72.5, 31, 37}};

bool isNorwegianSea(GovAlertPlace const& place, std::string_view country) {
  if (!country.empty()) return false;
  auto const [latitude, longitude] = place.coordinate;
  bool const isDrawn = std::ranges::any_of(kNorwegianWaters, [&](Waters const& waters) {
    return waters.south <= latitude && latitude <= waters.north && waters.west <= longitude &&
           longitude <= waters.east;
  });
  if (isDrawn) return true;
  auto const nearest = nearestCity(place.coordinate);
  if (!nearest || nearest->km > kNorwegianSeaKm) return false;
  return isOf(nearest->city.countryCode, "NO") || isOf(nearest->city.countryCode, "SJ");
}

std::vector<Leg> const& legs() {
  using Place = GovAlertPlace;
  using Country = std::string_view;
  static std::vector<Leg> const table{
      {[](Place const& place, Country country) { return isNwsTerritory(country, place.coordinate); },
       {"nws"},
       {}},
      {[](Place const&, Country country) { return isOf(country, "CA"); }, {"eccc"}, {}},
      {[](Place const&, Country country) { return isOf(country, "SJ"); },
       {"metalerts", "wmo", "fpas"},
       {"meteoalarm"}},
      {isNorwegianSea, {"metalerts", "wmo", "fpas"}, {}},
      {[](Place const&, Country country) { return isOf(country, "NO"); }, {"meteoalarm"}, {"metalerts"}},
      {[](Place const&, Country country) { return isOf(country, "DE"); }, {"meteoalarm"}, {"brightsky"}},
      {[](Place const&, Country country) { return meteoAlarmFeedName(country).has_value(); },
       {"meteoalarm"},
       {}},
      {[](Place const&, Country) { return true; }, {"wmo", "fpas"}, {}},
  };
  return table;
}

Leg const& legOf(GovAlertPlace const& place) {
  std::string const country = isoCountryCode(place.countryCode);
  return *std::ranges::find_if(legs(), [&](Leg const& leg) { return leg.fits(place, country); });
}

void addNew(std::vector<std::string_view>& names, std::string_view name) {
  if (std::ranges::find(names, name) == names.end()) names.push_back(name);
}

}  // namespace

std::vector<std::string_view> possibleSources(GovAlertPlace const& place) {
  if (!isValid(place.coordinate)) return {};
  Leg const& leg = legOf(place);
  std::vector<std::string_view> names{leg.route.front()};
  for (std::string_view const name : leg.others) addNew(names, name);
  for (std::string_view const name : {"wmo", "fpas"}) addNew(names, name);
  return names;
}

std::vector<std::string_view> warningRoute(GovAlertPlace const& place) {
  auto const possible = possibleSources(place);
  if (possible.empty()) return {};
  auto const chosen = std::ranges::find(possible, place.chosenSource);
  std::vector<std::string_view> const& usual = legOf(place).route;
  if (chosen == possible.end() || *chosen == usual.front()) return usual;
  if (*chosen == "wmo") return {"wmo", "fpas"};
  if (*chosen == "fpas") return {"fpas", "wmo"};
  return {*chosen};
}

}  // namespace nimbara
