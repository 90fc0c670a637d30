#include "desktop/window/models/map/globe_model.h"

#include "desktop/imagery/cloud_veil.h"
#include "desktop/scene/scene_module.h"
#include "desktop/window/globe_texture.h"
#include "desktop/window/words.h"
#include "platform/linux/module_loader.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

constexpr WordRow kWords[] = {
    {"title", "desktop.page.globe"},    {"legend", "desktop.globe.legend"},
    {"search", "desktop.globe.search"}, {"noMatch", "desktop.globe.search.none"},
    {"hint", "desktop.globe.hint"},     {"home", "desktop.globe.home"},
    {"closer", "desktop.globe.closer"}, {"farther", "desktop.globe.farther"},
    {"close", "desktop.globe.close"},
};

constexpr int kSurfaceWidth = 3072;
constexpr std::chrono::milliseconds kTick{250};
constexpr std::size_t kMostMatches = 60;
constexpr std::size_t kCrowd = 500;  // a group so large is drawn in smaller points
constexpr float kPointPixels = 2.2F, kCrowdPixels = 1.15F;
constexpr std::array<float, 3> kOrbitColour{1.0F, 0.93F, 0.66F};

QVector3D vectorOf(Vector3 const& v) {
  auto const p = scenePoint(v);
  return {p[0], p[1], p[2]};
}

}  // namespace

void GlobeBytes::set(QByteArray bytes, QSize size) {
  bytes_ = std::move(bytes);
  size_ = size;
  Q_EMIT changed();
}

void GlobeBytes::set(std::vector<InstanceRow> const& rows) {
  auto const size = std::ssize(rows) * qsizetype{sizeof(InstanceRow)};
  if (size == 0 && bytes_.isEmpty()) return;
  set(QByteArray(reinterpret_cast<char const*>(rows.data()), size));
}

GlobeModel::GlobeModel(Setting setting, GlobeActions* actions, CloudModel* clouds, QObject* parent)
    : QObject(parent),
      setting_(std::move(setting)),
      actions_(actions),
      clouds_(clouds),
      words_(new RecordModel(this)),
      card_(new RecordModel(this)),
      cardRows_(new RecordListModel(this)),
      legend_(new RecordListModel(this)),
      labels_(new RecordListModel(this)),
      matches_(new RecordListModel(this)) {
  for (std::size_t i = 0; i < SatelliteCatalog::groups().size(); ++i) {
    groups_.push_back(new GlobeBytes(this));
  }
  showWords(*words_, kWords, *setting_.texts);
  card_->show(SatelliteCard{});
  timer_.setInterval(kTick);
  connect(&timer_, &QTimer::timeout, this, &GlobeModel::tick);
  connect(clouds_, &CloudModel::changed, this, &GlobeModel::showAll);
}

GlobeModel::~GlobeModel() = default;

void GlobeModel::takeTexts(std::shared_ptr<Texts const> texts) {
  if (texts == setting_.texts) return;
  context_.reset();  // it refers to the texts that were
  setting_.texts = std::move(texts);
  showWords(*words_, kWords, *setting_.texts);
  Q_EMIT cameraChanged();  // what the picture is called
}

void GlobeModel::show(std::optional<Place> const& place, std::shared_ptr<SupplementState const> supplement,
                      ViewContext const& context) {
  context_.emplace(context);
  bool const isOther = place != place_;
  place_ = place;
  supplement_ = std::move(supplement);
  if (isOther) goHome();
  showAll();
}

void GlobeModel::show(std::shared_ptr<GlobeState const> state) {
  bool const isOther = state->catalogue != state_->catalogue;
  state_ = std::move(state);
  if (isOther) search(QString::fromStdString(searchText_));
  showAll();
}

/// Nothing is made for a page that nobody has opened.
void GlobeModel::showAll() {
  if (!isShown_ || !context_) return;
  ViewContext context = *context_;
  context.now = std::max(context.now, state_->now);
  auto rows = legendRows(*state_, context);
  if (clouds_->canAsk()) rows.insert(rows.begin(), cloudRow(*state_, clouds_->note(context), context));
  rows.push_back(stormRow(*state_, supplement_.get(), context));
  rows.push_back(radarRow(*state_, context));
  legend_->show(rows);
  makeStrokes();
  wantClouds();
  composeSurface();
  card_->show(satelliteCard(*state_, context));
  cardRows_->show(satelliteCardRows(*state_, context));
  showTables();
  showLabels();
  Q_EMIT shown();
  if (hasSettled()) Q_EMIT settled();
}

