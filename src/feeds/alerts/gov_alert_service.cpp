#include "feeds/alerts/gov_alert_service.h"

#include "base/json/json_codec.h"
#include "base/text/number.h"
#include "feeds/alerts/alert_text.h"
#include "feeds/alerts/gov_alerts.h"
#include "feeds/alerts/us_waters.h"
#include "feeds/fetching/kept_record.h"
#include "feeds/nws/nws_territory.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string_view>

namespace nimbara {

namespace {

constexpr char kEventFile[] = "gov_events_v1.json";
constexpr std::size_t kLargestFile = std::size_t{16} << 20;
/// A person watches a few places.
constexpr std::size_t kMostPlaces = 64;
/// How long an alert that names no end is believed while its source gives no newer list.
constexpr std::chrono::hours kLongestFaith{24};

/// What the file of a place holds.
struct Kept {
  std::vector<GovSourceState> sources;
};

std::string keyOf(Coordinate place) {
  return fixedDecimal(place.latitude, 2) + "_" + fixedDecimal(place.longitude, 2);
}

GovSourceState& stateOf(std::vector<GovSourceState>& states, std::string_view name) {
  auto const found = std::ranges::find(states, name, &GovSourceState::name);
  if (found != states.end()) return *found;
  GovSourceState state;
  state.name = name;
  return states.emplace_back(std::move(state));
}

bool has(std::vector<WeatherAlert> const& alerts, Uuid const& id) {
  return std::ranges::find(alerts, id, &WeatherAlert::id) != alerts.end();
}

bool isOver(WeatherAlert const& alert, GovSourceState const& state, Instant now) {
  // As long ahead: of a clock that was set back.
  bool const isOld = state.checkedAt && std::chrono::abs(now - *state.checkedAt) >= kLongestFaith;
  return hasEnded(alert, now) || (!alert.expires && isOld);
}

void succeed(GovSourceState& state, GovSourceAnswer answer, Instant now) {
  cleanTexts(answer.alerts);
  cleanTexts(answer.unplaced);
  cleanTexts(answer.calledOff);
  state.alerts = std::move(answer.alerts);
  state.unplaced = std::move(answer.unplaced);
  state.calledOff = std::move(answer.calledOff);
  state.isBlind = answer.isBlind;
  state.checkedAt = now;
  state.failedSince.reset();
  state.failure.reset();
}

/// What could be read now, and what was known before.
void complete(std::vector<WeatherAlert>& known, std::vector<WeatherAlert> readable) {
  for (WeatherAlert& alert : known) {
    if (!has(readable, alert.id)) readable.push_back(std::move(alert));
  }
  cleanTexts(readable);
  known = std::move(readable);
}

void fail(GovSourceState& state, GovSourceFailure failure, Instant now) {
  complete(state.alerts, std::move(failure.readable));
  complete(state.unplaced, std::move(failure.unplaced));
  complete(state.calledOff, std::move(failure.calledOff));
  auto const isCalledOff = [&](WeatherAlert const& alert) { return has(state.calledOff, alert.id); };
  std::erase_if(state.alerts, isCalledOff);
  std::erase_if(state.unplaced, isCalledOff);
  if (!state.failedSince || *state.failedSince > now) state.failedSince = now;
  state.failure = std::move(failure.failure);
}

/// The National Weather Service as the issuer of a place's warnings.
class NwsSource {
 public:
  NwsSource(NWSAlertService& land, NWSAlertService* waters, Clock const& clock)
      : land_(land), waters_(waters), clock_(clock) {}

  Result<GovSourceAnswer, GovSourceFailure> fetch(Coordinate place, EventMemory& memory,
                                                  std::stop_token const& stop) {
    auto answer = land_.fetchAlerts(place.latitude, place.longitude, stop);
    auto failure = answer.ok ? addWaters(answer.alerts, place, stop) : answer.failure;
    auto alerts = events(answer.ok ? answer.alerts : answer.readable.value_or(answer.alerts), memory);
    if (!failure) return GovSourceAnswer{std::move(alerts), {}};
    return std::unexpected(GovSourceFailure{std::move(*failure), std::move(alerts), {}});
  }

