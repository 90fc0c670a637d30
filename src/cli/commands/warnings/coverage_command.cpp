#include "app/services/feed_services.h"
#include "base/json/json.h"
#include "cli/cli.h"
#include "cli/pages/warnings/warning_page.h"
#include "cli/run_context.h"
#include "cli/stated_place.h"
#include "cli/terminal.h"
#include "feeds/alerts/gov_alert_service.h"
#include "gazetteer/gazetteer.h"

namespace nimbara {

int runCoverage(CommandLine const& line, Session const& session) {
  auto const clock = makeClock(line.common);
  RunContext context(line.common, session, *clock,
                     ownServicesWithin(kCommandLimit, line.common, line.forecast.provider));
  auto const place = context.place(line.alerts.place);
  if (!place) return session.fail(place.error().exitCode, place.error().sentence);
  FeedServices& feeds = context.app().feeds();
  GovAlertPlace const asked = statedPlace(place->coordinate, line.alerts.stated, feeds.regions());
  GovAlerts const alerts = feeds.govAlerts().fetchAlerts(asked, {}, session.stop);
  if (session.stop.stop_requested()) return session.fail(exitCode::kInterrupted, "interrupted");
  auto const coverage = coverageOf(alerts, asked.countryCode);
  if (line.alerts.json) {
    JsonWriter json;
    writeCoverage(json, coverage);
    session.console.out(json.take() + "\n");
    return exitCode::kComplete;
  }
  Calendar const calendar =
      Calendar::forZone(timeZoneAt(place->coordinate)).value_or(session.environment.machineCalendar);
  Style const style = styleOf(session);
  session.console.out(
      coveragePage(coverage, {context.texts(), style, calendar, clock->now(), widthOf(session)}));
  return exitCode::kComplete;
}

}  // namespace nimbara
