// Short warnings derived from a forecast: ten checks over the next eight or twelve entries, each giving at
// most one alert. A pure function; thresholds are metric whatever the user's units, which only matter for the
// numbers in the texts. Never gives an alert of severity `info`.
#pragma once

#include "base/time/calendar.h"
#include "base/units.h"
#include "base/words/texts.h"
#include "model/warnings/weather_alert.h"
#include "model/weather_data.h"

#include <vector>

namespace nimbara {

class AlertGenerator {
 public:
  /// Most severe first; alerts of equal severity in the order of the checks. Hours are named in the
  /// forecast's own zone, else in that of `fallback`. What a provider did not give is no ground for an alert.
  std::vector<WeatherAlert> generate(WeatherData const& weather, Instant now, Units const& units,
                                     Texts const& texts, Calendar const& fallback = Calendar::utc()) const;
};

}  // namespace nimbara
