#include "desktop/views/view_context.h"

#include "base/words/decimal_text.h"
#include "model/condition_text.h"

#include <array>

namespace nimbara {

std::string measured(std::string const& number, std::string_view unit) {
  return number + "\u00A0" + std::string(unit);
}

std::string percent(int value) {
  return measured(std::to_string(value), "%");
}

std::string ViewContext::degrees(double celsius, double fahrenheit) const {
  return displayTemperature(celsius, fahrenheit, units.temperature) + "°";
}

std::string ViewContext::temperature(double celsius, double fahrenheit) const {
  return measured(displayTemperature(celsius, fahrenheit, units.temperature), symbol(units.temperature));
}

std::string ViewContext::wind(double kmh) const {
  return measured(decimalText(display(kmh, units.wind), texts), symbol(units.wind));
}

std::string ViewContext::precipitation(double mm) const {
  return measured(decimalText(display(mm, units.precipitation), texts), symbol(units.precipitation));
}

std::string ViewContext::pressure(double hPa) const {
  return measured(decimalText(display(hPa, units.pressure), texts), symbol(units.pressure));
}

/// Records carry whole kilometres: 0 is all that lies below half a one.
std::string ViewContext::visibility(double km) const {
  std::string const number = display(km, units.distance);
  return measured(number == "0" ? "< 1" : number, symbol(units.distance));
}

std::string ViewContext::condition(WeatherConditionCode code, bool isDay) const {
  return conditionText(code, isDay, texts);
}

std::optional<double> compassDegrees(std::string_view point) {
  constexpr std::array<std::string_view, 16> kPoints{"N", "NNE", "NE", "ENE", "E", "ESE", "SE", "SSE",
                                                     "S", "SSW", "SW", "WSW", "W", "WNW", "NW", "NNW"};
  auto const found = std::ranges::find(kPoints, point);
  if (found == kPoints.end()) return std::nullopt;
  return 22.5 * static_cast<double>(found - kPoints.begin());
}

std::string skyName(WeatherConditionCode code) {
  if (code == WeatherConditionCode::unknown) return "unknown";
  return std::string(enumName(category(code)));
}

}  // namespace nimbara
