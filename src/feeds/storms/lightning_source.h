// Where lightning strikes come from. No open source of them is shipped, so a program may well have none; the
// form of a source that a user can name is told in docs/lightning-source.md.
#pragma once

#include "base/json/json.h"
#include "feeds/fetching/watched_feed.h"
#include "feeds/storms/lightning_strike.h"

#include <mutex>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

class LightningSource {
 public:
  virtual ~LightningSource() = default;
  /// The strikes within `radiusKm` since then, the newest first. Blocks; any thread may call.
  virtual FeedReading<std::vector<LightningStrike>> fetchStrikes(Coordinate place, double radiusKm,
                                                                 Instant since,
                                                                 std::stop_token const& stop = {}) = 0;
};

/// In the document's order. Elements without a time or a position are left out.
Result<std::vector<LightningStrike>, DecodeError> parseLightningStrikes(std::string_view body);

/// A source at an address that the user names. Asks for what a place needs at most once a minute.
class HttpLightningSource final : public LightningSource {
 public:
  static constexpr std::chrono::seconds kLife{60};
  static constexpr std::chrono::hours kLongestSpan{6};
  static constexpr double kLargestRadiusKm = 500;
  static constexpr std::size_t kMostPlaces = 16;

  /// Without an address there is no source.
  HttpLightningSource(HttpClient& http, Clock const& clock, std::string baseUrl);

  /// Radii and spans beyond the largest count as those.
  FeedReading<std::vector<LightningStrike>> fetchStrikes(Coordinate place, double radiusKm, Instant since,
                                                         std::stop_token const& stop = {}) override;

 private:
  HttpClient& http_;
  Clock const& clock_;
  std::string baseUrl_;
  std::mutex turn_;
  WatchedFeeds<std::vector<LightningStrike>, kMostPlaces> places_;  ///< by the circle's text in the request
};

}  // namespace nimbara
