// nimbara-demo PORT NOW FAULT… scene=NAME: the stand-ins as a process, started by `nimbara`. Prints its base
// address and serves until its standard input ends, so that it never outlives the program that started it.
// NOW is a moment or "-" for the clock.

#include "base/text/number.h"
#include "demo/demo_server.h"

#include <cstdio>
#include <memory>
#include <unistd.h>
#include <vector>

namespace {

std::unique_ptr<nimbara::Clock> clockOf(std::string_view now) {
  auto const instant = nimbara::parseIso8601(now);
  if (instant) return std::make_unique<nimbara::FixedClock>(*instant);
  return std::make_unique<nimbara::SystemClock>();
}

void waitForEndOfInput() {
  char byte = 0;
  while (read(STDIN_FILENO, &byte, 1) > 0) {
  }
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 3) {
    std::fputs("nimbara-demo: started by nimbara demo; see nimbara demo --help\n", stderr);
    return 2;
  }
  std::vector<nimbara::DemoFault> faults;
  nimbara::DemoScene const* scene = nullptr;
  for (int i = 3; i < count; ++i) {
    std::string_view const argument = arguments[i];
    if (argument.starts_with(nimbara::kSceneArgument)) {
      scene = nimbara::findDemoScene(argument.substr(nimbara::kSceneArgument.size()));
    } else if (auto const fault = nimbara::parseDemoFault(arguments[i]))
      faults.push_back(*fault);
  }
  auto const clock = clockOf(arguments[2]);
  auto const server = nimbara::DemoServer::start(*clock, std::move(faults),
                                                 nimbara::parseInteger(arguments[1]).value_or(0), scene);
  if (!server) {
    std::printf("%s\n", server.error().c_str());
    return 1;
  }
  std::printf("%s\n", (*server)->baseUrl().c_str());
  std::fflush(stdout);
  waitForEndOfInput();
  return 0;
}
