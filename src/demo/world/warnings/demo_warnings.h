// Warnings that fit the demo's weather: pure functions of place and moment.
#pragma once

#include "base/geodesy.h"
#include "base/time/instant.h"

#include <string_view>
#include <vector>

namespace nimbara {

struct DemoWarning {
  std::string_view kind;  ///< as the titles of the service have it: "Snow-ice"
  int level = 0;          ///< 0 green, 1 yellow, 2 orange, 3 red
  Instant begin;
  Instant end;
};

/// The spells of wind, thunder, rain, snow, fog, heat and cold that are under way or begin within two days.
/// While a spell lasts, its beginning stays what it was.
std::vector<DemoWarning> demoWarnings(Coordinate place, Instant now);

}  // namespace nimbara
