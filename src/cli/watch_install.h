// Lets `nimbara watch` start with the user's session: a systemd user unit where there is such a manager, else
// an entry of the desktop's autostart. Files that somebody changed by hand are never touched: the first line
// of what is written here seals the rest.
#pragma once

#include "app/environment.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace nimbara {

struct CommandLine;
struct Session;
struct WatchOptions;

/// Runs a program found on the path. Its exit code; nothing when it cannot be started or is not done in time.
using ProgramRunner = std::function<std::optional<int>(std::vector<std::string> const& command)>;

/// What the program writes goes nowhere; it is ended when the time is over.
ProgramRunner timedRunner(std::chrono::milliseconds limit);

/// How a change ended: what was done, or why it was not, for people.
struct InstallReport {
  int exitCode = 0;
  std::string text;
};

InstallReport installWatch(Environment const& environment, ProgramRunner const& runProgram);
/// Undoes what `installWatch` did.
InstallReport uninstallWatch(Environment const& environment, ProgramRunner const& runProgram);

/// The files' contents with their seals, for the program at an absolute path.
std::string watchUnit(std::filesystem::path const& program);
std::string watchAutostart(std::filesystem::path const& program);

void defineWatchInstall(CLI::App& command, WatchOptions& options);
int runWatchInstall(CommandLine const& line, Session const& session);

}  // namespace nimbara
