#include "notifications/custom/condition_kinds.h"
#include "notifications/custom/custom_rule_evaluation.h"
#include "notifications/custom/custom_rule_text.h"
#include "notifications/custom_notification.h"
#include "notifications/engine/notification_state.h"
#include "support/instants.h"
#include "support/memory_settings_store.h"
#include "support/rules.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;
using Operator = ConditionOperator;
using Type = ConditionType;
using Outcome = CustomOutcome;

// A Saturday.
constexpr char kNow[] = "2026-11-21T09:20:00Z";
constexpr char kRuleJson[] =
    R"({"id":"00000000-0000-4000-8000-000000000001","title":"Gusty","isEnabled":true,"checkHour":7,)"
    R"("conditionType":"windGust","conditionOperator":"above","threshold":50,"lookaheadHours":6,)"
    R"("locationID":"00000000-0000-4000-8000-0000000000aa","scheduledDays":["monday","wednesday"]})";

CustomNotification ruleOf(Type type, Operator comparison, double threshold, int lookahead = 0) {
  CustomNotification rule;
  rule.id = Uuid::random();
  rule.title = "Mine";
  rule.conditionType = type;
  rule.conditionOperator = comparison;
  rule.threshold = threshold;
  rule.lookaheadHours = lookahead;
  rule.scheduledDays = EnumSet<DayOfWeek>::all();
  return rule;
}

/// The rule of `kRuleJson` with one of its parts written otherwise.
std::string changed(std::string_view part, std::string_view by) {
  std::string json = kRuleJson;
  auto const found = json.find(part);
  EXPECT_NE(found, std::string::npos) << part;
  return json.replace(found, part.size(), by);
}

TEST(CustomNotifications, KeepTheirFileFormat) {
  std::string const text = "[" + std::string(kRuleJson) + "]";
  auto const list = parseCustomNotifications(text);
  ASSERT_TRUE(list) << list.error();
  ASSERT_EQ(list->rules.size(), 1);
  EXPECT_EQ(list->rules.front().identifier(), "custom_00000000-0000-4000-8000-000000000001");
  EXPECT_EQ(list->rules.front().scheduledDays, (EnumSet{DayOfWeek::monday, DayOfWeek::wednesday}));
  EXPECT_EQ(encodeCustomNotifications(*list), text);
  auto const placeless = parseCustomNotifications(
      "[" + changed(R"("locationID":"00000000-0000-4000-8000-0000000000aa",)", "") + "]");
  EXPECT_EQ(placeless->rules.front().locationID, std::nullopt);
}

TEST(CustomNotifications, AreReadAgainWhateverTheThreshold) {
  for (double const threshold : {-0.0, 0.1, 5e-324, 9223372036854775808.0, 18446744073709551616.0,
                                 123456789012345680000.0, -9223372036854777856.0, 1e22, 1.5e300}) {
    auto const rule = ruleOf(Type::windGust, Operator::above, threshold);
    auto const again = parseCustomNotifications(encodeCustomNotifications({{rule}, {}, {}}));
    ASSERT_TRUE(again) << threshold << ": " << again.error();
    EXPECT_EQ(again->rules, std::vector{rule}) << threshold;
  }
}

TEST(CustomNotifications, OneBadRuleSpoilsNoOther) {
  for (std::string const& bad : {
           changed("windGust", "windgust"),
           changed("\"above\"", "\"equal\""),
           changed("wednesday", "wed"),
           changed("\"wednesday\"", "3"),
           changed("\"checkHour\":7", "\"checkHour\":24"),
           changed("\"checkHour\":7", "\"checkHour\":-2"),
           changed("\"lookaheadHours\":6", "\"lookaheadHours\":-1"),
           changed("\"lookaheadHours\":6", "\"lookaheadHours\":241"),
           changed("\"lookaheadHours\":6", "\"lookaheadHours\":1e300"),
           changed("\"threshold\":50", "\"threshold\":\"50\""),
           changed("\"threshold\":50,", ""),
           changed("00000000-0000-4000-8000-000000000001", "7"),
           std::string("null"),
           std::string("[[]]"),
       }) {
    auto const list = parseCustomNotifications("[" + bad + "," + kRuleJson + "]");
    ASSERT_TRUE(list) << bad;
    EXPECT_EQ(list->rules.size(), 1) << bad;
    EXPECT_EQ(list->warnings.size(), 1) << bad;
    auto const again = parseCustomNotifications(encodeCustomNotifications(*list));
    ASSERT_TRUE(again) << bad;
    EXPECT_EQ(again->unread, list->unread) << "what is not understood is kept";
  }
}

