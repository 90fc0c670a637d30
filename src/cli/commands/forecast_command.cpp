#include "app/services/feed_services.h"
#include "app/services/forecasts/forecast_service.h"
#include "app/services/forecasts/outlook_days.h"
#include "app/services/forecasts/second_forecast.h"
#include "app/words/confidence_text.h"
#include "app/words/coverage_text.h"
#include "app/words/nowcast_text.h"
#include "app/words/outlook_text.h"
#include "base/json/json.h"
#include "cli/cli.h"
#include "cli/nowcast_look.h"
#include "cli/official_look.h"
#include "cli/pages/forecast/confidence_json.h"
#include "cli/pages/forecast/forecast_report.h"
#include "cli/pages/forecast/nowcast_json.h"
#include "cli/pages/station_page.h"
#include "cli/pages/warnings/warning_json.h"
#include "cli/run_context.h"
#include "cli/slow_note.h"
#include "cli/terminal.h"
#include "feeds/alerts/gov_alert_service.h"
#include "model/process.h"

#include <algorithm>

namespace nimbara {

namespace {

/// How long a forecast that is there waits for the official warnings.
constexpr std::chrono::seconds kPatience{8};
/// And after these for the nowcast, which was asked for at the same time.
constexpr std::chrono::seconds kNowcastPatience{2};

bool isOffline(std::optional<APIError> const& error) {
  using Kind = HttpError::Kind;
  return error && (error->transport == Kind::unresolvedHost || error->transport == Kind::connectionFailed ||
                   error->transport == Kind::timedOut);
}

/// What of a place is known beside its forecast.
struct Beside {
  OfficialLook::Answer official;
  NowcastReading nowcast;
  NowcastText nowcastText;
  StationShown station;
  std::optional<FeedReading<std::vector<OutlookDay>>> outlook;  ///< where that was asked for
  std::optional<SecondForecast> second;                         ///< likewise
};

void writeOutlook(JsonWriter& json, FeedReading<std::vector<OutlookDay>> const& reading, Date last) {
  json.beginObject();
  json.member("state", reading.state);
  json.memberOrNull("checkedAt", reading.checkedAt);
  json.memberOrNull("reason", reading.failure ? std::optional(sentenceOf(*reading.failure)) : std::nullopt);
  json.key("days");
  json.beginList();
  for (OutlookDay const& day : reading.data) {
    if (day.date <= last) continue;
    json.separate();
    json.beginObject();
    json.member("date", formatDate(day.date));
    json.member("minTempC", day.lowestC);
    json.member("maxTempC", day.highestC);
    json.memberOrNull("weatherCode", day.weatherCode);
    json.memberOrNull("precipitationChance", day.chance);
    json.memberOrNull("precipMM", day.precipMM);
    json.memberOrNull("windSpeedKmph", day.windKmph);
    json.endObject();
  }
  json.endList();
  json.endObject();
}

std::vector<DayConfidence> daysOf(WeatherData const& data, SecondForecast const& second,
                                  Calendar const& calendar, Instant now) {
  return confidenceDays(data, second.data ? &*second.data : nullptr, now, calendar);
}

/// The records, each with the kind of event that says it more truly, where one does.
void writeAlerts(JsonWriter& json, ForecastAnswer const& answer) {
  json.key("alerts");
  json.beginList();
  for (WeatherAlert const& alert : answer.alerts) {
    json.separate();
    json.beginObject();
    jsonFields<WeatherAlert>.apply(
        [&](auto const&... fields) { (json.member(fields.key, alert.*(fields.member)), ...); });
    auto const truer = std::ranges::find(answer.superseded, alert.id, &SupersededAlert::alert);
    if (truer != answer.superseded.end()) json.member("supersededBy", truer->by);
    json.endObject();
  }
  json.endList();
}

std::string json(ForecastAnswer const& answer, Beside const& beside, Calendar const& calendar, Instant now) {
  JsonWriter writer;
  writer.beginObject();
  writer.memberOrNull("provider", answer.provider);
  writer.member("fromCache", answer.fromCache);
  writer.member("stale", answer.stale);
  writer.member("data", answer.data);
  writeAlerts(writer, answer);
  writer.key("officialWarnings");
  writeWarnings(writer, beside.official.alerts);
  writer.key("coverage");
  writeCoverage(writer, beside.official.coverage);
  writer.key("nowcast");
  bool const isFailed = beside.nowcast.state == NowcastReading::State::failed;
  writeNowcast(writer, beside.nowcast, isFailed ? std::nullopt : std::optional(beside.nowcastText.sentence));
  if (beside.outlook && !answer.data.daily.empty()) {
    writer.key("outlook");
    writeOutlook(writer, *beside.outlook, calendar.day(answer.data.daily.back().date));
  }
  if (beside.second) {
    writer.key("confidence");
    writeConfidence(writer, *beside.second, daysOf(answer.data, *beside.second, calendar, now));
  }
  bool const isLinked = beside.station.reading.kind != StationLinkKind::none;
  if (isLinked) {
    writer.key("sources");
    writeSources(writer, beside.station, now);
  }
  writer.endObject();
  return writer.take() + "\n";
}

/// One forecast, from the services or, where that was asked for, from the demo.
class ForecastRun {
 public:
  ForecastRun(CommandLine const& line, Session const& session)
      : options_(line.forecast), common_(line.common), session_(session), clock_(makeClock(line.common)) {}

  int run() {
    auto done = ask(ownServices(common_, options_.provider));
    bool const wantsDemo = !done && options_.demoIfOffline && common_.services.empty();
    if (wantsDemo && isOffline(done.error().cause)) done = askDemo(done.error());
    if (session_.stop.stop_requested()) return session_.fail(exitCode::kInterrupted, "interrupted");
    if (!done) return session_.fail(done.error().exitCode, done.error().sentence);
    return exitCode::kComplete;
  }

