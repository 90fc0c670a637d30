#include "cli/pages/warnings/area_map.h"

#include "base/map_frame.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr int kWidest = 40;
/// A cell of a terminal is about twice as high as wide.
constexpr int kCellsPerRow = 3;

/// Two halves of a cell, one above the other.
struct Cell {
  bool isPlace = false;
  bool above = false;
  bool below = false;
  bool isLand = false;
};

class Grid {
 public:
  Grid(AlertOutlines const& area, Coordinate place, int columns)
      : area_(area),
        columns_(columns),
        rows_(std::max(1, columns / kCellsPerRow)),
        frame_(frameHolding(area.rings, place, columns / (2.0 * rows_))),
        place_(frame_.at(place)) {}

  int columns() const { return columns_; }
  int rows() const { return rows_; }

  Cell at(int column, int row) const {
    Coordinate const middle = under(column + 0.5, row + 0.5);
    return {column == static_cast<int>(place_.x * columns_) && row == static_cast<int>(place_.y * rows_),
            holds(area_, under(column + 0.5, row + 0.25)), holds(area_, under(column + 0.5, row + 0.75)),
            isValid(middle) && !describePlace(middle).countryCode.empty()};
  }

 private:
  Coordinate under(double column, double row) const { return frame_.under({column / columns_, row / rows_}); }

  AlertOutlines const& area_;
  int columns_;
  int rows_;
  MapFrame frame_;
  MapPoint place_;
};

std::string placeSign(Style const& style) {
  return style.painted(style.ascii ? "X" : "◉", Colour::bold);
}

std::string areaSign(std::string_view sign, Style const& style) {
  return style.painted(style.ascii ? "#" : sign, Colour::warning);
}

std::string landSign(Style const& style) {
  return style.painted(style.ascii ? "." : "·", Colour::dim);
}

std::string cellText(Cell const& cell, Style const& style) {
  if (cell.isPlace) return placeSign(style);
  if (cell.above || cell.below) return areaSign(!cell.below ? "▀" : !cell.above ? "▄" : "█", style);
  return cell.isLand ? landSign(style) : " ";
}

}  // namespace

std::string areaMap(AlertOutlines const& area, Coordinate place, int width, Style const& style) {
  if (area.rings.empty() || width < 1) return {};
  Grid const grid(area, place, std::min(width, kWidest));
  std::string out;
  for (int row = 0; row < grid.rows(); ++row) {
    std::string line;
    for (int column = 0; column < grid.columns(); ++column) line += cellText(grid.at(column, row), style);
    line.erase(line.find_last_not_of(' ') + 1);
    out += line + "\n";
  }
  return out;
}

std::string areaMapLegend(std::string const& name, Texts const& texts, Style const& style) {
  return placeSign(style) + " " + style.text(name) + "  " + areaSign("█", style) + " " +
         style.text(texts.text("alerts.map.area")) + "  " + landSign(style) + " " +
         style.text(texts.text("alerts.map.land")) + "\n";
}

}  // namespace nimbara
