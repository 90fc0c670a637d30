#include "feeds/space/geomagnetic_service.h"

#include "feeds/fetching/feed_exchange.h"

namespace nimbara {

namespace {

constexpr std::chrono::seconds kTimeout{12};

}  // namespace

GeomagneticService::GeomagneticService(HttpClient& http, Clock const& clock, std::string baseUrl)
    : http_(http), clock_(clock), baseUrl_(std::move(baseUrl)) {}

std::optional<double> GeomagneticService::currentKp(std::stop_token const& stop) {
  std::lock_guard const turn(turn_);
  Instant const now = clock_.now();
  // A clock that was set back must not keep a value alive beyond its half hour.
  bool const fresh = cachedKp_ && cacheExpiry_ && now < *cacheExpiry_ && *cacheExpiry_ - now <= kLife;
  if (!fresh) problem_ = renew(stop).value_or("");
  return cachedKp_;
}

std::string GeomagneticService::problem() const {
  std::lock_guard const turn(turn_);
  return problem_;
}

std::vector<KpReading> GeomagneticService::recent() const {
  std::lock_guard const turn(turn_);
  return recent_;
}

std::optional<Instant> GeomagneticService::checkedAt() const {
  std::lock_guard const turn(turn_);
  return checkedAt_;
}

/// Gives what went wrong; then everything is as it was.
std::optional<std::string> GeomagneticService::renew(std::stop_token const& stop) {
  HttpRequest request;
  request.url = baseUrl_ + "/products/noaa-planetary-k-index.json";
  request.headers = {{"Accept", "application/json"}};
  request.timeout = kTimeout;
  auto const response = exchange(http_, request, stop);
  if (!response) return response.error();
  if (!isSuccess(response->status)) return statusProblem(response->status);
  auto const kp = newestKp(response->body);
  if (!kp) return "the response contains no K index";
  cachedKp_ = kp;
  recent_ = kpReadings(response->body).value_or(std::vector<KpReading>());
  checkedAt_ = clock_.now();
  cacheExpiry_ = *checkedAt_ + kLife;
  return std::nullopt;
}

}  // namespace nimbara
