// The user's weather station, however it is linked. Asks when something new is there to be had, and keeps the
// last answer where all of the user's programs find it, so that one asks for all. Never raises an error. Any
// thread.
#pragma once

#include "feeds/stations/public_stations.h"
#include "feeds/stations/station_document.h"
#include "feeds/stations/station_history.h"
#include "feeds/stations/station_source.h"
#include "feeds/stations/station_tokens.h"

#include <mutex>
#include <stop_token>

namespace nimbara {

enum class StationState {
  notLinked,
  current,      ///< the last check was answered; there may be no station all the same
  failed,       ///< it could not be checked
  signInAgain,  ///< the user must, and nobody asks until then
};

template <>
inline constexpr auto enumNames<StationState> =
    std::to_array<std::string_view>({"notLinked", "current", "failed", "signInAgain"});
static_assert(enumNamesComplete(StationState::signInAgain));

/// What is known of the station and how far that can be trusted.
struct StationsReading {
  StationState state = StationState::notLinked;
  StationLinkKind kind = StationLinkKind::none;
  std::vector<StationReading> stations;  ///< the last that were told
  std::string chosen;                    ///< the identifier of the one that the user wants
  std::string around;                    ///< the place whose public stations are meant
  StationTokensIn tokens = StationTokensIn::nowhere;
  std::optional<Instant> checkedAt;        ///< when they were told
  std::optional<Instant> nextAsk;          ///< not asked before
  std::optional<StationProblem> problem;   ///< why it is not current
  std::optional<NeighbourCount> together;  ///< of the stations around a place

  /// The one that speaks for its place: the user's choice, else the first that stands outdoors; null without.
  StationReading const* station() const;
  bool operator==(StationsReading const&) const = default;
};

/// How much somebody looks at it.
enum class StationNeed {
  shown,
  hidden,  ///< nobody does
  kept     ///< nobody is asked
};

class StationService {
 public:
  static constexpr std::chrono::seconds kAfterUpload{620};
  static constexpr std::chrono::minutes kHiddenRest{20};
  static constexpr std::chrono::hours kRestAfterTooMany{1};

  struct Options {
    std::string netatmoBase;                 ///< "https://api.netatmo.com"
    std::filesystem::path linkFile;          ///< empty: there is no link
    std::filesystem::path cacheFile;         ///< empty: nothing outlives the process
    std::filesystem::path historyFile = {};  ///< empty: there is no history
    MakeSecretStore secrets = {};            ///< empty: secrets stay in the link's file
  };

  StationService(HttpClient& http, Clock const& clock, Options options);

  /// Blocks for the requests that are due; not at all where nobody is asked.
  StationsReading read(StationNeed need, std::stop_token const& stop = {});
  /// Public stations around a place, asked now, with the account's tokens.
  Result<PublicStations, StationProblem> around(Coordinate place, std::stop_token const& stop);
  /// What an address tells, asked now.
  Result<StationDocument, StationProblem> probe(std::string const& address, std::stop_token const& stop);

  /// What the chosen station has measured in the last two days.
  std::vector<StationSample> history() const;

  /// What is kept belongs to a link that was changed.
  void forget();
  /// In place of the one before, whose tokens are forgotten.
  Result<void, std::string> relink(StationLink const& link);
  /// Forgets link, tokens, readings and history.
  Result<void, std::string> unlink();

  StationLinkFile const& file() const { return file_; }
  StationTokens& tokens() { return tokens_; }
  /// Where the user gives the consent; `state` must come back with the code.
  std::string authorizeUrl(std::string const& clientId, std::string const& redirect,
                           std::string const& state) const;

 private:
  using Told = Result<StationsTold, StationProblem>;

  StationsReading keep(StationLink const& link, Told told);
  StationsReading readingOf(StationLink const& link, StationsKept known) const;
  Told ask(StationLink const& link, std::stop_token const& stop);
  Result<std::string, StationProblem> netatmo(std::string const& path, std::stop_token const& stop);
  std::optional<StationsKept> kept(StationLink const& link) const;

  HttpClient& http_;
  Clock const& clock_;
  Options options_;
  StationLinkFile file_;
  StationSecrets secrets_;
  StationHistory history_;
  StationTokens tokens_;
  std::mutex turn_;               // of who asks
  mutable std::mutex keptMutex_;  // guards the next
  std::optional<StationsKept> kept_;
};

}  // namespace nimbara
