// What the colours of a radar picture mean: for each palette its legend, and the amounts of rain behind
// values of reflectivity. Pure.
#pragma once

#include "base/enum_names.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace nimbara {

/// The colours that a supplier's pictures have; `own` are those that this program gives to bare values.
enum class RadarPalette { own, universalBlue, reflectivity, n0q, dwd, jma };
template <>
inline constexpr auto enumNames<RadarPalette> =
    std::to_array<std::string_view>({"own", "universalBlue", "reflectivity", "n0q", "dwd", "jma"});
static_assert(enumNamesComplete(RadarPalette::jma));

struct LegendStop {
  double mmPerHour = 0;    ///< from here on
  std::uint32_t rgba = 0;  ///< 0xRRGGBBAA
};

/// From the least rain to the most.
std::span<LegendStop const> legendOf(RadarPalette palette);

/// What a colour (0xRRGGBB) of a picture stands for, by the legend's nearest: of palettes that run from
/// colour to colour also between two.
struct ColourMeaning {
  double mmPerHour = 0;
  double off = 0;  ///< distance from that colour: 0 to 442
};
ColourMeaning meaningOf(RadarPalette palette, std::uint32_t rgb);
/// What is further off is no colour of the palette.
inline constexpr double kColourTolerance = 32;

/// By the relation of Marshall and Palmer, Z = 200 R^1.6.
double mmPerHourOf(double dBZ);
double dBZOf(double mmPerHour);

/// What a pixel of bare values means, which counts half dBZ from -32: nothing for 0, which is no echo.
std::optional<double> rawReflectivity(std::uint8_t value);
/// The like for the way there.
std::uint8_t rawValueOf(double dBZ);

/// Our own colour of an amount of rain; wholly transparent below the legend's first stop.
std::uint32_t ownColourOf(double mmPerHour);

}  // namespace nimbara
