#include "app/engine/engine_outlook.h"

#include "app/services/feed_services.h"

#include <utility>

namespace nimbara {

EngineOutlook::EngineOutlook(InUse<FeedServices> feeds, TaskRunner& runner, std::function<void()> publish)
    : feeds_(std::move(feeds)), runner_(runner), publish_(std::move(publish)) {}

std::shared_ptr<OutlookState const> EngineOutlook::state() const {
  std::lock_guard const lock(mutex_);
  return state_;
}

void EngineOutlook::keep(OutlookState next) {
  auto kept = std::make_shared<OutlookState const>(std::move(next));
  {
    std::lock_guard const lock(mutex_);
    state_ = std::move(kept);
  }
  publish_();
}

void EngineOutlook::look(Place const& place) {
  auto const known = state();
  bool const isSame = known->place && known->place->coordinate == place.coordinate;
  if (isSame && known->isAsking) return;
  keep({place, isSame ? known->days : FeedReading<std::vector<OutlookDay>>(), true});
  runner_.run([this, place](std::stop_token const& stop) {
    auto days = feeds_()->outlook().fetch(place.coordinate, stop);
    auto const shown = state();
    bool const isStillShown = shown->place && shown->place->coordinate == place.coordinate;
    if (isStillShown && !stop.stop_requested()) keep({place, std::move(days), false});
  });
}

}  // namespace nimbara
