// The colours of the sky behind the present weather, from its condition and the height of the sun. Pure.
// White text is readable on all of them.
#pragma once

#include "model/weather_condition.h"

#include <cstdint>
#include <string>

namespace nimbara {

struct Colour24 {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;

  bool operator==(Colour24 const&) const = default;
};

struct SkyColours {
  Colour24 top;
  Colour24 bottom;

  bool operator==(SkyColours const&) const = default;
};

/// `sunAltitude` in degrees: full day from 8 up, full night from -12 down, a warm horizon in between.
SkyColours skyColours(WeatherConditionCode condition, double sunAltitude);

/// The one scale of temperatures, from deep frost over the freezing point to great heat. Seen on light and on
/// dark cards.
Colour24 temperatureColour(double celsius);

/// "#2f6db0".
std::string hexText(Colour24 colour);

/// Contrast of white on the colour, 1-21, as WCAG 2 defines it.
double contrastOfWhite(Colour24 colour);

}  // namespace nimbara
