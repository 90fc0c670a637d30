#include "analysis/tips/tip_generator.h"
#include "app/services/feed_services.h"
#include "app/services/forecasts/forecast_service.h"
#include "app/words/brief/tip_inputs.h"
#include "base/json/json.h"
#include "base/text/display_text.h"
#include "cli/cli.h"
#include "cli/run_context.h"
#include "cli/side_look.h"
#include "cli/slow_note.h"
#include "cli/terminal.h"
#include "feeds/air/air_quality_service.h"
#include "model/process.h"

namespace nimbara {

namespace {

/// How long a forecast that is there waits for the air.
constexpr std::chrono::seconds kAirPatience{4};

struct Wordings {
  Units const& units;
  Texts const& texts;
  Calendar calendar;
  Instant now;
};

void writeWindow(JsonWriter& json, TipWindow const& window, Activity activity, Wordings const& wording) {
  json.separate();
  json.beginObject();
  json.member("from", window.from);
  json.member("to", window.to);
  json.member("score", window.score);
  json.key("reasons");
  json.beginList();
  for (TipReason const& reason : window.reasons) {
    json.separate();
    json.value(reasonText(reason, activity, wording.units, wording.texts));
  }
  json.endList();
  json.endObject();
}

std::string jsonOf(std::vector<Tip> const& tips, Wordings const& wording) {
  JsonWriter json;
  json.beginList();
  for (Tip const& tip : tips) {
    json.separate();
    json.beginObject();
    json.member("activity", tip.activity);
    json.member("state", tip.state);
    json.key("windows");
    json.beginList();
    for (TipWindow const& window : tip.windows) writeWindow(json, window, tip.activity, wording);
    json.endList();
    json.memberOrNull("against", tip.against.transform([&](TipReason const& reason) {
      return reasonText(reason, tip.activity, wording.units, wording.texts);
    }));
    json.endObject();
  }
  json.endList();
  return json.take() + "\n";
}

std::string pageOf(std::vector<Tip> const& tips, Wordings const& wording, Style const& style, int width) {
  std::string page;
  for (Tip const& tip : tips) {
    std::string const name(wording.texts.text("advice.activity." + std::string(enumName(tip.activity))));
    page += style.painted(style.text(name), Colour::bold) + "\n";
    for (std::string const& line :
         tipLines(tip, wording.now, wording.units, wording.texts, wording.calendar)) {
      for (std::string const& row : wrapped(style.text(line), std::max(width - 2, 20)))
        page += "  " + row + "\n";
    }
  }
  return page;
}

}  // namespace

int runAdvice(CommandLine const& line, Session const& session) {
  auto const clock = makeClock(line.common);
  RunContext context(line.common, session, *clock,
                     ownServices(line.common, WeatherProviderOption::automatic));
  auto const place = context.place(line.feeds.place);
  if (!place) return session.fail(place.error().exitCode, place.error().sentence);
  SideLook<FeedReading<AirQualityForecast>> air(
      [&feed = context.app().feeds().airQuality(), at = place->coordinate](auto const& stop) {
        return feed.fetchForecast(at, stop);
      });
  auto const answer = [&] {
    SlowNote const note(session, "asking for the forecast …");
    return context.app().forecasts().get(*place, WeatherProviderOption::automatic, session.stop);
  }();
  if (session.stop.stop_requested()) return session.fail(exitCode::kInterrupted, "interrupted");
  if (!answer) return session.fail(exitCode::kUnavailable, context.sentenceOf(answer.error()));
  context.tell(context.note(*answer));
  Wordings const wording{context.wording().units, context.texts(),
                         calendarOf(answer->data, context.wording().fallback), clock->now()};
  auto const breathed = air.answer(kAirPatience, session.stop);
  std::vector<TipAir> known;
  if (breathed.isCurrent()) known = tipAir(breathed.data, place->coordinate);
  TipPreferences const preferences = tipPreferences(context.settings());
  std::vector<Tip> tips;
  for (std::size_t i = 0; i < enumNames<Activity>.size(); ++i) {
    if (!line.feeds.activity.empty() && line.feeds.activity != enumNames<Activity>[i]) continue;
    tips.push_back(TipGenerator{}.tip(static_cast<Activity>(i), answer->data, wording.now, preferences, known,
                                      wording.calendar));
  }
  session.console.out(line.feeds.json ? jsonOf(tips, wording)
                                      : pageOf(tips, wording, styleOf(session), widthOf(session)));
  return exitCode::kComplete;
}

}  // namespace nimbara