 private:
  /// Asks and prints.
  Result<void, Failure> ask(RunContext::Departure const& departure) {
    if (common_.verbose) {
      session_.console.err("nimbara: asking " +
                           (departure.servicesBase.empty() ? "the services" : departure.servicesBase) + "\n");
    }
    RunContext context(common_, session_, *clock_, departure);
    auto const place = context.place(options_.place);
    if (!place) return std::unexpected(place.error());
    std::optional<OfficialLook> look;
    std::optional<NowcastLook> nowcast;
    if (!options_.raw) {
      look.emplace(context.app().feeds().govAlerts(), *clock_, govAlertPlace(place->coordinate));
      nowcast.emplace(context.app().feeds().nowcast(), place->coordinate);
    }
    auto answer = forecast(context, *place);
    if (!answer) {
      return std::unexpected(
          Failure{exitCode::kUnavailable, context.sentenceOf(answer.error()), answer.error()});
    }
    context.tell(context.note(*answer));
    Beside beside;
    if (!options_.raw) {
      auto reading = context.app().feeds().stations().read(StationNeed::shown, session_.stop);
      beside.station = overlaid(answer->data, std::move(reading), clock_->now());
    }
    if (options_.outlook && !options_.raw)
      beside.outlook = context.app().feeds().outlook().fetch(place->coordinate, session_.stop);
    if (options_.confidence && !options_.raw) beside.second = second(context, *place, *answer);
    if (look) beside.official = look->answer(kPatience, session_.stop);
    if (nowcast) adopt(beside, nowcast->answer(kNowcastPatience, session_.stop), answer->data, context);
    session_.console.out(rendered(*answer, beside, context));
    return {};
  }

  /// The temperatures of the forecast say whether it rains or snows where a radar does not.
  void adopt(Beside& beside, NowcastReading reading, WeatherData const& data,
             RunContext const& context) const {
    reading = withFall(std::move(reading), data.allHourly);
    TimeWords const words(context.texts(), calendarOf(data, session_.environment.machineCalendar));
    beside.nowcastText = nowcastText(reading, clock_->now(), context.texts(), words);
    beside.nowcast = std::move(reading);
  }

  Result<ForecastAnswer, APIError> forecast(RunContext& context, Place const& place) const {
    ForecastService& service = context.app().forecasts();
    SlowNote const note(session_, "asking for the forecast …");
    // The cache does not keep the provider's answer as it was.
    bool const asksAnew = options_.noCache || options_.raw;
    return asksAnew ? service.fetch(place, session_.stop)
                    : service.get(place, options_.provider, session_.stop);
  }

  /// A forecast of which nobody knows whose it is may be anybody's.
  SecondForecast second(RunContext& context, Place const& place, ForecastAnswer const& answer) const {
    if (!answer.provider) return {};
    return context.app().secondForecasts().fetch(place, *answer.provider, session_.stop);
  }

  Result<void, Failure> askDemo(Failure const& offline) {
    auto const demo = DemoProcess::start(session_.environment.program, common_.now, {});
    if (!demo) return std::unexpected(offline);
    session_.console.err("nimbara: could not reach the weather services (" + offline.cause->detail +
                         "); showing generated demo weather, not a forecast\n");
    return ask({demo->baseUrl(), true, options_.provider, {}, {}});
  }

  /// Nothing of a station that stands elsewhere.
  std::vector<std::string> stationLines(StationShown const& shown, RunContext const& context) const {
    std::vector<std::string> lines;
    std::string live = liveText(shown, common_.units, context.texts(), clock_->now());
    if (!live.empty()) lines.push_back(std::move(live));
    for (DoubtedValue const& doubted : shown.doubts)
      lines.push_back(doubtText(doubted, common_.units, context.texts(), clock_->now()));
    return lines;
  }

  std::string rendered(ForecastAnswer const& answer, Beside const& beside, RunContext const& context) const {
    if (options_.raw) return encodeJson(*answer.response) + "\n";
    Calendar const calendar = calendarOf(answer.data, session_.environment.machineCalendar);
    if (options_.json) return json(answer, beside, calendar, clock_->now());
    ReportOptions report;
    report.width = options_.width > 0 ? options_.width : widthOf(session_);
    report.style = styleOf(session_, options_.ascii);
    report.units = common_.units;
    report.now = clock_->now();
    report.standIn = context.servicesBase();
    report.warnings = beside.official.alerts;
    report.coverage = coverageLines(beside.official.coverage, context.texts(), calendar, clock_->now());
    if (beside.outlook) {
      report.outlook = outlookDays(beside.outlook->data, answer.data, calendar);
      report.outlookNote = outlookNote(*beside.outlook, !report.outlook.empty(), context.texts());
    }
    if (beside.second) {
      HazardWords const words{context.texts(), common_.units, calendar, clock_->now()};
      auto const text = confidenceText(daysOf(answer.data, *beside.second, calendar, clock_->now()),
                                       beside.second->provider, words);
      report.confidence = text.days;
      report.confidence.push_back(text.days.empty() ? text.line : text.note);
    }
    report.station = stationLines(beside.station, context);
    if (beside.nowcast.state != NowcastReading::State::none) report.nowcast = beside.nowcastText.line();
    report.isCoverageDoubtful = mostPressing(beside.official.coverage).state == CoverageState::unchecked;
    return forecastReport(answer, report, context.texts(), calendar);
  }

  ForecastOptions const& options_;
  CommonOptions const& common_;
  Session const& session_;
  std::unique_ptr<Clock> clock_;
};

}  // namespace

int runForecast(CommandLine const& line, Session const& session) {
  return ForecastRun(line, session).run();
}

}  // namespace nimbara
