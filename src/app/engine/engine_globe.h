// The globe's part of the engine: loads the satellites and earthquakes when the page is first shown, keeps
// them fresh while it is, and lets the layer propagate. Any thread may call; nothing waits for a service.
// Owned by the engine, which outlives its tasks.
#pragma once

#include "app/engine/engine_actions.h"
#include "app/services/in_use.h"
#include "app/services/task_runner.h"
#include "app/state/globe_state.h"
#include "globe/satellite_feed.h"

#include <functional>
#include <mutex>

namespace nimbara {

class EarthquakeService;

class EngineGlobe final : public GlobeActions {
 public:
  struct Parts {
    SatelliteFeed& feed;
    InUse<EarthquakeService> earthquakes;
    Clock const& clock;
    TaskRunner& work;
    std::function<void()> onChange;               ///< called without locks, on the tasks' threads
    std::function<void(std::string)> saveHidden;  ///< takes the setting's new value; does not wait
  };

  /// What was not available is asked for again, and earthquakes are fetched again, after these spans.
  static constexpr std::chrono::minutes kRetry{10};
  static constexpr std::chrono::minutes kEarthquakesAfter{5};

  EngineGlobe(Parts parts, std::string_view hiddenSetting);

  void setShown(bool isShown) override;
  std::shared_ptr<GlobeState const> tick() override;
  void choose(std::optional<std::uint32_t> entry) override;
  void setHidden(std::string_view legendRow, bool isHidden) override;
  std::shared_ptr<GlobeState const> state() const;

 private:
  std::shared_ptr<GlobeState const> stateNow() const;
  void askForMore(Instant now);
  void loadGroups(std::stop_token const& stop);
  void loadEarthquakes(std::stop_token const& stop);
  void take(std::size_t group, Result<SatelliteGroupLoad, ServiceFailure> loaded);
  void showLoaded(bool isLast);
  void chooseAgain(Instant now);
  bool isLoadDue(Instant now) const;

  Parts parts_;
  mutable std::mutex mutex_;  // guards all below
  bool isShown_ = false;
  std::optional<SatelliteLayer> layer_;  ///< from the first show on
  GlobeState state_;
  std::vector<SatelliteGroupLoad> loads_;  ///< while groups are being loaded
  bool isFirstLoad_ = true;
  bool areEarthquakesAsked_ = false;
  std::optional<Instant> loaded_, earthquakesLoaded_;
  std::optional<int> chosenNumber_;  ///< in the satellite catalogue
};

}  // namespace nimbara
