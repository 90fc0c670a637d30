// What the globe page shows and can ask for, on the window's thread: holds the camera and the latest state of
// the globe's core part, and hands out what either renderer draws. Ticks while the page is shown. Owned by
// DesktopModel.
#pragma once

#include "app/engine/engine_actions.h"
#include "app/places/place.h"
#include "desktop/views/globe/globe_layers.h"
#include "desktop/views/globe/globe_view.h"
#include "desktop/window/models/map/cloud_model.h"
#include "desktop/window/models/view_models.h"

#include <QByteArray>
#include <QImage>
#include <QObject>
#include <QTimer>
#include <QVariantList>
#include <QVector3D>
#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <thread>

namespace nimbara {

/// Bytes that the scene's module draws from. It reads them by the names of their properties, as it is built
/// apart from this.
class GlobeBytes : public QObject {
  Q_OBJECT
  Q_PROPERTY(QByteArray bytes READ bytes NOTIFY changed)
  Q_PROPERTY(QSize size READ size NOTIFY changed)

 public:
  using QObject::QObject;

  QByteArray const& bytes() const { return bytes_; }
  /// Of a picture; empty for tables.
  QSize size() const { return size_; }
  void set(QByteArray bytes, QSize size = {});
  void set(std::vector<InstanceRow> const& rows);

 Q_SIGNALS:
  void changed();

 private:
  QByteArray bytes_;
  QSize size_;
};

class GlobeModel : public QObject {
  Q_OBJECT
  Q_PROPERTY(nimbara::RecordModel* words READ words CONSTANT)
  Q_PROPERTY(nimbara::RecordModel* card READ card CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* cardRows READ cardRows CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* legend READ legend CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* labels READ labels CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* matches READ matches CONSTANT)
  Q_PROPERTY(QString status READ status NOTIFY shown)
  Q_PROPERTY(QString description READ description NOTIFY cameraChanged)
  Q_PROPERTY(QVector3D sun READ sun NOTIFY shown)
  Q_PROPERTY(QVector3D eye READ eye NOTIFY cameraChanged)
  Q_PROPERTY(QVector3D eyeTurn READ eyeTurn NOTIFY cameraChanged)
  Q_PROPERTY(QObject* surface READ surface CONSTANT)
  Q_PROPERTY(QObject* orbit READ orbit CONSTANT)
  Q_PROPERTY(QObject* earthquakes READ earthquakes CONSTANT)
  Q_PROPERTY(QObject* ground READ ground CONSTANT)
  Q_PROPERTY(QObject* stars READ stars CONSTANT)
  Q_PROPERTY(QObject* sunGlow READ sunGlow CONSTANT)
  Q_PROPERTY(int groupCount READ groupCount CONSTANT)
  Q_PROPERTY(QVariantList surfaces READ surfaces NOTIFY surfaced)
  Q_PROPERTY(bool hasPlace READ hasPlace NOTIFY shown)
  Q_PROPERTY(bool isInSpace READ isInSpace NOTIFY drawingChanged)
  Q_PROPERTY(bool isShown READ isShown WRITE setShown NOTIFY isShownChanged)

 public:
  struct Setting {
    std::shared_ptr<Texts const> texts;
    std::filesystem::path program;  ///< beside which the scene's module lies
  };

  GlobeModel(Setting setting, GlobeActions* actions, CloudModel* clouds, QObject* parent);
  ~GlobeModel() override;

  /// Another language, before it is shown.
  void takeTexts(std::shared_ptr<Texts const> texts);
  /// A new place, other storms, units or moment; the state holds. `supplement` may be null.
  void show(std::optional<Place> const& place, std::shared_ptr<SupplementState const> supplement,
            ViewContext const& context);
  void show(std::shared_ptr<GlobeState const> state);

