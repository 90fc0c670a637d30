// Which failures of an exchange mean that nothing left this network: the service was not asked, and the
// failure is not its own.
#pragma once

#include "platform/http/http_client.h"

namespace nimbara {

/// No name, no connection, or none that can be trusted, as behind a log-in page.
inline bool isNetworkAway(HttpError::Kind kind) {
  return kind == HttpError::Kind::unresolvedHost || kind == HttpError::Kind::connectionFailed ||
         kind == HttpError::Kind::tlsFailed;
}

}  // namespace nimbara
