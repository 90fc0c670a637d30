// What the window shows and what it can ask for, on the window's thread: holds the latest snapshot, turns it
// into display values, and passes commands on. Reads no file, asks no service. Owned by the program's entry.
#pragma once

#include "app/state/engine_snapshot.h"
#include "desktop/views/hazards/alert_map.h"
#include "desktop/views/hours_view.h"
#include "desktop/views/places/place_undo.h"
#include "desktop/views/sky/sky_scene.h"
#include "desktop/views/tray_view.h"
#include "desktop/window/models/air_model.h"
#include "desktop/window/models/first_model.h"
#include "desktop/window/models/hazards_model.h"
#include "desktop/window/models/map/globe_model.h"
#include "desktop/window/models/map/map_model.h"
#include "desktop/window/models/notifications_model.h"
#include "desktop/window/models/settings_model.h"
#include "desktop/window/models/sources_model.h"
#include "desktop/window/models/speech_model.h"
#include "desktop/window/models/station_model.h"
#include "desktop/window/models/switcher_model.h"
#include "desktop/window/models/view_models.h"
#include "desktop/window/models/window_actions.h"

#include <QObject>
#include <QVariantMap>
#include <functional>
#include <memory>
#include <vector>

namespace nimbara {

class DesktopModel : public QObject {
  Q_OBJECT
  Q_PROPERTY(nimbara::RecordModel* now READ now CONSTANT)
  Q_PROPERTY(nimbara::RecordModel* skyToday READ skyToday CONSTANT)
  Q_PROPERTY(nimbara::RecordModel* words READ words CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* alerts READ alerts CONSTANT)
  Q_PROPERTY(nimbara::RecordModel* nowcast READ nowcast CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* nowcastBars READ nowcastBars CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* nowcastKinds READ nowcastKinds CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* tiles READ tiles CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* hours READ hours CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* days READ days CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* daysBeyond READ daysBeyond CONSTANT)
  Q_PROPERTY(nimbara::RecordModel* outlook READ outlook CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* dayHours READ dayHours CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* places READ places CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* found READ found CONSTANT)
  Q_PROPERTY(nimbara::GlobeModel* globe READ globe CONSTANT)
  Q_PROPERTY(nimbara::MapModel* map READ map CONSTANT)
  Q_PROPERTY(nimbara::AirModel* air READ air CONSTANT)
  Q_PROPERTY(nimbara::NotificationsModel* notifications READ notifications CONSTANT)
  Q_PROPERTY(nimbara::HazardsModel* hazards READ hazards CONSTANT)
  Q_PROPERTY(QString openAlert READ openAlert WRITE setOpenAlert NOTIFY openAlertChanged)
  Q_PROPERTY(nimbara::RecordModel* warning READ warning CONSTANT)
  Q_PROPERTY(nimbara::RecordListModel* elsewhere READ elsewhere CONSTANT)
  Q_PROPERTY(nimbara::RecordModel* here READ here CONSTANT)
  Q_PROPERTY(nimbara::SettingsModel* settings READ settings CONSTANT)
  Q_PROPERTY(nimbara::SourcesModel* sources READ sources CONSTANT)
  Q_PROPERTY(nimbara::StationModel* station READ station CONSTANT)
  Q_PROPERTY(nimbara::SpeechModel* speech READ speech CONSTANT)
  Q_PROPERTY(QString problem READ problem NOTIFY shown)
  Q_PROPERTY(bool isReady READ isReady NOTIFY shown)
  Q_PROPERTY(int openDay READ openDay WRITE setOpenDay NOTIFY openDayChanged)
  Q_PROPERTY(QString openDayTitle READ openDayTitle NOTIFY openDayChanged)
  Q_PROPERTY(QString searchText READ searchText NOTIFY searched)
  Q_PROPERTY(bool isSearchingOnline READ isSearchingOnline NOTIFY searched)
  Q_PROPERTY(QString searchNote READ searchNote NOTIFY searched)
  Q_PROPERTY(bool isAnswered READ isAnswered NOTIFY searched)
  Q_PROPERTY(QString undoText READ undoText NOTIFY undoChanged)
  Q_PROPERTY(nimbara::FirstModel* first READ first CONSTANT)
  Q_PROPERTY(nimbara::SwitcherModel* switcher READ switcher CONSTANT)

 public:
  struct Setting {
    Wording wording;  ///< until a snapshot brings another
    std::string standIn;
    std::function<Instant()> now;
    std::filesystem::path program;  ///< this program's own file, beside which its modules lie
  };

  DesktopModel(Setting setting, WindowActions actions, QObject* parent = nullptr);

  void show(std::shared_ptr<EngineSnapshot const> snapshot);
  /// The matches of `text`; an answer to an older question is skipped.
  void showFound(std::string const& text, std::vector<FoundPlace> found);
  /// What the geocoding service knows of `text`.
  void showFoundOnline(std::string const& text, Result<std::vector<FoundPlace>, APIError> const& found);
  /// Ages and clocks move on.
  void tick();

