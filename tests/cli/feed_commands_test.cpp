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
using testing::Not;
using testing::StartsWith;

class HazardCommands : public testing::Test {
 protected:
  HazardCommands() {
    environment_.dataDirectory = directory_.path() / "data";
    environment_.cacheDirectory = directory_.path() / "Nimbara";
  }
  CliRun run(std::vector<std::string> arguments, std::vector<DemoFault> faults = {},
             std::string const& now = "2026-07-21T09:20:00Z") const {
    FixedClock const clock(at(now));
    auto const server = *DemoServer::start(clock, std::move(faults));
    arguments.insert(arguments.end(), {"--services", server->baseUrl(), "--now", now});
    return test::run(arguments, environment_);
  }

  test::TemporaryFolder directory_;
  Environment environment_ = test::plainEnvironment();
};

struct StateRow {
  std::vector<std::string> arguments;
  std::string document;  ///< part of it
  std::string page;      ///< as a pattern
};

TEST_F(HazardCommands, TellTheirState) {
  for (
      StateRow const& row : {
          StateRow{
              {"advisories", "52.52,13.41"},
              R"({"state":"listed","checkedAt":"2026-07-21T09:20:00Z","reason":null,"items":[{"country":"DE")",
              "^Germany: level [1-4] of 4|^One travel advisory"},
          {{"advisories", "0,-30"}, R"({"state":"uncovered",)", "^No travel advisories: this place is in no"},
          {{"advisories", "40.7,-74"},
           R"("reason":null,"items":[]})",
           "^No travel advisory .United States., checked"},
          {{"advisories", "52.52,13.41", "--all"}, R"("level":4,)", "^[0-9]+ travel advisories, checked"},
          {{"advisories", "--all"}, R"("level":4,)", "^[0-9]+ travel advisories, checked"},
          {{"advisories", "35.68,139.69", "--source", "ca"}, R"("advice":"ca.1")", "  Japan: take normal"},
          {{"advisories", "35.68,139.69", "--source", "uk"}, R"("advice":"uk.none")", "  Japan: no advice"},
          {{"advisories", "35.68,139.69", "--source", "de"},
           R"("source":"de")",
           "  Japan: no travel warning"},
          {{"advisories", "52.52,13.41", "--all", "--source", "de"},
           R"("advice":"de.warning")",
           "travel advisories, checked"},
          {{"advisories", "35.68,139.69", "--all", "--source", "uk"},
           R"({"state":"uncovered",)",
           "^The United Kingdom gives advice for one country at a time"},
          {{"advisories", "-30,-140", "--source", "uk"}, R"({"state":"uncovered",)", "is in no"},
          {{"fires", "38.4,-122.6", "--radius", "500"},
           R"({"state":")",
           "[wW]ildfire.* within 500 km.*checked"},
          {{"lightning", "0.0,30.0", "--radius", "1"},
           R"({"state":")",
           "within 1 km in the last hour, checked"},
          {{"air", "52.52,13.41"},
           R"({"index":{"scale":"european","value":)",
           "^European air quality index: [0-9]+, "},
          {{"air", "40.7,-74"}, R"({"index":{"scale":"us","value":)", "No pollen data for this region"},
      }) {
    auto json = row.arguments;
    json.emplace_back("--json");
    CliRun const document = run(json);
    EXPECT_EQ(document.exitCode, 0) << document.err;
    EXPECT_EQ(document.err, "") << row.arguments.front();
    EXPECT_THAT(document.out, HasSubstr(row.document));
    EXPECT_THAT(run(row.arguments).out, ContainsRegex(row.page));
  }
}

TEST_F(HazardCommands, NeverTakeAFailureForNothing) {
  struct Row {
    std::string command;
    Service service;
    std::string sentence;
    std::vector<std::string> more = {};
  };
  for (Row const& row :
       {Row{"air", Service::airQuality, "the air quality could not be checked: "},
        Row{"fires", Service::firms, "the wildfires could not be checked: "},
        Row{"lightning", Service::lightning, "the lightning strikes could not be checked: "},
        Row{"advisories", Service::travelAdvisories, "the travel advisories could not be checked: "},
        Row{"advisories",
            Service::advisoriesCanada,
            "the travel advisories could not be checked: ",
            {"--source", "ca"}},
        Row{"advisories",
            Service::advisoriesBritain,
            "the travel advisories could not be checked: ",
            {"--source", "uk"}},
        Row{"advisories",
            Service::advisoriesGermany,
            "the travel advisories could not be checked: ",
            {"--source", "de"}}}) {
    for (auto const fault : {DemoFault::Kind::status500, DemoFault::Kind::garbage, DemoFault::Kind::drop,
                             DemoFault::Kind::empty}) {
      std::vector<std::string> plain{row.command, "52.52,13.41"};
      plain.insert(plain.end(), row.more.begin(), row.more.end());
      std::vector<std::string> json = plain;
      json.emplace_back("--json");
      CliRun const failed = run(json, {{row.service, fault}});
      EXPECT_EQ(failed.exitCode, exitCode::kUnavailable) << row.command << enumName(fault);
      EXPECT_THAT(failed.out, AllOf(HasSubstr(R"("state":"unchecked")"), HasSubstr(R"("checkedAt":null,)"),
                                    Not(HasSubstr(R"("reason":null)"))))
          << row.command << enumName(fault);
      EXPECT_THAT(failed.err, StartsWith("nimbara: " + row.sentence)) << enumName(fault);
      if (row.command == "storms") continue;  // those of other centres are known
      EXPECT_EQ(run(plain, {{row.service, fault}}).out, "");
    }
  }
}

/// On the sea, in a desert, at the poles and behind the date line somebody answers.
TEST_F(HazardCommands, AnswerEverywhere) {
  for (std::string const place : {"0,-160", "23,13", "90,0", "-90,0", "78.22,15.65", "-17.8,-179.9"}) {
    for (std::string const command : {"air", "climate", "storms", "fires", "lightning", "advisories"}) {
      CliRun const document = run({command, place, "--json"});
      EXPECT_EQ(document.exitCode, 0) << command << " " << place << document.err;
      EXPECT_THAT(document.out, Not(HasSubstr(R"("state":"unchecked")"))) << command << " " << place;
    }
  }
}

TEST_F(HazardCommands, SayWhatIsMissingWhereNothingIsSet) {
  for (std::string const command : {"fires", "lightning"}) {
    CliRun const run = test::run({command, "52.52,13.41", "--json"}, environment_);
    EXPECT_EQ(run.exitCode, exitCode::kUnavailable);
    EXPECT_THAT(run.out, StartsWith(R"({"state":"notConfigured","checkedAt":null,)"));
    EXPECT_THAT(run.err, HasSubstr("nimbara settings set "));
  }
}

TEST_F(HazardCommands, RefuseCoordinatesThatAreNone) {
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

}  // namespace
}  // namespace nimbara