TEST(CustomNotifications, RefuseWhatIsNoList) {
  for (std::string_view const text : {"", "{}", "7", "[", "[{]", "\"[]\"", "nonsense"}) {
    EXPECT_FALSE(parseCustomNotifications(text)) << text;
  }
}

struct Stored {
  SettingsRegistry registry{notificationSettings()};
  test::MemorySettingsStore store{registry};
  NotificationState state{store};

  std::string text() { return store.settings().settings.text(kCustomNotificationsKey); }
};

TEST(NotificationState, SavesEachChangeAtOnce) {
  Stored held;
  CustomNotification rule = ruleOf(Type::temperature, Operator::below, 0);
  ASSERT_TRUE(held.state.add(rule));
  EXPECT_EQ(held.text(), "[" + encodeJson(rule) + "]");
  ASSERT_TRUE(held.state.setEnabled(rule.id, false));
  EXPECT_NE(held.text().find("\"isEnabled\":false"), std::string::npos);
  rule.title = "Frost";
  ASSERT_TRUE(held.state.edit(rule));
  EXPECT_EQ(held.text(), "[" + encodeJson(rule) + "]");
  ASSERT_TRUE(held.state.remove(rule.id));
  EXPECT_EQ(held.text(), "[]");
}

TEST(NotificationState, RefusesWithoutLoss) {
  Stored held;
  CustomNotification const rule = ruleOf(Type::temperature, Operator::below, 0);
  ASSERT_TRUE(held.state.add(rule));
  std::string const before = held.text();
  EXPECT_FALSE(held.state.add(rule)) << "its identifier is taken";
  EXPECT_FALSE(held.state.remove(Uuid::random()));
  EXPECT_FALSE(held.state.setEnabled(Uuid::random(), true));
  CustomNotification impossible = rule;
  impossible.checkHour = 24;
  EXPECT_FALSE(held.state.edit(impossible));
  EXPECT_EQ(held.text(), before);
}

TEST(NotificationState, KeepsWhatItCannotRead) {
  Stored held;
  std::string const foreign = changed("windGust", "moonlight");
  ASSERT_TRUE(held.store.set(kCustomNotificationsKey, "[" + foreign + "]"));
  CustomNotification const rule = ruleOf(Type::snow, Operator::any, 0);
  ASSERT_TRUE(held.state.add(rule));
  ASSERT_TRUE(held.state.remove(rule.id));
  EXPECT_EQ(held.text(), "[" + foreign + "]");
}

TEST(NotificationState, NeverWritesOverATextThatIsNoList) {
  Stored held;
  auto const broken = [](SettingValues const&) -> Result<StoreChanges, StoreError> {
    return StoreChanges{{std::string(kCustomNotificationsKey), "[{"}};
  };
  ASSERT_TRUE(held.store.update(StoreArea::settings, broken));
  auto const refused = held.state.add(ruleOf(Type::snow, Operator::any, 0));
  ASSERT_FALSE(refused);
  EXPECT_NE(refused.error().message.find("settings reset customNotifications"), std::string::npos);
}

TEST(NotificationState, DisablesRulesOfADeletedPlace) {
  Stored held;
  Uuid const kept = Uuid::random();
  CustomNotification orphan = ruleOf(Type::snow, Operator::any, 0);
  orphan.locationID = Uuid::random();
  CustomNotification settled = ruleOf(Type::snow, Operator::any, 0);
  settled.locationID = kept;
  CustomNotification const roaming = ruleOf(Type::snow, Operator::any, 0);
  for (CustomNotification const& rule : {orphan, settled, roaming}) ASSERT_TRUE(held.state.add(rule));
  auto const after = held.state.disableWithoutPlace(std::vector{kept});
  ASSERT_TRUE(after);
  EXPECT_FALSE(after->rules[0].isEnabled);
  EXPECT_TRUE(after->rules[1].isEnabled);
  EXPECT_TRUE(after->rules[2].isEnabled);
}

