#include "cli/pages/satellite_map.h"

#include "base/sun_moon.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

constexpr int kNarrowest = 40;
constexpr int kWidest = 160;
/// A cell of a terminal is about twice as high as wide, and the globe twice as wide as high.
constexpr int kCellsPerRow = 4;

struct Grid {
  int columns, rows;

  std::size_t cell(int column, int row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
           static_cast<std::size_t>(column);
  }
  int column(double longitude) const {
    return std::clamp(static_cast<int>(std::floor((longitude + 180) / 360 * columns)), 0, columns - 1);
  }
  int row(double latitude) const {
    return std::clamp(static_cast<int>(std::floor((90 - latitude) / 180 * rows)), 0, rows - 1);
  }
  Coordinate middle(int column, int row) const {
    return {90 - (row + 0.5) * 180 / rows, (column + 0.5) * 360 / columns - 180};
  }
};

std::string cellText(Coordinate place, int satellites, Instant now, Style const& style) {
  if (satellites > 0) {
    std::string_view const sign = satellites == 1 ? (style.ascii ? "o" : "•") : (style.ascii ? "O" : "●");
    return style.painted(sign, Colour::sun);
  }
  if (describePlace(place).countryCode.empty()) return " ";
  std::string_view const land = style.ascii ? "." : "·";
  return sunPosition(now, place).altitude > 0 ? std::string(land) : style.painted(land, Colour::dim);
}

}  // namespace

std::string satelliteMap(std::vector<Coordinate> const& satellites, Instant now, int width,
                         Style const& style) {
  int const columns = std::clamp(width, kNarrowest, kWidest);
  Grid const grid{columns, columns / kCellsPerRow};
  std::vector<int> counts(grid.cell(0, grid.rows));
  for (Coordinate const& each : satellites) {
    ++counts[grid.cell(grid.column(each.longitude), grid.row(each.latitude))];
  }
  std::string out;
  for (int row = 0; row < grid.rows; ++row) {
    for (int column = 0; column < grid.columns; ++column) {
      int const count = counts[grid.cell(column, row)];
      out += cellText(grid.middle(column, row), count, now, style);
    }
    out += "\n";
  }
  return out;
}

}  // namespace nimbara
