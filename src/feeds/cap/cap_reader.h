// Reads messages of the Common Alerting Protocol 1.2 from XML, or from JSON of the same members. Pure; any
// bytes may be given.
#pragma once

#include "base/result.h"
#include "feeds/cap/cap_alert.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace nimbara {

inline constexpr std::size_t kLongestCapMessage = std::size_t{16} << 20;
/// Of all polygons of a message together.
inline constexpr std::size_t kMostCapPoints = 100'000;

/// Blocks, areas and values of a message or of a list of messages together.
inline constexpr std::size_t kMostCapParts = 200'000;

/// Elements count by their names without prefixes; signatures and what the protocol does not know are passed
/// over. Descriptions, instructions, headlines, names and events stay as they are but for control characters,
/// other values lose the white space around them. A polygon, circle, date or reference that cannot be read is
/// left out; years of the Buddhist era become those of the common one. The error is a clause ("it is no
/// alert") for another root element, XML that is not well formed to its end, declared entities, nesting
/// beyond 64 levels and for what is too long or has too many parts or points.
Result<CapAlert, std::string> parseCap(std::string_view body);

}  // namespace nimbara
