#include "desktop/views/sky/sky_colours.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace nimbara {

namespace {

/// The sky of one category at day, at dusk and at night.
struct SkyRow {
  SkyColours day;
  SkyColours dusk;
  SkyColours night;
};

constexpr Colour24 rgb(std::uint32_t value) {
  return {static_cast<std::uint8_t>(value >> 16), static_cast<std::uint8_t>(value >> 8),
          static_cast<std::uint8_t>(value)};
}

/// In the order of `ConditionCategory`.
constexpr std::array kSkies = std::to_array<SkyRow>({
    {{rgb(0x1f5fa8), rgb(0x3578b5)},
     {rgb(0x2c3f78), rgb(0xa85a3c)},
     {rgb(0x0b1433), rgb(0x1f2f5c)}},  // clear
    {{rgb(0x33659c), rgb(0x4f769c)},
     {rgb(0x3a4470), rgb(0x96604f)},
     {rgb(0x121a36), rgb(0x2a3556)}},  // partly
    {{rgb(0x4a6178), rgb(0x66747f)},
     {rgb(0x3d4560), rgb(0x776462)},
     {rgb(0x191f2e), rgb(0x303747)}},  // cloudy
    {{rgb(0x5b676d), rgb(0x6f7472)}, {rgb(0x4b5160), rgb(0x716866)}, {rgb(0x22262c), rgb(0x3a3e42)}},  // fog
    {{rgb(0x3b5a72), rgb(0x54707d)},
     {rgb(0x353f58), rgb(0x5f5f6b)},
     {rgb(0x131b29), rgb(0x28344a)}},  // light rain
    {{rgb(0x2f4a60), rgb(0x47606f)},
     {rgb(0x2b3449), rgb(0x4d525f)},
     {rgb(0x0f1622), rgb(0x222d3e)}},  // heavy rain
    {{rgb(0x33365c), rgb(0x57566f)},
     {rgb(0x2c2a4a), rgb(0x5a4a5e)},
     {rgb(0x14122a), rgb(0x302b4a)}},  // thunder
    {{rgb(0x56708c), rgb(0x6b7686)},
     {rgb(0x464f6e), rgb(0x706a78)},
     {rgb(0x1d2438), rgb(0x39425a)}},  // light snow
    {{rgb(0x4d6580), rgb(0x66727f)},
     {rgb(0x414a66), rgb(0x69656f)},
     {rgb(0x1a2133), rgb(0x343d52)}},  // heavy snow
    {{rgb(0x466076), rgb(0x5f717d)},
     {rgb(0x3b445c), rgb(0x636370)},
     {rgb(0x161e2d), rgb(0x2d384b)}},  // sleet
});
static_assert(kSkies.size() == enumNames<ConditionCategory>.size());

std::uint8_t mix(std::uint8_t from, std::uint8_t to, double share) {
  return static_cast<std::uint8_t>(std::lround(from + (to - from) * share));
}

Colour24 mix(Colour24 from, Colour24 to, double share) {
  return {mix(from.red, to.red, share), mix(from.green, to.green, share), mix(from.blue, to.blue, share)};
}

SkyColours mix(SkyColours const& from, SkyColours const& to, double share) {
  return {mix(from.top, to.top, share), mix(from.bottom, to.bottom, share)};
}

double linear(std::uint8_t channel) {
  double const value = channel / 255.0;
  return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

struct WarmthRow {
  double celsius;
  Colour24 colour;
};

constexpr std::array kWarmth = std::to_array<WarmthRow>({{-30, rgb(0x9a5fc7)},
                                                         {-15, rgb(0x5b63d8)},
                                                         {0, rgb(0x3f9be0)},
                                                         {8, rgb(0x35b3a6)},
                                                         {15, rgb(0x6bb545)},
                                                         {22, rgb(0xe0b128)},
                                                         {30, rgb(0xe8782c)},
                                                         {40, rgb(0xd02f3e)}});

}  // namespace

Colour24 temperatureColour(double celsius) {
  if (!(celsius > kWarmth.front().celsius)) return kWarmth.front().colour;
  auto const above =
      std::ranges::find_if(kWarmth, [&](WarmthRow const& row) { return row.celsius >= celsius; });
  if (above == kWarmth.end()) return kWarmth.back().colour;
  WarmthRow const& below = *std::prev(above);
  return mix(below.colour, above->colour, (celsius - below.celsius) / (above->celsius - below.celsius));
}

SkyColours skyColours(WeatherConditionCode condition, double sunAltitude) {
  constexpr double kDay = 8, kDusk = -2, kNight = -12;
  SkyRow const& row = kSkies[static_cast<std::size_t>(category(condition))];
  double const altitude = std::clamp(sunAltitude, kNight, kDay);
  if (altitude >= kDusk) return mix(row.dusk, row.day, (altitude - kDusk) / (kDay - kDusk));
  return mix(row.night, row.dusk, (altitude - kNight) / (kDusk - kNight));
}

std::string hexText(Colour24 colour) {
  return fmt::format("#{:02x}{:02x}{:02x}", colour.red, colour.green, colour.blue);
}

double contrastOfWhite(Colour24 colour) {
  double const luminance =
      0.2126 * linear(colour.red) + 0.7152 * linear(colour.green) + 0.0722 * linear(colour.blue);
  return 1.05 / (luminance + 0.05);
}

}  // namespace nimbara
