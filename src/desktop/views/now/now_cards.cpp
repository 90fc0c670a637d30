#include "desktop/views/now/now_cards.h"

#include "app/state/supplement_state.h"
#include "app/words/brief/brief_text.h"

namespace nimbara {

namespace {

std::string joinedLines(std::vector<std::string> const& lines) {
  std::string all;
  for (std::string const& line : lines) all += (all.empty() ? "" : "\n") + line;
  return all;
}

}  // namespace

NowCards nowCards(WeatherData const& weather, WeatherState const& state, ViewContext const& context,
                  Settings const* settings) {
  HazardWords const words{context.texts, context.units, context.fallback, context.now};
  SupplementState const* const known = state.supplement.get();
  bool const hasClimate = known != nullptr && known->climate.isCurrent();
  bool const hasAir = known != nullptr && known->airQuality.isCurrent();
  CardBeside const beside{state.nowcast.get(), hasClimate ? &known->climate.data : nullptr};
  AirQualityForecast const* const air = hasAir ? &known->airQuality.data : nullptr;
  return {joinedLines(briefLines(weather, beside, words)),
          joinedLines(adviceLines(weather, settings, air, words))};
}

}  // namespace nimbara
