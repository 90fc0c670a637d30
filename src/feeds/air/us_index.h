// The air quality index of the United States from concentrations, by the breakpoints that its Environmental
// Protection Agency has used since May 2024 (40 CFR part 58, appendix G). For where the service gives no
// index. Pure.
#pragma once

#include "feeds/air/air_quality.h"

namespace nimbara {

/// The index of one pollutant from its mean in µg/m³: of 24 hours for particles, of 8 for ozone, of one for
/// the others. The concentration is cut off as the agency does it; gases are taken at 25 °C. Beyond the last
/// breakpoint 500.
double usIndex(Pollutant pollutant, double mean);

/// Gives each hour without an index, and the present one, those that the hours before it allow: three in four
/// of a mean's hours must be known. `time` is that of the present values; none leaves them as they are.
void fillUsParts(AirQualityForecast& forecast, std::optional<Instant> time);

}  // namespace nimbara
