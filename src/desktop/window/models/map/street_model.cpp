#include "desktop/window/models/map/street_model.h"

#include "desktop/window/models/window_actions.h"
#include "feeds/fetching/failure_words.h"

namespace nimbara {

StreetModel::StreetModel(InUse<TileService> tiles, QObject* parent)
    : QObject(parent), tiles_(std::move(tiles)) {}

StreetModel::~StreetModel() = default;

bool StreetModel::setPattern(std::string pattern) {
  if (pattern == pattern_) return false;
  pattern_ = std::move(pattern);
  answer_.reset();
  return true;
}

void StreetModel::look(std::optional<MapView> const& view, Instant now) {
  std::optional<StreetWish> wish;
  if (view && canAsk()) wish = StreetWish{pattern_, *view, std::chrono::floor<std::chrono::days>(now)};
  if (wish == wish_) return;
  wish_ = wish;
  if (!wish) answer_.reset();
  if (!layer_ && !wish) return;
  if (!layer_) {
    auto const listener = answerTo<StreetAnswer>(
        this, [](StreetModel& model, StreetAnswer answer) { model.take(std::move(answer)); });
    layer_ = std::make_unique<StreetLayer>(tiles_, listener);
  }
  layer_->want(wish_);
}

void StreetModel::take(StreetAnswer answer) {
  if (!wish_ || answer.wish != *wish_) return;
  answer_ = std::move(answer);
  Q_EMIT pictured();
}

MapLayerPictures StreetModel::pictures() const {
  if (!wish_ || !answer_ || answer_->placed.picture.isNull()) return {};
  PlacedPicture const& placed = answer_->placed;
  return {{placed.picture, placed.northWest, placed.southEast, 1}};
}

std::string StreetModel::note(ViewContext const& context) const {
  if (!wish_) return {};
  if (!answer_) return context.text("desktop.map.streets.loading");
  return answer_->failure ? failureText(*answer_->failure, context.texts) : std::string();
}

}  // namespace nimbara
