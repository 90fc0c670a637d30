#include "desktop/views/notices/notification_rows.h"

#include "notifications/rules/rule_settings.h"

#include <algorithm>
#include <vector>

namespace nimbara {

namespace {

using enum NotificationRow::Control;
using Row = NotificationRow;

constexpr Row kDanger[] = {
    {"notify_govAlerts"},
    {"notify_govAlertLevel", level, "notify_govAlerts"},
    {"notify_severe"},
    {"notify_tornado"},
    {"notify_flood"},
    {"notify_storm"},
    {"notify_lightning"},
    {"notify_lightningRadius", number, "notify_lightning", ConditionUnit::km, 5, kMostLightningRadiusKm},
    {"notify_airQuality"},
    {"notify_airQualityThreshold", number, "notify_airQuality", ConditionUnit::microgram, 5},
    {"notify_everyPlace"},
};

constexpr Row kEarth[] = {
    {"notify_earthquakes"},
    {"notify_earthquakeRadius", number, "notify_earthquakes", ConditionUnit::km, 50},
    {"notify_earthquakeMagnitude", number, "notify_earthquakes", ConditionUnit::magnitude, 0.5},
    {"notify_fires"},
    {"notify_fireRadius", number, "notify_fires", ConditionUnit::km, 10},
    {"notify_hurricane_atlantic"},
    {"notify_hurricane_easternPacific"},
    {"notify_hurricane_centralPacific"},
    {"notify_hurricane_westernPacific"},
    {"notify_travelAdvisory"},
    {"notify_travelAdvisoryLevel", level, "notify_travelAdvisory"},
};

constexpr Row kWeather[] = {
    {"notify_rain"},      {"notify_rainStart"},
    {"notify_rainStop"},  {"notify_snow"},
    {"notify_snowStart"}, {"notify_snowStop"},
    {"notify_highWind"},  {"notify_highWindThreshold", number, "notify_highWind", ConditionUnit::kmh, 5},
    {"notify_tempDrop"},  {"notify_tempIncrease"},
    {"notify_uvHigh"},
};

constexpr Row kDaily[] = {
    {"notify_morningSummary"},   {"notify_morningHour", hour, "notify_morningSummary"},
    {"notify_eveningSummary"},   {"notify_eveningHour", hour, "notify_eveningSummary"},
    {"notify_umbrellaReminder"}, {"notify_umbrellaHour", hour, "notify_umbrellaReminder"},
    {"notify_uvDailyReminder"},  {"notify_uvReminderHour", hour, "notify_uvDailyReminder"},
    {"notify_beachTime"},        {"appleIntelligence"},
};

constexpr Row kQuiet[] = {
    {"notify_quietHours"},
    {"notify_quietFrom", hour, "notify_quietHours"},
    {"notify_quietUntil", hour, "notify_quietHours"},
    {"notify_quietHoldsCritical"},
    {"notify_sounds"},
    {"notify_speakCritical"},
};

/// A switch each, in the order of their settings.
std::vector<Row> skyRows() {
  std::vector<Row> rows;
  for (SettingDefinition const& definition : notificationSettings()) {
    if (definition.key.starts_with("notify_beta_")) rows.push_back({definition.key});
  }
  return rows;
}

}  // namespace

std::span<NotificationGroup const> notificationGroups() {
  static std::vector<Row> const kSky = skyRows();
  static NotificationGroup const kGroups[] = {
      {"danger", kDanger}, {"weather", kWeather}, {"daily", kDaily},
      {"earth", kEarth},   {"sky", kSky},         {"quiet", kQuiet},
  };
  return kGroups;
}

NotificationRow const* findNotificationRow(std::string_view key) {
  for (NotificationGroup const& group : notificationGroups()) {
    auto const found = std::ranges::find(group.rows, key, &NotificationRow::key);
    if (found != group.rows.end()) return &*found;
  }
  return nullptr;
}

}  // namespace nimbara
