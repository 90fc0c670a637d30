#include "desktop/window/painting/map/map_item.h"

#include "desktop/window/painting/map/land_picture.h"
#include "desktop/window/painting/map/map_layers_painter.h"
#include "gazetteer/world_outlines.h"

#include <QPainter>
#include <QPainterPath>
#include <QQuickWindow>
#include <algorithm>
#include <cmath>
#include <ranges>

namespace nimbara {

namespace {

/// Pixels below which bends of a line are left out.
constexpr double kFinest = 0.7;
constexpr double kInside = 0.28;

std::vector<MapLine> linesOf(std::vector<WorldLine> const& world) {
  std::vector<MapLine> lines;
  lines.reserve(world.size());
  for (WorldLine const& line : world) lines.push_back(mapLine(line));
  return lines;
}

/// What is smaller than a pixel is left out.
std::vector<MapLine> simplifiedAll(std::vector<MapLine> const& lines, double pixel) {
  std::vector<MapLine> made;
  for (MapLine const& line : lines) {
    if (std::max(line.east - line.west, line.south - line.north) < pixel) continue;
    made.push_back(simplified(line, kFinest * pixel));
  }
  return made;
}

Qt::BrushStyle patternOf(std::string const& level) {
  if (level == "critical") return Qt::DiagCrossPattern;
  if (level == "warning") return Qt::BDiagPattern;
  return Qt::SolidPattern;
}

}  // namespace

MapItem::MapItem(QQuickItem* parent)
    : QQuickPaintedItem(parent),
      ground_(QImage::Format_RGB32, [this](QPainter& painter, QPointF corner,
                                           double side) { return paintLand(painter, corner, side); }),
      warned_(QImage::Format_ARGB32_Premultiplied, [this](QPainter& painter, QPointF corner, double side) {
        return paintAreas(painter, corner, side);
      }) {
  setOpaquePainting(true);
  connect(this, &MapItem::changed, this, &MapItem::restyle);
}

void MapItem::setModel(MapModel* model) {
  if (model_ == model) return;
  if (model_ != nullptr) disconnect(model_, nullptr, this, nullptr);
  model_ = model;
  if (model_ != nullptr) {
    connect(model_, &MapModel::shown, this, &MapItem::takeThings);
    connect(model_, &MapModel::viewChanged, this, [this] { update(); });
    connect(model_, &MapModel::layersChanged, this, [this] { update(); });
  }
  Q_EMIT changed();
}

void MapItem::restyle() {
  ground_.clear();
  takeThings();
}

void MapItem::takeThings() {
  areas_.clear();
  warned_.clear();
  if (model_ != nullptr) {
    for (MapArea const& area : model_->onMap().areas) {
      Area& made = areas_.emplace_back();
      for (WorldLine const& ring : area.outlines.rings) made.rings.push_back(mapLine(ring));
      made.isEachAnArea = area.outlines.isEachAnArea;
      made.colour = levels_.value(QString::fromStdString(area.level)).value<QColor>();
      made.pattern = patternOf(area.level);
    }
  }
  update();
}

void MapItem::componentComplete() {
  QQuickPaintedItem::componentComplete();
  whole_ = {linesOf(landOutlines()), linesOf(borderLines()), linesOf(disputedLines()),
            linesOf(lakeOutlines()), linesOf(riverLines())};
  labels_.readTowns();
}

MapItem::Outlines const& MapItem::outlinesAt(double side) {
  int const step = static_cast<int>(std::ceil(std::log2(side / kTileSide) - 1e-9));
  auto [found, isNew] = outlines_.try_emplace(step);
  if (isNew) {
    double const pixel = 1 / (kTileSide * std::exp2(step));
    found->second = {simplifiedAll(whole_.coasts, pixel), simplifiedAll(whole_.borders, pixel),
                     simplifiedAll(whole_.disputed, pixel), simplifiedAll(whole_.lakes, 3 * pixel),
                     simplifiedAll(whole_.rivers, pixel)};
  }
  return found->second;
}

bool MapItem::paintLand(QPainter& painter, QPointF corner, double side) {
  MapWindow const window{corner, {MapTiles::kSide, MapTiles::kSide}, side};
  Outlines const& lines = outlinesAt(side);
  painter.fillRect(QRectF(QPointF(0, 0), window.size), sea_);
  QPainterPath land, coasts, borders, disputed, lakes, rivers;
  for (MapLine const& ring : lines.coasts) {
    addRing(ring, window, land);
    addLine(ring, window, coasts);
  }
  for (MapLine const& line : lines.borders) addLine(line, window, borders);
  for (MapLine const& line : lines.disputed) addLine(line, window, disputed);
  for (MapLine const& ring : lines.lakes) addRing(ring, window, lakes);
  // The world alone has no room for rivers.
  if (side >= kTileSide * 16)
    for (MapLine const& line : lines.rivers) addLine(line, window, rivers);
  painter.fillPath(land, land_);
  painter.fillPath(lakes, sea_);
  painter.strokePath(rivers, QPen(water_, 0.8));
  painter.strokePath(coasts, QPen(water_, 0.9));
  painter.strokePath(borders, QPen(border_, 1.1));
  QPen dashes(border_, 1.1);
  dashes.setDashPattern({3, 3});
  painter.strokePath(disputed, dashes);
  return true;
}

bool MapItem::paintAreas(QPainter& painter, QPointF corner, double side) const {
  MapWindow const window{corner, {MapTiles::kSide, MapTiles::kSide}, side};
  // Patterns run on from square to square.
  painter.setBrushOrigin(QPointF(-std::fmod(corner.x(), 8), -std::fmod(corner.y(), 8)));
  bool isAny = false;
  for (Area const& area : areas_) {
    QPainterPath inside, rim;
    if (area.isEachAnArea) inside.setFillRule(Qt::WindingFill);
    for (MapLine const& ring : area.rings) {
      addRing(ring, window, inside);
      addLine(ring, window, rim);
    }
    if (inside.isEmpty() && rim.isEmpty()) continue;
    isAny = true;
    QColor colour = area.colour;
    colour.setAlphaF(static_cast<float>(kInside));
    painter.fillPath(inside, colour);
    if (area.pattern != Qt::SolidPattern) painter.fillPath(inside, QBrush(area.colour, area.pattern));
    painter.strokePath(rim, QPen(area.colour, 1.5));
  }
  return isAny;
}

void MapItem::paintPictures(QPainter& painter, MapView const& view, MapLayerPictures const& pictures) const {
  for (MapLayerPicture const& layer : pictures) {
    painter.setOpacity(layer.opacity);
    WorldTurns const turns = turnsOf(view, layer.northWest.x, layer.southEast.x);
    for (int turn = turns.first; turn <= turns.last; ++turn) {
      MapPoint const from = pixelOf(view, {layer.northWest.x + turn, layer.northWest.y});
      MapPoint const to = pixelOf(view, {layer.southEast.x + turn, layer.southEast.y});
      QPointF const corner(std::round(from.x), std::round(from.y));
      QSizeF const size(std::round(to.x - from.x), std::round(to.y - from.y));
      // As it was made for the view, it is only moved.
      if (size.toSize() == layer.picture.size()) {
        painter.drawImage(corner, layer.picture);
      } else {
        painter.drawImage(QRectF(corner, size), layer.picture);
      }
    }
  }
  painter.setOpacity(1);
}

void MapItem::paintQuakes(QPainter& painter, MapView const& view) const {
  painter.setPen(QPen(sea_, 0.8));
  for (MapQuake const& quake : model_->onMap().quakes) {
    double const strength = std::max(0.0, quake.magnitude);
    double const radius = 2 + 0.22 * strength * strength;
    QColor colour = ages_.value(quake.ageClass).value<QColor>();
    colour.setAlpha(190);
    painter.setBrush(colour);
    visitSeen(view, quake.at, radius, [&](QPointF at) { painter.drawEllipse(at, radius, radius); });
  }
}

/// The selected one is named first, and drawn last.
void MapItem::paintPlaces(QPainter& painter, LabelRoom& room, MapView const& view) {
  constexpr double kDot = 5;
  auto const& places = model_->onMap().places;
  for (MapPlace const& place : places | std::views::reverse) {
    visitSeen(view, place.at, 3 * kDot, [&](QPointF at) {
      room.take(QRectF(at.x() - kDot, at.y() - kDot, 2 * kDot, 2 * kDot));
      std::string const text =
          place.temperature.empty() ? place.name : place.name + "\u2002" + place.temperature;
      labels_.paint(painter, room, at, kDot + 4, QString::fromStdString(text), true);
    });
  }
  for (MapPlace const& place : places) {
    QColor const level = levels_.value(QString::fromStdString(place.level)).value<QColor>();
    visitSeen(view, place.at, 3 * kDot, [&](QPointF at) {
      painter.setPen(QPen(land_, 1.5));
      painter.setBrush(level.isValid() ? level : mark_);
      painter.drawEllipse(at, kDot, kDot);
      if (place.isSelected) paintPlaceMark(painter, at, mark_);
    });
  }
}

void MapItem::paint(QPainter* painter) {
  if (model_ == nullptr || width() < 1 || height() < 1) return;
  MapView view = model_->view();
  view.width = static_cast<int>(std::ceil(width()));
  view.height = static_cast<int>(std::ceil(height()));
  double const ratio = window() == nullptr ? 1 : window()->effectiveDevicePixelRatio();
  painter->setClipRect(boundingRect());
  painter->fillRect(boundingRect(), sea_);
  ground_.paint(*painter, view, ratio);
  paintPictures(*painter, view, model_->underPictures());
  paintPictures(*painter, view, model_->pictures());
  if (model_->isOn("warnings") && !areas_.empty()) warned_.paint(*painter, view, ratio);
  painter->setRenderHint(QPainter::Antialiasing);
  if (model_->isOn("quakes")) paintQuakes(*painter, view);
  MapLayersPainter const layers(*painter, view, {ink_, land_});
  layers.paintMarks(model_->onMap().marks, [this](MapMarkKind kind) { return model_->isOn(layerOf(kind)); });
  if (model_->isOn("storms")) layers.paintTracks(model_->onMap().tracks);
  labels_.setLook({ink_, land_, letters_, ratio});
  LabelRoom room;
  if (model_->isOn("storms")) layers.nameTracks(model_->onMap().tracks, labels_, room);
  if (model_->isOn("places")) paintPlaces(*painter, room, view);
  layers.paintStations(model_->onMap().stations, labels_, room);
  if (model_->isOn("towns")) labels_.paintTowns(*painter, room, view);
}

}  // namespace nimbara
