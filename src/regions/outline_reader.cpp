#include "base/json/simdjson_dom.h"
#include "base/text/text.h"
#include "regions/country_code.h"
#include "regions/region_outline.h"
#include "regions/region_spelling.h"

#include <algorithm>
#include <optional>

namespace nimbara {

namespace {

namespace dom = simdjson::dom;

constexpr std::size_t kLongestText = 200;
constexpr std::size_t kFewestCorners = 3;

/// A property by either of its names; numbers as their digits.
std::string property(dom::object const& properties, std::initializer_list<std::string_view> names) {
  for (std::string_view const name : names) {
    dom::element element;
    if (properties[name].get(element) != simdjson::SUCCESS) continue;
    if (std::string_view text; element.get(text) == simdjson::SUCCESS)
      return oneLine(trimmed(text), kLongestText);
    if (std::int64_t number = 0; element.get(number) == simdjson::SUCCESS) return std::to_string(number);
  }
  return {};
}

std::string registryOf(dom::object const& properties) {
  if (std::string type = property(properties, {"type"}); !type.empty()) return type;
  if (std::string const level = property(properties, {"LEVL_CODE"}); !level.empty()) return "NUTS" + level;
  return std::string(kEmmaRegistry);
}

std::optional<OutlinePoint> pointOf(dom::element const& element) {
  dom::array numbers;
  if (element.get(numbers) != simdjson::SUCCESS) return std::nullopt;
  double longitude = 0;
  double latitude = 0;
  if (numbers.at(0).get(longitude) != simdjson::SUCCESS || numbers.at(1).get(latitude) != simdjson::SUCCESS ||
      !isValid({latitude, longitude})) {
    return std::nullopt;
  }
  return outlinePoint({latitude, longitude});
}

/// Adds the rings of a feature; false when any of them cannot be read.
class RingCollector {
 public:
  explicit RingCollector(std::vector<OutlineRing>& rings) : rings_(rings) {}

  Result<void, std::string> addGeometry(dom::object const& geometry) {
    std::string_view type;
    dom::array coordinates;
    if (geometry["type"].get(type) != simdjson::SUCCESS ||
        geometry["coordinates"].get(coordinates) != simdjson::SUCCESS) {
      return std::unexpected("a shape has no coordinates");
    }
    if (type == "Polygon") return addPolygon(coordinates);
    if (type != "MultiPolygon") return std::unexpected("a shape is not a polygon");
    for (dom::element const polygon : coordinates) {
      dom::array rings;
      if (polygon.get(rings) != simdjson::SUCCESS) return std::unexpected("a polygon has no rings");
      if (auto const added = addPolygon(rings); !added) return added;
    }
    return {};
  }

 private:
  Result<void, std::string> addPolygon(dom::array const& rings) {
    for (dom::element const element : rings) {
      dom::array corners;
      if (element.get(corners) != simdjson::SUCCESS) return std::unexpected("a ring has no corners");
      OutlineRing ring;
      for (dom::element const corner : corners) {
        auto const point = pointOf(corner);
        if (!point) return std::unexpected("a corner is not a coordinate");
        ring.push_back(*point);
      }
      keep(ring);
    }
    return {};
  }

  void keep(OutlineRing const& ring) {
    OutlineRing corners;
    std::ranges::unique_copy(ring, std::back_inserter(corners));
    while (corners.size() > 1 && corners.front() == corners.back()) corners.pop_back();
    if (corners.size() >= kFewestCorners) rings_.push_back(std::move(corners));
  }

  std::vector<OutlineRing>& rings_;
};

std::optional<RegionOutline> outlineOf(dom::element const& feature) {
  dom::object properties;
  dom::object geometry;
  if (feature["properties"].get(properties) != simdjson::SUCCESS ||
      feature["geometry"].get(geometry) != simdjson::SUCCESS) {
    return std::nullopt;
  }
  RegionOutline outline;
  outline.code = {registryOf(properties), property(properties, {"code", "NUTS_ID"})};
  outline.country = isoCountryCode(property(properties, {"country", "CNTR_CODE"}));
  outline.name =
      spelledRegionName(outline.code.code, property(properties, {"name", "NUTS_NAME", "NAME_LATN"}));
  if (outline.code.code.empty()) return std::nullopt;
  if (!RingCollector(outline.rings).addGeometry(geometry) || outline.rings.empty()) return std::nullopt;
  return outline;
}

/// Days, as "2026-02-20"; other texts are no edition that could be compared.
std::string editionOf(dom::element const& feature) {
  constexpr std::size_t kDayLength = 10;
  dom::object properties;
  if (feature["properties"].get(properties) != simdjson::SUCCESS) return {};
  std::string edition = property(properties, {"edition"});
  return edition.size() == kDayLength ? edition : std::string();
}

}  // namespace

Result<OutlineReading, std::string> readOutlines(std::string_view geoJson) {
  dom::parser parser;
  dom::element document;
  if (auto const error = parser.parse(geoJson.data(), geoJson.size()).get(document))
    return std::unexpected(std::string("it is not JSON: ") + simdjson::error_message(error));
  std::string_view type;
  dom::array features;
  if (document["type"].get(type) != simdjson::SUCCESS || type != "FeatureCollection" ||
      document["features"].get(features) != simdjson::SUCCESS) {
    return std::unexpected("it is not a feature collection");
  }
  OutlineReading reading;
  for (dom::element const feature : features) {
    reading.edition = std::max(reading.edition, editionOf(feature));
    if (auto outline = outlineOf(feature)) {
      reading.outlines.push_back(std::move(*outline));
    } else {
      ++reading.skipped;
    }
  }
  return reading;
}

}  // namespace nimbara
