#include "analysis/felt_temperature.h"

#include "base/units.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

constexpr double kHeatIndexFrom = 27;          // °C
constexpr double kHeatIndexFromHumidity = 40;  // %
constexpr double kHotFrom = 25;                // °C
constexpr double kColdUpTo = 10;               // °C
constexpr double kWindChillFrom = 4.8;         // km/h

}  // namespace

double heatIndex(double celsius, double humidity) {
  double const t = fahrenheitFromCelsius(celsius);
  double const r = humidity;
  return celsiusFromFahrenheit(-42.379 + 2.04901523 * t + 10.14333127 * r - 0.22475541 * t * r -
                               0.00683783 * t * t - 0.05481717 * r * r + 0.00122874 * t * t * r +
                               0.00085282 * t * r * r - 0.00000199 * t * t * r * r);
}

double windChill(double celsius, double windKmph) {
  double const wind = std::pow(windKmph, 0.16);
  return 13.12 + 0.6215 * celsius - 11.37 * wind + 0.3965 * celsius * wind;
}

double feltTemperature(double celsius, double feelsLike, double humidity, double windKmph) {
  if (celsius >= kHotFrom) {
    bool const applies = celsius >= kHeatIndexFrom && humidity >= kHeatIndexFromHumidity;
    return applies ? std::max(heatIndex(celsius, humidity), feelsLike) : feelsLike;
  }
  if (celsius <= kColdUpTo && windKmph >= kWindChillFrom) {
    return std::min(windChill(celsius, windKmph), feelsLike);
  }
  return feelsLike;
}

}  // namespace nimbara
