#include "cli/pages/style.h"

#include "providers/common/compass.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

constexpr std::array<std::string_view, 8> kColourCodes{"", "2", "1", "1;36", "34", "36", "33", "1;31"};

struct ConditionGlyphs {
  ConditionCategory category;
  std::string_view day, night;
  std::string_view ascii;
  Colour colour;
};

constexpr ConditionGlyphs kGlyphs[] = {
    {ConditionCategory::clear, "☀", "☾", "o", Colour::sun},
    {ConditionCategory::partlyCloudy, "◐", "◐", "c", Colour::sun},
    {ConditionCategory::cloudy, "☁", "☁", "C", Colour::plain},
    {ConditionCategory::fog, "≋", "≋", "=", Colour::dim},
    {ConditionCategory::lightRain, "☂", "☂", "r", Colour::rain},
    {ConditionCategory::heavyRain, "☂", "☂", "R", Colour::rain},
    {ConditionCategory::thunderstorm, "↯", "↯", "!", Colour::warning},
    {ConditionCategory::lightSnow, "❄", "❄", "s", Colour::snow},
    {ConditionCategory::heavySnow, "❆", "❆", "S", Colour::snow},
    {ConditionCategory::sleet, "⁂", "⁂", "*", Colour::snow},
};

ConditionGlyphs const& glyphsOf(WeatherConditionCode condition) {
  return *std::ranges::find(kGlyphs, category(condition), &ConditionGlyphs::category);
}

/// Where a wind from each of the eight main points blows to.
constexpr std::array<std::string_view, 8> kArrows{"↓", "↙", "←", "↖", "↑", "↗", "→", "↘"};
constexpr std::array<std::string_view, 8> kAsciiArrows{"v", "/", "<", "\\", "^", "/", ">", "\\"};
constexpr std::array<std::string_view, 9> kBars{" ", "▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};
constexpr std::array<std::string_view, 9> kAsciiBars{" ", ".", ".", ":", ":", "|", "|", "#", "#"};
constexpr std::array<std::string_view, 3> kLines{"▁", "━", "▔"};
constexpr std::array<std::string_view, 3> kAsciiLines{"_", "-", "^"};

struct TemperatureColour {
  double below;  // °C
  std::string_view code;
};

constexpr TemperatureColour kTemperatureColours[] = {
    {-15, "38;5;141"}, {-5, "38;5;75"},  {3, "38;5;81"},   {10, "38;5;79"},
    {18, "38;5;113"},  {25, "38;5;220"}, {32, "38;5;208"}, {1000, "38;5;196"},
};

std::string wrapped(std::string_view text, std::string_view code) {
  return "\x1b[" + std::string(code) + "m" + std::string(text) + "\x1b[0m";
}

/// The eighth of the compass that a point belongs to; -1 for a text that is no point.
int eighthOf(std::string_view direction) {
  for (int sixteenth = 0; sixteenth < 16; ++sixteenth) {
    if (compassPoint(sixteenth * 22.5) == direction) return (sixteenth + 1) / 2 % 8;
  }
  return -1;
}

}  // namespace

std::string Style::cell(std::string_view content, int width, Align align) const {
  if (!ascii) return fitted(content, width, align);
  std::string const folded = asciiFolded(content);
  // The mark of a cut text is no ASCII.
  if (displayWidth(folded) > width) return folded.substr(0, static_cast<std::size_t>(std::max(0, width)));
  return fitted(folded, width, align);
}

std::string Style::painted(std::string_view content, Colour paint) const {
  std::string_view const code = kColourCodes[static_cast<std::size_t>(paint)];
  return colour && !code.empty() ? wrapped(content, code) : std::string(content);
}

std::string Style::paintedTemperature(std::string_view content, double celsius) const {
  if (!colour) return std::string(content);
  auto const row = std::ranges::upper_bound(kTemperatureColours, celsius, {}, &TemperatureColour::below);
  return wrapped(content, row == std::ranges::end(kTemperatureColours) ? std::prev(row)->code : row->code);
}

std::string_view Style::glyph(WeatherConditionCode condition, bool isDay) const {
  ConditionGlyphs const& glyphs = glyphsOf(condition);
  return ascii ? glyphs.ascii : isDay ? glyphs.day : glyphs.night;
}

std::string_view Style::windArrow(std::string_view direction) const {
  int const eighth = eighthOf(direction);
  if (eighth < 0) return " ";
  return (ascii ? kAsciiArrows : kArrows)[static_cast<std::size_t>(eighth)];
}

std::string_view Style::bar(int eighths) const {
  return (ascii ? kAsciiBars : kBars)[static_cast<std::size_t>(std::clamp(eighths, 0, 8))];
}

std::string_view Style::line(int level) const {
  return (ascii ? kAsciiLines : kLines)[static_cast<std::size_t>(std::clamp(level, 0, 2))];
}

Colour conditionColour(WeatherConditionCode condition) {
  return glyphsOf(condition).colour;
}

}  // namespace nimbara
