#include "app/engine/app_state.h"

#include "feeds/stations/station_shown.h"

#include <algorithm>
#include <array>
#include <utility>

namespace nimbara {

namespace {

using std::chrono::seconds;

/// After a start, a sleep or a lost network nobody waits for the timer; later retries wait until the
/// providers may be asked again.
constexpr std::array kRetryDelays{seconds(5), seconds(15), seconds(45)};

/// How a refresh for a reason is spaced, whether a fresh cached forecast is good enough for it, and whether
/// all that goes with the forecast is asked for again too.
struct TriggerRule {
  std::optional<RefreshKind> clock;
  bool cacheFirst;
  bool supplements = false;
};

constexpr TriggerRule ruleOf(RefreshTrigger trigger) {
  switch (trigger) {
    case RefreshTrigger::asked:
      return {RefreshKind::fast, false, true};
    case RefreshTrigger::placeChosen:
    case RefreshTrigger::foreground:
      return {RefreshKind::fast, true};
    case RefreshTrigger::locationChanged:
      return {RefreshKind::significantLocationChange, true};
    case RefreshTrigger::providerChosen:
      return {std::nullopt, false};
    case RefreshTrigger::servicesChanged:
      return {std::nullopt, false, true};
    case RefreshTrigger::languageChosen:  // official warnings have their own
    case RefreshTrigger::networkReturned:
    case RefreshTrigger::resumed:
      return {std::nullopt, true, true};
    // What another program of the user's has fetched meanwhile is as good as an own answer.
    case RefreshTrigger::timer:
    case RefreshTrigger::start:
    case RefreshTrigger::retry:
      return {std::nullopt, true};
  }
  return {};
}

std::string keyOf(Place const& place) {
  return cacheKey(place.coordinate);
}

/// Whose clock a kind of refresh is spaced by.
std::string clockKey(RefreshKind kind, Place const& place) {
  return kind == RefreshKind::significantLocationChange ? std::string(kDevicePlace) : keyOf(place);
}

/// A moment that lies farther ahead than anything is ever planned was set by a clock that has been set back.
bool isDue(std::optional<Instant> due, Instant now, seconds farthest) {
  return due && (*due <= now || *due - now > farthest);
}

}  // namespace

AppState::AppState(InUse<ForecastService> forecasts, Clock const& clock, TaskRunner& runner,
                   Surroundings surroundings, RefreshIntervals intervals)
    : forecasts_(std::move(forecasts)),
      clock_(clock),
      runner_(runner),
      surroundings_(std::move(surroundings)),
      intervals_(intervals) {}

std::shared_ptr<WeatherState const> AppState::weather() const {
  std::lock_guard const lock(mutex_);
  return weather_;
}

std::optional<Place> AppState::selectedPlace() const {
  std::lock_guard const lock(mutex_);
  return selected_;
}

void AppState::tell(std::function<void()> const& listener) const {
  if (listener) listener();
}

template <class Change>
void AppState::change(Change apply) {
  {
    std::lock_guard const lock(mutex_);
    auto next = std::make_shared<WeatherState>(*weather_);
    apply(*next);
    weather_ = std::move(next);
  }
  tell(surroundings_.onChange);
}

bool AppState::isSelected(Place const& place) const {
  std::lock_guard const lock(mutex_);
  return selected_ && keyOf(*selected_) == keyOf(place);
}

void AppState::show(Place const& place, ForecastAnswer const& answer) {
  WeatherData data = answer.data;
  auto station = surroundings_.overlayStation ? surroundings_.overlayStation(data) : nullptr;
  change([&](WeatherState& state) {
    if (!selected_ || keyOf(*selected_) != keyOf(place)) return;
    state.weatherData = std::move(data);
    state.isShowingLiveNetatmoData = station && station->isLive();
    stationEnds_ = station ? station->liveUntil() : std::nullopt;
    state.station = std::move(station);
    state.insight = ForecastInsight{answer.alerts, answer.superseded};
    state.lastUpdated = answer.answeredAt;
    state.currentWeatherProvider = answer.provider;
    state.isShowingStaleData = answer.stale;
  });
}

void AppState::selectPlace(std::optional<Place> place, RefreshTrigger trigger) {
  {
    std::lock_guard const lock(mutex_);
    bool const isOther = !selected_ || !place || keyOf(*selected_) != keyOf(*place);
    selected_ = place;
    if (isOther) {
      for (Slot* const slot : {&currentRefreshTask_, &supplementalRefreshTask_, &nowcastTask_}) {
        if (slot->isRunning) slot->stop.request_stop();
      }
      nowcastDue_.reset();
      stationEnds_.reset();
      supplementalRetryDue_.reset();
      timerDue_.reset();
      retryDue_.reset();
      retries_ = 0;
      hasAnswerSinceWake_ = false;
      auto next = std::make_shared<WeatherState>();
      next->isLoading = weather_->isLoading;
      weather_ = std::move(next);
    }
  }
  if (!place) {
    change([](WeatherState& state) { state.error = AppError{AppError::Case::noLocation, {}}; });
    return;
  }
  auto const forecasts = forecasts_();
  if (surroundings_.isRemembered) forecasts->cache().saveLastLocation(keyOf(*place));
  if (auto const kept = forecasts->cached(*place)) show(*place, *kept);
  requestRefresh(trigger);
}

void AppState::reshow() {
  auto const place = selectedPlace();
  if (!place) return;
  if (auto const kept = forecasts_()->cached(*place)) show(*place, *kept);
}

void AppState::stationChanged() {
  {
    std::lock_guard const lock(mutex_);
    stationDue_.reset();
  }
  reshow();
  tell(surroundings_.onDueChange);
}

/// What a station told so long ago is no present any more, whether or not anything newer comes.
void AppState::endStation(Instant now) {
  {
    std::lock_guard const lock(mutex_);
    if (!stationEnds_ || now <= *stationEnds_) return;
    stationEnds_.reset();
  }
  reshow();
}

/// With the lock held and a place selected.
Instant AppState::nextStart(RefreshTrigger trigger, Instant now) const {
  auto const kind = ruleOf(trigger).clock;
  if (!kind) return now;
  return clocks_.nextStart(*kind, clockKey(*kind, *selected_), now, intervals_.of(*kind, isForeground_));
}

void AppState::requestRefresh(RefreshTrigger trigger) {
  Instant const now = clock_.now();
  std::optional<Instant> refusedUntil;
  {
    std::lock_guard const lock(mutex_);
    if (!selected_) return;
    if (currentRefreshTask_.isRunning) {
      needsPostUpdateRefresh_ = trigger;
      return;
    }
    Instant const next = nextStart(trigger, now);
    if (next > now) {
      if (trigger != RefreshTrigger::asked) return;
      refusedUntil = next;
    } else {
      startRefresh(trigger, now);
    }
  }
  change([&](WeatherState& state) {
    state.askAgainAt = refusedUntil;
    if (!refusedUntil) state.isLoading = true;
  });
  if (!refusedUntil && ruleOf(trigger).supplements) tell(surroundings_.onDueChange);
}

/// With the lock held.
void AppState::startRefresh(RefreshTrigger trigger, Instant now) {
  Place const place = *selected_;
  clocks_.noteStart(RefreshKind::fast, keyOf(place), now);
  if (auto const kind = ruleOf(trigger).clock) clocks_.noteStart(*kind, clockKey(*kind, place), now);
  if (ruleOf(trigger).supplements) clocks_.clear(RefreshKind::supplemental, keyOf(place));
  timerDue_ = now + intervals_.refreshInterval;
  retryDue_.reset();
  needsPostUpdateRefresh_.reset();
  currentRefreshTask_ = {true, {}};
  runner_.run([this, place, trigger, stop = currentRefreshTask_.stop](std::stop_token const& ending) {
    std::stop_callback const pass(ending, [stop]() mutable { stop.request_stop(); });
    refresh(place, trigger, stop.get_token());
  });
}

void AppState::refresh(Place const& place, RefreshTrigger trigger, std::stop_token const& stop) {
  bool const forgets = [&] {
    std::lock_guard const lock(mutex_);
    return trigger == RefreshTrigger::retry && wasOffline_;
  }();
  auto const forecasts = forecasts_();
  // Where the network itself was away, the providers' failures were not theirs.
  if (forgets) forecasts->providers().forgetFailures();
  auto const outcome = ruleOf(trigger).cacheFirst
                           ? forecasts->get(place, WeatherProviderOption::automatic, stop)
                           : forecasts->fetch(place, stop);
  finishRefresh(place, outcome);
}

/// With the lock held.
void AppState::scheduleAfter(bool succeeded, bool isOffline, Instant timerDue, Instant now) {
  wasOffline_ = isOffline;
  timerDue_ = timerDue;
  if (succeeded) {
    hasAnswerSinceWake_ = true;
    retries_ = 0;
  }
  if (hasAnswerSinceWake_) return;
  seconds const delay =
      retries_ < kRetryDelays.size() ? kRetryDelays[retries_] : WeatherProviderManager::kCoolDown;
  ++retries_;
  retryDue_ = now + delay;
}

void AppState::finishRefresh(Place const& place, Result<ForecastAnswer, APIError> const& outcome) {
  bool const isShown = isSelected(place);
  APIError const* const failure = !outcome           ? &outcome.error()
                                  : outcome->failure ? &*outcome->failure
                                                     : nullptr;
  if (outcome) show(place, *outcome);
  Instant const now = clock_.now();
  auto const jitter = surroundings_.jitter ? surroundings_.jitter() : std::chrono::milliseconds(0);
  // A cached forecast that was good enough is due when it stops being so.
  Instant const timerDue =
      (outcome && !failure ? outcome->answeredAt : now) + intervals_.refreshInterval + jitter;
  std::optional<RefreshTrigger> again;
  std::chrono::seconds const ttl = forecasts_()->cache().ttl();
  change([&](WeatherState& state) {
    currentRefreshTask_.isRunning = false;
    bool const wasGivenUp = failure && failure->transport == HttpError::Kind::cancelled;
    // Nobody was asked, so whoever wants a refresh gets it at once.
    bool const wasAway = failure && AppError::of(*failure).kind == AppError::Case::offline;
    if (wasGivenUp || wasAway) clocks_.clear(RefreshKind::fast, keyOf(place));
    again = std::exchange(needsPostUpdateRefresh_, std::nullopt);
    state.isLoading = again.has_value() && selected_.has_value();
    if (isShown) {
      bool const hidesFirst = failure && failure->isRefusal() && state.error;
      bool const isRefused = failure && failure->isRefusal() && failure->retryAfter;
      state.askAgainAt = isRefused ? std::optional<Instant>(now + *failure->retryAfter) : std::nullopt;
      if (!hidesFirst) state.error = failure ? std::optional(AppError::of(*failure)) : std::nullopt;
      if (state.lastUpdated) {
        state.isShowingStaleData = !isFresh(*state.lastUpdated, now, ttl);
      }
      bool const isOffline = failure && (AppError::of(*failure).kind == AppError::Case::offline ||
                                         (failure->isRefusal() && wasOffline_));
      scheduleAfter(!failure, isOffline, timerDue, now);
    }
    if (again && selected_) startRefresh(*again, now);
  });
  if (surroundings_.onRefresh) surroundings_.onRefresh({place, isShown, outcome});
  tell(surroundings_.onDueChange);
}

void AppState::setForeground(bool isForeground) {
  {
    std::lock_guard const lock(mutex_);
    if (isForeground_ == isForeground) return;
    isForeground_ = isForeground;
    if (isForeground) stationDue_.reset();
  }
  if (isForeground) requestRefresh(RefreshTrigger::foreground);
  tell(surroundings_.onDueChange);
}

void AppState::wokeUp(RefreshTrigger trigger) {
  forecasts_()->providers().forgetFailures();
  {
    std::lock_guard const lock(mutex_);
    hasAnswerSinceWake_ = false;
    retries_ = 0;
  }
  requestRefresh(trigger);
}

std::vector<Place> AppState::otherPlaces() const {
  std::vector<Place> places = surroundings_.savedPlaces ? surroundings_.savedPlaces() : std::vector<Place>{};
  std::erase_if(places, [this](Place const& place) { return isSelected(place); });
  return places;
}

void AppState::startOthers(Instant now) {
  auto places = otherPlaces();
  std::lock_guard const lock(mutex_);
  if (nonActiveNotificationRefreshTask_.isRunning) return;
  constexpr RefreshKind kKind = RefreshKind::nonActiveNotification;
  seconds const interval = intervals_.of(kKind, isForeground_);
  std::erase_if(places,
                [&](Place const& place) { return !clocks_.mayStart(kKind, keyOf(place), now, interval); });
  if (places.empty()) return;
  for (Place const& place : places) clocks_.noteStart(kKind, keyOf(place), now);
  nonActiveNotificationRefreshTask_.isRunning = true;
  runner_.run([this, places = std::move(places)](std::stop_token const& stop) {
    for (Place const& place : places) {
      if (stop.stop_requested()) break;
      auto const outcome = forecasts_()->get(place, WeatherProviderOption::automatic, stop);
      if (surroundings_.onRefresh) surroundings_.onRefresh({place, false, outcome});
    }
    {
      std::lock_guard const ending(mutex_);
      nonActiveNotificationRefreshTask_.isRunning = false;
    }
    tell(surroundings_.onDueChange);
  });
}

void AppState::startSupplemental(Instant now) {
  std::lock_guard const lock(mutex_);
  if (!maySupplement(now)) return;
  clocks_.noteStart(RefreshKind::supplemental, keyOf(*selected_), now);
  supplementalRetryDue_.reset();
  supplementalRefreshTask_ = {true, {}};
  runner_.run([this, place = *selected_,
               stop = supplementalRefreshTask_.stop](std::stop_token const& ending) {
    std::stop_callback const pass(ending, [stop]() mutable { stop.request_stop(); });
    finishSupplemental(place, surroundings_.refreshSupplemental(place, stop.get_token()), stop.get_token());
  });
}

/// With the lock held.
bool AppState::maySupplement(Instant now) const {
  if (!surroundings_.refreshSupplemental || !selected_ || supplementalRefreshTask_.isRunning) return false;
  constexpr RefreshKind kKind = RefreshKind::supplemental;
  return isDue(supplementalRetryDue_, now, 2 * intervals_.refreshInterval) ||
         clocks_.mayStart(kKind, keyOf(*selected_), now, intervals_.of(kKind, isForeground_));
}

void AppState::finishSupplemental(Place const& place, SupplementalOutcome outcome,
                                  std::stop_token const& stop) {
  {
    std::lock_guard const lock(mutex_);
    supplementalRefreshTask_.isRunning = false;
    bool const isShown = selected_ && keyOf(*selected_) == keyOf(place);
    if (stop.stop_requested()) {
      clocks_.clear(RefreshKind::supplemental, keyOf(place));
    } else if (outcome == SupplementalOutcome::incomplete && isShown) {
      supplementalRetryDue_ = clock_.now() + intervals_.fastRefreshInterval;
    }
  }
  tell(surroundings_.onDueChange);
}

/// With the lock held.
bool AppState::wantsStation() const {
  return surroundings_.refreshStation && selected_ && weather_->station && !stationTask_.isRunning;
}

void AppState::startStation(Instant now) {
  constexpr std::chrono::hours kFarthest{2};
  bool isForeground = false;
  {
    std::lock_guard const lock(mutex_);
    if (!wantsStation() || (stationDue_ && !isDue(stationDue_, now, kFarthest))) return;
    stationTask_ = {true, {}};
    isForeground = isForeground_;
  }
  runner_.run([this, isForeground](std::stop_token const& stop) {
    constexpr seconds kShortestRest{30};
    Instant const due = surroundings_.refreshStation(isForeground, stop);
    if (!stop.stop_requested()) reshow();
    {
      std::lock_guard const lock(mutex_);
      stationTask_.isRunning = false;
      stationDue_ = std::max(due, clock_.now() + kShortestRest);
    }
    tell(surroundings_.onDueChange);
  });
}

/// With the lock held.
bool AppState::wantsNowcast() const {
  return surroundings_.refreshNowcast && isForeground_ && selected_ && weather_->weatherData &&
         !nowcastTask_.isRunning;
}

void AppState::startNowcast(Instant now) {
  constexpr std::chrono::hours kFarthest{48};
  std::lock_guard const lock(mutex_);
  if (!wantsNowcast() || (nowcastDue_ && !isDue(nowcastDue_, now, kFarthest))) return;
  nowcastTask_ = {true, {}};
  runner_.run([this, place = *selected_, stop = nowcastTask_.stop](std::stop_token const& ending) {
    std::stop_callback const pass(ending, [stop]() mutable { stop.request_stop(); });
    NowcastAnswer answer = surroundings_.refreshNowcast(place, stop.get_token());
    change([&](WeatherState& state) {
      nowcastTask_.isRunning = false;
      bool const isShown = selected_ && keyOf(*selected_) == keyOf(place);
      if (!isShown || stop.stop_requested()) return;
      nowcastDue_ = answer.askAgainAt;
      state.nowcast = std::move(answer.reading);
    });
    tell(surroundings_.onDueChange);
  });
}

void AppState::showGovAlerts(Place const& place, std::vector<WeatherAlert> alerts) {
  change([&](WeatherState& state) {
    if (selected_ && keyOf(*selected_) == keyOf(place)) state.govAlerts = std::move(alerts);
  });
}

void AppState::showTravelAdvisories(Place const& place, std::vector<WeatherAlert> advisories) {
  change([&](WeatherState& state) {
    if (selected_ && keyOf(*selected_) == keyOf(place)) state.travelAdvisories = std::move(advisories);
  });
}

void AppState::showSupplement(Place const& place, std::shared_ptr<SupplementState const> supplement) {
  change([&](WeatherState& state) {
    if (selected_ && keyOf(*selected_) == keyOf(place)) state.supplement = std::move(supplement);
  });
}

void AppState::showConfidence(Place const& place, std::shared_ptr<SecondForecast const> second) {
  change([&](WeatherState& state) {
    if (selected_ && keyOf(*selected_) == keyOf(place)) state.forecastConfidence = std::move(second);
  });
}

void AppState::deviceMoved(LocationFix const& fix) {
  {
    std::lock_guard const lock(mutex_);
    movedTo_ = fix;
  }
  tell(surroundings_.onDueChange);
}

void AppState::arrive(Instant now) {
  std::optional<LocationFix> fix;
  {
    std::lock_guard const lock(mutex_);
    constexpr RefreshKind kKind = RefreshKind::significantLocationChange;
    bool const may = clocks_.mayStart(kKind, kDevicePlace, now, intervals_.of(kKind, isForeground_));
    if (may) fix = std::exchange(movedTo_, std::nullopt);
  }
  if (fix && surroundings_.onArrival) surroundings_.onArrival(*fix);
}

void AppState::runDue() {
  Instant const now = clock_.now();
  arrive(now);
  std::optional<RefreshTrigger> trigger;
  {
    std::lock_guard const lock(mutex_);
    seconds const farthest = 2 * intervals_.refreshInterval;
    if (isDue(timerDue_, now, farthest)) trigger = RefreshTrigger::timer;
    if (isDue(retryDue_, now, farthest)) trigger = RefreshTrigger::retry;
    if (currentRefreshTask_.isRunning) trigger.reset();
  }
  if (trigger) requestRefresh(*trigger);
  startSupplemental(now);
  endStation(now);
  startStation(now);
  startNowcast(now);
  startOthers(now);
}

std::optional<Instant> AppState::nextDue() {
  Instant const now = clock_.now();
  auto const others = otherPlaces();
  std::lock_guard const lock(mutex_);
  std::optional<Instant> next;
  auto const consider = [&next](std::optional<Instant> due) {
    if (due && (!next || *due < *next)) next = due;
  };
  if (!currentRefreshTask_.isRunning) {
    consider(timerDue_);
    consider(retryDue_);
  }
  auto const clock = [&](RefreshKind kind, Place const& place) {
    consider(clocks_.nextStart(kind, keyOf(place), now, intervals_.of(kind, isForeground_)));
  };
  if (movedTo_) {
    constexpr RefreshKind kKind = RefreshKind::significantLocationChange;
    consider(clocks_.nextStart(kKind, kDevicePlace, now, intervals_.of(kKind, isForeground_)));
  }
  if (surroundings_.refreshSupplemental && selected_ && !supplementalRefreshTask_.isRunning) {
    clock(RefreshKind::supplemental, *selected_);
    consider(supplementalRetryDue_);
  }
  if (wantsNowcast()) consider(nowcastDue_.value_or(now));
  if (wantsStation()) consider(stationDue_.value_or(now));
  if (stationEnds_) consider(*stationEnds_ + std::chrono::milliseconds(1));
  if (!nonActiveNotificationRefreshTask_.isRunning) {
    for (Place const& place : others) clock(RefreshKind::nonActiveNotification, place);
  }
  return next;
}

}  // namespace nimbara
