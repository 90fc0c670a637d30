#include "support/demo_session.h"
#include "support/paths.h"

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace nimbara {
namespace {

using test::CliRun;

constexpr char kRules[] =
    R"([{"id":"aa000000-0000-4000-8000-000000000001","title":"Gusty","isEnabled":true,"checkHour":7,)"
    R"("conditionType":"windGust","conditionOperator":"above","threshold":10,"lookaheadHours":6,)"
    R"("scheduledDays":["saturday","sunday"]},)"
    R"({"id":"ab000000-0000-4000-8000-000000000002","title":"Heat","isEnabled":false,"checkHour":-1,)"
    R"("conditionType":"temperature","conditionOperator":"above","threshold":90,"lookaheadHours":24,)"
    R"("scheduledDays":["sunday","monday","tuesday","wednesday","thursday","friday","saturday"]},)"
    R"({"id":"ac000000-0000-4000-8000-000000000003","title":"Ground","isEnabled":true,"checkHour":10,)"
    R"("conditionType":"earthquake","conditionOperator":"any","threshold":0,"lookaheadHours":0,)"
    R"("locationID":"00000000-0000-4000-8000-0000000000aa","scheduledDays":["wednesday"]}])";

struct RulesCommand : test::DemoSession {
  CliRun rules(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "rules");
    return run(std::move(arguments));
  }
  void store(std::string const& json) const {
    ASSERT_EQ(run({"settings", "set", "customNotifications", json}).exitCode, 0);
  }
  /// The three rules of this file, and Berlin selected.
  void prepare() const {
    ASSERT_EQ(run({"places", "add", "52.52,13.41", "--name", "Berlin"}).exitCode, 0);
    store(kRules);
  }
};

void expectRecorded(std::string const& name, CliRun const& result) {
  std::string const file = std::string(test::kFixtures) + "/cli/" + name;
  EXPECT_EQ(result.exitCode, 0) << result.err;
  if (std::getenv("NIMBARA_UPDATE_SNAPSHOTS") != nullptr) {
    std::ofstream(file, std::ios::binary) << result.out;
  }
  std::ifstream in(file, std::ios::binary);
  EXPECT_EQ(result.out, std::string(std::istreambuf_iterator<char>(in), {}));
}

TEST_F(RulesCommand, PrintAsRecorded) {
  prepare();
  expectRecorded("rules.txt", rules({"list"}));
  expectRecorded("rules.json", rules({"list", "--json"}));
  expectRecorded("rules-imperial-pt.txt", rules({"list", "--units", "imperial", "--lang", "pt"}));
  expectRecorded("rule-test.txt", rules({"test", "aa"}));
  expectRecorded("rule-test.json", rules({"test", "aa", "--json"}));
  expectRecorded("rule-test-short.txt", rules({"test", "ab"}));
}

/// The identifier of a rule in JSON.
std::string idOf(CliRun const& result) {
  return result.out.substr(result.out.find("\"id\":\"") + 6, 36);
}

TEST_F(RulesCommand, AddsAndChangesARule) {
  ASSERT_EQ(run({"places", "add", "52.52,13.41", "--name", "Berlin"}).exitCode, 0);
  CliRun const added =
      rules({"add", "--title", "Frost", "--type", "temperature", "--operator", "below", "--threshold", "0",
             "--lookahead", "12", "--hour", "18", "--days", "mon,Tuesday", "--place", "berlin", "--json"});
  ASSERT_EQ(added.exitCode, 0) << added.err;
  std::string const id = idOf(added);
  EXPECT_EQ(
      added.out.find("{\"id\":\"" + id +
                     R"(","title":"Frost","isEnabled":true,"checkHour":18,"conditionType":"temperature",)"
                     R"("conditionOperator":"below","threshold":0,"lookaheadHours":12,"locationID":")"),
      0)
      << added.out;
  EXPECT_NE(added.out.find(R"("description":"Temperature below 0.0°C in the next 12 hours",)"
                           R"("schedule":"Mon, Tue at 6 PM"})"),
            std::string::npos)
      << added.out;
  EXPECT_EQ(rules({"show", id.substr(0, 6), "--json"}).out, added.out);
  CliRun const edited =
      rules({"edit", id, "--immediately", "--threshold", "2.5", "--selected-place", "--json"});
  EXPECT_NE(edited.out.find("\"checkHour\":-1"), std::string::npos) << edited.err;
  EXPECT_NE(edited.out.find("\"threshold\":2.5"), std::string::npos);
  EXPECT_EQ(edited.out.find("locationID"), std::string::npos);
  EXPECT_NE(rules({"disable", id, "--json"}).out.find("\"isEnabled\":false"), std::string::npos);
  EXPECT_NE(rules({"enable", id, "--json"}).out.find("\"isEnabled\":true"), std::string::npos);
  EXPECT_EQ(rules({"remove", id}).exitCode, 0);
  EXPECT_EQ(rules({"list", "--json"}).out, "[]\n");
}

