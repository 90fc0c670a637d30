// What the forecast clients share: the check of the coordinate, one fetch at a time (further callers wait
// their turn), the request. A client adds its path, its parser and the join into the interchange record. No
// retry of failed fetches and no fallback here; both belong to whoever holds several clients.
#pragma once

#include "base/geodesy.h"
#include "base/result.h"
#include "model/wttr_response.h"
#include "platform/clock.h"
#include "platform/http/http_client.h"
#include "providers/common/api_error.h"
#include "providers/common/service_address.h"

#include <mutex>
#include <stop_token>
#include <string>

namespace nimbara {

class ForecastClient {
 public:
  virtual ~ForecastClient() = default;
  ForecastClient(ForecastClient const&) = delete;
  ForecastClient& operator=(ForecastClient const&) = delete;

  /// Degrees. Blocks for the request; `stop` ends it with a `networkError`. A coordinate outside the globe is
  /// `invalidURL`.
  Result<WttrResponse, APIError> fetchForecast(double latitude, double longitude,
                                               std::stop_token const& stop = {});

 protected:
  ForecastClient(HttpClient& http, Clock const& clock, ServiceAddress address);

  /// One fetch for a valid coordinate; no other runs meanwhile.
  virtual Result<WttrResponse, APIError> fetch(Coordinate place, std::stop_token const& stop) = 0;

  /// The answer, whatever its status, to a GET of `path` (with its query) below the service's address.
  Result<HttpResponse, APIError> get(std::string const& path, HttpHeaders const& headers,
                                     std::stop_token const& stop);
  Clock const& clock() const { return clock_; }
  ServiceAddress const& address() const { return address_; }

 private:
  HttpClient& http_;
  Clock const& clock_;
  ServiceAddress address_;
  std::mutex turn_;
};

}  // namespace nimbara
