// All rules, and what they make of forecasts that lack something.
#include "notifications/catalogue.h"

#include "notifications/custom/custom_rule_evaluation.h"
#include "notifications/rules/daily_rules.h"
#include "notifications/rules/weather_rules.h"
#include "notifications/sky/sky_rules.h"
#include "support/rules.h"

#include <gmock/gmock.h>

#include <set>

namespace nimbara {
namespace {

using test::at;
using test::faultsOf;
using testing::IsEmpty;
using Code = WeatherConditionCode;

constexpr char kNow[] = "2026-11-21T09:20:00Z";

/// Nothing was fetched.
RuleInputs bare() {
  RuleInputs inputs;
  inputs.now = at(kNow);
  inputs.texts = &test::englishTexts();
  inputs.place = {"testville", "Testville", "PT", {38.7, -9.1}, true};
  return inputs;
}

/// A provider answered without a single hour.
RuleInputs withEmptyForecast() {
  RuleInputs inputs = bare();
  inputs.weather = std::make_shared<WeatherData const>();
  inputs.readWeather();
  return inputs;
}

/// Every service answered that there is nothing.
RuleInputs withEmptyAnswers() {
  RuleInputs inputs = test::ruleInputs(at(kNow));
  inputs.generatedAlerts = InputReading<std::vector<WeatherAlert>>::of(std::vector<WeatherAlert>{});
  inputs.govAlerts = inputs.generatedAlerts;
  inputs.nwsAlerts = InputReading<std::vector<NWSAlert>>::of(std::vector<NWSAlert>{});
  inputs.earthquakes = InputReading<std::vector<EarthquakeEvent>>::of(std::vector<EarthquakeEvent>{});
  inputs.kp = InputReading<double>::of(1);
  inputs.airQuality = InputReading<AirQualityForecast>::of(AirQualityForecast{});
  inputs.storms = InputReading<std::vector<TropicalStorm>>::of(std::vector<TropicalStorm>{});
  inputs.typhoons = InputReading<std::vector<TropicalStorm>>::of(std::vector<TropicalStorm>{});
  inputs.fires = InputReading<std::vector<FireDetection>>::of(std::vector<FireDetection>{});
  inputs.advisories = InputReading<std::vector<TravelAdvisory>>::of(std::vector<TravelAdvisory>{});
  inputs.lightning = InputReading<std::vector<LightningStrike>>::of(std::vector<LightningStrike>{});
  return inputs;
}

TEST(RuleInputs, KeepNothingOfAForecastThatIsGone) {
  RuleInputs inputs = test::ruleInputs(at(kNow));
  ASSERT_FALSE(inputs.hours.empty());
  ASSERT_TRUE(inputs.present);
  inputs.weather.reset();
  inputs.readWeather();
  EXPECT_TRUE(inputs.hours.empty());
  EXPECT_FALSE(inputs.present);
}

TEST(Catalogue, FindsNothingWhereThereIsNothing) {
  for (Rule const& rule : ruleCatalogue()) {
    for (RuleInputs const& inputs : {bare(), withEmptyForecast()}) {
      Evaluation const found = rule.evaluate(inputs, {});
      EXPECT_THAT(found.findings, IsEmpty()) << rule.stem;
      EXPECT_THAT(faultsOf(found), IsEmpty()) << rule.stem;
    }
  }
}

/// A pass that gets no forecast must not take for over what the rules of the forecast sent before.
TEST(Catalogue, KnowsNothingWithoutAForecast) {
  for (Rule const& rule : ruleCatalogue()) {
    bool const readsForecast =
        rule.inputs.contains(RuleInput::hourly) || rule.inputs.contains(RuleInput::generatedAlerts);
    if (!readsForecast || rule.stem.starts_with("beta_")) continue;
    EXPECT_THAT(rule.evaluate(bare(), {}).measured, IsEmpty()) << rule.stem;
  }
}

TEST(Catalogue, IsCalmOnAMildDay) {
  for (Rule const& rule : ruleCatalogue()) {
    bool const isComfort = rule.stem.starts_with("beta_") || rule.stem.ends_with("_summary");
    Evaluation const found = rule.evaluate(withEmptyAnswers(), {});
    EXPECT_TRUE(isComfort || found.findings.empty()) << rule.stem;
    EXPECT_TRUE(isComfort || found.measured.size() == 1 || found.note == "noDetail") << rule.stem;
  }
}

TEST(Catalogue, IsSwitchedBySettingsThatExist) {
  SettingsRegistry const registry{notificationSettings()};
  Settings const settings(registry);
  for (Rule const& rule : ruleCatalogue()) {
    SettingDefinition const* const gate = registry.find(rule.setting);
    ASSERT_NE(gate, nullptr) << rule.stem;
    EXPECT_TRUE(std::holds_alternative<bool>(gate->byDefault)) << rule.setting;
    if (rule.hourSetting.empty()) continue;
    ASSERT_NE(registry.find(rule.hourSetting), nullptr) << rule.stem;
    EXPECT_GE(settings.integer(rule.hourSetting), 0) << rule.stem;
    EXPECT_EQ(rule.policy, RulePolicy::daily) << rule.stem;
  }
}

/// A setting that no rule reads is a switch without a lamp.
TEST(Catalogue, HasARuleForEverySwitch) {
  std::set<std::string_view> const others{"notify_sounds", "notify_everyPlace", "notify_quietHours",
                                          "notify_quietHoldsCritical", "notify_speakCritical"};
  std::set<std::string_view> read;
  for (Rule const& rule : ruleCatalogue()) read.insert(rule.setting);
  for (SettingDefinition const& definition : notificationSettings()) {
    bool const isSwitch =
        definition.key.starts_with("notify_") && std::holds_alternative<bool>(definition.byDefault);
    if (!isSwitch || others.contains(definition.key)) continue;
    EXPECT_TRUE(read.contains(definition.key)) << definition.key;
  }
}

struct IdentifierRow {
  std::string_view identifier;
  std::string_view stem;  ///< empty: no rule's
};

TEST(Catalogue, KnowsWhoseAnIdentifierIs) {
  for (IdentifierRow const& row : {
           IdentifierRow{"gov_00000000-0000-4000-8000-000000000001", "gov_"},
           {"travel_advisory_PT", "travel_advisory_"},
           {"earthquake_us7000abcd", "earthquake_"},
           {"fire_fire:38.40,-122.65", "fire_"},
           {"hurricane_al092026_new", "hurricane_al"},
           {"hurricane_ep012026_category_4", "hurricane_ep"},
           {"hurricane_cp012026_speed_185", "hurricane_cp"},
           {"hurricane_wp012026_approach", "hurricane_wp"},
           {"air_quality_forecast@38.70,-9.10", "air_quality_forecast"},
           {"lightning_detected@38.70,-9.10", "lightning_detected"},
           {"tornado_conditions", "tornado_conditions"},
           {"nws_flood", "nws_flood"},
           {"flood", "flood"},
           {"rain", "rain"},
           {"rain_start", "rain_start"},
           {"rain_stop", "rain_stop"},
           {"snow_stop@x", "snow_stop"},
           {"storm", "storm"},
           {"temp_drop", "temp_drop"},
           {"uv_high", "uv_high"},
           {"umbrella_reminder", "umbrella_reminder"},
           {"uv_daily_reminder", "uv_daily_reminder"},
           {"evening_summary", "evening_summary"},
           {"beta_mosquito", "beta_mosquito"},
           {"beta_mosquito_swarm", "beta_mosquito_swarm"},
           {"beta_fog_bow", "beta_fog_bow"},
           {"beta_fog", "beta_fog"},
           {"beta_frost_near", "beta_fro"},
           {"beta_golden_sunset", "beta_golden_"},
           {"hurricane_io012026_new", ""},
           {"", ""},
       }) {
    Rule const* const rule = ruleOf(row.identifier);
    EXPECT_EQ(rule == nullptr ? std::string_view() : rule->stem, row.stem) << row.identifier;
  }
}

/// What each choice of a place adds to the one below it.
TEST(Catalogue, KnowsWhatIsDanger) {
  std::map<PlaceChoice, std::set<std::string_view>> reached;
  for (Rule const& rule : ruleCatalogue()) reached[rule.reach].insert(rule.stem);
  EXPECT_EQ(reached[PlaceChoice::nothing], std::set<std::string_view>{});
  EXPECT_EQ(reached[PlaceChoice::official],
            (std::set<std::string_view>{"gov_", "nws_severe_thunderstorm", "nws_flood"}));
  EXPECT_EQ(reached[PlaceChoice::severe],
            (std::set<std::string_view>{"tornado_conditions", "earthquake_", "fire_", "lightning_detected",
                                        "travel_advisory_", "severe_weather", "storm", "flood", "rain",
                                        "snow", "high_wind"}));
}

// June at noon, where mosquitoes fly and rain would be sent.
constexpr char kSummerNoon[] = "2026-06-15T12:20:00Z";

struct Row {
  std::string_view what;
  EvaluateRule rule;
  ForecastValues unknown;
};

TEST(UnknownForecast, IsADetailThatRulesLack) {
  using enum ForecastValue;
  for (Row const& row :
       {Row{"umbrella", umbrellaReminder, {precipitationChance}},
        Row{"rain starts", rainStart, {precipitationChance}},
        Row{"rain stops", rainStop, {precipitationChance}},
        Row{"snow starts", snowStart, {precipitationChance}},
        Row{"heavy rain by chance", heavyRain, {precipitationChance}},
        Row{"heavy rain by amount", heavyRain, {precipitation}}, Row{"flood", flood, {precipitation}},
        Row{"calm air of spiders", spiderBallooning, {windSpeed}},
        Row{"calm air of mosquitoes", mosquitoSwarm, {windSpeed}}}) {
    RuleInputs const known = test::ruleInputs(at(kSummerNoon));
    EXPECT_NE(row.rule(known, {}).note, "noDetail") << row.what;
    RuleInputs const unknown = test::ruleInputs(at(kSummerNoon), [&](WeatherData& data) {
      data.current.unknownValues = row.unknown;
      for (HourlyForecast& hour : data.allHourly) hour.unknownValues = row.unknown;
      for (DailyForecast& day : data.daily) {
        for (HourlyForecast& hour : day.hourly) hour.unknownValues = row.unknown;
      }
    });
    Evaluation const found = row.rule(unknown, {});
    EXPECT_EQ(found.note, "noDetail") << row.what;
    EXPECT_TRUE(found.findings.empty()) << row.what;
  }
}

TEST(UnknownForecast, DoesNotEndTheRain) {
  auto const rainy = [](WeatherData& data) {
    data.current.condition = Code::lightRain;
    for (HourlyForecast& hour : data.allHourly) hour.unknownValues = {ForecastValue::precipitationChance};
  };
  EXPECT_EQ(rainStop(test::ruleInputs(at(kSummerNoon), rainy), {}).note, "noDetail");
}

TEST(UnknownForecast, IsNoSampleOfOwnRules) {
  CustomNotification rule;
  rule.conditionType = ConditionType::precipitation;
  rule.conditionOperator = ConditionOperator::below;
  rule.threshold = 1;
  rule.lookaheadHours = 3;
  rule.scheduledDays = EnumSet<DayOfWeek>::all();
  EXPECT_TRUE(measuredRule(rule, test::ruleInputs(at(kSummerNoon)), {}).holds());
  auto const unknown = test::ruleInputs(at(kSummerNoon), [](WeatherData& data) {
    data.current.unknownValues = ForecastValues::all();
    for (HourlyForecast& hour : data.allHourly) hour.unknownValues = ForecastValues::all();
  });
  EXPECT_EQ(measuredRule(rule, unknown, {}).outcome, CustomOutcome::noDetail);
  rule.lookaheadHours = 0;
  EXPECT_EQ(measuredRule(rule, unknown, {}).outcome, CustomOutcome::noDetail);
}

}  // namespace
}  // namespace nimbara
