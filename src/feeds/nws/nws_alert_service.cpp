#include "feeds/nws/nws_alert_service.h"

#include "base/text/number.h"
#include "base/text/text.h"
#include "feeds/fetching/feed_exchange.h"

#include <algorithm>
#include <initializer_list>

namespace nimbara {

namespace {

constexpr std::chrono::seconds kTimeout{15};
constexpr std::size_t kLargestBody = std::size_t{8} << 20;
constexpr int kOk = 200;
constexpr int kNotModified = 304;
constexpr int kBadRequest = 400;
constexpr int kNotFound = 404;

std::string keyOf(Coordinate place) {
  constexpr int kDecimals = 4;
  return fixedDecimal(place.latitude, kDecimals) + "," + fixedDecimal(place.longitude, kDecimals);
}

std::optional<std::string> headerOf(HttpResponse const& response, std::string_view name) {
  auto const value = response.header(name);
  if (!value || value->empty()) return std::nullopt;
  return std::string(*value);
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
  if (!isValid(place)) return {{}, false, "the coordinates are not valid", {}, false};
  std::string const key = keyOf(place);
  std::unique_lock lock(mutex_);
  bool const isFresh = lastFetchPoint_ == key && isYounger(*lastFetchDate_, kCacheTTL, clock_.now());
  if (isFresh) return {cachedAlerts_, true, "", {}, false};
  bool const hadValidators = lastFetchPoint_ == key;
  auto response = askFor(key, lock, stop);
  // Another place took the cache in between, and what has not changed is not available any more.
  bool const isLost = hadValidators && lastFetchPoint_ != key && response && response->status == kNotModified;
  if (isLost) response = askFor(key, lock, stop);
  if (!response) return failed(key, response.error());
  if (response->status == kNotModified && lastFetchPoint_ == key) {
    lastFetchDate_ = clock_.now();
    return {cachedAlerts_, true, "", {}, false};
  }
  if (response->status != kOk) return refused(key, response->status);
  return taken(key, *response);
}

/// Lets others in while the service is asked.
Result<HttpResponse, std::string> NWSAlertService::askFor(std::string const& key,
                                                          std::unique_lock<std::mutex>& lock,
                                                          std::stop_token const& stop) {
  HttpRequest const request = requestFor(key);
  lock.unlock();
  auto response = exchange(http_, request, stop);
  lock.lock();
  return response;
}

HttpRequest NWSAlertService::requestFor(std::string const& key) const {
  HttpRequest request;
  request.url = baseUrl_ + "?point=" + key;
  request.timeout = kTimeout;
  request.maxBodyBytes = kLargestBody;
  request.headers = {{"User-Agent", userAgent_}, {"Accept", "application/geo+json"}};
  if (lastFetchPoint_ != key) return request;
  if (lastETag_) request.headers.emplace_back("If-None-Match", *lastETag_);
  if (lastModified_) request.headers.emplace_back("If-Modified-Since", *lastModified_);
  return request;
}

NWSAlertAnswer NWSAlertService::taken(std::string const& key, HttpResponse const& response) {
  auto list = parseNwsAlerts(response.body);
  if (!list) return failed(key, "the response is not a valid list of alerts (" + list.error().text() + ")");
  if (list->unreadable > 0) {
    auto answer = failed(key, std::to_string(list->unreadable) + " of the listed alerts cannot be read");
    answer.readable = std::move(list->alerts);
    return answer;
  }
  cachedAlerts_ = std::move(list->alerts);
  lastFetchDate_ = clock_.now();
  lastFetchPoint_ = key;
  lastETag_ = headerOf(response, "ETag");
  lastModified_ = headerOf(response, "Last-Modified");
  return {cachedAlerts_, true, "", {}, false};
}

NWSAlertAnswer NWSAlertService::refused(std::string const& key, int status) const {
  auto answer = failed(key, statusProblem(status));
  answer.isOutside = status == kBadRequest || status == kNotFound;
  return answer;
}

NWSAlertAnswer NWSAlertService::failed(std::string const& key, std::string problem) const {
  return {
      lastFetchPoint_ == key ? cachedAlerts_ : std::vector<NWSAlert>(), false, std::move(problem), {}, false};
}

std::vector<NWSAlert> NWSAlertService::fetchConvectiveAlerts(double latitude, double longitude,
                                                             std::stop_token const& stop) {
  return convectiveAlerts(fetchAlerts(latitude, longitude, stop).alerts);
}

std::vector<NWSAlert> NWSAlertService::fetchFloodAlerts(double latitude, double longitude,
                                                        std::stop_token const& stop) {
  return floodAlerts(fetchAlerts(latitude, longitude, stop).alerts);
}

}  // namespace nimbara
