#include "desktop/window/models/desktop_model.h"

#include "app/state/supplement_state.h"
#include "desktop/views/hazards/alert_view.h"
#include "desktop/views/hazards/elsewhere_view.h"
#include "desktop/views/notices/notifications_view.h"
#include "desktop/views/now/now_view.h"
#include "desktop/views/now/nowcast_view.h"
#include "desktop/views/outlook_view.h"
#include "desktop/views/problem_text.h"
#include "desktop/views/stations/observed_view.h"
#include "desktop/window/words.h"
#include "feeds/regions/regions.h"
#include "feeds/stations/station_shown.h"
#include "gazetteer/gazetteer.h"
#include "platform/linux/speech_output.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr WordRow kWords[] = {
    {"now", "desktop.page.now"},
    {"hours", "desktop.page.hours"},
    {"hazards", "desktop.page.hazards"},
    {"map", "desktop.page.map"},
    {"air", "desktop.page.air"},
    {"globe", "desktop.page.globe"},
    {"places", "desktop.page.places"},
    {"notifications", "desktop.page.notifications"},
    {"settings", "desktop.page.settings"},
    {"sources", "desktop.page.sources"},
    {"station", "desktop.station.title"},
    {"otherPages", "desktop.page.others"},
    {"refresh", "desktop.refresh"},
    {"loading", "desktop.loading"},
    {"details", "desktop.details"},
    {"next24", "report.next24"},
    {"brief", "desktop.brief"},
    {"speakBrief", "desktop.brief.speak"},
    {"silenceBrief", "desktop.brief.silence"},
    {"advice", "desktop.advice"},
    {"nowcast", "nowcast.title"},
    {"nowcastHint", "nowcast.hint"},
    {"sevenDays", "report.days"},
    {"meteogram", "desktop.meteogram"},
    {"meteogramHint", "desktop.meteogram.hint"},
    {"sun", "report.sun"},
    {"moon", "report.moon"},
    {"temperature", "desktop.temperature"},
    {"feelsLike", "desktop.feelsLike"},
    {"precipitation", "report.precipitation"},
    {"wind", "report.wind"},
    {"pressure", "report.pressure"},
    {"clouds", "report.clouds"},
    {"usual", "desktop.usual"},
    {"usualHint", "desktop.usual.hint"},
    {"observed", "desktop.station.observed"},
    {"alerts", "desktop.alerts"},
    {"scrollBar", "desktop.scrollBar"},
    {"keysTitle", "desktop.keys"},
    {"keyPages", "desktop.keys.pages"},
    {"keyAreas", "desktop.keys.areas"},
    {"keyStepPlace", "desktop.keys.stepPlace"},
    {"keyStep", "desktop.keys.step"},
    {"keyPress", "desktop.keys.press"},
    {"keyRead", "desktop.keys.read"},
    {"keyMap", "desktop.keys.map"},
    {"keyScroll", "desktop.keys.scroll"},
    {"keyMovePlace", "desktop.keys.movePlace"},
    {"keyRemovePlace", "desktop.keys.removePlace"},
    {"keyList", "desktop.keys.list"},
    {"keyQuit", "desktop.tray.quit"},
    {"also", "desktop.also"},
    {"close", "desktop.globe.close"},
    {"warningArea", "desktop.warning.area"},
    {"warningWhen", "desktop.warning.when"},
    {"warningIssued", "desktop.warning.issued"},
    {"warningSource", "desktop.warning.source"},
    {"warningInstruction", "desktop.warning.instruction"},
    {"warningLink", "desktop.warning.link"},
    {"warningPrevious", "desktop.warning.previous"},
    {"warningNext", "desktop.warning.next"},
    {"warningMap", "desktop.warning.map"},
    {"warningNoMap", "desktop.warning.noMap"},
    {"search", "desktop.search"},
    {"searchHint", "desktop.search.hint"},
    {"noMatch", "desktop.search.none"},
    {"noPlaces", "desktop.places.none"},
    {"noWeather", "desktop.noWeather"},
    {"noReading", "report.noCurrent"},
    {"saved", "desktop.saved"},
    {"add", "desktop.add"},
    {"remove", "desktop.remove"},
    {"notifyEverything", "places.notifications.everything"},
    {"notifySevere", "places.notifications.severe"},
    {"notifyOfficial", "places.notifications.official"},
    {"notifyNothing", "places.notifications.nothing"},
    {"move", "desktop.move"},
    {"selected", "desktop.selected"},
    {"searchOnline", "desktop.search.online"},
    {"searchOnlineHint", "desktop.search.online.hint"},
    {"searchingOnline", "desktop.search.online.asking"},
    {"here", "desktop.here"},
    {"removeHere", "desktop.here.remove"},
    {"findHere", "desktop.here.find"},
    {"findHereAgain", "desktop.here.again"},
    {"rename", "desktop.rename"},
    {"moveHint", "desktop.move.hint"},
    {"switchPlace", "desktop.switch"},
    {"switchHint", "desktop.switch.hint"},
    {"undo", "desktop.undo"},
    {"dismiss", "desktop.dismiss"},
};

}  // namespace

