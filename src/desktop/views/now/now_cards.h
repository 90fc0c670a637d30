// The cards of the present in sentences: the brief and the outdoor advice. Pure.
#pragma once

#include "app/state/weather_state.h"
#include "desktop/views/view_context.h"
#include "platform/settings/settings.h"

#include <string>

namespace nimbara {

struct NowCards {
  std::string brief;   ///< a line each; empty where there is nothing to say
  std::string advice;  ///< likewise
};

/// The settings may be null: then their defaults hold.
NowCards nowCards(WeatherData const& weather, WeatherState const& state, ViewContext const& context,
                  Settings const* settings);

}  // namespace nimbara
