// One exchange with a service, as all feeds have it: what is kept is asked for by its validators, and
// whatever is no answer becomes a `ServiceFailure`. Feed services raise no errors; they keep the failure
// beside the data that they still have.
#pragma once

#include "base/result.h"
#include "base/time/instant.h"
#include "platform/service_failure.h"

#include <chrono>
#include <optional>
#include <stop_token>
#include <string>

namespace nimbara {

/// What a service sends with a document so that it can be asked whether it has changed. They belong to the
/// document and are kept only with it.
struct Validators {
  std::string etag;
  std::string lastModified;

  static Validators of(HttpResponse const& answer);
};

/// The document of a status from 200 to 299, or nothing where the service confirms the one that `kept`
/// belongs to. Any other status is a failure. `other`, where given, is then the answer that had it, as it is
/// the one that confirms.
Result<std::optional<HttpResponse>, ServiceFailure> exchange(HttpClient& http, HttpRequest request,
                                                             std::optional<Validators> const& kept,
                                                             std::stop_token stop,
                                                             HttpResponse* other = nullptr);

/// Less than `life` has passed since then. A moment in the future, where a clock that was set back puts it,
/// is not trusted.
inline bool isYounger(Instant since, std::chrono::milliseconds life, Instant now) {
  return since <= now && now - since < life;
}

}  // namespace nimbara
