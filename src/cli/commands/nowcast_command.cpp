#include "analysis/precip_predictor.h"
#include "app/services/feed_services.h"
#include "base/json/json.h"
#include "cli/cli.h"
#include "cli/run_context.h"
#include "cli/terminal.h"
#include "feeds/nowcast/nowcast_service.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>

namespace nimbara {

namespace {

using State = NowcastReading::State;

/// A source that could not be checked is named with its kind, so that this differs from nobody having any.
void writeSource(JsonWriter& json, NowcastReading const& reading) {
  bool const isFailed = reading.state == State::failed;
  std::optional<std::string_view> source;
  if (reading.state == State::current) source = reading.nowcast.source;
  if (isFailed) source = enumName(reading.misses.front().source);
  json.memberOrNull("source", source);
  json.member("kind", isFailed ? kindOf(reading.misses.front().source) : reading.nowcast.kind);
}

void writeSteps(JsonWriter& json, std::vector<NowcastStep> const& steps) {
  json.key("steps");
  json.beginList();
  for (NowcastStep const& step : steps) {
    json.separate();
    json.beginObject();
    json.member("from", step.from);
    json.member("to", step.to);
    json.memberOrNull("mmPerHour", step.mmPerHour);
    if (isWet(step) && step.fall != Fall::unknown) json.member("fall", step.fall);
    json.endObject();
  }
  json.endList();
}

void writeMisses(JsonWriter& json, std::vector<NowcastMiss> const& misses) {
  json.key("unchecked");
  json.beginList();
  for (NowcastMiss const& miss : misses) {
    json.separate();
    json.beginObject();
    json.member("source", enumName(miss.source));
    json.member("reason", sentenceOf(miss));
    json.endObject();
  }
  json.endList();
}

std::string jsonOf(NowcastReading const& reading, std::optional<std::string> const& sentence) {
  JsonWriter json;
  json.beginObject();
  writeSource(json, reading);
  json.memberOrNull("issued", reading.nowcast.issued);
  writeSteps(json, reading.nowcast.steps);
  json.memberOrNull("sentence", sentence);
  json.member("state", reading.state);
  json.memberOrNull("checkedAt", reading.checkedAt);
  writeMisses(json, reading.misses);
  json.endObject();
  return json.take() + "\n";
}

/// "MET Norway, radar, 5 min ago".
std::string sourceLine(NowcastReading const& reading, Instant now, Texts const& texts) {
  auto const source = enumFromName<NowcastSource>(reading.nowcast.source);
  if (reading.state != State::current || !source) return {};
  std::string const age = ageText(reading.nowcast.issued.value_or(*reading.checkedAt), now, texts);
  return texts.format("nowcast.source." + std::string(enumName(reading.nowcast.kind)), properNameOf(*source),
                      age);
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
  NowcastReading const reading = context.app().feeds().nowcast().fetch(place->coordinate, session.stop);
  if (session.stop.stop_requested()) return session.fail(exitCode::kInterrupted, "interrupted");
  Texts const& texts = context.texts();
  Calendar const calendar =
      Calendar::forZone(timeZoneAt(place->coordinate)).value_or(session.environment.machineCalendar);
  Instant const now = clock->now();
  std::optional<std::string> sentence;
  if (reading.state != State::failed) {
    sentence = sentenceOf(PrecipPredictor(reading.nowcast).outlook(now), texts, TimeWords(texts, calendar));
  }
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
  std::string const source = sourceLine(reading, now, texts);
  if (!source.empty()) page += style.painted(style.text(source), Colour::dim) + "\n";
  session.console.out(page);
  return exitCode::kComplete;
}

}  // namespace nimbara
