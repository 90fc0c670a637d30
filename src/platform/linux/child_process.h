// Other programs as child processes: started with their files and variables, or run to their end within a
// limit of time. Knows no shell.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <sys/types.h>
#include <vector>

namespace nimbara {

/// Starts a program with the signal mask that programs expect. Gives the error number.
int spawn(pid_t& child, std::string const& file, std::vector<std::string> arguments,
          std::vector<std::string> variables, int input = -1, int output = -1, int errors = -1);

/// Goes on as another program, with the same process number and variables; the end of this one is the end of
/// that. Signals are as a start finds them, but those that are held back stay so. Gives the error number.
int become(std::string const& file, std::vector<std::string> arguments);

/// The process's own environment variables.
std::vector<std::string> environmentVariables();

/// Runs a program found on the path. Its exit code; nothing when it cannot be started or is not done in time.
using ProgramRunner = std::function<std::optional<int>(std::vector<std::string> const& command)>;

/// What the program writes goes nowhere; it is ended when the time is over or `stop` is asked for.
ProgramRunner timedRunner(std::chrono::milliseconds limit, std::stop_token stop = {});

}  // namespace nimbara
