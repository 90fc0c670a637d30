#include "app/engine/engine_settings.h"

#include "app/services/composition.h"
#include "app/settings/unit_settings.h"
#include "platform/linux/desktop_services.h"

#include <algorithm>

namespace nimbara {

namespace {

std::string languageOf(Settings const& settings, Environment const& environment, Overrides const& overrides) {
  if (!overrides.language.empty()) return overrides.language;
  std::string const chosen = settings.text("language");
  return chosen == "automatic" ? environment.language : chosen;
}

std::shared_ptr<Wording const> wordingOf(Settings const& settings, Environment const& environment,
                                         Overrides const& overrides) {
  std::string const language = languageOf(settings, environment, overrides);
  return std::make_shared<Wording const>(
      Wording{overrides.units.value_or(unitsOf(settings, environment.measurement)),
              std::make_shared<Texts>(Texts::load(wordsLocale(settings, language, environment.time))),
              environment.machineCalendar, language});
}

/// Without a folder for other programs' settings, as in the demo, nothing starts with the session.
WatchStart startOf(Environment const& environment) {
  return environment.configHome.empty() ? WatchStart::byHand : watchStart(environment);
}

bool haveSameWords(Wording const& one, Wording const& other) {
  constexpr std::string_view kClock = "time.clockPattern";
  return one.language == other.language && one.texts->language() == other.texts->language() &&
         one.texts->text(kClock) == other.texts->text(kClock);
}

/// Services take these when they are made.
bool makesServices(std::string_view key) {
  return key == "contact" || key == "languageModelName" || key.starts_with("appleWeather") ||
         key.ends_with("Host") || key.ends_with("ApiKey");
}

/// Every setting that is chosen otherwise, or those of services alone.
bool differ(Settings const& one, Settings const& other, bool ofServices) {
  return std::ranges::any_of(one.registry().all(), [&](SettingDefinition const* definition) {
    std::string_view const key = definition->key;
    if (ofServices && !makesServices(key)) return false;
    return one.value(key) != other.value(key) || one.isChosen(key) != other.isChosen(key);
  });
}

std::unexpected<StoreError> refused(std::string sentence) {
  return std::unexpected(StoreError{StoreError::Kind::refused, std::move(sentence)});
}

}  // namespace

EngineSettings::EngineSettings(SettingsStore& store, Environment const& environment, Overrides overrides,
                               Settings const* atStart)
    : store_(store), environment_(environment), overrides_(std::move(overrides)) {
  SettingsState state(atStart == nullptr ? store.settings().settings : *atStart);
  state.canChangeWatch = !environment_.configHome.empty();
  state.dataDirectory = environment_.dataDirectory;
  state.cacheDirectory = environment_.cacheDirectory;
  wording_ = wordingOf(state.settings, environment_, overrides_);
  state_ = std::make_shared<SettingsState const>(std::move(state));
}

WeatherProviderOption EngineSettings::preferredProvider() const {
  if (overrides_.provider) return *overrides_.provider;
  return state()
      ->settings.choice<WeatherProviderOption>("preferredProvider")
      .value_or(WeatherProviderOption::automatic);
}

std::shared_ptr<Wording const> EngineSettings::wording() const {
  std::lock_guard const lock(mutex_);
  return wording_;
}

std::shared_ptr<SettingsState const> EngineSettings::state() const {
  std::lock_guard const lock(mutex_);
  return state_;
}

template <class Change>
void EngineSettings::change(Change apply) {
  std::lock_guard const lock(mutex_);
  auto next = std::make_shared<SettingsState>(*state_);
  apply(*next);
  state_ = std::move(next);
}

SettingsChanges EngineSettings::reread() {
  auto reading = store_.settings();
  WatchStart const watch = startOf(environment_);
  Settings const before = settings();
  auto const words = wording();
  SettingsChanges changes;
  changes.any = differ(before, reading.settings, false);
  auto now = changes.any ? wordingOf(reading.settings, environment_, overrides_) : words;
  changes.language = !haveSameWords(*words, *now);
  changes.wording = changes.language || words->units != now->units;
  changes.provider =
      !overrides_.provider && reading.settings.text("preferredProvider") != before.text("preferredProvider");
  changes.services = differ(before, reading.settings, true);
  change([&](SettingsState& state) {
    state.settings = std::move(reading.settings);
    state.problem = reading.problem;
    state.watch = watch;
    if (changes.wording) wording_ = std::move(now);
  });
  return changes;
}

Result<void, StoreError> EngineSettings::write(std::string_view key, std::string_view text) {
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

SettingsChanges EngineSettings::set(std::string_view key, std::string_view text) {
  auto const written = write(key, text);
  SettingsChanges const changes = reread();
  change([&](SettingsState& state) {
    state.refusedKey = written ? "" : std::string(key);
    state.refusal = written ? std::nullopt : std::optional(written.error());
  });
  return changes;
}

void EngineSettings::noteProviders(Composition& composition) {
  auto records = composition.history().records();
  change([&](SettingsState& state) {
    state.providers = std::move(records);
    state.isAppleWeatherConfigured = composition.isAppleWeatherConfigured();
  });
}

void EngineSettings::noteWish(AppearanceWish const& wish) {
  change([&](SettingsState& state) { state.wish = wish; });
}

void EngineSettings::noteWatchChanging() {
  change([](SettingsState& state) { state.isWatchChanging = true; });
}

/// In a sandbox the desktop starts the watch; the files that are written beside only keep what it said.
/// Elsewhere nobody is asked.
Result<void, std::string> EngineSettings::askPortal(bool wanted) const {
  constexpr std::chrono::minutes kUntilAnswered{2};
  DesktopBuses const buses = busesOfSession(environment_.program);
  if (!buses.usesPortals) return {};
  std::string const reason(wording()->texts->text("desktop.settings.startAtLogin.atLogin"));
  auto const starts = requestAutostart(buses, wanted, reason, kUntilAnswered);
  if (!starts) return std::unexpected(starts.error());
  if (*starts != wanted) return std::unexpected("the desktop did not allow it");
  return {};
}

void EngineSettings::setStartAtLogin(bool wanted, std::stop_token const& stop) {
  constexpr std::chrono::seconds kPatience{20};
  Environment environment = environment_;
  environment.program = environment.program.parent_path() / "nimbara";
  Result<std::string, std::string> report;
  if (auto const allowed = askPortal(wanted); allowed) {
    report = (wanted ? installWatch : uninstallWatch)(environment, timedRunner(kPatience, stop));
  } else {
    report = std::unexpected(allowed.error());
  }
  WatchStart const watch = watchStart(environment);
  change([&](SettingsState& state) {
    state.isWatchChanging = false;
    state.watch = watch;
    state.watchProblem = report ? std::string() : report.error();
  });
}

}  // namespace nimbara
