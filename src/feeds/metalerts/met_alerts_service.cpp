#include "feeds/metalerts/met_alerts_service.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "feeds/metalerts/met_alerts_list.h"
#include "platform/http/http_expiry.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr std::size_t kMostPlaces = 64;
constexpr int kOutside = 422;

/// Svalbard and Jan Mayen have a code of their own; the sea has none.
bool isForeign(std::string_view countryCode) {
  return !countryCode.empty() && countryCode != "NO" && countryCode != "SJ";
}

CapListing listing(std::vector<CapMessage> messages, std::string_view countryCode) {
  bool const isBlind = messages.empty() && isForeign(countryCode);
  return {std::move(messages), isBlind, {}};
}

/// What lies outside the area is the service's to say, except of its own country.
CapListing refused(ServiceFailure failure, std::string_view countryCode) {
  bool const isBlind = failure.status == kOutside && (countryCode.empty() || isForeign(countryCode));
  if (isBlind) return {{}, true, {}};
  return {{}, false, std::move(failure)};
}

}  // namespace

std::string_view metAlertsLanguage(std::string_view language) {
  std::string const first = asciiLowered(language.substr(0, language.find_first_of("-_.@")));
  bool const isNorwegian = first == "nb" || first == "nn" || first == "no";
  return isNorwegian ? "no" : "en";
}

MetAlertsService::MetAlertsService(HttpClient& http, Clock const& clock, Options options)
    : http_(http),
      clock_(clock),
      address_(std::move(options.baseUrl) + "/weatherapi/metalerts/2.0/current.json"),
      language_(metAlertsLanguage(options.language)) {}

CapListing MetAlertsService::fetch(Coordinate place, std::string_view countryCode,
                                   std::stop_token const& stop) {
  if (!isValid(place)) return {{}, false, ServiceFailure::of(ServiceFailure::Kind::noSuchPlace)};
  HttpRequest const request = requestFor(place);
  std::lock_guard const turn(turn_);
  auto const kept = kept_.find(request.url);
  bool const isKept = kept != kept_.end();
  Instant const now = clock_.now();
  if (isKept && kept->second.fetched <= now && now < kept->second.expires)
    return listing(kept->second.messages, countryCode);
  HttpResponse other;
  auto const validators = isKept ? std::optional(kept->second.validators) : std::nullopt;
  auto const answer = exchange(http_, request, validators, stop, &other);
  if (!answer) return refused(answer.error(), countryCode);
  if (*answer) return taken(request.url, **answer, countryCode);
  kept->second.fetched = clock_.now();
  kept->second.expires = expiryOf(other, kept->second.fetched);
  return listing(kept->second.messages, countryCode);
}

HttpRequest MetAlertsService::requestFor(Coordinate place) const {
  constexpr std::size_t kLargestBody = std::size_t{16} << 20;
  constexpr int kDecimals = 4;
  HttpRequest request;
  request.url = address_ + "?lat=" + fixedDecimal(place.latitude, kDecimals) +
                "&lon=" + fixedDecimal(place.longitude, kDecimals) + "&lang=" + language_;
  request.maxBodyBytes = kLargestBody;
  return request;
}

CapListing MetAlertsService::taken(std::string const& url, HttpResponse const& answer,
                                   std::string_view countryCode) {
  using enum ServiceFailure::Kind;
  auto list = parseMetAlerts(answer.body);
  if (!list) {
    return {{},
            false,
            ServiceFailure::of(unreadable,
                               "the response is not a valid list of warnings (" + list.error().text() + ")")};
  }
  if (list->unreadable > 0) {
    return {std::move(list->messages), false,
            ServiceFailure::of(incomplete,
                               std::to_string(list->unreadable) + " of the listed warnings cannot be read")};
  }
  Kept& kept = keep(url);
  kept.messages = std::move(list->messages);
  kept.validators = Validators::of(answer);
  kept.fetched = clock_.now();
  kept.expires = expiryOf(answer, kept.fetched);
  return listing(kept.messages, countryCode);
}

/// Of the places that were asked for last.
MetAlertsService::Kept& MetAlertsService::keep(std::string const& url) {
  if (!kept_.contains(url) && kept_.size() >= kMostPlaces) {
    kept_.erase(std::ranges::min_element(kept_, {}, [](auto const& entry) { return entry.second.asked; }));
  }
  Kept& kept = kept_[url];
  kept.asked = ++questions_;
  return kept;
}

}  // namespace nimbara
