#include "feeds/fetching/watched_feed.h"

#include "base/text/number.h"
#include "base/time/http_date.h"
#include "feeds/fetching/feed_exchange.h"
#include "platform/request_quota.h"

#include <algorithm>

namespace nimbara {

namespace {

using std::chrono::milliseconds;
using std::chrono::minutes;

constexpr int kNotModified = 304;
constexpr minutes kPauses[] = {minutes(1), minutes(2), minutes(5), minutes(15), minutes(60)};
constexpr milliseconds kLongestPause = std::chrono::hours(24);

std::string headerText(HttpResponse const& answer, std::string_view name) {
  return std::string(answer.header(name).value_or(""));
}

std::optional<milliseconds> namedPause(std::string_view retryAfter, Instant now) {
  if (auto const seconds = parseInteger(retryAfter)) return std::chrono::seconds(*seconds);
  auto const date = parseHttpDate(retryAfter);
  return date ? std::optional<milliseconds>(*date - now) : std::nullopt;
}

}  // namespace

milliseconds pauseAfterFailure(int status, int failures, std::optional<std::string_view> retryAfter,
                               Instant now) {
  if (status == 0 || failures < 1) return milliseconds(0);
  auto const named = retryAfter ? namedPause(*retryAfter, now) : std::nullopt;
  // Asking again for what is refused as such only annoys.
  bool const isFinal = status == 400 || status == 401 || status == 404;
  auto const step =
      isFinal ? std::size(kPauses) - 1 : std::min(static_cast<std::size_t>(failures), std::size(kPauses)) - 1;
  return std::clamp(named.value_or(kPauses[step]), milliseconds(0), kLongestPause);
}

bool FeedCheck::isFresh(Clock const& clock, milliseconds life) const {
  return checkedAt_ && isYounger(*checkedAt_, life, clock.now());
}

bool FeedCheck::isDue(Clock const& clock, milliseconds life) const {
  if (isFresh(clock, life) || isOverQuota(clock.now())) return false;
  return !pausedUntil_ || clock.steadyNow() >= *pausedUntil_;
}

/// An end that is farther away than any is that of a clock that was set back.
bool FeedCheck::isOverQuota(Instant now) const {
  return quotaEnd_ && now < *quotaEnd_ && *quotaEnd_ - now <= kLongestPause;
}

std::optional<HttpResponse> FeedCheck::ask(HttpClient& http, Clock const& clock, HttpRequest request,
                                           std::stop_token const& stop) {
  if (!etag_.empty()) request.headers.emplace_back("If-None-Match", etag_);
  if (!lastModified_.empty()) request.headers.emplace_back("If-Modified-Since", lastModified_);
  bool const isConditional = !etag_.empty() || !lastModified_.empty();
  auto answer = exchange(http, request, stop);
  if (!answer) {
    fail(clock, answer.error(), 0);
  } else if (answer->status == kNotModified && isConditional) {
    confirm(clock.now());
  } else if (!isSuccess(answer->status)) {
    fail(clock, statusProblem(answer->status), answer->status, answer->header("Retry-After"), answer->body);
  } else {
    return std::move(*answer);
  }
  return std::nullopt;
}

void FeedCheck::accept(Clock const& clock, HttpResponse const& answer) {
  etag_ = headerText(answer, "ETag");
  lastModified_ = headerText(answer, "Last-Modified");
  confirm(clock.now());
}

void FeedCheck::confirm(Instant now) {
  checkedAt_ = now;
  failedSince_.reset();
  problem_.clear();
  failures_ = 0;
  pausedUntil_.reset();
  quotaEnd_.reset();
}

void FeedCheck::fail(Clock const& clock, std::string problem, int status,
                     std::optional<std::string_view> retryAfter, std::string_view body) {
  Instant const now = clock.now();
  quotaEnd_ = quotaEnd(body, now);
  if (!failedSince_) failedSince_ = now;
  problem_ = std::move(problem);
  pausedUntil_ = clock.steadyNow() + pauseAfterFailure(status, ++failures_, retryAfter, now);
}

}  // namespace nimbara
