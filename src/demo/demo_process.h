// The loopback stand-ins as a child process: started, found by its address, and ended with the object. The
// server's library is so kept out of the memory of every other run.
#pragma once

#include "base/result.h"
#include "base/time/instant.h"
#include "demo/demo_fault.h"
#include "platform/linux/child_process.h"

#include <filesystem>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace nimbara {

struct DemoOptions {
  int port = 0;
  std::vector<DemoFault> faults;
  std::string scene;  ///< of official warnings; empty: those that fit the generated weather
  std::vector<std::string> command;
};

class DemoProcess {
 public:
  /// The error is a sentence.
  /// `program` is the running program: the server lies next to it.
  static Result<DemoProcess, std::string> start(std::filesystem::path const& program,
                                                std::optional<Instant> now, DemoOptions const& options);
  ~DemoProcess();
  DemoProcess(DemoProcess&& other) noexcept;
  DemoProcess& operator=(DemoProcess&&) = delete;

  std::string const& baseUrl() const { return baseUrl_; }

 private:
  DemoProcess(pid_t child, int input) : child_(child), input_(input) {}

  pid_t child_;
  int input_;  // the child serves as long as this is open
  std::string baseUrl_;
};

}  // namespace nimbara
