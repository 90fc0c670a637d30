// The page of settings as display values: rows of settings with what may be chosen, the providers' states,
// folders, credits. Pure functions of the settings of one moment.
#pragma once

#include "app/state/settings_state.h"
#include "desktop/views/view_context.h"
#include "desktop/views/view_fields.h"

#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

struct SettingRowView {
  std::string key;
  std::string kind;  ///< "choice", "switch", "text" or "secret"
  std::string title;
  std::string explanation;
  std::string value;                ///< of a text; a secret's is never told
  std::vector<std::string> values;  ///< of a choice
  std::vector<std::string> labels;  ///< of the values, for people
  double chosen = -1;               ///< the index of the choice that holds
  bool isOn = false;
  bool isSet = false;  ///< the user has chosen it
  std::string problem;

  bool operator==(SettingRowView const&) const = default;
};

template <>
inline constexpr auto viewFields<SettingRowView> = FieldList{
    viewField("key", &SettingRowView::key),         viewField("kind", &SettingRowView::kind),
    viewField("title", &SettingRowView::title),     viewField("explanation", &SettingRowView::explanation),
    viewField("value", &SettingRowView::value),     viewField("values", &SettingRowView::values),
    viewField("labels", &SettingRowView::labels),   viewField("chosen", &SettingRowView::chosen),
    viewField("isOn", &SettingRowView::isOn),       viewField("isSet", &SettingRowView::isSet),
    viewField("problem", &SettingRowView::problem),
};

std::vector<SettingRowView> settingRows(SettingsGroup group, SettingsState const& state,
                                        ViewContext const& context);

/// A forecast service that can be asked first.
struct ProviderView {
  std::string value;
  std::string name;
  std::string state;  ///< when it answered last, what failed, until when it is paused
  bool isChosen = false;
  bool isTroubled = false;
  std::string sentence;

  bool operator==(ProviderView const&) const = default;
};

template <>
inline constexpr auto viewFields<ProviderView> = FieldList{
    viewField("value", &ProviderView::value),           viewField("name", &ProviderView::name),
    viewField("report", &ProviderView::state),          viewField("isChosen", &ProviderView::isChosen),
    viewField("isTroubled", &ProviderView::isTroubled), viewField("sentence", &ProviderView::sentence),
};

std::vector<ProviderView> providerViews(SettingsState const& state, ViewContext const& context);

/// What the window does by the settings, and what the page says beside its rows.
struct SettingsView {
  std::string theme = "system";
  double textSize = 1;  ///< 1 for the desktop's own
  bool isCalm = false;  ///< without movements
  bool isContrasting = false;
  bool startsAtLogin = false;
  bool canStartAtLogin = true;
  std::string startNote;
  std::string notice;  ///< what cannot be read or written, and stored values that cannot be used

  bool operator==(SettingsView const&) const = default;
};

template <>
inline constexpr auto viewFields<SettingsView> = FieldList{
    viewField("theme", &SettingsView::theme),
    viewField("textSize", &SettingsView::textSize),
    viewField("isCalm", &SettingsView::isCalm),
    viewField("isContrasting", &SettingsView::isContrasting),
    viewField("startsAtLogin", &SettingsView::startsAtLogin),
    viewField("canStartAtLogin", &SettingsView::canStartAtLogin),
    viewField("startNote", &SettingsView::startNote),
    viewField("notice", &SettingsView::notice),
};

SettingsView settingsView(SettingsState const& state, ViewContext const& context);

struct FolderView {
  std::string purpose;
  std::string path;
  std::string sentence;

  bool operator==(FolderView const&) const = default;
};

template <>
inline constexpr auto viewFields<FolderView> =
    FieldList{viewField("purpose", &FolderView::purpose), viewField("path", &FolderView::path),
              viewField("sentence", &FolderView::sentence)};

std::vector<FolderView> folderViews(SettingsState const& state, ViewContext const& context);

}  // namespace nimbara
