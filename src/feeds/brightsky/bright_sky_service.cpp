#include "feeds/brightsky/bright_sky_service.h"

#include "base/text/number.h"
#include "feeds/brightsky/bright_sky_alerts.h"
#include "feeds/fetching/feed_exchange.h"

namespace nimbara {

namespace {

constexpr int kServerError = 500;

CapListing blind() {
  return {{}, true, {}};
}

CapListing failed(ServiceFailure failure) {
  return {{}, false, std::move(failure)};
}

CapListing listingOf(std::string_view body) {
  using enum ServiceFailure::Kind;
  auto list = parseBrightSkyAlerts(body);
  if (!list) {
    if (isBrightSkyUncovered(body)) return blind();
    return failed(ServiceFailure::of(
        unreadable, "the response is not a valid list of warnings (" + list.error().text() + ")"));
  }
  CapListing listing{std::move(list->messages), false, {}};
  if (list->unreadable > 0) {
    listing.failure = ServiceFailure::of(
        incomplete, std::to_string(list->unreadable) + " of the listed warnings cannot be read");
  }
  return listing;
}

}  // namespace

BrightSkyService::BrightSkyService(HttpClient& http, std::string baseUrl)
    : http_(http), address_(std::move(baseUrl) + "/alerts") {}

CapListing BrightSkyService::fetch(Coordinate place, std::string_view /*countryCode*/,
                                   std::stop_token const& stop) {
  constexpr std::size_t kLargestBody = std::size_t{16} << 20;
  constexpr int kDecimals = 4;
  if (!isValid(place)) return failed(ServiceFailure::of(ServiceFailure::Kind::noSuchPlace));
  HttpRequest request;
  request.url = address_ + "?lat=" + fixedDecimal(place.latitude, kDecimals) +
                "&lon=" + fixedDecimal(place.longitude, kDecimals);
  request.maxBodyBytes = kLargestBody;
  std::lock_guard const turn(turn_);
  HttpResponse refusal;
  auto const answer = exchange(http_, request, {}, stop, &refusal);
  if (answer) return listingOf((**answer).body);
  bool const isRefusal = refusal.status < kServerError && isBrightSkyUncovered(refusal.body);
  return isRefusal ? blind() : failed(answer.error());
}

}  // namespace nimbara
