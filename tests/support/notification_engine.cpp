#include "support/notification_engine.h"

#include <utility>

namespace nimbara::test {

SettingsRegistry const& notificationRegistry() {
  static SettingsRegistry const kRegistry{notificationSettings()};
  return kRegistry;
}

WeatherAlert officialWarning(int number, AlertSeverity severity, Instant begin) {
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

std::string identifierOf(WeatherAlert const& alert) {
  return "gov_" + alert.id.text();
}

void letItPour(WeatherData& data) {
  data.allHourly[2].condition = WeatherConditionCode::heavyRain;
  data.allHourly[2].precipMM = 6;
  data.allHourly[2].chanceOfRain = 90;
}

void switchAllOff(SettingsStore& store) {
  for (SettingDefinition const& definition : notificationSettings()) {
    bool const isRule = definition.key.starts_with("notify_") && std::get_if<bool>(&definition.byDefault);
    bool const isManner = definition.key == "notify_sounds" || definition.key == "notify_everyPlace";
    if (isRule && !isManner) std::ignore = store.set(definition.key, false);
  }
}

NotificationEngine::NotificationEngine(std::string const& begin) : clock(at(begin)) {
  switchAllOff(store);
  restart();
}
NotificationEngine::~NotificationEngine() = default;

void NotificationEngine::turnOn(std::string_view key) {
  std::ignore = store.set(key, true);
}

void NotificationEngine::restart() {
  manager = std::make_unique<NotificationManager>(
      NotificationManager::Surroundings{store, center, clock, sharedEnglishTexts(), {}});
}

RuleInputs NotificationEngine::here() const {
  RuleInputs inputs = ruleInputs(clock.now(), weather);
  inputs.calendar = calendar;
  if (warnings) inputs.govAlerts = InputReading<std::vector<WeatherAlert>>::of(*warnings);
  if (!warnings) inputs.govAlerts.failure = ServiceFailure::answered(503);
  return inputs;
}

RuleInputs NotificationEngine::elsewhere(std::string const& tag, std::string const& name) const {
  RuleInputs inputs = here();
  inputs.place.tag = tag;
  inputs.place.name = name;
  inputs.place.isSelected = false;
  return inputs;
}

PassReport NotificationEngine::pass(std::vector<RuleInputs> places) {
  return manager->evaluate([&](NeededInputs const&, std::stop_token const&) {
    return PassInputs{std::move(places), {}, isPartial};
  });
}

PassReport NotificationEngine::pass() {
  return pass({here()});
}

PassReport NotificationEngine::passAfter(std::chrono::minutes span) {
  clock.advance(span);
  return pass();
}

std::vector<std::string> NotificationEngine::told() {
  std::vector<std::string> names;
  auto const all = center.delivered();
  for (std::size_t i = seen; i < all.size(); ++i) names.push_back(all[i].identifier);
  seen = all.size();
  return names;
}

}  // namespace nimbara::test
