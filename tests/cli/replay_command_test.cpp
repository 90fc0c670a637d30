#include "support/session/demo_session.h"

#include <fstream>

namespace nimbara {
namespace {

using test::CliRun;

struct ReplayCommand : test::DemoSession {
  ReplayCommand() { std::filesystem::create_directories(folder.path() / "recording"); }

  std::string directory() const { return folder.path() / "recording"; }
  void prepare() const {
    ASSERT_EQ(run({"places", "add", "52.52,13.41", "--name", "Berlin"}).exitCode, 0);
    ASSERT_EQ(run({"settings", "set", "notify_morningSummary", "true"}).exitCode, 0);
  }
  /// Against no service but what is recorded.
  CliRun replay(std::vector<std::string> more) const {
    std::vector<std::string> arguments{"replay", directory()};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return test::run(std::move(arguments), environment());
  }
};

TEST_F(ReplayCommand, PlaysTheDemoThroughTime) {
  prepare();
  auto const result =
      run({"replay", directory(), "--from", "2026-11-20T00:00:00Z", "--to", "2026-11-21T23:59:59Z"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(result.err, "");
  EXPECT_NE(result.out.find("2026-11-20T06:00:00Z  announced         morning_summary"), std::string::npos)
      << result.out;
  EXPECT_NE(result.out.find("2026-11-21T06:00:00Z  announced         morning_summary"), std::string::npos);
  auto const again =
      run({"replay", directory(), "--from", "2026-11-20T00:00:00Z", "--to", "2026-11-21T23:59:59Z"});
  EXPECT_EQ(again.out, result.out) << "nothing of the first run is remembered";
}

TEST_F(ReplayCommand, PlaysWhatNotifyHasRecordedWithoutAnyService) {
  prepare();
  for (char const* const now : {"2026-11-20T22:00:00Z", "2026-11-21T05:45:00Z", "2026-11-21T06:00:00Z"}) {
    auto const pass = run({"notify", "--deliver", "print", "--record", directory()}, now);
    ASSERT_EQ(pass.exitCode, 0) << pass.err;
  }
  auto const result = replay({"--from", "2026-11-20T22:00:00Z", "--to", "2026-11-21T08:00:00Z", "--json"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_NE(result.out.find(R"({"time":"2026-11-21T06:00:00Z","outcome":"announced",)"
                            R"("identifier":"morning_summary")"),
            std::string::npos)
      << result.out;
}

TEST_F(ReplayCommand, TakesTheRecordingsOwnSettings) {
  prepare();
  std::ofstream(folder.path() / "recording" / "settings.json") << R"({"notify_eveningSummary":true})";
  auto const result =
      run({"replay", directory(), "--from", "2026-11-20T00:00:00Z", "--to", "2026-11-20T23:59:59Z"});
  EXPECT_NE(result.out.find("evening_summary"), std::string::npos) << result.out << result.err;
  EXPECT_EQ(result.out.find("morning_summary"), std::string::npos);
}

TEST_F(ReplayCommand, LeavesTheUsersOwnStateAlone) {
  prepare();
  ASSERT_EQ(run({"notify", "--deliver", "print"}).exitCode, 0);
  auto const told = run({"notify", "--deliver", "print", "--json"});
  ASSERT_EQ(run({"replay", directory(), "--from", test::DemoSession::kMoment, "--to", "2026-11-21T12:00:00Z"})
                .exitCode,
            0);
  EXPECT_EQ(run({"notify", "--deliver", "print", "--json"}).out, told.out);
}

TEST_F(ReplayCommand, SaysWhatItLacks) {
  struct Row {
    std::vector<std::string> arguments;
    int exitCode;
    std::string sentence;
  };
  std::string const from = "2026-11-21T00:00:00Z";
  for (Row const& row :
       {Row{{"--from", from, "--to", "tomorrow"}, 2, "'tomorrow' is not a timestamp"},
        Row{{"--from", "x", "--to", from}, 2, "'x' is not a timestamp"},
        Row{{"--from", from, "--to", "2026-11-20T23:59:59Z"}, 2, "must not be before"},
        Row{{"--from", from, "--to", from, "--step", "9"}, 2, "--step"}, Row{{"--to", from}, 2, "--from"}}) {
    auto const result = replay(row.arguments);
    EXPECT_EQ(result.exitCode, row.exitCode) << row.sentence;
    EXPECT_NE(result.err.find(row.sentence), std::string::npos) << result.err;
  }
  auto const absent = test::run({"replay", "/no such folder", "--from", from, "--to", from}, environment());
  EXPECT_EQ(absent.exitCode, 1);
  EXPECT_NE(absent.err.find("no such folder: /no such folder"), std::string::npos);
  prepare();
  auto const silent = replay({"--from", from, "--to", from});
  EXPECT_EQ(silent.exitCode, 1);
  EXPECT_EQ(silent.out, "Nothing was recorded for this period.\n");
  EXPECT_NE(silent.err.find("nothing was recorded"), std::string::npos) << silent.err;
}

TEST_F(ReplayCommand, TellsAPeriodBeforeTheRecordingFromAQuietOne) {
  prepare();
  ASSERT_EQ(run({"notify", "--deliver", "print", "--record", directory()}).exitCode, 0);
  auto const before = replay({"--from", "2026-11-20T00:00:00Z", "--to", "2026-11-21T09:19:59Z", "--json"});
  EXPECT_EQ(before.exitCode, 1);
  EXPECT_EQ(before.out, "[]\n");
  EXPECT_EQ(replay({"--from", kMoment, "--to", kMoment}).exitCode, 0) << "the answers of that very moment";
}

}  // namespace
}  // namespace nimbara
