#include "desktop/window/models/map/map_model.h"

#include "app/settings/settings_registry.h"
#include "desktop/imagery/cloud_veil.h"
#include "desktop/window/words.h"
#include "feeds/regions/regions.h"
#include "feeds/stations/station_shown.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace nimbara {

namespace {

constexpr WordRow kWords[] = {
    {"title", "desktop.page.map"},
    {"hint", "desktop.map.hint"},
    {"legend", "desktop.globe.legend"},
    {"closer", "desktop.globe.closer"},
    {"farther", "desktop.globe.farther"},
    {"home", "desktop.map.home"},
    {"onMap", "desktop.map.onMap"},
    {"open", "desktop.map.open"},
    {"close", "desktop.globe.close"},
    {"useStation", "desktop.map.station.use"},
    {"modelTimes", "desktop.map.model.times"},
};

constexpr std::string_view kRadarLayer = "radar";

constexpr double kReach = 14;  // pixels, of a pointer to a point
constexpr double kDarkStreets = 0.5;
constexpr double kMostScale = 120;                 // pixels
constexpr std::chrono::minutes kStationsRest{10};  // they upload no oftener
constexpr std::string_view kMakers = "Natural Earth, GeoNames";

}  // namespace

MapModel::MapModel(EngineActions& engine, RadarSources radar, Under under, QObject* parent)
    : QObject(parent),
      engine_(engine),
      radar_(new RadarModel(radar, this)),
      clouds_(under.clouds),
      fields_(new FieldModel(std::move(under.fields), this)),
      streets_(new StreetModel(std::move(radar.tiles), this)),
      words_(new RecordModel(this)),
      card_(new RecordModel(this)),
      scale_(new RecordModel(this)),
      layers_(new RecordListModel(this)),
      list_(new RecordListModel(this)) {
  MapThingView none;
  none.isShown = false;
  card_->show(none);
  scale_->show(MapScale{});
  rest_.setSingleShot(true);
  rest_.setInterval(kRestMs);
  connect(&rest_, &QTimer::timeout, this, &MapModel::look);
  connect(radar_, &RadarModel::pictured, this,
          [this] { setPictures(radar_->isShown() ? radar_->pictures() : MapLayerPictures()); });
  connect(radar_, &RadarModel::settled, this, &MapModel::settled);
  connect(clouds_, &CloudModel::changed, this, &MapModel::layUnder);
  connect(fields_, &FieldModel::pictured, this, &MapModel::layUnder);
  connect(streets_, &StreetModel::pictured, this, &MapModel::layUnder);
}

MapModel::~MapModel() = default;

std::optional<FieldKind> MapModel::fieldOn() const {
  for (std::string_view const name : enumNames<FieldKind>) {
    if (isOn(name)) return enumFromName<FieldKind>(name);
  }
  return std::nullopt;
}

/// The clouds of the view at rest, and the field above them.
void MapModel::layUnder() {
  if (!wasShown_ || !context_) return;
  MapLayerPictures under = streets_->pictures();
  // Streets are drawn for paper and would dazzle.
  if (fields_->isDark()) {
    for (MapLayerPicture& picture : under) picture.opacity = kDarkStreets;
  }
  bool const isSeen = isShown_ && view_.width > 0 && view_.height > 0;
  QImage const veil = isSeen && isOn(kCloudLayer) ? clouds_->veil(context_->now) : QImage();
  if (!veil.isNull()) {
    MapPoint const end{double(view_.width), double(view_.height)};
    if (drawnClouds_.veil != veil.cacheKey() || drawnClouds_.view != view_)
      drawnClouds_ = {view_, veil.cacheKey(), cloudsOnMap(veil, view_)};
    under.push_back({drawnClouds_.picture, pointAt(view_, {0, 0}), pointAt(view_, end), 1});
  }
  for (MapLayerPicture& picture : fields_->pictures()) under.push_back(std::move(picture));
  under_ = std::move(under);
  showLayers();
  Q_EMIT layersChanged();
  if (hasSettled()) Q_EMIT settled();
}

