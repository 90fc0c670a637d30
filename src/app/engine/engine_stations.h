// The weather station's part of the engine: links, chooses and unlinks it for a face. What it is asked for it
// does one after the other on a thread of its own, which begins with the first of it: the user may take
// minutes on the consent page. Any thread may call. Owned by the engine.
#pragma once

#include "app/engine/station_actions.h"
#include "app/places/place.h"
#include "app/services/feed_services.h"
#include "app/services/in_use.h"
#include "app/services/task_runner.h"
#include "app/services/wording.h"

#include <mutex>

namespace nimbara {

class EngineStations final : public StationActions {
 public:
  struct Surroundings {
    InUse<FeedServices> feeds;
    std::function<std::shared_ptr<Wording const>()> wording;
    std::function<std::optional<Place>()> place;  ///< the selected one
    std::function<void()> onChange;               ///< another station is linked, or none any more
    bool isStandIn = false;                       ///< test servers take any application
  };

  explicit EngineStations(Surroundings surroundings) : surroundings_(std::move(surroundings)) {}
  /// Ends what is being done.
  void stop();

  void follow(Listener listener) override;
  void look() override;
  void linkAccount(std::string id, std::string secret, std::string token) override;
  void linkAddress(std::string address, std::string name) override;
  void cancel() override;
  void choose(std::string station) override;
  void lookAround() override;
  void chooseAround(std::string station) override;
  void unlink() override;

 private:
  using Work = std::function<void(StationService&, std::stop_token const&)>;

  void run(StationTask task, Work work);
  void tell(std::function<void(StationDesk&)> const& change);
  void readAgain(StationService& service, StationNeed need, std::stop_token const& stop);
  void finish(StationService& service, LinkEnd end);
  void changeLink(StationService& service, std::function<void(StationLink&)> const& apply,
                  std::stop_token const& stop);

  Surroundings surroundings_;
  std::mutex mutex_;  // guards all below
  Listener listener_;
  StationDesk desk_;
  std::stop_source linking_;  ///< of the consent that is waited for
  std::optional<ThreadPool> thread_;
  bool isOver_ = false;
};

}  // namespace nimbara
