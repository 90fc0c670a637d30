#include "cli/pages/warning_json.h"

#include "feeds/alerts/official_sources.h"
#include "feeds/cap/warning_shape.h"

#include <algorithm>

namespace nimbara {

namespace {

void writePosition(JsonWriter& json, Coordinate corner) {
  json.beginList();
  json.separate();
  json.value(corner.longitude);
  json.separate();
  json.value(corner.latitude);
  json.endList();
}

/// One closed ring.
void writePolygon(JsonWriter& json, WarningPolygon polygon) {
  if (!(polygon.front() == polygon.back())) polygon.push_back(polygon.front());
  json.beginList();
  json.beginList();
  for (Coordinate const corner : polygon) {
    json.separate();
    writePosition(json, corner);
  }
  json.endList();
  json.endList();
}

void writeMultiPolygon(JsonWriter& json, std::vector<WarningPolygon> const& polygons) {
  json.beginObject();
  json.member("type", "MultiPolygon");
  json.key("coordinates");
  json.beginList();
  for (WarningPolygon const& polygon : polygons) {
    json.separate();
    writePolygon(json, polygon);
  }
  json.endList();
  json.endObject();
}

void writeCircle(JsonWriter& json, WarningCircle const& circle) {
  json.beginObject();
  json.member("type", "Point");
  json.key("coordinates");
  writePosition(json, circle.center);
  json.member("radiusKm", circle.radiusKm);
  json.endObject();
}

template <class Parse>
auto parsed(std::optional<std::vector<std::string>> const& texts, Parse parse) {
  std::vector<typename decltype(parse(std::string_view()))::value_type> shapes;
  for (std::string const& text : texts.value_or(std::vector<std::string>())) {
    if (auto shape = parse(text)) shapes.push_back(std::move(*shape));
  }
  return shapes;
}

void writeGeometry(JsonWriter& json, WeatherAlert const& warning) {
  auto const polygons = parsed(warning.polygons, parseWarningPolygon);
  auto const circles = parsed(warning.circles, parseWarningCircle);
  if (polygons.empty() && circles.empty()) return json.null();
  if (circles.empty()) return writeMultiPolygon(json, polygons);
  json.beginObject();
  json.member("type", "GeometryCollection");
  json.key("geometries");
  json.beginList();
  if (!polygons.empty()) {
    json.separate();
    writeMultiPolygon(json, polygons);
  }
  for (WarningCircle const& circle : circles) {
    json.separate();
    writeCircle(json, circle);
  }
  json.endList();
  json.endObject();
}

/// Who passes an official warning on; its source is the issuer itself where none of the known ones is.
void writeThrough(JsonWriter& json, WeatherAlert const& warning) {
  auto const sources = officialSources();
  auto const row = std::ranges::find_if(
      sources, [&](OfficialSource const& one) { return one.service == warning.source.value_or(""); });
  json.member("_nimbaraThrough", enumName(row == sources.end() ? Through::direct : row->through));
}

void writeWarning(JsonWriter& json, WeatherAlert const& warning, WarningGeometry geometry) {
  WeatherAlert plain = warning;
  plain.polygons.reset();
  plain.circles.reset();
  json.beginObject();
  jsonFields<WeatherAlert>.apply(
      [&](auto const&... fields) { (json.member(fields.key, plain.*(fields.member)), ...); });
  if (warning.isGovAlert) writeThrough(json, warning);
  if (geometry == WarningGeometry::asGeoJson) {
    json.key("geometry");
    writeGeometry(json, warning);
  }
  json.endObject();
}

}  // namespace

void writeWarnings(JsonWriter& json, std::vector<WeatherAlert> const& warnings, WarningGeometry geometry) {
  json.beginList();
  for (WeatherAlert const& warning : warnings) {
    json.separate();
    writeWarning(json, warning, geometry);
  }
  json.endList();
}

}  // namespace nimbara