/// Asks for the pictures of what is seen.
void MapModel::look() {
  bool const isLooked = isShown_ && isOn(kRadarLayer) && view_.width > 0 && view_.height > 0;
  radar_->look(isLooked ? std::optional(view_) : std::nullopt);
  bool const isSeen = isShown_ && view_.width > 0 && view_.height > 0;
  clouds_->want(this, isSeen && isOn(kCloudLayer));
  fields_->look(isSeen ? fieldOn() : std::nullopt, view_);
  if (context_)
    streets_->look(isSeen && isOn(kStreetLayer) ? std::optional(view_) : std::nullopt, context_->now);
  if (isSeen) wantStations();
  layUnder();
  if (hasSettled()) Q_EMIT settled();
}

void MapModel::show(std::shared_ptr<EngineSnapshot const> snapshot, ViewContext const& context) {
  snapshot_ = std::move(snapshot);
  context_.emplace(context);
  showWords(*words_, kWords, context.texts);
  auto const place = snapshot_->place;
  bool const isOther = place && (!home_ || *home_ != place->coordinate);
  home_ = place ? std::optional(place->coordinate) : std::nullopt;
  if (isOther) goHome();
  takeSettings();
  refill();
}

/// As they were left, or as another program has switched them since.
void MapModel::takeSettings() {
  if (!snapshot_->settings) return;
  Settings const& settings = snapshot_->settings->settings;
  streetCredit_ = settings.text(kMapTilesCreditSetting);
  if (streets_->setPattern(settings.text(kMapTilesSetting)) && isShown_) rest_.start();
  if (areGiven_) return;
  std::string text = settings.text(kMapLayersSetting);
  if (text == seen_) return;
  seen_ = std::move(text);
  if (seen_ == switches_.text()) return;
  switches_ = MapSwitches::of(seen_);
  if (isShown_) rest_.start();
  Q_EMIT layersChanged();
}

void MapModel::setLayers(std::string_view list) {
  switches_ = MapSwitches::only(list);
  areGiven_ = true;
}

/// Nothing is made for a page that nobody has opened.
void MapModel::refill() {
  if (!wasShown_ || !context_ || !snapshot_) return;
  auto const outlines = embeddedRegions();
  MapThings things = mapThings(*snapshot_, outlines.get(), *context_);
  if (isOn(kStationLayer)) things.stations = mapStations(desk_, *context_);
  bool const isOther = things != things_;
  if (isOther) {
    things_ = std::move(things);
    showCard(std::nullopt);
  }
  rows_ = thingViews(things_);
  std::erase_if(rows_, [this](MapThingView const& row) { return !isOn(row.kind + "s"); });
  list_->show(rows_);
  showLayers();
  showScale();
  describe();
  radar_->show(*context_);
  fields_->show(*context_);
  Texts const& texts = context_->texts;
  bool const hasStreets = streets_->canAsk() && isOn(kStreetLayer) && !streetCredit_.empty();
  std::string const makers = std::string(kMakers) + (hasStreets ? ", " + streetCredit_ : "");
  credit_ = QString::fromStdString(texts.format("desktop.map.credit", makers));
  Q_EMIT shown();
}

void MapModel::showLayers() {
  SupplementState const* const supplement = snapshot_ ? snapshot_->weather->supplement.get() : nullptr;
  std::vector<MapLayerView> views;
  for (MapSwitch const& row : kMapSwitches) {
    if (row.name == kRadarLayer && !radar_->isThere()) continue;
    if (row.name == kCloudLayer && !clouds_->canAsk()) continue;
    if (row.name == kStreetLayer && !streets_->canAsk()) continue;
    if (enumFromName<FieldKind>(row.name) && !fields_->canAsk()) continue;
    if (row.name == kStationLayer && !canAskStations()) continue;
    MapLayerView& view = views.emplace_back();
    view.name = row.name;
    view.title = context_->text(row.key);
    view.isOn = isOn(row.name);
    if (row.name == "warnings" && things_.unplaced > 0)
      view.note = context_->texts.format("desktop.map.noArea", things_.unplaced);
    if (row.name == kCloudLayer && view.isOn) view.note = clouds_->note(*context_);
    if (row.name == kStreetLayer && view.isOn) view.note = streets_->note(*context_);
    if (row.name == kStationLayer && view.isOn) view.note = mapStationsNote(desk_, *context_);
    auto const kind = enumFromName<MapLayerKind>(row.name);
    if (kind && supplement != nullptr && view.note.empty())
      view.note = layerNote(*kind, *supplement, *context_);
  }
  layers_->show(views);
}

