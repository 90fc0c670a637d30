// Where the program has a feed from: a relay of somebody's own, or the public sources themselves
// (source_feeds.h). Any thread may ask; whoever asks blocks for the request.
#pragma once

#include "base/result.h"
#include "base/time/instant.h"
#include "feeds/fetching/feed_key.h"
#include "platform/clock.h"
#include "platform/http/http_client.h"
#include "platform/service_failure.h"

#include <map>
#include <mutex>
#include <stop_token>
#include <string>

namespace nimbara {

struct FeedBody {
  std::string body;   ///< as the feed server passes it on: the collection of earthquakes, element sets
  Instant fetchedAt;  ///< when its source gave it, as far as that is known
};

class FeedSource {
 public:
  virtual ~FeedSource() = default;
  /// A body that was read and is what the feed promises.
  virtual Result<FeedBody, ServiceFailure> get(FeedKey const& key, std::stop_token const& stop = {}) = 0;
};

/// A body of any of the feed's forms to the one in which it is passed on; `unreadable` where the answer is
/// something else or lists no satellite.
Result<std::string, ServiceFailure> servedBody(FeedKey const& key, std::string_view body);

/// Where a feed lies at a relay.
HttpRequest relayRequest(std::string const& base, FeedKey const& key);

/// The feed server that the user has named, asked by "/api/feed.php". One that fails is left alone for ten
/// minutes and one that refuses (403) for a day, where it is about satellites; a network that is away costs
/// nothing.
class RelayFeedSource final : public FeedSource {
 public:
  static constexpr std::chrono::hours kPauseAfterRefusal{24};
  static constexpr std::chrono::minutes kPauseAfterFailure{10};

  RelayFeedSource(HttpClient& http, Clock const& clock, std::string base)
      : http_(http), clock_(clock), base_(std::move(base)) {}

  Result<FeedBody, ServiceFailure> get(FeedKey const& key, std::stop_token const& stop = {}) override;

 private:
  Result<FeedBody, ServiceFailure> ask(FeedKey const& key, std::stop_token const& stop);
  void pause(FeedKey const& key, int status);

  HttpClient& http_;
  Clock const& clock_;
  std::string base_;
  std::mutex mutex_;                      // guards the next
  std::map<FeedKey, Instant> notBefore_;  ///< of satellites
};

}  // namespace nimbara
