// Finds stretches of weather in a forecast: when they begin, are at their worst, and end. Pure. What a
// provider does not say begins nothing and ends what ran before it.
#pragma once

#include "base/enum_names.h"
#include "base/time/calendar.h"
#include "model/weather_data.h"

#include <optional>
#include <vector>

namespace nimbara {

enum class EventKind {
  freezingRain,
  thunder,
  gale,
  snow,
  sleet,
  rain,
  fog,
  heat,
  cold,
  firstFrost,
  droughtEnd,
  strongSun,
  clearSky
};

template <>
inline constexpr auto enumNames<EventKind> =
    std::to_array<std::string_view>({"freezingRain", "thunder", "gale", "snow", "sleet", "rain", "fog",
                                     "heat", "cold", "firstFrost", "droughtEnd", "strongSun", "clearSky"});
static_assert(enumNamesComplete(EventKind::clearSky));

struct WeatherEvent {
  EventKind kind = EventKind::rain;
  Instant begin{};  ///< of the first hour still to come or running
  Instant peak{};   ///< of the hour that is worst, the earliest of equals
  Instant end{};    ///< of the last hour
  /// At the peak: mm of rain or of water in an hour, km/h of wind or gusts, % of thunder, °C of heat, cold
  /// and frost, the UV index, km of visibility in fog. Of a drought's end the number of dry days before.
  double value = 0;
  /// Of what falls: mm from now on. Nothing where no amount is known.
  std::optional<double> totalMM;
  std::optional<double> totalSnowCm;  ///< of snow: what is still to come
  std::optional<int> chance;          ///< the highest of its hours, %, where it is stated
  /// The most frequent of its hours.
  WeatherConditionCode condition = WeatherConditionCode::unknown;
  bool isOpen = false;  ///< it lasts as long as the forecast reaches

  bool operator==(WeatherEvent const&) const = default;
};

class EventDetector {
 public:
  /// By their begin; of events that begin together the graver first. Pauses of one hour do not part what
  /// falls. Heat and cold are spells of three days from 30 °C or up to 0 °C; the first frost is looked for in
  /// the local autumn and early winter only, after a day or more without frost in the same forecast; a
  /// drought's end follows four dry days of the forecast.
  std::vector<WeatherEvent> detect(WeatherData const& weather, Instant now,
                                   Calendar const& fallback = Calendar::utc()) const;
};

}  // namespace nimbara
