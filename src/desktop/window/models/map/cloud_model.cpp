#include "desktop/window/models/map/cloud_model.h"

#include "desktop/window/models/window_actions.h"
#include "feeds/fetching/failure_words.h"
#include "platform/service.h"

namespace nimbara {

CloudModel::CloudModel(InUse<CloudService> service, QObject* parent)
    : QObject(parent), service_(std::move(service)) {}

CloudModel::~CloudModel() = default;

void CloudModel::want(void const* who, bool isWanted) {
  if (!canAsk()) return;
  if (isWanted) {
    wanting_.insert(who);
  } else {
    wanting_.erase(who);
  }
  if (!layer_ && wanting_.empty()) return;
  if (!layer_) {
    auto const listener =
        answerTo<CloudSky>(this, [](CloudModel& model, CloudSky sky) { model.take(std::move(sky)); });
    layer_ = std::make_unique<CloudLayer>(service_, listener);
  }
  layer_->want(!wanting_.empty());
}

void CloudModel::take(CloudSky sky) {
  sky_ = std::move(sky);
  isKnown_ = true;
  Q_EMIT changed();
}

bool CloudModel::isCurrent(Instant now) const {
  return sky_.time && !sky_.veil.isNull() && now - *sky_.time < CloudPicture::kLife;
}

QImage CloudModel::veil(Instant now) const {
  return isCurrent(now) ? sky_.veil : QImage();
}

std::string CloudModel::note(ViewContext const& context) const {
  if (!canAsk()) return {};
  if (isCurrent(context.now)) return ageText(*sky_.time, context.now, context.texts) + ", " + maker();
  if (!isKnown_) return context.text("desktop.globe.waiting");
  return sky_.misses.empty() ? context.text("desktop.globe.failed")
                             : failureText(sky_.misses.back().failure, context.texts);
}

std::string CloudModel::maker() const {
  if (sky_.veil.isNull()) return {};
  bool const isFirst = sky_.source == CloudSource::nowCoast;
  return std::string(rowOf(isFirst ? Service::nowCoast : Service::eumetView).source.name);
}

}  // namespace nimbara
