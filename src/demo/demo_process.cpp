#include "demo/demo_process.h"

#include <cstring>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

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
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK);
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

struct Pipe {
  int readEnd = -1;
  int writeEnd = -1;

  Pipe() {
    int ends[2] = {-1, -1};
    if (pipe2(ends, O_CLOEXEC) == 0) std::tie(readEnd, writeEnd) = std::pair(ends[0], ends[1]);
  }
  ~Pipe() {
    for (int const end : {readEnd, writeEnd}) {
      if (end >= 0) close(end);
    }
  }
  Pipe(Pipe const&) = delete;
  Pipe& operator=(Pipe const&) = delete;

  void closeWriteEnd() { close(std::exchange(writeEnd, -1)); }
  int releaseWriteEnd() { return std::exchange(writeEnd, -1); }
};

std::string readLine(int file) {
  std::string line;
  char byte = 0;
  while (read(file, &byte, 1) == 1 && byte != '\n') line += byte;
  return line;
}

std::vector<std::string> argumentsOf(std::optional<Instant> now, DemoOptions const& options) {
  std::vector<std::string> arguments{"nimbara-demo", std::to_string(options.port),
                                     now ? formatIso8601(*now) : "-"};
  for (DemoFault const& fault : options.faults) {
    arguments.push_back(std::string(enumName(fault.service)) + "=" + std::string(enumName(fault.kind)));
  }
  return arguments;
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

std::vector<std::string> environmentVariables() {
  std::vector<std::string> variables;
  for (char** entry = environ; *entry != nullptr; ++entry) variables.emplace_back(*entry);
  return variables;
}

Result<DemoProcess, std::string> DemoProcess::start(std::filesystem::path const& program,
                                                    std::optional<Instant> now, DemoOptions const& options) {
  Pipe input;
  Pipe output;
  std::string const server = (program.parent_path() / "nimbara-demo").string();
  pid_t child = 0;
  int const error =
      spawn(child, server, argumentsOf(now, options), environmentVariables(), input.readEnd, output.writeEnd);
  if (error != 0)
    return std::unexpected("the demo " + server + " cannot be started: " + std::strerror(error));
  output.closeWriteEnd();
  DemoProcess process(child, input.releaseWriteEnd());
  process.baseUrl_ = readLine(output.readEnd);
  if (!process.baseUrl_.starts_with("http://")) {
    return std::unexpected(process.baseUrl_.empty() ? "the demo ended before it served" : process.baseUrl_);
  }
  return process;
}

DemoProcess::DemoProcess(DemoProcess&& other) noexcept
    : child_(std::exchange(other.child_, 0)),
      input_(std::exchange(other.input_, -1)),
      baseUrl_(std::move(other.baseUrl_)) {}

DemoProcess::~DemoProcess() {
  if (child_ == 0) return;
  close(input_);
  // It would end by itself within a second; nobody needs to wait for its clients.
  kill(child_, SIGTERM);
  while (waitpid(child_, nullptr, 0) < 0 && errno == EINTR) {
  }
}

}  // namespace nimbara