TEST(NotificationState, FindsARuleByTheBeginningOfItsIdentifier) {
  std::vector<CustomNotification> rules(2);
  rules[0].id = *Uuid::parse("ab000000-0000-4000-8000-000000000001");
  rules[1].id = *Uuid::parse("ab100000-0000-4000-8000-000000000001");
  EXPECT_EQ(findRule(rules, "AB0")->id, rules[0].id);
  EXPECT_FALSE(findRule(rules, "ab")) << "two begin so";
  EXPECT_FALSE(findRule(rules, ""));
  EXPECT_FALSE(findRule(rules, "b"));
}

struct TextRow {
  Type type;
  Operator comparison;
  double threshold;
  int lookahead;
  char const* metric;
  char const* imperial;
};

TEST(CustomRuleTexts, DescribeInTheUsersUnits) {
  for (TextRow const& row : {
           TextRow{Type::windGust, Operator::above, 50, 6, "Wind gust above 50.0km/h in the next 6 hours",
                   "Wind gust above 31.1mph in the next 6 hours"},
           {Type::temperature, Operator::below, 0, 0, "Temperature below 0.0°C now",
            "Temperature below 32.0°F now"},
           {Type::precipitation, Operator::above, 5, 1, "Precipitation above 5.0mm in the next hour",
            "Precipitation above 0.20 in in the next hour"},
           {Type::pressure, Operator::below, 1000, 12, "Pressure below 1000.0hPa in the next 12 hours",
            "Pressure below 29.53 inHg in the next 12 hours"},
           {Type::visibility, Operator::below, 10, 2, "Visibility below 10.0km in the next 2 hours",
            "Visibility below 6.2mi in the next 2 hours"},
           {Type::humidity, Operator::above, 70, 0, "Humidity above 70% now", "Humidity above 70% now"},
           {Type::uvIndex, Operator::above, 6, 0, "UV index above 6 now", "UV index above 6 now"},
           {Type::snow, Operator::any, 0, 24, "Snow in the next 24 hours", "Snow in the next 24 hours"},
           {Type::airQuality, Operator::above, 35, 24, "PM2.5 above 35.0µg/m³ in the next 24 hours",
            "PM2.5 above 35.0µg/m³ in the next 24 hours"},
           {Type::rainWithin, Operator::below, 30, 0, "Rain or snow within 30 minutes",
            "Rain or snow within 30 minutes"},
           {Type::stationTemperature, Operator::below, 0, 24, "Temperature at your station below 0.0°C now",
            "Temperature at your station below 32.0°F now"},
           {Type::earthquake, Operator::any, 0, 0, "Earthquake nearby", "Earthquake nearby"},
           {Type::earthquake, Operator::above, 4.5, 0, "Earthquake nearby, magnitude above 4.5",
            "Earthquake nearby, magnitude above 4.5"},
       }) {
    CustomNotification const rule = ruleOf(row.type, row.comparison, row.threshold, row.lookahead);
    EXPECT_EQ(ruleDescription(rule, Units::metric(), test::englishTexts()), row.metric);
    EXPECT_EQ(ruleDescription(rule, Units::imperial(), test::englishTexts()), row.imperial);
  }
}

TEST(CustomRuleTexts, OtherUnitsOfWindAndPressure) {
  Units units;
  units.wind = WindUnit::ms;
  units.pressure = PressureUnit::mmHg;
  Texts const& texts = test::englishTexts();
  EXPECT_EQ(conditionValueText(ConditionUnit::kmh, 36, units, texts), "10.0m/s");
  EXPECT_EQ(conditionValueText(ConditionUnit::hPa, 1000, units, texts), "750.1mmHg");
  units.wind = WindUnit::knots;
  EXPECT_EQ(conditionValueText(ConditionUnit::kmh, 100, units, texts), "54.0knots");
  EXPECT_EQ(conditionDifferenceText(ConditionUnit::celsius, 5, Units::imperial(), texts), "9.0°F")
      << "a difference has no freezing point";
}

