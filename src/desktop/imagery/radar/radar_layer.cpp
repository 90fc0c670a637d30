#include "desktop/imagery/radar/radar_layer.h"

#include "desktop/imagery/fetched_pictures.h"
#include "desktop/imagery/picture_decoder.h"
#include "feeds/imagery/radar/radar_service.h"
#include "feeds/imagery/tile_service.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace nimbara {

namespace {

using Kind = ServiceFailure::Kind;
using State = RadarProgress::State;

ServiceFailure useless() {
  return ServiceFailure::of(Kind::unreadable, "its pictures do not show the radar");
}

/// Pictures of a frame, and what became of those that are not there.
struct Tiles {
  std::vector<TilePicture> pictures;
  std::size_t failed = 0;
  std::optional<ServiceFailure> failure;  ///< of the first that failed, else of one that does not exist
};

Tiles decodedTiles(std::vector<PictureArea> const& wanted, std::vector<FetchedPicture> const& got,
                   RadarSupplier const& supplier) {
  Tiles tiles;
  std::optional<ServiceFailure> missing;
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    if (!got[i] && isMissing(got[i].error())) {
      missing = got[i].error();
      continue;
    }
    auto picture = got[i] ? decodePicture(*got[i]) : std::nullopt;
    if (picture) {
      tiles.pictures.push_back({wanted[i].first, withoutMask(std::move(*picture), wanted[i], supplier),
                                wanted[i].columns, wanted[i].rows});
      continue;
    }
    ++tiles.failed;
    if (!tiles.failure) tiles.failure = got[i] ? useless() : got[i].error();
  }
  if (!tiles.failure) tiles.failure = missing;
  return tiles;
}

/// All that are played: first those further apart, of them those next to the one that is shown.
std::vector<RadarFrame> inOrderOfNeed(RadarReading const& reading, RadarFrame const& first) {
  auto frames = thinned(reading.frames, supplierOf(reading.source).step);
  auto const skeleton = thinned(frames, RadarLayer::kFirstApart);
  std::ranges::stable_sort(frames, {}, [&](RadarFrame const& each) {
    bool const isBetween = std::ranges::find(skeleton, each) == skeleton.end();
    return std::pair(isBetween, std::chrono::abs(each.time - first.time));
  });
  return frames;
}

}  // namespace

std::vector<RadarFrame> thinned(std::vector<RadarFrame> const& frames, std::chrono::minutes between) {
  if (frames.empty()) return {};
  std::size_t const newest = newestMeasured(frames);
  std::vector<RadarFrame> kept{frames[newest]};
  for (std::size_t i = newest; i-- > 0;) {
    if (kept.back().time - frames[i].time >= between) kept.push_back(frames[i]);
  }
  std::ranges::reverse(kept);
  for (std::size_t i = newest + 1; i < frames.size(); ++i) {
    if (frames[i].time - kept.back().time >= between) kept.push_back(frames[i]);
  }
  return kept;
}

RadarLayer::RadarLayer(RadarSources sources, Listener listener)
    : sources_(std::move(sources)),
      listener_(std::move(listener)),
      worker_([this](std::stop_token const& end) { work(end); }) {}

RadarLayer::~RadarLayer() {
  worker_.request_stop();
  rest();
}

void RadarLayer::want(RadarWish const& wish) {
  std::lock_guard const lock(mutex_);
  if (wish_ == wish) return;
  if (hidden_.stop_requested()) hidden_ = std::stop_source();
  bool const isOtherView = !wish_ || wish_->view != wish.view;
  bool const isThere = std::ranges::any_of(kept_, [&wish](Kept const& each) {
    return wish.frame && each.frame.time == *wish.frame && (wish.isMoving || !each.isCoarse);
  });
  bool const wantsMore = !wish_ || (wish.wantsAll && !wish_->wantsAll);
  bool const isOtherFrame = !wish_ || wish_->frame != wish.frame || wish_->isMoving != wish.isMoving;
  wish_ = wish;
  // What is under way for the same view goes on, unless another frame of it is waited for.
  if (isOtherView || (isOtherFrame && !isThere)) stop_.request_stop();
  isNew_ = isNew_ || isOtherView || wantsMore || (isOtherFrame && !isThere);
  wake_.notify_all();
}

