#include "desktop/views/outlook_view.h"

#include "app/services/forecasts/outlook_days.h"
#include "app/services/forecasts/second_forecast.h"
#include "app/words/confidence_text.h"
#include "app/words/outlook_text.h"
#include "model/process.h"

namespace nimbara {

std::vector<DailyForecast> daysBeyond(OutlookState const& state, std::optional<Place> const& place,
                                      WeatherData const& forecast, ViewContext const& context) {
  bool const isOfPlace = state.place && place && state.place->coordinate == place->coordinate;
  if (!isOfPlace || !state.days.checkedAt) return {};
  Calendar const calendar = calendarOf(forecast, context.fallback);
  auto days = outlookDays(state.days.data, forecast, calendar);
  std::erase_if(days, [&](DailyForecast const& day) { return day.date < context.now; });
  return days;
}

std::string confidenceLine(WeatherState const& state, ViewContext const& context) {
  SecondForecast const* const second = state.forecastConfidence.get();
  if (second == nullptr || !state.weatherData) return {};
  if (second->provider && second->provider == state.currentWeatherProvider) return {};
  WeatherData const& shown = *state.weatherData;
  HazardWords const words{context.texts, context.units, calendarOf(shown, context.fallback), context.now};
  WeatherData const* const other = second->data ? &*second->data : nullptr;
  auto const text =
      confidenceText(confidenceDays(shown, other, context.now, context.fallback), second->provider, words);
  return text.note.empty() ? text.line : text.line + "\n" + text.note;
}

OutlookView outlookView(OutlookState const& state, bool hasDays, ViewContext const& context) {
  OutlookView view{state.place.has_value(), context.text("report.outlook"), {}};
  bool const isFirst = state.isAsking && !state.days.isSettled();
  view.notice = isFirst ? context.text("desktop.loading") : outlookNote(state.days, hasDays, context.texts);
  return view;
}

}  // namespace nimbara