TEST(CustomRuleTexts, TellTheSchedule) {
  Texts const& texts = test::englishTexts();
  CustomNotification rule = ruleOf(Type::snow, Operator::any, 0);
  EXPECT_EQ(ruleSchedule(rule, texts), "Every day, as soon as it is forecast");
  rule.checkHour = 0;
  EXPECT_EQ(ruleSchedule(rule, texts), "Every day at 12 AM");
  rule.checkHour = 17;
  rule.scheduledDays.erase(DayOfWeek::sunday);
  EXPECT_EQ(ruleSchedule(rule, texts), "Mon, Tue, Wed, Thu, Fri, Sat at 5 PM");
  rule.checkHour = CustomNotification::kImmediately;
  rule.scheduledDays = {DayOfWeek::saturday, DayOfWeek::sunday};
  EXPECT_EQ(ruleSchedule(rule, texts), "Sun, Sat, as soon as it is forecast");
  rule.scheduledDays = {};
  EXPECT_EQ(ruleSchedule(rule, texts), "Never");
}

TEST(CustomRuleTexts, HaveWordsForEveryKind) {
  for (auto const& [language, name] : Texts::languages()) {
    Texts const texts = Texts::load(language);
    for (ConditionKind const& kind : conditionKinds()) {
      EXPECT_TRUE(texts.translates("customnotif.type." + std::string(enumName(kind.type)))) << language;
    }
    for (std::size_t i = 0; i < enumNames<DayOfWeek>.size(); ++i) {
      EXPECT_TRUE(texts.translates(weekdayKey(static_cast<DayOfWeek>(i)))) << language;
    }
    for (std::string_view const outcome : enumNames<CustomOutcome>) {
      EXPECT_TRUE(texts.translates("customnotif.outcome." + std::string(outcome))) << language;
    }
  }
}

using Change = std::function<void(WeatherData&)>;

CustomEvaluation evaluated(CustomNotification const& rule, Change const& change = {},
                           std::string const& now = kNow) {
  return evaluateCustomRule(rule, test::ruleInputs(at(now), change), {}, true);
}

/// The hour at `index` has `value` of gusts.
Change gusts(std::size_t index, double value) {
  return [=](WeatherData& data) { data.allHourly.at(index).windGustKmph = value; };
}

TEST(CustomRuleEvaluation, LooksAtThePresentHourAndThoseAhead) {
  auto const rule = ruleOf(Type::windGust, Operator::above, 50, 6);
  EXPECT_EQ(evaluated(rule, gusts(6, 50)).outcome, Outcome::doesNotHold) << "equal is not above";
  CustomEvaluation const last = evaluated(rule, gusts(6, 50.5));
  EXPECT_TRUE(last.holds());
  EXPECT_EQ(last.at, at("2026-11-21T15:00:00Z"));
  EXPECT_DOUBLE_EQ(*last.margin, 0.5);
  EXPECT_FALSE(evaluated(rule, gusts(7, 99)).holds()) << "that hour is beyond the span";
  EXPECT_TRUE(evaluated(rule, gusts(6, 51), "2026-11-21T09:00:00Z").holds()) << "on the stroke of the hour";
  EXPECT_TRUE(evaluated(rule, gusts(0, 51)).isNow);
}

TEST(CustomRuleEvaluation, NothingAheadMeansThePresentAlone) {
  auto const rule = ruleOf(Type::temperature, Operator::below, 0);
  auto const laterFrost = [](WeatherData& data) { data.allHourly[1].tempC = -5; };
  EXPECT_FALSE(evaluated(rule, laterFrost).holds());
  auto const frost = [](WeatherData& data) { data.current.tempC = -0.1; };
  CustomEvaluation const found = evaluated(rule, frost);
  EXPECT_TRUE(found.holds()) << "the reading counts, not the hour's entry";
  EXPECT_TRUE(found.isNow);
  auto const zero = [](WeatherData& data) { data.current.tempC = 0; };
  EXPECT_FALSE(evaluated(rule, zero).holds()) << "equal is not below";
}

TEST(CustomRuleEvaluation, TellsWhatCameNearestWhenNothingHolds) {
  CustomEvaluation const found = evaluated(ruleOf(Type::windGust, Operator::above, 50, 6), gusts(3, 44));
  EXPECT_EQ(found.outcome, Outcome::doesNotHold);
  EXPECT_EQ(found.value, 44);
  EXPECT_EQ(found.margin, -6);
  EXPECT_EQ(found.at, at("2026-11-21T12:00:00Z"));
}