TEST_F(RulesCommand, TakesWhatSuitsTheKind) {
  auto const operatorOf = [&](std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"add", "--title", "T", "--json", "--type"});
    std::string const out = rules(std::move(arguments)).out;
    auto const found = out.find("conditionOperator\":\"");
    return found == std::string::npos ? "" : out.substr(found + 20, 5);
  };
  EXPECT_EQ(operatorOf({"snow"}), "any\",");
  EXPECT_EQ(operatorOf({"earthquake"}), "any\",");
  EXPECT_EQ(operatorOf({"earthquake", "--threshold", "5"}), "above");
  EXPECT_EQ(operatorOf({"windGust", "--threshold", "50"}), "above");
}

TEST_F(RulesCommand, KeepsARuleWhosePlaceIsDeleted) {
  ASSERT_EQ(run({"places", "add", "52.52,13.41", "--name", "Berlin"}).exitCode, 0);
  ASSERT_EQ(run({"places", "add", "38.7,-9.1", "--name", "Lisbon"}).exitCode, 0);
  std::string const id =
      idOf(rules({"add", "--title", "T", "--type", "snow", "--place", "Berlin", "--json"}));
  ASSERT_EQ(run({"places", "remove", "Berlin"}).exitCode, 0);
  CliRun const shown = rules({"show", id, "--json"});
  EXPECT_NE(shown.out.find("\"isEnabled\":false"), std::string::npos) << shown.out;
  EXPECT_NE(shown.out.find("\"placeDeleted\":true"), std::string::npos) << shown.out;
  EXPECT_EQ(rules({"enable", id}).exitCode, exitCode::kUnavailable);
  CliRun const tested = rules({"test", id});
  EXPECT_EQ(tested.exitCode, exitCode::kUnavailable);
  EXPECT_NE(tested.err.find("was removed"), std::string::npos) << tested.err;
  EXPECT_EQ(rules({"edit", id, "--place", "Lisbon"}).exitCode, 0);
  EXPECT_EQ(rules({"enable", id}).exitCode, 0);
}

TEST_F(RulesCommand, WarnsOfRulesThatItCannotRead) {
  store(R"([{"id":"7"}])");
  CliRun const list = rules({"list", "--json"});
  EXPECT_EQ(list.exitCode, 0);
  EXPECT_EQ(list.out, "[]\n");
  EXPECT_NE(list.err.find("nimbara: rule 1 of the list was skipped: /id"), std::string::npos) << list.err;
  ASSERT_EQ(rules({"add", "--title", "T", "--type", "snow"}).exitCode, 0);
  EXPECT_NE(run({"settings", "get", "customNotifications"}).out.find(R"({"id":"7"}])"), std::string::npos);
}

