#include "support/notification_engine.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::at;
using test::NotificationEngine;
using test::zone;
using namespace std::chrono_literals;
using Names = std::vector<std::string>;

struct Morning : testing::Test {
  Morning() { turnOn(engine); }
  static void turnOn(NotificationEngine& one) { one.turnOn("notify_morningSummary"); }

  std::string due() const {
    auto const next = engine.manager->nextScheduled();
    return next ? formatIso8601(*next) : "";
  }
  void tellAt(std::string const& moment) {
    engine.clock.set(at(moment));
    engine.manager->tellScheduled();
  }

  NotificationEngine engine{"2026-11-20T20:00:00Z"};
};

TEST_F(Morning, IsToldAtItsHourAndOnceADay) {
  engine.pass();
  EXPECT_EQ(due(), "2026-11-21T07:00:00Z");
  tellAt("2026-11-21T06:59:59Z");
  EXPECT_EQ(engine.told(), Names{});
  tellAt("2026-11-21T07:00:00Z");
  EXPECT_EQ(engine.told(), Names{"morning_summary"});
  tellAt("2026-11-21T07:00:01Z");
  engine.passAfter(15min);
  EXPECT_EQ(engine.told(), Names{});
  EXPECT_EQ(due(), "2026-11-22T07:00:00Z");
}

TEST_F(Morning, IsAtThePlacesHourOnDaysOfAllLengths) {
  struct Row {
    char const* now;
    char const* zone;
    int hour;
    char const* due;
  };
  for (Row const& row : {
           Row{"2026-03-28T12:00:00Z", "Europe/Berlin", 7, "2026-03-29T05:00:00Z"},
           Row{"2026-10-24T12:00:00Z", "Europe/Berlin", 7, "2026-10-25T06:00:00Z"},
           // The clock skips this hour, or has it twice.
           Row{"2026-03-28T12:00:00Z", "Europe/Berlin", 2, "2026-03-29T01:00:00Z"},
           Row{"2026-10-24T12:00:00Z", "Europe/Berlin", 2, "2026-10-25T00:00:00Z"},
           Row{"2026-11-21T12:00:00Z", "America/Los_Angeles", 7, "2026-11-21T15:00:00Z"},
           Row{"2026-11-21T12:00:00Z", "Pacific/Auckland", 7, "2026-11-21T18:00:00Z"},
           Row{"2026-11-21T12:00:00Z", "Asia/Kathmandu", 0, "2026-11-21T18:15:00Z"},
       }) {
    NotificationEngine fresh(row.now);
    turnOn(fresh);
    std::ignore = fresh.store.set("notify_morningHour", std::int64_t{row.hour});
    fresh.calendar = zone(row.zone);
    fresh.weather = [&](WeatherData& data) { data.location.timeZone = row.zone; };
    fresh.pass();
    ASSERT_TRUE(fresh.manager->nextScheduled()) << row.zone;
    EXPECT_EQ(formatIso8601(*fresh.manager->nextScheduled()), row.due) << row.zone << " " << row.hour;
  }
}

TEST_F(Morning, ReplacesItselfWhenItsHourChanges) {
  engine.pass();
  std::ignore = engine.store.set("notify_morningHour", std::int64_t{9});
  engine.pass();
  EXPECT_EQ(due(), "2026-11-21T09:00:00Z");
  tellAt("2026-11-21T07:30:00Z");
  EXPECT_EQ(engine.told(), Names{});
  tellAt("2026-11-21T09:00:00Z");
  EXPECT_EQ(engine.told(), Names{"morning_summary"});
  std::ignore = engine.store.set("notify_morningHour", std::int64_t{11});
  engine.pass();
  EXPECT_EQ(due(), "2026-11-22T11:00:00Z") << "today's was told";
}

TEST_F(Morning, GoesWhenItIsSwitchedOffOrMuted) {
  engine.pass();
  std::ignore = engine.store.set("notify_morningSummary", false);
  engine.pass();
  EXPECT_EQ(due(), "");
  turnOn(engine);
  engine.pass();
  std::ignore = engine.store.set("notify_mutedKinds", "morning_summary");
  tellAt("2026-11-21T07:00:00Z");
  EXPECT_EQ(engine.told(), Names{});
}

