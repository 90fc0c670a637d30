// A table of places and the warning regions that they should have, compared with what the look-up tells.
#pragma once

#include "base/result.h"
#include "feeds/regions/regions.h"

#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// One place of the table.
struct RegionTableRow {
  std::string place;
  Coordinate at;
  std::string country;
  std::string land;  ///< EMMA_ID codes, sorted, a blank between them
  std::string sea;   ///< likewise
  std::string name;  ///< one that the place must have; empty where codes tell everything
};

/// Lines of these six, parted by tabs, the coordinate as two cells; empty lines and those that begin with "#"
/// are left out. The error says which line is wrong.
Result<std::vector<RegionTableRow>, std::string> readRegionTable(std::string_view text);

/// What the look-up tells of the row's place, in the row's form: the row's own name when the place has it,
/// else all that it has.
RegionTableRow foundRow(RegionTableRow const& row, Regions const& regions);

/// "DE  land DE202  sea -".
std::string describe(RegionTableRow const& row);

}  // namespace nimbara
