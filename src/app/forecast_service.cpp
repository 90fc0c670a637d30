#include "app/forecast_service.h"

#include "model/process.h"
#include "providers/geocoder.h"
#include "providers/open_meteo_client.h"

namespace nimbara {

namespace {

/// Providers know coordinates; a name comes from whoever knows the place.
void setNames(WttrResponse& response, Place const& place) {
  if (place.name.empty() || response.nearestArea.empty()) return;
  NearestArea& area = response.nearestArea.front();
  area.areaName = {{place.name}};
  area.country = {{place.country}};
  area.region = {{place.region}};
}

}  // namespace

ForecastService::ForecastService(HttpClient& http, Clock const& clock, ServiceDirectory const& services,
                                 Calendar fallback)
    : http_(http), clock_(clock), services_(services), fallback_(std::move(fallback)) {}

Result<ForecastAnswer, APIError> ForecastService::fetch(Place const& place, std::stop_token stop) {
  OpenMeteoClient client(http_, clock_, services_.address(Service::openMeteo));
  auto response =
      client.fetchForecast(place.coordinate.latitude, place.coordinate.longitude, std::move(stop));
  if (!response) return std::unexpected(response.error());
  setNames(*response, place);
  ForecastAnswer answer;
  answer.data = process(*response, fallback_, clock_.now());
  answer.response = std::move(*response);
  return answer;
}

Result<Place, APIError> ForecastService::find(std::string const& name, std::string_view language,
                                              std::stop_token stop) {
  OpenMeteoGeocoder geocoder(http_, services_.address(Service::openMeteoGeocoding));
  auto const found = geocoder.search(name, language, 1, std::move(stop));
  if (!found) return std::unexpected(found.error());
  GeocodedPlace const& best = found->front();
  return Place{best.coordinate, best.name, best.country, best.region};
}

}  // namespace nimbara
