#include "notifications/catalogue.h"

#include "notifications/rules/daily_rules.h"
#include "notifications/rules/hazard_rules.h"
#include "notifications/rules/rule_constants.h"
#include "notifications/rules/weather_rules.h"
#include "notifications/sky/sky_rules.h"

#include <algorithm>

namespace nimbara {

namespace {

using enum RuleInput;
using enum RulePolicy;
using enum PlaceChoice;

constexpr std::string_view kRainSound = "rain_alert.caf";
constexpr std::string_view kStormSound = "storm_alert.caf";
constexpr std::string_view kFloodSound = "flood_alert.caf";
constexpr std::string_view kCritical = "weather_critical.caf";
constexpr std::string_view kWarning = "weather_warning.caf";

constexpr Rule skyRule(std::string_view stem, std::string_view setting, EvaluateRule evaluate,
                       RuleInputSet inputs = {hourly}) {
  return {stem, setting, daily, inputs, "beta_notification.caf", evaluate};
}

template <TropicalBasin basin>
constexpr Rule cycloneRule(std::string_view stem, std::string_view setting) {
  constexpr RuleInput kReports = basin == TropicalBasin::westernPacific ? typhoons : storms;
  return {stem, setting, instance, {kReports}, "hurricane_alert.caf", &tropicalCyclonesOf<basin>};
}

constexpr Rule kCatalogue[] = {
    // Danger first: what a person must hear is sent before what is good to know.
    {"tornado_conditions",
     "notify_tornado",
     condition,
     {nwsAlerts, generatedAlerts},
     kCritical,
     &tornado,
     severe,
     cuts::kDangerGap},
    {.stem = "gov_",
     .setting = "notify_govAlerts",
     .policy = instance,
     .inputs = {govAlerts},
     .sound = kWarning,
     .evaluate = &officialWarnings,
     .reach = official,
     .followsEvents = true,
     .tellsLifting = true},
    {"nws_severe_thunderstorm",
     "notify_severe",
     condition,
     {nwsAlerts},
     kStormSound,
     &nwsSevereThunderstorm,
     official,
     cuts::kDangerGap},
    {"nws_flood", "notify_flood", condition, {nwsAlerts}, kFloodSound, &nwsFlood, official, cuts::kSpellGap},
    {"earthquake_", "notify_earthquakes", instance, {earthquakes}, kWarning, &nimbara::earthquakes, severe},
    {"fire_", "notify_fires", instance, {fires}, kWarning, &nimbara::fires, severe},
    {"lightning_detected",
     "notify_lightning",
     condition,
     {RuleInput::lightning},
     "lightning_alert.caf",
     &nimbara::lightning,
     severe,
     cuts::kStrikeGap},
    cycloneRule<TropicalBasin::atlantic>("hurricane_al", "notify_hurricane_atlantic"),
    cycloneRule<TropicalBasin::easternPacific>("hurricane_ep", "notify_hurricane_easternPacific"),
    cycloneRule<TropicalBasin::centralPacific>("hurricane_cp", "notify_hurricane_centralPacific"),
    cycloneRule<TropicalBasin::westernPacific>("hurricane_wp", "notify_hurricane_westernPacific"),
    {"air_quality_forecast",
     "notify_airQuality",
     condition,
     {RuleInput::airQuality},
     kWarning,
     &nimbara::airQuality,
     everything,
     cuts::kDayGap},
    {.stem = "travel_advisory_",
     .setting = "notify_travelAdvisory",
     .policy = instance,
     .inputs = {advisories},
     .sound = kWarning,
     .evaluate = &travelAdvisories,
     .reach = severe,
     .followsEvents = true},

    {"severe_weather",
     "notify_severe",
     condition,
     {generatedAlerts},
     kStormSound,
     &severeWeather,
     severe,
     cuts::kSpellGap},
    {"storm", "notify_storm", condition, {hourly}, kStormSound, &storm, severe, cuts::kSpellGap},
    {"flood", "notify_flood", condition, {hourly}, kFloodSound, &flood, severe, cuts::kSpellGap},
    {"rain", "notify_rain", condition, {hourly}, kRainSound, &heavyRain, severe, cuts::kSpellGap},
    {"snow", "notify_snow", condition, {hourly}, kRainSound, &heavySnow, severe, cuts::kSpellGap},
    {"rain_start",
     "notify_rainStart",
     condition,
     {hourly},
     kRainSound,
     &rainStart,
     everything,
     cuts::kSpellGap},
    {"rain_stop", "notify_rainStop", condition, {hourly}, kRainSound, &rainStop, everything, cuts::kSpellGap},
    {"snow_start",
     "notify_snowStart",
     condition,
     {hourly},
     kRainSound,
     &snowStart,
     everything,
     cuts::kSpellGap},
    {"snow_stop", "notify_snowStop", condition, {hourly}, kRainSound, &snowStop, everything, cuts::kSpellGap},
    {"high_wind", "notify_highWind", condition, {hourly}, kRainSound, &highWind, severe, cuts::kSpellGap},
    {"temp_drop",
     "notify_tempDrop",
     condition,
     {hourly},
     kWarning,
     &temperatureDrop,
     everything,
     cuts::kDayGap},
    {"temp_rise",
     "notify_tempIncrease",
     condition,
     {hourly},
     kWarning,
     &temperatureRise,
     everything,
     cuts::kDayGap},
    {"uv_high", "notify_uvHigh", condition, {hourly}, "uv_high.caf", &highUv, everything, cuts::kDayGap},

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
     .summary = SummaryKind::morning,
     .hourSetting = "notify_morningHour"},
    {.stem = "evening_summary",
     .setting = "notify_eveningSummary",
     .policy = daily,
     .inputs = {hourly},
     .sound = "evening_summary.caf",
     .evaluate = &eveningSummary,
     .summary = SummaryKind::evening,
     .hourSetting = "notify_eveningHour"},

