// What is refreshed beside the forecast of the shown place: the user's other places, the shown one's hazards,
// its station and its next two hours.
#include "app/engine/app_state.h"

#include <algorithm>
#include <utility>

namespace nimbara {

using std::chrono::seconds;

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
    if (stop.stop_requested()) {
      clocks_.clear(RefreshKind::supplemental, keyOf(place));
    } else if (outcome == SupplementalOutcome::incomplete && isShown(place)) {
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
      if (!isShown(place) || stop.stop_requested()) return;
      nowcastDue_ = answer.askAgainAt;
      state.nowcast = std::move(answer.reading);
    });
    tell(surroundings_.onDueChange);
  });
}

}  // namespace nimbara
