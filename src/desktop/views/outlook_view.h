// The days beyond the forecast: which there are, and what is said of them where there are none. Pure.
#pragma once

#include "app/state/outlook_state.h"
#include "app/state/weather_state.h"
#include "desktop/views/view_context.h"
#include "desktop/views/view_fields.h"
#include "model/weather_data.h"

#include <string>
#include <vector>

namespace nimbara {

struct OutlookView {
  bool isShown = false;  ///< somebody has looked, and there is a forecast
  std::string title;
  std::string notice;           ///< what such days are worth and whose they are, or why there are none
  std::string confidence = {};  ///< how far the days of the forecast can be trusted; may be empty

  bool operator==(OutlookView const&) const = default;
};

template <>
inline constexpr auto viewFields<OutlookView> =
    FieldList{viewField("isShown", &OutlookView::isShown), viewField("title", &OutlookView::title),
              viewField("notice", &OutlookView::notice), viewField("confidence", &OutlookView::confidence)};

/// Of the place that is shown; none of another one's.
std::vector<DailyForecast> daysBeyond(OutlookState const& state, std::optional<Place> const& place,
                                      WeatherData const& forecast, ViewContext const& context);
/// Empty before anybody has answered, and where the second forecast is by now the one that is shown.
std::string confidenceLine(WeatherState const& state, ViewContext const& context);
OutlookView outlookView(OutlookState const& state, bool hasDays, ViewContext const& context);

}  // namespace nimbara