    // The sky and nature: off until wanted, sent once a day when they become true.
    skyRule("beta_rainbow", "notify_beta_rainbow", &rainbowAhead),
    skyRule("beta_fog_bow", "notify_beta_fogBow", &fogBowAhead),
    skyRule("beta_aurora", "notify_beta_aurora", &auroraOverhead, {hourly, kp}),
    skyRule("beta_static_shock", "notify_beta_staticShock", &staticShockRisk),
    skyRule("beta_spider_ballooning", "notify_beta_spiderBallooning", &spiderBallooning),
    skyRule("beta_bird_migration", "notify_beta_birdMigration", &birdMigration),
    skyRule("beta_mosquito_swarm", "notify_beta_mosquitoSwarm", &mosquitoSwarm),
    skyRule("beta_stargazing_now", "notify_beta_stargazing", &stargazingNow),
    skyRule("beta_stargazing_tonight", "notify_beta_stargazing", &stargazingTonight),
    skyRule("beta_golden_", "notify_beta_goldenHour", &goldenHour),
    skyRule("beta_fro", "notify_beta_frost", &frostTonight),
    skyRule("beta_outdoor", "notify_beta_outdoorWindow", &outdoorWindow, {hourly, govAlerts}),
    skyRule("beta_fog", "notify_beta_fog", &fogAhead),
    skyRule("beta_pressure_headache", "notify_beta_pressureHeadache", &pressureFall),
    skyRule("beta_heat_index", "notify_beta_heatIndex", &humidHeat),
    skyRule("beta_wind_chill", "notify_beta_windChill", &windChill),
    skyRule("beta_black_ice", "notify_beta_blackIce", &blackIceAhead),
    skyRule("beta_windshield_frost", "notify_beta_windshieldFrost", &windshieldFrost),
    skyRule("beta_mosquito", "notify_beta_mosquito", &mosquitoesActive),
    skyRule("beta_vitamin_d", "notify_beta_vitaminD", &vitaminDWindow),
    skyRule("beta_heat_pump_freeze", "notify_beta_heatPumpFreeze", &heatPumpIcing),
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
// Not that each can be evaluated: to g++ with its sanitizers a function's address is no constant.
static_assert(std::ranges::all_of(kCatalogue, [](Rule const& rule) {
  return !rule.stem.empty() && !rule.setting.empty() && !rule.sound.empty();
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
