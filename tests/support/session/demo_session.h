// Commands against the demo, which stands at one moment, with a cache and settings of the test's own.
#pragma once

#include "demo/demo_server.h"
#include "support/instants.h"
#include "support/temporary_folder.h"
#include "support/test_console.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace nimbara::test {

struct DemoSession : testing::Test {
  static constexpr char kMoment[] = "2026-11-21T09:20:00Z";

  Environment environment() const {
    Environment made = plainEnvironment();
    made.cacheDirectory = folder.path() / "cache";
    made.dataDirectory = folder.path() / "data";
    return made;
  }
  CliRun run(std::vector<std::string> arguments, std::string const& now = kMoment) const {
    arguments.insert(arguments.end(), {"--services", base, "--now", now});
    return test::run(std::move(arguments), environment());
  }

  TemporaryFolder folder;
  FixedClock clock{at(kMoment)};
  std::unique_ptr<DemoServer> server = *DemoServer::start(clock, {});
  std::string base = server->baseUrl();
};

}  // namespace nimbara::test
