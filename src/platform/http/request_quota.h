// What a service says of the number of requests that it allows. Pure.
#pragma once

#include "base/time/instant.h"

#include <optional>
#include <string_view>

namespace nimbara {

/// When requests are allowed again after an answer that says that those of the minute, hour, day or month
/// have been used up ("Daily API request limit exceeded", as text or as the "reason" of a JSON object): at
/// the next one of UTC, within a day at the latest. Nothing for answers that say something else.
std::optional<Instant> quotaEnd(std::string_view answer, Instant now);

}  // namespace nimbara
