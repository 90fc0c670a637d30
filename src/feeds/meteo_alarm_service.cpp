#include "feeds/meteo_alarm_service.h"

#include "base/number.h"
#include "feeds/feed_problem.h"
#include "feeds/meteo_alarm_countries.h"

#include <algorithm>

namespace nimbara {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kCacheLife = 300s;
constexpr std::chrono::milliseconds kTimeout = 60s;
constexpr std::chrono::milliseconds kMissingFeedRest = 24h;
constexpr std::size_t kLongestBody = std::size_t{32} << 20;
constexpr int kOk = 200;
constexpr int kNotModified = 304;
constexpr int kNotFound = 404;

std::string pointKey(Coordinate place) {
  constexpr int kDecimals = 2;
  return fixedDecimal(place.latitude, kDecimals) + "," + fixedDecimal(place.longitude, kDecimals);
}

std::optional<std::string> headerOf(HttpResponse const& answer, std::string_view name) {
  auto const value = answer.header(name);
  return value ? std::optional(std::string(*value)) : std::nullopt;
}

}  // namespace

MeteoAlarmService::MeteoAlarmService(HttpClient& http, Clock const& clock, std::string baseUrl,
                                     Texts const& texts, RegionLookup regions)
    : http_(http),
      clock_(clock),
      baseUrl_(std::move(baseUrl)),
      texts_(texts),
      lookUpRegions_(std::move(regions)) {}

std::vector<WeatherAlert> MeteoAlarmService::fetchAlerts(double latitude, double longitude,
                                                         std::string_view countryCode,
                                                         std::stop_token const& stop) {
  return fetch({latitude, longitude}, countryCode, {}, stop).alerts;
}

MeteoAlarmAnswer MeteoAlarmService::fetch(Coordinate place, std::string_view countryCode,
                                          std::optional<PlaceRegions> const& regions,
                                          std::stop_token const& stop) {
  std::lock_guard const lock(mutex_);
  std::string const country = isoCountryCode(countryCode);
  auto const feedName = meteoAlarmFeedName(country);
  if (!feedName || !isValid(place)) return {{}, clock_.now(), {}};
  MeteoAlarmAnswer answer;
  if (!isFresh(country, clock_.now())) {
    if (auto const done = refresh(country, *feedName, stop); !done) answer.failure = done.error();
  }
  if (!hasFeedOf(country)) return answer;
  answer.checkedAt = lastFetchDate_;
  answer.alerts = select(place, regions ? *regions : regionsOf(place), clock_.now());
  return answer;
}

/// A clock that was set back makes no feed fresh.
bool MeteoAlarmService::isFresh(std::string const& country, Instant now) const {
  if (!hasFeedOf(country) || !lastFetchDate_) return false;
  return *lastFetchDate_ <= now && now - *lastFetchDate_ < kCacheLife;
}

MeteoAlarmService::Outcome MeteoAlarmService::refresh(std::string const& country, std::string_view feedName,
                                                      std::stop_token const& stop) {
  if (auto const missing = missingFeeds_.find(country);
      missing != missingFeeds_.end() && clock_.now() < missing->second) {
    return std::unexpected("MeteoAlarm has no feed of this country");
  }
  return request(country, feedName, true, stop);
}

HttpHeaders MeteoAlarmService::headersFor(std::string const& country, bool conditional) const {
  HttpHeaders headers{{"Accept", "application/atom+xml"}};
  auto const found = feedValidators_.find(country);
  if (!conditional || found == feedValidators_.end()) return headers;
  if (found->second.etag) headers.emplace_back("If-None-Match", *found->second.etag);
  if (found->second.lastModified) headers.emplace_back("If-Modified-Since", *found->second.lastModified);
  return headers;
}

MeteoAlarmService::Outcome MeteoAlarmService::request(std::string const& country, std::string_view feedName,
                                                      bool conditional, std::stop_token const& stop) {
  std::string const url = baseUrl_ + "/feeds/meteoalarm-legacy-atom-" + std::string(feedName);
  auto answer = http_.get({url, headersFor(country, conditional), kTimeout, kLongestBody}, stop);
  if (!answer) return std::unexpected(networkProblem(answer.error()));
  if (answer->status == kOk) return accept(country, *answer);
  if (answer->status == kNotModified && hasFeedOf(country)) {
    lastFetchDate_ = clock_.now();
    return {};
  }
  if (answer->status == kNotModified && conditional) {
    // Another country's feed has taken the place of the one that has not changed.
    feedValidators_.erase(country);
    return request(country, feedName, false, stop);
  }
  if (answer->status == kNotFound) missingFeeds_[country] = clock_.now() + kMissingFeedRest;
  return std::unexpected(statusProblem(answer->status));
}

/// What is not well formed to its end is not kept, nor what would have it confirmed.
MeteoAlarmService::Outcome MeteoAlarmService::accept(std::string const& country, HttpResponse const& answer) {
  MeteoAlarmAtomParser parser;
  if (auto const read = parser.parse(answer.body); !read)
    return std::unexpected("MeteoAlarm's answer is no feed: " + read.error());
  feed_ = feedOf(parser.takeEntries());
  lastCountryCode_ = country;
  lastFetchDate_ = clock_.now();
  feedValidators_[country] = {headerOf(answer, "ETag"), headerOf(answer, "Last-Modified")};
  return {};
}

PlaceRegions const& MeteoAlarmService::regionsOf(Coordinate place) {
  std::string key = pointKey(place);
  if (key == lastGeocodeKey_) return cachedUserRegions_;
  cachedUserRegions_ = lookUpRegions_ ? lookUpRegions_(place) : PlaceRegions{};
  lastGeocodeKey_ = std::move(key);
  return cachedUserRegions_;
}

std::vector<WeatherAlert> MeteoAlarmService::select(Coordinate place, PlaceRegions const& regions,
                                                    Instant now) const {
  auto entries = selectedEntries(*feed_, place, regions);
  std::erase_if(entries, [now](SelectedEntry const& one) { return !isCurrentWarning(*one.entry, now); });
  return mergedAlerts(entries, lastCountryCode_, texts_);
}

}  // namespace nimbara
