#include "desktop/views/credits.h"

namespace nimbara {

namespace {

struct CreditRow {
  std::string_view kind;  ///< "data" or "library"
  std::string_view name;
  std::string_view purpose;  ///< the ending of a text's key
  std::string_view licence;
  std::string_view link;
};

constexpr CreditRow kCredits[] = {
    {"data", "Open-Meteo.com", "forecast", "CC BY 4.0", "https://open-meteo.com"},
    {"data", "MET Norway", "forecast", "CC BY 4.0, NLOD 2.0", "https://api.met.no/"},
    {"data", "wttr.in", "forecast", "", "https://wttr.in/"},
    {"data", "Apple Weather", "forecast", "",
     "https://developer.apple.com/weatherkit/data-source-attribution/"},
    {"data", "National Weather Service / NOAA", "warnings", "public domain", "https://www.weather.gov/"},
    {"data", "EUMETNET – MeteoAlarm", "warnings", "", "https://meteoalarm.org/"},
    {"data", "MeteoAlarm / EUMETNET", "regions", "CC0 1.0", "https://meteoalarm.org/"},
    {"data", "U.S. Geological Survey", "earthquakes", "public domain", "https://earthquake.usgs.gov/"},
    {"data", "NOAA Space Weather Prediction Center", "geomagnetic", "public domain",
     "https://www.swpc.noaa.gov/"},
    {"data", "NOAA National Hurricane Center", "storms", "public domain", "https://www.nhc.noaa.gov/"},
    {"data", "NASA FIRMS", "fires", "", "https://firms.modaps.eosdis.nasa.gov/"},
    {"data", "U.S. Department of State", "advisories", "public domain", "https://travel.state.gov/"},
    {"data", "CelesTrak, 18 SDS", "satellites", "", "https://celestrak.org"},
    {"data", "GeoNames", "places", "CC BY 4.0", "https://www.geonames.org"},
    {"data", "Natural Earth, world-atlas", "outlines", "public domain, ISC",
     "https://www.naturalearthdata.com/"},
    {"data", "country-coder", "countries", "ISC", "https://github.com/rapideditor/country-coder"},
    {"data", "OpenStreetMap, timezone-boundary-builder", "zones", "ODbL 1.0",
     "https://www.openstreetmap.org/copyright"},
    {"library", "Qt", "window", "LGPL 3", "https://www.qt.io"},
    {"library", "Qt Quick 3D", "scene", "GPL 3", "https://www.qt.io"},
    {"library", "libcurl", "network", "curl", "https://curl.se"},
    {"library", "simdjson", "json", "Apache 2.0", "https://simdjson.org"},
    {"library", "Expat", "xml", "MIT", "https://libexpat.github.io"},
    {"library", "ICU", "time", "ICU", "https://icu.unicode.org"},
    {"library", "OpenSSL", "sums", "Apache 2.0", "https://www.openssl.org"},
    {"library", "SQLite", "store", "public domain", "https://sqlite.org"},
    {"library", "fmt", "text", "MIT", "https://fmt.dev"},
    {"library", "CLI11", "commandLine", "BSD 3-Clause", "https://github.com/CLIUtils/CLI11"},
    {"library", "sdbus-c++", "bus", "LGPL 2.1", "https://github.com/Kistler-Group/sdbus-cpp"},
    {"library", "cpp-httplib", "demo", "MIT", "https://github.com/yhirose/cpp-httplib"},
};

CreditView creditOf(CreditRow const& row, ViewContext const& context) {
  CreditView view;
  view.name = row.name;
  view.what = context.text("desktop.credit." + std::string(row.purpose));
  if (!row.licence.empty()) view.what += "  ·  " + std::string(row.licence);
  view.link = row.link;
  view.kind = context.text("desktop.credit.kind." + std::string(row.kind));
  view.sentence = view.name + ": " + view.what;
  return view;
}

}  // namespace

std::vector<CreditView> creditViews(ViewContext const& context) {
  std::vector<CreditView> views;
  views.reserve(std::size(kCredits));
  for (CreditRow const& row : kCredits) {
    views.push_back(creditOf(row, context));
    views.back().isFirst = views.size() == 1 || views[views.size() - 2].kind != views.back().kind;
  }
  return views;
}

}  // namespace nimbara
