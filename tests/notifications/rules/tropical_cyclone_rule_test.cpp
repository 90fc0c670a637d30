#include "notifications/engine/pass_plan.h"
#include "notifications/rules/hazard_rules.h"
#include "support/rules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using enum StormCategory;
using test::at;
using test::bodyOf;
using test::faultsOf;
using test::northOf;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kNow[] = "2026-09-21T09:20:00Z";
constexpr Coordinate kMiami{25.77, -80.19};

/// 300 km north of Miami, on its way to the northwest.
TropicalStorm cyclone(StormCategory category = one, double windKmh = 130) {
  TropicalStorm made;
  made.id = "al092026";
  made.name = "Testa";
  made.category = category;
  made.windMs = windKmh / kKmhInMs;
  made.coordinate = northOf(kMiami, 300);
  made.movementDirection = 315;
  made.movementMs = 20 / kKmhInMs;
  made.lastUpdate = at("2026-09-21T09:00:00Z");
  return made;
}

RuleInputs inputsWith(TropicalStorm const& told, std::optional<KnownStorm> known = {}) {
  RuleInputs inputs = test::ruleInputs(at(kNow));
  inputs.place.coordinate = kMiami;
  inputs.place.name = "Miami Beach";
  inputs.storms = InputReading<std::vector<TropicalStorm>>::of(std::vector{told});
  if (known) inputs.knownStorms[told.id] = *known;
  return inputs;
}

std::vector<std::string> identifiers(Evaluation const& found) {
  std::vector<std::string> list;
  for (Finding const& finding : found.findings) list.push_back(finding.identifier);
  return list;
}

Evaluation atlantic(RuleInputs const& inputs) {
  return tropicalCyclones(TropicalBasin::atlantic, inputs);
}

constexpr char kCategory[] = "hurricane_al092026_category_2026-09-21T09:00:00Z";
constexpr char kSpeed[] = "hurricane_al092026_speed_2026-09-21T09:00:00Z";

struct ChangeRow {
  char const* what;
  std::optional<KnownStorm> known;
  TropicalStorm now;
  std::vector<std::string> identifiers;
};

TEST(TropicalCyclones, TellWhatChanged) {
  for (ChangeRow const& row : {
           ChangeRow{"an unknown storm", {}, cyclone(), {"hurricane_al092026_new"}},
           {"nothing changed", KnownStorm{one, 130}, cyclone(), {}},
           {"up", KnownStorm{one, 150}, cyclone(two, 155), {kCategory}},
           {"down to a storm", KnownStorm{one, 119}, cyclone(StormCategory::storm, 110), {kCategory}},
           {"a category and much wind", KnownStorm{one, 120}, cyclone(three, 185), {kCategory}},
           {"from 40 to 50 kn",
            KnownStorm{StormCategory::storm, 74.08},
            cyclone(StormCategory::storm, 92.6),
            {kSpeed}},
           {"5 kn more", KnownStorm{four, 212.98}, cyclone(four, 222.24), {kSpeed}},
           {"5 kn less", KnownStorm{four, 222.24}, cyclone(four, 212.98), {kSpeed}},
           {"a rounding more", KnownStorm{four, 222.24}, cyclone(four, 222.6), {}},
       }) {
    Evaluation const found = atlantic(inputsWith(row.now, row.known));
    EXPECT_EQ(identifiers(found), row.identifiers) << row.what;
    EXPECT_THAT(faultsOf(found), IsEmpty()) << row.what;
    for (Finding const& finding : found.findings) {
      EXPECT_EQ(finding.storm, (ToldStorm{"al092026", {row.now.category, row.now.windMs * kKmhInMs}}))
          << row.what;
    }
  }
}

