#include "base/text/text.h"
#include "cli/cli.h"
#include "demo/demo_server.h"
#include "support/fake_location_source.h"
#include "support/instants.h"
#include "support/temporary_folder.h"
#include "support/test_console.h"

#include <gtest/gtest.h>

namespace nimbara {
namespace {

using test::CliRun;

class PlacesCommand : public testing::Test {
 protected:
  PlacesCommand() { environment_.dataDirectory = directory_.path() / "nimbara"; }

  CliRun run(std::vector<std::string> arguments, LocationSource* location = nullptr) const {
    test::TestConsole console;
    arguments.insert(arguments.end(), {"--services", server_->baseUrl(), "--now", "2026-11-21T09:20:00Z"});
    Session session{environment_, console, {}};
    session.location = location;
    int const code = runCli(std::move(arguments), session);
    return {code, console.output, console.errors};
  }
  CliRun places(std::vector<std::string> arguments, LocationSource* location = nullptr) const {
    arguments.insert(arguments.begin(), "places");
    return run(std::move(arguments), location);
  }
  /// Names in their order, the selected one with an asterisk.
  std::string names() const {
    std::string const list = places({"list"}).out;
    std::string out;
    for (std::string_view const line : split(list, '\n')) {
      if (line.size() < 6) continue;
      out += (out.empty() ? "" : " ") + std::string(line.substr(6, line.find_first_of(" ,", 6) - 6));
      if (line[4] == '*') out += "*";
    }
    return out;
  }

  test::TemporaryFolder directory_;
  Environment environment_ = test::plainEnvironment();
  FixedClock clock_{test::at("2026-11-21T09:20:00Z")};
  std::unique_ptr<DemoServer> server_ = *DemoServer::start(clock_, {});
};

TEST_F(PlacesCommand, ChoosesNotifications) {
  places({"add", "1,2", "--name", "Gulf"});
  places({"add", "10,2", "--name", "Hill"});
  auto const listed = [&] {
    std::string const json = places({"list", "--json"}).out;
    std::string choices;
    constexpr std::string_view kKey = "\"notifications\":\"";
    for (auto at = json.find(kKey); at != std::string::npos; at = json.find(kKey, at + 1)) {
      auto const begin = at + kKey.size();
      choices += json.substr(begin, json.find('"', begin) - begin) + " ";
    }
    return choices;
  };
  EXPECT_EQ(listed(), "everything severe ");
  EXPECT_EQ(places({"notify", "hill", "official"}).exitCode, 0);
  EXPECT_EQ(listed(), "everything official ");
  EXPECT_NE(places({"list"}).out.find("Official warnings only"), std::string::npos);
  places({"select", "hill"});
  EXPECT_EQ(listed(), "severe official ");
  EXPECT_EQ(places({"notify", "hill", "default"}).exitCode, 0);
  EXPECT_EQ(listed(), "severe everything ");
  run({"settings", "set", "notify_everyPlace", "false"});
  EXPECT_EQ(listed(), "nothing everything ");
  EXPECT_EQ(places({"notify", "nowhere", "nothing"}).exitCode, 1);
  EXPECT_EQ(places({"notify", "hill", "loud"}).exitCode, 2);
}

TEST_F(PlacesCommand, SavesAndArrangesPlaces) {
  CliRun const none = places({"list"});
  EXPECT_EQ(none.exitCode, 0);
  EXPECT_EQ(none.out, "");
  EXPECT_EQ(places({"list", "--json"}).out, "[]\n");
  EXPECT_EQ(places({"add", "Berlin", "--online"}).out, "Berlin, Germany  52.52°N 13.41°E\n");
  EXPECT_EQ(places({"add", "1,2", "--name", "Gulf"}).exitCode, 0);
  EXPECT_EQ(places({"add", "Tokyo", "--online"}).exitCode, 0);
  EXPECT_EQ(names(), "Berlin* Gulf Tokyo");
  EXPECT_EQ(places({"move", "tok", "1"}).exitCode, 0);
  EXPECT_EQ(places({"select", "GULF"}).exitCode, 0);
  EXPECT_EQ(places({"rename", "Gulf", "Golf"}).exitCode, 0);
  EXPECT_EQ(names(), "Tokyo Berlin Golf*");
  EXPECT_EQ(places({"remove", "golf"}).exitCode, 0);
  EXPECT_EQ(names(), "Tokyo* Berlin");
}

TEST_F(PlacesCommand, ListsForScripts) {
  CliRun const added = places({"add", "Berlin", "--online", "--json"});
  auto const uuid = added.out.substr(8, 36);
  EXPECT_EQ(added.out,
            R"([{"id":")" + uuid +
                R"(","name":"Berlin","latitude":52.52,"longitude":13.41,"country":"DE","selected":true,)"
                R"("countryName":"Germany","region":"Berlin","timeZone":"Europe/Berlin",)"
                R"("notifications":"everything"}])"
                "\n");
  EXPECT_EQ(places({"list", "--json"}).out, added.out);
  EXPECT_EQ(places({"search", "Berlin", "--online", "--json"}).out, added.out)
      << "a search knows what is saved";
  EXPECT_EQ(places({"select", uuid, "--json"}).out, added.out);
  EXPECT_EQ(places({"remove", uuid, "--json"}).out, "[]\n");
  EXPECT_TRUE(places({"search", "Berlin", "--json"}).out.starts_with(R"([{"id":null,"name":"Berlin",)"));
}