/// They come through the user's own application.
bool MapModel::canAskStations() const {
  if (desk_.hasAccount) return true;
  StationShown const* const station = snapshot_ ? snapshot_->weather->station.get() : nullptr;
  return station != nullptr && station->reading.tokens != StationTokensIn::nowhere &&
         station->reading.state != StationState::signInAgain;
}

void MapModel::wantStations() {
  if (!isOn(kStationLayer) || !home_ || !context_ || !canAskStations()) return;
  Instant const now = context_->now;
  if (stationsOf_ && stationsOf_->first == *home_ && now - stationsOf_->second < kStationsRest) return;
  stationsOf_ = {*home_, now};
  Q_EMIT stationsWanted();
}

void MapModel::showStations(StationDesk desk) {
  desk_ = std::move(desk);
  if (!wasShown_ || !context_ || !snapshot_) return;
  if (isOn(kStationLayer)) {
    refill();
  } else {
    showLayers();
  }
}

/// So near that stations around the place lie apart.
void MapModel::goNear() {
  if (!home_ || view_.zoom >= kGreatestMapZoom) return;
  MapView view = view_;
  view.zoom = kGreatestMapZoom;
  view.centre = mercatorOf(*home_);
  setView(bounded(view));
}

/// The place that is shown while it is there, else the town nearest to the middle.
std::string MapModel::middle() const {
  constexpr double kMostKm = 300;
  Coordinate const centre = coordinateOf(view_.centre);
  MapPoint const pixel{view_.width / 2.0, view_.height / 2.0};
  if (home_ && away(*home_, pixel) < kReach && !snapshot_->place->name.empty()) return snapshot_->place->name;
  auto const nearest = nearestCity(centre);
  return nearest && nearest->km < kMostKm ? std::string(nearest->city.name) : formatCoordinate(centre);
}

void MapModel::describe() {
  if (!wasShown_ || !context_ || !snapshot_) return;
  Texts const& texts = context_->texts;
  std::string text = texts.format("desktop.map.around", middle());
  if (!things_.areas.empty()) text += ", " + texts.format("desktop.official.count", things_.areas.size());
  QString const description = QString::fromStdString(text);
  if (description == description_) return;
  description_ = description;
  Q_EMIT described();
}

void MapModel::showScale() {
  if (context_ && view_.width > 0) scale_->show(mapScale(metresPerPixel(view_), kMostScale, *context_));
}

void MapModel::setShown(bool isShown) {
  if (isShown == isShown_) return;
  isShown_ = isShown;
  if (isShown && !wasShown_) {
    wasShown_ = true;
    refill();
  }
  // Who hides the page wants nothing any more; who shows it, when it has come to rest.
  if (isShown) {
    rest_.start();
  } else {
    rest_.stop();
    look();
  }
  Q_EMIT isShownChanged();
}

void MapModel::setPictures(MapLayerPictures pictures) {
  pictures_ = std::move(pictures);
  Q_EMIT layersChanged();
}

void MapModel::setHomeZoom(double zoom) {
  homeZoom_ = std::clamp(zoom, kLeastMapZoom, kGreatestMapZoom);
  goHome();
}

void MapModel::setView(MapView const& view) {
  if (view == view_) return;
  view_ = view;
  showScale();
  describe();
  if (isShown_) rest_.start();
  Q_EMIT viewChanged();
}

void MapModel::resize(double width, double height) {
  MapView view = view_;
  view.width = static_cast<int>(width);
  view.height = static_cast<int>(height);
  setView(bounded(view));
  if (!isPlaced_ && view.width > 0 && view.height > 0) {
    isPlaced_ = true;
    goHome();
  }
}

void MapModel::drag(double right, double down) {
  setView(panned(view_, -right, -down));
}

void MapModel::zoomAbout(double steps, double x, double y) {
  setView(zoomedAbout(view_, view_.zoom + steps, {x, y}));
}

void MapModel::zoomBy(double steps) {
  double const zoom = std::round((view_.zoom + steps) * 2) / 2;
  setView(zoomedAbout(view_, zoom, {view_.width / 2.0, view_.height / 2.0}));
}

void MapModel::goHome() {
  MapView view = view_;
  view.zoom = home_ ? homeZoom_ : kLeastMapZoom;
  view.centre = home_ ? mercatorOf(*home_) : MapPoint{0.5, 0.45};
  setView(bounded(view));
}

