#include "providers/forecast_client.h"

#include "providers/common/service_answer.h"

namespace nimbara {

namespace {

constexpr std::size_t kLargestBody = std::size_t{4} << 20;

}  // namespace

ForecastClient::ForecastClient(HttpClient& http, Clock const& clock, ServiceAddress address)
    : http_(http), clock_(clock), address_(std::move(address)) {}

Result<WttrResponse, APIError> ForecastClient::fetchForecast(double latitude, double longitude,
                                                             std::stop_token const& stop) {
  Coordinate const place{latitude, longitude};
  if (!isValid(place)) return std::unexpected(APIError::of(APIError::Case::invalidURL));
  std::lock_guard const turn(turn_);
  return fetch(place, stop);
}

Result<HttpResponse, APIError> ForecastClient::get(std::string const& path, HttpHeaders const& headers,
                                                   std::stop_token const& stop) {
  HttpRequest request;
  request.url = address_.baseUrl + path;
  request.headers = {{"Accept", "application/json"}};
  request.headers.insert(request.headers.end(), headers.begin(), headers.end());
  request.maxBodyBytes = kLargestBody;
  return ask(http_, request, stop);
}

}  // namespace nimbara
