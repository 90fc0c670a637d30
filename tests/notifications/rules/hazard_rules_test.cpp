#include "notifications/rules/hazard_rules.h"

#include "base/words/time_words.h"
#include "support/rules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;
using test::bodyOf;
using test::faultsOf;
using test::northOf;
using testing::IsEmpty;

constexpr char kNow[] = "2026-11-21T09:20:00Z";
constexpr Coordinate kHere{38.7, -9.1};
constexpr double kBit = 0.01;

RuleInputs here() {
  return test::ruleInputs(at(kNow));
}

template <class T>
InputReading<T> reading(T value) {
  return InputReading<T>::of(std::move(value));
}

RuleSettings withDefaults(std::function<void(RuleSettings&)> const& change = {}) {
  RuleSettings settings;
  if (change) change(settings);
  return settings;
}

// ---- Official warnings

WeatherAlert warning(AlertSeverity severity) {
  WeatherAlert alert;
  alert.severity = severity;
  alert.title = "Gale Warning";
  alert.message = "Gales.";
  alert.instruction = "Stay in port.";
  alert.kind = WarningKind::wind;
  alert.onset = at("2026-11-21T10:00:00Z");
  alert.expires = at("2026-11-21T20:00:00Z");
  return alert;
}

TEST(OfficialWarnings, AreToldFromTheUsersLevelOn) {
  RuleInputs inputs = here();
  inputs.govAlerts = reading(std::vector{warning(AlertSeverity::critical), warning(AlertSeverity::warning),
                                         warning(AlertSeverity::advisory), warning(AlertSeverity::info)});
  for (auto const level : {NotificationLevel::low, NotificationLevel::medium, NotificationLevel::high,
                           NotificationLevel::critical}) {
    RuleSettings const settings = withDefaults([&](auto& s) { s.govAlertLevel = level; });
    Evaluation const found = officialWarnings(inputs, settings);
    EXPECT_EQ(found.findings.size(), 4 - static_cast<std::size_t>(level));
    EXPECT_THAT(faultsOf(found), IsEmpty());
  }
}

TEST(OfficialWarnings, OnlyNearRingFromWarningUp) {
  for (auto const severity :
       {AlertSeverity::info, AlertSeverity::advisory, AlertSeverity::warning, AlertSeverity::critical}) {
    RuleInputs inputs = here();
    WeatherAlert alert = warning(severity);
    RuleSettings const settings = withDefaults([](auto& s) { s.govAlertLevel = NotificationLevel::low; });
    inputs.govAlerts = reading(std::vector{alert});
    EXPECT_FALSE(officialWarnings(inputs, settings).findings.at(0).isCovered());
    alert.distanceKm = 12;
    inputs.govAlerts = reading(std::vector{alert});
    EXPECT_EQ(officialWarnings(inputs, settings).findings.at(0).quietNote,
              severity < AlertSeverity::warning ? "onlyNear" : "")
        << enumName(severity);
  }
}

TEST(OfficialWarnings, CarryWhatTheOfficeSays) {
  RuleInputs inputs = here();
  WeatherAlert const alert = warning(AlertSeverity::critical);
  inputs.govAlerts = reading(std::vector{alert});
  Finding const finding = officialWarnings(inputs, {}).findings.at(0);
  EXPECT_EQ(finding.identifier, "gov_" + alert.id.text());
  EXPECT_EQ(finding.body, "Gales.\nStay in port.");
  EXPECT_EQ(finding.sound, "weather_critical.caf");
  EXPECT_EQ(finding.kind, "gov:wind");
  EXPECT_EQ(finding.ends, alert.expires);
}