TEST_F(RulesCommand, TestsOnTheFeedOfEarthquakes) {
  ASSERT_EQ(run({"places", "add", "52.52,13.41", "--name", "Berlin"}).exitCode, 0);
  std::string const id =
      idOf(rules({"add", "--title", "T", "--type", "earthquake", "--threshold", "9.9", "--json"}));
  CliRun const tested = rules({"test", id, "--json"});
  EXPECT_EQ(tested.exitCode, 0) << tested.err;
  EXPECT_NE(tested.out.find(R"("outcome":"doesNotHold")"), std::string::npos) << tested.out;
}

TEST_F(RulesCommand, TestsOnTheForecastOfFineDust) {
  ASSERT_EQ(run({"places", "add", "52.52,13.41", "--name", "Berlin"}).exitCode, 0);
  std::string const id = idOf(rules(
      {"add", "--title", "T", "--type", "airQuality", "--threshold", "0", "--lookahead", "6", "--json"}));
  CliRun const tested = rules({"test", id, "--json"});
  EXPECT_EQ(tested.exitCode, 0) << tested.err;
  EXPECT_NE(tested.out.find(R"("outcome":"holds")"), std::string::npos) << tested.out;
}

struct ErrorRow {
  std::vector<std::string> arguments;
  int code;
  std::string_view holds;
};

TEST_F(RulesCommand, SaysWhatIsWrong) {
  prepare();
  for (ErrorRow const& row : {
           ErrorRow{{}, exitCode::kUsage, "subcommand"},
           {{"add", "--type", "snow"}, exitCode::kUsage, "--title"},
           {{"add", "--type", "snow", "--title", " "}, exitCode::kUsage, "title"},
           {{"add", "--title", "T", "--type", "moon"}, exitCode::kUsage, "moon"},
           {{"add", "--title", "T", "--type", "snow", "--operator", "equal"}, exitCode::kUsage, "equal"},
           {{"add", "--title", "T", "--type", "windGust"}, exitCode::kUsage, "--threshold"},
           {{"add", "--title", "T", "--type", "windGust", "--operator", "any"}, exitCode::kUsage, "'any'"},
           {{"add", "--title", "T", "--type", "snow", "--operator", "above", "--threshold", "3"},
            exitCode::kUsage,
            "snow occurs"},
           {{"add", "--title", "T", "--type", "windGust", "--threshold", "strong"},
            exitCode::kUsage,
            "strong"},
           {{"add", "--title", "T", "--type", "windGust", "--threshold", "inf"},
            exitCode::kUsage,
            "threshold"},
           {{"add", "--title", "T", "--type", "snow", "--hour", "24"}, exitCode::kUsage, "24"},
           {{"add", "--title", "T", "--type", "snow", "--hour", "7", "--immediately"},
            exitCode::kUsage,
            "--immediately"},
           {{"add", "--title", "T", "--type", "snow", "--lookahead", "-1"}, exitCode::kUsage, "-1"},
           {{"add", "--title", "T", "--type", "snow", "--days", "mon,someday"}, exitCode::kUsage, "someday"},
           {{"add", "--title", "T", "--type", "snow", "--days", ""}, exitCode::kUsage, "day"},
           {{"add", "--title", "T", "--type", "snow", "--place", "Oslo"}, exitCode::kUnavailable, "Oslo"},
           {{"add", "--title", "T", "--type", "snow", "--place", "91,0"}, exitCode::kUsage, "91,0"},
           {{"show", "a"}, exitCode::kUnavailable, "several"},
           {{"show", "ff"}, exitCode::kUnavailable, "'ff'"},
           {{"edit", "aa", "--operator", "any"}, exitCode::kUsage, "'any'"},
           {{"test", "ac"}, exitCode::kUnavailable, "was deleted"},
       }) {
    CliRun const result = rules(row.arguments);
    EXPECT_EQ(result.exitCode, row.code) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(result.err.starts_with("nimbara: ") && result.err.find('\n') == result.err.size() - 1)
        << result.err;
    EXPECT_NE(result.err.find(row.holds), std::string::npos) << result.err;
  }
}

}  // namespace
}  // namespace nimbara
