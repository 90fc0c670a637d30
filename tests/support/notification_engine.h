// The notification engine of a test: on a store, a clock and a center of its own, and forgetful at will.
#pragma once

#include "notifications/engine/notification_manager.h"
#include "support/manual_clock.h"
#include "support/memory_settings_store.h"
#include "support/rules.h"
#include "support/session/fake_notification_center.h"
#include "support/shared_texts.h"

#include <memory>
#include <string>
#include <vector>

namespace nimbara::test {

SettingsRegistry const& notificationRegistry();

/// An official warning that began with the test's world and lasts for a day.
WeatherAlert officialWarning(int number, AlertSeverity severity, Instant begin);

std::string identifierOf(WeatherAlert const& alert);

/// Rain that the rule of heavy rain tells of, in the hour after next.
void letItPour(WeatherData& data);

/// Built-in rules that a test does not mean stay out of its way.
void switchAllOff(SettingsStore& store);

struct NotificationEngine {
  explicit NotificationEngine(std::string const& begin);
  ~NotificationEngine();

  void turnOn(std::string_view key);
  /// Another process of the program takes over.
  void restart();

  /// The place at this moment in the weather of the test.
  RuleInputs here() const;
  RuleInputs elsewhere(std::string const& tag, std::string const& name) const;

  PassReport pass(std::vector<RuleInputs> places);
  PassReport pass();
  PassReport passAfter(std::chrono::minutes span);

  /// Identifiers of what rang or was listed since the last look.
  std::vector<std::string> told();

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