/// An empty list is an answer: the rule looked and found nothing. Only a missing one leaves it in the dark.
TEST(HazardRules, TellNothingNearFromNotChecked) {
  RuleInputs answered = here();
  answered.govAlerts = reading(std::vector<WeatherAlert>{});
  answered.earthquakes = reading(std::vector<EarthquakeEvent>{});
  answered.fires = reading(std::vector<FireDetection>{});
  answered.lightning = reading(std::vector<LightningStrike>{});
  answered.advisories = reading(std::vector<TravelAdvisory>{});
  answered.storms = reading(std::vector<TropicalStorm>{});
  answered.typhoons = reading(std::vector<TropicalStorm>{});
  RuleInputs const silent = here();
  for (EvaluateRule const rule : {&officialWarnings, &earthquakes, &fires, &lightning, &travelAdvisories,
                                  &tropicalCyclonesOf<TropicalBasin::atlantic>}) {
    Evaluation const nothing = rule(answered, {});
    EXPECT_THAT(nothing.findings, IsEmpty());
    EXPECT_FALSE(nothing.measured.empty()) << nothing.note;
    EXPECT_THAT(faultsOf(nothing), IsEmpty());
    Evaluation const unknown = rule(silent, {});
    EXPECT_EQ(unknown.note, "notChecked");
    EXPECT_THAT(unknown.measured, IsEmpty());
  }
  EXPECT_EQ(airQuality(silent, {}).note, "notChecked");
}

TEST(OfficialWarnings, SayWhereAndWhenAndWhatIsGraverNearby) {
  RuleInputs inputs = here();
  WeatherAlert alert = warning(AlertSeverity::advisory);
  alert.message = "Gale Warning affecting 3 areas";
  alert.event = "PT|wind|EMMA_ID:PT001";
  alert.text = "Gale";
  alert.areaDesc = "Hills, Coast, Plain";
  alert.near =
      std::vector<NearArea>{{"Hills", 36, AlertSeverity::critical, "red", at("2026-11-21T22:00:00Z"), {}},
                            {"Plain", 12, AlertSeverity::advisory, "yellow", {}, alert.expires}};
  inputs.govAlerts = reading(std::vector{alert});
  Finding const finding = officialWarnings(inputs, {}).findings.at(0);
  EXPECT_EQ(finding.body, "Coast\nStay in port.") << "neighbours and hours are no part of the event";
  EXPECT_EQ(finding.when, "from 10:00 AM, until 8:00 PM");
  EXPECT_EQ(finding.remark, "More severe near Testville: Hills (36 km: red, from 10:00 PM).");
  EXPECT_FALSE(finding.isNear);
  alert.near.reset();
  alert.areaDesc = std::string(201, 'x');
  inputs.govAlerts = reading(std::vector{alert});
  EXPECT_EQ(officialWarnings(inputs, {}).findings.at(0).body,
            "Gale Warning affecting 3 areas\nStay in port.");
  // A headline of the issuer's says all of it.
  alert.text.reset();
  inputs.govAlerts = reading(std::vector{alert});
  EXPECT_EQ(officialWarnings(inputs, {}).findings.at(0).body,
            "Gale Warning affecting 3 areas\nStay in port.");
  EXPECT_EQ(officialWarnings(inputs, {}).findings.at(0).when, "");
}

TEST(OfficialWarnings, ThatNobodyCanPlaceNameTheirAreasOrTheCountry) {
  RuleInputs inputs = here();  // in Portugal
  inputs.govAlerts = reading(std::vector<WeatherAlert>{});
  for (auto const& [area, first] :
       {std::pair{"Serra, Vale", "In effect for parts of Portugal that could not be located: Serra, Vale."},
        {"", "In effect for Portugal; no area within it is stated."},
        {"Portugal", "In effect for Portugal; no area within it is stated."}}) {
    WeatherAlert alert = warning(AlertSeverity::critical);
    alert.message = "Gale Warning";
    if (area[0] != 0) alert.areaDesc = area;
    inputs.unplacedAlerts = {alert};
    EXPECT_EQ(officialWarnings(inputs, {}).findings.at(0).body,
              std::string(first) + "\nGale Warning\nStay in port.");
    inputs.unplacedAlerts.front().severity = AlertSeverity::warning;
    EXPECT_THAT(officialWarnings(inputs, {}).findings, IsEmpty());
  }
}

