#include "app/services/feed_services.h"
#include "app/services/forecasts/forecast_service.h"
#include "app/services/forecasts/side_by_side.h"
#include "app/words/country_text.h"
#include "app/words/coverage_text.h"
#include "base/json/json.h"
#include "base/text/text.h"
#include "base/words/list_text.h"
#include "cli/cli.h"
#include "cli/pages/warnings/area_map.h"
#include "cli/pages/warnings/warning_json.h"
#include "cli/pages/warnings/warning_page.h"
#include "cli/run_context.h"
#include "cli/slow_note.h"
#include "cli/stated_place.h"
#include "cli/terminal.h"
#include "feeds/alerts/gov_alert_service.h"
#include "feeds/alerts/routing/official_sources.h"
#include "feeds/alerts/routing/warning_route.h"
#include "gazetteer/gazetteer.h"

#include <algorithm>

namespace nimbara {

namespace {

/// One run: every source that was asked for, whatever becomes of the others.
class AlertsRun {
 public:
  AlertsRun(CommandLine const& line, Session const& session)
      : options_(line.alerts),
        distance_(line.common.units.distance),
        session_(session),
        clock_(makeClock(line.common)),
        context_(line.common, session, *clock_,
                 ownServicesWithin(kCommandLimit, line.common, line.forecast.provider)) {}

  int run() {
    auto const place = context_.place(options_.place);
    if (!place) return session_.fail(place.error().exitCode, place.error().sentence);
    place_ = *place;
    std::vector<std::function<void()>> asked{[this] { askOfficial(); }};
    if (options_.sources.contains(AlertSource::generated)) asked.emplace_back([this] { gatherGenerated(); });
    ask(asked);
    takeOfficial();
    if (session_.stop.stop_requested()) return session_.fail(exitCode::kInterrupted, "interrupted");
    sortMostSevereFirst(alerts_);
    session_.console.out(rendered());
    for (std::string const& sentence : missing_) context_.tell(sentence);
    return isIncomplete_ ? exitCode::kUnavailable : exitCode::kComplete;
  }

 private:
  void ask(std::vector<std::function<void()>> const& sources) const {
    SlowNote const note(session_, "asking the sources …");
    runAll(sources, Waiting::sideBySide);
  }

  void gatherGenerated() {
    auto answer = context_.app().forecasts().get(place_, WeatherProviderOption::automatic, session_.stop);
    if (!answer) {
      isIncomplete_ = true;
      return missing_.push_back(context_.sentenceOf(answer.error()));
    }
    context_.tell(context_.note(*answer));
    // A script reads what was generated, a person what says it more truly.
    auto alerts = options_.json ? answer->alerts : shownAlerts(answer->alerts, answer->superseded);
    generatedCount_ = alerts.size();
    std::ranges::move(alerts, std::back_inserter(alerts_));
  }

  void askOfficial() {
    std::vector<std::string> names;
    for (OfficialSource const& source : officialSources()) {
      auto const name = enumFromName<AlertSource>(source.name);
      if (name && options_.sources.contains(*name)) names.emplace_back(source.name);
    }
    if (names.empty()) return;
    officialPlace_ = statedPlace(place_.coordinate, options_.stated, context_.app().feeds().regions());
    official_ = context_.app().feeds().govAlerts().fetchAlerts(officialPlace_, names, session_.stop);
  }

  void takeOfficial() {
    if (!official_) return;
    GovAlerts& official = *official_;
    for (GovSourceState const& state : official.sources) {
      // What is kept of an earlier check, and shown, is not the answer.
      if (state.checkedAt && !state.failedSince) continue;
      // Where the states are asked for, a check that failed is part of the answer.
      isIncomplete_ = isIncomplete_ || !options_.coverage;
      missing_.push_back(
          "the warnings of " + warningServiceName(state.name) + " for " + placeName() +
          " could not be checked: " + (state.failure ? context_.plain(*state.failure) : std::string()));
    }
    coverage_ = coverageOf(official, officialPlace_.countryCode);
    isNotServed_ = official.sources.empty();
    std::ranges::move(official.alerts, std::back_inserter(alerts_));
    unplaced_ = std::move(official.unplaced);
  }

  WarningPageContext page() const {
    return {context_.texts(), style_, calendar_, clock_->now(), widthOf(session_), distance_};
  }

  std::string rendered() {
    if (options_.json) return json();
    calendar_ = Calendar::forZone(timeZoneAt(place_.coordinate)).value_or(calendar_);
    std::vector<WarningEntry> entries;
    entries.reserve(alerts_.size());
    for (WeatherAlert const& alert : alerts_) entries.push_back(entryOf(alert));
    std::string list = warningPage(entries, page());
    if (!unplaced_.empty()) list += (list.empty() ? "" : "\n") + unplacedList();
    std::string const checks = sources();
    std::string out = style_.painted(style_.text(heading()), Colour::bold) + "\n\n";
    if (list.empty()) return out + checks;
    return out + (isDoubtful() ? checks + "\n" + list : list + "\n" + checks);
  }

  std::string placeName() const {
    return place_.name.empty() ? formatCoordinate(place_.coordinate) : oneLine(place_.name);
  }

