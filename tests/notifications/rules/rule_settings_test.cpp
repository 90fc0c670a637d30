#include "notifications/rules/rule_settings.h"

#include "support/instants.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace nimbara {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Default {
  std::string_view key;
  SettingValue value;
};

SettingValue whole(std::int64_t number) {
  return number;
}

Default const kDefaults[] = {
    {"notify_rain", true},
    {"notify_snow", true},
    {"notify_rainStart", false},
    {"notify_rainStop", false},
    {"notify_snowStart", false},
    {"notify_snowStop", false},
    {"notify_severe", true},
    {"notify_storm", false},
    {"notify_flood", true},
    {"notify_tornado", true},
    {"notify_highWind", false},
    {"notify_highWindThreshold", whole(60)},
    {"notify_umbrellaReminder", false},
    {"notify_uvDailyReminder", false},
    {"notify_umbrellaHour", whole(7)},
    {"notify_uvReminderHour", whole(8)},
    {"notify_tempDrop", false},
    {"notify_tempIncrease", false},
    {"notify_uvHigh", false},
    {"notify_airQuality", false},
    {"notify_airQualityThreshold", whole(35)},
    {"notify_beachTime", false},
    {"notify_morningSummary", false},
    {"notify_eveningSummary", false},
    {"notify_morningHour", whole(7)},
    {"notify_eveningHour", whole(18)},
    {"liveActivityEnabled", true},
    {"notify_govAlerts", true},
    {"notify_govAlertLevel", std::string("medium")},
    {"notify_travelAdvisory", true},
    {"notify_travelAdvisoryLevel", std::string("medium")},
    {"notify_hurricane_atlantic", false},
    {"notify_hurricane_easternPacific", false},
    {"notify_hurricane_centralPacific", false},
    {"notify_hurricane_westernPacific", false},
    {"notify_earthquakes", false},
    {"notify_fires", false},
    {"notify_fireRadius", whole(50)},
    {"notify_earthquakeRadius", whole(250)},
    {"notify_earthquakeMagnitude", 4.0},
    {"notify_lightning", true},
    {"notify_lightningRadius", whole(20)},
    {"notify_sounds", true},
};

TEST(NotificationSettings, HaveTheirDefaults) {
  SettingsRegistry const registry{notificationSettings()};
  for (Default const& expected : kDefaults) {
    SettingDefinition const* const definition = registry.find(expected.key);
    ASSERT_NE(definition, nullptr) << expected.key;
    EXPECT_EQ(definition->defaultValue(), expected.value) << expected.key;
  }
}

TEST(NotificationSettings, AcceptTheirOwnDefaultsUnderKeysOfTheirOwn) {
  std::set<std::string_view> keys;
  for (SettingDefinition const& definition : notificationSettings()) {
    EXPECT_TRUE(keys.insert(definition.key).second) << definition.key;
    EXPECT_FALSE(definition.explanation.empty()) << definition.key;
    EXPECT_TRUE(checkedSetting(definition, definition.defaultValue())) << definition.key;
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