TEST(OfficialWarnings, InAllTheirIssuersWordsAreToldByTheirBeginning) {
  RuleInputs inputs = here();
  WeatherAlert alert = warning(AlertSeverity::critical);
  alert.message = "Gales from the north.\n\n" + std::string(1000, 'x');
  alert.text = alert.message;
  alert.areaDesc = "Coast, Hills";
  inputs.govAlerts = reading(std::vector{alert});
  Finding finding = officialWarnings(inputs, {}).findings.at(0);
  EXPECT_TRUE(finding.body.starts_with("Coast, Hills\nGales from the north. xxx")) << finding.body;
  EXPECT_TRUE(finding.body.ends_with("…\nStay in port.")) << finding.body;
  EXPECT_LT(finding.body.size(), 340);
  EXPECT_EQ(finding.when, "from 10:00 AM, until 8:00 PM");
  alert.areaDesc.reset();
  alert.message = "Gales.";
  inputs.govAlerts = reading(std::vector{alert});
  finding = officialWarnings(inputs, {}).findings.at(0);
  EXPECT_EQ(finding.body, "Gales.\nStay in port.");
  EXPECT_EQ(finding.when, "") << "nothing stands before it";
  alert.areaDesc = "Coast";
  inputs.govAlerts = reading(std::vector<WeatherAlert>{});
  inputs.unplacedAlerts = {alert};
  EXPECT_EQ(officialWarnings(inputs, {}).findings.at(0).body,
            "In effect for parts of Portugal that could not be located: Coast.\nGales.\nStay in port.");
}

TEST(OfficialWarnings, ThatWereCalledOffSayByWhomAndWhen) {
  RuleInputs inputs = here();
  inputs.govAlerts = reading(std::vector<WeatherAlert>{});
  WeatherAlert alert = warning(AlertSeverity::critical);
  alert.title = "Gale Warning";
  alert.issued = inputs.now - std::chrono::minutes(20);
  alert.source = "Institute";
  inputs.calledOff = {alert};
  Finding const finding = officialWarnings(inputs, {}).calledOff.at(0);
  std::string const when = TimeWords(*inputs.texts, inputs.calendar).moment(*alert.issued, inputs.now);
  EXPECT_EQ(finding.title, "Gale Warning");
  EXPECT_EQ(finding.remark, "Institute cancelled this warning for Testville (" + when + ").");
  EXPECT_EQ(finding.severity, AlertSeverity::advisory);
  inputs.calledOff.front().source.reset();
  EXPECT_EQ(officialWarnings(inputs, {}).calledOff.at(0).remark,
            "This warning for Testville was cancelled (" + when + ").");
}

TEST(OfficialWarnings, OfAPlaceThatNobodyWarnsAreNotNone) {
  RuleInputs inputs = here();
  inputs.govAlerts = reading(std::vector<WeatherAlert>{});
  EXPECT_EQ(officialWarnings(inputs, {}).note, "noWarnings");
  inputs.isUncovered = true;
  Evaluation const found = officialWarnings(inputs, {});
  EXPECT_EQ(found.note, "uncovered");
  EXPECT_THAT(found.measured, IsEmpty()) << "nothing was counted";
  EXPECT_FALSE(found.isUnknown);
  EXPECT_THAT(faultsOf(found), IsEmpty());
}

// ---- Earthquakes

EarthquakeEvent quake(double magnitude, double km, char const* time = "2026-11-21T09:00:00Z") {
  EarthquakeEvent event;
  event.id = "q1";
  event.magnitude = magnitude;
  event.place = "12 km N of Testville";
  event.time = at(time);
  event.latitude = northOf(kHere, km).latitude;
  event.longitude = kHere.longitude;
  return event;
}

struct QuakeRow {
  char const* what;
  EarthquakeEvent event;
  char const* sound;  ///< nullptr: not sent
};

