// The sentences by which feeds say why they have nothing new. They are kept and passed on as they are, for
// logs and commands; how a sentence begins tells what happened, for those who say it in a user's language.
// Pure.
#pragma once

#include "base/words/texts.h"
#include "platform/http_client.h"

#include <optional>
#include <string>
#include <string_view>

namespace nimbara {

/// "the network cannot be reached (could not resolve host example.org)"; for what has no beginning of its own
/// the message alone. Without a full stop.
std::string networkProblem(HttpError const& error);
/// "the service answered with status 503".
std::string statusProblem(int status);

/// "the list of fires could not be fetched: the service answered with status 503"; empty without a problem.
std::string feedProblem(std::string_view feed, std::string_view problem);
/// The two parts of such a sentence; nothing for any other.
struct FeedProblem {
  std::string_view feed, problem;
};
std::optional<FeedProblem> feedProblemIn(std::string_view sentence);

/// The sentence in the words of a language; one that is none of the above, and no answer that could not be
/// read, stays as it is.
std::string problemText(std::string_view sentence, Texts const& texts);

}  // namespace nimbara
