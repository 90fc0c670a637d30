// What display values depend on beside the weather, and the few forms that all of them share: numbers in the
// user's units, moments and ages in the user's words. Pure; values are made where they are shown.
#pragma once

#include "base/time/calendar.h"
#include "base/units.h"
#include "base/words/texts.h"
#include "base/words/time_words.h"
#include "model/weather_condition.h"
#include "model/weather_data.h"

#include <string>
#include <string_view>

namespace nimbara {

struct ViewContext {
  Texts const& texts;
  Units units;
  Instant now;
  Calendar fallback = Calendar::utc();  ///< of places whose zone is unknown
  std::string standIn;                  ///< the address that stands in for the services; empty for none

  std::string text(std::string_view key) const { return std::string(texts.text(key)); }
  /// "14°".
  std::string degrees(double celsius, double fahrenheit) const;
  /// "14 °C".
  std::string temperature(double celsius, double fahrenheit) const;
  std::string wind(double kmh) const;          ///< "51 km/h"
  std::string precipitation(double mm) const;  ///< "3.3 mm"
  std::string pressure(double hPa) const;      ///< "1013 hPa"
  std::string visibility(double km) const;     ///< "14 km", "< 1 km"
  /// A clear night is not sunny.
  std::string condition(WeatherConditionCode code, bool isDay) const;
};

/// "51 km/h": a number and its unit, with a space that does not break.
std::string measured(std::string const& number, std::string_view unit);
std::string percent(int value);

/// Degrees from north through east of a 16-point compass text; nothing for another text.
std::optional<double> compassDegrees(std::string_view point);

/// The name of the picture for a sky: "clear", "partlyCloudy", …, "unknown".
std::string skyName(WeatherConditionCode code);

}  // namespace nimbara
