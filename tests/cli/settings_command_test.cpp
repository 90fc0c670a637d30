#include "base/text/text.h"
#include "cli/cli.h"
#include "demo/demo_server.h"
#include "platform/linux/sqlite_settings_store.h"
#include "support/instants.h"
#include "support/temporary_folder.h"
#include "support/test_console.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

namespace nimbara {
namespace {

using test::CliRun;

class SettingsCommand : public testing::Test {
 protected:
  SettingsCommand() { environment_.dataDirectory = directory_.path() / "nimbara"; }

  CliRun settings(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "settings");
    return test::run(arguments, environment_);
  }

  test::TemporaryFolder directory_;
  Environment environment_ = test::plainEnvironment();
};

TEST_F(SettingsCommand, SetsGetsAndResets) {
  EXPECT_EQ(settings({"get", "windUnit"}).out, "automatic\n");
  EXPECT_FALSE(std::filesystem::exists(environment_.dataDirectory)) << "reading makes nothing";
  CliRun const set = settings({"set", "windUnit", "knots"});
  EXPECT_EQ(set.exitCode, 0) << set.err;
  EXPECT_EQ(set.out + set.err, "");
  EXPECT_EQ(settings({"get", "windUnit"}).out, "knots\n");
  EXPECT_EQ(settings({"get", "windUnit", "--json"}).out, "{\"windUnit\":\"knots\"}\n");
  EXPECT_EQ(settings({"reset", "windUnit"}).exitCode, 0);
  EXPECT_EQ(settings({"get", "windUnit"}).out, "automatic\n");
}

TEST_F(SettingsCommand, ListsEverythingButSecrets) {
  ASSERT_EQ(settings({"set", "openMeteoApiKey", "topsecret"}).exitCode, 0);
  ASSERT_EQ(settings({"set", "contact", "me@example.org"}).exitCode, 0);
  CliRun const list = settings({"list"});
  EXPECT_EQ(list.out.find("topsecret"), std::string::npos);
  auto const contact = list.out.find("\ncontact ");
  ASSERT_NE(contact, std::string::npos) << list.out;
  EXPECT_EQ(trimmed(list.out.substr(contact + 8, list.out.find("me@", contact) - contact - 8)), "*");
  CliRun const json = settings({"list", "--json"});
  EXPECT_NE(json.out.find(R"("openMeteoApiKey":"•••","openMeteoGeocodingApiKey":"")"), std::string::npos)
      << json.out;
  EXPECT_EQ(settings({"get", "openMeteoApiKey"}).out, "topsecret\n");
}

struct UsageRow {
  std::vector<std::string> arguments;
  std::string_view offending;
};

TEST_F(SettingsCommand, NamesTheOffendingWord) {
  for (UsageRow const& row : {
           UsageRow{{}, "subcommand"},
           {{"get"}, "KEY"},
           {{"get", "windunit"}, "windunit"},
           {{"reset", "notThere"}, "notThere"},
           {{"set", "windUnit"}, "VALUE"},
           {{"set", "windUnit", "beaufort"}, "beaufort"},
           {{"set", "notThere", "1"}, "notThere"},
           {{"set", "openMeteoHost", "localhost:80"}, "localhost:80"},
       }) {
    CliRun const result = settings(row.arguments);
    EXPECT_EQ(result.exitCode, exitCode::kUsage) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.err.find(row.offending), std::string::npos) << result.err;
  }
}

TEST_F(SettingsCommand, SaysInOneLineWhenTheFileIsBroken) {
  std::filesystem::create_directories(environment_.dataDirectory);
  std::ofstream(environment_.dataDirectory / "nimbara.db") << "no database";
  for (std::vector<std::string> const& arguments :
       {std::vector<std::string>{"list"}, {"set", "contact", "x"}}) {
    CliRun const result = settings(arguments);
    EXPECT_EQ(result.exitCode, exitCode::kUnavailable);
    EXPECT_EQ(std::ranges::count(result.err, '\n'), 1) << result.err;
    EXPECT_NE(result.err.find("nimbara.db"), std::string::npos) << result.err;
  }
}

TEST_F(SettingsCommand, DecideHowAForecastIsPrinted) {
  FixedClock const clock(test::at("2026-11-21T09:20:00Z"));
  auto const server = *DemoServer::start(clock, {});
  auto const forecast = [&](std::vector<std::string> more) {
    std::vector<std::string> arguments{"forecast",        "52.52,13.41", "--services",
                                       server->baseUrl(), "--now",       "2026-11-21T09:20:00Z"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return test::run(arguments, environment_).out;
  };
  environment_.measurement = "en_US.UTF-8";
  EXPECT_NE(forecast({}).find("°F"), std::string::npos) << "the region's units";
  ASSERT_EQ(settings({"set", "temperatureUnit", "celsius"}).exitCode, 0);
  ASSERT_EQ(settings({"set", "language", "pt"}).exitCode, 0);
  std::string const chosen = forecast({});
  EXPECT_NE(chosen.find("°C"), std::string::npos);
  EXPECT_NE(chosen.find("mph"), std::string::npos);
  EXPECT_NE(chosen.find("Próximas 24 horas"), std::string::npos);
  std::string const given = forecast({"--units", "metric", "--lang", "en"});
  EXPECT_NE(given.find("km/h"), std::string::npos);
  EXPECT_NE(given.find("Next 24 hours"), std::string::npos);
  ASSERT_EQ(settings({"set", "preferredProvider", "yrNo"}).exitCode, 0);
  EXPECT_NE(forecast({"--lang", "en"}).find("MET Norway, updated"), std::string::npos);
  EXPECT_NE(forecast({"--lang", "en", "--provider", "openMeteo"}).find("Open-Meteo, updated"),
            std::string::npos)
      << "what is given counts";
}

}  // namespace
}  // namespace nimbara