  std::string heading() const {
    std::string place = placeName();
    if (!place_.country.empty() && place_.country != place)
      appendClause(place, countryText(place_.coordinate, place_.country, context_.texts()), context_.texts());
    return context_.texts().format("alerts.heading", oneLine(place));
  }

  /// Those of which nobody can say whether they concern the place, the most severe first.
  std::string unplacedList() const {
    constexpr std::size_t kMostListed = 12;
    Texts const& texts = context_.texts();
    std::vector<WarningEntry> entries;
    for (WeatherAlert const& alert : unplaced_) {
      if (entries.size() < kMostListed)
        entries.push_back(unplacedEntry(alert, officialPlace_.countryCode, texts));
    }
    std::string out = style_.painted(style_.text(texts.text("alerts.unplaced")), Colour::bold) + "\n\n";
    out += warningPage(entries, page());
    std::size_t const left = unplaced_.size() - entries.size();
    return left == 0 ? out : out + "\n" + style_.text(texts.format("alerts.unplaced.more", left)) + "\n";
  }

  /// Those that nobody issued say that they are from the forecast.
  WarningEntry entryOf(WeatherAlert const& alert) {
    WarningEntry entry = warningEntry(alert);
    if (entry.source.empty()) entry.source = context_.texts().text("alerts.fromForecast");
    if (options_.map) {
      auto const outlines = context_.app().feeds().regions().outlines();
      Texts const& texts = context_.texts();
      entry.map =
          areaMap(alertOutlines(alert, outlines.get()), place_.coordinate, widthOf(session_) - 2, style_);
      entry.map += entry.map.empty() ? std::string(texts.text("desktop.warning.noMap")) + "\n"
                                     : areaMapLegend(placeName(), texts, style_);
    }
    return entry;
  }

  /// None of the sources that were named may be asked for the place; which one may.
  std::string notServedText() const {
    std::string named;
    for (OfficialSource const& source : officialSources()) {
      auto const name = enumFromName<AlertSource>(source.name);
      if (name && options_.sources.contains(*name)) appendItem(named, source.service, context_.texts());
    }
    auto const route = warningRoute(officialPlace_);
    return context_.texts().format("coverage.notServed", placeName(), named,
                                   warningServiceName(route.front()), route.front());
  }

  /// What each source that was asked has said.
  std::string sources() const {
    Texts const& texts = context_.texts();
    auto lines = coverageLines(coverage_, texts, calendar_, clock_->now(), ServiceNames::always);
    if (isNotServed_) lines = {notServedText()};
    if (options_.sources.contains(AlertSource::generated)) lines.push_back(generatedState());
    std::string out = style_.painted(style_.text(texts.text("alerts.sources")), Colour::bold) + "\n";
    for (std::string const& line : lines) {
      for (std::string const& part : wrapped(style_.text(line), widthOf(session_) - 2)) {
        out += "  " + style_.painted(part, Colour::dim) + "\n";
      }
    }
    return out;
  }

  std::string generatedState() const {
    Texts const& texts = context_.texts();
    if (!generatedCount_) return std::string(texts.text("alerts.forecast.failed"));
    return *generatedCount_ == 0 ? std::string(texts.text("alerts.forecast.none"))
                                 : texts.format("alerts.forecast", *generatedCount_);
  }

  std::string json() {
    auto const geometry = options_.geometry ? WarningGeometry::asGeoJson : WarningGeometry::left;
    auto const outlines = options_.geometry ? context_.app().feeds().regions().outlines() : nullptr;
    JsonWriter writer;
    if (!options_.coverage) {
      writeWarnings(writer, alerts_, geometry, outlines.get());
      return writer.take() + "\n";
    }
    writer.beginObject();
    writer.key("alerts");
    writeWarnings(writer, alerts_, geometry, outlines.get());
    writer.key("coverage");
    writeCoverage(writer, coverage_);
    // Not in the list, which is the place's own; a script must see a danger that may concern it.
    writer.key("unplaced");
    writeWarnings(writer, unplaced_, geometry, outlines.get());
    writer.endObject();
    return writer.take() + "\n";
  }

  /// Then the reader learns that first.
  bool isDoubtful() const {
    return !coverage_.empty() && mostPressing(coverage_).state == CoverageState::unchecked;
  }

  AlertsOptions const& options_;
  DistanceUnit distance_;
  Session const& session_;
  std::unique_ptr<Clock> clock_;
  RunContext context_;
  Style style_ = styleOf(session_);
  Calendar calendar_ = session_.environment.machineCalendar;
  Place place_;
  GovAlertPlace officialPlace_;
  std::optional<GovAlerts> official_;
  std::vector<WeatherAlert> alerts_;
  std::vector<WeatherAlert> unplaced_;         ///< in effect somewhere in the country
  std::vector<SourceCoverage> coverage_;       ///< of the official sources, where they were asked for
  bool isNotServed_ = false;                   ///< by any of them
  std::optional<std::size_t> generatedCount_;  ///< of alerts, where there is a forecast
  std::vector<std::string> missing_;           ///< sources that gave no answer now, a sentence each
  bool isIncomplete_ = false;                  ///< for want of one of them
};

}  // namespace

int runAlerts(CommandLine const& line, Session const& session) {
  return AlertsRun(line, session).run();
}

}  // namespace nimbara
