// The notification settings: one table of keys, defaults and what they may hold, and their values at one
// moment as the rules and the engine read them.
#pragma once

#include "base/time/instant.h"
#include "model/warnings/weather_alert.h"
#include "platform/settings/settings.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace nimbara {

/// Every key that notifications know, in the order in which a person reads them.
std::span<SettingDefinition const> notificationSettings();

/// The levels of "notify_govAlertLevel" and "notify_travelAdvisoryLevel", ascending.
enum class NotificationLevel { low, medium, high, critical };
template <>
inline constexpr auto enumNames<NotificationLevel> =
    std::to_array<std::string_view>({"low", "medium", "high", "critical"});
static_assert(enumNamesComplete(NotificationLevel::critical));

/// The level that a severity belongs to: info is low, critical critical.
constexpr NotificationLevel levelOf(AlertSeverity severity) {
  return static_cast<NotificationLevel>(severity);
}

/// Hours of a local day in which nothing rings, from one hour up to another, over midnight when the second is
/// the smaller; none when both are equal.
struct QuietHours {
  bool isOn = false;
  int from = 22;
  int until = 7;
  bool holdsCritical = false;

  bool contain(int hour) const;
};

/// Something that is not sent, forever or for a while.
struct Mute {
  std::string kind;  ///< a rule, a kind of warning, or a kind at one severity: "rain", "gov:wind:advisory"
  std::optional<Instant> until;  ///< none: forever

  bool holds(Instant now) const { return !until || now < *until; }
  bool operator==(Mute const&) const = default;
};

/// What a mute names, as this version says it: earlier ones named a warning's kind by its symbol,
/// "gov:cloud.bolt.fill" for "gov:thunderstorm".
std::string currentKind(std::string stored);

/// As the setting has them: kinds by comma, each with "@" and a moment where it ends.
std::vector<Mute> parseMutes(std::string_view text);
std::string encodeMutes(std::vector<Mute> const& mutes);
/// With `mute` in place of an older one of the same kind, and without those that are over.
std::vector<Mute> mutedToo(std::vector<Mute> mutes, Mute mute, Instant now);

struct RuleSettings {
  double highWindKmh = 60;
  double airQualityLevel = 35;  ///< PM2.5, µg/m³
  bool govAlerts = true;        ///< official warnings are sent at all
  NotificationLevel govAlertLevel = NotificationLevel::medium;
  NotificationLevel travelAdvisoryLevel = NotificationLevel::medium;
  double fireRadiusKm = 50;
  double earthquakeRadiusKm = 250;
  double earthquakeMagnitude = 4;
  double lightningRadiusKm = 20;  ///< never above 50
  bool sounds = true;
  bool generatedSummaries = false;  ///< a language model may word the daily summaries
  bool everyPlace = true;           ///< danger is sent for each saved place
  QuietHours quiet;
  std::vector<Mute> mutes;
  std::optional<Instant> snoozedUntil;

  static RuleSettings of(Settings const& settings);
};

/// The widest circle in which lightning is reported, km.
inline constexpr double kMostLightningRadiusKm = 50;

}  // namespace nimbara
