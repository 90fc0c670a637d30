#include "demo/world/warnings/demo_warnings.h"

#include "demo/world/demo_weather.h"

#include <algorithm>
#include <array>

namespace nimbara {

namespace {

using std::chrono::hours;

constexpr hours kLookAhead{48};
constexpr hours kLongestSpell{120};

/// A kind of weather and from where on its three levels begin.
struct Danger {
  std::string_view kind;
  double (*value)(DemoWeather const&);
  std::array<double, 3> levels;
};

constexpr Danger kDangers[] = {
    {"Wind", [](DemoWeather const& w) { return w.windGusts; }, {60, 80, 100}},
    {"Thunderstorm",
     [](DemoWeather const& w) { return w.weatherCode >= 95 ? w.precipitation : -1; },
     {0, 8, 16}},
    {"Rain", [](DemoWeather const& w) { return w.snowfall > 0 ? 0 : w.precipitation; }, {4, 8, 14}},
    {"Snow-ice", [](DemoWeather const& w) { return w.snowfall; }, {0.5, 2, 4}},
    {"Fog", [](DemoWeather const& w) { return -w.visibility; }, {-400, -100, -30}},
    {"High-temperature", [](DemoWeather const& w) { return w.temperature; }, {32, 36, 40}},
    {"Low-temperature", [](DemoWeather const& w) { return -w.temperature; }, {8, 15, 25}},
};

int levelOf(Danger const& danger, Coordinate place, Instant hour) {
  double const value = danger.value(demoWeather(place, hour));
  return static_cast<int>(
      std::ranges::count_if(danger.levels, [value](double from) { return value >= from; }));
}

/// Spells are cut at the beginning of every fifth day, so that the longest frost has a beginning that stays.
bool isCut(Instant hour) {
  return hour.time_since_epoch() % kLongestSpell == Instant::duration::zero();
}

/// The spell that has `hour` in it.
DemoWarning spellAround(Danger const& danger, Coordinate place, Instant hour) {
  DemoWarning spell{danger.kind, 0, hour, hour};
  while (!isCut(spell.begin) && levelOf(danger, place, spell.begin - hours(1)) > 0) spell.begin -= hours(1);
  spell.end = spell.begin;
  do {
    spell.level = std::max(spell.level, levelOf(danger, place, spell.end));
    spell.end += hours(1);
  } while (!isCut(spell.end) && levelOf(danger, place, spell.end) > 0);
  return spell;
}

}  // namespace

std::vector<DemoWarning> demoWarnings(Coordinate place, Instant now) {
  std::vector<DemoWarning> warnings;
  Instant const first = std::chrono::floor<hours>(now);
  for (Danger const& danger : kDangers) {
    Instant hour = first;
    while (hour < first + kLookAhead) {
      if (levelOf(danger, place, hour) == 0) {
        hour += hours(1);
        continue;
      }
      warnings.push_back(spellAround(danger, place, hour));
      hour = warnings.back().end;
    }
  }
  return warnings;
}

}  // namespace nimbara
