#include "demo/demo_server.h"
#include "support/instants.h"
#include "support/temporary_folder.h"
#include "support/test_console.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using test::at;
using test::CliRun;
using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::StartsWith;

class NowcastCommand : public testing::Test {
 protected:
  NowcastCommand() {
    environment_.dataDirectory = directory_.path() / "data";
    environment_.cacheDirectory = directory_.path() / "Nimbara";
  }
  CliRun run(std::vector<std::string> arguments, std::vector<DemoFault> faults = {},
             std::string const& now = "2026-11-21T09:22:00Z") const {
    FixedClock const clock(at(now));
    auto const server = *DemoServer::start(clock, std::move(faults));
    arguments.insert(arguments.begin(), "nowcast");
    arguments.insert(arguments.end(), {"--services", server->baseUrl(), "--now", now});
    return test::run(arguments, environment_);
  }

  test::TemporaryFolder directory_;
  Environment environment_ = test::plainEnvironment();
};

struct PlaceRow {
  std::string place;
  std::string begin;  ///< of the JSON document
  std::string source;
};

TEST_F(NowcastCommand, HasASourceByThePlace) {
  for (PlaceRow const& row : {
           PlaceRow{"59.9139,10.7522",
                    R"({"source":"metNorway","kind":"radar","issued":"2026-11-21T09:20:00Z",)",
                    "MET Norway, radar, 2 min ago"},
           {"48.21,16.37", R"({"source":"brightSky","kind":"radar",)", "Deutscher Wetterdienst, radar"},
           {"52.52,13.41", R"({"source":"brightSky","kind":"radar","issued":null,)",
            "Deutscher Wetterdienst, radar, just now"},
           {"53.5511,9.9937", R"({"source":"brightSky","kind":"radar",)", "Deutscher Wetterdienst, radar"},
           {"40.71,-74.01", R"({"source":"openMeteo","kind":"model15",)", "Open-Meteo, 15-minute model"},
       }) {
    CliRun const json = run({row.place, "--json"});
    EXPECT_EQ(json.exitCode, 0) << json.err;
    EXPECT_EQ(json.err, "") << row.place;
    EXPECT_THAT(json.out, StartsWith(row.begin));
    EXPECT_THAT(json.out,
                AllOf(HasSubstr(R"("steps":[{"from":"2026-11-21T09:)"), HasSubstr(R"("sentence":")"),
                      HasSubstr(R"("state":"current")"), HasSubstr(R"("unchecked":[])")));
    CliRun const text = run({row.place});
    EXPECT_THAT(text.out, ContainsRegex("^(Dry for|Rain|Snow|Sleet|Precipitation) [^\n]*\n"));
    EXPECT_THAT(text.out, HasSubstr(row.source));
  }
}

TEST_F(NowcastCommand, SaysWhereNobodyOffersIt) {
  CliRun const json = run({"35.68,139.69", "--json"});
  EXPECT_EQ(json.exitCode, 0);
  EXPECT_EQ(json.out, R"({"source":null,"kind":"none","issued":null,"steps":[],)"
                      R"("sentence":"No rain radar and no 15-minute model covers this place",)"
                      R"("state":"none","checkedAt":null,"unchecked":[]})"
                      "\n");
  EXPECT_EQ(run({"35.68,139.69"}).out, "No rain radar and no 15-minute model covers this place\n");
}

TEST_F(NowcastCommand, NamesTheSourceThatFailedBeforeTheOneThatAnswered) {
  CliRun const json = run({"52.52,13.41", "--json"}, {{Service::brightSky, DemoFault::Kind::status500}});
  EXPECT_EQ(json.exitCode, 0);
  EXPECT_THAT(json.out, StartsWith(R"({"source":"openMeteo","kind":"model15")"));
  EXPECT_THAT(
      json.out,
      HasSubstr(R"("unchecked":[{"source":"brightSky","reason":"the service returned status 500"}])"));
  EXPECT_THAT(json.err, HasSubstr("the nowcast of Deutscher Wetterdienst could not be checked"));
}

