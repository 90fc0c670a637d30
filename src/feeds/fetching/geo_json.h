// The areas of a GeoJSON geometry, as a member of a service's record. For sources that instantiate
// `decodeJson`; no part of any interface.
#pragma once

#include "base/geodesy.h"
#include "base/json/json_codec.h"

#include <vector>

namespace nimbara {

/// Outlines whose inside is what an odd number of crossings says: a hole is joined to its outline by a seam
/// that is walked there and back. Null and geometries without an inside give none.
struct GeoAreas {
  static constexpr std::size_t kMostPoints = 100'000;

  std::vector<std::vector<Coordinate>> outlines;
};

}  // namespace nimbara

namespace nimbara::json_detail {

inline bool read(dom::element element, Coordinate& out, Failure& failure) {
  dom::array position;
  bool const isRead = element.get(position) == simdjson::SUCCESS && position.size() >= 2 &&
                      position.at(0).get(out.longitude) == simdjson::SUCCESS &&
                      position.at(1).get(out.latitude) == simdjson::SUCCESS && isValid(out);
  return isRead || failure.because("a longitude and a latitude are expected");
}

inline bool readOutline(dom::element element, GeoAreas& out, Failure& failure) {
  std::vector<std::vector<Coordinate>> rings;
  if (!read(element, rings, failure)) return false;
  std::vector<Coordinate> outline;
  for (std::vector<Coordinate> const& ring : rings) {
    outline.insert(outline.end(), ring.begin(), ring.end());
    bool const isHole = &ring != &rings.front();
    if (isHole && !outline.empty()) outline.push_back(Coordinate(outline.front()));
  }
  std::size_t points = outline.size();
  for (auto const& other : out.outlines) points += other.size();
  if (points > GeoAreas::kMostPoints) return failure.because("it has too many points");
  constexpr std::size_t kTriangle = 3;
  if (outline.size() >= kTriangle) out.outlines.push_back(std::move(outline));
  return true;
}

inline bool read(dom::element element, GeoAreas& out, Failure& failure) {
  dom::object geometry;
  if (element.is_null()) return true;
  if (element.get(geometry) != simdjson::SUCCESS) return failure.because("a geometry is expected");
  std::string_view type;
  dom::array parts;
  if (geometry["type"].get(type) != simdjson::SUCCESS) return failure.because("a geometry is expected");
  bool const isOne = type == "Polygon";
  if (!isOne && type != "MultiPolygon") return true;
  if (geometry["coordinates"].get(parts) != simdjson::SUCCESS) return failure.because("corners are expected");
  if (isOne) return readOutline(geometry["coordinates"].value_unsafe(), out, failure);
  for (dom::element const part : parts) {
    if (!readOutline(part, out, failure)) return false;
  }
  return true;
}

}  // namespace nimbara::json_detail
