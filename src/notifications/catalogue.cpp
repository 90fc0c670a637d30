#include "notifications/catalogue.h"

#include "notifications/daily_rules.h"
#include "notifications/hazard_rules.h"
#include "notifications/rule_constants.h"
#include "notifications/weather_rules.h"

#include <algorithm>

namespace nimbara {

namespace {

using enum RuleInput;
using enum RulePolicy;
using enum RuleReach;

constexpr std::string_view kRainSound = "rain_alert.caf";
constexpr std::string_view kStormSound = "storm_alert.caf";
constexpr std::string_view kFloodSound = "flood_alert.caf";
constexpr std::string_view kCritical = "weather_critical.caf";
constexpr std::string_view kWarning = "weather_warning.caf";

constexpr Rule kCatalogue[] = {
    // Danger first: what a person must hear is told before what is good to know.
    {"tornado_conditions",
     "notify_tornado",
     condition,
     {nwsAlerts, generatedAlerts},
     kCritical,
     &tornado,
     everyPlace,
     cuts::kDangerGap},
    {.stem = "gov_",
     .setting = "notify_govAlerts",
     .policy = instance,
     .inputs = {govAlerts},
     .sound = kWarning,
     .evaluate = &officialWarnings,
     .reach = everyPlace,
     .followsEvents = true},
    {"nws_severe_thunderstorm",
     "notify_severe",
     condition,
     {nwsAlerts},
     kStormSound,
     &nwsSevereThunderstorm,
     everyPlace,
     cuts::kDangerGap},
    {"nws_flood",
     "notify_flood",
     condition,
     {nwsAlerts},
     kFloodSound,
     &nwsFlood,
     everyPlace,
     cuts::kSpellGap},
    {"earthquake_",
     "notify_earthquakes",
     instance,
     {earthquakes},
     kWarning,
     &nimbara::earthquakes,
     everyPlace},

    {"severe_weather",
     "notify_severe",
     condition,
     {generatedAlerts},
     kStormSound,
     &severeWeather,
     selectedPlace,
     cuts::kSpellGap},
    {"storm", "notify_storm", condition, {hourly}, kStormSound, &storm, selectedPlace, cuts::kSpellGap},
    {"flood", "notify_flood", condition, {hourly}, kFloodSound, &flood, selectedPlace, cuts::kSpellGap},
    {"rain", "notify_rain", condition, {hourly}, kRainSound, &heavyRain, selectedPlace, cuts::kSpellGap},
    {"snow", "notify_snow", condition, {hourly}, kRainSound, &heavySnow, selectedPlace, cuts::kSpellGap},
    {"rain_start",
     "notify_rainStart",
     condition,
     {hourly},
     kRainSound,
     &rainStart,
     selectedPlace,
     cuts::kSpellGap},
    {"rain_stop",
     "notify_rainStop",
     condition,
     {hourly},
     kRainSound,
     &rainStop,
     selectedPlace,
     cuts::kSpellGap},
    {"snow_start",
     "notify_snowStart",
     condition,
     {hourly},
     kRainSound,
     &snowStart,
     selectedPlace,
     cuts::kSpellGap},
    {"snow_stop",
     "notify_snowStop",
     condition,
     {hourly},
     kRainSound,
     &snowStop,
     selectedPlace,
     cuts::kSpellGap},
    {"high_wind",
     "notify_highWind",
     condition,
     {hourly},
     kRainSound,
     &highWind,
     selectedPlace,
     cuts::kSpellGap},
    {"temp_drop",
     "notify_tempDrop",
     condition,
     {hourly},
     kWarning,
     &temperatureDrop,
     selectedPlace,
     cuts::kDayGap},
    {"temp_rise",
     "notify_tempIncrease",
     condition,
     {hourly},
     kWarning,
     &temperatureRise,
     selectedPlace,
     cuts::kDayGap},
    {"uv_high", "notify_uvHigh", condition, {hourly}, "uv_high.caf", &highUv, selectedPlace, cuts::kDayGap},

    {.stem = "umbrella_reminder",
     .setting = "notify_umbrellaReminder",
     .policy = daily,
     .inputs = {hourly},
     .sound = kRainSound,
     .evaluate = &umbrellaReminder,
     .hourSetting = "notify_umbrellaHour"},
    {.stem = "uv_daily_reminder",
     .setting = "notify_uvDailyReminder",
     .policy = daily,
     .inputs = {hourly},
     .sound = "uv_high.caf",
     .evaluate = &uvReminder,
     .hourSetting = "notify_uvReminderHour"},
    {"beach_time", "notify_beachTime", daily, {hourly}, "uv_high.caf", &beachTime},
    {.stem = "morning_summary",
     .setting = "notify_morningSummary",
     .policy = daily,
     .inputs = {hourly},
     .sound = "morning_summary.caf",
     .evaluate = &morningSummary,
     .hourSetting = "notify_morningHour"},
    {.stem = "evening_summary",
     .setting = "notify_eveningSummary",
     .policy = daily,
     .inputs = {hourly},
     .sound = "evening_summary.caf",
     .evaluate = &eveningSummary,
     .hourSetting = "notify_eveningHour"},
};

constexpr bool stemsAreUnique() {
  for (std::size_t i = 0; i < std::size(kCatalogue); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      if (kCatalogue[i].stem == kCatalogue[j].stem) return false;
    }
  }
  return true;
}
static_assert(stemsAreUnique());
static_assert(std::ranges::all_of(kCatalogue, [](Rule const& rule) {
  return !rule.stem.empty() && !rule.setting.empty() && !rule.sound.empty() && rule.evaluate != nullptr;
}));

}  // namespace

std::span<Rule const> ruleCatalogue() {
  return kCatalogue;
}

Rule const* ruleOf(std::string_view identifier) {
  Rule const* best = nullptr;
  for (Rule const& rule : kCatalogue) {
    bool const isLonger = best == nullptr || rule.stem.size() > best->stem.size();
    if (isLonger && identifier.starts_with(rule.stem)) best = &rule;
  }
  return best;
}

}  // namespace nimbara
