// The official warnings of a place from all sources that cover it, as one list, most severe first, with the
// state of the check beside it: "no warnings" and "could not be checked since 14:20" are different answers.
// Owns what was last known of each place, in memory and on disk; never raises an error and never shows what
// has ended.
#pragma once

#include "base/geodesy.h"
#include "base/result.h"
#include "feeds/gov_alerts.h"
#include "feeds/nws_alert_service.h"
#include "feeds/region_code.h"
#include "model/weather_alert.h"
#include "platform/clock.h"

#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace nimbara {

/// A place as the sources ask for it.
struct GovAlertPlace {
  Coordinate coordinate;
  std::string countryCode;              ///< ISO 3166-1; empty on the open sea
  std::optional<PlaceRegions> regions;  ///< stated by somebody, in place of what sources look up themselves
};

/// What the gazetteer knows of a coordinate.
GovAlertPlace govAlertPlace(Coordinate coordinate);

struct GovSourceFailure {
  std::string problem;  ///< a sentence without a full stop
  /// What could be read all the same; what was known before stays beside it.
  std::vector<WeatherAlert> readable;
};

/// One issuer of warnings. `fetch` gives the present list in the issuer's order, each alert under the
/// `govAlertId` of its event; `roots` is the place's memory of events that go on, for issuers that need one.
struct GovAlertSource {
  using Fetch = std::function<Result<std::vector<WeatherAlert>, GovSourceFailure>(
      GovAlertPlace const&, EventRoots& roots, std::stop_token const&)>;
  std::string name;  ///< "nws"
  std::function<bool(GovAlertPlace const&)> covers;
  Fetch fetch;
};

/// Both must outlive the source.
GovAlertSource nwsAlertSource(NWSAlertService& service, Clock const& clock);

struct GovSourceState {
  std::string name;
  std::optional<Instant> checkedAt;    ///< last success
  std::optional<Instant> failedSince;  ///< first failure after it
  std::string problem;                 ///< of the last failure
  std::vector<WeatherAlert> alerts;
  EventRoots roots;  ///< of the messages that tell of the alerts

  bool operator==(GovSourceState const&) const = default;
};

template <>
inline constexpr auto jsonFields<GovSourceState> =
    std::tuple{field("name", &GovSourceState::name),
               field("checkedAt", &GovSourceState::checkedAt),
               field("failedSince", &GovSourceState::failedSince),
               fieldOr("problem", &GovSourceState::problem),
               field("alerts", &GovSourceState::alerts),
               fieldOr("roots", &GovSourceState::roots)};

struct GovAlerts {
  std::vector<WeatherAlert> alerts;     ///< live ones, most severe first
  std::vector<GovSourceState> sources;  ///< those that cover the place and were asked for

  /// Nobody whom this program knows issues warnings for the place.
  bool isCovered() const { return !sources.empty(); }
  /// Of all sources the earliest last success; nothing when one never answered.
  std::optional<Instant> checkedAt() const;
  /// The earliest failure that lasts; nothing when all is well.
  std::optional<Instant> failedSince() const;
};

class GovAlertService {
 public:
  /// With `cacheDirectory` lists outlive the process, one file a place.
  GovAlertService(Clock const& clock, std::vector<GovAlertSource> sources,
                  std::filesystem::path cacheDirectory);

  /// Asks every source that covers the place, or those of `names` when any are given. Blocks.
  GovAlerts fetchAlerts(GovAlertPlace const& place, std::vector<std::string> const& names = {},
                        std::stop_token const& stop = {});
  /// What was last known, without asking anybody and without waiting for those who ask: for the first moments
  /// of a program or of a place.
  GovAlerts keptAlerts(GovAlertPlace const& place, std::vector<std::string> const& names = {});

 private:
  using States = std::vector<GovSourceState>;

  States& statesOf(GovAlertPlace const& place);
  States copyOfStates(GovAlertPlace const& place);
  void remember(GovAlertPlace const& place, States states);
  void keep(GovAlertPlace const& place, States const& states) const;
  std::filesystem::path fileOf(GovAlertPlace const& place) const;
  std::vector<GovAlertSource const*> sourcesFor(GovAlertPlace const& place,
                                                std::vector<std::string> const& names) const;
  GovAlerts summary(std::vector<GovAlertSource const*> const& sources, States& states) const;

  Clock const& clock_;
  std::vector<GovAlertSource> sources_;
  std::filesystem::path cacheDirectory_;
  std::mutex turn_;        // of those who ask the sources
  std::mutex memoryLock_;  // guards the memory; never held while somebody is asked
  std::map<std::string, States> memory_;
};

}  // namespace nimbara
