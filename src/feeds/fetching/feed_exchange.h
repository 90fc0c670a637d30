// What the feed services share: one exchange with a service, and the sentence that says why it gave nothing.
// Feed services raise no errors; they keep such a sentence beside the data that they still have.
#pragma once

#include "base/result.h"
#include "base/time/instant.h"
#include "feeds/fetching/feed_problem.h"
#include "platform/http_client.h"

#include <chrono>
#include <stop_token>
#include <string>

namespace nimbara {

/// The answer, whatever its status. The error is a sentence without a full stop.
Result<HttpResponse, std::string> exchange(HttpClient& http, HttpRequest const& request,
                                           std::stop_token stop);

inline bool isSuccess(int status) {
  return status >= 200 && status <= 299;
}

/// Less than `life` has passed since then. A moment in the future, where a clock that was set back puts it,
/// is not trusted.
inline bool isYounger(Instant since, std::chrono::milliseconds life, Instant now) {
  return since <= now && now - since < life;
}

}  // namespace nimbara
