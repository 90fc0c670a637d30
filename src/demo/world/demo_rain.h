// The rain of the generated weather as a map has it: at the towns that the stand-ins know, and at whole
// degrees, exactly that of their forecast at that hour; between them it passes over.
#pragma once

#include "base/geodesy.h"
#include "base/time/instant.h"

#include <map>
#include <utility>

namespace nimbara {

class DemoRain {
 public:
  explicit DemoRain(Instant instant) : instant_(instant) {}

  /// mm/h. Not for two threads at once.
  double at(Coordinate place);

 private:
  double ofNode(int latitude, int longitude);

  Instant instant_;
  std::map<std::pair<int, int>, double> nodes_;  ///< by degrees
  std::map<int, double> towns_;                  ///< by number
};

}  // namespace nimbara
