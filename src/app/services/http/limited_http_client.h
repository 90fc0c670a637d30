// One limit of time for all that a command asks: a request gets what is left of it, and beyond it none is
// made. What the limit ends counts as cancelled, and what it leaves no time for as not asked: neither is the
// service's failure. Any thread may call.
#pragma once

#include "platform/clock.h"
#include "platform/http/http_client.h"

#include <memory>

namespace nimbara {

class LimitedHttpClient final : public HttpClient {
 public:
  /// `limit` from now on. The clock outlives the client.
  LimitedHttpClient(std::unique_ptr<HttpClient> client, Clock const& clock, std::chrono::milliseconds limit);
  /// The network outlives the client.
  LimitedHttpClient(HttpClient& network, Clock const& clock, std::chrono::milliseconds limit);

  Result<HttpResponse, HttpError> get(HttpRequest const& request, std::stop_token stop = {}) override;

 private:
  HttpError givenUp() const;
  HttpError notAsked() const;

  std::unique_ptr<HttpClient> owned_;
  HttpClient& client_;
  Clock const& clock_;
  std::chrono::milliseconds limit_;
  std::chrono::steady_clock::time_point end_;
};

}  // namespace nimbara
