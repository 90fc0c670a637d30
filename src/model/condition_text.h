// The words for a sky, the same on every page, line and notification.
#pragma once

#include "base/words/texts.h"
#include "model/weather_condition.h"

#include <string>

namespace nimbara {

/// In the language of `texts`. A clear night is not sunny.
std::string conditionText(WeatherConditionCode condition, bool isDay, Texts const& texts);

}  // namespace nimbara
