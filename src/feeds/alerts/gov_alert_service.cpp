#include "feeds/alerts/gov_alert_service.h"

#include "base/json/json_codec.h"
#include "base/text/number.h"
#include "feeds/alerts/alert_text.h"
#include "feeds/alerts/gov_alerts.h"
#include "feeds/alerts/routing/source_rest.h"
#include "feeds/fetching/kept_record.h"
#include "feeds/regions/regions.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <tuple>

namespace nimbara {

namespace {

constexpr char kEventFile[] = "gov_events_v1.json";
/// A person watches a few places.
constexpr std::size_t kMostPlaces = 64;
/// How long an alert that names no end is believed while its source gives no newer list.
constexpr std::chrono::hours kLongestFaith{24};

/// What the file of a place holds.
struct Kept {
  std::vector<GovSourceState> sources;
};

/// Places are checked once a minute, which mostly shows what was known. For a later moment alone a file is
/// written no more often than this, as each writing wakes the disk.
constexpr std::chrono::minutes kRenewal{5};

bool saysTheSame(GovSourceState const& kept, GovSourceState const& now) {
  auto const spansOf = [](GovSourceState const& state) {
    return state.checkedAt.value_or(Instant()).time_since_epoch() / kRenewal;
  };
  auto const sayings = [](GovSourceState const& state) {
    return std::tie(state.name, state.failedSince, state.failure, state.failedAt, state.failures,
                    state.alerts, state.unplaced, state.calledOff, state.isBlind);
  };
  return spansOf(kept) == spansOf(now) && sayings(kept) == sayings(now);
}

bool isWorthKeeping(std::vector<GovSourceState> const& before, std::vector<GovSourceState> const& now) {
  return !std::ranges::equal(before, now, saysTheSame);
}

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

/// What could be read now, and what was known before.
void complete(std::vector<WeatherAlert>& known, std::vector<WeatherAlert> readable) {
  for (WeatherAlert& alert : known) {
    if (!has(readable, alert.id)) readable.push_back(std::move(alert));
  }
  cleanTexts(readable);
  known = std::move(readable);
}

/// A cancellation may say no more than which event it ends; that one is then as it was known before.
void fillIn(std::vector<WeatherAlert>& calledOff, GovSourceState const& state) {
  for (WeatherAlert& alert : calledOff) {
    if (!alert.title.empty()) continue;
    for (auto const* const known : {&state.alerts, &state.unplaced, &state.calledOff}) {
      auto const found = std::ranges::find(*known, alert.id, &WeatherAlert::id);
      if (found == known->end()) continue;
      auto const cancelled = alert.issued;
      alert = *found;
      if (cancelled) alert.issued = cancelled;
      break;
    }
  }
  std::erase_if(calledOff, [](WeatherAlert const& alert) { return alert.title.empty(); });
}

/// Lists name what was called off for a short time; whoever looks later is to know of it too, unless it has
/// been issued anew.
void keepCalledOff(GovSourceState& state, std::vector<WeatherAlert> calledOff,
                   std::vector<WeatherAlert> const& live, std::vector<WeatherAlert> const& unplaced) {
  fillIn(calledOff, state);
  std::erase_if(state.calledOff, [&](WeatherAlert const& alert) {
    return !alert.expires || has(live, alert.id) || has(unplaced, alert.id);
  });
  complete(state.calledOff, std::move(calledOff));
}

void succeed(GovSourceState& state, GovSourceAnswer answer, Instant now) {
  cleanTexts(answer.alerts);
  cleanTexts(answer.unplaced);
  keepCalledOff(state, std::move(answer.calledOff), answer.alerts, answer.unplaced);
  state.alerts = std::move(answer.alerts);
  state.unplaced = std::move(answer.unplaced);
  state.isBlind = answer.isBlind;
  state.checkedAt = now;
  state.failedSince.reset();
  state.failure.reset();
  state.failedAt.reset();
  state.failures = 0;
}

bool isGood(GovSourceState const& state) {
  return state.checkedAt && !state.failedSince;
}

/// Of the sources of a route, in its order: the first that answered. Its list is the truth, whatever those
/// before it knew.
GovSourceState answering(std::vector<GovSourceState> const& route, GovSourceState const& good) {
  GovSourceState state = good;
  GovSourceState const& first = route.front();
  if (first.name == good.name || !first.failedSince) return state;
  state.insteadOf = first.name;
  state.insteadReason = first.failure;
  return state;
}

/// All have failed, or nobody was asked: what was known last, by whomever, as the first one's failure.
/// Nothing is known from when on the last of them failed, too.
GovSourceState failing(std::vector<GovSourceState> const& route) {
  GovSourceState state = *std::ranges::max_element(route, {}, &GovSourceState::checkedAt);
  GovSourceState const& first = route.front();
  state.name = first.name;
  state.failedSince = std::ranges::max_element(route, {}, &GovSourceState::failedSince)->failedSince;
  state.failure = first.failure;
  return state;
}

/// Who follows the first and did not help either.
void nameLast(GovSourceState& failed, std::vector<GovSourceState> const& route) {
  GovSourceState const& last = route.back();
  bool const wasAsked = last.failedSince || last.checkedAt;
  if (!failed.failedSince || last.name == failed.name || !wasAsked) return;
  failed.alsoAsked = last.name;
  if (last.failedSince) failed.alsoReason = last.failure;
}

/// One that has nothing of the country says nothing of what another could not tell.
GovSourceState servingState(std::vector<GovSourceState> const& route) {
  auto const informed = std::ranges::find_if(
      route, [](GovSourceState const& state) { return isGood(state) && !state.knowsNothing(); });
  if (informed != route.end()) return answering(route, *informed);
  if (std::ranges::all_of(route, isGood)) return route.front();
  auto others = route;
  std::erase_if(others, isGood);
  GovSourceState failed = failing(others);
  nameLast(failed, route);
  return failed;
}

void fail(GovSourceState& state, GovSourceFailure failure, GovAlertSource const& source, Instant now) {
  keepCalledOff(state, std::move(failure.calledOff), failure.readable, failure.unplaced);
  complete(state.alerts, std::move(failure.readable));
  complete(state.unplaced, std::move(failure.unplaced));
  auto const isCalledOff = [&](WeatherAlert const& alert) { return has(state.calledOff, alert.id); };
  std::erase_if(state.alerts, isCalledOff);
  std::erase_if(state.unplaced, isCalledOff);
  if (!state.failedSince || *state.failedSince > now) state.failedSince = now;
  state.failure = std::move(failure.failure);
  state.failedAt = now;
  ++state.failures;
  auto const rest = source.rest.count() > 0 ? restAfterFailure(*state.failure, state.failures) : source.rest;
  if (rest.count() > 0) state.failure->nextTry = now + rest;
}

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

/// Whose warnings name waters that the coordinate is in or close to. Norway's own service knows more of its
/// waters than these outlines, so they stay open sea.
std::string countryOfWaters(Coordinate coordinate) {
  auto const outlines = embeddedRegions();
  if (!outlines || !isValid(coordinate)) return {};
  auto const found = outlines->at(coordinate);
  auto const* const waters = std::ranges::find_if(found, &MappedRegion::isSea);
  if (waters == found.end() || waters->country == "NO") return {};
  return std::string(waters->country);
}

}  // namespace

template <>
inline constexpr auto jsonFields<Kept> = FieldList{field("sources", &Kept::sources)};

GovAlertPlace govAlertPlace(Coordinate coordinate) {
  std::string country(describePlace(coordinate).countryCode);
  if (country.empty()) country = countryOfWaters(coordinate);
  return {coordinate, std::move(country), {}};
}

bool GovAlerts::isCovered() const {
  return std::ranges::any_of(
      sources, [](GovSourceState const& source) { return source.failedSince || !source.knowsNothing(); });
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
                                 std::filesystem::path cacheDirectory, GovAlertRouting routing)
    : clock_(clock),
      sources_(std::move(sources)),
      cacheDirectory_(std::move(cacheDirectory)),
      routing_(std::move(routing)),
      events_(cacheDirectory_.empty() ? std::filesystem::path() : cacheDirectory_ / kEventFile) {}

GovAlertPlace GovAlertService::withChoice(GovAlertPlace place) const {
  bool const isOpen = place.chosenSource.empty() && routing_.chosen;
  if (isOpen) place.chosenSource = routing_.chosen(place.coordinate);
  return place;
}

GovAlerts GovAlertService::fetchAlerts(GovAlertPlace const& place, std::vector<std::string> const& names,
                                       std::stop_token const& stop) {
  GovAlertPlace const asked = withChoice(place);
  Sources const sources = sourcesFor(asked, names);
  if (sources.empty()) return {};
  auto const turn = turnOf(asked);
  std::lock_guard const guard(*turn);
  States states = copyOfStates(asked);
  States const before = states;
  if (routing_.route) {
    askAlong(sources, asked, states, stop);
  } else {
    for (GovAlertSource const* const source : sources)
      ask(*source, asked, stateOf(states, source->name), stop);
  }
  auto result = summary(sources, states);
  if (isWorthKeeping(before, states)) keep(asked, states);
  remember(asked, std::move(states));
  return result;
}

/// Well, and less long ago than the source wants to be left alone.
bool GovAlertService::isAnswered(GovAlertSource const& source, GovSourceState const& state) const {
  if (!state.askedAt || state.failedSince) return false;
  return std::chrono::abs(clock_.now() - *state.askedAt) < source.rest;
}

/// One whose place another has taken a moment ago can wait as long as that one.
bool GovAlertService::restsAfterFailure(GovAlertSource const& source, GovSourceState const& state,
                                        bool isReplaced) const {
  if (source.rest.count() == 0 || !state.failedAt || !state.failure) return false;
  auto const own = nimbara::restAfterFailure(*state.failure, state.failures);
  auto const rest = isReplaced ? std::max(own, source.rest) : own;
  return std::chrono::abs(clock_.now() - *state.failedAt) < rest;
}

/// Until one has answered that may know something.
void GovAlertService::askAlong(Sources const& route, GovAlertPlace const& place, States& states,
                               std::stop_token const& stop) {
  bool const isReplaced = std::ranges::any_of(route, [&](GovAlertSource const* source) {
    GovSourceState const& state = stateOf(states, source->name);
    return isAnswered(*source, state) && !state.knowsNothing();
  });
  for (GovAlertSource const* const source : route) {
    GovSourceState& state = stateOf(states, source->name);
    if (!isAnswered(*source, state) && !restsAfterFailure(*source, state, isReplaced))
      ask(*source, place, state, stop);
    if (stop.stop_requested() || (isGood(state) && !state.knowsNothing())) return;
  }
}

void GovAlertService::ask(GovAlertSource const& source, GovAlertPlace const& place, GovSourceState& state,
                          std::stop_token const& stop) {
  takeOverRoots(state, events_, clock_.now());
  auto answer = source.fetch(place, events_, stop);
  if (!answer && stop.stop_requested()) return;  // nothing was wrong with the source
  Instant const now = clock_.now();
  auto& alerts = answer ? answer->alerts : answer.error().readable;
  auto& unplaced = answer ? answer->unplaced : answer.error().unplaced;
  state.askedAt = now;
  if (!source.isIdentified) identifyAll(alerts, unplaced, events_, now);
  answer ? succeed(state, std::move(*answer), now) : fail(state, std::move(answer.error()), source, now);
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
  GovAlertPlace const asked = withChoice(place);
  States states = copyOfStates(asked);
  return summary(sourcesFor(asked, names), states);
}

GovAlertService::States GovAlertService::copyOfStates(GovAlertPlace const& place) {
  std::lock_guard const lock(memoryLock_);
  return statesOf(place);
}

void GovAlertService::remember(GovAlertPlace const& place, States states) {
  std::lock_guard const lock(memoryLock_);
  statesOf(place) = std::move(states);
}

/// In their order; all of them where nobody names any.
GovAlertService::Sources GovAlertService::named(std::vector<std::string_view> const& candidates,
                                                std::vector<std::string> const& names) const {
  Sources chosen;
  for (std::string_view const name : candidates) {
    auto const source = std::ranges::find(sources_, name, &GovAlertSource::name);
    bool const isAsked = names.empty() || std::ranges::count(names, name) > 0;
    if (isAsked && source != sources_.end()) chosen.push_back(&*source);
  }
  return chosen;
}

GovAlertService::Sources GovAlertService::sourcesFor(GovAlertPlace const& place,
                                                     std::vector<std::string> const& names) const {
  if (!isValid(place.coordinate)) return {};
  if (routing_.route) {
    Sources const chosen = named(routing_.route(place), names);
    return chosen.empty() && !names.empty() ? named(routing_.possible(place), names) : chosen;
  }
  Sources chosen;
  for (GovAlertSource const& source : sources_) {
    bool const isAsked = names.empty() || std::ranges::count(names, source.name) > 0;
    if (isAsked && source.covers(place)) chosen.push_back(&source);
  }
  return chosen;
}

/// Forgets what has ended on the way.
GovAlerts GovAlertService::summary(Sources const& sources, States& states) const {
  std::vector<GovSourceState> asked;
  for (GovAlertSource const* const source : sources) {
    GovSourceState& state = stateOf(states, source->name);
    auto const over = [&](WeatherAlert const& alert) { return isOver(alert, state, clock_.now()); };
    std::erase_if(state.alerts, over);
    std::erase_if(state.unplaced, over);
    std::erase_if(state.calledOff, over);
    asked.push_back(state);
  }
  if (routing_.route && asked.size() > 1) asked = {servingState(asked)};
  GovAlerts result;
  for (GovSourceState const& state : asked) {
    result.alerts.insert(result.alerts.end(), state.alerts.begin(), state.alerts.end());
    result.unplaced.insert(result.unplaced.end(), state.unplaced.begin(), state.unplaced.end());
    result.calledOff.insert(result.calledOff.end(), state.calledOff.begin(), state.calledOff.end());
  }
  result.sources = std::move(asked);
  sortMostSevereFirst(result.alerts);
  sortMostSevereFirst(result.unplaced);
  return result;
}

std::filesystem::path GovAlertService::fileOf(GovAlertPlace const& place) const {
  return cacheDirectory_ / ("gov_alerts_v3_" + keyOf(place.coordinate) + ".json");
}

/// With the memory's lock held.
GovAlertService::States& GovAlertService::statesOf(GovAlertPlace const& place) {
  constexpr std::size_t kLargestFile = std::size_t{16} << 20;
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