void RadarLayer::rest() {
  std::lock_guard const lock(mutex_);
  wish_.reset();
  isNew_ = false;
  stop_.request_stop();
  hidden_.request_stop();
  wake_.notify_all();
}

std::optional<PlacedPicture> RadarLayer::picture(Instant frame) const {
  std::lock_guard const lock(mutex_);
  auto const found =
      std::ranges::find_if(kept_, [frame](Kept const& each) { return each.frame.time == frame; });
  if (found == kept_.end()) return std::nullopt;
  QByteArray const bytes = qUncompress(found->packed);
  QImage picture(size_, QImage::Format_ARGB32_Premultiplied);
  if (bytes.size() != picture.sizeInBytes()) return std::nullopt;
  std::memcpy(picture.bits(), bytes.constData(), static_cast<std::size_t>(bytes.size()));
  return PlacedPicture{std::move(picture), northWest_, southEast_};
}

void RadarLayer::work(std::stop_token const& end) {
  while (!end.stop_requested()) {
    if (auto const turn = next(end)) serve(*turn);
  }
}

/// Waits for a new wish, or until it is time to look again.
std::optional<RadarLayer::Turn> RadarLayer::next(std::stop_token const& end) {
  std::unique_lock lock(mutex_);
  if (wish_) {
    wake_.wait_for(lock, end, pause_, [this] { return isNew_ || !wish_; });
  } else {
    wake_.wait(lock, end, [this] { return isNew_; });
  }
  if (end.stop_requested() || !wish_) return std::nullopt;
  isNew_ = false;
  pause_ = kAgain;
  if (stop_.stop_requested()) stop_ = std::stop_source();
  return Turn{*wish_, stop_.get_token(), hidden_.get_token()};
}

void RadarLayer::serve(Turn const& turn) {
  std::set<RadarSource> without;
  for (std::size_t i = 0; i <= radarSuppliers().size(); ++i) {
    RadarReading const reading = sources_.radar()->frames(turn.wish.view, without, turn.hidden);
    if (!begin(turn, reading)) return;
    RadarFrame const first = [&] {
      std::lock_guard const lock(mutex_);
      return progress_.frames[frameOf(progress_, turn.wish.frame)].frame;
    }();
    ServiceFailure failure;
    Outcome const outcome = load(turn, reading, first, !turn.wish.isMoving, failure);
    if (outcome == Outcome::refused) sources_.radar()->refuse(reading.source, failure);
    if (outcome == Outcome::uncovered) without.insert(reading.source);
    if (outcome == Outcome::refused || outcome == Outcome::uncovered) continue;
    if (outcome == Outcome::later) fail(turn, {reading.source, failure});
    if (outcome == Outcome::loaded && turn.wish.wantsAll) loadOthers(turn, reading, first);
    return;
  }
}

/// Takes in the list. False where there is nothing to load.
bool RadarLayer::begin(Turn const& turn, RadarReading const& reading) {
  {
    std::lock_guard const lock(mutex_);
    if (turn.stop.stop_requested()) return false;
    progress_.misses = reading.misses;
    if (reading.state != RadarReading::State::current) {
      progress_.state = reading.state == RadarReading::State::none ? State::none : State::failed;
      progress_.frames.clear();
      kept_.clear();
    } else {
      takeList(turn.wish, reading);
    }
  }
  tell(turn);
  return reading.state == RadarReading::State::current;
}

