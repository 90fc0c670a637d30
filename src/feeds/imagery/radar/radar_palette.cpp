#include "feeds/imagery/radar/radar_palette.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace nimbara {

namespace {

/// Viridis by S. van der Walt and N. Smith (matplotlib 2.0, CC0) in eight steps: even to the eye, in order of
/// lightness, and told apart with each kind of colour blindness. The least rain is thinned, so that the map
/// shows through.
constexpr LegendStop kOwn[] = {
    {0.1, 0x440154a0}, {0.5, 0x46337ec0}, {1, 0x365c8dd8},  {2, 0x277f8ee0},
    {5, 0x1fa187e8},   {10, 0x4ac16df0},  {20, 0x9fda3af8}, {50, 0xfde725ff},
};

/// The colours of "Universal Blue" at 10, 15, 20 … dBZ.
constexpr LegendStop kUniversalBlue[] = {
    {0.15, 0x88ddeeff}, {0.32, 0x0099ccff}, {0.65, 0x0077aaff}, {1.33, 0x005588ff},
    {2.7, 0xffee00ff},  {5.6, 0xffaa00ff},  {11.5, 0xff7700ff}, {23.7, 0xff4400ff},
    {48.6, 0xee0000ff}, {99.9, 0x990000ff}, {205, 0xffaaffff},
};

/// The reflectivity scale of the National Weather Service at 5, 10, 15 … dBZ.
constexpr LegendStop kReflectivity[] = {
    {0.07, 0x04e9e7ff}, {0.15, 0x019ff4ff}, {0.32, 0x0300f4ff}, {0.65, 0x02fd02ff},
    {1.33, 0x01c501ff}, {2.7, 0x008e00ff},  {5.6, 0xfdf802ff},  {11.5, 0xe5bc00ff},
    {23.7, 0xfd9500ff}, {48.6, 0xfd0000ff}, {99.9, 0xbc0000ff}, {205, 0xf800fdff},
};

/// The composite of Iowa at 8, 17, 20, 21, 34, 40, 50 and 60 dBZ, between which its ramp runs straight.
constexpr LegendStop kN0q[] = {
    {0.12, 0x415b9eff}, {0.42, 0x6fd6e8ff}, {0.65, 0x35d65bff}, {0.75, 0x11d518ff},
    {4.9, 0x095e09ff},  {11.5, 0xffe200ff}, {48.6, 0xff8000ff}, {205, 0x710000ff},
};

constexpr LegendStop kDwd[] = {
    {0.1, 0x33ffffff}, {0.2, 0x1acc9aff}, {0.4, 0x019934ff}, {1, 0x4db31bff},   {2, 0x99cc01ff},
    {3, 0xcce601ff},   {5, 0xffff01ff},   {7.5, 0xffc401ff}, {10, 0xff8901ff},  {15, 0xff4501ff},
    {30, 0xfe0000ff},  {45, 0xe5004cff},  {75, 0xcc0098ff},  {100, 0x6600cbff}, {150, 0x0000feff},
};

constexpr LegendStop kJma[] = {
    {0.1, 0xf2f2ffff}, {1, 0xa0d2ffff},  {5, 0x218cffff},  {10, 0x0041ffff},
    {20, 0xfaf500ff},  {30, 0xff9900ff}, {50, 0xff2800ff}, {80, 0xb40068ff},
};

using Colour = std::array<double, 3>;

Colour colourOf(std::uint32_t rgb) {
  return {static_cast<double>(rgb >> 16 & 0xff), static_cast<double>(rgb >> 8 & 0xff),
          static_cast<double>(rgb & 0xff)};
}

/// Between two colours of a legend, on the way from one to the other.
ColourMeaning meaningBetween(LegendStop const& from, LegendStop const& to, Colour const& colour) {
  Colour const a = colourOf(from.rgba >> 8), b = colourOf(to.rgba >> 8);
  double along = 0, length = 0, off = 0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    along += (colour[i] - a[i]) * (b[i] - a[i]);
    length += (b[i] - a[i]) * (b[i] - a[i]);
  }
  double const t = length == 0 ? 0 : std::clamp(along / length, 0.0, 1.0);
  for (std::size_t i = 0; i < a.size(); ++i) {
    double const away = a[i] + t * (b[i] - a[i]) - colour[i];
    off += away * away;
  }
  // As reflectivity grows, by which such palettes are made.
  return {from.mmPerHour * std::pow(to.mmPerHour / from.mmPerHour, t), std::sqrt(off)};
}

constexpr double kRawZero = -32;
constexpr double kRawSteps = 2;  // to a dBZ
constexpr double kMarshallPalmerA = 200;
constexpr double kMarshallPalmerB = 1.6;

}  // namespace

std::span<LegendStop const> legendOf(RadarPalette palette) {
  constexpr std::span<LegendStop const> kLegends[] = {kOwn, kUniversalBlue, kReflectivity, kN0q, kDwd, kJma};
  return kLegends[static_cast<std::size_t>(palette)];
}

ColourMeaning meaningOf(RadarPalette palette, std::uint32_t rgb) {
  auto const legend = legendOf(palette);
  bool const isRamp = palette == RadarPalette::n0q || palette == RadarPalette::universalBlue;
  Colour const colour = colourOf(rgb);
  ColourMeaning nearest = meaningBetween(legend[0], legend[0], colour);
  for (std::size_t i = 1; i < legend.size(); ++i) {
    ColourMeaning const each = meaningBetween(legend[isRamp ? i - 1 : i], legend[i], colour);
    if (each.off < nearest.off) nearest = each;
  }
  return nearest;
}

double mmPerHourOf(double dBZ) {
  return std::pow(std::pow(10, dBZ / 10) / kMarshallPalmerA, 1 / kMarshallPalmerB);
}

double dBZOf(double mmPerHour) {
  return 10 * std::log10(kMarshallPalmerA * std::pow(mmPerHour, kMarshallPalmerB));
}

std::optional<double> rawReflectivity(std::uint8_t value) {
  return value == 0 ? std::nullopt : std::optional(kRawZero + value / kRawSteps);
}

std::uint8_t rawValueOf(double dBZ) {
  return static_cast<std::uint8_t>(std::clamp(std::round((dBZ - kRawZero) * kRawSteps), 1.0, 255.0));
}

std::uint32_t ownColourOf(double mmPerHour) {
  std::uint32_t colour = 0;
  for (LegendStop const& stop : kOwn) {
    if (mmPerHour >= stop.mmPerHour) colour = stop.rgba;
  }
  return colour;
}

}  // namespace nimbara
