#include "desktop/views/settings_view.h"

#include "app/settings/settings_registry.h"
#include "app/settings/unit_settings.h"
#include "app/words/hazards/hazard_text.h"
#include "base/words/time_words.h"
#include "desktop/views/problem_text.h"
#include "platform/service.h"
#include "providers/provider_manager.h"

#include <algorithm>

namespace nimbara {

namespace {

bool isAutomatic(std::string_view value) {
  return value == "automatic";
}

template <class Unit>
std::string unitSymbol(std::string_view name) {
  auto const unit = enumFromName<Unit>(name);
  return unit ? std::string(symbol(*unit)) : std::string(name);
}

/// "Automatic (°C)": what holds while nothing is chosen.
std::string automaticLabel(std::string const& what, ViewContext const& context) {
  return context.texts.format("desktop.settings.automaticAs", what);
}

/// Of the units in use, which are those of the region where nothing was chosen.
template <class Unit>
std::string unitLabel(std::string_view value, Unit inUse, bool isChosen, ViewContext const& context) {
  if (!isAutomatic(value)) return unitSymbol<Unit>(value);
  return isChosen ? automaticLabel(std::string(symbol(inUse)), context)
                  : context.text("desktop.settings.automatic");
}

std::string languageLabel(std::string_view value, ViewContext const& context) {
  if (isAutomatic(value)) return context.text("desktop.settings.automatic");
  auto const& languages = Texts::languages();
  auto const found = std::ranges::find(languages, value, &Texts::Language::code);
  return found == languages.end() ? std::string(value) : found->name;
}

/// An afternoon hour shows which clock the locale's is.
std::string clockLabel(std::string_view value, bool isChosen, ViewContext const& context) {
  if (!isAutomatic(value)) return context.text("desktop.settings.clock." + std::string(value));
  constexpr std::chrono::hours kAfternoon{16};
  std::string const sample = TimeWords(context.texts, Calendar::utc()).clock(Instant(kAfternoon));
  return isChosen ? automaticLabel(sample, context) : context.text("desktop.settings.automatic");
}

std::string optionLabel(std::string_view key, std::string_view value, bool isChosen,
                        ViewContext const& context) {
  Units const& units = context.units;
  if (key == kAdvisorySourceSetting) return advisoryCountryText(value, context.texts);
  if (key == "temperatureUnit") return unitLabel(value, units.temperature, isChosen, context);
  if (key == "windUnit") return unitLabel(value, units.wind, isChosen, context);
  if (key == "pressureUnit") return unitLabel(value, units.pressure, isChosen, context);
  if (key == "precipUnitDisplay") return unitLabel(value, units.precipitation, isChosen, context);
  if (key == "visibilityUnit") return unitLabel(value, units.distance, isChosen, context);
  if (key == "clock") return clockLabel(value, isChosen, context);
  if (key == "language") return languageLabel(value, context);
  if (key == "desktop_textSize") return measured(std::string(value), "%");
  return context.text("desktop.settings." + std::string(value));
}

std::string shown(SettingValue const& value) {
  if (auto const* const text = std::get_if<std::string>(&value)) return *text;
  if (auto const* const whole = std::get_if<std::int64_t>(&value)) return std::to_string(*whole);
  return {};
}

std::vector<std::string> valuesOf(SettingDefinition const* definition, std::string const& current) {
  std::vector<std::string> values;
  if (definition == nullptr) {
    values.assign(enumNames<UnitPreset>.begin(), enumNames<UnitPreset>.end());
  } else if (definition->offers != nullptr) {
    auto const offered = definition->offers();
    values.assign(offered.begin(), offered.end());
  } else {
    values.assign(definition->choices.begin(), definition->choices.end());
  }
  // What the command line has set may lie between the choices.
  if (std::ranges::count(values, current) == 0) values.push_back(current);
  return values;
}

std::string_view kindOf(SettingDefinition const* definition) {
  if (definition == nullptr || !definition->choices.empty() || definition->offers != nullptr) return "choice";
  if (std::holds_alternative<bool>(definition->byDefault)) return "switch";
  return definition->isSecret ? "secret" : "text";
}

std::string currentOf(std::string_view key, SettingsState const& state) {
  if (key != kUnitPresetKey) return shown(state.settings.value(key));
  auto const preset = unitPresetOf(state.settings);
  return preset ? std::string(enumName(*preset)) : "own";
}

std::string refusalText(std::string_view key, std::optional<StoreError> const& refusal,
                        ViewContext const& context) {
  if (!refusal || refusal->kind != StoreError::Kind::refused) return storeText(refusal, context);
  return context.text(key.ends_with("Host") ? "desktop.settings.refused.address"
                                            : "desktop.settings.refused");
}

/// The row of a setting, or of all units, which are none of their own.
SettingRowView rowOf(std::string_view key, SettingsState const& state, ViewContext const& context) {
  SettingDefinition const* const definition = state.settings.registry().find(key);
  SettingRowView row;
  row.key = key;
  row.kind = kindOf(definition);
  row.title = context.text("desktop.settings." + row.key);
  row.isSet = definition != nullptr && state.settings.value(key) != definition->defaultValue();
  if (state.refusedKey == key) row.problem = refusalText(key, state.refusal, context);
  if (row.kind == "switch") row.isOn = state.settings.boolean(key);
  if (row.kind == "text") row.value = state.settings.text(key);
  if (row.kind != "choice") return row;
  row.value = currentOf(key, state);
  row.values = valuesOf(definition, row.value);
  for (std::string const& value : row.values) {
    row.labels.push_back(optionLabel(key, value, value == row.value, context));
  }
  row.chosen = static_cast<double>(std::ranges::find(row.values, row.value) - row.values.begin());
  return row;
}

void explain(SettingRowView& row, ViewContext const& context) {
  std::string const key = "desktop.settings." + row.key + ".why";
  std::string text = context.text(key);
  if (text != key) row.explanation = std::move(text);
}

std::string serviceName(ServiceRow const& service, ViewContext const& context) {
  return context.text("desktop.service." + std::string(service.name));
}

void addKeys(std::vector<SettingRowView>& rows, SettingsState const& state, ViewContext const& context) {
  for (ServiceRow const& service : kServices) {
    if (!service.takesKey) continue;
    rows.push_back(rowOf(apiKeySetting(service.service), state, context));
    rows.back().title = context.texts.format("desktop.settings.keyOf", serviceName(service, context));
  }
}

void addAddresses(std::vector<SettingRowView>& rows, SettingsState const& state, ViewContext const& context) {
  for (ServiceRow const& service : kServices) {
    rows.push_back(rowOf(hostSetting(service.service), state, context));
    rows.back().title = serviceName(service, context);
  }
}

/// Until when a provider is left alone.
std::optional<Instant> leftAloneUntil(ProviderRecord const& record, Instant now) {
  if (!isCoolingDown(record, now)) return std::nullopt;
  auto const afterFailure = record.lastFailureAt.value_or(Instant{}) + WeatherProviderManager::kCoolDown;
  return std::max(record.blockedUntil.value_or(Instant{}), afterFailure);
}

std::string stateOf(ProviderRecord const& record, ViewContext const& context) {
  std::vector<std::string> parts;
  if (record.lastSuccessAt) {
    parts.push_back(context.texts.format("desktop.provider.answered",
                                         ageText(*record.lastSuccessAt, context.now, context.texts)));
  }
  if (record.lastError && record.lastErrorAt) {
    parts.push_back(context.texts.format("desktop.provider.failed",
                                         ageText(*record.lastErrorAt, context.now, context.texts),
                                         *record.lastError));
  }
  if (auto const until = leftAloneUntil(record, context.now)) {
    TimeWords const words(context.texts, context.fallback);
    parts.push_back(context.texts.format("desktop.provider.waiting", words.moment(*until, context.now)));
  }
  if (parts.empty()) return context.text("desktop.provider.unused");
  std::string text;
  for (std::string const& part : parts) text += (text.empty() ? "" : "  ·  ") + part;
  return text;
}

ProviderView providerView(std::string_view provider, SettingsState const& state, ViewContext const& context) {
  ProviderView view;
  view.value = provider;
  view.name = context.text(isAutomatic(provider) ? "desktop.settings.automatic" : "provider." + view.value);
  view.isChosen = state.settings.text("preferredProvider") == provider;
  auto const record = state.providers.find(provider);
  if (isAutomatic(provider)) {
    view.state = context.text("desktop.provider.automatic");
  } else if (provider == "appleWeather" && !state.isAppleWeatherConfigured) {
    view.state = context.text("desktop.provider.needsKeys");
  } else if (record == state.providers.end()) {
    view.state = context.text("desktop.provider.unused");
  } else {
    view.state = stateOf(record->second, context);
    view.isTroubled = isCoolingDown(record->second, context.now);
  }
  view.sentence = view.name + ": " + view.state;
  return view;
}

std::string noticeOf(SettingsState const& state, ViewContext const& context) {
  std::string notice = storeText(state.problem, context);
  for (std::string const& fault : state.settings.faults()) {
    notice += (notice.empty() ? "" : "\n") + context.texts.format("desktop.settings.fault", fault);
  }
  return notice;
}

/// "system" leaves it to the toolkit, where the desktop itself does not say.
std::string themeOf(SettingsState const& state) {
  using Scheme = AppearanceWish::Scheme;
  std::string chosen = state.settings.text("desktop_theme");
  if (chosen != "system" || state.wish.scheme == Scheme::open) return chosen;
  return state.wish.scheme == Scheme::dark ? "dark" : "light";
}

/// A choice between automatic, which leaves it to the desktop, on and off.
bool isWanted(std::string_view key, bool isWished, SettingsState const& state) {
  std::string const chosen = state.settings.text(key);
  return isAutomatic(chosen) ? isWished : chosen == "on";
}

std::string startNoteOf(SettingsState const& state, ViewContext const& context) {
  if (state.isWatchChanging) return context.text("desktop.settings.startAtLogin.changing");
  if (!state.watchProblem.empty()) {
    return context.texts.format("desktop.settings.startAtLogin.failed", state.watchProblem);
  }
  return context.text("desktop.settings.startAtLogin." + std::string(enumName(state.watch)));
}

void addFolder(std::vector<FolderView>& folders, std::string const& purpose,
               std::filesystem::path const& path) {
  if (path.empty()) return;
  folders.push_back({purpose, path.string(), purpose + ": " + path.string()});
}

}  // namespace

std::vector<SettingRowView> settingRows(SettingsGroup group, SettingsState const& state,
                                        ViewContext const& context) {
  std::vector<SettingRowView> rows;
  if (group == SettingsGroup::units) rows.push_back(rowOf(kUnitPresetKey, state, context));
  for (SettingDefinition const* const definition : state.settings.registry().asWritten()) {
    if (definition->group == group) rows.push_back(rowOf(definition->key, state, context));
  }
  if (group == SettingsGroup::keys) addKeys(rows, state, context);
  if (group == SettingsGroup::addresses) addAddresses(rows, state, context);
  for (SettingRowView& row : rows) explain(row, context);
  return rows;
}

std::vector<ProviderView> providerViews(SettingsState const& state, ViewContext const& context) {
  std::vector<ProviderView> views;
  views.reserve(enumNames<WeatherProviderOption>.size());
  for (std::string_view const provider : enumNames<WeatherProviderOption>) {
    views.push_back(providerView(provider, state, context));
  }
  return views;
}

SettingsView settingsView(SettingsState const& state, ViewContext const& context) {
  SettingsView view;
  view.theme = themeOf(state);
  view.textSize = static_cast<double>(state.settings.integer("desktop_textSize")) / 100;
  view.isCalm = isWanted("desktop_reducedMotion", state.wish.reducesMotion, state);
  view.isContrasting = isWanted("desktop_contrast", state.wish.strengthensContrast, state);
  view.startsAtLogin = state.watch == WatchStart::atLogin || state.watch == WatchStart::fromNextLogin;
  view.canStartAtLogin =
      state.canChangeWatch && state.watch != WatchStart::changedByHand && !state.isWatchChanging;
  view.startNote = startNoteOf(state, context);
  view.notice = noticeOf(state, context);
  return view;
}

std::vector<FolderView> folderViews(SettingsState const& state, ViewContext const& context) {
  std::vector<FolderView> folders;
  addFolder(folders, context.text("desktop.settings.dataFolder"), state.dataDirectory);
  addFolder(folders, context.text("desktop.settings.cacheFolder"), state.cacheDirectory);
  return folders;
}

}  // namespace nimbara
