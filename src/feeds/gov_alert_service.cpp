#include "feeds/gov_alert_service.h"

#include "base/file.h"
#include "base/json_codec.h"
#include "base/number.h"
#include "feeds/gov_alerts.h"
#include "feeds/nws_territory.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>

namespace nimbara {

namespace {

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
  bool const isOld = state.checkedAt && now - *state.checkedAt >= kLongestFaith;
  return hasEnded(alert, now) || (!alert.expires && isOld);
}

void succeed(GovSourceState& state, std::vector<WeatherAlert> alerts, Instant now) {
  state.alerts = std::move(alerts);
  state.checkedAt = now;
  state.failedSince.reset();
  state.problem.clear();
}

void fail(GovSourceState& state, GovSourceFailure failure, Instant now) {
  for (WeatherAlert& known : state.alerts) {
    if (!has(failure.readable, known.id)) failure.readable.push_back(std::move(known));
  }
  state.alerts = std::move(failure.readable);
  if (!state.failedSince || *state.failedSince > now) state.failedSince = now;
  state.problem = std::move(failure.problem);
}

Result<std::vector<WeatherAlert>, GovSourceFailure> askNws(NWSAlertService& service, Instant now,
                                                           Coordinate place, EventRoots& roots,
                                                           std::stop_token const& stop) {
  auto const answer = service.fetchAlerts(place.latitude, place.longitude, stop);
  if (answer.ok) return liveEvents(answer.alerts, now, roots);
  return std::unexpected(
      GovSourceFailure{answer.problem, liveEvents(answer.readable.value_or(answer.alerts), now, roots)});
}

}  // namespace

template <>
inline constexpr auto jsonFields<Kept> = std::tuple{field("sources", &Kept::sources)};

GovAlertPlace govAlertPlace(Coordinate coordinate) {
  return {coordinate, std::string(describePlace(coordinate).countryCode), {}};
}

GovAlertSource nwsAlertSource(NWSAlertService& service, Clock const& clock) {
  return {"nws",
          [](GovAlertPlace const& place) { return isNwsTerritory(place.countryCode, place.coordinate); },
          [&](GovAlertPlace const& place, EventRoots& roots, std::stop_token const& stop) {
            return askNws(service, clock.now(), place.coordinate, roots, stop);
          }};
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
    : clock_(clock), sources_(std::move(sources)), cacheDirectory_(std::move(cacheDirectory)) {}

GovAlerts GovAlertService::fetchAlerts(GovAlertPlace const& place, std::vector<std::string> const& names,
                                       std::stop_token const& stop) {
  std::lock_guard const turn(turn_);
  auto const sources = sourcesFor(place, names);
  if (sources.empty()) return {};
  States states = copyOfStates(place);
  for (GovAlertSource const* const source : sources) {
    GovSourceState& state = stateOf(states, source->name);
    auto alerts = source->fetch(place, state.roots, stop);
    if (!alerts && stop.stop_requested()) continue;  // nothing was wrong with the source
    alerts ? succeed(state, std::move(*alerts), clock_.now())
           : fail(state, std::move(alerts.error()), clock_.now());
  }
  auto result = summary(sources, states);
  keep(place, states);
  remember(place, std::move(states));
  return result;
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
    std::erase_if(state.alerts, [&](auto const& alert) { return isOver(alert, state, clock_.now()); });
    result.alerts.insert(result.alerts.end(), state.alerts.begin(), state.alerts.end());
    result.sources.push_back(state);
  }
  sortMostSevereFirst(result.alerts);
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
  auto const content = readFile(fileOf(place), kLargestFile);
  auto kept = content ? decodeJson<Kept>(*content) : std::unexpected(DecodeError{});
  if (kept) states = std::move(kept->sources);
  return states;
}

/// A disk that cannot be written to costs no more than the list after a restart.
void GovAlertService::keep(GovAlertPlace const& place, States const& states) const {
  if (cacheDirectory_.empty()) return;
  std::ignore = writeFileAtomically(fileOf(place), encodeJson(Kept{states}));
}

}  // namespace nimbara
