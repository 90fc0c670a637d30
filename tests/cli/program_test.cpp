// What only the program as a process shows: how it prints, and how it ends.

#include "base/files/file.h"
#include "cli/cli.h"
#include "platform/linux/child_process.h"
#include "support/paths.h"
#include "support/temporary_folder.h"
#include "support/test_console.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>

namespace nimbara {
namespace {

using test::TemporaryFolder;

struct Program : testing::Test {
  /// Its output goes into "out", its errors into "err". The child's number.
  pid_t start(std::vector<std::string> arguments) const {
    int const out = open((folder.path() / "out").c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    int const err = open((folder.path() / "err").c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    arguments.insert(arguments.begin(), "nimbara");
    pid_t child = 0;
    EXPECT_EQ(spawn(child, test::kProgram, std::move(arguments),
                    {"HOME=" + folder.path().string(), "LC_ALL=C.UTF-8"}, -1, out, err),
              0);
    close(out);
    close(err);
    return child;
  }
  static int codeOf(pid_t child) {
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }
  int run(std::vector<std::string> arguments) const { return codeOf(start(std::move(arguments))); }
  std::string out() const { return folder.read("out"); }
  std::string err() const { return folder.read("err"); }

  TemporaryFolder folder;
};

constexpr std::string_view kElements =
    "1 25544U 98067A   26325.50000000  .00016717  00000-0  10270-3 0  9009\n"
    "2 25544  51.6400 208.9163 0006317  69.9862  25.2906 15.49560532    10\n";

TEST_F(Program, PrintsNothingThatATerminalObeys) {
  folder.write("elements",
               "A\x1B]0;title\x07Z \xC2\x9B"
               "31m\xE2\x80\xAE\n" +
                   std::string(kElements));
  EXPECT_EQ(
      run({"satellites", "propagate", "--tle", (folder.path() / "elements").string(), "--minutes", "0"}), 0)
      << err();
  EXPECT_EQ(out().find_first_of("\x1B\x07"), std::string::npos);
  EXPECT_EQ(out().find("\xC2\x9B"), std::string::npos);
  EXPECT_EQ(out().find("\xE2\x80\xAE"), std::string::npos);
  EXPECT_TRUE(out().starts_with("25544 A]0;titleZ 31m\n")) << out();
}

TEST_F(Program, SaysThatALimitOfFileSizesIsReached) {
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  rlimit const none{16, before.rlim_max};
  // Of this process, which writes nothing meanwhile, for the child to inherit.
  setrlimit(RLIMIT_FSIZE, &none);
  pid_t const child = start({"--help"});
  int const code = codeOf(child);
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(code, 1) << "not ended by a signal";
}

TEST_F(Program, SaysThatItsOutputCannotBeWritten) {
  int const full = open("/dev/full", O_WRONLY | O_CLOEXEC);
  int const err = open((folder.path() / "err").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
  pid_t child = 0;
  ASSERT_EQ(
      spawn(child, test::kProgram, {"nimbara", "--help"}, {"HOME=" + folder.path().string()}, -1, full, err),
      0);
  EXPECT_EQ(codeOf(child), 1);
  EXPECT_NE(this->err().find("could not write the output"), std::string::npos);
  close(full);
  close(err);
}

TEST_F(Program, GivesACommandOfTheDemoFoldersOfItsOwn) {
  EXPECT_EQ(
      run({"--now", "2026-11-21T12:00:00Z", "demo", "--", "/bin/sh", "-c",
           "for folder in $XDG_DATA_HOME $XDG_CONFIG_HOME $XDG_CACHE_HOME; do echo \"<${folder##*/}>\"; "
           "done; echo $NIMBARA_NOW"}),
      0);
  EXPECT_EQ(out(), "<XDG_DATA_HOME>\n<XDG_CONFIG_HOME>\n<XDG_CACHE_HOME>\n2026-11-21T12:00:00Z\n") << err();
  EXPECT_EQ(run({"demo", "--", "nimbara", "places", "add", "10,1", "--name", "Gulf"}), 0) << err();
  EXPECT_EQ(run({"places", "list"}), 0);
  EXPECT_EQ(out(), "") << "the user's own places are as they were";
}

/// In a scene that saves places, and in a command that does.
TEST_F(Program, KeepsTheDemoOutOfFoldersThatTheUserHasNamed) {
  std::string const program = test::kProgram;
  std::string const command = "cd " + program.substr(0, program.rfind('/')) +
                              "; ./nimbara places add 10,1 --name Gulf > /dev/null; "
                              "./nimbara places list --json | grep -o '\"name\"' | wc -l";
  for (std::string const name : {"XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME"}) {
    test::TemporaryFolder const users;
    EXPECT_EQ(run({"demo", "--", "/usr/bin/env", name + "=" + users.path().string(), program, "demo",
                   "--scene", "world", "--", "/bin/sh", "-c", command}),
              0)
        << err();
    EXPECT_EQ(out(), "41\n") << name << err();
    EXPECT_TRUE(std::filesystem::is_empty(users.path())) << name;
  }
}

TEST_F(Program, PlaysTheDemoAtTheMomentThatItsCommandStates) {
  std::vector<std::string> const alerts{"alerts", "Warsaw", "--source", "meteoalarm", "--coverage", "--json"};
  for (auto const& [moment, state] :
       {std::pair("2026-11-21T11:00:00Z", "\"warnings\""), {"2026-11-21T13:00:00Z", "\"none\""}}) {
    std::vector<std::string> words{"demo", "--scene", "cancelled", "--", "nimbara", "--now", moment};
    words.insert(words.end(), alerts.begin(), alerts.end());
    EXPECT_EQ(run(words), 0) << err();
    EXPECT_NE(out().find(std::string("\"state\":") + state), std::string::npos) << moment << out() << err();
  }
}

TEST_F(Program, NeedsAHomeButWritesNothingHere) {
  Environment nowhere = test::plainEnvironment();
  nowhere.dataDirectory.clear();
  auto const result = test::run({"settings", "list"}, nowhere);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_NE(result.err.find("set HOME"), std::string::npos) << result.err;
  EXPECT_EQ(test::run({"--version"}, nowhere).exitCode, 0);
}

bool isListening(int port) {
  int const peer = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in to{};
  to.sin_family = AF_INET;
  to.sin_port = htons(static_cast<std::uint16_t>(port));
  to.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  bool const isOpen = connect(peer, reinterpret_cast<sockaddr*>(&to), sizeof to) == 0;
  close(peer);
  return isOpen;
}

/// The address that it prints when it serves.
std::string addressOf(int output) {
  std::string line;
  char byte = 0;
  while (read(output, &byte, 1) == 1 && byte != '\n') line += byte;
  return line;
}

/// The program while its feed server runs.
struct ServingProgram : Program {
  void SetUp() override {
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    ASSERT_EQ(spawn(child, test::kProgram, {"nimbara", "feed-server", "--listen", "127.0.0.1:0"},
                    {"HOME=" + folder.path().string()}, -1, ends[1]),
              0);
    close(ends[1]);
    std::string const address = addressOf(ends[0]);
    ASSERT_TRUE(address.starts_with("http://127.0.0.1:")) << address;
    port = std::stoi(address.substr(address.rfind(':') + 1));
    EXPECT_TRUE(isListening(port));
  }
  void TearDown() override { close(ends[0]); }
  int codeAfter(int signal) const {
    kill(child, signal);
    return codeOf(child);
  }

  int ends[2] = {-1, -1};  ///< of its output, which stays open as long as it runs
  pid_t child = 0;
  int port = 0;
};

TEST_F(ServingProgram, LeavesNoFeedServerBehindWhenItIsKilled) {
  EXPECT_EQ(codeAfter(SIGKILL), -SIGKILL);
  EXPECT_FALSE(isListening(port));
}

TEST_F(ServingProgram, EndsItsFeedServerWhenItIsInterrupted) {
  EXPECT_EQ(codeAfter(SIGTERM), exitCode::kInterrupted);
}

}  // namespace
}  // namespace nimbara
