// What somebody wants to be notified of for a place.
#pragma once

#include "base/enum_names.h"

#include <optional>

namespace nimbara {

/// Ascending: each includes those before it.
enum class PlaceChoice {
  nothing,
  official,   ///< official warnings only
  severe,     ///< severe weather and danger, as far as their rules are on
  everything  ///< whatever is on
};
template <>
inline constexpr auto enumNames<PlaceChoice> =
    std::to_array<std::string_view>({"nothing", "official", "severe", "everything"});
static_assert(enumNamesComplete(PlaceChoice::everything));

/// What holds for a place of which nobody has chosen anything, else what was chosen.
constexpr PlaceChoice effectiveChoice(std::optional<PlaceChoice> chosen, bool isSelected, bool everyPlace) {
  if (chosen) return *chosen;
  if (isSelected) return PlaceChoice::everything;
  return everyPlace ? PlaceChoice::severe : PlaceChoice::nothing;
}

}  // namespace nimbara
