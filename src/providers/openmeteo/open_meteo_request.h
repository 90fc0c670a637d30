// The request of the Open-Meteo forecast: path and query as the service documents them.
#pragma once

#include "base/geodesy.h"

#include <string>

namespace nimbara {

/// "/v1/forecast?latitude=…": seven days in °C, km/h, hPa, mm, cm and metres, in the place's local time. A
/// key of the paid host goes behind everything else.
std::string openMeteoPath(Coordinate place, std::string const& apiKey = {});

}  // namespace nimbara
