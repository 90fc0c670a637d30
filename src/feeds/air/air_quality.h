// The forecast of fine dust at a place, and the parser of Open-Meteo's air quality answers. Pure; any bytes
// may be given.
#pragma once

#include "base/json/json.h"
#include "base/result.h"
#include "base/time/instant.h"

#include <optional>
#include <string_view>
#include <vector>

namespace nimbara {

struct AirQualityHour {
  Instant time;
  std::optional<double> pm25;  ///< µg/m³; absent beyond the model's end

  bool operator==(AirQualityHour const&) const = default;
};

struct AirQualityForecast {
  std::vector<AirQualityHour> hours;  ///< in the order of time
  std::optional<double> pm25;         ///< now, µg/m³
  std::optional<double> usAqi;
  std::optional<double> europeanAqi;

  bool operator==(AirQualityForecast const&) const = default;
};

/// Of an answer for several places the first is read. Numbers that no concentration can be are absent.
Result<AirQualityForecast, DecodeError> parseAirQuality(std::string_view body);

}  // namespace nimbara
