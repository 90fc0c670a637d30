#include "cli/cli.h"
#include "demo/demo_server.h"

#include <condition_variable>
#include <cstring>
#include <mutex>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace nimbara {

namespace {

constexpr int kNotFound = 127;
constexpr int kSignalBase = 128;

/// The environment of the child: ours, with the demo in place of the services.
std::vector<std::string> environmentWith(std::string const& baseUrl) {
  std::vector<std::string> variables;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    if (!std::string_view(*entry).starts_with("NIMBARA_SERVICES=")) variables.emplace_back(*entry);
  }
  variables.push_back("NIMBARA_SERVICES=" + baseUrl);
  return variables;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

/// The child gets the signals that this process keeps for itself.
class SpawnAttributes {
 public:
  SpawnAttributes() {
    posix_spawnattr_init(&attributes_);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes_, &none);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK);
  }
  ~SpawnAttributes() { posix_spawnattr_destroy(&attributes_); }
  SpawnAttributes(SpawnAttributes const&) = delete;
  SpawnAttributes& operator=(SpawnAttributes const&) = delete;

  posix_spawnattr_t const* get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_{};
};

int waitFor(pid_t child, std::stop_token const& stop) {
  std::stop_callback const pass(stop, [child] { kill(child, SIGTERM); });
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : kSignalBase + WTERMSIG(status);
}

int runAgainst(std::string const& baseUrl, std::vector<std::string> command, Session const& session) {
  // The program knows where it lies, also where it is not installed.
  std::string const file = command[0] == "nimbara" ? session.environment.program.string() : command[0];
  std::vector<std::string> variables = environmentWith(baseUrl);
  SpawnAttributes const attributes;
  pid_t child = 0;
  int const error = posix_spawnp(&child, file.c_str(), nullptr, attributes.get(), pointersTo(command).data(),
                                 pointersTo(variables).data());
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

}  // namespace

int runDemo(CommandLine const& line, Session const& session) {
  auto const clock = makeClock(line.common);
  auto const demo = DemoServer::start(*clock, line.demo.faults, line.demo.port);
  if (!demo) return session.fail(exitCode::kUnavailable, demo.error());
  if (!line.demo.command.empty()) return runAgainst((*demo)->baseUrl(), line.demo.command, session);
  session.console.out((*demo)->baseUrl() + "\n");
  waitForStop(session.stop);
  return exitCode::kInterrupted;
}

}  // namespace nimbara
