#include "feeds/space/kp_forecast_service.h"

namespace nimbara {

namespace {

Result<std::vector<KpReading>, DecodeError> predicted(std::string_view body) {
  auto readings = kpReadings(body);
  if (readings) {
    std::erase_if(*readings, [](KpReading const& reading) { return reading.kind != KpKind::predicted; });
  }
  return readings;
}

}  // namespace

KpForecastService::KpForecastService(HttpClient& http, Clock const& clock, std::string baseUrl)
    : http_(http), clock_(clock), baseUrl_(std::move(baseUrl)) {}

FeedReading<std::vector<KpReading>> KpForecastService::fetchForecast(std::stop_token const& stop) {
  constexpr std::chrono::seconds kTimeout{12};
  std::lock_guard const turn(turn_);
  FeedQuestion question;
  question.request.url = baseUrl_ + "/products/noaa-planetary-k-index-forecast.json";
  question.request.headers = {{"Accept", "application/json"}};
  question.request.timeout = kTimeout;
  question.expected = "forecast of the K index";
  question.life = kLife;
  return feed_.read(http_, clock_, question, predicted, stop);
}

}  // namespace nimbara
