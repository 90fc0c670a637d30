// The forecast of a coordinate from wttr.in: three days with an entry every three hours. The service gives no
// guarantee and fails in ways of its own, so it is the last to be asked.
#pragma once

#include "providers/forecast_client.h"
#include "providers/time_zone_lookup.h"

#include <string>

namespace nimbara {

class WttrAPIClient final : public ForecastClient {
 public:
  WttrAPIClient(HttpClient& http, Clock const& clock, ServiceAddress address, TimeZoneLookup timeZone)
      : ForecastClient(http, clock, std::move(address)), timeZone_(std::move(timeZone)) {}

 private:
  Result<WttrResponse, APIError> fetch(Coordinate place, std::stop_token const& stop) override;

  TimeZoneLookup timeZone_;
};

/// "/52.52,13.41?format=j1".
std::string wttrPath(Coordinate place);

/// The client's decisions on one answer. Pure.
Result<WttrResponse, APIError> readWttrAnswer(HttpResponse const& answer, Coordinate place,
                                              TimeZoneLookup const& timeZone);

}  // namespace nimbara
