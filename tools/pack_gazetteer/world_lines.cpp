#include "world_lines.h"

#include "base/json/simdjson_dom.h"

#include <algorithm>
#include <functional>
#include <stdexcept>

namespace nimbara::gazetteer {

namespace {

using Element = simdjson::dom::element;
using Array = simdjson::dom::array;

class Topology {
 public:
  explicit Topology(Element root) : root_(root) {
    Element const scale = root["transform"]["scale"];
    Element const origin = root["transform"]["translate"];
    for (Element const arc : Array(root["arcs"])) arcs_.push_back(readArc(arc, scale, origin));
  }

  WorldLines lines() const {
    WorldLines lines;
    forEachRing("land", [&](Array const& arcs, bool /*hasCode*/) {
      for (Ring& part : cutAtDateLine(ringOf(arcs))) lines.coasts.push_back(std::move(part));
    });
    std::vector<int> uses(arcs_.size());
    std::vector<bool> isDisputed(arcs_.size());
    forEachRing("countries", [&](Array const& arcs, bool hasCode) {
      for (Element const arc : arcs) {
        std::size_t const number = numberOf(std::int64_t(arc));
        ++uses.at(number);
        if (!hasCode) isDisputed[number] = true;
      }
    });
    for (std::size_t i = 0; i < arcs_.size(); ++i) {
      if (uses[i] > 1) (isDisputed[i] ? lines.disputed : lines.borders).push_back(arcs_[i]);
    }
    return lines;
  }

  Waters waters() const {
    Waters waters;
    forEachRing("lakes", [&](Array const& arcs, bool /*hasCode*/) { waters.lakes.push_back(ringOf(arcs)); });
    for (Element const shape : Array(root_["objects"]["rivers"]["geometries"])) {
      std::string_view type;
      if (shape["type"].get(type) != simdjson::SUCCESS) continue;
      bool const isMany = type == "MultiLineString";
      for (Element const part : Array(shape["arcs"])) {
        if (!isMany) {
          waters.rivers.push_back(arcs_.at(numberOf(std::int64_t(part))));
          continue;
        }
        for (Element const arc : Array(part)) waters.rivers.push_back(arcs_.at(numberOf(std::int64_t(arc))));
      }
    }
    return waters;
  }

 private:
  static Ring readArc(Element arc, Element scale, Element origin) {
    Ring line;
    std::int64_t x = 0;
    std::int64_t y = 0;
    for (Element const step : Array(arc)) {
      x += std::int64_t(step.at(0));
      y += std::int64_t(step.at(1));
      line.push_back({static_cast<double>(y) * double(scale.at(1)) + double(origin.at(1)),
                      static_cast<double>(x) * double(scale.at(0)) + double(origin.at(0))});
    }
    return line;
  }

  /// A negative reference, the complement of the number, means the line backwards.
  static std::size_t numberOf(std::int64_t reference) {
    return static_cast<std::size_t>(reference < 0 ? ~reference : reference);
  }

  Ring ringOf(Array const& arcs) const {
    Ring ring;
    for (Element const arc : arcs) {
      auto const reference = std::int64_t(arc);
      Ring line = arcs_.at(numberOf(reference));
      if (reference < 0) std::ranges::reverse(line);
      // Where one line ends the next begins, and the last ends where the first began.
      if (!line.empty()) line.pop_back();
      ring.insert(ring.end(), line.begin(), line.end());
    }
    return ring;
  }

  void forEachRing(std::string_view object,
                   std::function<void(Array const&, bool hasCode)> const& visit) const {
    for (Element const shape : Array(root_["objects"][object]["geometries"])) {
      std::string_view type;
      if (shape["type"].get(type) != simdjson::SUCCESS) continue;  // a country without a shape
      bool const hasCode = shape["id"].error() == simdjson::SUCCESS;
      if (type == "Polygon") {
        for (Element const ring : Array(shape["arcs"])) visit(ring, hasCode);
      } else if (type == "MultiPolygon") {
        for (Element const polygon : Array(shape["arcs"])) {
          for (Element const ring : Array(polygon)) visit(ring, hasCode);
        }
      }
    }
  }