void MapModel::toggle(QString const& layer) {
  std::string const name = layer.toStdString();
  switches_.toggle(name);
  if (!areGiven_) engine_.changeSetting(std::string(kMapLayersSetting), switches_.text());
  if (name == kStationLayer && isOn(name)) goNear();
  refill();
  look();
  Q_EMIT layersChanged();
}

double MapModel::away(Coordinate from, MapPoint pixel) const {
  MapPoint const point = mercatorOf(from);
  MapPoint const at = pointAt(view_, pixel);
  double const side = view_.worldSide();
  return std::hypot(std::remainder(point.x - at.x, 1) * side, (point.y - at.y) * side);
}

/// Points before areas, and of each what lies on top.
std::optional<MapModel::Picked> MapModel::thingAt(MapPoint pixel) const {
  std::optional<Picked> found;
  double nearest = kReach;
  auto const look = [&](MapThingKind kind, std::size_t number, Coordinate at) {
    double const gap = away(at, pixel);
    if (gap > nearest) return;
    nearest = gap;
    found = Picked{kind, number};
  };
  if (isOn("quakes")) {
    for (std::size_t i = 0; i < things_.quakes.size(); ++i)
      look(MapThingKind::quake, i, things_.quakes[i].at);
  }
  for (std::size_t i = 0; i < things_.marks.size(); ++i) {
    MapMark const& mark = things_.marks[i];
    if (isOn(layerOf(mark.kind))) look(MapThingKind::mark, i, mark.at);
  }
  if (isOn("storms")) {
    for (std::size_t i = 0; i < things_.tracks.size(); ++i)
      look(MapThingKind::storm, i, things_.tracks[i].at());
  }
  for (std::size_t i = 0; i < things_.stations.size(); ++i)
    look(MapThingKind::station, i, things_.stations[i].at);
  if (isOn("places")) {
    for (std::size_t i = 0; i < things_.places.size(); ++i)
      look(MapThingKind::place, i, things_.places[i].at);
  }
  if (found || !isOn("warnings")) return found;
  Coordinate const place = coordinateOf(pointAt(view_, pixel));
  for (std::size_t i = things_.areas.size(); i-- > 0;) {
    if (holds(things_.areas[i].outlines, place)) return Picked{MapThingKind::warning, i};
  }
  return std::nullopt;
}

void MapModel::showCard(std::optional<Picked> picked) {
  picked_ = picked;
  MapThingView view;
  if (picked) view = viewOf(things_, picked->kind, picked->number);
  view.isShown = picked.has_value();
  card_->show(view);
  Q_EMIT layersChanged();
}

void MapModel::pick(double x, double y) {
  showCard(thingAt({x, y}));
}

/// Of a thing in the list that is no area.
std::optional<Coordinate> MapModel::pointOf(Picked const& picked) const {
  switch (picked.kind) {
    case MapThingKind::storm:
      return things_.tracks[picked.number].at();
    case MapThingKind::place:
      return things_.places[picked.number].at;
    case MapThingKind::station:
      return things_.stations[picked.number].at;
    default:
      return std::nullopt;
  }
}

void MapModel::pickRow(int row) {
  if (row < 0 || row >= static_cast<int>(rows_.size())) return;
  MapThingView const& view = rows_[static_cast<std::size_t>(row)];
  Picked const picked{enumFromName<MapThingKind>(view.kind).value_or(MapThingKind::place),
                      static_cast<std::size_t>(view.number)};
  if (auto const at = pointOf(picked)) {
    MapView moved = view_;
    moved.centre = mercatorOf(*at);
    setView(bounded(moved));
  }
  showCard(picked);
}

void MapModel::dismiss() {
  showCard(std::nullopt);
}

void MapModel::open() {
  if (!picked_) return;
  auto const [kind, number] = *picked_;
  QString const name = viewName(enumName(kind));
  if (kind == MapThingKind::warning) {
    MapArea const& area = things_.areas[number];
    Q_EMIT wanted(name, QString::fromStdString(area.warning), QString::fromStdString(area.place));
  } else if (kind == MapThingKind::station) {
    Q_EMIT wanted(name, QString::fromStdString(things_.stations[number].id), {});
  } else if (kind == MapThingKind::place) {
    Q_EMIT wanted(name, {}, QString::fromStdString(things_.places[number].id));
  } else {
    Q_EMIT wanted(name, {}, {});
  }
}

}  // namespace nimbara
