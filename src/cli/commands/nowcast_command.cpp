#include "app/services/feed_services.h"
#include "app/services/forecasts/forecast_service.h"
#include "app/words/nowcast_text.h"
#include "base/json/json.h"
#include "cli/cli.h"
#include "cli/pages/forecast/nowcast_json.h"
#include "cli/run_context.h"
#include "cli/terminal.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>

namespace nimbara {

namespace {

using State = NowcastReading::State;

std::string jsonOf(NowcastReading const& reading, std::optional<std::string> const& sentence) {
  JsonWriter json;
  writeNowcast(json, reading, sentence);
  return json.take() + "\n";
}

std::string missLine(RunContext const& context, NowcastMiss const& miss) {
  std::string const reason = miss.isRadarDown ? sentenceOf(miss) : context.plain(miss.failure);
  return "the nowcast of " + std::string(properNameOf(miss.source)) + " could not be checked: " + reason;
}

}  // namespace

int runNowcast(CommandLine const& line, Session const& session) {
  auto const clock = makeClock(line.common);
  RunContext context(line.common, session, *clock,
                     ownServicesWithin(kCommandLimit, line.common, WeatherProviderOption::automatic));
  auto const place = context.place(line.feeds.place);
  if (!place) return session.fail(place.error().exitCode, place.error().sentence);
  NowcastReading reading = context.app().feeds().nowcast().fetch(place->coordinate, session.stop);
  if (auto const kept = context.app().forecasts().cached(*place))
    reading = withFall(std::move(reading), kept->data.allHourly);
  if (session.stop.stop_requested()) return session.fail(exitCode::kInterrupted, "interrupted");
  Texts const& texts = context.texts();
  Calendar const calendar =
      Calendar::forZone(timeZoneAt(place->coordinate)).value_or(session.environment.machineCalendar);
  Instant const now = clock->now();
  NowcastText const text = nowcastText(reading, now, texts, TimeWords(texts, calendar));
  std::optional<std::string> sentence;
  if (reading.state != State::failed) sentence = text.sentence;
  if (line.feeds.json) session.console.out(jsonOf(reading, sentence));
  if (reading.state == State::failed) {
    NowcastMiss const& first = reading.misses.front();
    for (auto miss = reading.misses.begin() + 1; miss != reading.misses.end(); ++miss)
      context.tell(missLine(context, *miss));
    return session.fail(exitCode::kUnavailable, missLine(context, first));
  }
  for (NowcastMiss const& miss : reading.misses) context.tell(missLine(context, miss));
  if (line.feeds.json) return exitCode::kComplete;
  Style const style = styleOf(session);
  std::string page = style.painted(style.text(*sentence), Colour::bold) + "\n";
  if (!text.source.empty()) page += style.painted(style.text(text.source), Colour::dim) + "\n";
  session.console.out(page);
  return exitCode::kComplete;
}

}  // namespace nimbara
