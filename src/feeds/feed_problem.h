// The sentences by which feeds say why they have nothing new. They are kept and passed on as they are, for
// logs and commands; how a sentence begins tells what happened, for those who say it in a user's language.
// Pure.
#pragma once

#include "base/texts.h"
#include "platform/http_client.h"

#include <string>
#include <string_view>

namespace nimbara {

/// "the network cannot be reached (could not resolve host example.org)"; for what has no beginning of its own
/// the message alone. Without a full stop.
std::string networkProblem(HttpError const& error);
/// "the service answered with status 503".
std::string statusProblem(int status);

/// The sentence in the words of a language; one that is none of the above, and no answer that could not be
/// read, stays as it is.
std::string problemText(std::string_view sentence, Texts const& texts);

}  // namespace nimbara