DesktopModel::DesktopModel(Setting setting, WindowActions actions, QObject* parent)
    : QObject(parent),
      setting_(std::move(setting)),
      actions_(std::move(actions)),
      clouds_(new CloudModel(actions_.clouds, this)),
      globe_(new GlobeModel({setting_.wording.texts, setting_.program}, actions_.globe, clouds_, this)),
      map_(new MapModel(actions_.engine, actions_.radar, {clouds_, actions_.fields}, this)),
      now_(new RecordModel(this)),
      sky_(new RecordModel(this)),
      words_(new RecordModel(this)),
      alerts_(new RecordListModel(this)),
      warning_(new RecordModel(this)),
      elsewhere_(new RecordListModel(this)),
      nowcast_(new RecordModel(this)),
      nowcastBars_(new RecordListModel(this)),
      nowcastKinds_(new RecordListModel(this)),
      tiles_(new RecordListModel(this)),
      hours_(new RecordListModel(this)),
      days_(new RecordListModel(this)),
      daysBeyond_(new RecordListModel(this)),
      outlook_(new RecordModel(this)),
      dayHours_(new RecordListModel(this)),
      places_(new RecordListModel(this)),
      found_(new RecordListModel(this)),
      hazards_(new HazardsModel(actions_.engine, this)),
      air_(new AirModel(this)),
      notifications_(new NotificationsModel(actions_.notifications, this)),
      here_(new RecordModel(this)),
      settings_(new SettingsModel(actions_.engine, this)),
      sources_(new SourcesModel(actions_.engine, this)),
      station_(new StationModel(actions_.stations, this)),
      speech_(new SpeechModel(std::make_shared<SpeechOutput>(setting_.program), this)),
      first_(new FirstModel(actions_.engine, this)),
      switcher_(new SwitcherModel(this)) {
  takeWording(setting_.wording);
  connect(settings_, &SettingsModel::opened, this, &DesktopModel::tick);
  connect(sources_, &SourcesModel::opened, this, &DesktopModel::tick);
  connect(station_, &StationModel::changed, this, &DesktopModel::tick);
  connect(station_, &StationModel::changed, map_, [this] { map_->showStations(station_->desk()); });
  connect(map_, &MapModel::stationsWanted, station_, &StationModel::lookAround);
  connect(hazards_, &HazardsModel::reordered, this, &DesktopModel::tick);
  connect(globe_, &GlobeModel::settled, this, &DesktopModel::shown);
  connect(map_, &MapModel::settled, this, &DesktopModel::shown);
  connect(first_, &FirstModel::answered, this, &DesktopModel::tick);
  connect(switcher_, &SwitcherModel::openChanged, this, &DesktopModel::showSwitcher);
  showWeather();
}

void DesktopModel::takeWording(Wording const& wording) {
  setting_.wording = wording;
  showWords(*words_, kWords, *setting_.wording.texts);
  globe_->takeTexts(setting_.wording.texts);
}

ViewContext DesktopModel::context() const {
  return {*setting_.wording.texts, setting_.wording.units, setting_.now(), setting_.wording.fallback,
          setting_.standIn};
}

/// With the selected place's own time, also before a forecast of it has come.
ViewContext DesktopModel::contextOfPlace() const {
  ViewContext view = context();
  if (snapshot_->place) {
    std::string const zone(timeZoneAt(snapshot_->place->coordinate));
    view.fallback = Calendar::forZone(zone).value_or(view.fallback);
  }
  return view;
}

QString DesktopModel::problem() const {
  ViewContext const view = context();
  std::string const& unknown = snapshot_->unknownPlace;
  return QString::fromStdString(unknown.empty() ? storeText(snapshot_->problem, view)
                                                : view.texts.format("desktop.places.unknown", unknown));
}

void DesktopModel::show(std::shared_ptr<EngineSnapshot const> snapshot) {
  bool const isOther = snapshot->place != snapshot_->place;
  snapshot_ = std::move(snapshot);
  isReady_ = true;
  if (snapshot_->wording) takeWording(*snapshot_->wording);
  if (isOther) setOpenDay(-1);
  showWeather();
}

void DesktopModel::tick() {
  showWeather();
}

