// What the next hours bring, in one sentence. Pure.
#pragma once

#include "app/state/weather_state.h"
#include "app/words/nowcast_text.h"
#include "desktop/views/view_context.h"

#include <string>

namespace nimbara {

/// What the next twelve hours bring, in one sentence; empty without hours. Where the sky of now and the
/// forecast of this hour differ, the sky is right, and the forecast is spoken of as possible.
std::string nextHoursSentence(WeatherData const& data, ViewContext const& context);

/// The same, or what the nowcast says where that sentence would say otherwise of the first two hours. With a
/// forecast.
std::string aheadSentence(WeatherState const& state, NowcastNow const& nowcast, ViewContext const& context);

}  // namespace nimbara
