#include "feedserver/feed_keeper.h"

#include "base/sha256.h"
#include "feedserver/gzip.h"

namespace nimbara {

namespace {

std::string_view contentTypeOf(FeedKey const& key) {
  return key.kind == FeedKey::Kind::quakes ? "application/json" : "text/plain; charset=utf-8";
}

std::shared_ptr<ServedFeed const> served(FeedKey const& key, SourceBody const& kept) {
  return std::make_shared<ServedFeed const>(ServedFeed{
      kept.body, gzipped(kept.body), std::string(contentTypeOf(key)), sha256Hex(kept.body).substr(0, 32),
      kept.changedAt, kept.fetchedAt, SourceFeeds::periodOf(key.kind)});
}

std::shared_ptr<ServedFeed const> confirmed(ServedFeed const& feed, Instant now) {
  ServedFeed copy = feed;
  copy.fetchedAt = now;
  return std::make_shared<ServedFeed const>(std::move(copy));
}

}  // namespace

FeedKeeper::FeedKeeper(HttpClient& http, Clock const& clock, Options options)
    : sources_(http, clock,
               {.usgsBase = std::move(options.usgsBase),
                .celestrakBase = std::move(options.celestrakBase),
                .folder = std::move(options.folder),
                .log = std::move(options.log),
                .isServer = true}) {}

std::shared_ptr<ServedFeed const> FeedKeeper::get(FeedKey const& key) {
  auto const kept = sources_.read(key).kept;
  if (!kept) return nullptr;
  std::lock_guard const lock(mutex_);
  auto& feed = served_[key];
  if (!feed || feed->changedAt != kept->changedAt) {
    feed = served(key, *kept);
  } else if (feed->fetchedAt != kept->fetchedAt) {
    feed = confirmed(*feed, kept->fetchedAt);
  }
  return feed;
}

}  // namespace nimbara
