// Draws the map's layers of hazards: storms with their tracks and the reach of gales, fires, lightning, and
// the weather stations around a place. Painted anew with each picture of the map; keeps nothing.
#pragma once

#include "base/web_mercator.h"
#include "desktop/views/map/map_layers.h"
#include "desktop/views/map/map_stations.h"
#include "desktop/window/painting/map/map_labels.h"

#include <QColor>
#include <QPainter>
#include <functional>
#include <vector>

namespace nimbara {

class MapLayersPainter {
 public:
  struct Look {
    QColor ink, halo;
  };

  /// Both outlive it.
  MapLayersPainter(QPainter& painter, MapView const& view, Look const& look)
      : painter_(painter), view_(view), look_(look) {}

  void paintMarks(std::vector<MapMark> const& marks, std::function<bool(MapMarkKind)> const& isShown) const;
  void paintTracks(std::vector<MapTrack> const& tracks) const;
  /// Dots with their values; a ring where a station does not count.
  void paintStations(std::vector<MapStation> const& stations, MapLabels& labels, LabelRoom& room) const;
  void nameTracks(std::vector<MapTrack> const& tracks, MapLabels& labels, LabelRoom& room) const;

 private:
  void paintGales(MapTrack const& track, QColor const& colour) const;
  void paintWay(MapTrack const& track, QColor const& colour) const;
  void paintStorm(QPointF at, QColor const& colour) const;

  QPainter& painter_;
  MapView const& view_;
  Look look_;
};

}  // namespace nimbara
