// Until when an answer may be used without asking again. Pure.
#pragma once

#include "base/time/instant.h"
#include "platform/http/http_client.h"

namespace nimbara {

/// When an answer that arrives at `now` expires: reckoned from its Date header where it has one, so that a
/// wrong clock does no harm, and never more than a day ahead. `now` when the answer does not say.
Instant expiryOf(HttpResponse const& answer, Instant now);

}  // namespace nimbara
