// The forecast of a coordinate from Apple's WeatherKit over its REST interface. It needs a key that the user
// configures; none is part of the program.
#pragma once

#include "providers/forecast_client.h"
#include "providers/time_zone_lookup.h"
#include "providers/weatherkit/apple_weather_token.h"

#include <string>

namespace nimbara {

class AppleWeatherClient final : public ForecastClient {
 public:
  AppleWeatherClient(HttpClient& http, Clock const& clock, ServiceAddress address, TimeZoneLookup timeZone,
                     AppleWeatherCredentials credentials)
      : ForecastClient(http, clock, std::move(address)),
        timeZone_(std::move(timeZone)),
        token_(clock, std::move(credentials)) {}

  /// Without all four credentials every fetch fails at once, without a request: `networkError` with the
  /// detail "WeatherKit is not configured" and no `transport`. Whoever tries several providers asks here
  /// first, so that no failure is put down to one that nobody wanted.
  bool isConfigured() const { return token_.credentials().isConfigured(); }

 private:
  Result<WttrResponse, APIError> fetch(Coordinate place, std::stop_token const& stop) override;
  Result<HttpResponse, APIError> getSigned(std::string const& path, std::stop_token const& stop);

  TimeZoneLookup timeZone_;
  AppleWeatherToken token_;
};

struct AppleWeatherQuery {
  Coordinate place;
  std::string timeZone;     ///< IANA; the service cuts its days by it
  std::string countryCode;  ///< ISO 3166, or empty: then it is left out
  Instant begin;            ///< of the hours and days
  Instant end;
};

/// Seven days from the begin of the present one. A fixed offset has no IANA name but for whole hours, which
/// are written as "Etc/GMT-3" (three hours ahead); other offsets become the whole hour below.
AppleWeatherQuery appleWeatherQuery(Coordinate place, Calendar const& calendar, Instant now);

/// "/api/v1/weather/en/52.52/13.41?dataSets=…".
std::string appleWeatherPath(AppleWeatherQuery const& query);

/// The client's decisions on one answer. Pure.
Result<WttrResponse, APIError> readAppleWeatherAnswer(HttpResponse const& answer, Coordinate place,
                                                      Calendar const& calendar, Instant now);

}  // namespace nimbara
