// How the terminal is written to: colours or none, Unicode or plain ASCII, and the glyphs of the weather in
// both. Holds no texts and no rules of weather.
#pragma once

#include "base/text/display_text.h"
#include "model/weather_condition.h"

#include <string>
#include <string_view>

namespace nimbara {

enum class Colour { plain, dim, bold, title, rain, snow, sun, warning };

struct Style {
  bool colour = false;
  bool ascii = false;

  /// `text` as this terminal can show it.
  std::string text(std::string_view text) const { return ascii ? asciiFolded(text) : std::string(text); }
  /// `content` as this terminal can show it, in `width` cells.
  std::string cell(std::string_view content, int width, Align align = Align::left) const;
  /// Wraps text that is already laid out.
  std::string painted(std::string_view content, Colour paint) const;
  /// The colour of a temperature, from violet frost to red heat.
  std::string paintedTemperature(std::string_view content, double celsius) const;

  /// One cell for a condition by day or night.
  std::string_view glyph(WeatherConditionCode condition, bool isDay) const;
  /// One cell that points where a wind from `direction` ("NE") blows to.
  std::string_view windArrow(std::string_view direction) const;
  /// One cell filled from below by `eighths` (0-8).
  std::string_view bar(int eighths) const;
  /// One cell with a level line: 0 bottom, 1 middle, 2 top.
  std::string_view line(int level) const;
};

Colour conditionColour(WeatherConditionCode condition);

}  // namespace nimbara
