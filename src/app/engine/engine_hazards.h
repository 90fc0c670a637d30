// The hazards that somebody looks at: official warnings of the selected place, earthquakes, geomagnetic
// activity. Asks the feeds, keeps what they said last with its age, and the filter that the user chose. Owned
// by the engine, which calls it on threads of its own; decides nothing about when the feeds are due.
#pragma once

#include "app/engine/app_state.h"
#include "app/services/in_use.h"
#include "app/services/task_runner.h"
#include "app/state/hazards_state.h"
#include "platform/settings/settings_store.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string_view>
#include <vector>

namespace nimbara {

class FeedServices;
struct SupplementState;

class EngineHazards {
 public:
  /// Called on any thread, while nobody waits for the state.
  struct Surroundings {
    std::function<void(Place const&, std::vector<WeatherAlert>)> showAlerts;
    std::function<void()> publish;
    std::function<std::vector<Place>()> savedPlaces;
    /// None: nobody shows what supplemental feeds have, and they are not asked.
    std::function<void(Place const&, std::shared_ptr<SupplementState const>)> showSupplement = {};
    std::function<Instant()> now = {};
  };

  EngineHazards(InUse<FeedServices> feeds, SettingsStore& store, TaskRunner& runner,
                Surroundings surroundings);

  std::shared_ptr<HazardsState const> state() const;

  /// The place that is selected from now on. What was known of another one's warnings is no longer shown.
  void setPlace(std::optional<Place> const& place);
  /// Shows what is kept of that place's warnings: at first, or after somebody else has asked for them. Asks
  /// nobody.
  void showKept();
  /// In the background: its source was changed.
  void askOfficial(Place const& place);
  /// Asks every feed. Blocks; what is stopped leaves everything as it was.
  SupplementalOutcome refresh(Place const& place, std::stop_token const& stop);
  /// Somebody looks: asks soon for what is not a place's and has grown old.
  void look();
  /// Somebody looks at the sources of all saved places: shows what is kept of them and asks for those that
  /// are due, one after the other.
  void lookAtPlaces();

  void readFilter();
  void setRadius(double km);
  void setMagnitude(double least);

 private:
  void showOfficial(Place const& place, bool isAsking);
  void finishOfficial(Place const& place);
  void showPlaces();
  void checkPlaces(std::stop_token const& stop);
  void askWorld(std::stop_token const& stop);
  void askSupplement(Place const& place, std::stop_token const& stop);
  void choose(std::string_view setting, double value);
  template <class Change>
  void change(Change apply);

  InUse<FeedServices> feeds_;
  SettingsStore& store_;
  TaskRunner& runner_;
  Surroundings surroundings_;
  std::atomic<bool> isLooking_ = false;
  std::atomic<bool> isCheckingPlaces_ = false;

  std::mutex officialTurn_;   // of those who show warnings, so that what is shown last is what was kept last
  mutable std::mutex mutex_;  // guards the state
  std::shared_ptr<HazardsState const> state_ = std::make_shared<HazardsState>();
};

}  // namespace nimbara
