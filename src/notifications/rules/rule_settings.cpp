#include "notifications/rules/rule_settings.h"

#include "base/text/text.h"
#include "notifications/custom_notification.h"

#include <algorithm>

namespace nimbara {

namespace {

bool isRuleList(std::string_view text) {
  return parseCustomNotifications(text).has_value();
}

bool isMomentOrNothing(std::string_view text) {
  return text.empty() || parseIso8601(text).has_value();
}

constexpr SettingDefinition hourOf(std::string_view key, std::int64_t byDefault,
                                   std::string_view explanation) {
  return {.key = key, .byDefault = byDefault, .explanation = explanation, .minimum = 0, .maximum = 23};
}

constexpr SettingDefinition kTable[] = {
    {"notify_rain", true, "Heavy rain expected"},
    {"notify_snow", true, "Snow expected"},
    {"notify_rainStart", false, "Rain will start soon"},
    {"notify_rainStop", false, "Rain will stop soon"},
    {"notify_snowStart", false, "Snow will start soon"},
    {"notify_snowStop", false, "Snow will stop soon"},
    {"notify_severe", true, "Severe weather expected"},
    {"notify_storm", false, "Thunderstorms expected"},
    {"notify_flood", true, "Floods and rain that can cause them"},
    {"notify_tornado", true, "Tornado warnings and conditions"},
    {"notify_highWind", false, "High wind"},
    {.key = "notify_highWindThreshold",
     .byDefault = std::int64_t{60},
     .explanation = "Minimum wind or gust speed, in km/h",
     .minimum = 1,
     .maximum = 400},
    {"notify_umbrellaReminder", false, "Daily umbrella reminder"},
    {"notify_uvDailyReminder", false, "Daily sun protection reminder"},
    hourOf("notify_umbrellaHour", 7, "Hour of the umbrella reminder"),
    hourOf("notify_uvReminderHour", 8, "Hour of the UV reminder"),
    {"notify_tempDrop", false, "The temperature will drop"},
    {"notify_tempIncrease", false, "The temperature will rise"},
    {"notify_uvHigh", false, "The UV index is high"},
    {"notify_airQuality", false, "PM2.5 will reach your limit"},
    {.key = "notify_airQualityThreshold",
     .byDefault = std::int64_t{35},
     .explanation = "Minimum PM2.5, in µg/m³",
     .minimum = 1,
     .maximum = 1000},
    {"notify_beachTime", false, "Good weather for the beach"},
    {"notify_morningSummary", false, "Morning summary: the day in one sentence"},
    {"notify_eveningSummary", false, "Evening summary: tonight and tomorrow"},
    hourOf("notify_morningHour", 7, "Hour of the morning summary"),
    hourOf("notify_eveningHour", 18, "Hour of the evening summary"),
    {"liveActivityEnabled", true, "Mark the tray icon while an official warning is in force"},
    {"notify_govAlerts", true, "Official warnings"},
    {"notify_govAlertLevel", "medium", "Minimum level of official warnings", enumNames<NotificationLevel>},
    {"notify_travelAdvisory", true, "Travel advisories for your places' countries"},
    {"notify_travelAdvisoryLevel", "medium", "Minimum level of travel advisories",
     enumNames<NotificationLevel>},
    {"notify_hurricane_atlantic", false, "Tropical cyclones in the Atlantic"},
    {"notify_hurricane_easternPacific", false, "Tropical cyclones in the Eastern Pacific"},
    {"notify_hurricane_centralPacific", false, "Tropical cyclones in the Central Pacific"},
    {"notify_hurricane_westernPacific", false, "Tropical cyclones in the Western Pacific"},
    {"notify_earthquakes", false, "Earthquakes near your places"},
    {"notify_fires", false, "Wildfires near your places"},
    {.key = "notify_fireRadius",
     .byDefault = std::int64_t{50},
     .explanation = "Maximum distance of a wildfire, in km",
     .minimum = 1,
     .maximum = 1000},
    {.key = "notify_earthquakeRadius",
     .byDefault = std::int64_t{250},
     .explanation = "Maximum distance of an earthquake, in km",
     .minimum = 1,
     .maximum = 20'000},
    {.key = "notify_earthquakeMagnitude",
     .byDefault = 4.0,
     .explanation = "Minimum magnitude of an earthquake",
     .minimum = 0,
     .maximum = 10},
    {"notify_lightning", true, "Lightning near you"},
    {.key = "notify_lightningRadius",
     .byDefault = std::int64_t{20},
     .explanation = "Maximum distance of lightning, in km; at most 50",
     .minimum = 1,
     .maximum = 1000},
    {"notify_sounds", true, "A different sound for each type of notification"},

    {"appleIntelligence", false, "A language model on your own computer words the daily summaries"},
    {.key = "languageModelName",
     .byDefault = "",
     .explanation = "The server's name for the model",
     .group = SettingsGroup::keys},

    {"notify_everyPlace", true,
     "Notify of severe weather and hazards for all saved places not set otherwise"},
    {"notify_quietHours", false, "Hold back notifications during quiet hours"},
    hourOf("notify_quietFrom", 22, "Hour at which quiet hours start"),
    hourOf("notify_quietUntil", 7, "Hour at which quiet hours end"),
    {"notify_quietHoldsCritical", false, "Quiet hours, mutes and snoozing hold back critical warnings too"},
    {"notify_speakCritical", false, "Read out critical warnings as soon as they are sent"},
    {"notify_mutedKinds", "",
     "Muted types: rule IDs and warning types, separated by commas; TYPE@TIME mutes until then"},
    {.key = "notify_snoozedUntil",
     .byDefault = "",
     .explanation = "Notifications are paused until this time",
     .accepts = &isMomentOrNothing,
     .expected = "a timestamp like 2026-11-21T18:00:00Z, or nothing"},

    {.key = "customNotifications",
     .byDefault = "[]",
     .explanation = "Your own rules; see nimbara rules",
     .accepts = &isRuleList,
     .expected = "a JSON list of rules"},

    {"notify_beta_frost", false, "Frost overnight"},
    {"notify_beta_blackIce", false, "Black ice"},
    {"notify_beta_windshieldFrost", false, "Frost on the windshield in the morning"},
    {"notify_beta_fog", false, "Fog expected"},
    {"notify_beta_heatIndex", false, "Humid heat"},
    {"notify_beta_windChill", false, "Wind chill"},
    {"notify_beta_pressureHeadache", false, "Pressure falling rapidly"},
    {"notify_beta_outdoorWindow", false, "The best hours outdoors"},
    {"notify_beta_goldenHour", false, "A golden hour worth a photograph"},
    {"notify_beta_stargazing", false, "Good conditions for stargazing"},
    {"notify_beta_aurora", false, "Aurora may be visible"},
    {"notify_beta_rainbow", false, "A rainbow is likely"},
    {"notify_beta_fogBow", false, "A fog bow is possible"},
    {"notify_beta_birdMigration", false, "Birds migrating in large numbers"},
    {"notify_beta_mosquito", false, "Mosquitoes are active"},
    {"notify_beta_mosquitoSwarm", false, "Mosquito swarms"},
    {"notify_beta_spiderBallooning", false, "Spiders ballooning on the wind"},
    {"notify_beta_staticShock", false, "Dry air may cause static shocks"},
    {"notify_beta_vitaminD", false, "Minutes of sun for vitamin D"},
    {"notify_beta_heatPumpFreeze", false, "Heat pump icing"},
};

/// A moment that cannot be read ends nothing: what somebody muted stays so.
Mute muteOf(std::string_view text) {
  std::size_t const end = text.find('@');
  Mute mute{currentKind(std::string(trimmed(text.substr(0, end)))), {}};
  if (end == std::string_view::npos) return mute;
  if (auto const until = parseIso8601(trimmed(text.substr(end + 1)))) mute.until = *until;
  return mute;
}

QuietHours quietHoursOf(Settings const& settings) {
  return {settings.boolean("notify_quietHours"), static_cast<int>(settings.integer("notify_quietFrom")),
          static_cast<int>(settings.integer("notify_quietUntil")),
          settings.boolean("notify_quietHoldsCritical")};
}

NotificationLevel levelAt(Settings const& settings, std::string_view key) {
  return settings.choice<NotificationLevel>(key).value_or(NotificationLevel::medium);
}

}  // namespace

std::span<SettingDefinition const> notificationSettings() {
  return kTable;
}

bool QuietHours::contain(int hour) const {
  if (!isOn || from == until) return false;
  return from < until ? hour >= from && hour < until : hour >= from || hour < until;
}

std::string currentKind(std::string stored) {
  constexpr std::string_view kWarnings = "gov:";
  if (!stored.starts_with(kWarnings)) return stored;
  std::size_t const length = stored.find(':', kWarnings.size()) - kWarnings.size();
  auto const kind = enumFromName<WarningKind>(stored.substr(kWarnings.size(), length));
  return kind ? stored.replace(kWarnings.size(), length, wordOf(*kind)) : stored;
}

std::vector<Mute> parseMutes(std::string_view text) {
  std::vector<Mute> mutes;
  for (std::string_view const part : split(text, ',')) {
    if (Mute mute = muteOf(part); !mute.kind.empty()) mutes.push_back(std::move(mute));
  }
  return mutes;
}

std::string encodeMutes(std::vector<Mute> const& mutes) {
  std::string text;
  for (Mute const& mute : mutes) {
    if (!text.empty()) text += ",";
    text += mute.kind;
    if (mute.until) text += "@" + formatIso8601(*mute.until);
  }
  return text;
}

std::vector<Mute> mutedToo(std::vector<Mute> mutes, Mute mute, Instant now) {
  std::erase_if(mutes, [&](Mute const& old) { return old.kind == mute.kind || !old.holds(now); });
  mutes.push_back(std::move(mute));
  return mutes;
}

RuleSettings RuleSettings::of(Settings const& settings) {
  auto const whole = [&](std::string_view key) { return static_cast<double>(settings.integer(key)); };
  RuleSettings values;
  values.highWindKmh = whole("notify_highWindThreshold");
  values.airQualityLevel = whole("notify_airQualityThreshold");
  values.govAlerts = settings.boolean("notify_govAlerts");
  values.govAlertLevel = levelAt(settings, "notify_govAlertLevel");
  values.travelAdvisoryLevel = levelAt(settings, "notify_travelAdvisoryLevel");
  values.fireRadiusKm = whole("notify_fireRadius");
  values.earthquakeRadiusKm = whole("notify_earthquakeRadius");
  values.earthquakeMagnitude = settings.real("notify_earthquakeMagnitude");
  values.lightningRadiusKm = std::min(whole("notify_lightningRadius"), kMostLightningRadiusKm);
  values.sounds = settings.boolean("notify_sounds");
  values.generatedSummaries = settings.boolean("appleIntelligence");
  values.everyPlace = settings.boolean("notify_everyPlace");
  values.quiet = quietHoursOf(settings);
  values.mutes = parseMutes(settings.text("notify_mutedKinds"));
  if (auto const until = parseIso8601(settings.text("notify_snoozedUntil"))) values.snoozedUntil = *until;
  return values;
}

}  // namespace nimbara
