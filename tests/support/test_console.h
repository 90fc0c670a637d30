// A console that keeps what is written, and a run of the program against it.
#pragma once

#include "cli/cli.h"
#include "support/paths.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace nimbara::test {

class TestConsole final : public Console {
 public:
  void out(std::string_view text) override { output += text; }
  void err(std::string_view text) override { errors += text; }
  int terminalWidth() const override { return width; }
  bool showsProgress() const override { return isWatched; }

  std::string output;
  std::string errors;
  int width = 0;
  bool isWatched = false;
};

struct CliRun {
  int exitCode = 0;
  std::string out;
  std::string err;
};

/// Surroundings that no machine disturbs: no settings, UTC, UTF-8, no colours asked for or against, and no
/// desktop that a test could ring.
inline Environment plainEnvironment() {
  setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus", 1);
  Environment environment;
  environment.dataDirectory = std::filesystem::path(testing::TempDir()) / "nimbara-without-settings";
  environment.program = test::kProgram;
  return environment;
}

inline CliRun run(std::vector<std::string> arguments, Environment const& environment = plainEnvironment(),
                  int terminalWidth = 0) {
  TestConsole console;
  console.width = terminalWidth;
  int const code = runCli(std::move(arguments), Session{environment, console, {}});
  return {code, console.output, console.errors};
}

}  // namespace nimbara::test
