// How long a request waits for a server that says nothing. The time that an exchange may take as a whole is
// for slow lines; where somebody else can be asked, a server that hangs must not use it up. The limit travels
// as the preference "wait" of RFC 7240, so that the server learns of it too. Pure.
#pragma once

#include "platform/http_client.h"

namespace nimbara {

/// Given up as timed out when for so long hardly anything comes, be it before the answer or within it.
void setLongestSilence(HttpRequest& request, std::chrono::seconds limit);

/// Nothing where the whole time may pass in silence.
std::optional<std::chrono::seconds> longestSilence(HttpRequest const& request);

}  // namespace nimbara
