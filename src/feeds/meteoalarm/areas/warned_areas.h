// The areas of several entries of one warning, each once. Pure.
#pragma once

#include "feeds/meteoalarm/meteo_alarm_merge.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

struct WarnedArea {
  std::string name;
  std::optional<double> distanceKm;  ///< absent where one of its entries has the place in it
};

/// In the order of the entries, with the names that a reader of `language` knows best. Entries without a name
/// are no areas.
std::vector<WarnedArea> warnedAreas(std::span<ToldEntry const* const> entries, std::string_view language);

/// The entries of each area, in the order in which `warnedAreas` has the areas; entries without a name are
/// together those of one more.
std::vector<std::vector<ToldEntry const*>> entriesByArea(std::span<ToldEntry const* const> entries);

}  // namespace nimbara
