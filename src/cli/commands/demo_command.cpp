#include "base/text/display_text.h"
#include "cli/cli.h"
#include "demo/demo_folder.h"
#include "demo/demo_process.h"
#include "demo/world/demo_scene.h"

#include <algorithm>
#include <condition_variable>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <signal.h>
#include <sys/wait.h>

namespace nimbara {

namespace {

constexpr int kNotFound = 127;
constexpr int kSignalBase = 128;

/// The environment of the child: ours, with the demo in place of the services. Who names a cache wants that
/// one.
std::vector<std::string> variablesWith(std::string const& baseUrl, std::filesystem::path const& cache) {
  std::vector<std::string> variables = environmentVariables();
  auto const names = [](std::string const& entry) { return entry.starts_with("XDG_CACHE_HOME="); };
  if (!cache.empty() && std::ranges::none_of(variables, names)) {
    variables.push_back("XDG_CACHE_HOME=" + cache.string());
  }
  std::erase_if(variables, [](std::string const& entry) { return entry.starts_with("NIMBARA_SERVICES="); });
  variables.push_back("NIMBARA_SERVICES=" + baseUrl);
  return variables;
}

int waitFor(pid_t child, std::stop_token const& stop) {
  std::stop_callback const pass(stop, [child] { kill(child, SIGTERM); });
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : kSignalBase + WTERMSIG(status);
}

int runAgainst(std::string const& baseUrl, std::vector<std::string> const& command, Session const& session) {
  // The program knows where it lies, also where it is not installed.
  std::string const file = command[0] == "nimbara" ? session.environment.program.string() : command[0];
  pid_t child = 0;
  // A forecast that was made up is none to be kept, and one that was kept would hide the demo's.
  DemoFolder const cache;
  int const error = spawn(child, file, command, variablesWith(baseUrl, cache.path()));
  if (error != 0) {
    std::string const reason = std::strerror(error);
    return session.fail(error == ENOENT ? kNotFound : exitCode::kUnavailable,
                        "the command " + command[0] + " cannot be run: " + reason);
  }
  return waitFor(child, session.stop);
}

void waitForStop(std::stop_token const& stop) {
  std::mutex mutex;
  std::condition_variable_any condition;
  std::unique_lock lock(mutex);
  condition.wait(lock, stop, [] { return false; });
}

std::string sceneList() {
  std::string out;
  for (DemoScene const& scene : demoScenes()) {
    out +=
        fitted(scene.name, 14) + " " + fitted(scene.place, 14) + " " + std::string(scene.explanation) + "\n";
  }
  return out + "\nFor example: nimbara demo --scene coast -- nimbara alerts 60.17,24.94\n";
}

}  // namespace

int runDemo(CommandLine const& line, Session const& session) {
  if (line.demo.scene == "list") {
    session.console.out(sceneList());
    return exitCode::kComplete;
  }
  auto const demo = DemoProcess::start(session.environment.program, line.common.now, line.demo);
  if (!demo) return session.fail(exitCode::kUnavailable, demo.error());
  if (!line.demo.command.empty()) return runAgainst(demo->baseUrl(), line.demo.command, session);
  session.console.out(demo->baseUrl() + "\n");
  waitForStop(session.stop);
  return exitCode::kInterrupted;
}

}  // namespace nimbara
