#include "app/places/places.h"
#include "app/settings/settings_registry.h"
#include "base/text/display_text.h"
#include "cli/cli.h"
#include "demo/demo_folder.h"
#include "demo/demo_process.h"
#include "demo/world/demo_scene.h"
#include "demo/world/warnings/demo_issuers.h"
#include "gazetteer/gazetteer.h"
#include "platform/linux/store/sqlite_settings_store.h"

#include <algorithm>
#include <condition_variable>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <signal.h>
#include <sys/wait.h>

namespace nimbara {

namespace {

constexpr int kNotFound = 127;
constexpr int kSignalBase = 128;

/// The environment of a command: ours, with some variables set.
class Variables {
 public:
  void set(std::string_view name, std::string_view value) {
    auto const isNamed = [name](std::string_view entry) {
      return entry.starts_with(name) && entry.substr(name.size()).starts_with('=');
    };
    std::erase_if(all_, isNamed);
    all_.push_back(std::string(name) + "=" + std::string(value));
  }
  std::vector<std::string> take() { return std::move(all_); }

 private:
  std::vector<std::string> all_ = environmentVariables();
};

SavedPlace savedPlace(DemoIssuer const& issuer) {
  return {Uuid::random(),
          std::string(issuer.town),
          std::string(issuer.countryCode),
          std::string(issuer.country),
          {},
          issuer.place,
          std::string(timeZoneAt(issuer.place))};
}

/// Where the command will look for them.
PlaceResult saveWorld(std::filesystem::path const& dataHome) {
  SqliteSettingsStore store(dataHome / "nimbara", settingsRegistry());
  auto const saved = Places(store).change([](PlaceList& list) -> PlaceResult {
    for (DemoIssuer const& issuer : demoIssuers()) {
      if (auto added = addPlace(list, savedPlace(issuer)); !added) return added;
    }
    return {};
  });
  return saved ? PlaceResult() : std::unexpected(saved.error().message);
}

/// Whatever folders the user has named, those hold what is not made up.
void setFolders(Variables& variables, std::filesystem::path const& own) {
  for (std::string_view const name : {"XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_DATA_HOME"})
    variables.set(name, (own / name).string());
}

/// The moment that a command states for itself, as in `demo -- nimbara --now TIME alerts`.
std::optional<Instant> momentIn(std::vector<std::string> const& command) {
  constexpr std::string_view kOption = "--now";
  for (auto word = command.begin(); word != command.end(); ++word) {
    std::string_view const text = *word;
    if (text == kOption && std::next(word) != command.end()) return parseIso8601(*std::next(word));
    if (text.starts_with(kOption) && text.substr(kOption.size()).starts_with('='))
      return parseIso8601(text.substr(kOption.size() + 1));
  }
  return std::nullopt;
}

int waitFor(pid_t child, std::stop_token const& stop) {
  std::stop_callback const pass(stop, [child] { kill(child, SIGTERM); });
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : kSignalBase + WTERMSIG(status);
}

/// As a user would who has one.
PlaceResult chooseModel(std::filesystem::path const& dataHome, std::string const& baseUrl) {
  SqliteSettingsStore store(dataHome / "nimbara", settingsRegistry());
  auto const chosen = store.setAll(
      {{"appleIntelligence", true}, {std::string(hostSetting(Service::languageModel)), baseUrl}});
  return chosen ? PlaceResult() : std::unexpected(chosen.error().message);
}

PlaceResult prepareScene(std::string const& name, std::filesystem::path const& own,
                         std::string const& baseUrl) {
  DemoScene const* const scene = findDemoScene(name);
  if (scene == nullptr) return {};
  if (scene->hasModel) return chooseModel(own / "XDG_DATA_HOME", baseUrl);
  return scene->savesWorld ? saveWorld(own / "XDG_DATA_HOME") : PlaceResult();
}

int runAgainst(std::string const& baseUrl, CommandLine const& line, Session const& session) {
  std::vector<std::string> const& command = line.demo.command;
  // The program knows where it lies, also where it is not installed.
  std::string const file = command[0] == "nimbara" ? session.environment.program.string() : command[0];
  pid_t child = 0;
  // A forecast that was made up is none to be kept, and one that was kept would hide the demo's; nor are
  // places and settings of the demo the user's.
  DemoFolder const folder;
  if (folder.path().empty())
    return session.fail(exitCode::kUnavailable, "no space for temporary files; check TMPDIR");
  Variables variables;
  setFolders(variables, folder.path());
  auto const prepared = prepareScene(line.demo.scene, folder.path(), baseUrl);
  if (!prepared) return session.fail(exitCode::kUnavailable, prepared.error());
  variables.set("NIMBARA_SERVICES", baseUrl);
  if (line.common.now) variables.set("NIMBARA_NOW", formatIso8601(*line.common.now));
  int const error = spawn(child, file, command, variables.take());
  if (error != 0) {
    std::string const reason = std::strerror(error);
    return session.fail(error == ENOENT ? kNotFound : exitCode::kUnavailable,
                        "the command " + command[0] + " cannot be run: " + reason);
  }
  return waitFor(child, session.stop);
}

void waitForStop(std::stop_token const& stop) {
  std::mutex mutex;
  std::condition_variable_any condition;
  std::unique_lock lock(mutex);
  condition.wait(lock, stop, [] { return false; });
}

std::string sceneList() {
  std::string out;
  for (DemoScene const& scene : demoScenes()) {
    out +=
        fitted(scene.name, 14) + " " + fitted(scene.place, 14) + " " + std::string(scene.explanation) + "\n";
  }
  return out +
         "\nFor example: nimbara demo --scene coast -- nimbara alerts 60.17,24.94\n"
         "Some change with the time of day: nimbara --now 2026-11-22T13:00:00Z demo --scene cancelled -- "
         "nimbara alerts Warsaw\n";
}

}  // namespace

int runDemo(CommandLine const& line, Session const& session) {
  if (line.demo.scene == "list") {
    session.console.out(sceneList());
    return exitCode::kComplete;
  }
  auto const stated = momentIn(line.demo.command);
  auto const demo =
      DemoProcess::start(session.environment.program, stated ? stated : line.common.now, line.demo);
  if (!demo) return session.fail(exitCode::kUnavailable, demo.error());
  if (!line.demo.command.empty()) return runAgainst(demo->baseUrl(), line, session);
  session.console.out(demo->baseUrl() + "\n");
  waitForStop(session.stop);
  return exitCode::kInterrupted;
}

}  // namespace nimbara
