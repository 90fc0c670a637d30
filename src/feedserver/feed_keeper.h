// The bodies that the feed server serves, as source_feeds.h has them from their sources, and compressed once.
// Any thread may ask; whoever comes while a body is renewed gets the last good one at once.
#pragma once

#include "base/time/instant.h"
#include "feeds/source_feeds.h"

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
  SourceFeeds sources_;
  std::mutex mutex_;
  std::map<FeedKey, std::shared_ptr<ServedFeed const>> served_;
};

}  // namespace nimbara
