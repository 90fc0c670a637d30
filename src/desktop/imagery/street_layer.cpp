#include "desktop/imagery/street_layer.h"

#include "app/services/side_by_side.h"
#include "desktop/imagery/picture_decoder.h"
#include "desktop/imagery/radar_composition.h"
#include "feeds/imagery/street_tiles.h"
#include "feeds/imagery/tile_service.h"

#include <algorithm>
#include <atomic>
#include <cmath>

namespace nimbara {

StreetLayer::StreetLayer(InUse<TileService> tiles, Listener listener)
    : tiles_(std::move(tiles)),
      listener_(std::move(listener)),
      worker_([this](std::stop_token const& end) { work(end); }) {}

StreetLayer::~StreetLayer() {
  worker_.request_stop();
  want(std::nullopt);
}

void StreetLayer::want(std::optional<StreetWish> const& wish) {
  std::lock_guard const lock(mutex_);
  if (wish == wish_) return;
  stop_.request_stop();
  stop_ = std::stop_source();
  wish_ = wish;
  isNew_ = wish.has_value();
  wake_.notify_all();
}

void StreetLayer::work(std::stop_token const& end) {
  std::unique_lock lock(mutex_);
  bool isWhole = true;
  std::chrono::seconds pause = kAgain;
  while (!end.stop_requested()) {
    auto const isDue = [this] { return isNew_; };
    if (isWhole) {
      wake_.wait(lock, end, isDue);
    } else {
      wake_.wait_for(lock, end, pause, isDue);
    }
    if (end.stop_requested()) return;
    pause = isNew_ ? kAgain : std::min(2 * pause, kMostRest);
    isNew_ = false;
    isWhole = true;
    if (!wish_) continue;
    StreetWish const wish = *wish_;
    std::stop_token const stop = stop_.get_token();
    lock.unlock();
    StreetAnswer answer = answerTo(wish, stop);
    bool const isWanted = !stop.stop_requested();
    isWhole = !isWanted || answer.loaded == answer.wanted;
    if (isWanted) listener_(std::move(answer));
    lock.lock();
  }
}

/// The tiles next to the middle first, and no more of them where two could not be had.
StreetAnswer StreetLayer::answerTo(StreetWish const& wish, std::stop_token const& stop) const {
  constexpr std::size_t kAtOnce = 6;
  constexpr int kEnough = 2;
  auto const wanted = tilesOf(wish.view, static_cast<int>(std::lround(wish.view.zoom)));
  std::vector<std::optional<QImage>> pictures(wanted.size());
  std::vector<std::optional<ServiceFailure>> failed(wanted.size());
  std::atomic<std::size_t> next = 0;
  std::atomic<int> failures = 0;
  auto const fetch = [&] {
    for (std::size_t i = next++; i < wanted.size() && failures < kEnough; i = next++) {
      auto const got = tiles_()->picture(streetTileAddress(wish.pattern, wanted[i]),
                                         streetTileKey(wish.pattern, wanted[i], wish.now), stop);
      if (got) pictures[i] = decodePicture(*got);
      if (pictures[i]) continue;
      failed[i] = got ? ServiceFailure::of(ServiceFailure::Kind::unreadable, "the response is not a picture")
                      : got.error();
      ++failures;
    }
  };
  runAll(std::vector<std::function<void()>>(std::min(wanted.size(), kAtOnce), fetch), Waiting::sideBySide);
  StreetAnswer answer{wish, {}, wanted.size(), 0, {}};
  std::vector<TilePicture> tiles;
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    if (pictures[i]) tiles.push_back({wanted[i], std::move(*pictures[i])});
    if (failed[i] && !answer.failure) answer.failure = std::move(failed[i]);
  }
  answer.loaded = tiles.size();
  if (!tiles.empty()) answer.placed = composed(wish.view, tiles, {}).placed;
  return answer;
}

}  // namespace nimbara
