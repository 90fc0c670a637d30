#include "app/notices/notifier.h"

#include "feeds/nws/nws_territory.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>

namespace nimbara {

namespace {

bool isNwsPlace(WatchedPlace const& watched) {
  Coordinate const at = watched.place.coordinate;
  return isNwsTerritory(govAlertPlace(at).countryCode, at);
}

}  // namespace

Notifier::Notifier(NotificationManager& manager, NotificationInputs& inputs, SettingsStore& store,
                   Clock const& clock, TaskRunner& runner, Surroundings surroundings,
                   HazardIntervals intervals)
    : manager_(manager),
      inputs_(inputs),
      store_(store),
      clock_(clock),
      runner_(runner),
      surroundings_(std::move(surroundings)),
      intervals_(intervals) {}

void Notifier::requestPass() {
  if (!isOurs()) return;
  {
    std::lock_guard const lock(mutex_);
    isAskedAgain_ = isRunning_;
    if (isRunning_) return;
    isRunning_ = true;
  }
  start();
}

void Notifier::wokeUp() {
  requestPass();
}

void Notifier::start() {
  runner_.run([this](std::stop_token const& stop) {
    tellScheduled();
    pass(stop);
    finish();
  });
}

void Notifier::finish() {
  bool goesOn = false;
  {
    std::lock_guard const lock(mutex_);
    goesOn = isAskedAgain_;
    isAskedAgain_ = false;
    isRunning_ = goesOn;
  }
  if (goesOn) start();
  if (surroundings_.onDueChange) surroundings_.onDueChange();
}

void Notifier::pass(std::stop_token const& stop) {
  std::vector<WatchedPlace> const places = surroundings_.places();
  {
    std::lock_guard const lock(mutex_);
    nextCheck_.reset();
    if (!places.empty()) nextCheck_ = clock_.now() + spanToNextCheck(places);
  }
  if (places.empty()) return;
  auto const gather = [&](NeededInputs const& needed, std::stop_token const& token) {
    return inputs_.gather(places, needed, store_.settings().settings, surroundings_.rules(), token);
  };
  tell(manager_.evaluate(gather, stop));
}

std::chrono::milliseconds Notifier::spanToNextCheck(std::vector<WatchedPlace> const& places) const {
  bool const asksNws = std::ranges::any_of(places, isNwsPlace);
  std::chrono::milliseconds const jitter =
      surroundings_.jitter ? surroundings_.jitter() : std::chrono::milliseconds(0);
  return (asksNws ? intervals_.nws : intervals_.elsewhere) + jitter;
}

void Notifier::tellScheduled() {
  auto const due = manager_.nextScheduled();
  if (due && *due <= clock_.now()) tell(manager_.tellScheduled());
}

void Notifier::tell(PassReport const& report) const {
  if (surroundings_.onPass) surroundings_.onPass(report);
}

void Notifier::runDue() {
  auto const due = nextDue();
  if (due && *due <= clock_.now()) requestPass();
}

std::optional<Instant> Notifier::nextDue() const {
  if (!isOurs()) return std::nullopt;
  std::lock_guard const lock(mutex_);
  // What runs asks again when it is done.
  if (isRunning_) return std::nullopt;
  auto const scheduled = manager_.nextScheduled();
  if (!nextCheck_ || !scheduled) return nextCheck_ ? nextCheck_ : scheduled;
  return std::min(*nextCheck_, *scheduled);
}

}  // namespace nimbara
