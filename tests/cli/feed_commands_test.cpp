#include "base/text/text.h"
#include "cli/pages/warnings/warning_page.h"
#include "demo/demo_server.h"
#include "support/instants.h"
#include "support/temporary_folder.h"
#include "support/test_console.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using test::at;
using test::CliRun;
using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class FeedCommands : public testing::Test {
 protected:
  FeedCommands() {
    environment_.dataDirectory = directory_.path() / "data";
    environment_.cacheDirectory = directory_.path() / "Nimbara";
  }
  CliRun run(std::vector<std::string> arguments, std::vector<DemoFault> faults = {},
             std::string const& now = "2026-11-21T09:20:00Z") const {
    auto const server = *DemoServer::start(clock_, std::move(faults));
    arguments.insert(arguments.end(), {"--services", server->baseUrl(), "--now", now});
    return test::run(arguments, environment_);
  }

  test::TemporaryFolder directory_;
  Environment environment_ = test::plainEnvironment();
  FixedClock clock_{at("2026-11-21T09:20:00Z")};
};

TEST_F(FeedCommands, PrintTheKIndex) {
  EXPECT_THAT(run({"kp", "--json"}).out, StartsWith(R"({"kp":)"));
  EXPECT_THAT(run({"kp", "--json"}).out, HasSubstr(R"("history":[{"time":"2026-11-1)"));
  EXPECT_THAT(run({"kp", "--json"}).out, HasSubstr(R"("forecast":[{"time":"2026-11-2)"));
  EXPECT_THAT(run({"kp"}).out, ContainsRegex("^Kp [0-9].[0-9]+: [^;]+\n")) << "no place is known";
  EXPECT_THAT(run({"kp", "--place", "52.52,13.41"}).out, ContainsRegex("^Kp [^\n]*; aurora [^\n]* at 53°N"));
  EXPECT_EQ(run({"kp", "--place", "91,0"}).exitCode, exitCode::kUsage);
  CliRun const failed = run({"kp", "--json"}, {{Service::swpc, DemoFault::Kind::garbage}});
  EXPECT_EQ(failed.out, "{\"kp\":null}\n");
  EXPECT_EQ(failed.exitCode, exitCode::kUnavailable);
  EXPECT_THAT(failed.err, StartsWith("nimbara: the K index could not be fetched"));
}

TEST_F(FeedCommands, TellOfAnUnreadableAnswerWithoutAParsersWords) {
  struct Row {
    std::vector<std::string> arguments;
    Service service;
  };
  for (Row const& row : {Row{{"nws", "39.74,-104.98"}, Service::nws}, Row{{"quakes"}, Service::usgs},
                         Row{{"alerts", "52.52,13.41", "--source", "meteoalarm"}, Service::meteoAlarm},
                         Row{{"satellites", "list", "--group", "galileo"}, Service::celestrak}}) {
    std::vector<DemoFault> const garbage{{row.service, DemoFault::Kind::garbage}};
    CliRun const plain = run(row.arguments, garbage);
    EXPECT_EQ(plain.exitCode, exitCode::kUnavailable);
    EXPECT_THAT(plain.err, HasSubstr("the response could not be read"));
    EXPECT_THAT(plain.err, Not(HasSubstr("(")));
    auto verbose = row.arguments;
    verbose.emplace_back("--verbose");
    EXPECT_THAT(run(verbose, garbage).err, HasSubstr("not a valid ")) << row.arguments.front();
  }
}

TEST_F(FeedCommands, AnswerWithOneWhereWarningsCouldNotBeChecked) {
  std::vector<std::string> const arguments{"alerts", "52.52,13.41", "--source", "meteoalarm"};
  CliRun const known = run(arguments);
  EXPECT_EQ(known.exitCode, 0) << known.err;
  std::vector<DemoFault> const down{{Service::meteoAlarm, DemoFault::Kind::status500}};
  CliRun const kept = run(arguments, down, "2026-11-21T09:30:00Z");
  EXPECT_EQ(kept.exitCode, exitCode::kUnavailable) << "what is kept is not the answer";
  EXPECT_THAT(kept.out, HasSubstr("could not be checked since"));
  EXPECT_EQ(
      kept.err,
      "nimbara: the warnings of MeteoAlarm for Berlin could not be checked: the service returned status "
      "500\n");
  std::vector<std::string> states = arguments;
  states.emplace_back("--coverage");
  EXPECT_EQ(run(states, down, "2026-11-21T09:30:00Z").exitCode, 0) << "the state is known";
  for (auto const& [option, code] : {std::pair("--geometry", exitCode::kUsage), {"--map", 0}})
    EXPECT_EQ(run({"alerts", "52.52,13.41", "--source", "meteoalarm", option}).exitCode, code) << option;
}

TEST_F(FeedCommands, RefuseCoordinatesThatAreNone) {
  for (std::vector<std::string> const& command :
       {std::vector<std::string>{"forecast"},
        {"alerts"},
        {"coverage"},
        {"nowcast"},
        {"radar", "--png", "x"},
        {"brief"},
        {"advice"},
        {"air"},
        {"storms"},
        {"climate"},
        {"fires"},
        {"lightning"},
        {"advisories"},
        {"nws"},
        {"quakes", "--near"},
        {"notify", "--dry-run"},
        {"line"},
        {"waybar"},
        {"satellites", "passes"},
        {"regions", "show"},
        {"places", "add"},
        {"rules", "add", "--title", "Rain", "--type", "uvIndex", "--operator", "above", "--threshold", "3",
         "--immediately", "--place"}}) {
    for (std::string const coordinate :
         {"nan,nan", "NaN,13", "52,inf", "0,-inf", "1e999,0", "91,0", "0,180.5", "52.5x,13.4"}) {
      auto arguments = command;
      arguments.push_back(coordinate);
      CliRun const refused = test::run(arguments, environment_);
      EXPECT_EQ(refused.exitCode, exitCode::kUsage) << command.front() << " " << refused.err;
      EXPECT_THAT(refused.err, HasSubstr("'" + coordinate + "'")) << command.front();
      EXPECT_EQ(std::ranges::count(refused.err, '\n'), 1) << refused.err;
      EXPECT_EQ(refused.out, "");
    }
  }
}

TEST_F(FeedCommands, PrintEarthquakes) {
  CliRun const all = run({"quakes", "--json"});
  EXPECT_EQ(all.exitCode, 0);
  EXPECT_EQ(all.err, "");
  EXPECT_THAT(all.out, StartsWith(R"([{"id":"demo)"));
  EXPECT_THAT(run({"quakes", "--min-magnitude", "4", "--json"}).out,
              Not(ContainsRegex("magnitude\":[0-3]\\.")));
  EXPECT_EQ(run({"quakes", "--near", "0,0", "--radius", "1", "--json"}).out, "[]\n");
  EXPECT_THAT(run({"quakes", "--near", "36.8,-120.1"}).out, HasSubstr("Parkfield"));
  std::vector<DemoFault> const down{{Service::usgs, DemoFault::Kind::status500}};
  EXPECT_EQ(run({"quakes", "--json"}, down, "2026-11-21T09:20:59Z").err, "") << "it is not asked yet";
  CliRun const stale = run({"quakes", "--json"}, down, "2026-11-21T09:21:00Z");
  EXPECT_EQ(stale.out, all.out);
  EXPECT_EQ(stale.exitCode, 0);
  EXPECT_THAT(stale.err, HasSubstr("status 500"));
}

TEST_F(FeedCommands, ShowTheSecondSourcesEarthquakesWhereTheFirstFails) {
  EXPECT_THAT(run({"quakes"}).out, EndsWith("\nUnited States Geological Survey / EMSC\n"));
  for (Service const down : {Service::usgs, Service::emsc}) {
    test::TemporaryFolder const fresh;
    environment_.cacheDirectory = fresh.path();
    CliRun const half = run({"quakes"}, {{down, DemoFault::Kind::status500}});
    bool const isFirst = down == Service::usgs;
    EXPECT_EQ(half.exitCode, isFirst ? exitCode::kUnavailable : 0);
    EXPECT_THAT(half.out, EndsWith(isFirst ? "\nEMSC\n" : "\nUnited States Geological Survey\n"));
    EXPECT_THAT(half.err, HasSubstr("status 500"));
  }
}

TEST_F(FeedCommands, SayThatThereAreNoEarthquakesToBeHad) {
  CliRun const failed = run({"quakes", "--json"}, {{Service::usgs, DemoFault::Kind::drop}});
  EXPECT_EQ(failed.exitCode, exitCode::kUnavailable);
  EXPECT_EQ(failed.out, "");
}

TEST_F(FeedCommands, PrintWhatTheNwsLists) {
  CliRun const all = run({"nws", "39.74,-104.98", "--json"});
  EXPECT_THAT(all.out, StartsWith(R"({"ok":true,"alerts":[{"id":"urn:oid:)"));
  EXPECT_THAT(all.out, HasSubstr(R"("severity":"extreme")")) << "the service's own list has its tests";
  EXPECT_THAT(run({"nws", "39.74,-104.98"}).out, HasSubstr("[Test] Tsunami Warning"));
  EXPECT_EQ(run({"nws", "39.74,-104.98", "--view", "convective", "--json"}).out,
            "{\"ok\":true,\"alerts\":[]}\n");
  EXPECT_EQ(run({"nws", "39.74,-104.98", "--view", "flood"}).out, "No warnings.\n");
  CliRun const failed = run({"nws", "39.74,-104.98", "--json"}, {{Service::nws, DemoFault::Kind::status500}});
  EXPECT_EQ(failed.out, "{\"ok\":false,\"alerts\":[]}\n");
  EXPECT_EQ(failed.exitCode, exitCode::kUnavailable);
}

TEST_F(FeedCommands, TellNoWarningsFromNobodyWhoWarns) {
  EXPECT_EQ(run({"alerts", "35.68,139.69", "--source", "nws,meteoalarm"}).out,
            "Warnings and alerts for Tokyo, Japan\n\nSources\n"
            "  Not a source of official warnings for Tokyo: National Weather Service,\n"
            "  MeteoAlarm. Use --source wmo (WMO Severe Weather Information Centre)\n");
  EXPECT_THAT(run({"alerts", "52.23,21.01", "--source", "nws", "--lang", "de"}).out,
              HasSubstr(", Polen\n\nQuellen\n  Keine Quelle amtlicher Warnungen"));
  EXPECT_EQ(run({"alerts", "35.68,139.69", "--source", "nws,meteoalarm", "--json"}).out, "[]\n");
}

TEST_F(FeedCommands, MarkWhatIsOnlyNear) {
  CliRun const near = run({"alerts", "69.65,19.26", "--source", "meteoalarm"});
  EXPECT_THAT(near.out, HasSubstr("Flood Warning"));
  EXPECT_THAT(near.out, HasSubstr("  nearby: "));
  EXPECT_THAT(run({"alerts", "69.65,19.26", "--source", "meteoalarm", "--json"}).out,
              HasSubstr("\"_nimbaraDistanceKm\":"));
}

TEST_F(FeedCommands, AskTheNwsOnlyInItsTerritory) {
  CliRun const outside = run({"nws", "52.52,13.41", "--json"});
  EXPECT_EQ(outside.exitCode, exitCode::kUnavailable);
  EXPECT_EQ(outside.out, "{\"ok\":false,\"alerts\":[]}\n");
  EXPECT_THAT(run({"nws", "52.52,13.41", "--country", "us"}).err, HasSubstr("status 400"));
}

TEST_F(FeedCommands, NameTheOffendingWord) {
  struct Row {
    std::vector<std::string> arguments;
    std::string word;
  };
  for (Row const& row :
       {Row{{"nws", "91,0"}, "91,0"}, Row{{"nws", "40,-100", "--view", "snow"}, "snow"},
        Row{{"nws", "40,-100", "--country", "usa"}, "usa"}, Row{{"quakes", "--radius", "5"}, "--near"},
        Row{{"quakes", "--near", "0,200"}, "0,200"}, Row{{"quakes", "--near", "0,0", "--radius", "-1"}, "-1"},
        Row{{"quakes", "--min-magnitude", "big"}, "big"}, Row{{"quakes", "--min-magnitude", "nan"}, "nan"},
        Row{{"quakes", "--near", "0,0", "--radius", "nan"}, "nan"},
        Row{{"alerts", "40,10", "--country", "Italia"}, "Italia"},
        Row{{"alerts", "40,10", "--country", "1T"}, "1T"}, Row{{"kp", "now"}, "now"},
        Row{{"feed-server", "--listen", "nowhere"}, "nowhere"},
        Row{{"feed-server", "--listen", "127.0.0.1:70000"}, "70000"}}) {
    CliRun const result = test::run(row.arguments, environment_);
    EXPECT_EQ(result.exitCode, exitCode::kUsage) << row.word;
    EXPECT_THAT(result.err, HasSubstr(row.word));
    EXPECT_EQ(result.out, "");
  }
}

TEST(WarningPage, SaysHowGraveWhereUntilWhenAndWhatToDo) {
  WeatherAlert alert;
  alert.severity = AlertSeverity::warning;
  alert.title = "Flood Watch";
  alert.message = "Flood Watch until this evening";
  alert.areaDesc = "Cook County";
  alert.instruction = "Be ready.";
  alert.source = "NWS Chicago IL";
  alert.onset = at("2026-11-21T15:00:00Z");
  alert.expires = at("2026-11-23T03:00:00Z");
  Texts const texts = Texts::load("en");
  Style const style;
  WarningPageContext const context{texts, style, test::zone("America/Chicago"), at("2026-11-21T09:20:00Z"),
                                   60};
  EXPECT_EQ(warningPage({warningEntry(alert)}, context),
            "Warning: Flood Watch\n"
            "  from 9:00 AM, until Sunday 9:00 PM\n"
            "  Cook County\n"
            "  Flood Watch until this evening\n"
            "  What to do: Be ready.\n"
            "  NWS Chicago IL\n");
}

TEST(WarningPage, SaysWhatTheIssuerSaysAndWhatIsNear) {
  WeatherAlert alert;
  alert.severity = AlertSeverity::advisory;
  alert.title = "Wind Warning";
  alert.message = alert.areaDesc.emplace("Coast");
  alert.text = alert.description = " Gusts of 80 km/h.\n\nLater less.";
  alert.instruction = "Stay inside.\nClose windows.";
  alert.source = "MeteoAlarm";
  alert.issuer = "DHMZ";
  alert.colour = "orange";
  alert.issued = at("2026-11-21T05:30:00Z");
  alert.near = {{"Hills", 34.6}};
  alert.isFullText = true;
  Texts const texts = Texts::load("en");
  Style const style;
  WarningPageContext context{texts, style, Calendar::utc(), at("2026-11-21T09:20:00Z"), 60};
  EXPECT_EQ(warningPage({warningEntry(alert)}, context),
            "Orange: Wind Warning\n  Severity stated by the service: Advisory\n  Coast\n  Nearby: Hills (35 "
            "km)\n  Gusts of 80 km/h.\n  Later "
            "less.\n  What to do: Stay inside.\n  Close windows.\n  DHMZ, via MeteoAlarm, issued 5:30 AM\n");
  alert.distanceKm = 34.6;
  alert.isFullText = false;
  alert.text = "Strong wind";
  context.distance = DistanceUnit::miles;
  std::string const near = warningPage({warningEntry(alert)}, context);
  EXPECT_THAT(near, HasSubstr("  nearby: the warned area starts 21 mi away\n"));
  EXPECT_THAT(near, HasSubstr("  Strong wind\n  The full text could not be fetched."));
}

}  // namespace
}  // namespace nimbara
