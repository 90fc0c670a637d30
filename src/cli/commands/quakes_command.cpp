#include "app/services/feed_services.h"
#include "base/json/json.h"
#include "base/text/display_text.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "base/words/time_words.h"
#include "cli/cli.h"
#include "cli/commands/feed_commands.h"
#include "cli/run_context.h"
#include "feeds/quakes/earthquake_service.h"

#include <algorithm>

namespace nimbara {

namespace {

/// Only what was asked for.
std::vector<EarthquakeEvent> chosen(std::vector<EarthquakeEvent> events, FeedOptions const& options,
                                    std::optional<Coordinate> centre) {
  std::erase_if(events, [&](EarthquakeEvent const& event) {
    bool const isFar = centre && !(haversineKm(*centre, event.coordinate()) <= options.radiusKm);
    return isFar || (options.minMagnitude && event.magnitude < *options.minMagnitude);
  });
  return events;
}

std::string distanceText(EarthquakeEvent const& event, std::optional<Coordinate> centre) {
  return centre ? roundedText(haversineKm(*centre, event.coordinate())) + " km" : "";
}

/// Time in the machine's zone, magnitude, depth, distance from the place that was asked for, place.
std::string table(std::vector<EarthquakeEvent> const& events, std::optional<Coordinate> centre,
                  Session const& session, Texts const& texts) {
  if (events.empty()) return std::string(texts.text("quakes.none")) + "\n";
  std::string out;
  TimeWords const words(texts, session.environment.machineCalendar);
  int const clockWidth = displayWidth(words.clock(LocalTime(std::chrono::hours(22))));
  for (EarthquakeEvent const& event : events) {
    out += formatDate(session.environment.machineCalendar.day(event.time)) + " " +
           fitted(words.clock(event.time), clockWidth, Align::right) + "  M" +
           fitted(fixedDecimal(event.magnitude, 1), 4, Align::right) +
           fitted(roundedText(event.depthKm) + " km", 8, Align::right) + "  " +
           (centre ? fitted(distanceText(event, centre), 9, Align::right) + "  " : "") + oneLine(event.place);
    if (event.alert) out += "  [" + oneLine(*event.alert, 20) + "]";
    out += "\n";
  }
  return session.environment.utf8 ? out : asciiFolded(out);
}

}  // namespace

int runQuakes(CommandLine const& line, Session const& session) {
  FeedOptions const& options = line.feeds;
  auto const clock = makeClock(line.common);
  RunContext context(line.common, session, *clock,
                     ownServices(line.common, WeatherProviderOption::automatic));
  std::optional<Coordinate> centre;
  if (options.isNear) {
    auto const place = context.place(options.place);
    if (!place) return session.fail(place.error().exitCode, place.error().sentence);
    centre = place->coordinate;
  }
  auto const reading = context.app().feeds().earthquakes().fetchEarthquakes(session.stop);
  if (session.stop.stop_requested()) return session.fail(exitCode::kInterrupted, "interrupted");
  if (reading.failure && reading.data.empty()) {
    return session.fail(exitCode::kUnavailable,
                        "the earthquakes could not be fetched: " + context.advised(reading.failure));
  }
  if (reading.failure) {
    session.console.err("nimbara: could not fetch a newer earthquake list: " +
                        oneLine(context.plain(*reading.failure)) + "; showing the last known one\n");
  }
  auto const events = chosen(reading.data, options, centre);
  session.console.out(options.json ? encodeJson(events) + "\n"
                                   : table(events, centre, session, context.texts()));
  return exitCode::kComplete;
}

}  // namespace nimbara
