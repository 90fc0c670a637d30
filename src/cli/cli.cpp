#include "cli/cli.h"

#include "app/settings/home_directory.h"
#include "app/settings/unit_settings.h"
#include "app/settings/user_settings.h"
#include "base/text/text.h"
#include "platform/linux/resident_code.h"

namespace nimbara {

int Session::fail(int code, std::string_view sentence) const {
  console.err("nimbara: " + oneLine(sentence, 1000) + "\n");
  return code;
}

std::unique_ptr<Clock> makeClock(CommonOptions const& options) {
  if (options.now) return std::make_unique<FixedClock>(*options.now);
  return std::make_unique<SystemClock>();
}

namespace {

/// What the command line leaves open is as the settings say. The watch follows them while it runs.
void fillIn(CommandLine& line, Settings const& settings, Environment const& environment) {
  if (line.run == runWatch) return;
  CommonOptions& common = line.common;
  if (!common.unitsGiven) common.units = unitsOf(settings, environment.measurement);
  std::string const language = settings.text("language");
  if (common.language.empty()) common.language = language == "automatic" ? environment.language : language;
  common.clock = chosenClock(settings, common.language, environment.time);
  if (!line.forecast.providerGiven) {
    line.forecast.provider = settings.choice<WeatherProviderOption>("preferredProvider").value();
  }
}

}  // namespace

int runCli(std::vector<std::string> arguments, Session const& session) {
  auto line = parseCommandLine(std::move(arguments), session.environment);
  if (!line) {
    EarlyEnd const& end = line.error();
    if (end.exitCode != exitCode::kComplete) return session.fail(end.exitCode, end.text);
    session.console.out(end.text);
    return exitCode::kComplete;
  }
  if (!line->needsHome) return line->run(*line, session);
  if (session.environment.dataDirectory.empty()) return session.fail(exitCode::kUnavailable, kNoHome);
  auto const store = userSettings(session.environment, line->common.services, SettingsUse::brief);
  auto const [settings, problem] = store->opened();
  // The start ran through the loaders of three dozen libraries; none of that is needed any more.
  giveBackCode();
  if (problem && !line->needsStore) {
    session.console.err("nimbara: " + oneLine(problem->message, 500) + "; the defaults are used\n");
  }
  fillIn(*line, settings, session.environment);
  Session equipped = session;
  equipped.store = equipped.keyed = store.get();
  equipped.settings = &settings;
  return line->run(*line, equipped);
}

}  // namespace nimbara
