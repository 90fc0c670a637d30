// The bodies that the feed server serves: fetched from their sources at most once a period whatever the
// audience, one request at a time, kept over restarts, and served on while a source fails. Any thread may
// ask; whoever comes while a body is renewed gets the last good one at once.
#pragma once

#include "base/instant.h"
#include "feedserver/feed_key.h"
#include "platform/clock.h"
#include "platform/http_client.h"

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace nimbara {

/// One body as it is served; never changes.
struct ServedFeed {
  std::string body;
  std::string compressed;  ///< the same by gzip
  std::string contentType;
  std::string tag;                ///< of the body: the ETag without its quotes
  Instant changedAt;              ///< when the body became what it is
  Instant fetchedAt;              ///< when its source last confirmed it
  std::chrono::seconds period{};  ///< between questions to the source
};

class FeedKeeper {
 public:
  struct Options {
    std::string usgsBase;
    std::string celestrakBase;
    std::filesystem::path folder;  ///< of the kept bodies; empty: nothing outlives the process
    std::function<void(std::string_view)> log = [](std::string_view) {};
  };

  FeedKeeper(HttpClient& http, Clock const& clock, Options options);

  /// Nothing when there never was a good body.
  std::shared_ptr<ServedFeed const> get(FeedKey const& key);

 private:
  struct State {
    std::shared_ptr<ServedFeed const> feed;
    std::string sourceTag;
    Instant askedAt;
    std::chrono::seconds pause{};  ///< until the next question
  };

  State stateOf(FeedKey const& key);
  bool isDue(State const& state) const;
  void renew(FeedKey const& key, State state);
  HttpRequest requestFor(FeedKey const& key, State const& state) const;
  void take(FeedKey const& key, State& state, HttpResponse const& response) const;
  std::filesystem::path fileOf(FeedKey const& key) const;

  HttpClient& http_;
  Clock const& clock_;
  Options options_;
  std::mutex sources_;  ///< one question to any source at a time
  std::mutex mutex_;
  std::map<FeedKey, State> states_;
};

}  // namespace nimbara
