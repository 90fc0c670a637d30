#include "notifications/rules/rule_settings.h"

#include "base/text/text.h"
#include "support/instants.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

SettingValue whole(std::int64_t number) {
  return number;
}

TEST(NotificationSettings, HaveTheirDefaults) {
  SettingsRegistry const registry{notificationSettings()};
  std::vector<std::pair<std::string_view, SettingValue>> defaults{
      {"notify_govAlertLevel", std::string("medium")},
      {"notify_travelAdvisoryLevel", std::string("medium")},
      {"notify_earthquakeMagnitude", 4.0}};
  for (auto const& [key, number] : {std::pair("notify_highWindThreshold", 60),
                                    {"notify_umbrellaHour", 7},
                                    {"notify_uvReminderHour", 8},
                                    {"notify_airQualityThreshold", 35},
                                    {"notify_morningHour", 7},
                                    {"notify_eveningHour", 18},
                                    {"notify_fireRadius", 50},
                                    {"notify_earthquakeRadius", 250},
                                    {"notify_lightningRadius", 20}})
    defaults.emplace_back(key, whole(number));
  constexpr std::string_view kOn =
      "notify_rain notify_snow notify_severe notify_flood notify_tornado liveActivityEnabled "
      "notify_govAlerts notify_travelAdvisory notify_lightning notify_sounds";
  constexpr std::string_view kOff =
      "notify_rainStart notify_rainStop notify_snowStart notify_snowStop notify_storm "
      "notify_highWind notify_umbrellaReminder notify_uvDailyReminder notify_tempDrop "
      "notify_tempIncrease notify_uvHigh notify_airQuality notify_beachTime notify_morningSummary "
      "notify_eveningSummary notify_hurricane_atlantic notify_hurricane_easternPacific "
      "notify_hurricane_centralPacific notify_hurricane_westernPacific notify_earthquakes "
      "notify_fires";
  for (std::string_view const on : split(kOn, ' ')) defaults.emplace_back(on, true);
  for (std::string_view const off : split(kOff, ' ')) defaults.emplace_back(off, false);
  for (auto const& [key, value] : defaults) {
    ASSERT_NE(registry.find(key), nullptr) << key;
    EXPECT_EQ(registry.find(key)->defaultValue(), value) << key;
  }
}

class RuleSettingsOf : public testing::Test {
 protected:
  RuleSettings with(std::string_view key, SettingValue value) const {
    return RuleSettings::of(Settings(registry_, {{std::string(key), std::move(value)}}));
  }

 private:
  SettingsRegistry registry_{notificationSettings()};
};

TEST_F(RuleSettingsOf, NeverReachFartherForLightningThanFiftyKilometres) {
  for (auto const& [stored, radius] : {std::pair{49, 49.0}, {50, 50.0}, {51, 50.0}, {80, 50.0}}) {
    EXPECT_EQ(with("notify_lightningRadius", whole(stored)).lightningRadiusKm, radius);
  }
  EXPECT_EQ(with("notify_sounds", true).lightningRadiusKm, 20);
  EXPECT_EQ(with("notify_lightningRadius", whole(0)).lightningRadiusKm, 20);
}

TEST_F(RuleSettingsOf, TakeWhatTheUserChose) {
  EXPECT_EQ(with("notify_highWindThreshold", whole(75)).highWindKmh, 75);
  EXPECT_EQ(with("notify_airQualityThreshold", whole(55)).airQualityLevel, 55);
  EXPECT_EQ(with("notify_fireRadius", whole(30)).fireRadiusKm, 30);
  EXPECT_EQ(with("notify_earthquakeRadius", whole(900)).earthquakeRadiusKm, 900);
  EXPECT_EQ(with("notify_earthquakeMagnitude", 2.5).earthquakeMagnitude, 2.5);
  EXPECT_EQ(with("notify_govAlertLevel", std::string("critical")).govAlertLevel, NotificationLevel::critical);
  EXPECT_EQ(with("notify_travelAdvisoryLevel", std::string("low")).travelAdvisoryLevel,
            NotificationLevel::low);
  EXPECT_FALSE(with("notify_govAlerts", false).govAlerts);
  EXPECT_FALSE(with("notify_sounds", false).sounds);
  EXPECT_FALSE(with("notify_everyPlace", false).everyPlace);
}

