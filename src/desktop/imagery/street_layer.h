// Fetches the tiles of the user's own address for what a map shows and puts them together, on a thread of its
// own, while somebody looks. Owned by whoever shows it; after its end the listener is called no more.
#pragma once

#include "app/services/in_use.h"
#include "desktop/imagery/radar/radar_picture.h"
#include "desktop/imagery/wish_worker.h"
#include "platform/service_failure.h"

#include <functional>
#include <optional>
#include <string>

namespace nimbara {

class TileService;

struct StreetWish {
  std::string pattern;  ///< as `isTileTemplate` has it
  MapView view;
  Instant now;  ///< of the day
  bool operator==(StreetWish const&) const = default;
};

/// What became of a wish. Tiles that could not be had leave holes in the picture.
struct StreetAnswer {
  StreetWish wish;
  PlacedPicture placed;
  std::size_t wanted = 0, loaded = 0;
  std::optional<ServiceFailure> failure;  ///< of the first tile that could not be had
};

class StreetLayer {
 public:
  /// Called on the layer's thread, without locks.
  using Listener = std::function<void(StreetAnswer)>;
  /// After this span tiles that could not be had are asked for again, later and later up to the second.
  static constexpr std::chrono::seconds kAgain{20}, kMostRest{1280};

  StreetLayer(InUse<TileService> tiles, Listener listener);

  /// What was wanted before is wanted no more; nothing while nobody looks. Returns at once.
  void want(std::optional<StreetWish> const& wish) { worker_.want(wish); }

 private:
  bool serve(StreetWish const& wish, std::stop_token const& stop) const;
  StreetAnswer answerTo(StreetWish const& wish, std::stop_token const& stop) const;

  InUse<TileService> tiles_;
  Listener listener_;
  WishWorker<StreetWish> worker_;  ///< ends first
};

}  // namespace nimbara
