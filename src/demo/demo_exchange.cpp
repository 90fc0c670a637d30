#include "demo/demo_exchange.h"

#include "base/text/number.h"

namespace nimbara {

Coordinate DemoRequest::answeredPlace(Coordinate asked) const {
  if (!elsewhere) return asked;
  return {-asked.latitude, asked.longitude > 0 ? asked.longitude - 180 : asked.longitude + 180};
}

std::optional<Coordinate> demoCoordinate(std::string_view latitude, std::string_view longitude) {
  auto const north = parseDouble(latitude);
  auto const east = parseDouble(longitude);
  if (!north || !east || !isValid({*north, *east})) return std::nullopt;
  return Coordinate{*north, *east};
}

}  // namespace nimbara
