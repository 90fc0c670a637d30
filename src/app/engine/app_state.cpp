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

/// Whose clock a kind of refresh is spaced by.
std::string clockKey(RefreshKind kind, Place const& place) {
  return kind == RefreshKind::significantLocationChange ? std::string(kDevicePlace)
                                                        : cacheKey(place.coordinate);
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

void AppState::change(Change const& apply) {
  {
    std::lock_guard const lock(mutex_);
    auto next = std::make_shared<WeatherState>(*weather_);
    apply(*next);
    weather_ = std::move(next);
  }
  tell(surroundings_.onChange);
}

std::string AppState::keyOf(Place const& place) {
  return cacheKey(place.coordinate);
}

bool AppState::isShown(Place const& place) const {
  return selected_ && keyOf(*selected_) == keyOf(place);
}

bool AppState::isSelected(Place const& place) const {
  std::lock_guard const lock(mutex_);
  return isShown(place);
}

void AppState::changeShown(Place const& place, Change const& apply) {
  change([&](WeatherState& state) {
    if (isShown(place)) apply(state);
  });
}

void AppState::show(Place const& place, ForecastAnswer const& answer) {
  WeatherData data = answer.data;
  auto station = surroundings_.overlayStation ? surroundings_.overlayStation(data) : nullptr;
  changeShown(place, [&](WeatherState& state) {
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

void AppState::showGovAlerts(Place const& place, std::vector<WeatherAlert> alerts) {
  changeShown(place, [&](WeatherState& state) { state.govAlerts = std::move(alerts); });
}

void AppState::showTravelAdvisories(Place const& place, std::vector<WeatherAlert> advisories) {
  changeShown(place, [&](WeatherState& state) { state.travelAdvisories = std::move(advisories); });
}

void AppState::showSupplement(Place const& place, std::shared_ptr<SupplementState const> supplement) {
  changeShown(place, [&](WeatherState& state) { state.supplement = std::move(supplement); });
}

void AppState::showConfidence(Place const& place, std::shared_ptr<SecondForecast const> second) {
  changeShown(place, [&](WeatherState& state) { state.forecastConfidence = std::move(second); });
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
