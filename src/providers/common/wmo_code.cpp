#include "providers/common/wmo_code.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

struct WmoRow {
  int wmo;
  std::string_view wwo;
  std::string_view description;
};

/// Ascending by code. The grouping is uneven on purpose: moderate drizzle (53) counts as light rain.
constexpr std::array kWmoCodes = std::to_array<WmoRow>({
    {0, "113", "Clear"},
    {1, "116", "Mainly Clear"},
    {2, "116", "Partly Cloudy"},
    {3, "122", "Overcast"},
    {45, "143", "Fog"},
    {48, "143", "Depositing Rime Fog"},
    {51, "266", "Light Drizzle"},
    {53, "296", "Moderate Drizzle"},
    {55, "266", "Dense Drizzle"},
    {56, "311", "Light Freezing Drizzle"},
    {57, "314", "Dense Freezing Drizzle"},
    {61, "296", "Slight Rain"},
    {63, "296", "Moderate Rain"},
    {65, "308", "Heavy Rain"},
    {66, "311", "Light Freezing Rain"},
    {67, "314", "Heavy Freezing Rain"},
    {71, "227", "Slight Snowfall"},
    {73, "227", "Moderate Snowfall"},
    {75, "338", "Heavy Snowfall"},
    {77, "350", "Snow Grains"},
    {80, "176", "Slight Rain Showers"},
    {81, "299", "Moderate Rain Showers"},
    {82, "305", "Violent Rain Showers"},
    {85, "323", "Slight Snow Showers"},
    {86, "335", "Heavy Snow Showers"},
    {95, "200", "Thunderstorm"},
    {96, "389", "Thunderstorm with Slight Hail"},
    {99, "389", "Thunderstorm with Heavy Hail"},
});
static_assert(std::ranges::is_sorted(kWmoCodes, std::ranges::less_equal{}, &WmoRow::wmo));

constexpr WmoRow kUnknown{-1, "119", "Unknown"};

WmoRow const& row(int wmo) {
  auto const found = std::ranges::lower_bound(kWmoCodes, wmo, {}, &WmoRow::wmo);
  return found != kWmoCodes.end() && found->wmo == wmo ? *found : kUnknown;
}

}  // namespace

std::string_view wwoCodeOfWmo(int wmo) {
  return row(wmo).wwo;
}

std::string_view descriptionOfWmo(int wmo) {
  return row(wmo).description;
}

}  // namespace nimbara
