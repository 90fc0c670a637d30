#include "app/services/feed_services.h"
#include "app/services/forecasts/side_by_side.h"
#include "base/json/json.h"
#include "cli/cli.h"
#include "cli/commands/feed_commands.h"
#include "cli/pages/kp_page.h"
#include "cli/run_context.h"
#include "cli/terminal.h"
#include "feeds/space/geomagnetic_service.h"
#include "feeds/space/kp_forecast_service.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>

namespace nimbara {

namespace {

void writeReadings(JsonWriter& json, std::string_view key, std::vector<KpReading> const& readings) {
  if (readings.empty()) return;
  json.key(key);
  json.beginList();
  for (KpReading const& reading : readings) {
    json.separate();
    json.beginObject();
    json.member("time", reading.begin);
    json.member("kp", reading.kp);
    json.member("kind", reading.kind);
    json.endObject();
  }
  json.endList();
}

std::string jsonOf(std::optional<double> kp, KpOutlook const& outlook) {
  JsonWriter json;
  json.beginObject();
  json.memberOrNull("kp", kp);
  writeReadings(json, "history", outlook.history);
  writeReadings(json, "forecast", outlook.forecast);
  json.endObject();
  return json.take() + "\n";
}

/// What lies behind the last value that was measured.
std::vector<KpReading> beyond(std::vector<KpReading> forecast, std::vector<KpReading> const& history) {
  Instant const measured = history.empty() ? Instant::min() : history.back().begin;
  std::erase_if(forecast, [measured](KpReading const& reading) { return reading.begin <= measured; });
  return forecast;
}

/// The one that was asked for, else the selected one where there is one.
Result<std::optional<Coordinate>, Failure> placeOf(RunContext& context, std::string const& text) {
  auto const place = context.place(text);
  if (place) return place->coordinate;
  if (text.empty()) return std::nullopt;
  return std::unexpected(place.error());
}

}  // namespace

int runKp(CommandLine const& line, Session const& session) {
  auto const clock = makeClock(line.common);
  RunContext context(line.common, session, *clock,
                     ownServices(line.common, WeatherProviderOption::automatic));
  auto const place = placeOf(context, line.feeds.place);
  if (!place) return session.fail(place.error().exitCode, place.error().sentence);
  FeedServices& feeds = context.app().feeds();
  FeedReading<KIndex> present;
  FeedReading<std::vector<KpReading>> ahead;
  runAll({[&] { present = feeds.geomagnetic().currentKp(session.stop); },
          [&] { ahead = feeds.kpForecast().fetchForecast(session.stop); }},
         Waiting::sideBySide);
  if (session.stop.stop_requested()) return session.fail(exitCode::kInterrupted, "interrupted");
  auto const kp = present.data.now;
  KpOutlook const outlook{kp.value_or(0), present.data.recent, beyond(ahead.data, present.data.recent),
                          *place};
  if (line.feeds.json) session.console.out(jsonOf(kp, outlook));
  if (!kp) {
    return session.fail(exitCode::kUnavailable,
                        "the K index could not be fetched: " + context.advised(present.failure));
  }
  if (ahead.failure) context.tell("no forecast of the K index: " + context.plain(*ahead.failure));
  if (line.feeds.json) return exitCode::kComplete;
  Calendar const& machine = session.environment.machineCalendar;
  Calendar const calendar =
      *place ? Calendar::forZone(std::string(timeZoneAt(**place))).value_or(machine) : machine;
  session.console.out(kpPage(outlook, context.texts(), calendar, clock->now(), styleOf(session)));
  return exitCode::kComplete;
}

}  // namespace nimbara
