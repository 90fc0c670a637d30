#include "app/services/feed_services.h"
#include "app/services/forecasts/forecast_service.h"
#include "base/json/json.h"
#include "base/text/clean_text.h"
#include "base/text/display_text.h"
#include "cli/cli.h"
#include "cli/nowcast_look.h"
#include "cli/pages/forecast/line_text.h"
#include "cli/run_context.h"
#include "feeds/alerts/gov_alert_service.h"
#include "feeds/stations/station_shown.h"
#include "model/present.h"
#include "model/process.h"

namespace nimbara {

namespace {

/// The forecast of a status bar: what the cache holds, and only on request more.
class LineRun {
 public:
  LineRun(CommandLine const& line, Session const& session, bool isMarkup)
      : options_(line.line),
        isMarkup_(isMarkup),
        session_(session),
        clock_(makeClock(line.common)),
        context_(line.common, session, *clock_, ownServices(line.common, line.forecast.provider)) {}

  Result<ForecastAnswer, Failure> answer() {
    auto const place = context_.place(options_.place);
    if (!place) return std::unexpected(place.error());
    GovAlertPlace const asked = govAlertPlace(place->coordinate);
    GovAlerts official = context_.app().feeds().govAlerts().keptAlerts(asked);
    official_.coverage = agedCoverage(coverageOf(official, asked.countryCode), clock_->now());
    official_.alerts = std::move(official.alerts);
    ForecastService& service = context_.app().forecasts();
    if (isMarkup_ || namesNowcast(options_.format)) lookAtNowcast(*place);
    if (!options_.fresh) {
      auto kept = service.cached(*place);
      if (kept) return withStation(std::move(*kept), StationNeed::kept);
      return std::unexpected(Failure{
          exitCode::kUnavailable,
          "no forecast is cached for this place yet; run nimbara forecast or nimbara watch, or add --fresh",
          {}});
    }
    auto fetched = service.get(*place, WeatherProviderOption::automatic, session_.stop);
    if (fetched) return withStation(std::move(*fetched), StationNeed::shown);
    return std::unexpected(
        Failure{exitCode::kUnavailable, context_.sentenceOf(fetched.error()), fetched.error()});
  }

  /// The filled template, or why it cannot be filled.
  Result<std::string, Failure> text(ForecastAnswer const& answer) {
    auto filled = filledLine(options_.format.empty() ? kLineTemplate : options_.format, lineContext(answer));
    if (!filled) return std::unexpected(Failure{exitCode::kUsage, filled.error(), {}});
    return session_.environment.utf8 ? std::move(*filled) : asciiFolded(*filled);
  }

  LineContext lineContext(ForecastAnswer const& answer) {
    return {answer,        official_, context_.texts(),         context_.wording().units,
            clock_->now(), isMarkup_, nowcastText(answer.data), station_.station()};
  }

 private:
  ForecastAnswer withStation(ForecastAnswer answer, StationNeed need) {
    station_ = context_.app().feeds().stations().read(need, session_.stop);
    overlaid(answer.data, station_, clock_->now());
    return answer;
  }

  /// A bar is drawn from what is kept; only with --fresh is anybody asked, while the forecast is.
  void lookAtNowcast(Place const& place) {
    NowcastService& service = context_.app().feeds().nowcast();
    if (options_.fresh) {
      look_.emplace(service, place.coordinate);
    } else {
      nowcast_ = service.kept(place.coordinate);
    }
  }

  std::optional<NowcastText> nowcastText(WeatherData const& data) {
    constexpr std::chrono::seconds kPatience{2};
    if (look_) nowcast_ = look_->answer(kPatience, session_.stop);
    look_.reset();
    if (!nowcast_) return std::nullopt;
    if (nowcast_->state == NowcastReading::State::none) return NowcastText{};
    NowcastReading const named = withFall(*nowcast_, data.allHourly);
    TimeWords const words(context_.texts(), calendarOf(data, Calendar::utc()));
    return nimbara::nowcastText(named, clock_->now(), context_.texts(), words);
  }

  LineOptions const& options_;
  bool isMarkup_;
  Session const& session_;
  std::unique_ptr<Clock> clock_;
  RunContext context_;
  KeptWarnings official_;
  std::optional<NowcastReading> nowcast_;
  StationsReading station_;
  std::optional<NowcastLook> look_;
};

std::string fieldHelp() {
  std::string out;
  for (LineField const& field : lineFields()) {
    out += fitted("{" + std::string(field.name) + "}", 22) + " " + std::string(field.explanation) + "\n";
  }
  return out + "\nDefault format: " + std::string(kLineTemplate) + "\n";
}

std::string barJson(std::string_view text, std::string_view tooltip, std::string_view cssClass,
                    std::string_view alt) {
  JsonWriter writer;
  writer.beginObject();
  writer.member("text", text);
  writer.member("tooltip", tooltip);
  writer.member("class", cssClass);
  writer.member("alt", alt);
  writer.endObject();
  return writer.take() + "\n";
}

/// The most severe alert or warning, else whether warnings could not be checked or the forecast is old.
std::string_view classOf(LineContext const& context) {
  std::vector<WeatherAlert> all = context.official.alerts;
  all.insert(all.end(), context.answer.alerts.begin(), context.answer.alerts.end());
  sortMostSevereFirst(all);
  if (!all.empty()) return enumName(all.front().severity);
  if (context.answer.stale) return "stale";
  return mostPressing(context.official.coverage).state == CoverageState::unchecked ? "unchecked" : "fresh";
}

std::string_view altOf(LineContext const& context) {
  auto const present = presentAt(context.answer.data, context.now);
  return enumName(present ? present->condition : WeatherConditionCode::unknown);
}

}  // namespace

int runLine(CommandLine const& line, Session const& session) {
  if (line.line.helpFormat) {
    session.console.out(fieldHelp());
    return exitCode::kComplete;
  }
  LineRun run(line, session, false);
  auto const answer = run.answer();
  if (!answer) return session.fail(answer.error().exitCode, answer.error().sentence);
  auto const text = run.text(*answer);
  if (!text) return session.fail(text.error().exitCode, text.error().sentence);
  session.console.out(*text + "\n");
  return exitCode::kComplete;
}

int runWaybar(CommandLine const& line, Session const& session) {
  LineRun run(line, session, true);  // bars read markup
  auto const answer = run.answer();
  if (!answer) {
    // A bar shows what it is given even when there is nothing to show.
    if (answer.error().exitCode != exitCode::kUsage) {
      session.console.out(barJson("", markupEscaped(answer.error().sentence), "unavailable", "unavailable"));
    }
    return session.fail(answer.error().exitCode, answer.error().sentence);
  }
  auto const text = run.text(*answer);
  if (!text) return session.fail(text.error().exitCode, text.error().sentence);
  LineContext const context = run.lineContext(*answer);
  session.console.out(barJson(*text, tooltip(context), classOf(context), altOf(context)));
  return exitCode::kComplete;
}

}  // namespace nimbara
