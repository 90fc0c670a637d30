// What a measured or forecast value can be at all. A value outside its range is an error of the service and
// counts as not measured: shown to nobody, filled from elsewhere where something else is known. Pure.
#pragma once

#include "providers/common/interchange.h"

namespace nimbara {

/// What a value measures, in the units of `HourlyEntry`.
enum class MeasuredQuantity {
  temperature,
  feltTemperature,
  dewPoint,
  percentage,
  humidity,
  pressure,
  windSpeed,
  windDirection,
  visibility,
  uvIndex,
  precipitation,       // of an hour
  snowfall,            // of an hour
  precipitationOfDay,  // as the next one
  snowfallOfDay,
};

/// Wide enough for every record of the earth's weather.
bool isPossible(MeasuredQuantity quantity, double value);

/// The reading, or none when it is not possible.
Reading possible(MeasuredQuantity quantity, Reading reading);

/// Takes out what cannot be.
void dropImpossible(HourlyEntry& entry);
void dropImpossible(DailyEntry& entry);

}  // namespace nimbara