  RecordModel* now() { return now_; }
  RecordModel* skyToday() { return sky_; }
  RecordModel* words() { return words_; }
  RecordListModel* alerts() { return alerts_; }
  RecordModel* nowcast() { return nowcast_; }
  RecordListModel* nowcastBars() { return nowcastBars_; }
  RecordListModel* nowcastKinds() { return nowcastKinds_; }
  RecordListModel* tiles() { return tiles_; }
  RecordListModel* hours() { return hours_; }
  RecordListModel* days() { return days_; }
  RecordListModel* daysBeyond() { return daysBeyond_; }
  RecordModel* outlook() { return outlook_; }
  RecordListModel* dayHours() { return dayHours_; }
  RecordListModel* places() { return places_; }
  RecordListModel* found() { return found_; }
  HazardsModel* hazards() { return hazards_; }
  AirModel* air() { return air_; }
  /// The identifier of the warning whose whole text is shown; empty for none.
  QString openAlert() const { return QString::fromStdString(openAlert_); }
  void setOpenAlert(QString const& id);
  RecordModel* warning() { return warning_; }
  AlertMap const& openAlertMap() const { return openAlertMap_; }
  RecordListModel* elsewhere() { return elsewhere_; }
  GlobeModel* globe() { return globe_; }
  MapModel* map() { return map_; }
  NotificationsModel* notifications() { return notifications_; }
  RecordModel* here() { return here_; }
  SettingsModel* settings() { return settings_; }
  SourcesModel* sources() { return sources_; }
  StationModel* station() { return station_; }
  SpeechModel* speech() { return speech_; }
  Meteogram const& meteogram() const { return meteogram_; }
  SkyScene const& scene() const { return scene_; }
  QString problem() const;
  /// A first snapshot has come.
  bool isReady() const { return isReady_; }
  /// Everything that was asked for has answered or failed.
  bool hasSettled() const;
  TrayView tray() const;
  bool closesToTray() const { return snapshot_->closesToTray; }
  int openDay() const { return openDay_; }
  /// "Sunday, 22 November"; empty while none is open.
  QString openDayTitle() const { return openDayTitle_; }
  /// -1 closes it.
  void setOpenDay(int day);
  QString searchText() const { return QString::fromStdString(searchText_); }
  bool isSearchingOnline() const { return isSearchingOnline_; }
  /// What became of the search online.
  QString searchNote() const { return searchNote_; }
  /// `found` belongs to what was typed last.
  bool isAnswered() const { return answeredText_ == searchText_; }
  /// The last change of the list of places, which can be taken back; empty for none.
  QString undoText() const;
  FirstModel* first() { return first_; }
  SwitcherModel* switcher() { return switcher_; }

  Q_INVOKABLE void refresh();
  /// At the days beyond the forecast.
  Q_INVOKABLE void lookAhead();
  Q_INVOKABLE void selectPlace(QString const& id);
  /// The place before (-1) or after (1) the selected one.
  Q_INVOKABLE void stepPlace(int step);
  Q_INVOKABLE void removePlace(QString const& id);
  Q_INVOKABLE void renamePlace(QString const& id, QString const& name);
  Q_INVOKABLE void movePlace(QString const& id, int position);
  Q_INVOKABLE void chooseNotifications(QString const& id, QString const& choice);
  Q_INVOKABLE void undo();
  Q_INVOKABLE void forgetUndo();
  Q_INVOKABLE void locate();
  Q_INVOKABLE void selectHere();
  Q_INVOKABLE void removeHere();
  Q_INVOKABLE void search(QString const& text);
  /// Sends the text that was searched for to the geocoding service.
  Q_INVOKABLE void searchOnline();
  /// Saves the match at `row` of `found` and selects it, or the saved place that it is.
  Q_INVOKABLE void addFound(int row);

 Q_SIGNALS:
  void shown();
  void openDayChanged();
  void openAlertChanged();
  void searched();
  void undoChanged();

 private:
  ViewContext context() const;
  ViewContext contextOfPlace() const;
  void takeWording(Wording const& wording);
  void showWeather();
  void showPlaces();
  void showSwitcher();
  /// At once, before the engine has stored it.
  void changeAhead(std::function<PlaceResult(PlaceList&)> const& apply);
  void noteChange(PlaceChange change);
  void showNowcast(ViewContext const& context);
  void showDays(WeatherData const& data, ViewContext const& context);
  void showOpenAlert(ViewContext const& context);

  Setting setting_;
  WindowActions actions_;
  std::shared_ptr<EngineSnapshot const> snapshot_ = std::make_shared<EngineSnapshot>();
  bool isReady_ = false;
  int openDay_ = -1;
  QString openDayTitle_;
  std::string searchText_;
  std::string answeredText_;
  std::string openAlert_;
  AlertMap openAlertMap_;
  std::vector<FoundPlace> foundPlaces_;
  bool isSearchingOnline_ = false;
  QString searchNote_;
  PlaceUndo undo_;
  Meteogram meteogram_;
  SkyScene scene_;
  CloudModel* clouds_;  ///< before those that show them
  GlobeModel* globe_;
  MapModel* map_;
  RecordModel* now_;
  RecordModel* sky_;
  RecordModel* words_;
  RecordListModel* alerts_;
  RecordModel* warning_;
  RecordListModel* elsewhere_;
  RecordModel* nowcast_;
  RecordListModel* nowcastBars_;
  RecordListModel* nowcastKinds_;
  RecordListModel* tiles_;
  RecordListModel* hours_;
  RecordListModel* days_;
  RecordListModel* daysBeyond_;
  RecordModel* outlook_;
  RecordListModel* dayHours_;
  RecordListModel* places_;
  RecordListModel* found_;
  HazardsModel* hazards_;
  AirModel* air_;
  NotificationsModel* notifications_;
  RecordModel* here_;
  SettingsModel* settings_;
  SourcesModel* sources_;
  StationModel* station_;
  SpeechModel* speech_;
  FirstModel* first_;
  SwitcherModel* switcher_;
};

}  // namespace nimbara
