// The way of all requests for maps to the network: within the budget, and with pictures' limits of size and
// time. Owned by the feeds; any thread may ask, and waits while six others are under way.
#pragma once

#include "base/result.h"
#include "feeds/imagery/request_budget.h"
#include "platform/clock.h"
#include "platform/http/http_client.h"
#include "platform/service_failure.h"

#include <condition_variable>
#include <mutex>
#include <stop_token>
#include <string>

namespace nimbara {

class ImageryRequests {
 public:
  ImageryRequests(HttpClient& http, Clock const& clock) : http_(http), clock_(clock) {}

  /// A body with a status of success, or why there is none. A host that had its requests of this minute is
  /// `leftAlone`, with the time from which it may be asked.
  Result<HttpResponse, ServiceFailure> get(std::string url, std::size_t largest, std::stop_token const& stop);

 private:
  HttpClient& http_;
  Clock const& clock_;
  std::mutex mutex_;
  std::condition_variable_any freed_;
  RequestBudget budget_;
};

/// The name of the host in an address; empty where it is none.
std::string hostOf(std::string_view url);

}  // namespace nimbara
