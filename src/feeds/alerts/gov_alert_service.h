// The official warnings of a place, as one list, most severe first, with the state of the check beside it:
// "no warnings" and "could not be checked since 14:20" are different answers. The sources of a place are
// asked along its route, each only when the one before has failed. Owns what was last known of each place, in
// memory and on disk; never raises an error and never shows what has ended.
#pragma once

#include "base/geodesy.h"
#include "base/result.h"
#include "feeds/alerts/events/event_memory.h"
#include "feeds/alerts/gov_alerts.h"
#include "feeds/nws/nws_alert_service.h"
#include "model/warnings/weather_alert.h"
#include "platform/clock.h"
#include "regions/region_code.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// A place as the sources ask for it.
struct GovAlertPlace {
  Coordinate coordinate;
  std::string countryCode;              ///< ISO 3166-1; empty on the open sea
  std::optional<PlaceRegions> regions;  ///< stated by somebody, in place of what sources look up themselves
  std::string chosenSource = {};        ///< the name of the source that the user wants; empty: the usual one
};

/// What the gazetteer knows of a coordinate; on the sea the country whose warnings name these waters.
GovAlertPlace govAlertPlace(Coordinate coordinate);

/// What an issuer has in force.
struct GovSourceAnswer {
  std::vector<WeatherAlert> alerts;    ///< that concern the place, in the issuer's order
  std::vector<WeatherAlert> unplaced;  ///< in parts of the country of which nobody can say where they are
  /// Events that their issuer ended early, as they last were; until the moment at which they would have
  /// ended.
  std::vector<WeatherAlert> calledOff = {};
  /// Nothing is listed, and the source is not known to have the warnings of the place's country.
  bool isBlind = false;
};

struct GovSourceFailure {
  ServiceFailure failure;
  /// What could be read all the same; what was known before stays beside it.
  std::vector<WeatherAlert> readable;
  std::vector<WeatherAlert> unplaced;
  std::vector<WeatherAlert> calledOff = {};
};

/// One issuer of warnings; `fetch` may be called for several places at once. Alerts either have the
/// `govAlertId` of their event or say in `event` what they are about. `memory` is that of all events, for
/// issuers that follow chains of messages.
struct GovAlertSource {
  using Fetch = std::function<Result<GovSourceAnswer, GovSourceFailure>(
      GovAlertPlace const&, EventMemory& memory, std::stop_token const&)>;
  std::string name;  ///< "nws"
  std::function<bool(GovAlertPlace const&)> covers;
  Fetch fetch;
  bool isIdentified = false;  ///< its alerts have their identifiers, whatever `event` says
  /// A place that was checked well less long ago is not asked for again, and after failures not before
  /// `restAfterFailure`; with none the source keeps to its terms itself.
  std::chrono::minutes rest{0};
};

/// Which sources a place is asked for. Without a route each that covers it is.
struct GovAlertRouting {
  using Names = std::function<std::vector<std::string_view>(GovAlertPlace const&)>;
  /// Each is asked only when those before it have failed or know nothing of the country.
  Names route;
  Names possible;  ///< all that may be asked, for who names some
  /// The source that the user has chosen for a place that names none; empty: the usual one.
  std::function<std::string(Coordinate)> chosen;
};

/// With `waters` a place near a shore is asked for a second time, by a point on the water: that names the
/// marine zone, which no point on land lies in. All must outlive the source.
GovAlertSource nwsAlertSource(NWSAlertService& service, Clock const& clock,
                              NWSAlertService* waters = nullptr);

struct GovSourceState {
  std::string name;
  std::optional<Instant> checkedAt;       ///< last success
  std::optional<Instant> failedSince;     ///< first failure after it
  std::optional<ServiceFailure> failure;  ///< the last one
  std::optional<Instant> failedAt;        ///< when that was
  int failures = 0;                       ///< one after the other
  std::vector<WeatherAlert> alerts;
  std::vector<WeatherAlert> unplaced;   ///< in force somewhere in the country; not among the alerts
  std::vector<WeatherAlert> calledOff;  ///< until they would have ended
  bool isBlind = false;                 ///< of the last success: see `GovSourceAnswer`
  std::optional<Instant> askedAt;       ///< by this process, well or not; not kept
  /// In a summary: the source that failed before this one answered, and why.
  std::optional<std::string> insteadOf;
  std::optional<ServiceFailure> insteadReason;
  /// In a summary of a failure: who was asked after this one and gave no answer either, and why; without a
  /// reason it is not known to have the warnings of the place's country.
  std::optional<std::string> alsoAsked;
  std::optional<ServiceFailure> alsoReason;
  EventRoots roots;  ///< as files of older versions have them; the memory takes them over

