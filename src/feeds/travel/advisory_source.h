// Whose travel advisories are shown: each government writes for its own citizens.
#pragma once

#include "base/enum_names.h"

#include <string_view>

namespace nimbara {

/// The United States, Canada, the United Kingdom, Germany.
enum class AdvisorySource { us, ca, uk, de };

template <>
inline constexpr auto enumNames<AdvisorySource> = std::to_array<std::string_view>({"us", "ca", "uk", "de"});
static_assert(enumNamesComplete(AdvisorySource::de));

}  // namespace nimbara
