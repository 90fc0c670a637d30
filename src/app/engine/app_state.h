// The program's central state: the selected place's weather and the clocks that keep it and the other places
// fresh. Decides when something is refreshed and what is shown meanwhile; owns no thread and no timer. A
// scheduler asks for the next due moment and calls `runDue`; the work itself runs on the task runner, at most
// one task of a kind. Any thread may call. The runner must end before the state does.
#pragma once

#include "app/engine/clocks/refresh_clocks.h"
#include "app/services/forecasts/forecast_service.h"
#include "app/services/in_use.h"
#include "app/services/task_runner.h"
#include "app/state/weather_state.h"
#include "platform/clock.h"
#include "platform/location_source.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <vector>

namespace nimbara {

/// Why the selected place is to be refreshed.
enum class RefreshTrigger {
  start,
  placeChosen,
  timer,
  foreground,
  asked,
  locationChanged,
  networkReturned,
  resumed,
  retry,
  providerChosen,
  languageChosen,
  servicesChanged  ///< their addresses or keys
};

template <>
inline constexpr auto enumNames<RefreshTrigger> = std::to_array<std::string_view>(
    {"start", "placeChosen", "timer", "foreground", "asked", "locationChanged", "networkReturned", "resumed",
     "retry", "providerChosen", "languageChosen", "servicesChanged"});
static_assert(enumNamesComplete(RefreshTrigger::servicesChanged));

/// Whether all that goes with a forecast was available; what could not is asked for again soon.
enum class SupplementalOutcome { complete, incomplete };

class AppState {
 public:
  struct NowcastAnswer {
    std::shared_ptr<NowcastReading const> reading;
    Instant askAgainAt;
  };

  /// One finished refresh of a place.
  struct RefreshReport {
    Place place;
    bool isSelected = false;
    Result<ForecastAnswer, APIError> outcome;
  };

  /// What the state asks of and tells to its surroundings; every member may be empty. Called without locks,
  /// on any thread.
  struct Surroundings {
    std::function<std::vector<Place>()> savedPlaces;
    /// Stopped when another place is selected.
    std::function<SupplementalOutcome(Place const&, std::stop_token)> refreshSupplemental;
    /// The same. Asked only in the foreground, and never before the place has a forecast to show.
    std::function<NowcastAnswer(Place const&, std::stop_token)> refreshNowcast;
    /// What is kept of the user's station, put into the forecast that is to be shown; null where none is
    /// linked. Does not block.
    std::function<std::shared_ptr<StationShown const>(WeatherData&)> overlayStation;
    /// Asks the station, seldom where nobody looks; gives when it may be asked again.
    std::function<Instant(bool isForeground, std::stop_token)> refreshStation;
    std::function<void(RefreshReport const&)> onRefresh;
    /// The device has moved, and its new place may be selected: the spacing of such moves allows it.
    std::function<void(LocationFix const&)> onArrival;
    std::function<void()> onChange;                     ///< the weather state was replaced
    std::function<void()> onDueChange;                  ///< `nextDue` may have moved
    std::function<std::chrono::milliseconds()> jitter;  ///< added to the timer, against full hours
    bool isRemembered = true;                           ///< the place that is shown, for the next start
  };

  AppState(InUse<ForecastService> forecasts, Clock const& clock, TaskRunner& runner,
           Surroundings surroundings, RefreshIntervals intervals = {});

  /// Shows what the cache holds of the place at once and asks for its refresh. Another place's running
  /// refresh is cancelled.
  void selectPlace(std::optional<Place> place, RefreshTrigger trigger = RefreshTrigger::placeChosen);
  /// Starts a refresh where the clocks allow it; one that is asked for while one runs is run once after it.
  void requestRefresh(RefreshTrigger trigger);
  /// The device is elsewhere. `onArrival` is called as soon as moves may cause a refresh again, with the last
  /// of several.
  void deviceMoved(LocationFix const& fix);
  /// Shows the cached forecast of the selected place again, as after a change of the forecasts' wording.
  void reshow();
  /// Another station is linked, or none any more.
  void stationChanged();
  void setForeground(bool isForeground);
  /// What supplemental feeds have of a place, unless another one is selected.
  void showGovAlerts(Place const& place, std::vector<WeatherAlert> alerts);
  void showTravelAdvisories(Place const& place, std::vector<WeatherAlert> advisories);
  void showConfidence(Place const& place, std::shared_ptr<SecondForecast const> second);
  void showSupplement(Place const& place, std::shared_ptr<SupplementState const> supplement);
  /// The machine is back from sleep or the network has come back: old failures mean nothing any more.
  void wokeUp(RefreshTrigger trigger);

  /// Starts whatever is due now.
  void runDue();
  /// When something is due next; nothing while no place is selected and none is saved.
  std::optional<Instant> nextDue();

  std::shared_ptr<WeatherState const> weather() const;
  std::optional<Place> selectedPlace() const;

 private:
  struct Slot {
    bool isRunning = false;
    std::stop_source stop;
  };

  Instant nextStart(RefreshTrigger trigger, Instant now) const;
  void arrive(Instant now);
  void startRefresh(RefreshTrigger trigger, Instant now);
  void refresh(Place const& place, RefreshTrigger trigger, std::stop_token const& stop);
  void finishRefresh(Place const& place, Result<ForecastAnswer, APIError> const& outcome);
  void scheduleAfter(bool succeeded, bool isOffline, Instant timerDue, Instant now);
  void startOthers(Instant now);
  void startSupplemental(Instant now);
  bool maySupplement(Instant now) const;
  void startNowcast(Instant now);
  bool wantsStation() const;
  void startStation(Instant now);
  void endStation(Instant now);
  bool wantsNowcast() const;
  void finishSupplemental(Place const& place, SupplementalOutcome outcome, std::stop_token const& stop);
  std::vector<Place> otherPlaces() const;
  static std::string keyOf(Place const& place);
  bool isSelected(Place const& place) const;
  /// The same with the lock held.
  bool isShown(Place const& place) const;
  /// Unless another place was selected meanwhile.
  void show(Place const& place, ForecastAnswer const& answer);
  using Change = std::function<void(WeatherState&)>;
  void change(Change const& apply);
  void changeShown(Place const& place, Change const& apply);
  void tell(std::function<void()> const& listener) const;

  InUse<ForecastService> forecasts_;
  Clock const& clock_;
  TaskRunner& runner_;
  Surroundings surroundings_;
  RefreshIntervals intervals_;

  mutable std::mutex mutex_;  // guards all below
  std::shared_ptr<WeatherState const> weather_ = std::make_shared<WeatherState>();
  std::optional<Place> selected_;
  bool isForeground_ = false;
  RefreshClocks clocks_;
  Slot currentRefreshTask_;
  Slot supplementalRefreshTask_;
  std::optional<Instant> supplementalRetryDue_;
  Slot stationTask_;
  std::optional<Instant> stationDue_;   ///< nothing: at once
  std::optional<Instant> stationEnds_;  ///< its values are no part of the present any more
  Slot nowcastTask_;
  std::optional<Instant> nowcastDue_;  ///< of the selected place; nothing before it was asked for
  Slot nonActiveNotificationRefreshTask_;
  std::optional<RefreshTrigger> needsPostUpdateRefresh_;
  std::optional<LocationFix> movedTo_;
  std::optional<Instant> timerDue_;
  std::optional<Instant> retryDue_;
  std::size_t retries_ = 0;
  bool hasAnswerSinceWake_ = false;
  bool wasOffline_ = false;
};

}  // namespace nimbara
