// Folders of the account, and the service that watches in the background.
#include "app/settings/environment.h"
#include "app/settings/watch_install.h"
#include "support/child_process.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

#include <cstdlib>

namespace nimbara {
namespace {

using test::ChildProcess;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// In a process of its own, whose environment and account are nobody else's.
int ask(std::function<void()> const& surroundings, std::function<bool(Environment const&)> const& expected) {
  ChildProcess child([&](ChildProcess::Report const&) {
    for (char const* const name : {"XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME", "HOME"})
      unsetenv(name);
    surroundings();
    return expected(Environment::ofProcess()) ? 0 : 1;
  });
  return child.wait();
}

TEST(EnvironmentFolders, AreTheAccountsWhereTheEnvironmentNamesNone) {
  auto const isKnown = [](Environment const& found) {
    return found.dataDirectory.is_absolute() && found.cacheDirectory.is_absolute() &&
           found.configHome.is_absolute();
  };
  EXPECT_EQ(ask([] { setenv("HOME", "/somewhere", 1); }, isKnown), 0);
  bool const hasHome = geteuid() == 0;  // what the account of a builder has, nobody knows
  if (!hasHome) GTEST_SKIP() << "only of the superuser is it known that there is a home";
  EXPECT_EQ(ask([] {}, isKnown), 0);
  EXPECT_EQ(ask([] { setenv("HOME", "relative", 1); }, isKnown), 0);
}

TEST(EnvironmentFolders, AreNoneRatherThanTheCurrentFolder) {
  if (geteuid() != 0) GTEST_SKIP() << "only the superuser can become somebody without an account";
  auto const withoutAccount = [] {
    constexpr uid_t kUnknown = 54321;
    if (setresuid(kUnknown, kUnknown, kUnknown) != 0) _exit(98);
  };
  EXPECT_EQ(ask(withoutAccount,
                [](Environment const& found) {
                  return found.dataDirectory.empty() && found.cacheDirectory.empty() &&
                         found.configHome.empty();
                }),
            0);
  EXPECT_EQ(ask(
                [&] {
                  setenv("XDG_DATA_HOME", "/data", 1);
                  withoutAccount();
                },
                [](Environment const& found) {
                  return found.dataDirectory == "/data/nimbara" && found.cacheDirectory.empty();
                }),
            0);
}

constexpr char kUnit[] = "systemd/user/nimbara-watch.service";
constexpr char kAutostart[] = "autostart/io.github.nimbara.Nimbara.watch.desktop";

class WatchInstall : public testing::Test {
 protected:
  WatchInstall() {
    environment_.configHome = folder_.path();
    environment_.program = "/opt/nimbara/bin/nimbara";
  }

  ProgramRunner systemctl() {
    return [this](std::vector<std::string> const& command) -> std::optional<int> {
      if (!hasSystemd_) return std::nullopt;
      std::string text;
      for (std::string const& word : command) text += (text.empty() ? "" : " ") + word;
      commands_.push_back(text);
      return text == failing_ ? 1 : 0;
    };
  }
  Result<std::string, std::string> install() { return installWatch(environment_, systemctl()); }
  Result<std::string, std::string> uninstall() { return uninstallWatch(environment_, systemctl()); }
  bool exists(std::string const& file) const { return std::filesystem::exists(folder_.path() / file); }
  void addLine(std::string const& file) const { folder_.write(file, folder_.read(file) + "Nice=5\n"); }