TEST(TropicalCyclones, SayWhereAndHowStrong) {
  RuleInputs inputs = inputsWith(cyclone());
  EXPECT_EQ(bodyOf(atlantic(inputs)),
            "Testa has formed in the Atlantic. Winds up to 130 km/h. Moving northwest at 20 km/h. Its center "
            "is about 230 km from Tampa. About 300 km from Miami Beach.");
  EXPECT_EQ(atlantic(inputs).findings[0].title, "New Tropical Cyclone: Testa");
  inputs.units = Units::imperial();
  EXPECT_EQ(bodyOf(atlantic(inputs)),
            "Testa has formed in the Atlantic. Winds up to 81 mph. Moving northwest at 12 mph. Its center is "
            "about 143 mi from Tampa. About 186 mi from Miami Beach.");
  inputs.units = {};
  EXPECT_EQ(bodyOf(atlantic(inputsWith(cyclone(three, 190), KnownStorm{one, 130}))),
            "Testa has intensified from Category 1 to Category 3. Winds are now up to 190 km/h. Its center "
            "is about 230 km from Tampa. About 300 km from Miami Beach.");
  EXPECT_EQ(bodyOf(atlantic(inputsWith(cyclone(depression, 50), KnownStorm{StormCategory::storm, 65}))),
            "Testa has weakened from Tropical Storm to Tropical Depression. Winds are now up to 50 km/h. Its "
            "center is about 230 km from Tampa. About 300 km from Miami Beach.");
  EXPECT_EQ(bodyOf(atlantic(inputsWith(cyclone(four, 240), KnownStorm{four, 215}))),
            "Testa is strengthening. Wind speed changed from 215 km/h to 240 km/h. Its center is about 230 "
            "km from Tampa. About 300 km from Miami Beach.");
  EXPECT_THAT(bodyOf(atlantic(inputsWith(cyclone(four, 215), KnownStorm{four, 240}))),
              testing::StartsWith("Testa is weakening. Wind speed changed from 240 km/h to 215 km/h."));
}

TEST(TropicalCyclones, NameNoCoastThatIsFarAway) {
  TropicalStorm atSea = cyclone();
  atSea.coordinate = {25, -45};
  atSea.movementMs = {};
  EXPECT_THAT(bodyOf(atlantic(inputsWith(atSea))),
              testing::MatchesRegex("Testa has formed in the Atlantic. Winds up to 130 km/h. About [0-9]+ km "
                                    "from Miami Beach."));
}

struct DirectionRow {
  double degrees;
  std::string_view word;
};

TEST(TropicalCyclones, MoveByTheCompass) {
  for (DirectionRow const& row : {
           DirectionRow{0, "north"},
           {22.4, "north"},
           {22.6, "northeast"},
           {90, "east"},
           {135, "southeast"},
           {180, "south"},
           {225, "southwest"},
           {270, "west"},
           {337.4, "northwest"},
           {337.6, "north"},
           {360, "north"},
       }) {
    TropicalStorm moving = cyclone();
    moving.movementDirection = row.degrees;
    EXPECT_THAT(bodyOf(atlantic(inputsWith(moving))),
                testing::HasSubstr("Moving " + std::string(row.word) + " at"));
  }
}

struct ApproachRow {
  char const* what;
  double km;
  char const* time;
  bool isTold;
};

TEST(TropicalCyclones, WarnOfATrackThatComesNear) {
  for (ApproachRow const& row : {
           ApproachRow{"at 500 km", 499.9, "2026-09-23T18:00:00Z", true},
           {"farther off", 500.1, "2026-09-23T18:00:00Z", false},
           {"it was there before", 100, "2026-09-21T09:00:00Z", false},
       }) {
    TropicalStorm moving = cyclone();
    moving.track = {{at("2026-09-22T06:00:00Z"), northOf(kMiami, 900), {}},
                    {at(row.time), northOf(kMiami, row.km), {}}};
    Evaluation const found = atlantic(inputsWith(moving, KnownStorm{one, 130}));
    EXPECT_EQ(identifiers(found).size(), row.isTold ? 1U : 0U) << row.what;
    EXPECT_THAT(faultsOf(found), IsEmpty()) << row.what;
    if (!row.isTold) continue;
    EXPECT_THAT(identifiers(found), ElementsAre("hurricane_al092026_approach"));
    EXPECT_EQ(bodyOf(found),
              "Forecast to pass about 500 km from Miami Beach around Wednesday 6 PM. Winds are now up to 130 "
              "km/h. Moving northwest at 20 km/h.");
  }
}

TEST(TropicalCyclones, BelongToOneBasin) {
  TropicalStorm eastern = cyclone();
  eastern.id = "ep012026";
  eastern.basin = TropicalBasin::easternPacific;
  RuleInputs const inputs = inputsWith(eastern);
  EXPECT_EQ(atlantic(inputs).note, "noStorms");
  EXPECT_THAT(identifiers(tropicalCyclonesOf<TropicalBasin::easternPacific>(inputs, {})),
              ElementsAre("hurricane_ep012026_new"));
}

TEST(TropicalCyclones, HaveAWordForEverything) {
  for (std::string_view const name : enumNames<TropicalBasin>) {
    EXPECT_TRUE(test::englishTexts().translates("push.hurricane.basin." + std::string(name))) << name;
  }
  for (std::string_view const name : enumNames<StormCategory>) {
    EXPECT_TRUE(test::englishTexts().translates("push.hurricane.category." + std::string(name))) << name;
  }
}

