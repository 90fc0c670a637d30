#include "demo/demo_server.h"
#include "support/instants.h"
#include "support/outlines.h"
#include "support/temporary_folder.h"
#include "support/test_console.h"

#include <gmock/gmock.h>

namespace nimbara {
namespace {

using test::CliRun;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class RegionsCommand : public testing::Test {
 protected:
  RegionsCommand() { environment_.dataDirectory = folder_.path() / "nimbara"; }

  CliRun regions(std::vector<std::string> arguments, DemoServer const* server = nullptr) const {
    arguments.insert(arguments.begin(), "regions");
    arguments.insert(arguments.end(), {"--services", (server == nullptr ? *server_ : *server).baseUrl()});
    return test::run(std::move(arguments), environment_);
  }

  test::TemporaryFolder folder_;
  Environment environment_ = test::plainEnvironment();
  FixedClock clock_{test::at("2026-11-21T09:20:00Z")};
  std::unique_ptr<DemoServer> server_ = *DemoServer::start(clock_, {});
};

TEST_F(RegionsCommand, ShowsLandAndSea) {
  EXPECT_EQ(regions({"show", "45.3427,14.4092"}).out,
            "Country  Croatia (HR)\nNames    Rijeka, Kvarner and Kvarneric, Primorje-Gorski Kotar\n"
            "Land     HR006 (EMMA_ID)\nSea      HR802 (EMMA_ID)\n");
  EXPECT_EQ(regions({"show", "45.3427,14.4092", "--json"}).out,
            "{\"country\":\"HR\",\"names\":[\"Rijeka\",\"Kvarner and Kvarneric\",\"Primorje-Gorski Kotar\"],"
            "\"codes\":[{\"registry\":\"EMMA_ID\",\"code\":\"HR006\"},{\"registry\":\"EMMA_ID\",\"code\":"
            "\"HR802\"}],\"seaCodes\":[{\"registry\":\"EMMA_ID\",\"code\":\"HR802\"}]}\n");
}

TEST_F(RegionsCommand, TakesANewerEdition) {
  EXPECT_THAT(regions({"show", "52.40,13.06"}).out, Not(HasSubstr("DE202 (EMMA_ID)"))) << "Potsdam";
  CliRun const update = regions({"update"});
  EXPECT_EQ(update.exitCode, exitCode::kComplete) << update.err;
  EXPECT_THAT(update.out, HasSubstr(" regions of 35 countries: AT "));
  EXPECT_THAT(regions({"show", "52.40,13.06"}).out, HasSubstr("DE202 (EMMA_ID)"));
  EXPECT_THAT(regions({"update", "--json"}).out,
              HasSubstr("\"edition\":\"MeteoAlarm_Geocodes_2026_11_01.json\""));
}

TEST_F(RegionsCommand, ComparesATable) {
  folder_.write(
      "places.tsv",
      "# place\nRijeka\t45.3427\t14.4092\tHR\tHR006\tHR802\t\nGlasgow\t55.865\t-4.258\tGB\t\t\tGrampian\n");
  CliRun const check = regions({"check", (folder_.path() / "places.tsv").string()});
  EXPECT_EQ(check.exitCode, exitCode::kUnavailable);
  EXPECT_THAT(check.out,
              StartsWith("ok     Rijeka  expected: HR  land HR006  sea HR802  got: HR  land HR006  sea "
                         "HR802\nWRONG  Glasgow  expected: GB  land -  sea -  \"Grampian\"  got: GB"));
  EXPECT_THAT(check.out, HasSubstr("\n1 of 2 places right\n"));
  EXPECT_EQ(regions({"check", "/no/such/file"}).exitCode, exitCode::kUnavailable);
}

TEST_F(RegionsCommand, KeepsWhatItHasThroughFailures) {
  ASSERT_EQ(regions({"update"}).exitCode, exitCode::kComplete);
  for (auto const kind : {DemoFault::Kind::status500, DemoFault::Kind::garbage, DemoFault::Kind::drop}) {
    auto const faulty = *DemoServer::start(clock_, {{Service::meteoAlarmRegions, kind}});
    CliRun const update = regions({"update"}, faulty.get());
    EXPECT_EQ(update.exitCode, exitCode::kUnavailable);
    EXPECT_THAT(update.err, HasSubstr("; the regions are unchanged\n"));
    EXPECT_EQ(update.out, "");
    EXPECT_THAT(regions({"show", "52.40,13.06", "--json"}).out, HasSubstr("DE202"));
  }
}

TEST_F(RegionsCommand, TakesOutlinesFromFiles) {
  folder_.write("a.geojson",
                test::collection({test::feature("DE1", "DE", "A", test::square({52.5, 13.4}, 1))}));
  folder_.write("b.geojson",
                test::collection({test::feature("DEB", "DE", "B", test::square({52.5, 13.4}, 2), "NUTS3")}));
  CliRun const update = regions({"update", "--from", (folder_.path() / "a.geojson").string(), "--from",
                                 (folder_.path() / "b.geojson").string()});
  EXPECT_EQ(update.exitCode, exitCode::kComplete) << update.err;
  EXPECT_THAT(regions({"show", "52.52,13.41"}).out, HasSubstr("DE1 (EMMA_ID), DEB (NUTS3)"));
  EXPECT_EQ(regions({"update", "--from", "/no/such/file"}).exitCode, exitCode::kUnavailable);
}

TEST_F(RegionsCommand, SaysThatABrokenFileIsOfNoUse) {
  ASSERT_EQ(regions({"update"}).exitCode, exitCode::kComplete);
  folder_.write("nimbara/regions.map", "rubbish");
  CliRun const shown = regions({"show", "52.52,13.41", "--json"});
  EXPECT_THAT(shown.out, HasSubstr("DE202"));
  EXPECT_THAT(
      shown.err,
      HasSubstr(
          "regions.map cannot be used: it is too short; download it again with: nimbara regions update"));
}

TEST_F(RegionsCommand, RefusesWhatItDoesNotUnderstand) {
  EXPECT_EQ(regions({}).exitCode, exitCode::kUsage);
  EXPECT_EQ(regions({"show", "91,0"}).exitCode, exitCode::kUsage);
  EXPECT_EQ(regions({"update", "52.52,13.41"}).exitCode, exitCode::kUsage);
}

}  // namespace
}  // namespace nimbara
