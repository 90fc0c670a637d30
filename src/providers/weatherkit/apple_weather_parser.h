// From the bytes of a WeatherKit answer to typed values, and the service's condition codes. Every data set
// and every value may be absent or null; strict about the kind of what is there. Pure; any bytes may be
// given.
#pragma once

#include "base/json/json.h"
#include "base/result.h"
#include "base/time/instant.h"
#include "providers/common/interchange.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// One hour, or the present. Units of the service: °C, km/h, hPa, m, mm (snow too, as its depth), fractions
/// of 1.
struct AppleWeatherHour {
  std::optional<Instant> time;
  std::optional<std::string> conditionCode;
  std::optional<bool> daylight;
  Reading cloudCover;
  Reading humidity;
  Reading precipitationAmount;
  Reading precipitationChance;
  Reading precipitationIntensity;
  Reading pressure;
  Reading snowfallAmount;
  Reading snowfallIntensity;
  Reading temperature;
  Reading temperatureApparent;
  Reading temperatureDewPoint;
  Reading uvIndex;
  Reading visibility;
  Reading windDirection;
  Reading windGust;
  Reading windSpeed;
};

/// The day's or the night's part of a day.
struct AppleWeatherDayPart {
  Reading windSpeed;
  Reading windDirection;
};

struct AppleWeatherDay {
  std::optional<Instant> begin;
  Reading maxUvIndex;
  std::optional<std::string> conditionCode;
  std::optional<AppleWeatherDayPart> daytime;
  std::optional<AppleWeatherDayPart> overnight;
  Reading precipitationAmount;
  Reading precipitationChance;
  Reading snowfallAmount;
  std::optional<Instant> sunrise;
  std::optional<Instant> sunset;
  Reading temperatureMax;
  Reading temperatureMin;
};

struct AppleWeatherResponse {
  std::optional<AppleWeatherHour> current;
  std::optional<std::vector<AppleWeatherHour>> hours;
  std::optional<std::vector<AppleWeatherDay>> days;
};

Result<AppleWeatherResponse, DecodeError> parseAppleWeather(std::string_view body);

/// A code that the table lacks counts as cloudy.
WwoCondition conditionOfAppleCode(std::string_view code);

}  // namespace nimbara
