#include "feeds/space/geomagnetic_service.h"

namespace nimbara {

namespace {

Result<KIndex, DecodeError> kIndexIn(std::string_view body) {
  auto const kp = newestKp(body);
  if (!kp) return std::unexpected(DecodeError{"", "no row has a value"});
  return KIndex{kp, kpReadings(body).value_or(std::vector<KpReading>())};
}

}  // namespace

GeomagneticService::GeomagneticService(HttpClient& http, Clock const& clock, std::string baseUrl)
    : http_(http), clock_(clock), baseUrl_(std::move(baseUrl)) {}

FeedReading<KIndex> GeomagneticService::currentKp(std::stop_token const& stop) {
  constexpr std::chrono::seconds kTimeout{12};
  std::lock_guard const turn(turn_);
  FeedQuestion question;
  question.request.url = baseUrl_ + "/products/noaa-planetary-k-index.json";
  question.request.headers = {{"Accept", "application/json"}};
  question.request.timeout = kTimeout;
  question.expected = "table of the K index";
  question.life = kLife;
  question.isPatient = false;
  return feed_.read(http_, clock_, question, kIndexIn, stop);
}

}  // namespace nimbara
