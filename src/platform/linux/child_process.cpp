#include "platform/linux/child_process.h"

#include <cerrno>
#include <fcntl.h>
#include <iterator>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/eventfd.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace nimbara {

namespace {

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
    sigset_t ignored;
    sigemptyset(&ignored);
    sigaddset(&ignored, SIGXFSZ);
    posix_spawnattr_setsigdefault(&attributes_, &ignored);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~SpawnAttributes() { posix_spawnattr_destroy(&attributes_); }
  SpawnAttributes(SpawnAttributes const&) = delete;
  SpawnAttributes& operator=(SpawnAttributes const&) = delete;

  posix_spawnattr_t const* get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_{};
};

class SpawnFiles {
 public:
  SpawnFiles() { posix_spawn_file_actions_init(&actions_); }
  ~SpawnFiles() { posix_spawn_file_actions_destroy(&actions_); }
  SpawnFiles(SpawnFiles const&) = delete;
  SpawnFiles& operator=(SpawnFiles const&) = delete;

  void put(int file, int at) {
    if (file >= 0) posix_spawn_file_actions_adddup2(&actions_, file, at);
  }
  posix_spawn_file_actions_t const* get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_{};
};

/// Whether the child ends in time. It is not waited for: it stays until its end is read.
bool endsWithin(pid_t child, std::chrono::milliseconds limit, std::stop_token const& stop) {
  constexpr short kReadable = POLLIN;
  int const stopped = eventfd(0, EFD_CLOEXEC);
  auto const handle = static_cast<int>(syscall(SYS_pidfd_open, child, 0));
  pollfd ends[] = {{handle, kReadable, 0}, {stopped, kReadable, 0}};
  {
    std::stop_callback const wake(stop, [stopped] { eventfd_write(stopped, 1); });
    poll(ends, std::size(ends), static_cast<int>(limit.count()));
  }
  close(handle);
  close(stopped);
  return handle >= 0 && (ends[0].revents & kReadable) != 0;
}

}  // namespace

int spawn(pid_t& child, std::string const& file, std::vector<std::string> arguments,
          std::vector<std::string> variables, int input, int output, int errors) {
  SpawnAttributes const attributes;
  SpawnFiles files;
  files.put(input, STDIN_FILENO);
  files.put(output, STDOUT_FILENO);
  files.put(errors, STDERR_FILENO);
  return posix_spawnp(&child, file.c_str(), files.get(), attributes.get(), pointersTo(arguments).data(),
                      pointersTo(variables).data());
}

int become(std::string const& file, std::vector<std::string> arguments) {
  signal(SIGXFSZ, SIG_DFL);
  execv(file.c_str(), pointersTo(arguments).data());
  return errno;
}

std::vector<std::string> environmentVariables() {
  std::vector<std::string> variables;
  for (char** entry = environ; *entry != nullptr; ++entry) variables.emplace_back(*entry);
  return variables;
}

ProgramRunner timedRunner(std::chrono::milliseconds limit, std::stop_token stop) {
  return [limit, stop = std::move(stop)](std::vector<std::string> const& command) -> std::optional<int> {
    int const nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
    pid_t child = 0;
    int const error =
        spawn(child, command.front(), command, environmentVariables(), nowhere, nowhere, nowhere);
    close(nowhere);
    if (error != 0) return std::nullopt;
    bool const inTime = endsWithin(child, limit, stop);
    if (!inTime) kill(child, SIGKILL);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return inTime && WIFEXITED(status) ? std::optional(WEXITSTATUS(status)) : std::nullopt;
  };
}

}  // namespace nimbara
