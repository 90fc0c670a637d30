// A copy of the test's process that runs one function and can be killed at any instant. It reports whole
// numbers to its parent. Only for tests without threads at the time of its start.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <signal.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace nimbara::test {

class ChildProcess {
 public:
  /// Tells the parent a number.
  using Report = std::function<void(std::int64_t)>;

  /// The function's result is the exit code.
  explicit ChildProcess(std::function<int(Report const&)> const& work) {
    int ends[2];
    if (pipe(ends) != 0) throw std::runtime_error("no pipe");
    child_ = fork();
    if (child_ == 0) {
      close(ends[0]);
      _exit(work([output = ends[1]](std::int64_t number) {
        if (write(output, &number, sizeof number) != sizeof number) _exit(99);
      }));
    }
    close(ends[1]);
    input_ = ends[0];
  }
  ~ChildProcess() {
    kill();
    close(input_);
  }
  ChildProcess(ChildProcess const&) = delete;
  ChildProcess& operator=(ChildProcess const&) = delete;

  /// The next number; nothing when the child has ended.
  std::optional<std::int64_t> next() const {
    std::int64_t number = 0;
    return read(input_, &number, sizeof number) == sizeof number ? std::optional(number) : std::nullopt;
  }
  void signal(int number) const {
    if (child_ > 0) ::kill(child_, number);
  }
  void kill() {
    if (child_ > 0) ::kill(child_, SIGKILL);
    static_cast<void>(wait());
  }
  /// The exit code, or minus the signal that ended it.
  int wait() {
    int status = 0;
    if (child_ <= 0) return 0;
    while (waitpid(child_, &status, 0) < 0 && errno == EINTR) {
    }
    child_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  }

 private:
  pid_t child_ = -1;
  int input_ = -1;
};

}  // namespace nimbara::test
