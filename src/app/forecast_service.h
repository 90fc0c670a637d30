// One forecast for one place: asks the provider, names the place, processes the answer. Owned by the
// program's entry; what it returns is a value.
#pragma once

#include "app/place.h"
#include "app/service_directory.h"
#include "base/calendar.h"
#include "base/result.h"
#include "model/provider_option.h"
#include "model/weather_alert.h"
#include "model/weather_data.h"
#include "platform/clock.h"
#include "platform/http_client.h"
#include "providers/api_error.h"

#include <stop_token>
#include <string>
#include <vector>

namespace nimbara {

struct ForecastAnswer {
  WttrResponse response;
  WeatherData data;
  WeatherProviderOption provider = WeatherProviderOption::openMeteo;  ///< the one that answered
  bool fromCache = false;
  bool stale = false;
  std::vector<WeatherAlert> alerts;  ///< those made from the forecast
};

class ForecastService {
 public:
  /// `fallback` is the calendar of places whose zone nobody knows.
  ForecastService(HttpClient& http, Clock const& clock, ServiceDirectory const& services, Calendar fallback);

  Result<ForecastAnswer, APIError> fetch(Place const& place, std::stop_token stop = {});
  /// The best match of a name.
  Result<Place, APIError> find(std::string const& name, std::string_view language, std::stop_token stop = {});

 private:
  HttpClient& http_;
  Clock const& clock_;
  ServiceDirectory const& services_;
  Calendar fallback_;
};

}  // namespace nimbara