void GlobeModel::makeStrokes() {
  tracks_.clear();
  if (supplement_ && !state_->hidden.contains(kStormRow)) tracks_ = mapTracks(*supplement_, *context_);
  auto strokes = stormStrokes(tracks_);
  if (!state_->hidden.contains(kRadarRow)) {
    static std::vector<GlobeStroke> const kExtent = radarExtent();
    strokes.insert(strokes.begin(), kExtent.begin(), kExtent.end());
  }
  if (strokes == strokes_) return;
  strokes_ = std::move(strokes);
  ground_.set(strokeRows(strokes_));
}

void GlobeModel::showTables() {
  GlobeCatalogue const& catalogue = *state_->catalogue;
  // A small globe would vanish behind large points.
  auto const share = static_cast<float>(std::clamp(std::sqrt(camera_.earthRadius() / 270), 0.5, 1.6));
  bool const isPlaced = state_->frame->positions.size() == 3 * catalogue.names.size();
  for (std::size_t i = 0; i < groups_.size(); ++i) {
    bool const isThere = isPlaced && i < catalogue.groups.size();
    auto const* const known = isThere ? SatelliteCatalog::group(catalogue.groups[i].groupID) : nullptr;
    if (known == nullptr || state_->hidden.contains(legendName(*known))) {
      groups_[i]->set(std::vector<InstanceRow>());
      continue;
    }
    auto const& indices = catalogue.groups[i].indices;
    auto rows = satelliteRows(state_->frame->positions, state_->frame->colorData, indices,
                              share * (indices.size() > kCrowd ? kCrowdPixels : kPointPixels));
    groups_[i]->set(rows);
  }
  std::vector<InstanceRow> orbit;
  if (state_->chosen) orbit = orbitRows(state_->chosen->orbit, kOrbitColour);
  orbit_.set(orbit);
  bool const areShaking = !state_->hidden.contains(kEarthquakeRow);
  earthquakes_.set(areShaking ? earthquakeRows(*state_->earthquakes, state_->now)
                              : std::vector<InstanceRow>());
  sunGlow_.set(sunRows(state_->sun));
}

void GlobeModel::showLabels() {
  auto labels = globeLabels(*state_, place_, camera_);
  auto storms = stormLabels(tracks_, camera_);
  std::ranges::move(storms, std::back_inserter(labels));
  labels_->show(labels);
}

QString GlobeModel::status() const {
  return context_ ? QString::fromStdString(globeStatus(*state_, *context_)) : QString();
}

QString GlobeModel::description() const {
  std::string const middle = formatCoordinate({camera_.latitude, camera_.longitude});
  return QString::fromStdString(setting_.texts->format("desktop.globe.description", middle));
}

QVector3D GlobeModel::sun() const {
  return vectorOf(state_->sun) / kSceneRadius;
}

QVector3D GlobeModel::eye() const {
  return vectorOf(camera_.eye());
}

QVector3D GlobeModel::eyeTurn() const {
  return {static_cast<float>(-camera_.latitude), static_cast<float>(camera_.longitude), 0};
}

bool GlobeModel::hasSettled() const {
  if (!isShown_) return true;
  bool const isWaiting = !state_->isLoading && state_->catalogue->names.empty() && actions_ != nullptr &&
                         std::ranges::all_of(state_->groups, [](GlobeGroup const& group) {
                           return group.state == GlobeGroup::State::waiting;
                         });
  bool const isAsking = actions_ != nullptr && !state_->hasEarthquakes;
  bool const areStormsComing = actions_ != nullptr && place_ && !state_->hidden.contains(kStormRow) &&
                               !(supplement_ && supplement_->activeStorms.isSettled());
  return !surfaceImage_.isNull() && !state_->isLoading && !isWaiting && !isAsking && !areStormsComing &&
         (state_->hidden.contains(kCloudRow) || clouds_->hasSettled()) && !isComposing_;
}

void GlobeModel::setShown(bool isShown) {
  if (isShown == isShown_) return;
  isShown_ = isShown;
  if (actions_ != nullptr) actions_->setShown(isShown);
  wantClouds();
  if (isShown) {
    paintOnce();
    timer_.start();
    tick();
  } else {
    timer_.stop();
  }
  Q_EMIT isShownChanged();
}

/// A tenth of a second or more, so not on the window's thread.
void GlobeModel::paintOnce() {
  if (painter_.joinable()) return;
  stars_.set(starRows());
  painter_ = std::jthread([this] {
    QImage earth = paintEarth(kSurfaceWidth);
    QMetaObject::invokeMethod(
        this,
        [this, earth = std::move(earth)] {
          earth_ = earth;
          setSurface(earth_);
          showAll();
        },
        Qt::QueuedConnection);
  });
}

void GlobeModel::wantClouds() {
  clouds_->want(this, isShown_ && !state_->hidden.contains(kCloudRow));
}

