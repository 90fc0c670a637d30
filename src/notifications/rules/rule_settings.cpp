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
    {"notify_rain", true, "Heavy rain is coming"},
    {"notify_snow", true, "Snow is coming"},
    {"notify_rainStart", false, "Rain will start soon"},
    {"notify_rainStop", false, "Rain will stop soon"},
    {"notify_snowStart", false, "Snow will start soon"},
    {"notify_snowStop", false, "Snow will stop soon"},
    {"notify_severe", true, "Severe weather is coming"},
    {"notify_storm", false, "A thunderstorm is coming"},
    {"notify_flood", true, "Floods and flooding rain"},
    {"notify_tornado", true, "Tornado warnings and conditions"},
    {"notify_highWind", false, "High wind"},
    {.key = "notify_highWindThreshold",
     .byDefault = std::int64_t{60},
     .explanation = "Wind or gust that counts as high, in km/h",
     .minimum = 1,
     .maximum = 400},
    {"notify_umbrellaReminder", false, "Each day: bring an umbrella"},
    {"notify_uvDailyReminder", false, "Each day: protect yourself from the sun"},
    hourOf("notify_umbrellaHour", 7, "Hour of the umbrella reminder"),
    hourOf("notify_uvReminderHour", 8, "Hour of the UV reminder"),
    {"notify_tempDrop", false, "The temperature will drop"},
    {"notify_tempIncrease", false, "The temperature will rise"},
    {"notify_uvHigh", false, "The UV index is high"},
    {"notify_airQuality", false, "Fine dust will reach your level"},
    {.key = "notify_airQualityThreshold",
     .byDefault = std::int64_t{35},
     .explanation = "That level: PM2.5 in µg/m³",
     .minimum = 1,
     .maximum = 1000},
    {"notify_beachTime", false, "A good time for the beach"},
    {"notify_morningSummary", false, "Each morning: the day in one sentence"},
    {"notify_eveningSummary", false, "Each evening: the night and tomorrow"},
    hourOf("notify_morningHour", 7, "Hour of the morning summary"),
    hourOf("notify_eveningHour", 18, "Hour of the evening summary"),
    {"liveActivityEnabled", true, "Show the present weather while it changes"},
    {"notify_govAlerts", true, "Official warnings"},
    {"notify_govAlertLevel", "medium", "Lowest level of official warnings", enumNames<NotificationLevel>},
    {"notify_travelAdvisory", true, "Travel advisories for your places' countries"},
    {"notify_travelAdvisoryLevel", "medium", "Lowest level of travel advisories",
     enumNames<NotificationLevel>},
    {"notify_hurricane_atlantic", false, "Tropical cyclones of the Atlantic"},
    {"notify_hurricane_easternPacific", false, "Tropical cyclones of the Eastern Pacific"},
    {"notify_hurricane_centralPacific", false, "Tropical cyclones of the Central Pacific"},
    {"notify_hurricane_westernPacific", false, "Tropical cyclones of the Western Pacific"},
    {"notify_earthquakes", false, "Earthquakes near your places"},
    {"notify_fires", false, "Wildfires near your places"},
    {.key = "notify_fireRadius",
     .byDefault = std::int64_t{50},
     .explanation = "How near a wildfire must be, in km",
     .minimum = 1,
     .maximum = 1000},
    {.key = "notify_earthquakeRadius",
     .byDefault = std::int64_t{250},
     .explanation = "How near an earthquake must be, in km",
     .minimum = 1,
     .maximum = 20'000},
    {.key = "notify_earthquakeMagnitude",
     .byDefault = 4.0,
     .explanation = "Lowest magnitude of an earthquake",
     .minimum = 0,
     .maximum = 10},
    {"notify_lightning", true, "Lightning near you"},
    {.key = "notify_lightningRadius",
     .byDefault = std::int64_t{20},
     .explanation = "How near lightning must be, in km; never farther than 50",
     .minimum = 1,
     .maximum = 1000},
    {"notify_sounds", true, "Each kind of notification has its own sound"},

    {"appleIntelligence", false, "A language model on your own machine words the daily summaries"},
    {"languageModelName", "", "What its server calls the model"},

    {"notify_everyPlace", true,
     "Notify of severe weather and danger for all saved places that are not set otherwise"},
    {"notify_quietHours", false, "Nothing rings in the quiet hours"},
    hourOf("notify_quietFrom", 22, "First quiet hour"),
    hourOf("notify_quietUntil", 7, "Hour at which they end"),
    {"notify_quietHoldsCritical", false,
     "The quiet hours, mutes and snoozing hold back even critical warnings"},
    {"notify_mutedKinds", "",
     "Kinds that are not told: identifiers of rules and kinds of warnings, by comma; KIND@MOMENT until then"},
    {.key = "notify_snoozedUntil",
     .byDefault = "",
     .explanation = "Nothing rings until this moment",
     .accepts = &isMomentOrNothing,
     .expected = "a moment like 2026-11-21T18:00:00Z, or nothing"},

    {.key = "customNotifications",
     .byDefault = "[]",
     .explanation = "The rules of your own; see nimbara rules",
     .accepts = &isRuleList,
     .expected = "a JSON list of rules"},

    {"notify_beta_rainbow", false, "A rainbow is likely"},
    {"notify_beta_fogBow", false, "A fog bow is possible"},
    {"notify_beta_aurora", false, "Aurora may be seen"},
    {"notify_beta_staticShock", false, "Dry air makes static shocks"},
    {"notify_beta_spiderBallooning", false, "Spiders take to the air"},
    {"notify_beta_birdMigration", false, "Birds migrate in numbers"},
    {"notify_beta_mosquitoSwarm", false, "Mosquitoes swarm"},
    {"notify_beta_stargazing", false, "The sky is good for stargazing"},
    {"notify_beta_goldenHour", false, "A golden hour worth a photograph"},
    {"notify_beta_frost", false, "Frost in the night"},
    {"notify_beta_outdoorWindow", false, "The best hours to be outside"},
    {"notify_beta_fog", false, "Fog is coming"},
    {"notify_beta_pressureHeadache", false, "The pressure falls fast"},
    {"notify_beta_heatIndex", false, "Humid heat"},
    {"notify_beta_windChill", false, "Wind chill"},
    {"notify_beta_blackIce", false, "Black ice"},
    {"notify_beta_windshieldFrost", false, "Frost on the windshield in the morning"},
    {"notify_beta_mosquito", false, "Mosquitoes are active"},
    {"notify_beta_vitaminD", false, "Minutes of sun for vitamin D"},
    {"notify_beta_heatPumpFreeze", false, "The heat pump will ice up"},
};

/// A moment that cannot be read ends nothing: what somebody muted stays so.
Mute muteOf(std::string_view text) {
  std::size_t const end = text.find('@');
  Mute mute{std::string(trimmed(text.substr(0, end))), {}};
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
