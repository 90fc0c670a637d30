#include "app/settings/watch_install.h"
#include "cli/cli.h"

namespace nimbara {

int runWatchInstall(CommandLine const& line, Session const& session) {
  if (session.environment.configHome.empty()) {
    return session.fail(
        exitCode::kUnavailable,
        "no home directory to install the background service in; set HOME or XDG_CONFIG_HOME");
  }
  constexpr std::chrono::seconds kPatience{20};
  auto const change = line.watch.install ? installWatch : uninstallWatch;
  auto const report = change(session.environment, timedRunner(kPatience));
  if (!report) return session.fail(exitCode::kUnavailable, report.error());
  session.console.out(*report);
  return exitCode::kComplete;
}

}  // namespace nimbara
