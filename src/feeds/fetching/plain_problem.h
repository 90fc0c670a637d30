// The sentences of `feed_problem.h` as people read them on a terminal: without what a parser said, and with
// the moment of the next request apart, so that it can be written by a clock. Pure.
#pragma once

#include "base/time/instant.h"

#include <optional>
#include <string>
#include <string_view>

namespace nimbara {

/// What such a sentence holds when an answer could not be read; what follows is a parser's.
inline constexpr std::string_view kUnreadable = "response is not a valid ";
/// What joins a sentence with the moment from which the feed is asked for again.
inline constexpr std::string_view kAskedAgain = "; next attempt from ";

std::string withNextRequest(std::string problem, Instant next);

struct PlainProblem {
  std::string text;
  std::optional<Instant> next;  ///< when the feed is asked for again, if the sentence tells
};
/// Of a sentence that names its feed or not.
PlainProblem plainProblem(std::string_view sentence);

}  // namespace nimbara
