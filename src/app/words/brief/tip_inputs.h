// What outdoor advice takes into account beside the forecast: how much a person minds what, from the
// settings, and the air of the hours ahead. Pure.
#pragma once

#include "analysis/tips/tip_generator.h"
#include "base/geodesy.h"
#include "feeds/air/air_quality.h"
#include "platform/settings/settings.h"

#include <vector>

namespace nimbara {

TipPreferences tipPreferences(Settings const& settings);

/// The index's band from 1 on, and pollen from 0 to 4 by whatever kind there is most of: nothing below 1
/// grain/m³, then low, moderate from 10, high from 50, very high from 100. The steps are coarse on purpose,
/// since kinds differ and so do people.
std::vector<TipAir> tipAir(AirQualityForecast const& forecast, Coordinate place);

}  // namespace nimbara
