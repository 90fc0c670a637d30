// From the bytes of an Open-Meteo forecast to typed values. Tolerant of what the service really sends: nulls
// anywhere, missing arrays and blocks, blocks of unequal length, other units than those asked for (the units
// blocks are the truth); strict about the frame and about the kind of every value. Pure; any bytes may be
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

/// Values of the present, in °C, %, hPa, km/h, degrees, mm, m. `time` stands on a quarter of an hour.
struct OMCurrent {
  std::string time;
  Reading temperature2m;
  Reading relativeHumidity2m;
  Reading apparentTemperature;
  Reading dewPoint2m;
  Reading weatherCode;
  Reading cloudCover;
  Reading pressureMsl;
  Reading windSpeed10m;
  Reading windDirection10m;
  Reading windGusts10m;
  Reading precipitation;
  Reading snowfall;
  Reading visibility;
  Reading uvIndex;
  Reading isDay;
};

/// Parallel arrays: each is empty (the answer lacks it) or as long as `time`. A time that cannot be read is
/// absent.
struct OMHourly {
  std::vector<std::optional<LocalTime>> time;
  std::vector<Reading> temperature2m;
  std::vector<Reading> relativeHumidity2m;
  std::vector<Reading> apparentTemperature;
  std::vector<Reading> dewPoint2m;
  std::vector<Reading> weatherCode;
  std::vector<Reading> cloudCover;
  std::vector<Reading> precipitationProbability;
  std::vector<Reading> precipitation;
  std::vector<Reading> snowfall;
  std::vector<Reading> windSpeed10m;
  std::vector<Reading> windDirection10m;
  std::vector<Reading> windGusts10m;
  std::vector<Reading> pressureMsl;
  std::vector<Reading> visibility;
  std::vector<Reading> uvIndex;
  std::vector<Reading> isDay;
};

/// Parallel arrays as in `OMHourly`, one element a day.
struct OMDaily {
  std::vector<std::optional<Date>> time;
  std::vector<std::optional<LocalTime>> sunrise;
  std::vector<std::optional<LocalTime>> sunset;
  std::vector<Reading> weatherCode;
  std::vector<Reading> temperature2mMax;
  std::vector<Reading> temperature2mMin;
  std::vector<Reading> apparentTemperatureMax;
  std::vector<Reading> apparentTemperatureMin;
  std::vector<Reading> uvIndexMax;
  std::vector<Reading> precipitationSum;
  std::vector<Reading> precipitationProbabilityMax;
  std::vector<Reading> snowfallSum;
  std::vector<Reading> windSpeed10mMax;
  std::vector<Reading> windDirection10mDominant;
};

struct OpenMeteoResponse {
  double latitude = 0;  ///< of the grid cell, not of the place that was asked for
  double longitude = 0;
  double elevation = 0;  ///< m
  std::string timezone;
  /// One offset for every time of the answer, also behind a clock change.
  std::optional<std::chrono::seconds> utcOffset;
  std::optional<OMCurrent> current;
  std::optional<OMHourly> hourly;
  std::optional<OMDaily> daily;
};

Result<OpenMeteoResponse, DecodeError> parseOpenMeteo(std::string_view body);

}  // namespace nimbara
