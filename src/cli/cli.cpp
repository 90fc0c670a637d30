#include "cli/cli.h"

#include "base/text.h"

namespace nimbara {

int Session::fail(int code, std::string_view sentence) const {
  console.err("nimbara: " + oneLine(sentence, 500) + "\n");
  return code;
}

std::unique_ptr<Clock> makeClock(CommonOptions const& options) {
  if (options.now) return std::make_unique<FixedClock>(*options.now);
  return std::make_unique<SystemClock>();
}

int runCli(std::vector<std::string> arguments, Session const& session) {
  auto const line = parseCommandLine(std::move(arguments), session.environment);
  if (!line) {
    EarlyEnd const& end = line.error();
    if (end.exitCode != exitCode::kComplete) return session.fail(end.exitCode, end.text);
    session.console.out(end.text);
    return exitCode::kComplete;
  }
  switch (line->command) {
    case CommandLine::Command::forecast:
      return runForecast(*line, session);
    case CommandLine::Command::demo:
      return runDemo(*line, session);
  }
  return exitCode::kUsage;
}

}  // namespace nimbara
