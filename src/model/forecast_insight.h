// What the analysis of a forecast found. Kept beside the forecast in the cache; made anew for each moment and
// each setting of units and language, since its texts depend on them.
#pragma once

#include "base/json/json.h"
#include "model/warnings/weather_alert.h"

#include <optional>
#include <string>
#include <vector>

namespace nimbara {

/// A generated alert that an event of the forecast says more truly.
struct SupersededAlert {
  Uuid alert;
  std::string by;                       ///< the kind of event: "snow"
  std::optional<WeatherAlert> instead;  ///< what faces show in its stead; nothing where another alert says it

  bool operator==(SupersededAlert const&) const = default;
};

struct ForecastInsight {
  std::vector<WeatherAlert> alerts;  ///< generated ones, most severe first
  std::vector<SupersededAlert> superseded{};

  bool operator==(ForecastInsight const&) const = default;
};

template <>
inline constexpr auto jsonFields<ForecastInsight> = FieldList{fieldOr("alerts", &ForecastInsight::alerts)};

/// The alerts as faces show them: the truer ones in the stead of those that they supersede.
std::vector<WeatherAlert> shownAlerts(std::vector<WeatherAlert> const& alerts,
                                      std::vector<SupersededAlert> const& superseded);

}  // namespace nimbara