void RadarLayer::takeList(RadarWish const& wish, RadarReading const& reading) {
  bool const isOther = view_ != wish.view || progress_.source != reading.source || progress_.frames.empty();
  if (isOther) kept_.clear();
  view_ = wish.view;
  progress_.source = reading.source;
  // A forecast for the same time that was made later has the same name.
  auto const frames = thinned(reading.frames, supplierOf(reading.source).step);
  Instant const newest = frames[newestMeasured(frames)].time;
  if (newest != newest_) std::erase_if(kept_, [](Kept const& each) { return each.frame.isForecast; });
  newest_ = newest;
  std::erase_if(
      kept_, [&frames](Kept const& each) { return std::ranges::find(frames, each.frame) == frames.end(); });
  progress_.frames.clear();
  for (RadarFrame const& frame : frames) {
    Kept const* const kept = keptOf(frame);
    progress_.frames.push_back({frame, kept != nullptr, kept != nullptr && kept->isDry,
                                kept != nullptr && kept->isPartial, kept != nullptr && kept->isForeign});
  }
  bool const isThere = progress_.frames[frameOf(progress_, wish.frame)].isLoaded;
  progress_.state = isThere ? State::shown : State::loading;
}

void RadarLayer::fail(Turn const& turn, RadarMiss miss) {
  {
    std::lock_guard const lock(mutex_);
    if (progress_.state == State::loading) progress_.state = State::failed;
    progress_.misses.push_back(std::move(miss));
    pause_ = kSoon;
  }
  tell(turn);
}

RadarLayer::Kept const* RadarLayer::keptOf(RadarFrame const& frame) const {
  auto const found = std::ranges::find(kept_, frame, &Kept::frame);
  return found == kept_.end() ? nullptr : &*found;
}

/// Where there is no radar, once a view and supplier. False where it is not known.
bool RadarLayer::makeVeil(Turn const& turn, RadarReading const& reading, ServiceFailure& failure) {
  std::pair const wanted(turn.wish.view, reading.source);
  if (veilOf_ == wanted) return true;
  veil_ = {};
  veilOf_.reset();
  RadarSupplier const& supplier = supplierOf(reading.source);
  std::vector<TilePicture> tiles;
  if (!supplier.coverage.empty()) {
    auto const addresses = coverageTilesWanted(turn.wish.view);
    auto const got = fetchedAll(addresses.size(), [&](std::size_t i) {
      return sources_.tiles()->coverage(reading, addresses[i], turn.stop);
    });
    for (std::size_t i = 0; i < addresses.size(); ++i) {
      auto picture = got[i] ? decodePicture(*got[i]) : std::nullopt;
      if (!picture) {
        failure = got[i] ? useless() : got[i].error();
        return false;
      }
      tiles.push_back({addresses[i], std::move(*picture)});
    }
  }
  veil_ = veilOf(turn.wish.view, supplier, tiles);
  veilOf_ = wanted;
  return true;
}

