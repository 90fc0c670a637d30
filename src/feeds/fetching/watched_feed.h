// One document of a service that is asked for again and again: kept for its life, asked for with the
// validators of what is kept, left alone for a while by a service that refuses. Owned by a feed service,
// which calls it in its own turn; never throws, never forgets the last good data because of a failure.
#pragma once

#include "base/json/json.h"
#include "feeds/fetching/feed_exchange.h"
#include "feeds/fetching/feed_reading.h"
#include "platform/clock.h"
#include "platform/http/http_client.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>

namespace nimbara {

/// How a document is asked for and what it should be.
struct FeedQuestion {
  HttpRequest request;
  std::string_view expected;         ///< "list of storms", for the sentence about anything else
  std::chrono::milliseconds life{};  ///< how long an answer is taken for the present one
  bool isPatient = true;             ///< a service that refuses is left alone for a while
};

/// For how long a service is not asked after its `failures`th failure in a row (from 1). `status` is 0 where
/// the connection failed, which costs no wait: the network may be back at any moment.
std::chrono::milliseconds pauseAfterFailure(int status, int failures,
                                            std::optional<std::string_view> retryAfter, Instant now);

/// When a document was had, by which validators it can be confirmed, and since when and why it cannot.
class FeedCheck {
 public:
  bool isFresh(Clock const& clock, std::chrono::milliseconds life) const;
  /// The document is old and the service may be asked.
  bool isDue(Clock const& clock, std::chrono::milliseconds life) const;
  /// The answer that is to be read. Nothing after a failure or where the service confirms what is kept; both
  /// are noted.
  std::optional<HttpResponse> ask(HttpClient& http, Clock const& clock, HttpRequest request,
                                  std::stop_token const& stop);
  /// The answer has been read.
  void accept(Clock const& clock, HttpResponse const& answer);
  /// There is none, or it could not be read. The answer may say until when the service gives no other.
  void fail(Clock const& clock, ServiceFailure failure, HttpResponse const& answer);
  /// What another process had of the service.
  void restore(Instant checkedAt) { checkedAt_ = checkedAt; }

  std::optional<Instant> const& checkedAt() const { return checkedAt_; }
  std::optional<Instant> const& failedSince() const { return failedSince_; }
  std::optional<ServiceFailure> const& failure() const { return failure_; }

 private:
  void confirm(Instant now);
  bool isOverQuota(Instant now) const;

  std::optional<Instant> checkedAt_;
  std::optional<Instant> failedSince_;
  std::optional<ServiceFailure> failure_;
  std::optional<Validators> validators_;  ///< where the service has given any
  int failures_ = 0;
  std::optional<std::chrono::steady_clock::time_point> pausedUntil_;
  std::optional<Instant> quotaEnd_;  ///< the service allows no more requests before
};

template <class T>
class WatchedFeed {
 public:
  /// `parse` turns a body into Result<T, DecodeError>. Blocks for the request where one is due.
  template <class Parse>
  FeedReading<T> read(HttpClient& http, Clock const& clock, FeedQuestion const& question, Parse const& parse,
                      std::stop_token const& stop) {
    if (check_.isDue(clock, question.life) || !(question.isPatient || check_.isFresh(clock, question.life))) {
      if (auto const answer = check_.ask(http, clock, question.request, stop)) {
        take(clock, question, *answer, parse(answer->body));
      }
    }
    return reading(clock, question.life);
  }

  FeedReading<T> reading(Clock const& clock, std::chrono::milliseconds life) const {
    bool const fresh = check_.isFresh(clock, life);
    return {fresh ? FeedState::current : FeedState::failed, data_, check_.checkedAt(), check_.failedSince(),
            fresh ? std::nullopt : check_.failure()};
  }

  void restore(T data, Instant checkedAt) {
    data_ = std::move(data);
    check_.restore(checkedAt);
  }

 private:
  void take(Clock const& clock, FeedQuestion const& question, HttpResponse const& answer,
            Result<T, DecodeError> parsed) {
    if (!parsed) {
      return check_.fail(clock,
                         ServiceFailure::of(ServiceFailure::Kind::unreadable,
                                            "the response is not a valid " + std::string(question.expected) +
                                                " (" + parsed.error().text() + ")"),
                         answer);
    }
    data_ = std::move(*parsed);
    check_.accept(clock, answer);
  }

  FeedCheck check_;
  T data_{};
};

/// The like document of many places: of those that were asked for last.
template <class T, std::size_t most>
class WatchedFeeds {
 public:
  WatchedFeed<T>& of(std::string const& key) {
    if (!kept_.contains(key) && kept_.size() >= most) {
      kept_.erase(std::ranges::min_element(kept_, {}, [](auto const& entry) { return entry.second.asked; }));
    }
    Kept& kept = kept_[key];
    kept.asked = ++questions_;
    return kept.feed;
  }

 private:
  struct Kept {
    WatchedFeed<T> feed;
    std::uint64_t asked = 0;
  };

  std::map<std::string, Kept> kept_;
  std::uint64_t questions_ = 0;
};

}  // namespace nimbara
