#include "app/services/feed_services.h"
#include "base/json/json.h"
#include "base/text/number.h"
#include "cli/cli.h"
#include "cli/commands/feed_commands.h"
#include "cli/run_context.h"
#include "feeds/space/geomagnetic_service.h"

namespace nimbara {

namespace {

std::string jsonOf(std::optional<double> kp) {
  JsonWriter json;
  json.beginObject();
  json.memberOrNull("kp", kp);
  json.endObject();
  return json.take() + "\n";
}

}  // namespace

int runKp(CommandLine const& line, Session const& session) {
  auto const clock = makeClock(line.common);
  RunContext context(line.common, session, *clock,
                     ownServices(line.common, WeatherProviderOption::automatic));
  auto const reading = context.app().feeds().geomagnetic().currentKp(session.stop);
  auto const kp = reading.data.now;
  if (session.stop.stop_requested()) return session.fail(exitCode::kInterrupted, "interrupted");
  if (line.feeds.json) session.console.out(jsonOf(kp));
  if (!kp) {
    return session.fail(exitCode::kUnavailable,
                        "the K index could not be fetched: " + context.advised(reading.failure));
  }
  if (!line.feeds.json) session.console.out(context.texts().format("kp.value", fixedDecimal(*kp, 2)) + "\n");
  return exitCode::kComplete;
}

}  // namespace nimbara
