#include "providers/metnorway/yr_no_symbol.h"

#include <algorithm>

namespace nimbara {

namespace {

struct SymbolRow {
  std::string_view base;
  WwoCondition condition;
};

constexpr WwoCondition kCloudy{"119", "Cloudy"};

/// Graded as the WMO codes are: moderate rain and snow count with the light ones, moderate showers with the
/// heavy ones. The service spells two of the codes with an "s" too many. The right spellings are read as
/// well, should it ever correct them.
constexpr SymbolRow kSymbols[] = {
    {"clearsky", {"113", "Clear"}},
    {"fair", {"116", "Fair"}},
    {"partlycloudy", {"116", "Partly Cloudy"}},
    {"cloudy", kCloudy},
    {"fog", {"143", "Fog"}},
    {"lightrain", {"296", "Light Rain"}},
    {"rain", {"296", "Rain"}},
    {"heavyrain", {"308", "Heavy Rain"}},
    {"lightrainshowers", {"176", "Light Rain Showers"}},
    {"rainshowers", {"299", "Rain Showers"}},
    {"heavyrainshowers", {"305", "Heavy Rain Showers"}},
    {"lightsleet", {"317", "Light Sleet"}},
    {"sleet", {"320", "Sleet"}},
    {"heavysleet", {"320", "Heavy Sleet"}},
    {"lightsleetshowers", {"362", "Light Sleet Showers"}},
    {"sleetshowers", {"365", "Sleet Showers"}},
    {"heavysleetshowers", {"365", "Heavy Sleet Showers"}},
    {"lightsnow", {"227", "Light Snow"}},
    {"snow", {"227", "Snow"}},
    {"heavysnow", {"338", "Heavy Snow"}},
    {"lightsnowshowers", {"323", "Light Snow Showers"}},
    {"snowshowers", {"326", "Snow Showers"}},
    {"heavysnowshowers", {"335", "Heavy Snow Showers"}},
    {"lightrainandthunder", {"200", "Light Rain and Thunder"}},
    {"rainandthunder", {"386", "Rain and Thunder"}},
    {"heavyrainandthunder", {"389", "Heavy Rain and Thunder"}},
    {"lightrainshowersandthunder", {"200", "Light Rain Showers and Thunder"}},
    {"rainshowersandthunder", {"386", "Rain Showers and Thunder"}},
    {"heavyrainshowersandthunder", {"389", "Heavy Rain Showers and Thunder"}},
    {"lightsleetandthunder", {"392", "Light Sleet and Thunder"}},
    {"sleetandthunder", {"392", "Sleet and Thunder"}},
    {"heavysleetandthunder", {"392", "Heavy Sleet and Thunder"}},
    {"lightssleetshowersandthunder", {"392", "Light Sleet Showers and Thunder"}},
    {"lightsleetshowersandthunder", {"392", "Light Sleet Showers and Thunder"}},
    {"sleetshowersandthunder", {"392", "Sleet Showers and Thunder"}},
    {"heavysleetshowersandthunder", {"392", "Heavy Sleet Showers and Thunder"}},
    {"lightsnowandthunder", {"392", "Light Snow and Thunder"}},
    {"snowandthunder", {"392", "Snow and Thunder"}},
    {"heavysnowandthunder", {"392", "Heavy Snow and Thunder"}},
    {"lightssnowshowersandthunder", {"392", "Light Snow Showers and Thunder"}},
    {"lightsnowshowersandthunder", {"392", "Light Snow Showers and Thunder"}},
    {"snowshowersandthunder", {"392", "Snow Showers and Thunder"}},
    {"heavysnowshowersandthunder", {"392", "Heavy Snow Showers and Thunder"}},
};

std::optional<bool> dayOf(std::string_view suffix) {
  if (suffix == "_day") return true;
  if (suffix == "_night") return false;
  return std::nullopt;
}

}  // namespace

YrNoSymbol readYrNoSymbol(std::string_view code) {
  auto const end = std::min(code.find('_'), code.size());
  std::string_view const base = code.substr(0, end);
  auto const row = std::ranges::find(kSymbols, base, &SymbolRow::base);
  if (row == std::ranges::end(kSymbols)) return {kCloudy, false, std::nullopt};
  return {row->condition, base.find("snow") != std::string_view::npos, dayOf(code.substr(end))};
}

}  // namespace nimbara
