// From an exchange with a service to its body or an `APIError`: the one place where clients learn what a
// status, an empty body or a failure of the network means.
#pragma once

#include "base/result.h"
#include "platform/http/http_client.h"
#include "providers/common/api_error.h"

#include <chrono>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>

namespace nimbara {

/// The answer whatever its status; `invalidURL` or `networkError` when there is none.
Result<HttpResponse, APIError> ask(HttpClient& http, HttpRequest const& request, std::stop_token stop);

/// Why an answer holds no data: `httpError` for a status outside 200-299, `noData` for an empty body.
std::optional<APIError> refusalIn(HttpResponse const& answer);

/// The pause that an answer's Retry-After asks for, in seconds or until a date (reckoned from the answer's
/// own Date), at most a day.
std::optional<std::chrono::seconds> retryAfterOf(HttpResponse const& answer);

/// The reason in a service's error body ("{"error":true,"reason":"…"}") on one line; empty when there is
/// none.
std::string errorReason(std::string_view body);

}  // namespace nimbara