 private:
  /// What went wrong, if anything did.
  std::optional<ServiceFailure> addWaters(std::vector<NWSAlert>& messages, Coordinate place,
                                          std::stop_token const& stop) {
    auto const point = waters_ == nullptr ? std::nullopt : waterPoint(place);
    if (!point) return {};
    auto answer = waters_->fetchAlerts(point->latitude, point->longitude, stop);
    std::set<std::string_view> known;
    for (NWSAlert const& message : messages) known.insert(message.id);
    std::vector<NWSAlert> added;
    for (NWSAlert const& message : answer.readable.value_or(answer.alerts)) {
      // The point may after all be on land, and that another district's.
      bool const isMarine = std::ranges::any_of(message.zones, isMarineZone);
      if (isMarine && !known.contains(message.id)) added.push_back(message);
    }
    std::ranges::move(added, std::back_inserter(messages));
    if (answer.ok || answer.isOutside) return std::nullopt;
    answer.failure->isOfWaters = true;
    return std::move(answer.failure);
  }

  std::optional<Coordinate> waterPoint(Coordinate place) {
    std::lock_guard const lock(mutex_);
    if (points_.size() >= kMostPlaces) points_.clear();
    auto const [entry, isNew] = points_.try_emplace(keyOf(place));
    if (isNew) entry->second = usWatersOff(place);
    return entry->second;
  }

  std::vector<WeatherAlert> events(std::vector<NWSAlert> const& messages, EventMemory& memory) {
    std::vector<WeatherAlert> alerts;
    Instant const now = clock_.now();
    memory.update(now, [&](KnownEvents& known) { alerts = liveEvents(messages, now, known); });
    return alerts;
  }

