// The public sources of the feeds, asked no oftener than they allow: each feed at most once a period, each
// source one question at a time, for all threads and all processes that share a folder, and over restarts.
// Bodies are kept in the folder and stay while their source fails. A source that fails or refuses is left
// alone for its pause, except where nothing reached it. Any thread may ask.
#pragma once

#include "base/files/file_lock.h"
#include "feeds/feed_source.h"

#include <array>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

namespace nimbara {

/// One body as it is passed on; never changes.
struct SourceBody {
  std::string body;
  Instant changedAt;  ///< when the body became what it is
  Instant fetchedAt;  ///< when its source last confirmed it
};

/// When a source was last asked for a feed, and what became of it.
struct SourceQuestion {
  Instant askedAt;
  std::int64_t pauseSeconds = 0;          ///< until it may be asked again
  std::optional<ServiceFailure> failure;  ///< nothing after an answer
  std::string tag;                        ///< by which the source tells whether its body has changed
  bool isOpen = false;                    ///< whoever asks is waiting for the answer, or was ended
};

class SourceFeeds final : public FeedSource {
 public:
  struct Options {
    std::string usgsBase;
    std::string celestrakBase;
    std::filesystem::path folder;  ///< of the kept bodies; empty: nothing outlives the process
    std::function<void(std::string_view)> log = [](std::string_view) {};
    /// Of a stand-in of all services that may know the relay's path only; empty for the sources themselves.
    std::string relayBase = {};  // NOLINT(readability-redundant-member-init): most leave it out
    /// Many readers: who comes while a body is renewed gets the last one at once, and groups are not asked
    /// for all at the same moment.
    bool isServer = false;
  };

  struct Reading {
    std::shared_ptr<SourceBody const> kept;  ///< the last good one; null when there never was one
    std::optional<ServiceFailure> failure;   ///< why there is nothing newer; nothing within the period
  };

  SourceFeeds(HttpClient& http, Clock const& clock, Options options);

  Reading read(FeedKey const& key, std::stop_token const& stop = {});
  Result<FeedBody, ServiceFailure> get(FeedKey const& key, std::stop_token const& stop = {}) override;

  /// Between questions for a feed.
  static std::chrono::seconds periodOf(FeedKey::Kind kind);

 private:
  struct State {
    std::shared_ptr<SourceBody const> kept;
    SourceQuestion question;
  };

  State stateOf(FeedKey const& key, bool isAboutToAsk = false);
  State stored(FeedKey const& key) const;
  void remember(FeedKey const& key, State state);
  bool note(FeedKey const& key, SourceQuestion const& question) const;
  std::unique_ptr<FileLock> waitForOthers(FeedKey const& key, std::stop_token const& stop) const;
  std::chrono::seconds pauseAfterAnswer(FeedKey const& key) const;
  bool isDue(State const& state) const;
  Reading readingOf(State const& state) const;
  State renewed(FeedKey const& key, State state, std::stop_token const& stop) const;
  Result<std::optional<HttpResponse>, ServiceFailure> ask(FeedKey const& key, State const& state,
                                                          std::stop_token const& stop) const;
  std::optional<ServiceFailure> take(FeedKey const& key, State& state,
                                     std::optional<HttpResponse> const& response) const;
  void accept(FeedKey const& key, State& state, std::string body) const;
  HttpRequest requestFor(FeedKey const& key) const;
  std::filesystem::path fileOf(FeedKey const& key, std::string_view ending) const;

  HttpClient& http_;
  Clock const& clock_;
  Options options_;
  std::array<std::mutex, enumNames<FeedKey::Kind>.size()> turns_;  ///< of asking each source
  std::mutex mutex_;                                               // guards the next
  std::map<FeedKey, State> states_;
};

}  // namespace nimbara
