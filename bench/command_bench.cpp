// The whole command `nimbara forecast` against the loopback demo, from the start of the process to its end,
// with the largest memory that it held; beside it /bin/true, what the machine takes for a process that does
// nothing. Usage: command_bench PATH-TO-NIMBARA

#include "demo/demo_server.h"
#include "platform/clock.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using Arguments = std::vector<std::string>;

/// Runs a command with its output thrown away and gives its peak memory in KiB; -1 when it failed.
long runOnce(Arguments arguments) {
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  int const error = posix_spawn(&child, pointers[0], &actions, nullptr, pointers.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) return -1;
  int status = 0;
  rusage usage{};
  if (wait4(child, &status, 0, &usage) != child || status != 0) return -1;
  return usage.ru_maxrss;
}

void command(benchmark::State& state, Arguments const& arguments) {
  long peak = 0;
  for (auto _ : state) {
    long const used = runOnce(arguments);
    if (used < 0) {
      state.SkipWithError("the command failed");
      break;
    }
    peak = std::max(peak, used);
  }
  state.counters["peak_MB"] = static_cast<double>(peak) / 1024;
}

}  // namespace

int main(int count, char** arguments) {
  benchmark::Initialize(&count, arguments);
  if (count < 2) return 2;
  nimbara::SystemClock const clock;
  auto const demo = nimbara::DemoServer::start(clock, {});
  if (!demo) return 1;
  std::string const program = arguments[1];
  Arguments const forecast{program, "forecast", "52.52,13.41", "--services", (*demo)->baseUrl()};
  Arguments json = forecast;
  json.emplace_back("--json");
  // Everything that a command keeps goes into a folder of this run.
  std::string folder = "/tmp/nimbara-bench-XXXXXX";
  if (mkdtemp(folder.data()) == nullptr) return 1;
  setenv("XDG_CACHE_HOME", folder.c_str(), 1);
  setenv("XDG_DATA_HOME", folder.c_str(), 1);
  Arguments live = forecast;
  live.emplace_back("--no-cache");
  Arguments line = forecast;
  line[1] = "line";
  if (runOnce(forecast) < 0) return 1;
  for (auto const& [name, what] :
       {std::pair<char const*, Arguments>{"process_that_does_nothing", {"/bin/true"}},
        {"nimbara_version", {program, "--version"}},
        {"nimbara_forecast_live", live},
        {"nimbara_forecast_cached_json", json},
        {"nimbara_forecast_cached", forecast},
        {"nimbara_line", line}}) {
    benchmark::RegisterBenchmark(name, [what](benchmark::State& state) { command(state, what); })
        ->UseRealTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(60)
        ->Repetitions(3)
        ->ReportAggregatesOnly(true);
  }
  benchmark::RunSpecifiedBenchmarks();
  std::filesystem::remove_all(folder);
  return 0;
}
