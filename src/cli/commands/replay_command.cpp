#include "app/places/places.h"
#include "app/recording/http_recording.h"
#include "app/recording/replay.h"
#include "app/services/feed_services.h"
#include "app/services/forecasts/forecast_service.h"
#include "base/json/json.h"
#include "base/text/display_text.h"
#include "base/text/text.h"
#include "cli/cli.h"
#include "cli/options/replay_options.h"
#include "cli/pages/notification_page.h"
#include "cli/run_context.h"
#include "notifications/engine/notification_state.h"
#include "platform/settings/scratch_settings_store.h"

namespace nimbara {

namespace {

struct Span {
  Instant from;
  Instant to;
};

Result<Span, std::string> spanOf(ReplayOptions const& options) {
  auto const from = parseIso8601(options.from);
  auto const to = parseIso8601(options.to);
  if (!from || !to) {
    return std::unexpected("'" + (from ? options.to : options.from) +
                           "' is not a timestamp like 2026-11-21T09:00:00Z");
  }
  if (*to < *from) return std::unexpected("--to must not be before --from");
  return Span{*from, *to};
}

/// What the user has set, or what the recording says; nothing of what was sent before.
class ReplayStore {
 public:
  explicit ReplayStore(SettingsStore& user) : user_(user), store_(user.registry()) {}

  /// The error is a sentence.
  Result<void, std::string> fill(std::filesystem::path const& directory) {
    auto places = user_.read(StoreArea::places);
    if (!places) return std::unexpected(places.error().message);
    store_.fill(StoreArea::places, std::move(*places));
    auto settings = settingsIn(directory);
    if (!settings) return std::unexpected(settings.error());
    store_.fill(StoreArea::settings, std::move(*settings));
    return {};
  }

  ScratchSettingsStore& store() { return store_; }

 private:
  Result<SettingValues, std::string> settingsIn(std::filesystem::path const& directory) {
    std::filesystem::path const file = directory / "settings.json";
    std::error_code ignored;
    if (std::filesystem::exists(file, ignored)) return readReplaySettings(file, user_.registry());
    auto settings = user_.read(StoreArea::settings);
    return settings ? Result<SettingValues, std::string>(std::move(*settings))
                    : std::unexpected(settings.error().message);
  }

  SettingsStore& user_;
  ScratchSettingsStore store_;
};

class ReplayRun {
 public:
  ReplayRun(CommandLine const& line, Session const& session, Span span)
      : options_(line.replay),
        session_(session),
        clock_(span.from),
        context_(line.common, session, clock_,
                 {line.common.services, true, line.forecast.provider,
                  [this, &line](HttpClient& network) { return makeHttp(network, line.common.services); }}),
        inputs_(always(context_.app().feeds()), clock_,
                {context_.wording().units,
                 context_.wording().texts,
                 context_.wording().fallback,
                 [this](Place const& place, std::stop_token const& stop) { return weatherOf(place, stop); },
                 {}}),
        replay_({clock_, *session.store, inputs_, context_.wording().texts}),
        end_(span.to) {}

  int run() {
    if (auto const failure = findPlaces()) return session_.fail(failure->exitCode, failure->sentence);
    context_.tell(http_->problem());
    replay_.runUntil(end_, std::chrono::seconds(options_.stepSeconds), session_.stop);
    if (session_.stop.stop_requested()) return session_.fail(exitCode::kInterrupted, "interrupted");
    for (std::string const& problem : replay_.problems()) context_.tell(problem);
    for (std::string const& problem : problems_) context_.tell(problem);
    session_.console.out(options_.json ? json() : text());
    return hasSource() ? exitCode::kComplete : exitCode::kUnavailable;
  }

 private:
  std::unique_ptr<HttpClient> makeHttp(HttpClient& network, std::string const& services) {
    // Services of today know nothing of another time; a stand-in may.
    HttpClient* const otherwise = services.empty() ? nullptr : &network;
    hasServices_ = otherwise != nullptr;
    auto client = std::make_unique<RecordedHttpClient>(options_.directory, clock_, otherwise);
    http_ = client.get();
    return client;
  }

  std::optional<Failure> findPlaces() {
    auto const selected = context_.place(options_.place);
    if (!selected) return selected.error();
    auto const list = Places(*session_.store).list();
    if (!list) return Failure{exitCode::kUnavailable, list.error().message, {}};
    auto places = watchedPlaces(*selected, *list);
    if (!options_.place.empty()) places.resize(1);
    replay_.setPlaces(std::move(places));
    auto rules = NotificationState(*session_.store).customNotifications();
    if (!rules) return Failure{exitCode::kUnavailable, rules.error().message, {}};
    replay_.setRules(std::move(rules->rules));
    return std::nullopt;
  }

  std::shared_ptr<WeatherData const> weatherOf(Place const& place, std::stop_token const& stop) {
    auto answer = context_.app().forecasts().get(place, WeatherProviderOption::automatic, stop);
    if (answer) return std::make_shared<WeatherData const>(std::move(answer->data));
    problems_.insert(answer.error().text());
    return nullptr;
  }

  /// Somebody can have answered in the whole stretch of time.
  bool hasSource() const { return hasServices_ || http_->hasAnyUntil(end_); }

  std::string_view nothingText() const {
    return context_.texts().text(hasSource() ? nothingKey(replay_.hasMissed(), replay_.hasChecked())
                                             : "replay.nothingRecorded");
  }

  std::string text() const {
    std::string text;
    for (LoggedNotification const& line : replay_.log()) {
      text += formatIso8601(line.time) + "  " + padded(line.outcome, 16) + "  " + oneLine(line.identifier);
      if (!line.title.empty()) text += "  " + oneLine(line.title);
      if (!line.place.empty()) text += " (" + oneLine(line.place) + ")";
      text += "\n";
    }
    return text.empty() ? std::string(nothingText()) + "\n" : text;
  }

  static std::string padded(std::string text, std::size_t width) {
    text.resize(std::max(text.size(), width), ' ');
    return text;
  }

  std::string json() const {
    JsonWriter json;
    json.beginList();
    for (LoggedNotification const& line : replay_.log()) {
      json.separate();
      json.beginObject();
      json.member("time", line.time);
      json.member("outcome", line.outcome);
      json.member("identifier", line.identifier);
      json.member("title", line.title);
      json.member("place", line.place);
      json.endObject();
    }
    json.endList();
    return json.take() + "\n";
  }

  ReplayOptions const& options_;
  Session const& session_;
  SteppedClock clock_;
  RecordedHttpClient* http_ = nullptr;  ///< the context's
  bool hasServices_ = false;            ///< that are asked for what was not recorded
  RunContext context_;
  NotificationInputs inputs_;
  Replay replay_;
  Instant end_;
  std::set<std::string> problems_;
};

}  // namespace

int runReplay(CommandLine const& line, Session const& session) {
  auto const span = spanOf(line.replay);
  if (!span) return session.fail(exitCode::kUsage, span.error());
  std::error_code ignored;
  if (!std::filesystem::is_directory(line.replay.directory, ignored)) {
    return session.fail(exitCode::kUnavailable, "no such folder: " + line.replay.directory);
  }
  ReplayStore scratch(*session.store);
  if (auto const filled = scratch.fill(line.replay.directory); !filled) {
    return session.fail(exitCode::kUnavailable, filled.error());
  }
  Settings const settings = scratch.store().settings().settings;
  Session played = session;
  played.store = &scratch.store();
  played.settings = &settings;
  return ReplayRun(line, played, *span).run();
}

}  // namespace nimbara
