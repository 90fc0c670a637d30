// What the map page shows and can ask for, on the window's thread: the part of the world in view, the things
// on the map, the layers and the card. Makes nothing before the page is first opened. Owned by DesktopModel.
#pragma once

#include "app/engine/engine_actions.h"
#include "app/state/engine_snapshot.h"
#include "base/web_mercator.h"
#include "desktop/views/map/map_switches.h"
#include "desktop/views/map/map_things.h"
#include "desktop/window/models/map/cloud_model.h"
#include "desktop/window/models/map/field_model.h"
#include "desktop/window/models/map/radar_model.h"
#include "desktop/window/models/map/street_model.h"
#include "desktop/window/models/view_models.h"
#include "desktop/window/painting/map/map_layer.h"

#include <QObject>
#include <QTimer>
#include <memory>
#include <optional>

namespace nimbara {

class MapModel : public QObject {
  Q_OBJECT
  Q_PROPERTY(nimbara::RecordModel* words READ words CONSTANT)
  Q_PROPERTY(nimbara::RecordModel* card READ card CONSTANT)
  Q_PROPERTY(nimbara::RecordModel* scale READ scale CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* layers READ layers CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* things READ things CONSTANT)
  Q_PROPERTY(nimbara::RadarModel* radar READ radar CONSTANT)
  Q_PROPERTY(nimbara::FieldModel* fields READ fields CONSTANT)
  Q_PROPERTY(QString description READ description NOTIFY described)
  Q_PROPERTY(QString credit READ credit NOTIFY shown)
  Q_PROPERTY(bool isShown READ isShown WRITE setShown NOTIFY isShownChanged)
  Q_PROPERTY(bool hasPlace READ hasPlace NOTIFY shown)
  Q_PROPERTY(double zoom READ zoom NOTIFY viewChanged)

 public:
  /// The view that is at rest for so long is one that pictures are fetched for.
  static constexpr int kRestMs = 150;

  /// What lies under the radar.
  struct Under {
    CloudModel* clouds;
    InUse<ModelFieldService> fields;
  };

  MapModel(EngineActions& engine, RadarSources radar, Under under, QObject* parent);
  ~MapModel() override;

  void show(std::shared_ptr<EngineSnapshot const> snapshot, ViewContext const& context);
  /// What is known of weather stations around the place.
  void showStations(StationDesk desk);

  RecordModel* words() { return words_; }
  RecordModel* card() { return card_; }
  RadarModel* radar() { return radar_; }
  FieldModel* fields() { return fields_; }
  RecordModel* scale() { return scale_; }
  RecordListModel* layers() { return layers_; }
  RecordListModel* things() { return list_; }
  /// "Map around Berlin, 3 official warnings".
  QString description() const { return description_; }
  QString credit() const { return credit_; }
  bool isShown() const { return isShown_; }
  void setShown(bool isShown);
  bool hasPlace() const { return home_.has_value(); }
  double zoom() const { return view_.zoom; }
  MapView const& view() const { return view_; }
  MapThings const& onMap() const { return things_; }
  bool isOn(std::string_view layer) const { return switches_.isOn(layer); }
  /// Only these layers, in this run, whatever the user has chosen.
  void setLayers(std::string_view list);
  /// What lies between the land and the things on it, the lowest first.
  MapLayerPictures const& pictures() const { return pictures_; }
  void setPictures(MapLayerPictures pictures);
  /// What lies under those: the user's tiles, clouds and a field of the model.
  MapLayerPictures const& underPictures() const { return under_; }
  /// Nothing is to come that a picture of the page should wait for.
  bool hasSettled() const {
    return !isShown_ || (!rest_.isActive() && radar_->hasSettled() && fields_->hasSettled() &&
                         streets_->hasSettled() && (!isOn(kCloudLayer) || clouds_->hasSettled()));
  }
  /// The zoom with which the map begins and to which it comes home.
  void setHomeZoom(double zoom);

  Q_INVOKABLE void resize(double width, double height);
  /// By pixels, to where the hand moves.
  Q_INVOKABLE void drag(double right, double down);
  /// By steps of which each doubles, about a point of the item.
  Q_INVOKABLE void zoomAbout(double steps, double x, double y);
  /// About the middle, to a half or whole step.
  Q_INVOKABLE void zoomBy(double steps);
  Q_INVOKABLE void goHome();
  Q_INVOKABLE void toggle(QString const& layer);
  /// Opens the card of what lies there; closes it where nothing does.
  Q_INVOKABLE void pick(double x, double y);
  /// The same for a row of `things`, and brings it into the middle.
  Q_INVOKABLE void pickRow(int row);
  Q_INVOKABLE void dismiss();
  /// What the card's button does.
  Q_INVOKABLE void open();

 Q_SIGNALS:
  void settled();
  /// The public stations around the selected place are to be looked for.
  void stationsWanted();
  void shown();
  void described();
  void viewChanged();
  void isShownChanged();
  void layersChanged();
  void opened();
  /// The page is to go where the thing is shown whole; `place` is to be selected first, where it is not
  /// empty.
  void wanted(QString const& kind, QString const& id, QString const& place);

 private:
  struct Picked {
    MapThingKind kind = MapThingKind::place;
    std::size_t number = 0;
  };

  static constexpr std::string_view kCloudLayer = "clouds", kStationLayer = "stations",
                                    kStreetLayer = "streets";

  void takeSettings();
  void refill();
  void look();
  void layUnder();
  std::optional<FieldKind> fieldOn() const;
  bool canAskStations() const;
  void wantStations();
  void goNear();
  void showLayers();
  void showScale();
  void describe();
  std::string middle() const;
  void showCard(std::optional<Picked> picked);
  void setView(MapView const& view);
  std::optional<Picked> thingAt(MapPoint pixel) const;
  std::optional<Coordinate> pointOf(Picked const& picked) const;
  double away(Coordinate from, MapPoint pixel) const;

  EngineActions& engine_;
  RadarModel* radar_;
  CloudModel* clouds_;
  FieldModel* fields_;
  StreetModel* streets_;
  QTimer rest_;
  RecordModel* words_;
  RecordModel* card_;
  RecordModel* scale_;
  RecordListModel* layers_;
  RecordListModel* list_;
  QString description_;
  QString credit_;
  std::shared_ptr<EngineSnapshot const> snapshot_;
  std::optional<ViewContext> context_;
  std::optional<Coordinate> home_;
  double homeZoom_ = 6;
  bool isShown_ = false;
  bool wasShown_ = false;
  bool isPlaced_ = false;
  MapView view_;
  MapThings things_;
  std::vector<MapThingView> rows_;
  MapLayerPictures pictures_, under_;
  /// The clouds as they were drawn last, for which view and veil.
  struct DrawnClouds {
    MapView view;
    qint64 veil = 0;
    QImage picture;
  } drawnClouds_;
  MapSwitches switches_;
  std::string seen_;       ///< the setting, when it was last looked at
  bool areGiven_ = false;  ///< for this run: nothing is kept
  std::string streetCredit_;
  std::optional<Picked> picked_;
  StationDesk desk_;
  /// For which place the stations were wanted last, and when.
  std::optional<std::pair<Coordinate, Instant>> stationsOf_;
};

}  // namespace nimbara