TEST_F(Morning, ThatWasMissedIsToldWithinTheGraceByAPassToo) {
  struct Row {
    char const* moment;
    bool isTold;
  };
  for (Row const& row : {Row{"2026-11-21T10:00:00Z", true}, Row{"2026-11-21T10:00:01Z", false}}) {
    for (bool const byPass : {false, true}) {
      NotificationEngine fresh("2026-11-20T20:00:00Z");
      turnOn(fresh);
      fresh.pass();
      fresh.restart();
      fresh.clock.set(at(row.moment));
      byPass ? fresh.pass() : fresh.manager->tellScheduled();
      EXPECT_EQ(fresh.told(), row.isTold ? Names{"morning_summary"} : Names{}) << row.moment << byPass;
      fresh.pass();
      EXPECT_EQ(fresh.told(), Names{});
      EXPECT_EQ(formatIso8601(*fresh.manager->nextScheduled()), "2026-11-22T07:00:00Z");
    }
  }
}

TEST_F(Morning, WaitsForTheEndOfTheQuietHours) {
  engine.turnOn("notify_quietHours");
  std::ignore = engine.store.set("notify_quietUntil", std::int64_t{8});
  engine.pass();
  tellAt("2026-11-21T07:00:00Z");
  EXPECT_NE(due(), "2026-11-21T07:00:00Z") << "it would be looked at without end";
  engine.passAfter(15min);
  EXPECT_EQ(engine.told(), Names{});
  engine.passAfter(45min);
  EXPECT_EQ(engine.told(), Names{"morning_summary"});
  engine.passAfter(15min);
  EXPECT_EQ(due(), "2026-11-22T07:00:00Z");
}

TEST_F(Morning, ThatWasRefusedIsTriedByTheNextPass) {
  engine.pass();
  engine.center.setFailure(DeliveryError{DeliveryError::Kind::unavailable, "nobody there"});
  tellAt("2026-11-21T07:00:00Z");
  engine.passAfter(15min);
  engine.center.setFailure(std::nullopt);
  engine.restart();
  engine.passAfter(15min);
  EXPECT_EQ(engine.told(), Names{"morning_summary"});
}

TEST_F(Morning, IsToldOnceWhenTheClockIsSetBackOverMidnight) {
  std::ignore = engine.store.set("notify_morningHour", std::int64_t{0});
  engine.pass();
  tellAt("2026-11-21T00:00:00Z");
  EXPECT_EQ(engine.told(), Names{"morning_summary"});
  engine.clock.set(at("2026-11-20T23:55:00Z"));
  engine.pass();
  tellAt("2026-11-21T00:00:00Z");
  EXPECT_EQ(engine.told(), Names{});
}

TEST_F(Morning, CarriesTheForecastOfTheLastPass) {
  engine.pass();
  engine.weather = [](WeatherData& data) {
    for (DailyForecast& day : data.daily) day.maxTempC = 31;
  };
  engine.passAfter(15min);
  tellAt("2026-11-21T07:00:00Z");
  ASSERT_EQ(engine.center.delivered().size(), 1);
  EXPECT_NE(engine.center.delivered().front().body.find("31"), std::string::npos);
  EXPECT_EQ(engine.center.delivered().front().sound, "morning_summary.caf");
  EXPECT_EQ(engine.center.delivered().front().actions.size(), 3);
}

TEST(DailyFinding, IsToldOnceOnALocalDay) {
  NotificationEngine engine("2026-11-21T20:00:00Z");
  engine.turnOn("notify_beta_windChill");
  engine.weather = [](WeatherData& data) {
    for (HourlyForecast& hour : data.allHourly) {
      hour.tempC = -25;
      hour.feelsLikeC = -40;
      hour.windSpeedKmph = 40;
    }
    data.current.tempC = -25;
    data.current.feelsLikeC = -40;
    data.current.windSpeedKmph = 40;
  };
  for (int i = 0; i < 12; ++i) engine.passAfter(15min);
  EXPECT_EQ(engine.told().size(), 1);
  engine.restart();
  engine.passAfter(45min);
  EXPECT_EQ(engine.told(), Names{});
  engine.passAfter(30min);
  EXPECT_EQ(engine.told().size(), 1) << "after midnight";
}

}  // namespace
}  // namespace nimbara
