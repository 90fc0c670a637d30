#include "demo/demo_process.h"

#include "demo/world/demo_scene.h"

#include <cstring>
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace nimbara {

namespace {

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
  if (!options.scene.empty()) arguments.push_back(std::string(kSceneArgument) + options.scene);
  return arguments;
}

}  // namespace

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
    return std::unexpected(process.baseUrl_.empty() ? "the demo stopped before it was ready"
                                                    : process.baseUrl_);
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
