// Pictures of skies, painted in code so that they are sharp at any size: "clear/day", "lightRain/night", … An
// image provider of the window's engine, which owns it.
#pragma once

#include <QQuickImageProvider>

namespace nimbara {

class ConditionPictures : public QQuickImageProvider {
 public:
  ConditionPictures() : QQuickImageProvider(QQuickImageProvider::Image) {}

  /// `id` is "SKY/day|night/light|dark": the last tells what the picture lies on.
  QImage requestImage(QString const& id, QSize* size, QSize const& requestedSize) override;
};

}  // namespace nimbara
