// The dates of HTTP headers ("Sat, 21 Nov 2026 10:30:12 GMT", RFC 9110).
#pragma once

#include "base/time/instant.h"

#include <optional>
#include <string>
#include <string_view>

namespace nimbara {

/// The preferred form only; the two that were obsolete in 1994 are not read.
std::optional<Instant> parseHttpDate(std::string_view text);

std::string formatHttpDate(Instant instant);

}  // namespace nimbara