TEST(Earthquakes, HoldOnTheRightSideOfEachCut) {
  for (QuakeRow const& row : {
           QuakeRow{"5.49", quake(5.49, 10), "weather_warning.caf"},
           {"5.5", quake(5.5, 10), "weather_critical.caf"},
           {"4.0", quake(4.0, 10), "weather_warning.caf"},
           {"3.99", quake(3.99, 10), nullptr},
           {"at the radius", quake(6, 250 - kBit), "weather_critical.caf"},
           {"beyond it", quake(6, 250 + kBit), nullptr},
           {"a day ago", quake(6, 10, "2026-11-20T09:20:00Z"), "weather_critical.caf"},
           {"more than a day ago", quake(6, 10, "2026-11-20T09:19:59Z"), nullptr},
       }) {
    RuleInputs inputs = here();
    inputs.earthquakes = reading(std::vector{row.event});
    Evaluation const found = earthquakes(inputs, {});
    EXPECT_THAT(faultsOf(found), IsEmpty()) << row.what;
    ASSERT_EQ(found.findings.size(), row.sound == nullptr ? 0U : 1U) << row.what;
    if (row.sound == nullptr) continue;
    EXPECT_EQ(found.findings[0].sound, row.sound) << row.what;
    EXPECT_EQ(found.findings[0].identifier, "earthquake_q1");
  }
}

TEST(Earthquakes, SayHowFarInTheUsersUnits) {
  RuleInputs inputs = here();
  inputs.earthquakes = reading(std::vector{quake(5.5, 100)});
  EXPECT_EQ(bodyOf(earthquakes(inputs, {})), "Magnitude 5.5, 12 km N of Testville, 100 km from Testville.");
  inputs.units = Units::imperial();
  EXPECT_EQ(bodyOf(earthquakes(inputs, {})), "Magnitude 5.5, 12 km N of Testville, 62 mi from Testville.");
}

// ---- Fires

FireDetection fire(double km) {
  FireDetection seen;
  seen.id = "fire:1";
  seen.coordinate = northOf(kHere, km);
  seen.detectedAt = at("2026-11-21T06:10:00Z");
  return seen;
}

struct FireRow {
  double km;
  char const* sound;  ///< nullptr: not sent
  bool ringsAtFirstLook;
};

TEST(Fires, HoldOnTheRightSideOfEachCut) {
  for (FireRow const& row : {
           FireRow{10 - kBit, "weather_critical.caf", true},
           {10 + kBit, "weather_warning.caf", false},
           {50 - kBit, "weather_warning.caf", false},
           {50 + kBit, nullptr, false},
       }) {
    RuleInputs inputs = here();
    inputs.fires = reading(std::vector{fire(row.km)});
    Evaluation const found = fires(inputs, {});
    EXPECT_THAT(faultsOf(found), IsEmpty());
    ASSERT_EQ(found.findings.size(), row.sound == nullptr ? 0U : 1U) << row.km;
    EXPECT_EQ(found.measured.at(0).holds(), row.sound != nullptr);
    if (row.sound == nullptr) continue;
    EXPECT_EQ(found.findings[0].sound, row.sound) << row.km;
    EXPECT_EQ(found.findings[0].began.has_value(), !row.ringsAtFirstLook) << row.km;
  }
}

TEST(Fires, AreEachAnEventOfItsOwn) {
  RuleInputs inputs = here();
  FireDetection other = fire(20);
  other.id = "fire:2";
  inputs.fires = reading(std::vector{fire(12), other});
  Evaluation const found = fires(inputs, {});
  ASSERT_EQ(found.findings.size(), 2);
  EXPECT_EQ(found.findings[0].identifier, "fire_fire:1");
  EXPECT_EQ(found.findings[1].identifier, "fire_fire:2");
  EXPECT_EQ(bodyOf(found),
            "Satellites have detected a fire about 12 km from Testville, last seen around 6 AM.");
}

// ---- Lightning

LightningStrike strike(double km, char const* time = "2026-11-21T09:17:30Z") {
  return {at(time), northOf(kHere, km)};
}