  /// Nothing is listed, and that says nothing: the source is not known to have the country's warnings.
  bool knowsNothing() const { return isBlind && alerts.empty() && unplaced.empty(); }
  bool operator==(GovSourceState const&) const = default;
};

template <>
inline constexpr auto jsonFields<GovSourceState> =
    FieldList{field("name", &GovSourceState::name),
              field("checkedAt", &GovSourceState::checkedAt),
              field("failedSince", &GovSourceState::failedSince),
              field("failure", &GovSourceState::failure),
              fieldOr("failedAt", &GovSourceState::failedAt),
              fieldOr("failures", &GovSourceState::failures),
              field("alerts", &GovSourceState::alerts),
              fieldOr("unplaced", &GovSourceState::unplaced),
              fieldOr("calledOff", &GovSourceState::calledOff),
              fieldOr("isBlind", &GovSourceState::isBlind),
              fieldOr("roots", &GovSourceState::roots)};

struct GovAlerts {
  std::vector<WeatherAlert> alerts;     ///< live ones, most severe first
  std::vector<WeatherAlert> unplaced;   ///< live ones of parts of the country that cannot be placed
  std::vector<WeatherAlert> calledOff;  ///< ended early by their issuers, until they would have ended
  /// Those that cover the place and were asked for; along a route the one that answered, or the first where
  /// all have failed.
  std::vector<GovSourceState> sources;

  /// Somebody whom this program knows issues warnings for the place.
  bool isCovered() const;
  /// Of all sources the earliest last success; nothing when one never answered.
  std::optional<Instant> checkedAt() const;
  /// The earliest failure that lasts; nothing when all is well.
  std::optional<Instant> failedSince() const;
};

class GovAlertService {
 public:
  /// With `cacheDirectory` lists outlive the process, one file a place, and so does what events are known by.
  GovAlertService(Clock const& clock, std::vector<GovAlertSource> sources,
                  std::filesystem::path cacheDirectory, GovAlertRouting routing = {});

  /// Asks the sources of the place. Where `names` are given, those of its route that are among them, or,
  /// where none is, those that may be asked for the place. Blocks, and waits only for those who ask for the
  /// same place.
  GovAlerts fetchAlerts(GovAlertPlace const& place, std::vector<std::string> const& names = {},
                        std::stop_token const& stop = {});
  /// What was last known, without asking anybody and without waiting for those who ask: for the first moments
  /// of a program or of a place.
  GovAlerts keptAlerts(GovAlertPlace const& place, std::vector<std::string> const& names = {});

 private:
  using States = std::vector<GovSourceState>;

  using Sources = std::vector<GovAlertSource const*>;

  GovAlertPlace withChoice(GovAlertPlace place) const;
  void askAlong(Sources const& route, GovAlertPlace const& place, States& states,
                std::stop_token const& stop);
  bool isAnswered(GovAlertSource const& source, GovSourceState const& state) const;
  bool restsAfterFailure(GovAlertSource const& source, GovSourceState const& state, bool isReplaced) const;
  std::shared_ptr<std::mutex> turnOf(GovAlertPlace const& place);
  void ask(GovAlertSource const& source, GovAlertPlace const& place, GovSourceState& state,
           std::stop_token const& stop);
  States& statesOf(GovAlertPlace const& place);
  States copyOfStates(GovAlertPlace const& place);
  void remember(GovAlertPlace const& place, States states);
  void keep(GovAlertPlace const& place, States const& states) const;
  std::filesystem::path fileOf(GovAlertPlace const& place) const;
  Sources sourcesFor(GovAlertPlace const& place, std::vector<std::string> const& names) const;
  Sources named(std::vector<std::string_view> const& candidates, std::vector<std::string> const& names) const;
  GovAlerts summary(Sources const& sources, States& states) const;

  Clock const& clock_;
  std::vector<GovAlertSource> sources_;
  std::filesystem::path cacheDirectory_;
  GovAlertRouting routing_;
  EventMemory events_;
  std::mutex memoryLock_;  // guards the two below; never held while somebody is asked
  std::map<std::string, States> memory_;
  std::map<std::string, std::shared_ptr<std::mutex>> turns_;  ///< of those who ask for a place
};

}  // namespace nimbara
