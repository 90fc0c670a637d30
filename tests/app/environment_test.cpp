#include "app/settings/environment.h"

#include "support/child_process.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace nimbara {
namespace {

using test::ChildProcess;

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

}  // namespace
}  // namespace nimbara