TEST_F(PlacesCommand, ServesTheForecast) {
  ASSERT_EQ(places({"add", "35.69,139.69", "--name", "Mein Büro"}).exitCode, 0);
  for (std::vector<std::string> const& arguments :
       {std::vector<std::string>{"forecast"}, {"forecast", "MEIN buro"}}) {
    CliRun const forecast = run(arguments);
    EXPECT_TRUE(forecast.out.starts_with("Mein Büro")) << forecast.err;
  }
}

TEST_F(PlacesCommand, SuggestsWhatAMisspelledNameMayMean) {
  CliRun const list = places({"search", "Sprngfield"});
  EXPECT_EQ(list.exitCode, 0);
  EXPECT_NE(list.out.find("Springfield, Illinois, United States"), std::string::npos) << list.out;
  EXPECT_EQ(list.err, "nimbara: no place called 'Sprngfield' was found; these names are similar\n");
  EXPECT_NE(places({"search", "zurch", "--json"}).out.find("\"suggestion\":true"), std::string::npos);
  EXPECT_EQ(places({"search", "Berlin", "--json"}).out.find("suggestion"), std::string::npos);
  CliRun const forecast = run({"forecast", "zurch"});
  EXPECT_EQ(forecast.exitCode, exitCode::kUnavailable);
  EXPECT_EQ(forecast.out, "");
  EXPECT_EQ(forecast.err,
            "nimbara: no place called 'zurch' was found; did you mean Zürich, Zurich, Switzerland?\n");
  EXPECT_EQ(places({"add", "new yrok"}).exitCode, exitCode::kUnavailable);
  EXPECT_EQ(places({"search", "nosuchplacexyz"}).exitCode, exitCode::kUnavailable);
}

TEST_F(PlacesCommand, FollowsTheLocation) {
  test::FakeLocationSource here(LocationFix{{48.1, 11.5}, 1500, test::at("2026-11-21T09:00:00Z")});
  test::FakeLocationSource denied(
      std::unexpected(LocationError{LocationError::Kind::denied, "the location service denies it"}));
  ASSERT_EQ(places({"add", "Berlin"}).exitCode, 0);
  CliRun const refused = places({"select", "--here"}, &denied);
  EXPECT_EQ(refused.exitCode, exitCode::kUnavailable);
  EXPECT_EQ(refused.err, "nimbara: the location service denies it\n");
  EXPECT_EQ(names(), "Berlin*") << "never another place by guess";
  ASSERT_EQ(places({"select", "--here"}, &here).exitCode, 0);
  EXPECT_NE(places({"list"}).out.find(
                " * Current location                  48.10°N 11.50°E, 20 min ago  Everything\n"),
            std::string::npos)
      << places({"list"}).out;
  EXPECT_NE(run({"forecast", "--json"}).out.find("\"latitude\":48.1"), std::string::npos);
  ASSERT_EQ(places({"add", "--here", "--name", "Hotel"}, &here).exitCode, 0);
  ASSERT_EQ(places({"remove", "--here"}).exitCode, 0);
  EXPECT_EQ(names(), "Berlin* Hotel");
}

struct ErrorRow {
  std::vector<std::string> arguments;
  int code;
  std::string_view holds;
};

TEST_F(PlacesCommand, SaysWhatIsWrong) {
  ASSERT_EQ(places({"add", "Berlin"}).exitCode, 0);
  for (ErrorRow const& row : {
           ErrorRow{{}, exitCode::kUsage, "subcommand"},
           {{"add"}, exitCode::kUsage, "PLACE"},
           {{"add", "x", "--here"}, exitCode::kUsage, "--here"},
           {{"add", "91,0"}, exitCode::kUsage, "91,0"},
           {{"add", "12"}, exitCode::kUsage, "12"},
           {{"add", "Berlin"}, exitCode::kUnavailable, "as Berlin"},
           {{"add", "Kleinkleckersdorf"}, exitCode::kUnavailable, "Kleinkleckersdorf"},
           {{"search", "Kleinkleckersdorf"}, exitCode::kUnavailable, "Kleinkleckersdorf"},
           {{"search"}, exitCode::kUsage, "TEXT"},
           {{"remove", "Oslo"}, exitCode::kUnavailable, "Oslo"},
           {{"move", "Berlin", "2"}, exitCode::kUnavailable, "1 to 1"},
           {{"move", "Berlin", "first"}, exitCode::kUsage, "first"},
           {{"rename", "Berlin", " "}, exitCode::kUnavailable, "needs a name"},
       }) {
    CliRun const result = places(row.arguments);
    EXPECT_EQ(result.exitCode, row.code) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(result.err.starts_with("nimbara: ") && result.err.find('\n') == result.err.size() - 1)
        << result.err;
    EXPECT_NE(result.err.find(row.holds), std::string::npos) << result.err;
  }
}

}  // namespace
}  // namespace nimbara
