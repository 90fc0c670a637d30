#include "analysis/brief/weather_brief.h"
#include "analysis/precip_kind.h"
#include "analysis/precip_predictor.h"
#include "app/services/feed_services.h"
#include "app/services/forecasts/forecast_service.h"
#include "app/words/brief/spoken_text.h"
#include "app/words/brief/worded_brief.h"
#include "app/words/hazards/climate_text.h"
#include "base/json/json.h"
#include "base/text/display_text.h"
#include "cli/cli.h"
#include "cli/nowcast_look.h"
#include "cli/official_look.h"
#include "cli/run_context.h"
#include "cli/side_look.h"
#include "cli/slow_note.h"
#include "cli/terminal.h"
#include "feeds/alerts/coverage.h"
#include "feeds/alerts/gov_alert_service.h"
#include "feeds/climate/climate_service.h"
#include "platform/linux/speech_output.h"

namespace nimbara {

namespace {

/// How long a forecast that is there waits for what is asked beside it.
constexpr std::chrono::seconds kPatience{4};
constexpr std::chrono::seconds kNowcastPatience{2};
/// The first time, thirty years are fetched.
constexpr std::chrono::seconds kClimatePatience{6};

/// `worded` is the user's language model's; absent where none was asked or its text was not fit.
std::string jsonOf(Brief const& brief, std::optional<std::string> const& worded,
                   std::vector<SourceCoverage> const& coverage) {
  JsonWriter json;
  json.beginObject();
  for (BriefPart const part : {BriefPart::now, BriefPart::today, BriefPart::tonight, BriefPart::tomorrow})
    json.member(enumName(part), brief[part]);
  if (worded) json.member("worded", *worded);
  json.key("coverage");
  writeCoverage(json, coverage);
  json.endObject();
  return json.take() + "\n";
}

/// A name in bold and its sentences beside it, in as many lines as they need.
std::string pageOf(Brief const& brief, Texts const& texts, Style const& style, int width) {
  int label = 0;
  auto const nameOf = [&](BriefPart part) {
    return std::string(texts.text("brief.part." + std::string(enumName(part))));
  };
  for (BriefPart const part : brief.order) label = std::max(label, displayWidth(nameOf(part)) + 2);
  std::string page;
  for (BriefPart const part : brief.order) {
    std::string name = nameOf(part);
    for (std::string const& row : wrapped(style.text(brief[part]), std::max(width - label, 20))) {
      page += style.painted(style.cell(name, label), Colour::bold) + row + "\n";
      name.clear();
    }
  }
  return page;
}

std::string paragraphOf(std::string const& text, Style const& style, int width) {
  std::string page;
  for (std::string const& row : wrapped(style.text(text), std::max(width, 20))) page += row + "\n";
  return page;
}

/// Of the language model, where the user wants its words.
std::optional<std::string> wordsOf(RunContext& context, Brief const& brief, std::stop_token const& stop) {
  LanguageModel* const model = context.app().languageModel();
  if (model == nullptr || !context.settings().boolean("appleIntelligence")) return std::nullopt;
  return wordedBrief(briefText(brief, context.texts()), context.texts(), *model, stop);
}

std::optional<PrecipOutlook> outlookOf(NowcastReading reading, WeatherData const& data, Instant now) {
  if (reading.state != NowcastReading::State::current) return std::nullopt;
  nameFall(reading.nowcast, data.allHourly);
  return PrecipPredictor(std::move(reading.nowcast)).outlook(now);
}

/// Says of which sources nobody knows whether they warn; a brief without a warning would deny one.
bool tellUnchecked(RunContext& context, std::vector<SourceCoverage> const& coverage) {
  bool isAny = false;
  for (SourceCoverage const& source : coverage) {
    if (source.state != CoverageState::unchecked) continue;
    isAny = true;
    context.tell("the warnings of " + source.service.value_or("the official services") +
                 " could not be checked" +
                 (source.reason ? ": " + context.plain(*source.reason) : std::string()));
  }
  return isAny;
}

}  // namespace

int runBrief(CommandLine const& line, Session const& session) {
  auto const clock = makeClock(line.common);
  RunContext context(line.common, session, *clock,
                     ownServices(line.common, WeatherProviderOption::automatic));
  auto const place = context.place(line.feeds.place);
  if (!place) return session.fail(place.error().exitCode, place.error().sentence);
  OfficialLook look(context.app().feeds().govAlerts(), *clock, govAlertPlace(place->coordinate));
  NowcastLook nowcast(context.app().feeds().nowcast(), place->coordinate);
  Instant const now = clock->now();
  SideLook<FeedReading<ClimateOutlook>> climate(
      [&feed = context.app().feeds().climate(), at = place->coordinate,
       today = dayAt(context.calendar(), now)](auto const& stop) { return feed.fetch(at, today, stop); });
  auto const answer = [&] {
    SlowNote const note(session, "asking for the forecast …");
    return context.app().forecasts().get(*place, WeatherProviderOption::automatic, session.stop);
  }();
  if (session.stop.stop_requested()) return session.fail(exitCode::kInterrupted, "interrupted");
  if (!answer) return session.fail(exitCode::kUnavailable, context.sentenceOf(answer.error()));
  context.tell(context.note(*answer));
  auto const official = look.answer(kPatience, session.stop);
  BriefBeside beside{official.alerts, answer->alerts, {}, {}};
  beside.nowcast = outlookOf(nowcast.answer(kNowcastPatience, session.stop), answer->data, now);
  HazardWords const words{context.texts(), context.wording().units, context.calendar(), now};
  beside.climate = climateText(climate.answer(kClimatePatience, session.stop).data, words).sentence;
  Brief const brief = weatherBrief(answer->data, beside, now, context.wording().units, context.texts(),
                                   context.wording().fallback);
  if (brief.order.empty())
    return session.fail(exitCode::kUnavailable, "the forecast does not reach as far as the present");
  auto const worded = wordsOf(context, brief, session.stop);
  Style const style = styleOf(session);
  int const width = widthOf(session);
  session.console.out(line.feeds.json ? jsonOf(brief, worded, official.coverage)
                      : worded        ? paragraphOf(*worded, style, width)
                                      : pageOf(brief, context.texts(), style, width));
  // Whoever reads JSON finds the state there.
  bool const isIncomplete = tellUnchecked(context, official.coverage) && !line.feeds.json;
  int const code = isIncomplete ? exitCode::kUnavailable : exitCode::kComplete;
  if (!line.feeds.speak) return code;
  std::string const said = worded ? *worded : briefText(brief, context.texts());
  SpeechOutput speech(session.environment.program);
  auto const spoken = speech.say(spokenText(said, context.wording().units, context.texts()),
                                 context.texts().language(), SpeechUrgency::usual);
  // What was asked for is there to be read.
  if (!spoken) context.tell("the brief could not be read out: " + spoken.error());
  return code;
}

}  // namespace nimbara
