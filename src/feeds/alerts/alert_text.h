// The texts of official warnings as they are kept and shown. Pure.
#pragma once

#include "model/warnings/weather_alert.h"

#include <vector>

namespace nimbara {

/// Without control characters, in balanced writing directions and of bounded length, whoever has written
/// them.
void cleanTexts(std::vector<WeatherAlert>& alerts);

}  // namespace nimbara
