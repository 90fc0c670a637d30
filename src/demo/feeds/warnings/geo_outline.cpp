#include "demo/feeds/warnings/geo_outline.h"

namespace nimbara {

namespace {

using Ring = std::vector<std::vector<double>>;

Ring ringOf(std::vector<Coordinate> const& outline) {
  Ring ring;
  for (Coordinate const corner : outline) ring.push_back({corner.longitude, corner.latitude});
  return ring;
}

}  // namespace

void writeGeometry(JsonWriter& json, std::vector<std::vector<Coordinate>> const& outlines) {
  std::vector<std::vector<Ring>> polygons;
  polygons.reserve(outlines.size());
  for (auto const& outline : outlines) polygons.push_back({ringOf(outline)});
  json.beginObject();
  json.member("type", polygons.size() == 1 ? "Polygon" : "MultiPolygon");
  json.key("coordinates");
  polygons.size() == 1 ? json.value(polygons.front()) : json.value(polygons);
  json.endObject();
}

}  // namespace nimbara
