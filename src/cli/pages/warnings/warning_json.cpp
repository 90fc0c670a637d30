#include "cli/pages/warnings/warning_json.h"

#include "feeds/alerts/alert_outlines.h"
#include "feeds/alerts/routing/official_sources.h"

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

void writeRing(JsonWriter& json, WarningPolygon const& ring) {
  json.beginList();
  for (Coordinate const corner : ring) {
    json.separate();
    writePosition(json, corner);
  }
  if (!(ring.front() == ring.back())) {
    json.separate();
    writePosition(json, ring.front());
  }
  json.endList();
}

void writePolygon(JsonWriter& json, OutlinedArea const& area) {
  json.beginList();
  writeRing(json, area.outer);
  for (WarningPolygon const& hole : area.holes) {
    json.separate();
    writeRing(json, hole);
  }
  json.endList();
}

void writeMultiPolygon(JsonWriter& json, std::vector<OutlinedArea> const& areas) {
  json.beginObject();
  json.member("type", "MultiPolygon");
  json.key("coordinates");
  json.beginList();
  for (OutlinedArea const& area : areas) {
    json.separate();
    writePolygon(json, area);
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

void writeShapes(JsonWriter& json, std::vector<OutlinedArea> const& areas,
                 std::vector<WarningCircle> const& circles) {
  if (circles.empty()) return writeMultiPolygon(json, areas);
  json.beginObject();
  json.member("type", "GeometryCollection");
  json.key("geometries");
  json.beginList();
  if (!areas.empty()) {
    json.separate();
    writeMultiPolygon(json, areas);
  }
  for (WarningCircle const& circle : circles) {
    json.separate();
    writeCircle(json, circle);
  }
  json.endList();
  json.endObject();
}

GeometryState withoutShape(WeatherAlert const& warning) {
  if (!warning.isGovAlert && !warning.isTravelAdvisory) return GeometryState::place;
  bool const hasCodes =
      warning.messages && std::ranges::any_of(*warning.messages, [](WarningMessage const& message) {
        return !message.codes.empty();
      });
  return hasCodes ? GeometryState::codes : GeometryState::names;
}

void writeGeometry(JsonWriter& json, WeatherAlert const& warning, RegionMap const* outlines) {
  std::vector<OutlinedArea> areas;
  for (WarningPolygon& polygon : parsed(warning.polygons, parseWarningPolygon))
    areas.push_back({std::move(polygon), {}});
  auto const circles = parsed(warning.circles, parseWarningCircle);
  bool const isDrawn = !areas.empty() || !circles.empty();
  if (!isDrawn) {
    for (RegionRings& region : regionOutlines(warning, outlines))
      std::ranges::move(partsOf(std::move(region)), std::back_inserter(areas));
  }
  bool const isOutlined = isDrawn || !areas.empty();
  json.key("geometry");
  if (isOutlined) {
    writeShapes(json, areas, circles);
  } else {
    json.null();
  }
  GeometryState const outlined = isDrawn ? GeometryState::drawn : GeometryState::regions;
  json.member("geometryState", enumName(isOutlined ? outlined : withoutShape(warning)));
}

/// Who passes an official warning on; its source is the issuer itself where none of the known ones is.
void writeThrough(JsonWriter& json, WeatherAlert const& warning) {
  auto const sources = officialSources();
  auto const row = std::ranges::find_if(
      sources, [&](OfficialSource const& one) { return one.service == warning.source.value_or(""); });
  json.member("_nimbaraThrough", enumName(row == sources.end() ? Through::direct : row->through));
}

void writeWarning(JsonWriter& json, WeatherAlert const& warning, WarningGeometry geometry,
                  RegionMap const* outlines) {
  WeatherAlert plain = warning;
  plain.polygons.reset();
  plain.circles.reset();
  json.beginObject();
  jsonFields<WeatherAlert>.apply(
      [&](auto const&... fields) { (json.member(fields.key, plain.*(fields.member)), ...); });
  if (warning.isGovAlert) writeThrough(json, warning);
  if (geometry == WarningGeometry::asGeoJson) writeGeometry(json, warning, outlines);
  json.endObject();
}

}  // namespace

void writeWarnings(JsonWriter& json, std::vector<WeatherAlert> const& warnings, WarningGeometry geometry,
                   RegionMap const* outlines) {
  json.beginList();
  for (WeatherAlert const& warning : warnings) {
    json.separate();
    writeWarning(json, warning, geometry, outlines);
  }
  json.endList();
}

}  // namespace nimbara
