// The forecast providers and the user's choice among them.
#pragma once

#include "base/enum_names.h"

namespace nimbara {

/// Stored in the settings under "preferredProvider".
enum class WeatherProviderOption { automatic, appleWeather, openMeteo, yrNo, wttrIn };

template <>
inline constexpr auto enumNames<WeatherProviderOption> =
    std::to_array<std::string_view>({"automatic", "appleWeather", "openMeteo", "yrNo", "wttrIn"});
static_assert(enumNamesComplete(WeatherProviderOption::wttrIn));

/// In the order in which they are tried without a choice.
enum class AutomaticProvider { appleWeather, openMeteo, yrNo, wttrIn };

template <>
inline constexpr auto enumNames<AutomaticProvider> =
    std::to_array<std::string_view>({"appleWeather", "openMeteo", "yrNo", "wttrIn"});
static_assert(enumNamesComplete(AutomaticProvider::wttrIn));

}  // namespace nimbara
