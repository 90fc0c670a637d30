// The notification engine of a test: on a store, a clock and a center of its own, and forgetful at will.
#pragma once

#include "notifications/engine/notification_manager.h"
#include "support/fake_notification_center.h"
#include "support/manual_clock.h"
#include "support/memory_settings_store.h"
#include "support/rules.h"
#include "support/shared_texts.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace nimbara::test {

inline SettingsRegistry const& notificationRegistry() {
  static SettingsRegistry const kRegistry{notificationSettings()};
  return kRegistry;
}

/// An official warning that began with the test's world and lasts for a day.
inline WeatherAlert officialWarning(int number, AlertSeverity severity, Instant begin) {
  WeatherAlert alert;
  alert.id = Uuid::named(Uuid{}, "warning " + std::to_string(number));
  alert.severity = severity;
  alert.title = "Warning " + std::to_string(number);
  alert.message = "Take care.";
  alert.kind = WarningKind::wind;
  alert.isGovAlert = true;
  alert.onset = begin;
  alert.expires = begin + std::chrono::hours(24);
  return alert;
}

inline std::string identifierOf(WeatherAlert const& alert) {
  return "gov_" + alert.id.text();
}

/// Rain that the rule of heavy rain tells of, in the hour after next.
inline void letItPour(WeatherData& data) {
  data.allHourly[2].condition = WeatherConditionCode::heavyRain;
  data.allHourly[2].precipMM = 6;
  data.allHourly[2].chanceOfRain = 90;
}

/// Built-in rules that a test does not mean stay out of its way.
inline void switchAllOff(SettingsStore& store) {
  for (SettingDefinition const& definition : notificationSettings()) {
    bool const isRule = definition.key.starts_with("notify_") && std::get_if<bool>(&definition.byDefault);
    bool const isManner = definition.key == "notify_sounds" || definition.key == "notify_everyPlace";
    if (isRule && !isManner) std::ignore = store.set(definition.key, false);
  }
}

struct NotificationEngine {
  explicit NotificationEngine(std::string const& begin) : clock(at(begin)) {
    switchAllOff(store);
    restart();
  }

  void turnOn(std::string_view key) { std::ignore = store.set(key, true); }
  /// Another process of the program takes over.
  void restart() {
    manager = std::make_unique<NotificationManager>(
        NotificationManager::Surroundings{store, center, clock, sharedEnglishTexts(), {}});
  }

  /// The place at this moment in the weather of the test.
  RuleInputs here() const {
    RuleInputs inputs = ruleInputs(clock.now(), weather);
    inputs.calendar = calendar;
    if (warnings) inputs.govAlerts = InputReading<std::vector<WeatherAlert>>::of(*warnings);
    if (!warnings) inputs.govAlerts.failure = ServiceFailure::answered(503);
    return inputs;
  }
  RuleInputs elsewhere(std::string const& tag, std::string const& name) const {
    RuleInputs inputs = here();
    inputs.place.tag = tag;
    inputs.place.name = name;
    inputs.place.isSelected = false;
    return inputs;
  }

  PassReport pass(std::vector<RuleInputs> places) {
    return manager->evaluate([&](NeededInputs const&, std::stop_token const&) {
      return PassInputs{std::move(places), {}, isPartial};
    });
  }
  PassReport pass() { return pass({here()}); }
  PassReport passAfter(std::chrono::minutes span) {
    clock.advance(span);
    return pass();
  }

  /// Identifiers of what rang or was listed since the last look.
  std::vector<std::string> told() {
    std::vector<std::string> names;
    auto const all = center.delivered();
    for (std::size_t i = seen; i < all.size(); ++i) names.push_back(all[i].identifier);
    seen = all.size();
    return names;
  }

  MemorySettingsStore store{notificationRegistry()};
  FakeNotificationCenter center;
  ManualClock clock;
  Calendar calendar = Calendar::utc();
  std::function<void(WeatherData&)> weather;
  std::optional<std::vector<WeatherAlert>> warnings = std::vector<WeatherAlert>{};  ///< nothing: no answer
  bool isPartial = false;  ///< of the next passes: further places are watched
  std::unique_ptr<NotificationManager> manager;
  std::size_t seen = 0;
};

}  // namespace nimbara::test
