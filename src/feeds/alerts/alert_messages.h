// The messages that an official warning was made of, collected for its record. Pure.
#pragma once

#include "feeds/cap/cap_alert.h"
#include "model/warnings/weather_alert.h"

#include <string_view>

namespace nimbara {

/// With the codes of its areas, those of each block.
WarningMessage warningMessage(CapAlert const& message);

/// To those that hold: each once, and no more than a person could look at. Lists and their texts are cut to a
/// size that can be kept.
void addMessage(WeatherAlert& alert, WarningMessage message);

void addCode(WarningMessage& message, std::string_view registry, std::string_view code);

}  // namespace nimbara
