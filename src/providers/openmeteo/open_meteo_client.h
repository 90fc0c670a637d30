// The forecast of a coordinate from Open-Meteo: request, parser and the join into the interchange record.
#pragma once

#include "providers/forecast_client.h"
#include "providers/openmeteo/open_meteo_parser.h"

namespace nimbara {

class OpenMeteoClient final : public ForecastClient {
 public:
  OpenMeteoClient(HttpClient& http, Clock const& clock, ServiceAddress address)
      : ForecastClient(http, clock, std::move(address)) {}

 private:
  Result<WttrResponse, APIError> fetch(Coordinate place, std::stop_token const& stop) override;
};

/// The client's decisions on one answer: which status, which body, which error. Pure.
Result<WttrResponse, APIError> readOpenMeteoAnswer(HttpResponse const& answer, Coordinate place, Instant now);

/// Joins the parsed values. Gaps of the present are filled from the hour that contains it (`now` where the
/// answer gives no time); hours without temperature are left out; days are those of the place's own zone.
/// `noResults` when nothing is left.
Result<WttrResponse, APIError> joinOpenMeteo(OpenMeteoResponse const& response, Coordinate place,
                                             Instant now);

}  // namespace nimbara
