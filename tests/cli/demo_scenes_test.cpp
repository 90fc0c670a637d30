#include "demo/demo_server.h"
#include "support/session/demo_session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>

namespace nimbara {
namespace {

using test::CliRun;
using testing::HasSubstr;
using testing::Not;

struct DemoScenes : test::DemoSession {
  CliRun play(std::string_view scene, std::vector<std::string> arguments, std::string const& now = kMoment) {
    DemoScene const* const found = findDemoScene(scene);
    EXPECT_NE(found, nullptr) << scene;
    server.reset();
    clock = FixedClock(test::at(now));
    server = *DemoServer::start(clock, {}, 0, found);
    base = server->baseUrl();
    arguments.insert(arguments.begin() + 1, std::string(found->place));
    return run(std::move(arguments), now);
  }
};

struct SceneRow {
  char const* scene;
  char const* state;  ///< of the first source
  std::size_t count;
  std::vector<char const*> listed;
  std::vector<char const*> absent;
};

void PrintTo(SceneRow const& row, std::ostream* out) {
  *out << row.scene;
}

struct ScenesPlayed : DemoScenes, testing::WithParamInterface<SceneRow> {};

TEST_P(ScenesPlayed, ComeOutAsTheySay) {
  SceneRow const& row = GetParam();
  CliRun const played = play(row.scene, {"alerts", "--source", "nws,meteoalarm", "--json", "--coverage"});
  EXPECT_THAT(played.out, HasSubstr("\"state\":\"" + std::string(row.state) +
                                    "\",\"count\":" + std::to_string(row.count)));
  for (char const* const text : row.listed) EXPECT_THAT(played.out, HasSubstr(text));
  for (char const* const text : row.absent) EXPECT_THAT(played.out, Not(HasSubstr(text)));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ScenesPlayed,
    testing::Values(
        SceneRow{"coast", "warnings", 2, {"Uusimaa", "Western Gulf of Finland"}, {"Ahvenanmaa"}},
        SceneRow{"border", "warnings", 1, {"Rain Warning"}, {"Wind Warning"}},
        SceneRow{"names", "warnings", 1, {"Wind Warning"}, {"Rain Warning"}},
        SceneRow{
            "no-outlines", "unplaced", 2, {R"("alerts":[])", "Velebit Channel North", "Outer Islands"}, {}},
        SceneRow{"consecutive",
                 "warnings",
                 1,
                 {R"("onset":"2026-11-21T06:00:00Z")", R"("expires":"2026-11-21T20:00:00Z")"},
                 {}},
        SceneRow{"near",
                 "warnings",
                 1,
                 {R"("severity":"advisory")", R"("expires":"2026-11-21T15:00:00Z")"},
                 {R"("severity":"critical","title")"}},
        SceneRow{"moved", "warnings", 1, {R"("onset":"2026-11-21T09:00:00Z")"}, {}},
        SceneRow{"cancelled", "warnings", 1, {"Rain Warning"}, {}},
        SceneRow{"bilingual", "warnings", 1, {R"("message":"Brabant)"}, {"2 areas"}},
        SceneRow{"calm", "none", 0, {}, {}}, SceneRow{"rubbish", "unchecked", 0, {}, {}},
        SceneRow{"missing", "unchecked", 0, {}, {}},
        SceneRow{"second-feed",
                 "warnings",
                 1,
                 {"Wind Warning", R"("_nimbaraText":"Orange Wind warning for Stadt Berlin.")",
                  R"("_nimbaraFullText":true)"},
                 {"Rain Warning"}},
        SceneRow{"uncovered", "uncovered", 0, {R"("country":"TD")"}, {}},
        SceneRow{"unknown-level", "warnings", 2, {"Air Quality Alert", "Frost Advisory"}, {}},
        SceneRow{"reissued", "warnings", 1, {"now until tomorrow"}, {}}),
    [](auto const& row) {
      std::string name = row.param.scene;
      std::ranges::replace(name, '-', '_');
      return name;
    });

TEST_F(DemoScenes, EndWithACancellation) {
  EXPECT_THAT(play("cancelled", {"coverage"}, "2026-11-21T12:20:00Z").out,
              testing::StartsWith("No official warnings, checked"));
}

TEST_F(DemoScenes, LiftOnceWhatWasLookedUpForAPlace) {
  auto const told = [&](std::string const& clock) {
    return play("cancelled", {"notify", "--deliver", "print"}, "2026-11-21T" + clock + ":00Z").out;
  };
  EXPECT_THAT(told("07:50"), HasSubstr("Rain Warning"));
  EXPECT_THAT(told("12:10"), Not(HasSubstr("Rain Warning"))) << "feeds drop one for a moment";
  EXPECT_THAT(told("12:30"), HasSubstr("Lifted: Rain Warning"));
  EXPECT_THAT(told("12:50"), Not(HasSubstr("Rain Warning")));
}

TEST_F(DemoScenes, TellWhatIsGraverNearby) {
  std::string const page = play("near", {"alerts", "--source", "meteoalarm"}).out;
  EXPECT_THAT(page, HasSubstr("\n  Linz (Stadt)\n"));
  EXPECT_THAT(page, testing::ContainsRegex("Nearby: Innviertel \\(37 km: red, from [^)]*until [^)]*\\)"));
  std::string const told = play("near", {"notify", "--deliver", "print", "--json"}).out;
  EXPECT_THAT(told, HasSubstr(R"("body":"Linz (Stadt), from 11:00 AM, until 4:00 PM\n)"));
  EXPECT_THAT(told, HasSubstr("Innviertel (37 km: red, from "));
}

TEST_F(DemoScenes, PutTheUnstatedLevelAboveTheSlightOne) {
  std::string const page = play("unknown-level", {"alerts", "--source", "nws"}).out;
  EXPECT_LT(page.find("Air Quality Alert"), page.find("Frost Advisory"));
}

TEST_F(DemoScenes, ExplainNoAllClearThatNobodyGave) {
  auto const explained = [&](char const* scene) {
    std::string const page = play(scene, {"notify", "--explain"}).out;
    return std::regex_replace(page, std::regex("[ \n]+"), " ");
  };
  std::string const abroad = explained("uncovered");
  EXPECT_THAT(abroad, HasSubstr("No source of official warnings for this place."));
  std::string const unread = explained("rubbish");
  EXPECT_THAT(unread, HasSubstr("Could not be checked. Could not fetch warnings from MeteoAlarm"));
  for (std::string const& page : {abroad, unread}) EXPECT_THAT(page, Not(HasSubstr("No official")));
}

TEST_F(DemoScenes, AreListed) {
  CliRun const list = run({"demo", "--scene", "list"});
  EXPECT_EQ(list.exitCode, 0);
  for (DemoScene const& scene : demoScenes()) EXPECT_THAT(list.out, HasSubstr(std::string(scene.name)));
  CliRun const wrong = run({"demo", "--scene", "opera"});
  EXPECT_EQ(wrong.exitCode, exitCode::kUsage);
  EXPECT_THAT(wrong.err, HasSubstr("'opera'"));
}

}  // namespace
}  // namespace nimbara