struct StrikeRow {
  char const* what;
  std::vector<LightningStrike> strikes;
  std::string body;  ///< empty: not sent
};

std::string strikeAt(std::string const& km, std::string const& advice = "Be ready to go indoors.") {
  return "A lightning strike was detected about " + km + " km away. " + advice + " Last strike: 2 min ago.";
}

TEST(Lightning, HoldsOnTheRightSideOfEachCut) {
  for (StrikeRow const& row : {
           StrikeRow{"one at the door",
                     {strike(10 - kBit)},
                     strikeAt("10", "Stay indoors and keep away from windows.")},
           {"one farther off", {strike(10 + kBit)}, strikeAt("10")},
           {"several",
            {strike(19), strike(14, "2026-11-21T08:50:00Z"), strike(15, "2026-11-21T09:20:10Z")},
            "3 lightning strikes were detected in the last half hour, the nearest about 14 km away. Be ready "
            "to go indoors. Last strike: 0 min ago."},
           {"at the radius", {strike(20 - kBit)}, strikeAt("20")},
           {"beyond it", {strike(20 + kBit)}, ""},
           {"older than half an hour", {strike(5, "2026-11-21T08:49:59Z")}, ""},
       }) {
    RuleInputs inputs = here();
    inputs.lightning = reading(row.strikes);
    Evaluation const found = lightning(inputs, withDefaults([](auto& s) { s.lightningRadiusKm = 20; }));
    EXPECT_THAT(faultsOf(found), IsEmpty()) << row.what;
    EXPECT_EQ(bodyOf(found), row.body) << row.what;
  }
}

// ---- Travel advisories

TravelAdvisory advisory(char const* country, int level) {
  TravelAdvisory told;
  told.country = country;
  told.level = level;
  told.title = "Portugal - Level " + std::to_string(level) + ": Take Care";
  told.summary = "Strikes\nare likely.";
  return told;
}

struct AdvisoryRow {
  int level;
  NotificationLevel least;
  std::optional<AlertSeverity> severity;
};

TEST(TravelAdvisories, AreToldFromTheUsersLevelOn) {
  using enum AlertSeverity;
  using Level = NotificationLevel;
  for (AdvisoryRow const& row : {
           AdvisoryRow{1, Level::low, info},
           {1, Level::medium, {}},
           {2, Level::medium, advisory},
           {2, Level::high, {}},
           {3, Level::high, AlertSeverity::warning},
           {3, Level::critical, {}},
           {4, Level::critical, critical},
       }) {
    RuleInputs inputs = here();
    inputs.advisories = reading(std::vector{nimbara::advisory("ES", 4), nimbara::advisory("PT", row.level)});
    Evaluation const found =
        travelAdvisories(inputs, withDefaults([&](auto& s) { s.travelAdvisoryLevel = row.least; }));
    EXPECT_THAT(faultsOf(found), IsEmpty());
    ASSERT_EQ(found.findings.size(), row.severity ? 1U : 0U) << row.level;
    if (!row.severity) continue;
    EXPECT_EQ(found.findings[0].severity, row.severity);
    EXPECT_EQ(found.findings[0].identifier, "travel_advisory_PT");
    EXPECT_EQ(found.findings[0].title, "Travel Advisory: Portugal");
  }
}

TEST(TravelAdvisories, ConcernThePlacesCountryOnly) {
  RuleInputs inputs = here();
  inputs.advisories = reading(std::vector{advisory("ES", 4)});
  EXPECT_EQ(travelAdvisories(inputs, {}).note, "noAdvisory");
  inputs.place.countryCode = "ES";
  EXPECT_EQ(bodyOf(travelAdvisories(inputs, {})), "Portugal - Level 4: Take Care\nStrikes are likely.");
  inputs.place.countryCode = "";
  EXPECT_THAT(travelAdvisories(inputs, {}).findings, IsEmpty());
}

// ---- Air quality

