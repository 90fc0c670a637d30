// Keeps the notifications of a long-lived program going: a pass after each refresh and change of settings,
// one for the hazards every few minutes in between, and the daily ones at their hour. Decides when; what is
// told is the engine's decision. Owns no thread and no timer: a scheduler asks for the next due moment and
// calls `runDue`, the work runs on the task runner, one pass at a time. Any thread may call; the runner must
// end before the notifier does.
#pragma once

#include "app/notices/notification_inputs.h"
#include "app/services/task_runner.h"

#include <chrono>
#include <functional>
#include <mutex>
#include <optional>

namespace nimbara {

/// How often the hazards are checked between forecasts.
struct HazardIntervals {
  std::chrono::seconds nws{
      120};  ///< where the United States' service has territory; its answers live as long
  std::chrono::seconds elsewhere{300};
};

class Notifier {
 public:
  /// Members may be empty, but for the first two. Called without locks, on any thread.
  struct Surroundings {
    std::function<std::vector<WatchedPlace>()> places;  ///< the selected one first
    std::function<std::vector<CustomNotification>()> rules;
    std::function<bool()> isOurs;  ///< another program notifies when it says no
    std::function<void(PassReport const&)> onPass;
    std::function<void()> onDueChange;                  ///< `nextDue` may have moved
    std::function<std::chrono::milliseconds()> jitter;  ///< added to the checks of hazards
  };

  Notifier(NotificationManager& manager, NotificationInputs& inputs, SettingsStore& store, Clock const& clock,
           TaskRunner& runner, Surroundings surroundings, HazardIntervals intervals = {});

  /// One pass soon; one more after it where one runs already.
  void requestPass();
  /// The machine is back from sleep, or the network has come back.
  void wokeUp();

  /// Starts whatever is due now.
  void runDue();
  /// Nothing while no place is watched, or another program notifies.
  std::optional<Instant> nextDue() const;

 private:
  bool isOurs() const { return !surroundings_.isOurs || surroundings_.isOurs(); }
  void start();
  void pass(std::stop_token const& stop);
  void finish();
  void tellScheduled();
  std::chrono::milliseconds spanToNextCheck(std::vector<WatchedPlace> const& places) const;
  void tell(PassReport const& report) const;

  NotificationManager& manager_;
  NotificationInputs& inputs_;
  SettingsStore& store_;
  Clock const& clock_;
  TaskRunner& runner_;
  Surroundings surroundings_;
  HazardIntervals intervals_;

  mutable std::mutex mutex_;  // guards all below
  bool isRunning_ = false;
  bool isAskedAgain_ = false;
  std::optional<Instant> nextCheck_;  ///< of the hazards; nothing before the first pass
};

}  // namespace nimbara
