#include "app/settings/unit_settings.h"

#include "base/text/text.h"
#include "base/words/texts.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr Units kMetric;

constexpr Units withTemperature(TemperatureUnit unit) {
  Units units;
  units.temperature = unit;
  return units;
}
constexpr Units withWind(WindUnit unit) {
  Units units;
  units.wind = unit;
  return units;
}
constexpr Units withPressure(PressureUnit unit, WindUnit wind = WindUnit::kmh) {
  Units units;
  units.pressure = unit;
  units.wind = wind;
  return units;
}
constexpr Units customary(TemperatureUnit temperature) {
  return {temperature, WindUnit::mph, PressureUnit::inHg, PrecipitationUnit::inch, DistanceUnit::miles};
}

struct RegionRow {
  std::string_view regions;
  Units units;
};

/// Where the custom is not plainly metric, after CLDR's unit preferences for the weather; the wind of Denmark
/// and Iceland and the miles of Britain as their weather services give them.
constexpr RegionRow kRegions[] = {
    {"US", customary(TemperatureUnit::fahrenheit)},
    {"LR MM", customary(TemperatureUnit::celsius)},
    {"BS BZ KY PR PW", withTemperature(TemperatureUnit::fahrenheit)},
    {"GB",
     {TemperatureUnit::celsius, WindUnit::mph, PressureUnit::hPa, PrecipitationUnit::mm,
      DistanceUnit::miles}},
    {"DK FI IS KR NO PL SE", withWind(WindUnit::ms)},
    {"RU", withPressure(PressureUnit::mmHg, WindUnit::ms)},
    {"MX", withPressure(PressureUnit::mmHg)},
    {"IN", withPressure(PressureUnit::inHg)},
};

/// The two capital letters behind language and script; empty without.
std::string_view regionOf(std::string_view locale) {
  locale = locale.substr(0, locale.find_first_of(".@"));
  auto const isCapital = [](char c) { return c >= 'A' && c <= 'Z'; };
  for (auto at = locale.find_first_of("_-"); at != std::string_view::npos;
       at = locale.find_first_of("_-", at + 1)) {
    std::string_view const rest = locale.substr(at + 1);
    std::string_view const part = rest.substr(0, rest.find_first_of("_-"));
    if (part.size() == 2 && std::ranges::all_of(part, isCapital)) return part;
  }
  return {};
}

}  // namespace

Units regionalUnits(std::string_view locale) {
  std::string_view const region = regionOf(locale);
  auto const holds = [region](RegionRow const& row) {
    return std::ranges::count(split(row.regions, ' '), region) > 0;
  };
  auto const row = std::ranges::find_if(kRegions, holds);
  return row == std::ranges::end(kRegions) ? kMetric : row->units;
}

SettingValues unitChoices(UnitPreset preset) {
  if (preset == UnitPreset::automatic) {
    SettingValues choices;
    for (auto const& [key, value] : unitChoices(UnitPreset::metric)) choices[key] = std::string("automatic");
    return choices;
  }
  Units const units = preset == UnitPreset::imperial  ? Units::imperial()
                      : preset == UnitPreset::british ? regionalUnits("en_GB")
                                                      : Units::metric();
  return {{"temperatureUnit", std::string(enumName(units.temperature))},
          {"windUnit", std::string(enumName(units.wind))},
          {"pressureUnit", std::string(enumName(units.pressure))},
          {"precipUnitDisplay", std::string(enumName(units.precipitation))},
          {"visibilityUnit", std::string(enumName(units.distance))}};
}

std::optional<UnitPreset> unitPresetOf(Settings const& settings) {
  for (std::size_t i = 0; i < enumNames<UnitPreset>.size(); ++i) {
    auto const preset = static_cast<UnitPreset>(i);
    SettingValues const choices = unitChoices(preset);
    auto const holds = [&](auto const& choice) { return settings.value(choice.first) == choice.second; };
    if (std::ranges::all_of(choices, holds)) return preset;
  }
  return std::nullopt;
}

Units unitsOf(Settings const& settings, std::string_view locale) {
  Units const custom = regionalUnits(locale);
  return {settings.choice<TemperatureUnit>("temperatureUnit").value_or(custom.temperature),
          settings.choice<WindUnit>("windUnit").value_or(custom.wind),
          settings.choice<PressureUnit>("pressureUnit").value_or(custom.pressure),
          settings.choice<PrecipitationUnit>("precipUnitDisplay").value_or(custom.precipitation),
          settings.choice<DistanceUnit>("visibilityUnit").value_or(custom.distance)};
}

HourClock chosenClock(Settings const& settings, std::string_view language, std::string_view timeLocale) {
  std::string const choice = settings.text("clock");
  if (choice == "12") return HourClock::twelve;
  bool const isEnglish = !Texts::has(language) || language.starts_with("en");
  return choice == "24" || !isEnglish ? HourClock::twentyFour : hourClockOf(timeLocale);
}

std::string wordsLocale(Settings const& settings, std::string_view language, std::string_view timeLocale) {
  return withHourClock(language, chosenClock(settings, language, timeLocale));
}

}  // namespace nimbara
