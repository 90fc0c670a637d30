#include "feeds/fetching/watched_feed.h"

#include "base/text/number.h"
#include "base/time/http_date.h"
#include "platform/http/request_quota.h"

#include <algorithm>

namespace nimbara {

namespace {

using std::chrono::milliseconds;
using std::chrono::minutes;

constexpr minutes kPauses[] = {minutes(1), minutes(2), minutes(5), minutes(15), minutes(60)};
constexpr milliseconds kLongestPause = std::chrono::hours(24);

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
  HttpResponse refusal;
  auto answer = exchange(http, std::move(request), validators_, stop, &refusal);
  if (!answer) {
    fail(clock, std::move(answer.error()), refusal);
    return std::nullopt;
  }
  if (!*answer) confirm(clock.now());
  return std::move(*answer);
}

void FeedCheck::accept(Clock const& clock, HttpResponse const& answer) {
  auto given = Validators::of(answer);
  bool const isAny = !given.etag.empty() || !given.lastModified.empty();
  validators_ = isAny ? std::optional(std::move(given)) : std::nullopt;
  confirm(clock.now());
}

void FeedCheck::confirm(Instant now) {
  checkedAt_ = now;
  failedSince_.reset();
  failure_.reset();
  failures_ = 0;
  pausedUntil_.reset();
  quotaEnd_.reset();
}

void FeedCheck::fail(Clock const& clock, ServiceFailure failure, HttpResponse const& answer) {
  Instant const now = clock.now();
  quotaEnd_ = quotaEnd(answer.body, now);
  if (!failedSince_) failedSince_ = now;
  failure_ = std::move(failure);
  pausedUntil_ =
      clock.steadyNow() + pauseAfterFailure(answer.status, ++failures_, answer.header("Retry-After"), now);
}

}  // namespace nimbara
