// The outside services, one row each: all that the program says of a service or decides by its name is made
// from its row — the directory of addresses, its settings, `doctor`, credits, the settings page, the demo's
// faults and the table in docs/services.md, to which a test holds it. A new service is a case and a row here.
#pragma once

#include "base/enum_names.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace nimbara {

enum class Service {
  openMeteo,
  openMeteoGeocoding,
  appleWeather,
  yrNo,
  wttrIn,
  nws,
  swpc,
  usgs,
  celestrak,
  feedServer,
  meteoAlarm,
  meteoAlarmRegions,
  wmoWarnings,
  fpas,
  eccc,
  metAlerts,
  brightSky,
  airQuality,
  nhc,
  nhcMaps,
  firms,
  travelAdvisories,
  lightning,
  languageModel
};

/// Whom the page of credits names for what a service sends.
struct SourceCredit {
  std::string_view name;
  std::string_view purpose;  ///< the ending of a text's key: "desktop.credit.forecast"
  std::string_view licence;
  std::string_view link;
};

struct ServiceRow {
  Service service;
  std::string_view name;     ///< in settings and documents; "NAMEHost" and "NAMEApiKey" are its settings
  std::string_view host;     ///< empty: asked only where the user names an address
  std::string_view asksFor;  ///< this and the next four are cells of docs/services.md
  std::string_view terms;
  std::string_view period;  ///< how often it is asked at most
  std::string_view credit;
  std::string_view without;      ///< what is missing when it does not answer
  bool takesKey = false;         ///< the settings page offers a place for a key
  bool needsKey = false;         ///< not asked without one
  bool isOnThisMachine = false;  ///< the user's own: neither the demo nor `--services` stands in for it
  SourceCredit source = {};      ///< none where another service's row names it
};

