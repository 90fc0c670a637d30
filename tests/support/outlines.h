// Outlines of warning regions of a test's making, as GeoJSON.
#pragma once

#include "base/geodesy.h"

#include <fmt/format.h>

#include <string>
#include <vector>

namespace nimbara::test {

/// The ring of a rectangle, in degrees.
inline std::string rectangle(double south, double west, double north, double east) {
  return fmt::format("[[{1},{0}],[{3},{0}],[{3},{2}],[{1},{2}],[{1},{0}]]", south, west, north, east);
}

inline std::string feature(std::string const& code, std::string const& country, std::string const& name,
                           std::string const& rings, std::string const& type = "EMMA_ID") {
  return fmt::format(
      "{{\"type\":\"Feature\",\"properties\":{{\"code\":\"{}\",\"country\":\"{}\",\"name\":\"{}\","
      "\"type\":\"{}\"}},\"geometry\":{{\"type\":\"Polygon\",\"coordinates\":[{}]}}}}",
      code, country, name, type, rings);
}

inline std::string collection(std::vector<std::string> const& features) {
  return fmt::format("{{\"type\":\"FeatureCollection\",\"features\":[{}]}}", fmt::join(features, ","));
}

/// A square of that many degrees to each side.
inline std::string square(Coordinate center, double half) {
  return rectangle(center.latitude - half, center.longitude - half, center.latitude + half,
                   center.longitude + half);
}

}  // namespace nimbara::test
