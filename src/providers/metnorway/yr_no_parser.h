// From the bytes of a MET Norway Locationforecast 2.0 answer ("compact" or "complete") to typed values. Every
// member of a step may be absent, the whole period behind it too; strict about the frame and about the kind
// of every value. Pure; any bytes may be given.
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

/// The weather at the moment of a step, in the service's units: °C, hPa, %, m/s, degrees.
struct YrNoInstant {
  Reading airTemperature;
  Reading airPressureAtSeaLevel;
  Reading cloudAreaFraction;
  Reading dewPointTemperature;
  Reading fogAreaFraction;
  Reading relativeHumidity;
  Reading ultravioletIndexClearSky;
  Reading windFromDirection;
  Reading windSpeed;
  Reading windSpeedOfGust;
};

/// What the hours behind a step bring altogether: °C, mm, %.
struct YrNoPeriod {
  std::string symbolCode;  ///< empty when the answer has none
  Reading airTemperatureMax;
  Reading airTemperatureMin;
  Reading precipitationAmount;
  Reading probabilityOfPrecipitation;
  Reading probabilityOfThunder;
};

struct YrNoStep {
  Instant time;
  YrNoInstant instant;
  std::optional<YrNoPeriod> next1Hours;
  std::optional<YrNoPeriod> next6Hours;
};

/// The steps in the order of time, each moment once.
Result<std::vector<YrNoStep>, DecodeError> parseYrNo(std::string_view body);

}  // namespace nimbara
