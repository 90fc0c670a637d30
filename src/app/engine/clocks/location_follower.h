// Keeps an eye on where the device is while the current location is the selected place, and tells of moves
// that matter for the weather. Owned by a long-lived program; has a thread of its own that sleeps between
// moves.
#pragma once

#include "platform/location_source.h"

#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace nimbara {

/// Moves shorter than this are none.
inline constexpr std::uint32_t kSignificantMetres = 1000;

/// Whether the device is elsewhere than it was: farther than the threshold and than what the newer fix is
/// unsure about.
bool isSignificantMove(std::optional<LocationFix> const& known, LocationFix const& fix);

class LocationFollower {
 public:
  struct Surroundings {
    std::function<LocationError(LocationSource::Moved const&, std::stop_token)> follow;
    std::function<std::optional<LocationFix>()> known;  ///< where the device was when it was last seen
    std::function<void(LocationFix const&)> onMove;     ///< on the follower's thread
  };

  explicit LocationFollower(Surroundings surroundings) : around_(std::move(surroundings)) {}

  /// Begins to follow, once more where the service has ended it, or lets it be. Not from within `onMove`.
  void want(bool isWanted);
  /// Why the device is not followed; empty while it is, or is not to be. A sentence without a full stop.
  std::string problem() const;

 private:
  void run(std::stop_token const& stop);

  Surroundings around_;
  std::mutex turn_;           ///< of whoever wants
  mutable std::mutex mutex_;  // guards the next two
  bool isRunning_ = false;
  std::string problem_;
  std::jthread thread_;
};

}  // namespace nimbara
