#include "feeds/air/air_quality_service.h"

#include "base/text/number.h"
#include "base/text/text.h"

namespace nimbara {

namespace {

constexpr int kDecimals = 4;

std::string placeQuery(Coordinate place) {
  return "latitude=" + fixedDecimal(place.latitude, kDecimals) +
         "&longitude=" + fixedDecimal(place.longitude, kDecimals);
}

FeedQuestion questionFor(std::string const& placeQuery, AirQualityService::Options const& options) {
  constexpr std::size_t kLargestBody = std::size_t{1} << 20;
  constexpr std::chrono::seconds kTimeout{15};
  FeedQuestion question;
  question.request.url = options.baseUrl + "/v1/air-quality?" + placeQuery + "&hourly=" + airVariables() +
                         "&current=" + airVariables() + "&timezone=GMT&forecast_days=5";
  if (!options.apiKey.empty()) question.request.url += "&apikey=" + percentEncoded(options.apiKey);
  question.request.headers = {{"Accept", "application/json"}};
  question.request.timeout = kTimeout;
  question.request.maxBodyBytes = kLargestBody;
  question.expected = "air quality forecast";
  question.life = AirQualityService::kLife;
  return question;
}

}  // namespace

AirQualityService::AirQualityService(HttpClient& http, Clock const& clock, Options options)
    : http_(http), clock_(clock), options_(std::move(options)) {}

FeedReading<AirQualityForecast> AirQualityService::fetchForecast(Coordinate place,
                                                                 std::stop_token const& stop) {
  if (!isValid(place)) return placelessReading<AirQualityForecast>();
  std::string const key = placeQuery(place);
  std::lock_guard const turn(turn_);
  return places_.of(key).read(http_, clock_, questionFor(key, options_), parseAirQuality, stop);
}

}  // namespace nimbara
