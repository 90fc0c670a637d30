#include "support/session/demo_session.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using test::CliRun;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

/// A station of the demo's account stands in Berlin.
constexpr char kBerlin[] = "52.52,13.41";

struct StationCommand : test::DemoSession {
  void link() const { ASSERT_EQ(run({"station", "link", "--token"}).exitCode, 0); }
};

TEST_F(StationCommand, SaysThatNothingIsLinked) {
  CliRun const show = run({"station", "show"});
  EXPECT_EQ(show.exitCode, 1);
  EXPECT_EQ(show.err, "nimbara: No weather station is linked.\n");
  EXPECT_THAT(run({"station", "show", "--json"}).out, HasSubstr(R"({"state":"notLinked","kind":"none")"));
  EXPECT_THAT(run({"forecast", kBerlin, "--json"}).out, Not(HasSubstr("\"sources\"")));
}

TEST_F(StationCommand, ShowsWhatIsMeasuredAndPutsItIntoThePresent) {
  link();
  CliRun const page = run({"station", "show"});
  EXPECT_EQ(page.exitCode, 0) << page.err;
  EXPECT_THAT(page.out, AllOf(HasSubstr("Balcony in Berlin\n"), HasSubstr("Outdoors"),
                              HasSubstr("battery 87%"), HasSubstr("From your station, 9 min ago")));
  EXPECT_THAT(run({"station", "show", "--json"}).out,
              AllOf(HasSubstr(R"({"state":"current","kind":"account","checkedAt":"2026-11-21T09:20:00Z",)"
                              R"("nextAsk":"2026-11-21T09:21:00Z","reason":null,"tokens":"file")"),
                    HasSubstr(R"("unit":"°C","module":"Outdoors","kind":"outdoor",)"
                              R"("observedAt":"2026-11-21T09:10:40Z","ageSeconds":560,"isPresent":true)")));
  std::string const forecast = run({"forecast", kBerlin, "--json"}).out;
  EXPECT_THAT(forecast,
              HasSubstr(R"("sources":{"tempC":{"source":"station","station":"Balcony in Berlin",)"
                        R"("module":"Outdoors","observedAt":"2026-11-21T09:10:40Z","ageSeconds":560})"));
  EXPECT_THAT(run({"forecast", kBerlin}).out, HasSubstr("From your station, 9 min ago"));
  EXPECT_THAT(run({"forecast", "48.14,11.58", "--json"}).out, HasSubstr("\"sources\":{}"));
  EXPECT_THAT(run({"settings", "list", "--json"}).out, Not(HasSubstr("r-17")));
}

TEST_F(StationCommand, ChoosesAmongTheAccountsStationsAndThoseAround) {
  link();
  EXPECT_THAT(run({"station", "list"}).out,
              AllOf(HasSubstr("* Balcony in Berlin"), HasSubstr("  Garden in Hamburg")));
  CliRun const silent = run({"station", "choose", "garden"});
  EXPECT_EQ(silent.exitCode, 0) << silent.err;
  EXPECT_THAT(silent.out, AllOf(HasSubstr("no reading"), HasSubstr("Outdoors does not answer.")));
  EXPECT_THAT(run({"station", "choose", "nobody"}).err, HasSubstr("no station is called 'nobody'"));
  CliRun const around = run({"station", "choose", "--around", kBerlin, "--json"});
  EXPECT_THAT(around.out, HasSubstr(R"("stations":{"used":8,"leftOut":1,)")) << around.err;
  EXPECT_THAT(run({"forecast", kBerlin}).out, HasSubstr("From 8 stations within "));
}

TEST_F(StationCommand, LinksAGatewayInTheNetworkAndForgetsIt) {
  CliRun const linked =
      run({"station", "link", "--address", base, "--place", kBerlin, "--name", "Roof", "--json"});
  EXPECT_EQ(linked.exitCode, 0) << linked.err;
  EXPECT_THAT(linked.out, AllOf(HasSubstr(R"("kind":"address")"), HasSubstr(R"("name":"Roof")")));
  EXPECT_EQ(run({"station", "unlink"}).exitCode, 0);
  EXPECT_EQ(run({"station", "show"}).exitCode, 1);
  EXPECT_EQ(run({"station", "link", "--address", "http://127.0.0.1:1", "--place", kBerlin}).exitCode, 1);
  EXPECT_EQ(run({"station", "show"}).exitCode, 1) << "what does not answer is not linked";
}

}  // namespace
}  // namespace nimbara