void DesktopModel::showWeather() {
  ViewContext const view = context();
  WeatherState const& state = *snapshot_->weather;
  auto const& hazards = snapshot_->hazards;
  Settings const* const settings = snapshot_->settings ? &snapshot_->settings->settings : nullptr;
  now_->show(nowView(state, snapshot_->place, contextOfPlace(), settings));
  sky_->show(skyView(state, view));
  scene_ = sceneView(state, view);
  alerts_->show(alertViews(state, contextOfPlace()));
  showOpenAlert(contextOfPlace());
  elsewhere_->show(elsewhereViews(snapshot_->places, hazards->places, snapshot_->place, view));
  hazards_->show(*snapshot_, contextOfPlace());
  air_->show(*snapshot_, contextOfPlace());
  tiles_->show(tileViews(state, view));
  showNowcast(contextOfPlace());
  showPlaces();
  notifications_->show(*snapshot_, view);
  settings_->show(snapshot_->settings.get(), view);
  sources_->show(*snapshot_, view);
  station_->show(*snapshot_, view);
  speech_->show(*snapshot_);
  first_->show(*snapshot_, view);
  WeatherData const none;
  WeatherData const& data = state.weatherData ? *state.weatherData : none;
  hours_->show(hourViews(data, view));
  showDays(data, view);
  meteogram_ = meteogramOf(data, view);
  if (state.supplement) addUsual(meteogram_, data, state.supplement->climate.data, view);
  if (state.station) addObserved(meteogram_, data, state.station->history, view);
  globe_->show(snapshot_->place, state.supplement, view);
  map_->show(snapshot_, contextOfPlace());
  Q_EMIT shown();
}

void DesktopModel::showNowcast(ViewContext const& context) {
  WeatherState const& state = *snapshot_->weather;
  nowcast_->show(nowcastView(state, context));
  auto const bars = nowcastBarViews(state, context);
  nowcastBars_->show(bars);
  nowcastKinds_->show(nowcastKindViews(bars, context));
}

void DesktopModel::showDays(WeatherData const& data, ViewContext const& context) {
  OutlookState const& outlook = *snapshot_->outlook;
  auto const [days, beyond] =
      dayLists(data, nimbara::daysBeyond(outlook, snapshot_->place, data, context), context);
  days_->show(days);
  daysBeyond_->show(beyond);
  OutlookView ahead = outlookView(outlook, !beyond.empty(), context);
  ahead.confidence = confidenceLine(*snapshot_->weather, context);
  outlook_->show(ahead);
  bool const isOpen = openDay_ >= 0 && openDay_ < static_cast<int>(days.size());
  auto const index = static_cast<std::size_t>(openDay_);
  dayHours_->show(isOpen ? dayHourViews(data, index, context) : std::vector<HourView>());
  QString const title =
      isOpen ? QString::fromStdString(days[index].name + ", " + days[index].date) : QString();
  if (title == openDayTitle_) return;
  openDayTitle_ = title;
  Q_EMIT openDayChanged();
}

TrayView DesktopModel::tray() const {
  ViewContext const view = context();
  WeatherState const& state = *snapshot_->weather;
  OfficialView const official =
      officialView(snapshot_->hazards->official, snapshot_->place, state, contextOfPlace());
  TrayView tray = trayView(nowView(state, snapshot_->place, view), official.brief, view);
  bool const isMarked = snapshot_->settings && snapshot_->settings->settings.boolean("liveActivityEnabled");
  if (isMarked) tray.mark = trayMark(state.govAlerts, view.now);
  return tray;
}

void DesktopModel::lookAhead() {
  actions_.engine.lookAhead();
}

bool DesktopModel::hasSettled() const {
  if (!isReady_) return false;
  // The advisories are the last of the place's feeds that are asked.
  SupplementState const* const known = snapshot_->weather->supplement.get();
  bool const isSupplemented = !snapshot_->place || (known != nullptr && known->advisories.isSettled());
  return isSupplemented && !snapshot_->weather->isLoading && snapshot_->hazards->isSettled() &&
         !snapshot_->outlook->isAsking && globe_->hasSettled() && map_->hasSettled();
}

void DesktopModel::setOpenDay(int day) {
  if (openDay_ == day) return;
  openDay_ = day;
  showWeather();
  Q_EMIT openDayChanged();
}

void DesktopModel::setOpenAlert(QString const& id) {
  openAlert_ = id.toStdString();
  showOpenAlert(contextOfPlace());
}

void DesktopModel::showOpenAlert(ViewContext const& context) {
  OfficialCheck const& check = snapshot_->hazards->official;
  WarningView view = warningView(*snapshot_->weather, openAlert_, context, check);
  openAlert_ = view.id;
  if (!view.kind.empty()) {
    MuteOffer const offer = muteOffer(view.kind, *snapshot_->notifications, context);
    view.mute = offer.text;
    view.mutes = offer.mutes;
  }
  warning_->show(view);
  auto const alert = alertOf(*snapshot_->weather, openAlert_, check);
  openAlertMap_ = alert && snapshot_->place
                      ? alertMap(*alert, snapshot_->place->coordinate, embeddedRegions().get())
                      : AlertMap();
  Q_EMIT openAlertChanged();
}

void DesktopModel::refresh() {
  actions_.engine.refresh();
}

}  // namespace nimbara