  test::TemporaryFolder folder_;
  Environment environment_;
  bool hasSystemd_ = true;
  std::string failing_;
  std::vector<std::string> commands_;
};

TEST_F(WatchInstall, WritesAUnitAndStartsIt) {
  auto const report = install();
  ASSERT_TRUE(report);
  EXPECT_THAT(*report, HasSubstr((folder_.path() / kUnit).string()));
  std::string const unit = folder_.read(kUnit);
  EXPECT_THAT(unit, HasSubstr("\nExecStart=\"/opt/nimbara/bin/nimbara\" watch\n"));
  EXPECT_THAT(unit, HasSubstr("\nSuccessExitStatus=130\n"));
  EXPECT_THAT(commands_, ElementsAre("systemctl --user show-environment", "systemctl --user daemon-reload",
                                     "systemctl --user enable nimbara-watch.service",
                                     "systemctl --user restart nimbara-watch.service"));
  EXPECT_FALSE(exists(kAutostart));
}

TEST_F(WatchInstall, CanBeRepeatedAndUndone) {
  install();
  environment_.program = "/usr/bin/nimbara";
  EXPECT_TRUE(install());
  EXPECT_THAT(folder_.read(kUnit), HasSubstr("\"/usr/bin/nimbara\""));
  commands_.clear();
  auto const report = uninstall();
  ASSERT_TRUE(report);
  EXPECT_THAT(*report, StartsWith("Stopped and disabled"));
  EXPECT_THAT(commands_, ElementsAre("systemctl --user show-environment",
                                     "systemctl --user disable --now nimbara-watch.service",
                                     "systemctl --user daemon-reload"));
  EXPECT_FALSE(exists(kUnit));
  commands_.clear();
  EXPECT_EQ(uninstall().value_or(""), "The background service is not installed.\n");
  EXPECT_THAT(commands_, IsEmpty());
}

TEST_F(WatchInstall, LeavesChangedFilesAlone) {
  install();
  addLine(kUnit);
  std::string const changed = folder_.read(kUnit);
  commands_.clear();
  for (auto const& report : {install(), uninstall()}) {
    ASSERT_FALSE(report);
    EXPECT_THAT(report.error(), HasSubstr("edited manually"));
  }
  EXPECT_EQ(folder_.read(kUnit), changed);
  EXPECT_THAT(commands_, ElementsAre("systemctl --user show-environment"));
  for (std::string_view const foreign : {"", "[Unit]\n", "# no end of a line"}) {
    folder_.write(kUnit, foreign);
    EXPECT_FALSE(install()) << foreign;
    EXPECT_EQ(folder_.read(kUnit), foreign);
  }
  std::filesystem::remove(folder_.path() / kUnit);
  std::filesystem::create_symlink("/dev/null", folder_.path() / kUnit);  // masked
  EXPECT_FALSE(install());
  EXPECT_TRUE(std::filesystem::is_symlink(folder_.path() / kUnit));
}

TEST_F(WatchInstall, SaysWhatFailed) {
  failing_ = "systemctl --user enable nimbara-watch.service";
  auto const installed = install();
  ASSERT_FALSE(installed);
  EXPECT_THAT(installed.error(), HasSubstr('"' + failing_ + '"'));
  failing_ = "systemctl --user disable --now nimbara-watch.service";
  auto const uninstalled = uninstall();
  ASSERT_FALSE(uninstalled);
  EXPECT_THAT(uninstalled.error(), HasSubstr('"' + failing_ + '"'));
  EXPECT_TRUE(exists(kUnit));
  folder_.write("file", "");
  environment_.configHome = folder_.path() / "file";
  EXPECT_THAT(install().error(), HasSubstr((folder_.path() / "file").string()));
}

TEST_F(WatchInstall, UsesTheDesktopsAutostartWithoutSystemd) {
  hasSystemd_ = false;
  auto const report = install();
  ASSERT_TRUE(report);
  EXPECT_THAT(*report, HasSubstr("does not use systemd"));
  EXPECT_THAT(folder_.read(kAutostart), HasSubstr("\nExec=\"/opt/nimbara/bin/nimbara\" watch\n"));
  EXPECT_FALSE(exists(kUnit));
  EXPECT_TRUE(install());
  hasSystemd_ = true;
  EXPECT_TRUE(install());  // one of them is enough
  EXPECT_FALSE(exists(kAutostart));
  EXPECT_TRUE(exists(kUnit));
  hasSystemd_ = false;
  EXPECT_THAT(uninstall().value_or(""), HasSubstr("continues until you stop it"));
  EXPECT_FALSE(exists(kUnit));
  install();
  addLine(kAutostart);
  EXPECT_FALSE(install());
  EXPECT_FALSE(uninstall());
  EXPECT_TRUE(exists(kAutostart));
}

TEST_F(WatchInstall, QuotesTheProgramsPath) {
  EXPECT_THAT(watchUnit("/a b/50%/q\"\\$x"), HasSubstr(R"(ExecStart="/a b/50%%/q\"\\$x" watch)"));
  EXPECT_THAT(watchAutostart("/a b/50%/q\"\\$`x"), HasSubstr(R"(Exec="/a b/50%%/q\\"\\\\\\$\\`x" watch)"));
  for (char const* const program : {"nimbara", "", "/a\n[Service]/nimbara"}) {
    environment_.program = program;
    EXPECT_FALSE(install()) << program;
  }
  EXPECT_FALSE(exists(kUnit));
}

TEST_F(WatchInstall, TellsWhatStartsTheWatch) {
  EXPECT_EQ(watchStart(environment_), WatchStart::byHand);
  install();
  EXPECT_EQ(watchStart(environment_), WatchStart::atLogin);
  uninstall();
  hasSystemd_ = false;
  install();
  EXPECT_EQ(watchStart(environment_), WatchStart::fromNextLogin);
  addLine(kAutostart);
  EXPECT_EQ(watchStart(environment_), WatchStart::changedByHand);
}

}  // namespace
}  // namespace nimbara