struct EventRow {
  Type type;
  WeatherConditionCode condition;
  int chance;
  bool holds;
};

TEST(CustomRuleEvaluation, KnowsEventsByConditionOrChance) {
  using enum WeatherConditionCode;
  for (EventRow const& row : {EventRow{Type::snow, lightSnow, 0, true},
                              {Type::snow, lightRain, 49, false},
                              {Type::snow, lightRain, 50, true},
                              {Type::thunder, thunderyShowers, 0, true},
                              {Type::thunder, heavyRain, 49, false},
                              {Type::fog, WeatherConditionCode::fog, 0, true},
                              {Type::fog, cloudy, 49, false},
                              {Type::fog, cloudy, 50, true}}) {
    auto const change = [&](WeatherData& data) {
      HourlyForecast& hour = data.allHourly[2];
      hour.condition = row.condition;
      hour.chanceOfSnow = hour.chanceOfFog = hour.chanceOfThunder = row.chance;
    };
    EXPECT_EQ(evaluated(ruleOf(row.type, Operator::any, 0, 3), change).holds(), row.holds)
        << enumName(row.type) << " " << row.chance;
  }
}

TEST(CustomRuleEvaluation, ADetailThatIsMissingIsNoZero) {
  auto const bare = [](WeatherData& data) {
    data.current.availableDetailFields = DetailFields{};
    for (HourlyForecast& hour : data.allHourly) hour.availableDetailFields = DetailFields{};
  };
  for (Type const type :
       {Type::humidity, Type::dewPoint, Type::uvIndex, Type::cloudCover, Type::visibility, Type::pressure}) {
    for (int const lookahead : {0, 6}) {
      EXPECT_EQ(evaluated(ruleOf(type, Operator::below, 5, lookahead), bare).outcome, Outcome::noDetail)
          << enumName(type) << " " << lookahead;
    }
  }
}

struct DueRow {
  char const* now;
  int checkHour;
  bool isEnabled;
  EnumSet<DayOfWeek> days;
  std::optional<Outcome> reason;
};

TEST(CustomRuleEvaluation, RunsOnItsDaysFromItsHourOn) {
  EnumSet<DayOfWeek> const saturday{DayOfWeek::saturday};
  for (DueRow const& row : {
           DueRow{kNow, 9, true, saturday, {}},
           {kNow, 10, true, saturday, Outcome::notYet},
           {"2026-11-21T09:59:59Z", 10, true, saturday, Outcome::notYet},
           {"2026-11-21T10:00:00Z", 10, true, saturday, {}},
           {"2026-11-21T23:59:00Z", 7, true, saturday, {}},  // a late pass counts on its day
           {"2026-11-22T00:00:00Z", 7, true, saturday, Outcome::notToday},
           {kNow, CustomNotification::kImmediately, true, saturday, {}},
           {kNow, 9, false, saturday, Outcome::disabled},
           {kNow, 9, true, {}, Outcome::notToday},
       }) {
    CustomNotification rule = ruleOf(Type::snow, Operator::any, 0);
    rule.checkHour = row.checkHour;
    rule.isEnabled = row.isEnabled;
    rule.scheduledDays = row.days;
    EXPECT_EQ(reasonNotDue(rule, test::ruleInputs(at(row.now)), true), row.reason) << row.now;
  }
}

TEST(CustomRuleEvaluation, TheDayIsThePlaces) {
  CustomNotification rule = ruleOf(Type::snow, Operator::any, 0);
  rule.scheduledDays = {DayOfWeek::sunday};
  RuleInputs inputs = test::ruleInputs(at("2026-11-21T20:00:00Z"));
  EXPECT_EQ(reasonNotDue(rule, inputs, true), Outcome::notToday);
  inputs.calendar = test::zone("Asia/Tokyo");
  EXPECT_EQ(reasonNotDue(rule, inputs, true), std::nullopt);
}