RadarLayer::Outcome RadarLayer::load(Turn const& turn, RadarReading const& reading, RadarFrame const& frame,
                                     bool isFine, ServiceFailure& failure) {
  {
    std::lock_guard const lock(mutex_);
    Kept const* const kept = keptOf(frame);
    if (kept != nullptr && !kept->isPartial && !(isFine && kept->isCoarse)) return Outcome::loaded;
  }
  RadarSupplier const& supplier = supplierOf(reading.source);
  bool const isCoverageKnown = makeVeil(turn, reading, failure);
  if (turn.stop.stop_requested()) return Outcome::stopped;
  if (isCoverageKnown && coversAll(veil_, turn.wish.view)) return Outcome::uncovered;
  constexpr std::size_t kAny = std::numeric_limits<std::size_t>::max();
  auto const wanted = picturesWanted(supplier, turn.wish.view, isFine ? kAny : kMostPlayed);
  bool const isCoarse = !isFine && wanted != picturesWanted(supplier, turn.wish.view, kAny);
  auto const got = fetchedAll(wanted.size(), [&](std::size_t i) {
    return sources_.tiles()->picture(reading, frame, wanted[i], turn.stop);
  });
  if (turn.stop.stop_requested()) return Outcome::stopped;
  Tiles tiles = decodedTiles(wanted, got, supplier);
  if (tiles.pictures.size() <= tiles.failed) {
    failure = tiles.failure.value_or(ServiceFailure());
    return failure.kind == Kind::leftAlone ? Outcome::later : Outcome::refused;
  }
  bool const isOwn = supplier.palette == RadarPalette::own;
  // Bare values are grey as writing is.
  bool const isWritten = !isOwn && std::ranges::any_of(tiles.pictures, isWriting, &TilePicture::picture);
  if (isWritten || isRepeated(tiles.pictures)) {
    failure = useless();
    return Outcome::refused;
  }
  bool const isForeign = !paintInOwnColours(tiles.pictures, supplier.palette);
  auto [placed, isDry] = composed(turn.wish.view, tiles.pictures, veil_);
  if (isDry && !isCoverageKnown) return failure.kind == Kind::leftAlone ? Outcome::later : Outcome::refused;
  keep(turn, {frame, {}, isDry, tiles.failed > 0, isCoarse, isForeign}, placed);
  return Outcome::loaded;
}

void RadarLayer::loadOthers(Turn const& turn, RadarReading const& reading, RadarFrame const& first) {
  for (RadarFrame const& frame : inOrderOfNeed(reading, first)) {
    ServiceFailure failure;
    Outcome const outcome = load(turn, reading, frame, false, failure);
    if (outcome == Outcome::stopped) return;
    if (outcome != Outcome::later) continue;
    std::lock_guard const lock(mutex_);
    pause_ = kSoon;
    return;
  }
}

void RadarLayer::keep(Turn const& turn, Kept kept, PlacedPicture const& picture) {
  constexpr int kFast = 1;
  kept.packed = qCompress(picture.picture.constBits(), picture.picture.sizeInBytes(), kFast);
  {
    std::lock_guard const lock(mutex_);
    if (turn.stop.stop_requested()) return;
    size_ = picture.picture.size();
    northWest_ = picture.northWest;
    southEast_ = picture.southEast;
    if (kept.isPartial) pause_ = kSoon;
    std::erase_if(kept_, [&kept](Kept const& each) { return each.frame == kept.frame; });
    auto const at = std::ranges::find(progress_.frames, kept.frame, &RadarProgress::Frame::frame);
    if (at == progress_.frames.end()) return;
    *at = {kept.frame, true, kept.isDry, kept.isPartial, kept.isForeign};
    kept_.push_back(std::move(kept));
    forgetFar();
    progress_.state = State::shown;
  }
  tell(turn);
}

/// Those furthest from what is shown, where they take too much memory.
void RadarLayer::forgetFar() {
  Instant const shown = progress_.frames[frameOf(progress_, wish_ ? wish_->frame : std::nullopt)].frame.time;
  auto const away = [shown](Kept const& each) { return std::chrono::abs(each.frame.time - shown); };
  auto const bytes = [](Kept const& each) { return each.packed.size(); };
  qsizetype total = 0;
  for (Kept const& each : kept_) total += bytes(each);
  while (total > kMostBytes && kept_.size() > 1) {
    auto const furthest = std::ranges::max_element(kept_, {}, away);
    auto const frame = std::ranges::find(progress_.frames, furthest->frame, &RadarProgress::Frame::frame);
    if (frame != progress_.frames.end()) frame->isLoaded = false;
    total -= bytes(*furthest);
    kept_.erase(furthest);
  }
}

void RadarLayer::tell(Turn const& turn) {
  RadarProgress progress;
  {
    std::lock_guard const lock(mutex_);
    if (turn.stop.stop_requested()) return;
    progress = progress_;
  }
  listener_(std::move(progress));
}

}  // namespace nimbara
