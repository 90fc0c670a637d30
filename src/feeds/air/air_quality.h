// The forecast of the air at a place, its pollen and its ultraviolet light, and the parser of Open-Meteo's
// air quality answers. Pure; any bytes may be given.
#pragma once

#include "base/enum_names.h"
#include "base/json/json.h"
#include "base/result.h"
#include "base/time/instant.h"

#include <array>
#include <optional>
#include <string_view>
#include <vector>

namespace nimbara {

enum class Pollutant { pm25, pm10, no2, o3, so2 };

template <>
inline constexpr auto enumNames<Pollutant> =
    std::to_array<std::string_view>({"pm2_5", "pm10", "no2", "o3", "so2"});
static_assert(enumNamesComplete(Pollutant::so2));

enum class PollenKind { alder, birch, grass, mugwort, olive, ragweed };

template <>
inline constexpr auto enumNames<PollenKind> =
    std::to_array<std::string_view>({"alder", "birch", "grass", "mugwort", "olive", "ragweed"});
static_assert(enumNamesComplete(PollenKind::ragweed));

using PollutantValues = std::array<std::optional<double>, enumNames<Pollutant>.size()>;
using PollenValues = std::array<std::optional<double>, enumNames<PollenKind>.size()>;

/// What is in the air in one hour. Whatever the model does not have is absent.
struct AirLevels {
  PollutantValues pollutants = {};         ///< µg/m³
  PollenValues pollen = {};                ///< grains/m³
  std::optional<double> europeanAqi = {};  ///< as the service reckons it
  std::optional<double> usAqi = {};        ///< likewise; its fine dust is a mean of 24 hours
  PollutantValues usParts = {};            ///< the index of each; where none is sent, from the hours before
  std::optional<double> uvIndex = {};      ///< under the forecast clouds
  std::optional<double> uvIndexClearSky = {};

  bool operator==(AirLevels const&) const = default;
};

struct AirQualityHour {
  Instant time;
  std::optional<double> pm25;  ///< µg/m³; absent beyond the model's end
  AirLevels levels = {};

  bool operator==(AirQualityHour const&) const = default;
};

struct AirQualityForecast {
  std::vector<AirQualityHour> hours;  ///< in the order of time
  std::optional<double> pm25;         ///< now, µg/m³
  std::optional<double> usAqi;
  std::optional<double> europeanAqi;
  AirLevels now = {};

  bool operator==(AirQualityForecast const&) const = default;
};

/// The service's name of each variable: "pm2_5,pm10,…", for a request.
std::string airVariables();

/// Of an answer for several places the first is read. Numbers that no concentration can be are absent.
Result<AirQualityForecast, DecodeError> parseAirQuality(std::string_view body);

}  // namespace nimbara
