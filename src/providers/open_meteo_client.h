// The forecast of a coordinate from Open-Meteo: request builder, parser and the join of the two into the
// interchange record. No retry and no fallback here. One request at a time; callers wait their turn.
#pragma once

#include "base/geodesy.h"
#include "base/result.h"
#include "model/wttr_response.h"
#include "platform/clock.h"
#include "platform/http_client.h"
#include "providers/api_error.h"
#include "providers/open_meteo_parser.h"

#include <mutex>
#include <stop_token>
#include <string>

namespace nimbara {

/// How a service is reached: "https://api.open-meteo.com" and, for the paid host, the key.
struct ServiceAddress {
  std::string baseUrl;
  std::string apiKey;
};

class OpenMeteoClient {
 public:
  OpenMeteoClient(HttpClient& http, Clock const& clock, ServiceAddress address);

  static constexpr std::string_view name() { return "Open-Meteo"; }

  /// Degrees. Blocks for the request; `stop` ends it with a `networkError`.
  Result<WttrResponse, APIError> fetchForecast(double latitude, double longitude, std::stop_token stop = {});

 private:
  HttpClient& http_;
  Clock const& clock_;
  ServiceAddress address_;
  std::mutex turn_;
};

/// The client's decisions on one answer: which status, which body, which error. Pure.
Result<WttrResponse, APIError> readOpenMeteoAnswer(HttpResponse const& answer, Coordinate place, Instant now);

/// Joins the parsed values. Gaps of the present are filled from the hour that contains it (`now` where the
/// answer gives no time); hours without temperature are left out; days are those of the place's own zone.
/// `noResults` when nothing is left.
Result<WttrResponse, APIError> joinOpenMeteo(OpenMeteoResponse const& response, Coordinate place,
                                             Instant now);

}  // namespace nimbara
