#include "zone_rows.h"

#include "base/json/simdjson_dom.h"

#include <algorithm>
#include <stdexcept>

namespace nimbara::gazetteer {

namespace {

/// The first cell whose middle does not lie before `degrees`, counted from `origin`, within 0 … count.
int firstCell(double degrees, double origin, int count) {
  double const cell = std::ceil((degrees - origin) * kCellsPerDegree - 0.5);
  return static_cast<int>(std::clamp(cell, 0.0, static_cast<double>(count)));
}

int firstRow(double latitude) {
  return firstCell(latitude, -90, kZoneRows);
}

int firstColumn(double longitude) {
  return firstCell(longitude, -180, kZoneColumns);
}

double middleOf(int row) {
  return (row + 0.5) / kCellsPerDegree - 90;
}

/// Where the ring crosses the middle of each row from `base` on.
void addCrossings(Ring const& ring, int base, std::vector<std::vector<double>>& crossings) {
  for (std::size_t i = 0; i < ring.size(); ++i) {
    Coordinate const& a = ring[i];
    Coordinate const& b = ring[(i + 1) % ring.size()];
    int const begin = std::max(firstRow(std::min(a.latitude, b.latitude)), base);
    int const end =
        std::min(firstRow(std::max(a.latitude, b.latitude)), base + static_cast<int>(crossings.size()));
    for (int row = begin; row < end; ++row) {
      double const share = (middleOf(row) - a.latitude) / (b.latitude - a.latitude);
      crossings[static_cast<std::size_t>(row - base)].push_back(a.longitude +
                                                                share * (b.longitude - a.longitude));
    }
  }
}

using Element = simdjson::dom::element;

class Painter {
 public:
  Painter(std::string_view outlines, Element names, ZoneNumbers& zones) : outlines_(outlines), zones_(zones) {
    for (Element const name : names) numbers_.push_back(zones.number(name));
  }

  /// A square is a list of zones, a piece of outlines or four squares.
  void paint(Element square, ZoneCells::Box const& box) {
    if (square.is_array()) {
      std::uint64_t const first = square.at(0);
      cells_.fill(box, numbers_.at(first));
    } else if (std::uint64_t position = 0; square["pos"].get(position) == simdjson::SUCCESS) {
      std::uint64_t const length = square["len"];
      for (Feature const& feature : readGeobuf(outlines_.substr(position, length))) {
        cells_.fill(box, feature.rings, zones_.number(feature.zone));
      }
    } else {
      paintQuarters(square, box);
    }
  }

  ZoneCells const& cells() const { return cells_; }

 private:
  void paintQuarters(Element square, ZoneCells::Box const& box) {
    double const latitude = (box.south + box.north) / 2;
    double const longitude = (box.west + box.east) / 2;
    std::pair<char const*, ZoneCells::Box> const quarters[] = {
        {"a", {latitude, box.north, longitude, box.east}},
        {"b", {latitude, box.north, box.west, longitude}},
        {"c", {box.south, latitude, box.west, longitude}},
        {"d", {box.south, latitude, longitude, box.east}},
    };
    for (auto const& [key, quarter] : quarters) {
      Element inner;
      if (square[key].get(inner) == simdjson::SUCCESS) paint(inner, quarter);
    }
  }

  std::string_view outlines_;
  ZoneNumbers& zones_;
  std::vector<std::uint16_t> numbers_;
  ZoneCells cells_;
};

}  // namespace

void ZoneCells::addRun(int row, double west, double east, std::uint16_t zone) {
  int const first = firstColumn(west);
  int const end = firstColumn(east);
  if (first < end) rows_[static_cast<std::size_t>(row)].push_back({first, end, zone});
}

void ZoneCells::fill(Box const& box, std::uint16_t zone) {
  for (int row = firstRow(box.south); row < firstRow(box.north); ++row) addRun(row, box.west, box.east, zone);
}

void ZoneCells::fill(Box const& box, std::vector<Ring> const& rings, std::uint16_t zone) {
  int const base = firstRow(box.south);
  std::vector<std::vector<double>> crossings(static_cast<std::size_t>(firstRow(box.north) - base));
  for (Ring const& ring : rings) addCrossings(ring, base, crossings);
  for (std::size_t i = 0; i < crossings.size(); ++i) {
    std::ranges::sort(crossings[i]);
    for (std::size_t at = 0; at + 1 < crossings[i].size(); at += 2) {
      addRun(base + static_cast<int>(i), std::max(crossings[i][at], box.west),
             std::min(crossings[i][at + 1], box.east), zone);
    }
  }
}

void ZoneCells::write(TableFile& file) const {
  std::vector<std::uint16_t> cells(kZoneColumns);
  std::uint32_t runs = 0;
  for (auto const& row : rows_) {
    std::ranges::fill(cells, std::uint16_t{0});
    for (Run const& run : row) {
      std::replace(cells.begin() + run.first, cells.begin() + run.end, std::uint16_t{0}, run.zone);
    }
    file.append(Section::zoneRows, runs);
    for (std::size_t column = 0; column < cells.size(); ++column) {
      if (column > 0 && cells[column] == cells[column - 1]) continue;
      file.append(Section::zoneRuns, zoneRun(static_cast<std::uint32_t>(column), cells[column]));
      ++runs;
    }
  }
  file.append(Section::zoneRows, runs);
}

void packZones(std::filesystem::path const& index, std::string_view outlines, ZoneNumbers& zones,
               TableFile& file) {
  simdjson::dom::parser parser;
  Element const root = parser.parse(contentOf(index));
  Painter painter(outlines, root["timezones"], zones);
  // The tree's world ends a little before the poles and the 180th meridian, which moves its inner lines, too.
  constexpr double kMargin = 0.0001;
  painter.paint(root["lookup"], {-90 + kMargin, 90 - kMargin, -180 + kMargin, 180 - kMargin});
  painter.cells().write(file);
}

}  // namespace nimbara::gazetteer
