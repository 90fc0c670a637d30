// A feed of public data that the feed server relays and that the program asks its source for where there is
// no feed server: the earthquakes, or one group of satellites. Pure.
#pragma once

#include "base/enum_names.h"

#include <compare>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace nimbara {

struct FeedKey {
  enum class Kind { quakes, satellites };

  Kind kind = Kind::quakes;
  std::string group;  ///< of satellites

  /// For the names of files and log lines: "quakes", "satellites-weather".
  std::string name() const;
  auto operator<=>(FeedKey const&) const = default;
};

template <>
inline constexpr auto enumNames<FeedKey::Kind> = std::to_array<std::string_view>({"quakes", "satellites"});

using QueryParameters = std::vector<std::pair<std::string, std::string>>;

/// "f=quakes" or "f=satellites" with "p=" and one of the groups that are served, each once and nothing else.
std::optional<FeedKey> feedKeyOf(QueryParameters const& parameters);

}  // namespace nimbara
