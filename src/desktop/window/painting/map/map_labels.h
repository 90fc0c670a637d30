// Names on the map: towns by their population and the user's places, none over another. Names are painted
// once and kept as pictures.
#pragma once

#include "base/web_mercator.h"
#include "gazetteer/gazetteer.h"

#include <QColor>
#include <QHash>
#include <QImage>
#include <QPainter>
#include <QString>
#include <string_view>
#include <vector>

namespace nimbara {

/// A town of the gazetteer; the text lives as long as the program.
struct MapTown {
  MapPoint at;
  std::string_view name;
  int population = 0;
};

/// From cities by their population. Neighbours with the very same number have that of the city which they are
/// parts of, and come after it.
std::vector<MapTown> mapTowns(std::vector<City> const& cities);

/// How many inhabitants a town has at least that is named at a zoom.
int leastPopulation(double zoom);

/// Which rectangles are taken.
class LabelRoom {
 public:
  bool take(QRectF const& wanted);

 private:
  std::vector<QRectF> taken_;
};

/// Towns of a picture in the order of their size. A much smaller one beside a greater one, or a part of it,
/// is left to a closer look, whether or not the greater one's name has found room.
class GreaterTowns {
 public:
  /// Notes the town where it is not left out.
  bool hidesAt(QPointF at, int population);

 private:
  struct Town {
    QPointF at;
    int population;
  };
  std::vector<Town> towns_;
};

class MapLabels {
 public:
  struct Look {
    QColor ink, halo;
    int letters = 12;
    double ratio = 1;
    bool operator==(Look const&) const = default;
  };

  void setLook(Look const& look);
  /// Paints a name beside a point: on its right, else on its left, above or below, wherever is room; not at
  /// all where there is none. `gap` is the point's radius.
  bool paint(QPainter& painter, LabelRoom& room, QPointF point, double gap, QString const& name, bool isBold);
  /// Ahead of the first picture, which would take as much longer.
  void readTowns();
  /// The towns in view, the most populous first, each with a dot.
  void paintTowns(QPainter& painter, LabelRoom& room, MapView const& view);

 private:
  struct Name {
    QImage picture;
    QSizeF size;
  };
  Name const& nameOf(QString const& text, bool isBold);

  Look look_;
  std::vector<MapTown> towns_;
  QHash<QString, Name> names_;
};

}  // namespace nimbara
