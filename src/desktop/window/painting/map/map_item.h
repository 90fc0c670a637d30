// The map: land and sea, what a layer lays on it, areas of warnings, towns, places, earthquakes. An item of
// the window; what is shown comes from the model, the colours from the page.
#pragma once

#include "desktop/window/models/map/map_model.h"
#include "desktop/window/painting/map/map_labels.h"
#include "desktop/window/painting/map/map_lines.h"
#include "desktop/window/painting/map/map_tiles.h"

#include <QColor>
#include <QQuickPaintedItem>
#include <QVariantMap>
#include <vector>

namespace nimbara {

class MapItem : public QQuickPaintedItem {
  Q_OBJECT
  Q_PROPERTY(nimbara::MapModel* model READ model WRITE setModel NOTIFY changed)
  Q_PROPERTY(QColor sea MEMBER sea_ NOTIFY changed)
  Q_PROPERTY(QColor land MEMBER land_ NOTIFY changed)
  Q_PROPERTY(QColor border MEMBER border_ NOTIFY changed)
  Q_PROPERTY(QColor water MEMBER water_ NOTIFY changed)
  Q_PROPERTY(QColor ink MEMBER ink_ NOTIFY changed)
  Q_PROPERTY(QColor mark MEMBER mark_ NOTIFY changed)
  Q_PROPERTY(QVariantMap levels MEMBER levels_ NOTIFY changed)
  Q_PROPERTY(QVariantList ages MEMBER ages_ NOTIFY changed)
  Q_PROPERTY(int letters MEMBER letters_ NOTIFY changed)

 public:
  explicit MapItem(QQuickItem* parent = nullptr);

  void paint(QPainter* painter) override;
  /// Reads the world, so that the page's making and its first picture are two short works in place of a long
  /// one.
  void componentComplete() override;

  MapModel* model() const { return model_; }
  void setModel(MapModel* model);

 Q_SIGNALS:
  void changed();

 private:
  /// Coasts and borders at a zoom.
  struct Outlines {
    std::vector<MapLine> coasts, borders, disputed, lakes, rivers;
  };
  struct Area {
    std::vector<MapLine> rings;
    bool isEachAnArea = false;
    QColor colour;
    Qt::BrushStyle pattern = Qt::SolidPattern;
  };

  Outlines const& outlinesAt(double side);
  bool paintLand(QPainter& painter, QPointF corner, double side);
  bool paintAreas(QPainter& painter, QPointF corner, double side) const;
  void paintPictures(QPainter& painter, MapView const& view, MapLayerPictures const& pictures) const;
  void paintQuakes(QPainter& painter, MapView const& view) const;
  void paintPlaces(QPainter& painter, LabelRoom& room, MapView const& view);
  void takeThings();
  void restyle();

  MapModel* model_ = nullptr;
  QColor sea_, land_, border_, water_, ink_, mark_;
  QVariantMap levels_;
  QVariantList ages_;
  int letters_ = 12;
  Outlines whole_;
  std::map<int, Outlines> outlines_;
  std::vector<Area> areas_;
  MapTiles ground_, warned_;
  MapLabels labels_;
};

}  // namespace nimbara
