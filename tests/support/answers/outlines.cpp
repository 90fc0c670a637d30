#include "support/answers/outlines.h"

namespace nimbara::test {

std::string rectangle(double south, double west, double north, double east) {
  return fmt::format("[[{1},{0}],[{3},{0}],[{3},{2}],[{1},{2}],[{1},{0}]]", south, west, north, east);
}

std::string feature(std::string const& code, std::string const& country, std::string const& name,
                    std::string const& rings, std::string const& type) {
  return fmt::format(
      "{{\"type\":\"Feature\",\"properties\":{{\"code\":\"{}\",\"country\":\"{}\",\"name\":\"{}\","
      "\"type\":\"{}\"}},\"geometry\":{{\"type\":\"Polygon\",\"coordinates\":[{}]}}}}",
      code, country, name, type, rings);
}

std::string collection(std::vector<std::string> const& features) {
  return fmt::format("{{\"type\":\"FeatureCollection\",\"features\":[{}]}}", fmt::join(features, ","));
}

std::string square(Coordinate center, double half) {
  return rectangle(center.latitude - half, center.longitude - half, center.latitude + half,
                   center.longitude + half);
}

}  // namespace nimbara::test
