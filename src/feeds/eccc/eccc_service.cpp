#include "feeds/eccc/eccc_service.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "feeds/eccc/eccc_alerts.h"
#include "feeds/fetching/feed_exchange.h"

#include <algorithm>

namespace nimbara {

namespace {

/// Zones are some ten kilometres wide at least; what is near is worth knowing, the rest of a province is not.
constexpr double kMarginDegrees = 0.05;
constexpr double kPole = 90;
constexpr double kDateLine = 180;

/// "west,south,east,north".
std::string boxAround(Coordinate place) {
  constexpr int kDecimals = 4;
  auto const text = [](double degrees, double most) {
    return fixedDecimal(std::clamp(degrees, -most, most), kDecimals);
  };
  return text(place.longitude - kMarginDegrees, kDateLine) + "," +
         text(place.latitude - kMarginDegrees, kPole) + "," +
         text(place.longitude + kMarginDegrees, kDateLine) + "," +
         text(place.latitude + kMarginDegrees, kPole);
}

/// The first failure is told.
void fail(CapListing& listing, ServiceFailure failure) {
  if (!listing.failure) listing.failure = std::move(failure);
}

/// An alert that goes on may have moved from the one list to the other between two requests.
void add(CapListing& listing, std::vector<CapAlert> alerts, std::string const& itemsUrl) {
  for (CapAlert& alert : alerts) {
    auto const known = std::ranges::find(
        listing.messages, alert.identifier,
        [](CapMessage const& message) -> std::string const& { return message.alert->identifier; });
    CapMessage message;
    message.link = itemsUrl + "/" + percentEncoded(alert.identifier);
    message.country = "CA";
    message.alert = std::make_shared<CapAlert const>(std::move(alert));
    known == listing.messages.end() ? listing.messages.push_back(std::move(message))
                                    : void(*known = std::move(message));
  }
}

/// Whoever could not be reached just now cannot be reached for a second question either.
bool isAway(std::optional<ServiceFailure> const& failure) {
  using enum HttpError::Kind;
  constexpr HttpError::Kind kAway[] = {unresolvedHost, connectionFailed, tlsFailed, cancelled};
  return failure && std::ranges::find(kAway, failure->transport) != std::ranges::end(kAway);
}

}  // namespace

EcccService::EcccService(HttpClient& http, Clock const& /*clock*/, std::string baseUrl)
    : http_(http), itemsUrl_(std::move(baseUrl) + "/collections/weather-alerts/items") {}

/// The service filters by one status at a time; by a list of them it finds nothing.
CapListing EcccService::fetch(Coordinate place, std::string_view /*countryCode*/,
                              std::stop_token const& stop) {
  CapListing listing;
  if (!isValid(place)) {
    fail(listing, ServiceFailure::of(ServiceFailure::Kind::noSuchPlace));
    return listing;
  }
  std::lock_guard const turn(turn_);
  std::string const box = boxAround(place);
  for (std::string_view const state : {"issued", "continued"}) {
    if (!isAway(listing.failure)) ask(state, box, listing, stop);
  }
  return listing;
}

void EcccService::ask(std::string_view state, std::string const& box, CapListing& listing,
                      std::stop_token const& stop) {
  constexpr int kOk = 200;
  constexpr std::size_t kLargestBody = std::size_t{16} << 20;
  constexpr std::chrono::seconds kTimeout{15};
  using enum ServiceFailure::Kind;
  HttpRequest request;
  request.url = itemsUrl_ + "?f=json&bbox=" + box + "&status_en=" + std::string(state) + "&limit=10000";
  request.headers = {{"Accept", "application/geo+json, application/json;q=0.5"}};
  request.timeout = kTimeout;
  request.maxBodyBytes = kLargestBody;
  auto const answer = exchange(http_, std::move(request), std::nullopt, stop);
  if (!answer) return fail(listing, answer.error());
  HttpResponse const& response = **answer;
  if (response.status != kOk) return fail(listing, ServiceFailure::answered(response.status));
  auto list = parseEcccAlerts(response.body);
  if (!list) {
    return fail(listing, ServiceFailure::of(unreadable, "the response is not a valid list of alerts (" +
                                                            list.error().text() + ")"));
  }
  add(listing, std::move(list->alerts), itemsUrl_);
  std::size_t const missing = list->unreadable + list->withheld;
  if (missing > 0) {
    fail(listing,
         ServiceFailure::of(incomplete, std::to_string(missing) + " of the matching alerts cannot be read"));
  }
}

}  // namespace nimbara
