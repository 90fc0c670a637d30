// The command line program without its process: arguments and environment in, two texts and an exit code
// out, so that a test runs it as a person would.
#pragma once

#include "app/settings/environment.h"
#include "cli/command_line.h"
#include "platform/clock.h"
#include "platform/http/http_client.h"
#include "platform/location_source.h"
#include "platform/settings/settings_store.h"

#include <chrono>
#include <stop_token>
#include <string>
#include <vector>

namespace nimbara {

class KeyedSettingsStore;

namespace exitCode {
inline constexpr int kComplete = 0;
inline constexpr int kUnavailable = 1;
inline constexpr int kUsage = 2;
inline constexpr int kInterrupted = 130;
}  // namespace exitCode

/// Where a run writes to and what it knows about it.
class Console {
 public:
  virtual ~Console() = default;
  virtual void out(std::string_view text) = 0;
  virtual void err(std::string_view text) = 0;
  /// Cells a line of standard output, 0 when it is no terminal.
  virtual int terminalWidth() const = 0;
  /// Somebody watches standard error.
  virtual bool showsProgress() const { return false; }
};

/// What a command works with.
struct Session {
  Environment const& environment;
  Console& console;
  std::stop_token stop;
  LocationSource* location = nullptr;   ///< none: the desktop's
  SettingsStore* store = nullptr;       ///< the user's; set by runCli
  KeyedSettingsStore* keyed = nullptr;  ///< the same
  Settings const* settings = nullptr;   ///< as they were at the start of the run
  /// How long a command works before it says what it is doing.
  std::chrono::milliseconds patience{1000};

  /// One line on standard error: "nimbara: " and a sentence.
  int fail(int code, std::string_view sentence) const;
};

int runCli(std::vector<std::string> arguments, Session const& session);

int runForecast(CommandLine const& line, Session const& session);
int runAlerts(CommandLine const& line, Session const& session);
int runCoverage(CommandLine const& line, Session const& session);
int runLine(CommandLine const& line, Session const& session);
int runWaybar(CommandLine const& line, Session const& session);
int runDoctor(CommandLine const& line, Session const& session);
int runWatch(CommandLine const& line, Session const& session);
int runWatchInstall(CommandLine const& line, Session const& session);
int runNowcast(CommandLine const& line, Session const& session);
int runRadar(CommandLine const& line, Session const& session);
int runNotify(CommandLine const& line, Session const& session);
int runDemo(CommandLine const& line, Session const& session);
int runPlaces(CommandLine const& line, Session const& session);
int runRules(CommandLine const& line, Session const& session);
int runSatellites(CommandLine const& line, Session const& session);
int runComplete(CommandLine const& line, Session const& session);
int runExport(CommandLine const& line, Session const& session);
int runImport(CommandLine const& line, Session const& session);
int runManual(CommandLine const& line, Session const& session);
int runStation(CommandLine const& line, Session const& session);
int runSettings(CommandLine const& line, Session const& session);

/// The clock that the command line asks for.
std::unique_ptr<Clock> makeClock(CommonOptions const& options);

}  // namespace nimbara