/// The clouds that hold now, where they are not those on the surface. Some tenths of a second, so not on the
/// window's thread.
void GlobeModel::composeSurface() {
  if (earth_.isNull() || isComposing_ || !context_) return;
  QImage veil;
  if (!state_->hidden.contains(kCloudRow)) veil = clouds_->veil(std::max(context_->now, state_->now));
  qint64 const wanted = veil.isNull() ? 0 : veil.cacheKey();
  if (wanted == shownVeil_) return;
  shownVeil_ = wanted;
  if (veil.isNull()) return setSurface(earth_);
  isComposing_ = true;
  composer_ = std::jthread([this, earth = earth_, veil] {
    QImage made = underClouds(earth, veil);
    QMetaObject::invokeMethod(
        this,
        [this, made = std::move(made)] {
          isComposing_ = false;
          setSurface(made);
          showAll();
        },
        Qt::QueuedConnection);
  });
}

void GlobeModel::setSurface(QImage picture) {
  before_ = std::exchange(surfaceImage_, std::move(picture));
  surface_.set(QByteArray::fromRawData(reinterpret_cast<char const*>(surfaceImage_.constBits()),
                                       surfaceImage_.sizeInBytes()),
               surfaceImage_.size());
  ++surfaceNumber_;
  Q_EMIT surfaced();
}

void GlobeModel::tick() {
  std::shared_ptr<GlobeState const> state = actions_ != nullptr ? actions_->tick() : nullptr;
  if (state) {
    show(std::move(state));
  } else {
    showAll();
  }
}

QObject* GlobeModel::group(int index) {
  return index < 0 || index >= groupCount() ? nullptr : groups_[static_cast<std::size_t>(index)];
}

bool GlobeModel::loadScene() {
  if (isSceneLoaded_) return true;
  auto const* const module =
      static_cast<SceneModule const*>(loadModule(setting_.program, kSceneModuleFile, kSceneModuleSymbol));
  if (module == nullptr) return false;
  module->registerTypes();
  isSceneLoaded_ = true;
  return true;
}

void GlobeModel::setInSpace(bool isInSpace) {
  if (isInSpace_ == isInSpace) return;
  isInSpace_ = isInSpace;
  Q_EMIT drawingChanged();
}

void GlobeModel::setCamera(GlobeCamera const& camera) {
  if (camera == camera_) return;
  camera_ = camera;
  showLabels();
  Q_EMIT cameraChanged();
}

void GlobeModel::resize(double width, double height) {
  GlobeCamera camera = camera_;
  camera.width = std::max(1.0, width);
  camera.height = std::max(1.0, height);
  setCamera(camera);
}

void GlobeModel::drag(double right, double down) {
  setCamera(camera_.dragged(right, down));
}

void GlobeModel::turn(double degreesNorth, double degreesEast) {
  double const narrower = std::max(1.0, camera_.zoom);
  setCamera(camera_.turned(degreesNorth / narrower, degreesEast / narrower));
}

void GlobeModel::zoom(double factor) {
  setCamera(camera_.zoomed(factor));
}

void GlobeModel::goHome() {
  if (!place_) return;
  GlobeCamera camera = camera_;
  camera.latitude = std::clamp(place_->coordinate.latitude, -60.0, 60.0);
  camera.longitude = place_->coordinate.longitude;
  camera.zoom = 1;
  setCamera(camera);
}

void GlobeModel::choose(std::optional<std::uint32_t> entry) {
  if (actions_ != nullptr) actions_->choose(entry);
  tick();
}

void GlobeModel::pick(double x, double y) {
  choose(satelliteAt(*state_, camera_, {x, y}));
}

void GlobeModel::chooseMatch(int row) {
  if (row < 0 || row >= static_cast<int>(found_.size())) return;
  auto const entry = static_cast<std::uint32_t>(found_[static_cast<std::size_t>(row)].entry);
  choose(entry);
  if (!state_->chosen) return;
  SatelliteInfo const& info = state_->chosen->info;
  GlobeCamera camera = camera_;
  camera.latitude = std::clamp(info.latitude, -GlobeCamera::kHighestLatitude, GlobeCamera::kHighestLatitude);
  camera.longitude = info.longitude;
  setCamera(camera);
}

void GlobeModel::dismiss() {
  choose(std::nullopt);
}

void GlobeModel::toggle(QString const& row) {
  std::string const name = row.toStdString();
  if (actions_ != nullptr) actions_->setHidden(name, !state_->hidden.contains(name));
  tick();
}

void GlobeModel::search(QString const& text) {
  searchText_ = text.toStdString();
  if (!context_) return;
  found_ = satelliteMatches(*state_, searchText_, kMostMatches, *context_);
  matches_->show(found_);
}

}  // namespace nimbara