TEST(CustomRuleEvaluation, SaysWhyItKnowsNothing) {
  auto const wind = ruleOf(Type::windGust, Operator::above, 50, 6);
  RuleInputs inputs;
  inputs.now = at(kNow);
  inputs.texts = &test::englishTexts();
  EXPECT_EQ(evaluateCustomRule(wind, inputs, {}, true).outcome, Outcome::noForecast);
  EXPECT_EQ(evaluateCustomRule(ruleOf(Type::windGust, Operator::above, 50), inputs, {}, true).outcome,
            Outcome::noForecast);
  EXPECT_EQ(evaluateCustomRule(ruleOf(Type::earthquake, Operator::any, 0), inputs, {}, true).outcome,
            Outcome::feedFailed);
  EXPECT_EQ(evaluateCustomRule(ruleOf(Type::airQuality, Operator::above, 0), inputs, {}, true).outcome,
            Outcome::feedFailed);
  EXPECT_EQ(evaluateCustomRule(wind, test::ruleInputs(at(kNow)), {}, false).outcome, Outcome::placeDeleted);
}

TEST(CustomRuleEvaluation, ReadsFineDust) {
  RuleInputs inputs = test::ruleInputs(at(kNow));
  AirQualityForecast forecast;
  forecast.hours = {{at("2026-11-21T08:00:00Z"), 99},
                    {at("2026-11-21T09:00:00Z"), {}},
                    {at("2026-11-21T11:00:00Z"), 36},
                    {at("2026-11-21T12:00:00Z"), 80}};
  inputs.airQuality = InputReading<AirQualityForecast>::of(std::move(forecast));
  CustomEvaluation const found =
      evaluateCustomRule(ruleOf(Type::airQuality, Operator::above, 35, 2), inputs, {}, true);
  EXPECT_TRUE(found.holds());
  EXPECT_EQ(found.value, 36) << "neither the hour that is over nor one beyond the span";
  auto const now = evaluateCustomRule(ruleOf(Type::airQuality, Operator::above, 35), inputs, {}, true);
  EXPECT_EQ(now.outcome, Outcome::noForecast) << "the present hour has no value";
}

TEST(CustomRuleEvaluation, FeelsEarthquakesWithinTheRadius) {
  EarthquakeEvent near;
  near.id = "near";
  near.magnitude = 4.5;
  near.place = "10 km S of Testville";
  near.time = at("2026-11-21T08:00:00Z");
  near.latitude = 38.6;
  near.longitude = -9.1;
  EarthquakeEvent far = near;
  far.magnitude = 7;
  far.latitude = 45;
  RuleInputs inputs = test::ruleInputs(at(kNow));
  inputs.earthquakes = InputReading<std::vector<EarthquakeEvent>>::of({far, near});
  RuleSettings settings;
  auto const holds = [&](Operator comparison, double threshold) {
    return evaluateCustomRule(ruleOf(Type::earthquake, comparison, threshold), inputs, settings, true)
        .holds();
  };
  EXPECT_TRUE(holds(Operator::above, 4.4));
  EXPECT_FALSE(holds(Operator::above, 4.5));
  EXPECT_TRUE(holds(Operator::any, 0));
  settings.earthquakeRadiusKm = 5;
  EXPECT_FALSE(holds(Operator::any, 0));
}

TEST(CustomRuleEvaluation, TellsTheValueFound) {
  auto const body = [](CustomNotification const& rule, Change const& change) {
    RuleInputs const inputs = test::ruleInputs(at(kNow), change);
    return customRuleBody(rule, evaluateCustomRule(rule, inputs, {}, true), inputs);
  };
  EXPECT_EQ(body(ruleOf(Type::windGust, Operator::above, 50, 6), gusts(6, 62)),
            "Wind gust above 50.0km/h in the next 6 hours: 62.0km/h around 3 PM");
  EXPECT_EQ(body(ruleOf(Type::temperature, Operator::above, 10), {}),
            "Temperature above 10.0°C now: now 15.0°C");
  EXPECT_EQ(body(ruleOf(Type::snow, Operator::any, 0, 6),
                 [](WeatherData& data) { data.allHourly[2].condition = WeatherConditionCode::heavySnow; }),
            "Snow in the next 6 hours: around 11 AM");
}

}  // namespace
}  // namespace nimbara
