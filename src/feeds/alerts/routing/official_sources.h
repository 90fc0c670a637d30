// The sources of official warnings, one row each: what the program says of a source or decides by its name is
// made from its row. A new source is a row here and a line of the route.
#pragma once

#include "base/enum_names.h"
#include "platform/service.h"

#include <array>
#include <chrono>
#include <span>
#include <string>
#include <string_view>

namespace nimbara {

/// Who passes the issuer's warnings on: nobody, the centre of the WMO, or the free public alert server.
enum class Through { direct, wmo, fpas };

template <>
inline constexpr auto enumNames<Through> = std::to_array<std::string_view>({"direct", "wmo", "fpas"});
static_assert(enumNamesComplete(Through::fpas));

struct OfficialSource {
  std::string_view name;     ///< in JSON, in the store and on the command line
  std::string_view service;  ///< proper name, the same in every language
  Service row;               ///< whom it asks
  Through through = Through::direct;
  /// The shortest time between two good checks of a place. The first two rows keep to theirs themselves: for
  /// a program the one, for a country the other.
  std::chrono::minutes rest{10};
  bool takesArticle = false;  ///< in English sentences: "the National Weather Service"
  /// What it cannot give: keys of texts; the rest is empty.
  std::array<std::string_view, 4> lacks = {};
};

/// In the order in which they are listed.
std::span<OfficialSource const> officialSources();

/// Null for a name that is none's.
OfficialSource const* officialSource(std::string_view name);

/// "meteoalarm, wmo, fpas": for sentences that say what may be chosen.
std::string namesOf(std::span<std::string_view const> sources);

}  // namespace nimbara