  RecordModel* words() { return words_; }
  RecordModel* card() { return card_; }
  RecordListModel* cardRows() { return cardRows_; }
  RecordListModel* legend() { return legend_; }
  RecordListModel* labels() { return labels_; }
  RecordListModel* matches() { return matches_; }
  QString status() const;
  QString description() const;
  QVector3D sun() const;
  QVector3D eye() const;
  QVector3D eyeTurn() const;
  QObject* surface() { return &surface_; }
  QObject* orbit() { return &orbit_; }
  QObject* earthquakes() { return &earthquakes_; }
  /// Storms and the edges of the radars.
  QObject* ground() { return &ground_; }
  QObject* stars() { return &stars_; }
  QObject* sunGlow() { return &sunGlow_; }
  /// Drawn in three dimensions, where a graphics card does it.
  bool isInSpace() const { return isInSpace_; }
  void setInSpace(bool isInSpace);
  int groupCount() const { return static_cast<int>(groups_.size()); }
  /// None, or one number that changes with the surface's picture.
  QVariantList surfaces() const {
    return surfaceNumber_ == 0 ? QVariantList() : QVariantList{surfaceNumber_};
  }
  bool hasPlace() const { return place_.has_value(); }
  bool isShown() const { return isShown_; }
  void setShown(bool isShown);

  /// Asks the core for what it has now; all that it publishes comes this way.
  void refresh() { tick(); }

  GlobeCamera const& camera() const { return camera_; }
  GlobeState const& state() const { return *state_; }
  std::vector<GlobeStroke> const& strokes() const { return strokes_; }
  /// With its clouds.
  QImage const& earth() const { return surfaceImage_; }
  /// Nothing is to come that a picture of the page should wait for.
  bool hasSettled() const;

  /// The points of one group.
  Q_INVOKABLE QObject* group(int index);
  /// Makes the scene's types known; false where the renderer in three dimensions is not installed.
  Q_INVOKABLE bool loadScene();
  Q_INVOKABLE void resize(double width, double height);
  Q_INVOKABLE void drag(double right, double down);
  /// Less where the picture is closer.
  Q_INVOKABLE void turn(double degreesNorth, double degreesEast);
  Q_INVOKABLE void zoom(double factor);
  /// To the selected place.
  Q_INVOKABLE void goHome();
  /// Chooses the satellite at a place in the picture, or none.
  Q_INVOKABLE void pick(double x, double y);
  /// Chooses the satellite of a row of `matches` and turns to it.
  Q_INVOKABLE void chooseMatch(int row);
  Q_INVOKABLE void dismiss();
  Q_INVOKABLE void toggle(QString const& row);
  Q_INVOKABLE void search(QString const& text);

 Q_SIGNALS:
  void drawingChanged();
  void shown();
  void surfaced();
  void cameraChanged();
  void isShownChanged();
  void settled();

 private:
  void tick();
  void choose(std::optional<std::uint32_t> entry);
  void setCamera(GlobeCamera const& camera);
  void paintOnce();
  void wantClouds();
  void composeSurface();
  void setSurface(QImage picture);
  void showAll();
  void showTables();
  void makeStrokes();
  void showLabels();

  Setting setting_;
  GlobeActions* actions_;  ///< may be null
  CloudModel* clouds_;
  std::optional<ViewContext> context_;
  std::shared_ptr<GlobeState const> state_ = std::make_shared<GlobeState>();
  std::optional<Place> place_;
  std::shared_ptr<SupplementState const> supplement_;
  std::vector<MapTrack> tracks_;  ///< none while storms are hidden
  std::vector<GlobeStroke> strokes_;
  GlobeCamera camera_;
  bool isShown_ = false;
  bool isSceneLoaded_ = false;
  bool isInSpace_ = false;
  std::string searchText_;
  std::vector<SatelliteMatch> found_;
  QImage earth_;          ///< without clouds
  QImage surfaceImage_;   ///< as it is drawn
  QImage before_;         ///< the renderer may still hold on to its bytes
  qint64 shownVeil_ = 0;  ///< 0 for none
  bool isComposing_ = false;
  int surfaceNumber_ = 0;
  QTimer timer_;
  GlobeBytes surface_, orbit_, earthquakes_, ground_, stars_, sunGlow_;
  std::vector<GlobeBytes*> groups_;  ///< children, which the pages' language leaves to us
  RecordModel* words_;
  RecordModel* card_;
  RecordListModel* cardRows_;
  RecordListModel* legend_;
  RecordListModel* labels_;
  RecordListModel* matches_;
  std::jthread painter_;   ///< paints the surface once
  std::jthread composer_;  ///< lays clouds on it
};

}  // namespace nimbara
