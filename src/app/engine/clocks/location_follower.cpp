#include "app/engine/clocks/location_follower.h"

#include <algorithm>

namespace nimbara {

bool isSignificantMove(std::optional<LocationFix> const& known, LocationFix const& fix) {
  if (!known) return true;
  double const metres = haversineKm(known->coordinate, fix.coordinate) * 1000;
  return metres >= std::max<double>(kSignificantMetres, fix.accuracyMetres);
}

void LocationFollower::want(bool isWanted) {
  std::lock_guard const turn(turn_);
  {
    std::lock_guard const lock(mutex_);
    if (isWanted && isRunning_) return;
    isRunning_ = isWanted;
    problem_.clear();
  }
  thread_ = {};
  if (isWanted) thread_ = std::jthread([this](std::stop_token const& stop) { run(stop); });
}

std::string LocationFollower::problem() const {
  std::lock_guard const lock(mutex_);
  return problem_;
}

void LocationFollower::run(std::stop_token const& stop) {
  auto known = around_.known();
  LocationError const end = around_.follow(
      [&](LocationFix const& fix) {
        if (!isSignificantMove(known, fix)) return;
        known = fix;
        around_.onMove(fix);
      },
      stop);
  std::lock_guard const lock(mutex_);
  if (stop.stop_requested()) return;
  isRunning_ = false;
  problem_ = end.message;
}

}  // namespace nimbara
