#include "desktop/window/models/station_model.h"

#include "desktop/views/stations/station_view.h"
#include "desktop/window/models/window_actions.h"
#include "desktop/window/words.h"

#include <QDesktopServices>
#include <QUrl>

namespace nimbara {

namespace {

constexpr WordRow kWords[] = {
    {"title", "desktop.station.title"},
    {"hint", "desktop.station.hint"},
    {"notLinked", "station.state.notLinked"},
    {"unlink", "desktop.station.unlink"},
    {"unlinkHint", "desktop.station.unlink.hint"},
    {"refresh", "desktop.refresh"},
    {"modules", "desktop.station.modules"},
    {"choose", "desktop.station.choose"},
    {"around", "desktop.station.around"},
    {"median", "desktop.station.around.median"},
    {"account", "desktop.station.account"},
    {"accountHint", "desktop.station.account.hint"},
    {"id", "desktop.station.account.id"},
    {"secret", "desktop.station.account.secret"},
    {"token", "desktop.station.account.token"},
    {"browser", "desktop.station.account.browser"},
    {"useToken", "desktop.station.account.useToken"},
    {"waiting", "desktop.station.waiting"},
    {"cancel", "desktop.station.cancel"},
    {"address", "desktop.station.address"},
    {"addressHint", "desktop.station.address.hint"},
    {"addressField", "desktop.station.address.field"},
    {"addressName", "desktop.station.address.name"},
    {"link", "desktop.station.address.link"},
    {"back", "desktop.sources.back"},
};

std::string typed(QString const& text) {
  return text.trimmed().toStdString();
}

}  // namespace

StationModel::StationModel(StationActions& stations, QObject* parent)
    : QObject(parent),
      stations_(stations),
      words_(new RecordModel(this)),
      now_(new RecordModel(this)),
      modules_(new RecordListModel(this)),
      choices_(new RecordListModel(this)),
      around_(new RecordListModel(this)) {}

void StationModel::show(EngineSnapshot const& snapshot, ViewContext const& context) {
  showWords(*words_, kWords, context.texts);
  now_->show(isOpen_ ? stationView(desk_, snapshot, context) : StationView());
  if (!isOpen_) return;
  modules_->show(stationModuleViews(desk_, snapshot, context));
  choices_->show(stationChoiceViews(desk_, context));
  around_->show(publicStationViews(desk_, context));
}

void StationModel::take(StationDesk desk) {
  bool const isAsked = !desk.consentUrl.empty() && desk.consentUrl != desk_.consentUrl;
  bool const isLinked = desk.end && desk.end->isLinked() && desk_.end != desk.end;
  desk_ = std::move(desk);
  if (isAsked) openConsent();
  Q_EMIT changed();
  if (isLinked) Q_EMIT linked();
}

void StationModel::open() {
  if (!isOpen_) {
    isOpen_ = true;
    stations_.follow(
        answerTo<StationDesk>(this, [](StationModel& model, StationDesk const& desk) { model.take(desk); }));
    Q_EMIT changed();
  }
  stations_.look();
}

void StationModel::refresh() {
  stations_.look();
}

void StationModel::linkAccount(QString const& id, QString const& secret, QString const& token) {
  stations_.linkAccount(typed(id), typed(secret), typed(token));
}

void StationModel::linkAddress(QString const& address, QString const& name) {
  stations_.linkAddress(typed(address), typed(name));
}

void StationModel::cancel() {
  stations_.cancel();
}

void StationModel::choose(QString const& station) {
  stations_.choose(station.toStdString());
}

void StationModel::lookAround() {
  if (!isOpen_) open();
  stations_.lookAround();
}

void StationModel::chooseAround(QString const& station) {
  stations_.chooseAround(station.toStdString());
}

void StationModel::unlink() {
  stations_.unlink();
}

void StationModel::openConsent() {
  if (!desk_.consentUrl.empty()) QDesktopServices::openUrl(QUrl(QString::fromStdString(desk_.consentUrl)));
}

}  // namespace nimbara