TEST_F(NowcastCommand, FailsWhereItCouldNotBeChecked) {
  for (auto const fault : {DemoFault::Kind::status500, DemoFault::Kind::garbage, DemoFault::Kind::drop,
                           DemoFault::Kind::empty}) {
    CliRun const failed = run({"59.9139,10.7522", "--json"}, {{Service::yrNo, fault}});
    EXPECT_EQ(failed.exitCode, exitCode::kUnavailable) << enumName(fault);
    EXPECT_THAT(failed.out, StartsWith(R"({"source":"metNorway","kind":"radar","issued":null,"steps":[],)"
                                       R"("sentence":null,"state":"failed")"))
        << enumName(fault);
    EXPECT_THAT(failed.err, StartsWith("nimbara: the nowcast of MET Norway could not be checked: "));
    EXPECT_EQ(std::ranges::count(failed.err, '\n'), 1);
  }
  CliRun const text = run({"59.9139,10.7522"}, {{Service::yrNo, DemoFault::Kind::status500}});
  EXPECT_EQ(text.out, "");
}

TEST_F(NowcastCommand, TellsARadarThatIsDownFromNone) {
  CliRun const tromso = run({"69.65,18.96", "--json"});
  EXPECT_EQ(tromso.exitCode, exitCode::kUnavailable);
  EXPECT_THAT(tromso.out, HasSubstr(R"("reason":"its radar is temporarily unavailable")"));
  EXPECT_EQ(
      tromso.err,
      "nimbara: the nowcast of MET Norway could not be checked: its radar is temporarily unavailable\n");
  for (char const* const uncovered : {"69.73,30.05", "-1.29,36.82"}) {
    CliRun const none = run({uncovered});
    EXPECT_EQ(none.exitCode, 0);
    EXPECT_EQ(none.out, "No rain radar and no 15-minute model covers this place\n");
  }
}

/// Status bars: what another command asked for is shown, and nobody is asked but with --fresh.
TEST_F(NowcastCommand, IsAFieldOfTheLine) {
  std::string const now = "2026-11-21T02:22:00Z";
  FixedClock const clock(at(now));
  auto const server = *DemoServer::start(clock, {});
  auto const shown = [&](std::vector<std::string> words, std::string const& at = "2026-11-21T02:22:00Z") {
    words.insert(words.end(), {"--services", server->baseUrl(), "--now", at});
    return test::run(words, environment_);
  };
  std::vector<std::string> const line{"line", "60.39,5.32", "--format", "{nowcast}"};
  EXPECT_EQ(shown({"line", "60.39,5.32", "--fresh", "--format", "{temperature}"}).exitCode, 0);
  EXPECT_EQ(shown(line).out, "–\n") << "nobody has asked";
  std::vector<std::string> fresh = line;
  fresh.emplace_back("--fresh");
  EXPECT_EQ(shown(fresh).out, "Snow starting around 3:45 AM, until at least 5:15 AM\n");
  EXPECT_EQ(shown(line).out, shown(fresh).out);
  EXPECT_EQ(shown(line, "2026-11-21T02:51:59Z").out, "Snow until at least 5:15 AM\n");
  EXPECT_EQ(shown(line, "2026-11-21T02:52:01Z").out, "–\n") << "that is too long ago";
  EXPECT_THAT(
      shown({"waybar", "60.39,5.32"}).out,
      HasSubstr("\\nSnow starting around 3:45 AM, until at least 5:15 AM (MET Norway, radar, 2 min ago)"));
  std::vector<std::string> const nairobi{"line", "-1.29,36.82", "--fresh", "--format", "{nowcast}|"};
  EXPECT_EQ(shown(nairobi).out, "|\n") << "nobody offers it";
  std::vector<std::string> const tromso{"line", "69.65,18.96", "--fresh", "--format", "{nowcast}"};
  EXPECT_THAT(shown(tromso).out, HasSubstr("the radar of MET Norway is temporarily unavailable"));
}

TEST_F(NowcastCommand, SaysWhenItBeginsInThePlacesTime) {
  EXPECT_THAT(run({"60.39,5.32"}, {}, "2026-11-21T02:22:00Z").out,
              StartsWith("Snow starting around 3:45 AM, until at least 5:15 AM\n"));
  EXPECT_THAT(run({"47.61,-122.33"}, {}, "2026-11-27T08:22:00Z").out,
              StartsWith("Rain starting around 12:30 AM, for about 105 minutes\n"));
  EXPECT_THAT(run({"60.39,5.32", "--lang", "de"}, {}, "2026-11-21T14:22:00Z").out,
              StartsWith("Schneeregen bis etwa "));
}

TEST_F(NowcastCommand, RefusesWhatIsNoPlace) {
  EXPECT_EQ(run({"91,0"}).exitCode, exitCode::kUsage);
}

}  // namespace
}  // namespace nimbara
