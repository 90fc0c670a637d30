// The confidence in a forecast, for scripts.
#pragma once

#include "analysis/forecast_confidence.h"
#include "app/services/forecasts/second_forecast.h"
#include "base/json/json.h"

#include <vector>

namespace nimbara {

/// {"state": "known" or "unknown", "provider", "checkedAt", "reason", "days": […]}; "unknown" where there was
/// nothing to compare with.
void writeConfidence(JsonWriter& json, SecondForecast const& second, std::vector<DayConfidence> const& days);

}  // namespace nimbara
