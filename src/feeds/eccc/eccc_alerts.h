// The weather alerts of Environment and Climate Change Canada as GeoMet lists them in GeoJSON: one feature
// for each alert and zone, both languages in it. Pure; any bytes may be given.
#pragma once

#include "base/json/json.h"
#include "feeds/cap/cap_alert.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace nimbara {

struct EcccAlerts {
  /// One for each feature: a block in English and one in French, of those that say something, with the same
  /// area. Alerts that have ended are left out.
  std::vector<CapAlert> alerts;
  std::size_t unreadable = 0;  ///< features that are no alerts
  std::size_t withheld = 0;    ///< alerts beyond the limit of the answer
};

Result<EcccAlerts, DecodeError> parseEcccAlerts(std::string_view body);

}  // namespace nimbara
