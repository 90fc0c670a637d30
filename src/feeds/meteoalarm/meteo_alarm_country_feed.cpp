#include "feeds/meteoalarm/meteo_alarm_country_feed.h"

#include "feeds/fetching/feed_problem.h"

namespace nimbara {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kCacheLife = 300s;
constexpr std::chrono::milliseconds kTimeout = 60s;
/// Of a feed that was not found.
constexpr std::chrono::milliseconds kMissingFeedRest = 1h;
/// Of a service that hangs, so that the country's places do not wait for it one after the other.
constexpr std::chrono::milliseconds kHangRest = 30s;
constexpr std::size_t kLongestBody = std::size_t{32} << 20;
constexpr int kOk = 200;
constexpr int kNotModified = 304;
constexpr int kNotFound = 404;

std::optional<std::string> headerOf(HttpResponse const& answer, std::string_view name) {
  auto const value = answer.header(name);
  return value ? std::optional(std::string(*value)) : std::nullopt;
}

}  // namespace

MeteoAlarmCountryFeed::Answer MeteoAlarmCountryFeed::get(std::stop_token const& stop) {
  std::unique_lock lock(mutex_);
  if (isAsking_) {
    answered_.wait(lock, stop, [this] { return !isAsking_; });
    return known();
  }
  if (isFresh() || rests()) return known();
  isAsking_ = true;
  HttpRequest const asked = request();
  lock.unlock();
  auto const answer = http_.get(asked, stop);
  lock.lock();
  auto const outcome = accept(answer);
  failure_ = outcome ? std::nullopt : std::optional(outcome.error());
  isAsking_ = false;
  answered_.notify_all();
  return known();
}

/// A clock that was set back makes no feed fresh.
bool MeteoAlarmCountryFeed::isFresh() const {
  if (failure_ || !lastFetchDate_) return false;
  Instant const now = clock_.now();
  return *lastFetchDate_ <= now && now - *lastFetchDate_ < kCacheLife;
}

bool MeteoAlarmCountryFeed::rests() const {
  return restsUntil_ && clock_.steadyNow() < *restsUntil_;
}

HttpRequest MeteoAlarmCountryFeed::request() const {
  HttpHeaders headers{{"Accept", "application/atom+xml"}};
  if (validators_.etag) headers.emplace_back("If-None-Match", *validators_.etag);
  if (validators_.lastModified) headers.emplace_back("If-Modified-Since", *validators_.lastModified);
  return {url_, std::move(headers), kTimeout, kLongestBody};
}

MeteoAlarmCountryFeed::Outcome MeteoAlarmCountryFeed::accept(Result<HttpResponse, HttpError> const& answer) {
  restsUntil_.reset();
  if (!answer) {
    if (answer.error().kind == HttpError::Kind::timedOut) restsUntil_ = clock_.steadyNow() + kHangRest;
    return std::unexpected(networkProblem(answer.error()));
  }
  if (answer->status == kOk) return acceptBody(*answer);
  if (answer->status == kNotModified && feed_) {
    lastFetchDate_ = clock_.now();
    return {};
  }
  if (answer->status == kNotFound) {
    restsUntil_ = clock_.steadyNow() + kMissingFeedRest;
  }
  return std::unexpected(statusProblem(answer->status));
}

/// What is not well formed to its end is not kept, nor what would have it confirmed.
MeteoAlarmCountryFeed::Outcome MeteoAlarmCountryFeed::acceptBody(HttpResponse const& answer) {
  MeteoAlarmAtomParser parser;
  if (auto const read = parser.parse(answer.body); !read)
    return std::unexpected("MeteoAlarm's response is not a valid feed: " + read.error());
  feed_ = std::make_shared<MeteoAlarmFeed const>(feedOf(parser.takeEntries()));
  lastFetchDate_ = clock_.now();
  validators_ = {headerOf(answer, "ETag"), headerOf(answer, "Last-Modified")};
  return {};
}

}  // namespace nimbara
