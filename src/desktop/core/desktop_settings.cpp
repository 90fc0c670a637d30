#include "desktop/core/desktop_settings.h"

#include "app/settings/unit_settings.h"

#include <algorithm>

namespace nimbara {

namespace {

std::shared_ptr<Wording const> wordingOf(Settings const& settings, Environment const& environment) {
  std::string const chosen = settings.text("language");
  std::string const& language = chosen == "automatic" ? environment.language : chosen;
  return std::make_shared<Wording const>(
      Wording{unitsOf(settings, environment.measurement),
              std::make_shared<Texts>(Texts::load(wordsLocale(settings, language, environment.time))),
              environment.machineCalendar, language});
}

/// Without a folder for other programs' settings, as in the demo, nothing starts with the session.
WatchStart startOf(Environment const& environment) {
  return environment.configHome.empty() ? WatchStart::byHand : watchStart(environment);
}

bool isSame(Wording const& one, Wording const& other) {
  constexpr std::string_view kClock = "time.clockPattern";
  return one.units == other.units && one.texts->language() == other.texts->language() &&
         one.texts->text(kClock) == other.texts->text(kClock);
}

/// Services take these when they are made.
bool isBoundAtStart(std::string_view key) {
  return key == "contact" || key == "languageModelName" || key.starts_with("appleWeather") ||
         key.ends_with("Host") || key.ends_with("ApiKey");
}

bool differWhereBound(Settings const& one, Settings const& other) {
  return std::ranges::any_of(one.registry().all(), [&](SettingDefinition const* definition) {
    return isBoundAtStart(definition->key) && one.value(definition->key) != other.value(definition->key);
  });
}

std::unexpected<StoreError> refused(std::string sentence) {
  return std::unexpected(StoreError{StoreError::Kind::refused, std::move(sentence)});
}

}  // namespace

DesktopSettings::DesktopSettings(SettingsStore& store, Environment environment)
    : store_(store), environment_(std::move(environment)), atStart_(store.settings().settings) {
  SettingsState state(atStart_);
  state.canChangeWatch = !environment_.configHome.empty();
  state.dataDirectory = environment_.dataDirectory;
  state.cacheDirectory = environment_.cacheDirectory;
  state_ = std::make_shared<SettingsState const>(std::move(state));
  wording_ = wordingOf(atStart_, environment_);
}

WeatherProviderOption DesktopSettings::preferredProvider() const {
  return state()
      ->settings.choice<WeatherProviderOption>("preferredProvider")
      .value_or(WeatherProviderOption::automatic);
}

std::shared_ptr<Wording const> DesktopSettings::wording() const {
  std::lock_guard const lock(mutex_);
  return wording_;
}

std::shared_ptr<SettingsState const> DesktopSettings::state() const {
  std::lock_guard const lock(mutex_);
  return state_;
}

template <class Change>
void DesktopSettings::change(Change apply) {
  std::lock_guard const lock(mutex_);
  auto next = std::make_shared<SettingsState>(*state_);
  apply(*next);
  state_ = std::move(next);
}

SettingsChanges DesktopSettings::reread() {
  auto reading = store_.settings();
  auto words = wordingOf(reading.settings, environment_);
  WatchStart const watch = startOf(environment_);
  SettingsChanges changes;
  changes.wording = !isSame(*wording(), *words);
  changes.provider = reading.settings.text("preferredProvider") != settings().text("preferredProvider");
  bool const needsRestart = differWhereBound(atStart_, reading.settings);
  change([&](SettingsState& state) {
    state.settings = std::move(reading.settings);
    state.problem = reading.problem;
    state.needsRestart = needsRestart;
    state.watch = watch;
    if (changes.wording) wording_ = std::move(words);
  });
  return changes;
}

Result<void, StoreError> DesktopSettings::write(std::string_view key, std::string_view text) {
  if (key == kUnitPresetKey) {
    auto const preset = enumFromName<UnitPreset>(text);
    return preset ? store_.setAll(unitChoices(*preset)) : Result<void, StoreError>();
  }
  SettingDefinition const* const definition = store_.registry().find(key);
  if (definition == nullptr) return refused("no such setting: '" + std::string(key) + "'");
  if (text.empty()) return store_.reset(key);
  auto value = parsedSetting(*definition, text);
  return value ? store_.set(key, *value) : refused(value.error());
}

SettingsChanges DesktopSettings::set(std::string_view key, std::string_view text) {
  auto const written = write(key, text);
  SettingsChanges const changes = reread();
  change([&](SettingsState& state) {
    state.refusedKey = written ? "" : std::string(key);
    state.refusal = written ? std::nullopt : std::optional(written.error());
  });
  return changes;
}

void DesktopSettings::noteProviders(Composition& composition) {
  auto records = composition.history().records();
  change([&](SettingsState& state) {
    state.providers = std::move(records);
    state.isAppleWeatherConfigured = composition.isAppleWeatherConfigured();
  });
}

void DesktopSettings::noteWish(AppearanceWish const& wish) {
  change([&](SettingsState& state) { state.wish = wish; });
}

void DesktopSettings::noteWatchChanging() {
  change([](SettingsState& state) { state.isWatchChanging = true; });
}

void DesktopSettings::setStartAtLogin(bool wanted, std::stop_token const& stop) {
  constexpr std::chrono::seconds kPatience{20};
  Environment environment = environment_;
  environment.program = environment.program.parent_path() / "nimbara";
  auto const report = (wanted ? installWatch : uninstallWatch)(environment, timedRunner(kPatience, stop));
  WatchStart const watch = watchStart(environment);
  change([&](SettingsState& state) {
    state.isWatchChanging = false;
    state.watch = watch;
    state.watchProblem = report ? std::string() : report.error();
  });
}

}  // namespace nimbara