/// Concentrations of the hours from 09:00 on.
AirQualityForecast air(std::optional<double> now, std::vector<std::optional<double>> const& hours) {
  AirQualityForecast forecast;
  forecast.pm25 = now;
  Instant time = at("2026-11-21T09:00:00Z");
  for (auto const& pm25 : hours) {
    forecast.hours.push_back({time, pm25});
    time += std::chrono::hours(1);
  }
  return forecast;
}

std::vector<std::optional<double>> peakIn(std::size_t hours, double pm25) {
  std::vector<std::optional<double>> list(hours + 1, 5);
  list.back() = pm25;
  return list;
}

struct AirRow {
  char const* what;
  AirQualityForecast forecast;
  std::string body;  ///< empty: not sent
  char const* sound;
};

constexpr char kWarningSound[] = "weather_warning.caf";
constexpr char kCriticalSound[] = "weather_critical.caf";
constexpr char kLimit[] = "Sensitive groups should limit prolonged outdoor exertion.";
constexpr char kUnhealthy[] = "Limit prolonged outdoor activity.";

std::string reaching(std::string const& pm25, std::string const& hour, std::string const& advice) {
  return "PM2.5 is forecast to reach " + pm25 + " µg/m³ around " + hour +
         " — above your 35 µg/m³ alert level. " + advice;
}

TEST(AirQuality, HoldsOnTheRightSideOfEachCut) {
  for (AirRow const& row : {
           AirRow{"34.9", air(5, peakIn(3, 34.9)), "", ""},
           {"35", air(5, peakIn(3, 35)),
            reaching("35", "12 PM", "Sensitive groups should consider reducing prolonged outdoor exertion."),
            kWarningSound},
           {"35.5", air(5, peakIn(3, 35.5)), reaching("36", "12 PM", kLimit), kWarningSound},
           {"55.5", air(5, peakIn(3, 55.5)), reaching("56", "12 PM", kUnhealthy), kWarningSound},
           {"125.4", air(5, peakIn(3, 125.4)), reaching("125", "12 PM", kUnhealthy), kWarningSound},
           {"125.5", air(5, peakIn(3, 126)), reaching("126", "12 PM", "Avoid prolonged outdoor activity."),
            kCriticalSound},
           {"225.5", air(5, peakIn(3, 226)), reaching("226", "12 PM", "Stay indoors where possible."),
            kCriticalSound},
           {"bad now, and better soon", air(60, peakIn(3, 20)),
            std::string("PM2.5 is 60 µg/m³ (unhealthy). ") + kUnhealthy, kWarningSound},
           {"bad now, and worse soon", air(40, peakIn(3, 60)),
            "PM2.5 is 40 µg/m³ (unhealthy for sensitive groups). It is forecast to reach 60 µg/m³ around 12 "
            "PM. Limit prolonged outdoor activity.",
            kWarningSound},
           {"no reading of now", air({}, peakIn(1, 36)), reaching("36", "10 AM", kLimit), kWarningSound},
           {"tomorrow at this hour", air(5, peakIn(24, 40)), reaching("40", "9 AM", kLimit), kWarningSound},
           {"an hour later", air(5, peakIn(25, 40)), "", ""},
           {"nobody knows", air({}, {{}, {}}), "", ""},
       }) {
    RuleInputs inputs = here();
    inputs.airQuality = reading(row.forecast);
    Evaluation const found = airQuality(inputs, {});
    EXPECT_THAT(faultsOf(found), IsEmpty()) << row.what;
    EXPECT_EQ(bodyOf(found), row.body) << row.what;
    if (found.findings.empty()) continue;
    EXPECT_EQ(found.findings[0].sound, row.sound) << row.what;
  }
}

TEST(AirQuality, LeavesHoursThatAreOverOut) {
  RuleInputs inputs = here();
  inputs.now = at("2026-11-21T10:00:00Z");
  inputs.airQuality = reading(air({}, {100.0, 20.0}));
  EXPECT_THAT(airQuality(inputs, {}).findings, IsEmpty());
}

}  // namespace
}  // namespace nimbara
