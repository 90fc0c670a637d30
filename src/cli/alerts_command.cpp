#include "base/display_text.h"
#include "base/json.h"
#include "cli/cli.h"
#include "cli/run_context.h"
#include "cli/terminal.h"

namespace nimbara {

namespace {

/// "Warning: High Winds" and the message below it, folded to the width.
std::string page(std::vector<WeatherAlert> const& alerts, Texts const& texts, Style const& style, int width) {
  std::string out;
  for (WeatherAlert const& alert : alerts) {
    std::string const severity(texts.text("severity." + std::string(enumName(alert.severity))));
    Colour const colour = alert.severity >= AlertSeverity::warning ? Colour::warning : Colour::sun;
    out += style.painted(style.text(severity + ": " + alert.title), colour) + "\n";
    for (std::string const& part : wrapped(style.text(alert.message), width - 2)) out += "  " + part + "\n";
  }
  return out;
}

/// The warnings of the sources that were asked for, most severe first.
Result<std::vector<WeatherAlert>, Failure> gather(RunContext& context, AlertsOptions const& options,
                                                  Session const& session) {
  auto const place = context.place(options.place);
  if (!place) return std::unexpected(place.error());
  std::vector<WeatherAlert> alerts;
  if (options.sources.contains(AlertSource::generated)) {
    auto answer = context.app().forecasts().get(*place, WeatherProviderOption::automatic, session.stop);
    if (!answer) {
      return std::unexpected(
          Failure{exitCode::kUnavailable, context.sentenceOf(answer.error()), answer.error()});
    }
    context.tell(context.note(*answer));
    alerts = std::move(answer->alerts);
  }
  sortMostSevereFirst(alerts);
  return alerts;
}

}  // namespace

int runAlerts(CommandLine const& line, Session const& session) {
  auto const clock = makeClock(line.common);
  RunContext context(line.common, session, *clock, ownServices(line.common, line.forecast.provider));
  auto const alerts = gather(context, line.alerts, session);
  if (session.stop.stop_requested()) return session.fail(exitCode::kInterrupted, "interrupted");
  if (!alerts) return session.fail(alerts.error().exitCode, alerts.error().sentence);
  if (line.alerts.json) {
    session.console.out(encodeJson(*alerts) + "\n");
  } else if (alerts->empty()) {
    session.console.out(std::string(context.texts().text("report.noAlerts")) + "\n");
  } else {
    session.console.out(page(*alerts, context.texts(), styleOf(session), widthOf(session)));
  }
  return exitCode::kComplete;
}

}  // namespace nimbara
