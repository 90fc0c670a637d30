// The units and the clock that the user reads: chosen one by one, or by the custom of the region.
#pragma once

#include "base/enum_names.h"
#include "base/time/hour_clock.h"
#include "base/units.h"
#include "platform/settings/settings.h"

#include <optional>
#include <string_view>

namespace nimbara {

/// The units in use where a locale ("en_GB.UTF-8", "zh-Hant-TW") belongs; metric without a region.
Units regionalUnits(std::string_view locale);

/// The chosen units, and the region's for those that are automatic.
Units unitsOf(Settings const& settings, std::string_view locale);

/// The chosen clock, and that of the locale where it is automatic: of 12 hours only with texts in English,
/// for a locale that says nothing ("C") has no other language's custom.
HourClock chosenClock(Settings const& settings, std::string_view language, std::string_view timeLocale);

/// The name of the locale whose texts are shown, with the chosen clock; `timeLocale` has it where it is
/// automatic.
std::string wordsLocale(Settings const& settings, std::string_view language, std::string_view timeLocale);

/// Choices that go together.
enum class UnitPreset { automatic, metric, imperial, british };
template <>
inline constexpr auto enumNames<UnitPreset> =
    std::to_array<std::string_view>({"automatic", "metric", "imperial", "british"});
static_assert(enumNamesComplete(UnitPreset::british));

/// What the settings of units hold with a preset, by their keys.
SettingValues unitChoices(UnitPreset preset);
/// The preset that the settings hold; nothing when they hold units of the user's own choice.
std::optional<UnitPreset> unitPresetOf(Settings const& settings);

}  // namespace nimbara