  Element root_;
  std::vector<Ring> arcs_;
};

/// The ring without jumps of its longitude; it may so leave -180 to 180 degrees.
Ring unwrapped(Ring ring) {
  auto const follow = [](double before, double longitude) {
    return longitude - 360 * std::round((longitude - before) / 360);
  };
  for (std::size_t i = 1; i < ring.size(); ++i) {
    ring[i].longitude = follow(ring[i - 1].longitude, ring[i].longitude);
  }
  Coordinate const end{ring[0].latitude, follow(ring.back().longitude, ring[0].longitude)};
  if (std::abs(end.longitude - ring[0].longitude) < 1) return ring;
  double const pole = end.latitude < 0 ? -90 : 90;
  ring.insert(ring.end(), {end, {pole, end.longitude}, {pole, ring[0].longitude}});
  return ring;
}

/// What of the ring lies west of a meridian (`side` 1) or east of it (-1).
Ring clipped(Ring const& ring, double meridian, double side) {
  Ring kept;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    Coordinate const& from = ring[i];
    Coordinate const& to = ring[(i + 1) % ring.size()];
    double const before = side * (meridian - from.longitude);
    double const after = side * (meridian - to.longitude);
    if (before >= 0) kept.push_back(from);
    if ((before < 0) == (after < 0)) continue;
    double const share = before / (before - after);
    kept.push_back({from.latitude + share * (to.latitude - from.latitude), meridian});
  }
  return kept;
}

CoarsePoint coarsePoint(Coordinate at) {
  return {static_cast<std::int16_t>(std::lround(at.latitude * kCoarsePerDegree)),
          static_cast<std::int16_t>(std::lround(at.longitude * kCoarsePerDegree))};
}

void packLine(Ring const& line, Section section, std::size_t least, TableFile& file) {
  std::vector<CoarsePoint> points;
  for (Coordinate const& at : line) points.push_back(coarsePoint(at));
  points.erase(std::ranges::unique(points).begin(), points.end());
  if (points.empty()) return;
  // The hole that Antarctica has at the pole is one of these.
  bool const isFlat =
      std::ranges::count(points, points[0].latitude, &CoarsePoint::latitude) == std::ssize(points);
  if (points.size() < least || isFlat) return;
  auto const first =
      static_cast<std::uint32_t>(file.bytes(Section::coarsePoints).size() / sizeof(CoarsePoint));
  file.append(section, RingRecord{first, static_cast<std::uint32_t>(points.size())});
  for (CoarsePoint const& point : points) file.append(Section::coarsePoints, point);
}

}  // namespace

std::vector<Ring> cutAtDateLine(Ring const& ring) {
  std::vector<Ring> parts;
  if (ring.size() < 3) return parts;
  Ring whole = unwrapped(ring);
  for (double const turn : {-360, 0, 360}) {
    Ring shifted = whole;
    for (Coordinate& at : shifted) at.longitude += turn;
    Ring part = clipped(clipped(shifted, 180, 1), -180, -1);
    // What only touches the meridian encloses nothing.
    bool const isArea = std::ranges::any_of(part, [](Coordinate at) { return std::abs(at.longitude) < 180; });
    if (part.size() >= 3 && isArea) parts.push_back(std::move(part));
  }
  return parts;
}

WorldLines readWorldLines(std::string_view topoJson) {
  try {
    simdjson::dom::parser parser;
    return Topology(parser.parse(simdjson::padded_string(topoJson))).lines();
  } catch (simdjson::simdjson_error const& error) {
    throw std::runtime_error(std::string("the world's outlines cannot be read: ") + error.what());
  }
}

Waters readWaters(std::string_view topoJson) {
  try {
    simdjson::dom::parser parser;
    return Topology(parser.parse(simdjson::padded_string(topoJson))).waters();
  } catch (simdjson::simdjson_error const& error) {
    throw std::runtime_error(std::string("the world's lakes and rivers cannot be read: ") + error.what());
  }
}

void packWorldLines(WorldLines const& lines, TableFile& file) {
  for (Ring const& coast : lines.coasts) packLine(coast, Section::coasts, 3, file);
  for (Ring const& border : lines.borders) packLine(border, Section::borders, 2, file);
  for (Ring const& border : lines.disputed) packLine(border, Section::disputed, 2, file);
}

void packWaters(Waters const& waters, TableFile& file) {
  for (Ring const& lake : waters.lakes) packLine(lake, Section::lakes, 3, file);
  for (Ring const& river : waters.rivers) packLine(river, Section::rivers, 2, file);
}

}  // namespace nimbara::gazetteer
