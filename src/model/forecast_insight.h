// What the analysis of a forecast found. Kept beside the forecast in the cache; made anew for each moment and
// each setting of units and language, since its texts depend on them.
#pragma once

#include "base/json/json.h"
#include "model/weather_alert.h"

#include <vector>

namespace nimbara {

struct ForecastInsight {
  std::vector<WeatherAlert> alerts;  ///< generated ones, most severe first

  bool operator==(ForecastInsight const&) const = default;
};

template <>
inline constexpr auto jsonFields<ForecastInsight> = FieldList{fieldOr("alerts", &ForecastInsight::alerts)};

}  // namespace nimbara
