// The few towns that the stand-ins know by name, and the time zone of any place.
#pragma once

#include "base/geodesy.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

struct DemoPlace {
  int id;
  std::string_view name;
  std::string_view country;
  std::string_view countryCode;
  std::string_view region;
  Coordinate coordinate;
  std::string_view timeZone;
  int population;
};

std::span<DemoPlace const> demoPlaces();

/// As the gazetteer has it, which names the nautical one at sea ("Etc/GMT-3": three hours ahead of
/// Greenwich).
std::string demoTimeZone(Coordinate place);

/// Towns whose name begins with `name`, letter case and the accents of the table aside, the largest first.
std::vector<DemoPlace const*> findDemoPlaces(std::string_view name, std::size_t count);

}  // namespace nimbara