inline constexpr auto kServices = std::to_array<ServiceRow>({
    {.service = Service::openMeteo,
     .name = "openMeteo",
     .host = "https://api.open-meteo.com",
     .asksFor = "`/v1/forecast`",
     .terms = "CC BY 4.0; without a key for non-commercial use",
     .period = "15 min",
     .credit = "Weather data by Open-Meteo.com",
     .without = "the next provider is used",
     .takesKey = true,
     .source = {"Open-Meteo.com", "forecast", "CC BY 4.0", "https://open-meteo.com"}},
    {.service = Service::openMeteoGeocoding,
     .name = "openMeteoGeocoding",
     .host = "https://geocoding-api.open-meteo.com",
     .asksFor = "`/v1/search`",
     .terms = "CC BY 4.0; data of GeoNames",
     .period = "on request",
     .credit = "Open-Meteo.com, GeoNames",
     .without = "places are found in the offline list of cities",
     .takesKey = true},
    {.service = Service::appleWeather,
     .name = "appleWeather",
     .host = "https://weatherkit.apple.com",
     .asksFor = "`/api/v1/weather/`",
     .terms = "contract with Apple, the user's own key",
     .period = "15 min",
     .credit = "Apple Weather with its legal link",
     .without = "not asked without a key; the next provider is used",
     .source = {"Apple Weather", "forecast", "",
                "https://developer.apple.com/weatherkit/data-source-attribution/"}},
    {.service = Service::yrNo,
     .name = "yrNo",
     .host = "https://api.met.no",
     .asksFor = "`/weatherapi/locationforecast/2.0/complete` and `/weatherapi/nowcast/2.0/complete`",
     .terms = "CC BY 4.0, NLOD 2.0; a User-Agent with an address",
     .period = "as `Expires` says, at least 15 min; the nowcast 5 min",
     .credit = "Data from MET Norway",
     .without = "the next provider is used",
     .source = {"MET Norway", "forecast", "CC BY 4.0, NLOD 2.0", "https://api.met.no/"}},
    {.service = Service::wttrIn,
     .name = "wttrIn",
     .host = "https://wttr.in",
     .asksFor = "`/LAT,LON?format=j1`",
     .terms = "none stated",
     .period = "15 min",
     .credit = "Weather data by wttr.in",
     .without = "the last cached forecast is shown with its age",
     .source = {"wttr.in", "forecast", "", "https://wttr.in/"}},
    {.service = Service::nws,
     .name = "nws",
     .host = "https://api.weather.gov",
     .asksFor = "`/alerts/active`",
     .terms = "public domain; a User-Agent with an address",
     .period = "2 min a program",
     .credit = "National Weather Service / NOAA",
     .without = "the warnings of the United States could not be checked",
     .source = {"National Weather Service / NOAA", "warnings", "public domain", "https://www.weather.gov/"}},
    {.service = Service::swpc,
     .name = "swpc",
     .host = "https://services.swpc.noaa.gov",
     .asksFor = "`/products/noaa-planetary-k-index.json` and its forecast",
     .terms = "public domain",
     .period = "30 min a program",
     .credit = "NOAA Space Weather Prediction Center",
     .without = "no K index",
     .source = {"NOAA Space Weather Prediction Center", "geomagnetic", "public domain",
                "https://www.swpc.noaa.gov/"}},
    {.service = Service::usgs,
     .name = "usgs",
     .host = "https://earthquake.usgs.gov",
     .asksFor = "`/earthquakes/feed/v1.0/summary/all_day.geojson`",
     .terms = "public domain",
     .period = "60 s",
     .credit = "U.S. Geological Survey",
     .without = "the last list of earthquakes, up to a day old",
     .source = {"U.S. Geological Survey", "earthquakes", "public domain", "https://earthquake.usgs.gov/"}},
    {.service = Service::celestrak,
     .name = "celestrak",
     .host = "https://celestrak.org",
     .asksFor = "`/NORAD/elements/gp.php` with `GROUP` and `FORMAT=CSV`",
     .terms = "none stated; one download per group and update",
     .period = "6 h a group, never again within 2 h",
     .credit = "CelesTrak, 18 SDS",
     .without = "the last cached orbits with their age",
     .source = {"CelesTrak, 18 SDS", "satellites", "", "https://celestrak.org"}},
    {.service = Service::feedServer,
     .name = "feedServer",
     .host = "",
     .asksFor = "`/api/feed.php`",
     .terms = "the user's own relay, see [feed-server.md](feed-server.md)",
     .period = "5 min; 6 h a group",
     .credit = "as usgs and celestrak",
     .without = "usgs and celestrak are asked directly"},
    {.service = Service::meteoAlarm,
     .name = "meteoAlarm",
     .host = "https://feeds.meteoalarm.org",
     .asksFor = "`/feeds/meteoalarm-legacy-atom-COUNTRY`",
     .terms = "CC BY 4.0 with conditions: unaltered, with the issuing service, time of issue and link",
     .period = "5 min a country",
     .credit = "EUMETNET – MeteoAlarm and the national service",
     .without = "the warnings of Europe could not be checked",
     .source = {"EUMETNET – MeteoAlarm", "warnings", "", "https://meteoalarm.org/"}},
    {.service = Service::meteoAlarmRegions,
     .name = "meteoAlarmRegions",
     .host = "https://gitlab.com",
     .asksFor = "`/meteoalarm-pm-group/documents`",
     .terms = "CC0",
     .period = "on request",
     .credit = "EUMETNET – MeteoAlarm",
     .without = "the included outlines are used",
     .source = {"MeteoAlarm / EUMETNET", "regions", "CC0 1.0", "https://meteoalarm.org/"}},
    {.service = Service::wmoWarnings,
     .name = "wmo",
     .host = "https://severeweather.wmo.int",
     .asksFor = "`/f/wfs`, `/g/wfs`, `/v2/json/`, `/json/wmo_member.json` and `/v2/cap-alerts/`",
     .terms = "disclaimer of the WMO, no licence named; with the issuing service, for the user alone",
     .period = "10 min a place and program; a message once",
     .credit = "the issuing service, through the WMO Severe Weather Information Centre",
     .without = "fpas is asked",
     .source = {"WMO Severe Weather Information Centre", "warnings", "", "https://severeweather.wmo.int/"}},
    {.service = Service::fpas,
     .name = "fpas",
     .host = "https://alerts.kde.org",
     .asksFor = "`/alert/area`, `/alert/UUID` and `/sources/`",
     .terms = "free, a trial run by volunteers; the messages remain the issuers'",
     .period = "10 min a place and program, where wmo failed or it is chosen; a message once",
     .credit = "the issuing service, through the FOSS Public Alert Server",
     .without = "the warnings could not be checked",
     .source = {"FOSS Public Alert Server", "warnings", "", "https://alerts.kde.org/"}},
    {.service = Service::eccc,
     .name = "eccc",
     .host = "https://api.weather.gc.ca",
     .asksFor = "`/collections/weather-alerts/items`",
     .terms = "Data Server End-use Licence of Environment and Climate Change Canada",
     .period = "10 min a place and program",
     .credit =
         "Contains information licensed under the Data Server End-use Licence of Environment and Climate "
         "Change Canada",
     .without = "the warnings of Canada could not be checked",
     .source = {"Environment and Climate Change Canada", "warnings", "Data Server End-use Licence",
                "https://eccc-msc.github.io/open-data/licence/readme_en/"}},
    {.service = Service::metAlerts,
     .name = "metAlerts",
     .host = "https://api.met.no",
     .asksFor = "`/weatherapi/metalerts/2.0/current.json`",
     .terms = "CC BY 4.0, NLOD 2.0; a User-Agent with an address",
     .period = "10 min a place and program",
     .credit = "Data from MET Norway",
     .without = "wmo is asked",
     .source = {"MET Norway, MetAlerts", "warnings", "CC BY 4.0, NLOD 2.0", "https://api.met.no/"}},
    {.service = Service::brightSky,
     .name = "brightSky",
     .host = "https://api.brightsky.dev",
     .asksFor = "`/alerts` and `/radar`",
     .terms = "free for any purpose; data under the terms of Deutscher Wetterdienst",
     .period = "10 min a place and program, where it is chosen; the radar 5 min",
     .credit = "Source: Deutscher Wetterdienst",
     .without = "the warnings could not be checked",
     .source = {"Deutscher Wetterdienst, through Bright Sky", "warnings", "", "https://brightsky.dev/"}},
    {.service = Service::airQuality,
     .name = "airQuality",
     .host = "https://air-quality-api.open-meteo.com",
     .asksFor = "`/v1/air-quality`",
     .terms = "CC BY 4.0; without a key for non-commercial use",
     .period = "1 h a program",
     .credit = "Open-Meteo.com, CAMS",
     .without = "no air quality",
     .takesKey = true},
    {.service = Service::nhc,
     .name = "nhc",
     .host = "https://www.nhc.noaa.gov",
     .asksFor = "`/CurrentStorms.json`",
     .terms = "public domain",
     .period = "15 min a program",
     .credit = "NOAA National Hurricane Center",
     .without = "tropical storms could not be checked",
     .source = {"NOAA National Hurricane Center", "storms", "public domain", "https://www.nhc.noaa.gov/"}},
    {.service = Service::nhcMaps,
     .name = "nhcMaps",
     .host = "https://mapservices.weather.noaa.gov",
     .asksFor = "`/tropical/rest/services/tropical/NHC_tropical_weather/MapServer`",
     .terms = "public domain",
     .period = "15 min a program",
     .credit = "NOAA National Hurricane Center",
     .without = "storms without their tracks"},
    {.service = Service::firms,
     .name = "firms",
     .host = "https://firms.modaps.eosdis.nasa.gov",
     .asksFor = "`/api/area/csv/`",
     .terms = "free, the user's own key",
     .period = "15 min a program",
     .credit = "NASA FIRMS",
     .without = "not asked without a key",
     .takesKey = true,
     .needsKey = true,
     .source = {"NASA FIRMS", "fires", "", "https://firms.modaps.eosdis.nasa.gov/"}},
    {.service = Service::travelAdvisories,
     .name = "travelAdvisories",
     .host = "https://cadataapi.state.gov",
     .asksFor = "`/api/TravelAdvisories`",
     .terms = "public domain",
     .period = "6 h",
     .credit = "U.S. Department of State",
     .without = "advisories could not be checked",
     .source = {"U.S. Department of State", "advisories", "public domain", "https://travel.state.gov/"}},
    {.service = Service::lightning,
     .name = "lightning",
     .host = "",
     .asksFor = "`/lightning/strikes`",
     .terms = "the user's own source, see [lightning-source.md](lightning-source.md)",
     .period = "60 s a program",
     .credit = "as its owner says",
     .without = "no source is set"},
    {.service = Service::languageModel,
     .name = "languageModel",
     .host = "",
     .asksFor = "`/v1/chat/completions`",
     .terms = "the user's own, on the user's own computer",
     .period = "with each summary",
     .credit = "none",
     .without = "summaries use a template",
     .takesKey = true,
     .isOnThisMachine = true},
});

template <>
inline constexpr auto enumNames<Service> = [] {
  std::array<std::string_view, kServices.size()> names;
  for (std::size_t i = 0; i < names.size(); ++i) names[i] = kServices[i].name;
  return names;
}();
static_assert(enumNamesComplete(Service::languageModel));

constexpr ServiceRow const& rowOf(Service service) {
  return kServices[static_cast<std::size_t>(service)];
}
static_assert([] {
  for (ServiceRow const& row : kServices) {
    if (&rowOf(row.service) != &row) return false;
  }
  return true;
}());

/// An http or https address without the slash at its end; nothing for other texts.
std::optional<std::string> normalizedBase(std::string_view address);

}  // namespace nimbara
