// What the satellites commands take.
#pragma once

#include "base/instant.h"

#include <optional>
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
  std::string file;
  std::string minutes;
  std::string time;
  bool json = false;
};

}  // namespace nimbara
