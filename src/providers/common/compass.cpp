#include "providers/common/compass.h"

#include <array>
#include <cmath>

namespace nimbara {

namespace {

constexpr std::array<std::string_view, 16> kPoints{"N", "NNE", "NE", "ENE", "E", "ESE", "SE", "SSE",
                                                   "S", "SSW", "SW", "WSW", "W", "WNW", "NW", "NNW"};

}  // namespace

int compassIndex(double degrees) {
  if (!std::isfinite(degrees)) return 0;
  double const turned = std::fmod(std::fmod(degrees, 360) + 360, 360);
  return static_cast<int>((turned + 11.25) / 22.5) % 16;
}

std::string_view compassPoint(double degrees) {
  return kPoints[static_cast<std::size_t>(compassIndex(degrees))];
}

}  // namespace nimbara
