// The public weather stations around a place as the map shows them: each with its value, and what all of them
// say together. Pure functions.
#pragma once

#include "app/engine/station_actions.h"
#include "desktop/views/view_context.h"

#include <string>
#include <vector>

namespace nimbara {

struct MapStation {
  std::string id;
  Coordinate at;
  std::string value;       ///< its temperature now; empty while it is silent
  bool isLeftOut = false;  ///< silent, or an outlier beside its neighbours
  std::string title, note;

  bool operator==(MapStation const&) const = default;
};

/// The nearest first; none before anybody has looked.
std::vector<MapStation> mapStations(StationDesk const& desk, ViewContext const& context);

/// The median and how many it is of, or why there is none; empty before anybody has looked.
std::string mapStationsNote(StationDesk const& desk, ViewContext const& context);

}  // namespace nimbara
