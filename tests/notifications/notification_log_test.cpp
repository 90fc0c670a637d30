#include "notifications/log/reason_text.h"
#include "support/notification_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

namespace nimbara {
namespace {

using namespace std::chrono_literals;
using namespace nimbara::test;
using testing::ElementsAre;
using testing::SizeIs;

struct NotificationLog : testing::Test {
  NotificationLog() { engine.turnOn("notify_rain"); }

  std::vector<LoggedNotification> log() { return notificationLogOf(*engine.store.read(StoreArea::state)); }
  std::vector<std::string> outcomes() {
    std::vector<std::string> names;
    for (LoggedNotification const& line : log()) names.push_back(line.outcome);
    return names;
  }

  NotificationEngine engine{"2026-11-21T09:20:00Z"};
};

TEST_F(NotificationLog, SaysWhatWasToldAndWhy) {
  engine.weather = letItPour;
  engine.pass();
  ASSERT_THAT(log(), SizeIs(1));
  LoggedNotification const line = log().front();
  EXPECT_EQ(line.time, engine.clock.now());
  EXPECT_EQ(line.identifier, "rain");
  EXPECT_EQ(line.setting, "notify_rain");
  EXPECT_EQ(line.kind, "rain");
  EXPECT_EQ(line.place, "Testville");
  EXPECT_EQ(line.title, engine.center.delivered().front().title);
  EXPECT_EQ(line.body, engine.center.delivered().front().body);
  EXPECT_EQ(reasonText(line, Units::metric(), englishTexts()),
            "Sent. Likely rain in one hour: up to 6 mm (minimum: 4 mm).");
}

TEST_F(NotificationLog, SaysWhatWasHeldBackOnceForEachReason) {
  engine.weather = letItPour;
  std::ignore = engine.store.set("notify_mutedKinds", "rain@2026-11-21T10:00:00Z");
  std::ignore = engine.store.set("notify_snoozedUntil", "2026-11-21T11:00:00Z");
  for (int i = 0; i < 4; ++i) {
    engine.pass();
    engine.pass();
    engine.clock.advance(35min);
    engine.weather = [](WeatherData& data) { letItPour(data); };
  }
  EXPECT_THAT(outcomes(), ElementsAre("muted", "snoozed", "announced"));
  engine.passAfter(24min);
  EXPECT_THAT(outcomes(), SizeIs(3)) << "59 minutes after it was told";
  engine.passAfter(1min);
  EXPECT_THAT(outcomes(), ElementsAre("muted", "snoozed", "announced", "stillActive"));
  engine.passAfter(5min);
  EXPECT_THAT(outcomes(), SizeIs(4));
}

TEST_F(NotificationLog, SaysOfEachWhyItWasOnlyListed) {
  engine.turnOn("notify_govAlerts");
  WeatherAlert old = officialWarning(1, AlertSeverity::warning, engine.clock.now() - 24h);
  old.expires = engine.clock.now() + 24h;
  WeatherAlert near = officialWarning(2, AlertSeverity::advisory, engine.clock.now());
  near.distanceKm = 20;
  engine.warnings = {old, near, officialWarning(3, AlertSeverity::warning, engine.clock.now())};
  engine.pass();
  std::map<std::string, std::string> reasons;
  for (LoggedNotification const& line : log()) {
    if (line.outcome == "listed") reasons[line.title] = line.note;
  }
  EXPECT_THAT(reasons, ElementsAre(std::pair("Warning 1", "oldNews"), std::pair("Warning 2", "onlyNear")));
  LoggedNotification line;
  line.outcome = "listed";
  line.note = "onlyNear";
  EXPECT_EQ(reasonText(line, Units::metric(), englishTexts()),
            std::string(englishTexts().text("explain.outcome.listed")) + " " +
                std::string(englishTexts().text("explain.note.onlyNear")));
}

/// Delivered silently, since it had begun before the first look, and cancelled before its end.
TEST_F(NotificationLog, NamesWhatIsTakenAway) {
  engine.turnOn("notify_govAlerts");
  WeatherAlert alert = officialWarning(1, AlertSeverity::warning, engine.clock.now() - 24h);
  alert.expires = engine.clock.now() + 24h;
  engine.warnings = {alert};
  engine.pass();
  engine.warnings = std::vector<WeatherAlert>{};
  engine.passAfter(15min);
  engine.passAfter(15min);
  EXPECT_THAT(outcomes(), ElementsAre("listed", "withdrawn"));
  EXPECT_EQ(log().back().title, "Warning 1");
  EXPECT_EQ(log().back().kind, "gov:wind");
}

TEST_F(NotificationLog, TakesAnotherLanguageForNoNews) {
  engine.turnOn("notify_govAlerts");
  WeatherAlert alert = officialWarning(1, AlertSeverity::warning, engine.clock.now());
  auto const tell = [&](char const* language, char const* title) {
    auto const texts = std::make_shared<Texts const>(Texts::load(language));
    alert.title = title;
    engine.warnings = {alert};
    engine.clock.advance(15min);
    NotificationManager manager({engine.store, engine.center, engine.clock, texts, {}});
    manager.evaluate([&](NeededInputs const&, std::stop_token const&) {
      RuleInputs inputs = engine.here();
      inputs.texts = texts.get();
      return PassInputs{{inputs}, {}, false};
    });
    return std::ranges::count(outcomes(), "updated");
  };
  EXPECT_EQ(tell("en", "Wind Warning"), 0);
  EXPECT_EQ(tell("pt", "Aviso de vento"), 0);
  EXPECT_EQ(tell("pt", "Aviso de vento forte"), 1) << "now it says something else";
  EXPECT_EQ(tell("en", "Strong Wind Warning"), 1);
}

TEST(JoinedLines, AreSetOffWhereNoStopEndsThem) {
  for (auto const& [body, line] : std::initializer_list<std::pair<std::string_view, std::string_view>>{
           {"Take care.\nStay inside.", "Take care. Stay inside."},
           {"Gusts of 80 km/h\nStay inside", "Gusts of 80 km/h · Stay inside"},
           {"注意安全。\n请留在室内", "注意安全。 请留在室内"},
           {"\n one \n\n two\n", "one · two"},
           {"", ""}}) {
    EXPECT_EQ(joinedLines(body), line);
  }
}

TEST_F(NotificationLog, KeepsTheNewest) {
  SettingValues stored;
  std::vector<LoggedNotification> lines(kMostLogLines + 20);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    lines[i].identifier = "rain";
    lines[i].outcome = "announced";
    lines[i].title = std::to_string(i);
  }
  for (auto const& [key, value] : logChange(notificationLogOf(stored), lines)) stored[key] = *value;
  auto const kept = notificationLogOf(stored);
  ASSERT_THAT(kept, SizeIs(kMostLogLines));
  EXPECT_EQ(kept.front().title, "20");
  EXPECT_EQ(kept.back().title, "519");
}

TEST_F(NotificationLog, OfEarlierVersionsIsReadAndOfNoneIsEmpty) {
  SettingValues stored{{"notif_log", std::string(R"([{"time":"2026-11-21T09:00:00Z","identifier":"rain",)"
                                                 R"("title":"Rain","outcome":"announced"}])")}};
  ASSERT_THAT(notificationLogOf(stored), SizeIs(1));
  EXPECT_EQ(notificationLogOf(stored).front().body, "");
  stored["notif_log"] = std::string("[{\"time\":");
  EXPECT_THAT(notificationLogOf(stored), SizeIs(0));
}

/// A store as the version before wrote it.
TEST_F(NotificationLog, AndMutesOfTheVersionBeforeKeepTheirMeaning) {
  engine.turnOn("notify_govAlerts");
  ASSERT_TRUE(engine.store.set("notify_mutedKinds", "gov:cloud.bolt.fill:warning,rain"));
  WeatherAlert storm = officialWarning(1, AlertSeverity::warning, engine.clock.now());
  std::string const identifier = identifierOf(storm);
  SettingValues const before{
      {"notif_deliveredIDs", R"([")" + identifier + R"("])"},
      {"notif_shown",
       R"({")" + identifier +
           R"(":{"severity":"warning","digest":"","kind":"gov:cloud.bolt.fill","hasRung":true}})"},
      {"notif_log",
       std::string(R"([{"time":"2026-11-21T09:00:00Z","identifier":"fire","title":"","outcome":"unknown",)"
                   R"("kind":"gov:flame.fill",)"
                   R"("note":"the list of wildfires could not be fetched: no way"}])")}};
  ASSERT_TRUE(engine.store.update(StoreArea::state, [&](SettingValues const&) {
    StoreChanges changes;
    for (auto const& [key, value] : before) changes.emplace(key, value);
    return Result<StoreChanges, StoreError>(std::move(changes));
  }));
  ASSERT_THAT(log(), SizeIs(1));
  EXPECT_EQ(log()[0].kind, "gov:fire");
  EXPECT_THAT(reasonText(log()[0], Units::metric(), englishTexts()),
              testing::HasSubstr("The list of wildfires could not be fetched: no way"));
  engine.restart();
  WeatherAlert other = officialWarning(2, AlertSeverity::warning, engine.clock.now());
  WeatherAlert graver = officialWarning(3, AlertSeverity::critical, engine.clock.now());
  WeatherAlert wind = officialWarning(4, AlertSeverity::warning, engine.clock.now());
  storm.kind = other.kind = graver.kind = WarningKind::thunderstorm;
  engine.warnings = {storm, other, graver, wind};
  engine.pass();
  EXPECT_THAT(engine.told(), testing::UnorderedElementsAre(identifierOf(graver), identifierOf(wind)));
}

TEST_F(NotificationLog, SaysWhatCouldNotBeFetchedInTheUsersLanguage) {
  engine.turnOn("notify_govAlerts");
  engine.warnings.reset();
  auto const report = engine.pass();
  EXPECT_THAT(failedFeeds(report.plan),
              ElementsAre("the warnings could not be fetched: the service returned status 503"));
  auto const failed = std::ranges::find(report.plan.decisions, RuleOutcome::unknown, &Decision::outcome);
  ASSERT_NE(failed, report.plan.decisions.end());
  LoggedNotification line = logLineOf(*failed, engine.clock.now());
  line.failure->service = "nws";
  EXPECT_EQ(decodeJson<std::vector<LoggedNotification>>(encodeJson(std::vector{line})), std::vector{line});
  EXPECT_EQ(plainNote(line.note, line.failure),
            "the warnings of the National Weather Service could not be fetched: the service returned "
            "status 503");
  EXPECT_THAT(reasonText(line, Units::metric(), Texts::load("pt")),
              testing::EndsWith("National Weather Service: o serviço devolveu um erro (HTTP 503)."));
}

}  // namespace
}  // namespace nimbara
