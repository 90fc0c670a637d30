// What a language model on the user's computer would reply: the facts it was given as one paragraph, and
// where it is to misbehave, a sentence more with a number that nobody gave it.
#pragma once

#include "demo/demo_exchange.h"

namespace nimbara {

/// The header under whose name a stand-in finds what was posted.
inline constexpr std::string_view kPostedBody = "(posted)";

/// "/v1/chat/completions".
DemoAnswer chatCompletion(DemoRequest const& request, Instant now);

}  // namespace nimbara
