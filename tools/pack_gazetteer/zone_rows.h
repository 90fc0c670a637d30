// Turns the outlines of time zones into rows of cells.
#pragma once

#include "geobuf.h"
#include "names.h"

namespace nimbara::gazetteer {

/// The map while it is painted: each cell takes the first zone that covers its middle.
class ZoneCells {
 public:
  struct Box {
    double south, north, west, east;
  };

  void fill(Box const& box, std::uint16_t zone);
  /// Fills the part of the box that the rings enclose.
  void fill(Box const& box, std::vector<Ring> const& rings, std::uint16_t zone);
  void write(TableFile& file) const;

 private:
  struct Run {
    int first, end;
    std::uint16_t zone;
  };

  void addRun(int row, double west, double east, std::uint16_t zone);

  std::vector<std::vector<Run>> rows_ = std::vector<std::vector<Run>>(kZoneRows);
};

/// Reads the tree of squares `index` (JSON) with the outlines `outlines` (Geobuf pieces) and writes the map.
void packZones(std::filesystem::path const& index, std::string_view outlines, ZoneNumbers& zones,
               TableFile& file);

}  // namespace nimbara::gazetteer
