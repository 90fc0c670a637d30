// The radar of the map page, on the window's thread: the frame that is shown, the row of times and its
// player, the legend. Fetching and drawing happen in a layer of its own thread, which is made when the page
// is first looked at. Owned by MapModel.
#pragma once

#include "base/web_mercator.h"
#include "desktop/imagery/radar/radar_sources.h"
#include "desktop/views/map/radar_view.h"
#include "desktop/window/models/view_models.h"
#include "desktop/window/painting/map/map_layer.h"

#include <QObject>
#include <QTimer>
#include <memory>
#include <optional>

namespace nimbara {

class RadarLayer;

class RadarModel : public QObject {
  Q_OBJECT
  Q_PROPERTY(nimbara::RecordModel* words READ words CONSTANT)
  Q_PROPERTY(nimbara::RecordModel* view READ view CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* steps READ steps CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* colours READ colours CONSTANT)
  Q_PROPERTY(bool isShown READ isShown NOTIFY isShownChanged)
  Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY isPlayingChanged)

 public:
  /// For ten minutes of the radar, and for the last frame.
  static constexpr int kFrameMs = 500, kLastFrameMs = 1500;
  /// Before it is said that pictures are being loaded; most come sooner.
  static constexpr int kPatienceMs = 600;

  RadarModel(RadarSources sources, QObject* parent);
  ~RadarModel() override;

  /// A new language or moment.
  void show(ViewContext const& context);
  /// What the map shows and nobody moves any more; nothing while nobody looks.
  void look(std::optional<MapView> const& view);
  /// As the layer found it.
  void take(RadarProgress progress);

  RecordModel* words() { return words_; }
  RecordModel* view() { return view_; }
  RecordListModel* steps() { return steps_; }
  RecordListModel* colours() { return colours_; }
  /// There is somebody to ask.
  bool isThere() const { return static_cast<bool>(sources_); }
  /// There is somebody to ask, and it is looked at.
  bool isShown() const { return isShown_; }
  bool isPlaying() const { return play_.isActive(); }
  /// Nothing is to come that a picture of the page should wait for.
  bool hasSettled() const;
  /// None or one.
  MapLayerPictures const& pictures() const { return pictures_; }

  Q_INVOKABLE void togglePlay();
  Q_INVOKABLE void step(int by);
  Q_INVOKABLE void choose(int frame);

 Q_SIGNALS:
  void isShownChanged();
  void isPlayingChanged();
  void pictured();
  void settled();

 private:
  void want();
  void stop();
  void playOn();
  void chooseFrame(std::size_t frame);
  void showFrame();
  void showAll();

  RadarSources sources_;
  RecordModel* words_;
  RecordModel* view_;
  RecordListModel* steps_;
  RecordListModel* colours_;
  std::optional<ViewContext> context_;
  std::optional<MapView> looked_;
  RadarProgress progress_;
  std::optional<Instant> chosen_;  ///< none: always the newest
  std::optional<Instant> shown_;   ///< time of the picture
  bool wantsAll_ = false;
  bool isShown_ = false;
  bool isWaiting_ = false;  ///< for the first word of the view that is looked at
  QTimer play_, patience_;
  MapLayerPictures pictures_;
  std::unique_ptr<RadarLayer> layer_;  ///< ends first
};

}  // namespace nimbara
