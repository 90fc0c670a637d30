#include "feeds/nws/nws_alert_service.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "feeds/fetching/feed_exchange.h"

#include <algorithm>
#include <initializer_list>

namespace nimbara {

namespace {

constexpr int kBadRequest = 400;
constexpr int kNotFound = 404;

std::string keyOf(Coordinate place) {
  constexpr int kDecimals = 4;
  return fixedDecimal(place.latitude, kDecimals) + "," + fixedDecimal(place.longitude, kDecimals);
}

std::vector<NWSAlert> withEventNaming(std::vector<NWSAlert> alerts,
                                      std::initializer_list<std::string_view> words) {
  std::erase_if(alerts, [words](NWSAlert const& alert) {
    return std::ranges::none_of(words, [&](std::string_view word) { return alert.event.contains(word); });
  });
  return alerts;
}

}  // namespace

std::vector<NWSAlert> convectiveAlerts(std::vector<NWSAlert> alerts) {
  return withEventNaming(std::move(alerts), {"Tornado", "Severe Thunderstorm"});
}

std::vector<NWSAlert> floodAlerts(std::vector<NWSAlert> alerts) {
  return withEventNaming(std::move(alerts), {"Flood"});
}

NWSAlertService::NWSAlertService(HttpClient& http, Clock const& clock, Options options)
    : http_(http),
      clock_(clock),
      baseUrl_(std::move(options.baseUrl) + "/alerts/active"),
      userAgent_("(NimbaraV4, " + oneLine(options.contact) + ")") {}

NWSAlertAnswer NWSAlertService::fetchAlerts(double latitude, double longitude, std::stop_token const& stop) {
  Coordinate const place{latitude, longitude};
  if (!isValid(place)) return {{}, false, ServiceFailure::of(ServiceFailure::Kind::noSuchPlace), {}, false};
  std::string const key = keyOf(place);
  std::unique_lock lock(mutex_);
  bool const isFresh = lastFetchPoint_ == key && isYounger(*lastFetchDate_, kCacheTTL, clock_.now());
  if (isFresh) return {cachedAlerts_, true, {}, {}, false};
  auto answer = askFor(key, lock, stop);
  // Another place took the cache in between, and what has not changed is not available any more.
  bool const isLost = answer && !*answer && lastFetchPoint_ != key;
  if (isLost) answer = askFor(key, lock, stop);
  if (!answer) return failed(key, std::move(answer.error()));
  if (*answer) return taken(key, **answer);
  lastFetchDate_ = clock_.now();
  return {cachedAlerts_, true, {}, {}, false};
}

/// Lets others in while the service is asked.
NWSAlertService::Answer NWSAlertService::askFor(std::string const& key, std::unique_lock<std::mutex>& lock,
                                                std::stop_token const& stop) {
  HttpRequest const request = requestFor(key);
  auto const kept = lastFetchPoint_ == key ? std::optional(validators_) : std::nullopt;
  lock.unlock();
  auto answer = exchange(http_, request, kept, stop);
  lock.lock();
  return answer;
}

HttpRequest NWSAlertService::requestFor(std::string const& key) const {
  constexpr std::size_t kLargestBody = std::size_t{8} << 20;
  constexpr std::chrono::seconds kTimeout{15};
  HttpRequest request;
  request.url = baseUrl_ + "?point=" + key;
  request.timeout = kTimeout;
  request.maxBodyBytes = kLargestBody;
  request.headers = {{"User-Agent", userAgent_}, {"Accept", "application/geo+json"}};
  return request;
}

NWSAlertAnswer NWSAlertService::taken(std::string const& key, HttpResponse const& response) {
  constexpr int kOk = 200;
  using enum ServiceFailure::Kind;
  if (response.status != kOk) return failed(key, ServiceFailure::answered(response.status));
  auto list = parseNwsAlerts(response.body);
  if (!list) {
    return failed(key, ServiceFailure::of(unreadable, "the response is not a valid list of alerts (" +
                                                          list.error().text() + ")"));
  }
  if (list->unreadable > 0) {
    auto answer = failed(key, ServiceFailure::of(incomplete, std::to_string(list->unreadable) +
                                                                 " of the listed alerts cannot be read"));
    answer.readable = std::move(list->alerts);
    return answer;
  }
  cachedAlerts_ = std::move(list->alerts);
  lastFetchDate_ = clock_.now();
  lastFetchPoint_ = key;
  validators_ = Validators::of(response);
  return {cachedAlerts_, true, {}, {}, false};
}

NWSAlertAnswer NWSAlertService::failed(std::string const& key, ServiceFailure failure) const {
  bool const isOutside = failure.status == kBadRequest || failure.status == kNotFound;
  auto known = lastFetchPoint_ == key ? cachedAlerts_ : std::vector<NWSAlert>();
  return {std::move(known), false, std::move(failure), {}, isOutside};
}

}  // namespace nimbara
