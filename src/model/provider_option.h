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

}  // namespace nimbara
