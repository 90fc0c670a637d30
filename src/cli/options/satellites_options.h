// What the satellites commands take.
#pragma once

#include "globe/satellite_passes.h"

#include <string>
#include <vector>

namespace nimbara {

struct SatellitesOptions {
  enum class Action { list, positions, info, orbit, passes, map, propagate, bench };

  Action action = Action::list;
  std::vector<std::string> groups;  ///< empty: all
  std::string satellite;            ///< a name, the beginning or a part of one, or a catalogue number
  std::string place;
  int days = 3;
  bool visible = false;
  double above = kVisibleAbove;  ///< degrees, from where on a satellite counts as seen
  std::string file;
  std::string minutes;
  std::string time;
  bool json = false;
};

}  // namespace nimbara