// ---- What the engine remembers of them

class StormMemory : public testing::Test {
 protected:
  /// The identifiers that a pass delivers, all of them taken by the desktop.
  std::vector<std::string> pass(TropicalStorm const& told) {
    std::vector<std::string> list;
    for (Decision const& decision : plan(told).decisions) {
      if (isDelivery(decision.outcome)) list.push_back(decision.key);
      apply(decision, at(kNow), state);
    }
    return list;
  }

  /// Of the report of that hour of the day.
  static TropicalStorm reported(std::string const& hour, StormCategory category, double windKmh) {
    TropicalStorm storm = cyclone(category, windKmh);
    storm.lastUpdate = at("2026-09-21T" + hour + ":00:00Z");
    return storm;
  }

  PassPlan plan(TropicalStorm const& told) {
    std::vector<RuleInputs> const places{inputsWith(told)};
    return planPass({at(kNow), places, {}, settings, test::englishTexts(), suppressed}, state);
  }

  SettingsRegistry registry{notificationSettings()};
  Settings settings{registry, {{"notify_hurricane_atlantic", true}}};
  std::set<std::string, std::less<>> suppressed;
  EngineState state;
};

TEST_F(StormMemory, MeasuresChangesFromWhatWasTold) {
  EXPECT_THAT(pass(cyclone(one, 130)), ElementsAre("hurricane_al092026_new"));
  EXPECT_THAT(pass(cyclone(one, 130)), IsEmpty());
  EXPECT_THAT(pass(reported("15", one, 139)), ElementsAre("hurricane_al092026_speed_2026-09-21T15:00:00Z"));
  EXPECT_THAT(pass(reported("15", one, 139)), IsEmpty());
  EXPECT_THAT(pass(reported("21", two, 160)),
              ElementsAre("hurricane_al092026_category_2026-09-21T21:00:00Z"));
  EXPECT_EQ(state.knownStorms, (decltype(state.knownStorms){{"al092026", {two, 160}}}));
}

TEST_F(StormMemory, TellsAStormThatReturnsToACategoryAndAWind) {
  std::ignore = pass(cyclone(one, 145));
  char const* const hours[] = {"10", "11", "12", "13", "14", "15"};
  for (int i = 0; i < 6; ++i) {
    EXPECT_EQ(pass(i % 2 == 0 ? reported(hours[i], two, 160) : reported(hours[i], one, 145)).size(), 1) << i;
  }
  char const* const later[] = {"16", "17", "18", "19"};
  for (int i = 0; i < 4; ++i) EXPECT_EQ(pass(reported(later[i], one, i % 2 == 0 ? 139 : 130)).size(), 1) << i;
}

/// Without the time of a report a change is one of its hour.
TEST_F(StormMemory, TellsChangesOfReportsWithoutATime) {
  TropicalStorm timeless = cyclone(one, 145);
  timeless.lastUpdate.reset();
  std::ignore = pass(timeless);
  timeless.windMs = 130 / kKmhInMs;
  EXPECT_THAT(pass(timeless), ElementsAre("hurricane_al092026_speed_2026-09-21T09:00:00Z"));
}

TEST_F(StormMemory, ForgetsWhatTheDesktopRefused) {
  std::ignore = pass(cyclone(one, 130));
  EngineState const before = state;
  for (Decision const& decision : plan(cyclone(two, 160)).decisions) {
    if (!isDelivery(decision.outcome)) continue;
    apply(decision, at(kNow), state);
    EXPECT_NE(state, before);
    takeBack(decision, state, before);
  }
  EXPECT_EQ(state, before);
}

TEST_F(StormMemory, TellsANewStormAfterItWasHeldBack) {
  suppressed.insert("testville");
  EXPECT_THAT(pass(cyclone()), IsEmpty());
  suppressed.clear();
  EXPECT_THAT(pass(cyclone()), ElementsAre("hurricane_al092026_new"));
}

TEST_F(StormMemory, OutlivesTheProgram) {
  std::ignore = pass(cyclone(two, 160.5));
  SettingValues stored;
  for (auto const& [key, value] : changesOf(state)) {
    if (value) stored[key] = *value;
  }
  auto const restored = engineStateOf(stored);
  ASSERT_TRUE(restored) << restored.error().message;
  EXPECT_EQ(*restored, state);
  stored["notif_knownStorms"] = SettingValue(std::string("{\"al092026\":{\"category\":\"9\"}}"));
  EXPECT_FALSE(engineStateOf(stored));
}

}  // namespace
}  // namespace nimbara
