// Texts that speak of a moment: "until 18:00" on the same day, "until Tuesday 18:00" else, each with the
// prepositions of its language. Pure.
#pragma once

#include "base/words/time_words.h"

#include <string>
#include <string_view>

namespace nimbara {

/// The text of `key`, which takes the clock, or of `key`.day, which takes day and clock; see
/// `TimeWords::moment`.
std::string momentText(std::string_view key, Instant moment, Instant now, TimeWords const& words,
                       Texts const& texts);

}  // namespace nimbara
