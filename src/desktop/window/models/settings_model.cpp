#include "desktop/window/models/settings_model.h"

#include "app/settings/settings_registry.h"
#include "app/version.h"
#include "desktop/views/credits.h"
#include "desktop/views/settings_view.h"
#include "desktop/window/words.h"

#include <QDesktopServices>
#include <QUrl>

namespace nimbara {

namespace {

constexpr WordRow kWords[] = {
    {"look", "desktop.settings.group.look"},
    {"units", "desktop.settings.group.units"},
    {"advice", "desktop.settings.group.advice"},
    {"adviceHint", "desktop.settings.group.advice.why"},
    {"service", "desktop.settings.group.service"},
    {"serviceHint", "desktop.settings.group.service.why"},
    {"window", "desktop.settings.group.window"},
    {"secrets", "desktop.settings.group.keys"},
    {"secretsHint", "desktop.settings.group.keys.why"},
    {"addresses", "desktop.settings.group.addresses"},
    {"addressesHint", "desktop.settings.group.addresses.why"},
    {"folders", "desktop.settings.group.folders"},
    {"credits", "desktop.settings.group.credits"},
    {"about", "desktop.settings.about"},
    {"startAtLogin", "desktop.settings.startAtLogin"},
    {"open", "desktop.settings.open"},
    {"save", "desktop.settings.save"},
    {"forget", "desktop.settings.forget"},
    {"kept", "desktop.settings.kept"},
    {"show", "desktop.settings.show"},
    {"hide", "desktop.settings.hide"},
};

}  // namespace

SettingsModel::SettingsModel(EngineActions& engine, QObject* parent)
    : QObject(parent),
      engine_(engine),
      now_(new RecordModel(this)),
      words_(new RecordModel(this)),
      look_(new RecordListModel(this)),
      units_(new RecordListModel(this)),
      advice_(new RecordListModel(this)),
      window_(new RecordListModel(this)),
      keys_(new RecordListModel(this)),
      addresses_(new RecordListModel(this)),
      providers_(new RecordListModel(this)),
      folders_(new RecordListModel(this)),
      credits_(new RecordListModel(this)) {}

void SettingsModel::show(SettingsState const* state, ViewContext const& context) {
  SettingsState const none{Settings(settingsRegistry())};
  SettingsState const& shown = state == nullptr ? none : *state;
  showWords(*words_, kWords, context.texts);
  now_->show(settingsView(shown, context));
  if (!isOpen_) return;
  look_->show(settingRows(SettingsGroup::look, shown, context));
  units_->show(settingRows(SettingsGroup::units, shown, context));
  advice_->show(settingRows(SettingsGroup::advice, shown, context));
  window_->show(settingRows(SettingsGroup::window, shown, context));
  keys_->show(settingRows(SettingsGroup::keys, shown, context));
  addresses_->show(settingRows(SettingsGroup::addresses, shown, context));
  providers_->show(providerViews(shown, context));
  folders_->show(folderViews(shown, context));
  credits_->show(creditViews(context));
}

void SettingsModel::open() {
  if (isOpen_) return;
  isOpen_ = true;
  Q_EMIT opened();
}

QString SettingsModel::version() {
  return viewName(kVersion);
}

void SettingsModel::change(QString const& key, QString const& text) {
  engine_.changeSetting(key.toStdString(), text.toStdString());
}

void SettingsModel::setStartAtLogin(bool wanted) {
  engine_.setStartAtLogin(wanted);
}

void SettingsModel::openFolder(QString const& path) {
  QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

}  // namespace nimbara
