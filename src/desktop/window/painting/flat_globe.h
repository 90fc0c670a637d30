// The globe painted without a graphics card: each pixel's place on the earth is computed, points and lines go
// on top. Draws what the model has, seen from the model's camera, like the scene in three dimensions. The
// disc is coarser while the camera moves, and repainted only when camera or sun have moved.
#pragma once

#include "desktop/window/models/map/globe_model.h"

#include <QImage>
#include <QQuickPaintedItem>
#include <QTimer>

namespace nimbara {

/// The earth's disc in a picture of `size`, which is `shrink` times smaller than the camera's; transparent
/// around it. `sun` points towards the sun, earth-fixed.
QImage paintDisc(QImage const& earth, GlobeCamera const& camera, Vector3 const& sun, QSize size,
                 double shrink);

class FlatGlobe : public QQuickPaintedItem {
  Q_OBJECT
  Q_PROPERTY(nimbara::GlobeModel* model READ model WRITE setModel NOTIFY modelChanged)

 public:
  explicit FlatGlobe(QQuickItem* parent = nullptr);

  void paint(QPainter* painter) override;

  GlobeModel* model() const { return model_; }
  void setModel(GlobeModel* model);

 Q_SIGNALS:
  void modelChanged();

 private:
  /// What a disc was painted for.
  struct DiscView {
    GlobeCamera camera;
    Vector3 sun{};
    QSize size;
    qint64 earth = 0;
    bool operator==(DiscView const&) const = default;
  };
  void paintEarth(QPainter& painter);
  void paintStars(QPainter& painter) const;
  void paintSatellites(QPainter& painter) const;
  void paintOrbit(QPainter& painter) const;
  void paintEarthquakes(QPainter& painter) const;
  void paintGround(QPainter& painter) const;

  GlobeModel* model_ = nullptr;
  QTimer rest_;  // runs while the camera moves
  DiscView discView_;
  QImage disc_;
};

}  // namespace nimbara
