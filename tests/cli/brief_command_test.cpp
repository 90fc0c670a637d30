#include "app/settings/settings_registry.h"
#include "platform/linux/store/sqlite_settings_store.h"
#include "support/session/demo_session.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::CliRun;
using testing::HasSubstr;
using testing::Not;

struct BriefCommand : test::DemoSession {
  /// The user has a language model, which is the demo's.
  void haveModel(std::vector<DemoFault> faults) {
    server.reset();
    server = *DemoServer::start(clock, std::move(faults));
    base = server->baseUrl();
    SqliteSettingsStore store(folder.path() / "data", settingsRegistry());
    ASSERT_TRUE(store.setAll(
        {{"appleIntelligence", true}, {std::string(hostSetting(Service::languageModel)), base}}));
  }
};

TEST_F(BriefCommand, IsWordedByAModelThatKeepsToTheFacts) {
  CliRun const own = run({"brief", "52.52,13.41", "--json"});
  EXPECT_EQ(own.exitCode, 0);
  EXPECT_THAT(own.out, Not(HasSubstr("worded")));
  haveModel({});
  EXPECT_THAT(run({"brief", "52.52,13.41", "--json"}).out, HasSubstr(R"("worded":"Now: )"));
}

/// A model that invents, one that fails and one that says nothing: the own sentences are shown.
TEST_F(BriefCommand, FallsBackToItsOwnWords) {
  std::string const own = run({"brief", "52.52,13.41"}).out;
  for (auto const fault : {DemoFault::Kind::invents, DemoFault::Kind::status500, DemoFault::Kind::garbage,
                           DemoFault::Kind::empty}) {
    haveModel({{Service::languageModel, fault}});
    CliRun const fallen = run({"brief", "52.52,13.41"});
    EXPECT_EQ(fallen.out, own) << enumName(fault);
    EXPECT_EQ(fallen.exitCode, 0) << enumName(fault);
    EXPECT_THAT(run({"brief", "52.52,13.41", "--json"}).out, Not(HasSubstr("worded"))) << enumName(fault);
  }
}

TEST_F(BriefCommand, SaysWhereWarningsCouldNotBeChecked) {
  EXPECT_THAT(run({"brief", "52.52,13.41", "--json"}).out, HasSubstr(R"("coverage":[{)"));
  server.reset();
  server = *DemoServer::start(clock, {{Service::meteoAlarm, DemoFault::Kind::status500}});
  base = server->baseUrl();
  CliRun const unknown = run({"brief", "48.30,14.29"});
  EXPECT_EQ(unknown.exitCode, 1);
  EXPECT_THAT(unknown.out, HasSubstr("Tomorrow"));
  EXPECT_THAT(unknown.err, HasSubstr("could not be checked"));
  EXPECT_EQ(run({"brief", "48.30,14.29", "--json"}).exitCode, 0) << "the state is part of the answer";
}

}  // namespace
}  // namespace nimbara
