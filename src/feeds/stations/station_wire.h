// Members of what stations send, as kept. For sources that instantiate `decodeJson`; no part of any
// interface.
#pragma once

#include "base/text/clean_text.h"
#include "base/text/text.h"
#include "feeds/fetching/lenient_json.h"

#include <chrono>
#include <optional>
#include <string>

namespace nimbara {

/// A moment of this century in seconds since 1970.
inline std::optional<Instant> stationInstant(std::optional<double> seconds) {
  constexpr double kFirst = 946'684'800, kLast = 4'102'444'800;
  if (!seconds || !(*seconds >= kFirst && *seconds < kLast)) return std::nullopt;
  return Instant(std::chrono::seconds(static_cast<long long>(*seconds)));
}

/// A name on one line, empty where there is none.
inline std::string stationText(Lenient<std::string> const& text) {
  return cleanText(text.value.value_or(std::string()), kNameLimit, TextLines::one);
}

}  // namespace nimbara
