#include "app/services/feed_services.h"
#include "base/json/json.h"
#include "base/text/text.h"
#include "cli/cli.h"
#include "cli/commands/feed_commands.h"
#include "cli/pages/warnings/warning_page.h"
#include "cli/run_context.h"
#include "cli/terminal.h"
#include "feeds/nws/nws_alert_service.h"
#include "feeds/nws/nws_territory.h"
#include "gazetteer/gazetteer.h"

namespace nimbara {

namespace {

struct NwsReport {
  bool ok = false;
  std::vector<NWSAlert> alerts;
};

std::vector<NWSAlert> viewed(std::string const& view, std::vector<NWSAlert> alerts) {
  if (view == "convective") return convectiveAlerts(std::move(alerts));
  if (view == "flood") return floodAlerts(std::move(alerts));
  return alerts;
}

bool isAsked(FeedOptions const& options, Coordinate place) {
  std::string const country =
      options.country.empty() ? std::string(describePlace(place).countryCode) : asciiUppered(options.country);
  return isNwsTerritory(country, place);
}

std::string pageOf(NwsReport const& report, Place const& place, RunContext const& context,
                   Session const& session) {
  if (report.alerts.empty()) return std::string(context.texts().text("report.noAlerts")) + "\n";
  Style const style = styleOf(session);
  Calendar const calendar =
      Calendar::forZone(timeZoneAt(place.coordinate)).value_or(session.environment.machineCalendar);
  std::vector<WarningEntry> entries;
  entries.reserve(report.alerts.size());
  for (NWSAlert const& alert : report.alerts) entries.push_back(warningEntry(alert));
  return warningPage(entries, {context.texts(), style, calendar, context.clock().now(), widthOf(session)});
}

std::string jsonOf(NwsReport const& report) {
  JsonWriter json;
  json.beginObject();
  json.member("ok", report.ok);
  json.member("alerts", report.alerts);
  json.endObject();
  return json.take() + "\n";
}

}  // namespace

int runNws(CommandLine const& line, Session const& session) {
  FeedOptions const& options = line.feeds;
  auto const clock = makeClock(line.common);
  RunContext context(line.common, session, *clock,
                     ownServices(line.common, WeatherProviderOption::automatic));
  auto const place = context.place(options.place);
  if (!place) return session.fail(place.error().exitCode, place.error().sentence);
  if (!isAsked(options, place->coordinate)) {
    if (options.json) session.console.out(jsonOf({}));
    return session.fail(exitCode::kUnavailable, "the U.S. National Weather Service issues no warnings for " +
                                                    formatCoordinate(place->coordinate));
  }
  auto answer = context.app().feeds().nws().fetchAlerts(place->coordinate.latitude,
                                                        place->coordinate.longitude, session.stop);
  if (session.stop.stop_requested()) return session.fail(exitCode::kInterrupted, "interrupted");
  NwsReport const report{answer.ok, viewed(options.view, std::move(answer.alerts))};
  if (options.json) session.console.out(jsonOf(report));
  if (!answer.ok) {
    return session.fail(exitCode::kUnavailable, "the National Weather Service could not be checked: " +
                                                    context.advised(answer.failure));
  }
  if (!options.json) session.console.out(pageOf(report, *place, context, session));
  return exitCode::kComplete;
}

}  // namespace nimbara