/// Earlier versions named a warning's kind by its symbol.
TEST(Mutes, OfEarlierVersionsKeepTheirMeaning) {
  struct Row {
    char const* stored;
    char const* kind;
  };
  for (Row const& row : {Row{"gov:cloud.bolt.fill", "gov:thunderstorm"},
                         {"gov:cloud.bolt.fill:advisory", "gov:thunderstorm:advisory"},
                         {"gov:hurricane@2026-11-21T18:00:00Z", "gov:tropicalCyclone"},
                         {"gov:exclamationmark.triangle.fill", "gov:other"},
                         {"gov:wind:advisory", "gov:wind:advisory"},
                         {"gov:thunderstorm", "gov:thunderstorm"},
                         {"gov:newsign:critical", "gov:newsign:critical"},
                         {"gov:info", "gov:info"},
                         {"gov", "gov"},
                         {"hurricane:al092026", "hurricane:al092026"}}) {
    auto const mutes = parseMutes(row.stored);
    ASSERT_EQ(mutes.size(), 1) << row.stored;
    EXPECT_EQ(mutes[0].kind, row.kind);
  }
}

TEST(Mutes, MayEnd) {
  Instant const end = test::at("2026-11-21T18:00:00Z");
  std::vector<Mute> const mutes{{"gov:wind", end}, {"rain", {}}};
  EXPECT_EQ(encodeMutes(mutes), "gov:wind@2026-11-21T18:00:00Z,rain");
  EXPECT_EQ(parseMutes(encodeMutes(mutes)), mutes);
  EXPECT_EQ(parseMutes("rain@ tomorrow , @2026-11-21T18:00:00Z"), (std::vector<Mute>{{"rain", {}}}));
  EXPECT_TRUE(mutes[0].holds(end - std::chrono::milliseconds(1)));
  EXPECT_FALSE(mutes[0].holds(end));
  EXPECT_EQ(mutedToo(mutes, {"rain", end + std::chrono::hours(1)}, end),
            (std::vector<Mute>{{"rain", end + std::chrono::hours(1)}}));
}

TEST_F(RuleSettingsOf, FallBackToTheDefaultForWhatIsNoLevel) {
  EXPECT_EQ(with("notify_govAlertLevel", std::string("loud")).govAlertLevel, NotificationLevel::medium);
}

TEST_F(RuleSettingsOf, ReadMutedKindsAndTheEndOfSnoozing) {
  EXPECT_THAT(with("notify_mutedKinds", std::string(" gov:wind, ,rain,")).mutes,
              ElementsAre(Mute{"gov:wind", {}}, Mute{"rain", {}}));
  EXPECT_THAT(with("notify_mutedKinds", std::string()).mutes, IsEmpty());
  EXPECT_EQ(with("notify_snoozedUntil", std::string("2026-11-21T18:00:00Z")).snoozedUntil,
            test::at("2026-11-21T18:00:00Z"));
  EXPECT_EQ(with("notify_snoozedUntil", std::string()).snoozedUntil, std::nullopt);
}

struct QuietRow {
  QuietHours quiet;
  int hour;
  bool isQuiet;
};

TEST(QuietHours, GoOverMidnightWhereTheyEndEarlierThanTheyBegin) {
  for (QuietRow const& row : {
           QuietRow{{true, 22, 7}, 21, false},
           {{true, 22, 7}, 22, true},
           {{true, 22, 7}, 0, true},
           {{true, 22, 7}, 6, true},
           {{true, 22, 7}, 7, false},
           {{true, 13, 15}, 12, false},
           {{true, 13, 15}, 13, true},
           {{true, 13, 15}, 15, false},
           {{true, 9, 9}, 9, false},
           {{false, 22, 7}, 23, false},
       }) {
    EXPECT_EQ(row.quiet.contain(row.hour), row.isQuiet)
        << row.quiet.from << " to " << row.quiet.until << " at " << row.hour;
  }
}

}  // namespace
}  // namespace nimbara