  NWSAlertService& land_;
  NWSAlertService* waters_;
  Clock const& clock_;
  std::mutex mutex_;  // guards the one below
  std::map<std::string, std::optional<Coordinate>> points_;
};

void identifyAll(std::vector<WeatherAlert>& placed, std::vector<WeatherAlert>& unplaced, EventMemory& memory,
                 Instant now) {
  auto const saysWhat = [](WeatherAlert const& alert) { return alert.event.has_value(); };
  if (!std::ranges::any_of(placed, saysWhat) && !std::ranges::any_of(unplaced, saysWhat)) return;
  memory.update(now, [&](KnownEvents& known) {
    identify(placed, known, now);
    identify(unplaced, known, now);
  });
}

void takeOverRoots(GovSourceState& state, EventMemory& memory, Instant now) {
  if (state.roots.empty()) return;
  memory.update(now, [&](KnownEvents& known) { known.roots.insert(state.roots.begin(), state.roots.end()); });
  state.roots.clear();
}

}  // namespace

template <>
inline constexpr auto jsonFields<Kept> = FieldList{field("sources", &Kept::sources)};

GovAlertPlace govAlertPlace(Coordinate coordinate) {
  return {coordinate, std::string(describePlace(coordinate).countryCode), {}};
}

GovAlertSource nwsAlertSource(NWSAlertService& service, Clock const& clock, NWSAlertService* waters) {
  auto const source = std::make_shared<NwsSource>(service, waters, clock);
  return {"nws",
          [](GovAlertPlace const& place) { return isNwsTerritory(place.countryCode, place.coordinate); },
          [source](GovAlertPlace const& place, EventMemory& memory, std::stop_token const& stop) {
            return source->fetch(place.coordinate, memory, stop);
          },
          true};
}

std::optional<Instant> GovAlerts::checkedAt() const {
  auto const oldest = std::ranges::min_element(sources, {}, &GovSourceState::checkedAt);
  return oldest == sources.end() ? std::nullopt : oldest->checkedAt;
}

std::optional<Instant> GovAlerts::failedSince() const {
  std::optional<Instant> earliest;
  for (GovSourceState const& source : sources) {
    bool const isEarlier = source.failedSince && (!earliest || *source.failedSince < *earliest);
    if (isEarlier) earliest = source.failedSince;
  }
  return earliest;
}

GovAlertService::GovAlertService(Clock const& clock, std::vector<GovAlertSource> sources,
                                 std::filesystem::path cacheDirectory)
    : clock_(clock),
      sources_(std::move(sources)),
      cacheDirectory_(std::move(cacheDirectory)),
      events_(cacheDirectory_.empty() ? std::filesystem::path() : cacheDirectory_ / kEventFile) {}

GovAlerts GovAlertService::fetchAlerts(GovAlertPlace const& place, std::vector<std::string> const& names,
                                       std::stop_token const& stop) {
  auto const sources = sourcesFor(place, names);
  if (sources.empty()) return {};
  auto const turn = turnOf(place);
  std::lock_guard const guard(*turn);
  States states = copyOfStates(place);
  for (GovAlertSource const* const source : sources) {
    ask(*source, place, stateOf(states, source->name), stop);
  }
  auto result = summary(sources, states);
  keep(place, states);
  remember(place, std::move(states));
  return result;
}

void GovAlertService::ask(GovAlertSource const& source, GovAlertPlace const& place, GovSourceState& state,
                          std::stop_token const& stop) {
  takeOverRoots(state, events_, clock_.now());
  auto answer = source.fetch(place, events_, stop);
  if (!answer && stop.stop_requested()) return;  // nothing was wrong with the source
  Instant const now = clock_.now();
  auto& alerts = answer ? answer->alerts : answer.error().readable;
  auto& unplaced = answer ? answer->unplaced : answer.error().unplaced;
  if (!source.isIdentified) identifyAll(alerts, unplaced, events_, now);
  answer ? succeed(state, std::move(*answer), now) : fail(state, std::move(answer.error()), now);
}

std::shared_ptr<std::mutex> GovAlertService::turnOf(GovAlertPlace const& place) {
  std::lock_guard const lock(memoryLock_);
  if (turns_.size() >= kMostPlaces)
    std::erase_if(turns_, [](auto const& e) { return e.second.use_count() == 1; });
  auto& turn = turns_[keyOf(place.coordinate)];
  if (!turn) turn = std::make_shared<std::mutex>();
  return turn;
}

GovAlerts GovAlertService::keptAlerts(GovAlertPlace const& place, std::vector<std::string> const& names) {
  States states = copyOfStates(place);
  return summary(sourcesFor(place, names), states);
}

GovAlertService::States GovAlertService::copyOfStates(GovAlertPlace const& place) {
  std::lock_guard const lock(memoryLock_);
  return statesOf(place);
}

void GovAlertService::remember(GovAlertPlace const& place, States states) {
  std::lock_guard const lock(memoryLock_);
  statesOf(place) = std::move(states);
}

std::vector<GovAlertSource const*> GovAlertService::sourcesFor(GovAlertPlace const& place,
                                                               std::vector<std::string> const& names) const {
  std::vector<GovAlertSource const*> chosen;
  if (!isValid(place.coordinate)) return chosen;
  for (GovAlertSource const& source : sources_) {
    bool const isAsked = names.empty() || std::ranges::count(names, source.name) > 0;
    if (isAsked && source.covers(place)) chosen.push_back(&source);
  }
  return chosen;
}

/// Forgets what has ended on the way.
GovAlerts GovAlertService::summary(std::vector<GovAlertSource const*> const& sources, States& states) const {
  GovAlerts result;
  for (GovAlertSource const* const source : sources) {
    GovSourceState& state = stateOf(states, source->name);
    auto const over = [&](WeatherAlert const& alert) { return isOver(alert, state, clock_.now()); };
    std::erase_if(state.alerts, over);
    std::erase_if(state.unplaced, over);
    std::erase_if(state.calledOff, over);
    result.alerts.insert(result.alerts.end(), state.alerts.begin(), state.alerts.end());
    result.unplaced.insert(result.unplaced.end(), state.unplaced.begin(), state.unplaced.end());
    result.calledOff.insert(result.calledOff.end(), state.calledOff.begin(), state.calledOff.end());
    result.sources.push_back(state);
  }
  sortMostSevereFirst(result.alerts);
  sortMostSevereFirst(result.unplaced);
  return result;
}

std::filesystem::path GovAlertService::fileOf(GovAlertPlace const& place) const {
  return cacheDirectory_ / ("gov_alerts_v3_" + keyOf(place.coordinate) + ".json");
}

/// With the memory's lock held.
GovAlertService::States& GovAlertService::statesOf(GovAlertPlace const& place) {
  std::string const key = keyOf(place.coordinate);
  if (auto const found = memory_.find(key); found != memory_.end()) return found->second;
  if (memory_.size() >= kMostPlaces) memory_.clear();
  States& states = memory_[key];
  if (cacheDirectory_.empty()) return states;
  auto kept = keptRecord<Kept>(fileOf(place), kLargestFile);
  if (kept) states = std::move(kept->sources);
  return states;
}

/// A disk that cannot be written to costs no more than the list after a restart.
void GovAlertService::keep(GovAlertPlace const& place, States const& states) const {
  if (cacheDirectory_.empty()) return;
  std::ignore = writeFileAtomically(fileOf(place), encodeJson(Kept{states}));
}

}  // namespace nimbara
