#include "desktop/imagery/street_layer.h"

#include "desktop/imagery/fetched_pictures.h"
#include "desktop/imagery/picture_decoder.h"
#include "desktop/imagery/radar/radar_composition.h"
#include "feeds/imagery/street_tiles.h"
#include "feeds/imagery/tile_service.h"

#include <cmath>

namespace nimbara {

StreetLayer::StreetLayer(InUse<TileService> tiles, Listener listener)
    : tiles_(std::move(tiles)),
      listener_(std::move(listener)),
      worker_({kAgain, kMostRest},
              [this](StreetWish const& wish, std::stop_token const& stop) { return serve(wish, stop); }) {}

bool StreetLayer::serve(StreetWish const& wish, std::stop_token const& stop) const {
  StreetAnswer answer = answerTo(wish, stop);
  if (stop.stop_requested()) return true;
  bool const isWhole = answer.loaded == answer.wanted;
  listener_(std::move(answer));
  return isWhole;
}

/// The tiles next to the middle first.
StreetAnswer StreetLayer::answerTo(StreetWish const& wish, std::stop_token const& stop) const {
  auto const wanted = tilesOf(wish.view, static_cast<int>(std::lround(wish.view.zoom)));
  auto const got = fetchedAll(wanted.size(), [&](std::size_t i) {
    return tiles_()->picture(streetTileAddress(wish.pattern, wanted[i]),
                             streetTileKey(wish.pattern, wanted[i], wish.now), stop);
  });
  StreetAnswer answer{wish, {}, wanted.size(), 0, {}};
  std::vector<TilePicture> tiles;
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    auto picture = got[i] ? decodePicture(*got[i]) : std::nullopt;
    if (picture) {
      tiles.push_back({wanted[i], std::move(*picture)});
    } else if (!answer.failure) {
      answer.failure =
          got[i] ? ServiceFailure::of(ServiceFailure::Kind::unreadable, "the response is not a picture")
                 : got[i].error();
    }
  }
  answer.loaded = tiles.size();
  if (!tiles.empty()) answer.placed = composed(wish.view, tiles, {}).placed;
  return answer;
}

}  // namespace nimbara
