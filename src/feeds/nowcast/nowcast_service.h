// The nowcast of a place: of the sources that may have one, the first that answers. Keeps the last answer of
// each source for each place, in memory and in files that all programs of the user share, and never raises an
// error.
#pragma once

#include "feeds/fetching/feed_exchange.h"
#include "feeds/nowcast/nowcast_source.h"
#include "platform/clock.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace nimbara {

/// A source that should have had a nowcast and did not give it.
struct NowcastMiss {
  NowcastSource source = NowcastSource::metNorway;
  bool isRadarDown = false;  ///< it says so itself; else `failure` says why
  ServiceFailure failure;

  bool operator==(NowcastMiss const&) const = default;
};

/// Why, in English, without a full stop.
std::string sentenceOf(NowcastMiss const& miss);

struct NowcastReading {
  enum class State {
    current,
    none,   ///< nobody offers a nowcast of the place
    failed  ///< it could not be checked
  };

  State state = State::none;
  Nowcast nowcast;  ///< of the kind none unless it is current
  std::optional<Instant> checkedAt;
  std::vector<NowcastMiss> misses;  ///< of the sources before the one that answered, in their order

  bool operator==(NowcastReading const&) const = default;
};

template <>
inline constexpr auto enumNames<NowcastReading::State> =
    std::to_array<std::string_view>({"current", "none", "failed"});
static_assert(enumNamesComplete(NowcastReading::State::failed));

class NowcastService {
 public:
  static constexpr std::chrono::minutes kWetRest{5};  ///< while something falls within two hours
  static constexpr std::chrono::minutes kDryRest{15};
  static constexpr std::chrono::hours kUncoveredRest{24};
  static constexpr std::chrono::minutes kKeptLife{30};  ///< what was kept is then no longer shown unasked
  static constexpr std::size_t kMostAnswers = 64;

  struct Options {
    std::string metBase;                        ///< "https://api.met.no"
    std::string brightSkyBase;                  ///< "https://api.brightsky.dev"
    std::string openMeteoBase;                  ///< "https://api.open-meteo.com"
    std::string openMeteoKey;                   ///< empty for the free service
    std::filesystem::path cacheDirectory = {};  ///< empty: nothing outlives the process
  };

  NowcastService(HttpClient& http, Clock const& clock, Options options);

  /// Blocks for the requests that are due. Any thread; one question at a time.
  NowcastReading fetch(Coordinate place, std::stop_token const& stop = {});

  /// What the last answers say, whoever of the user's programs asked for them; asks nobody. Nothing where a
  /// source that may have a nowcast was not asked lately.
  std::optional<NowcastReading> kept(Coordinate place);

  /// When to ask for the place again: the earliest moment at which `fetch` would.
  Instant nextAsk(Coordinate place);

 private:
  struct Kept {
    std::optional<NowcastReply> reply;
    Instant checkedAt;
    Instant until;  ///< not asked again before
    Validators validators;
    std::string url;  ///< that they belong to
    std::optional<ServiceFailure> failure;
    std::optional<Instant> failedAt;
    int failures = 0;
    std::optional<std::chrono::steady_clock::time_point> pausedUntil;
    std::uint64_t asked = 0;
  };

  /// Nothing where `reply` has none of a source that comes before one that has a nowcast.
  template <class Reply>
  std::optional<NowcastReading> read(Coordinate place, Reply reply) const;
  Kept const& ask(NowcastSource source, Coordinate place, std::stop_token const& stop);
  bool isFresh(Kept const& kept) const;
  bool isPaused(Kept const& kept) const;
  void exchangeFor(Kept& kept, NowcastSource source, Coordinate place, std::stop_token const& stop);
  void take(Kept& kept, NowcastSource source, HttpResponse const& answer);
  void fail(Kept& kept, ServiceFailure failure, HttpResponse const& answer);
  void settle(Kept& kept, NowcastReply reply, HttpResponse const& answer);
  Kept& keep(NowcastSource source, Coordinate place);
  std::filesystem::path fileOf(NowcastSource source, Coordinate place) const;
  void load(Kept& kept, NowcastSource source, Coordinate place) const;
  void save(Kept const& kept, NowcastSource source, Coordinate place) const;
  std::string urlOf(NowcastSource source, Coordinate place) const;

  HttpClient& http_;
  Clock const& clock_;
  Options options_;
  std::mutex turn_;  // of who asks; guards the two below
  std::map<std::string, Kept> kept_;
  std::uint64_t questions_ = 0;
};

}  // namespace nimbara
