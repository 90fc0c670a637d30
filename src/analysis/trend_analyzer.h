// What changes in a forecast and when: the temperature from day to day, the pressure, the wind's direction, a
// front. Pure.
#pragma once

#include "base/enum_names.h"
#include "base/time/calendar.h"
#include "model/weather_data.h"

#include <optional>

namespace nimbara {

/// The words of marine forecasts for the change within three hours: slowly up to 1.5 hPa, then without a
/// word up to 3.5, quickly up to 6.0, very rapidly above.
enum class PressureTendency {
  steady,
  risingSlowly,
  rising,
  risingQuickly,
  risingVeryRapidly,
  fallingSlowly,
  falling,
  fallingQuickly,
  fallingVeryRapidly
};
template <>
inline constexpr auto enumNames<PressureTendency> =
    std::to_array<std::string_view>({"steady", "risingSlowly", "rising", "risingQuickly", "risingVeryRapidly",
                                     "fallingSlowly", "falling", "fallingQuickly", "fallingVeryRapidly"});
static_assert(enumNamesComplete(PressureTendency::fallingVeryRapidly));

/// Of a change in three hours, rounded to a tenth of a hectopascal.
PressureTendency pressureTendency(double hPa);

struct PressureTrend {
  PressureTendency tendency = PressureTendency::steady;
  double changeHPa = 0;  ///< in three hours

  bool operator==(PressureTrend const&) const = default;
};

/// From that day on highs are by so many degrees above (or below, negative) those of the days before it.
struct TemperatureChange {
  Instant day{};
  double byC = 0;

  bool operator==(TemperatureChange const&) const = default;
};

struct WindTurn {
  Instant at{};      ///< of the hour in which it has turned by the larger part
  std::string from;  ///< points of the compass
  std::string to;
  bool veers = true;  ///< clockwise

  bool operator==(WindTurn const&) const = default;
};

struct FrontPassage {
  Instant at{};
  bool isCold = true;
  double changeC = 0;  ///< of the temperature in the three hours around it

  bool operator==(FrontPassage const&) const = default;
};

struct Trends {
  std::optional<TemperatureChange> temperature;
  std::optional<PressureTrend> pressure;
  std::optional<WindTurn> wind;
  std::optional<FrontPassage> front;

  bool operator==(Trends const&) const = default;
};

class TrendAnalyzer {
 public:
  /// The temperature within the forecast's days: by 5 °C and for two days at least, where the forecast
  /// reaches so far. The pressure of the last three hours, of the next three where the forecast begins now.
  /// The wind within 24 hours: by 67.5° at least, between winds of 12 km/h at least. A front within 24
  /// hours: the wind turns to the side that fronts turn it on that hemisphere while the temperature changes
  /// by 3 °C against the course of the day.
  Trends analyze(WeatherData const& weather, Instant now, Calendar const& fallback = Calendar::utc()) const;
};

}  // namespace nimbara
