#include "app/notices/notification_inputs.h"
#include "app/notices/silent_center.h"
#include "app/places/places.h"
#include "app/recording/http_recording.h"
#include "app/services/feed_services.h"
#include "app/services/forecasts/forecast_service.h"
#include "app/services/stand_in_store.h"
#include "app/words/coverage_text.h"
#include "base/text/text.h"
#include "cli/cli.h"
#include "cli/pages/notification_page.h"
#include "cli/run_context.h"
#include "cli/slow_note.h"
#include "cli/stated_place.h"
#include "cli/terminal.h"
#include "feeds/alerts/gov_alert_service.h"
#include "feeds/regions/regions.h"
#include "notifications/engine/notification_manager.h"
#include "notifications/engine/notification_state.h"
#include "platform/linux/desktop_services.h"

#include <algorithm>
#include <set>

namespace nimbara {

namespace {

/// With the places whose official warnings it has, as a list of names.
struct FailedFeed {
  InputFailure failure;
  std::string places;
  std::vector<std::string> named = {};
};

class NotifyRun {
 public:
  NotifyRun(CommandLine const& line, Session const& session)
      : options_(line.notify),
        isVerbose_(line.common.verbose),
        session_(session),
        clock_(makeClock(line.common)),
        context_(line.common, session, *clock_, departureOf(line)) {}

  int run() {
    if (options_.log) return tellLog();
    if (auto const failure = findPlaces()) return session_.fail(failure->exitCode, failure->sentence);
    auto const center = makeCenter();
    StandInStore standIn(*session_.store);
    SettingsStore& store = context_.servicesBase().empty() ? *session_.store : standIn;
    NotificationManager manager(
        {store, *center, *clock_, context_.wording().texts, lockFile(), context_.app().languageModel()});
    bool const isPreview = options_.dryRun || options_.explain;
    auto const gather = [this](NeededInputs const& needed, std::stop_token const& stop) {
      return gatherInputs(needed, stop);
    };
    PassReport const report =
        isPreview ? manager.preview(gather, session_.stop) : manager.evaluate(gather, session_.stop);
    if (session_.stop.stop_requested()) return session_.fail(exitCode::kInterrupted, "interrupted");
    return tell(report);
  }

 private:
  int tellLog() {
    StandInStore standIn(*session_.store);
    SettingsStore& store = context_.servicesBase().empty() ? *session_.store : standIn;
    auto const stored = store.read(StoreArea::state);
    if (!stored) return session_.fail(exitCode::kUnavailable, stored.error().message);
    auto const log = notificationLogOf(*stored);
    session_.console.out(options_.json ? logJson(log) : logText(log, words(), style_));
    return exitCode::kComplete;
  }

  RunContext::Departure departureOf(CommandLine const& line) {
    RunContext::Departure departure = ownServicesWithin(kCommandLimit, line.common, line.forecast.provider);
    if (!options_.record.empty()) {
      departure.aroundNetwork = [this](HttpClient& network) {
        auto client = std::make_unique<RecordingHttpClient>(network, *clock_, options_.record);
        recording_ = client.get();
        return client;
      };
    }
    return departure;
  }

  /// The one that was asked for, or the saved ones with the selected first.
  std::optional<Failure> findPlaces() {
    auto const selected = context_.place(options_.place);
    if (!selected) return selected.error();
    auto const list = Places(*session_.store).list();
    if (!list) return Failure{exitCode::kUnavailable, list.error().message, {}};
    places_ = watchedPlaces(*selected, *list);
    if (!options_.place.empty()) places_.resize(1);
    if (places_.size() > 1) context_.tellReadersTime();
    return readRules();
  }

  std::optional<Failure> readRules() {
    auto saved = NotificationState(*session_.store).customNotifications();
    if (!saved) return Failure{exitCode::kUnavailable, saved.error().message, {}};
    rules_ = std::move(saved->rules);
    return std::nullopt;
  }

  std::unique_ptr<NotificationCenter> makeCenter() const {
    if (options_.deliver == NotifyOptions::Deliver::print || options_.dryRun || options_.explain) {
      return std::make_unique<SilentCenter>();
    }
    return desktopNotificationCenter(busesOfSession(session_.environment.program));
  }

  std::filesystem::path lockFile() const { return session_.environment.dataDirectory / "notifications.lock"; }

  PassInputs gatherInputs(NeededInputs const& needed, std::stop_token const& stop) {
    SlowNote const note(session_, "asking the sources …");
    NotificationInputs inputs(
        always(context_.app().feeds()), *clock_,
        {context_.wording().units, context_.wording().texts, context_.wording().fallback,
         [this](Place const& place, std::stop_token const& token) { return weatherOf(place, token); },
         [this](Place const& place) {
           return statedPlace(place.coordinate, options_.stated, context_.app().feeds().regions());
         },
         Waiting::sideBySide});
    PassInputs pass = inputs.gather(places_, needed, *session_.settings, rules_, stop);
    pass.isPartial = !options_.place.empty();
    for (RuleInputs const& place : pass.places) noteFailedFeeds(place);
    return pass;
  }

  std::shared_ptr<WeatherData const> weatherOf(Place const& place, std::stop_token const& stop) {
    auto answer = context_.app().forecasts().get(place, WeatherProviderOption::automatic, stop);
    if (!answer) {
      tellOnce(named(place.name, context_.sentenceOf(answer.error())));
      lacksForecast_ = true;
      return nullptr;
    }
    context_.tell(context_.note(*answer));
    return std::make_shared<WeatherData const>(std::move(answer->data));
  }

  int tell(PassReport const& report) {
    for (std::string const& problem : report.problems) tellOnce(problem);
    if (recording_ != nullptr) context_.tell(recording_->problem());
    for (Decision const& decision : report.plan.decisions) noteFailedFeed(decision.failure, decision.place);
    for (FailedFeed const& feed : failedFeeds_) tellOnce(named(feed.places, context_.plain(feed.failure)));
    session_.console.out(rendered(report.plan));
    if (report.end == PassReport::End::denied) {
      return session_.fail(exitCode::kUnavailable,
                           "the desktop shows no notifications; see nimbara doctor, or add --deliver print");
    }
    if (report.end == PassReport::End::busy) {
      return session_.fail(exitCode::kUnavailable, "another program is checking notifications; try again");
    }
    bool const wasRefused =
        std::ranges::count(report.plan.decisions, RuleOutcome::refused, &Decision::outcome);
    bool const isWhole = !lacksForecast_ && failedFeeds_.empty() && !wasRefused;
    return isWhole ? exitCode::kComplete : exitCode::kUnavailable;
  }

  void noteFailedFeeds(RuleInputs const& place) {
    for (std::size_t i = 0; i < enumNames<RuleInput>.size(); ++i) {
      noteFailedFeed(place.failureOf({static_cast<RuleInput>(i)}), place.place.name);
    }
  }

  /// Not those that nobody has set up.
  void noteFailedFeed(std::optional<InputFailure> const& failure, std::string const& place) {
    if (!failure || failure->failure.kind == ServiceFailure::Kind::notConfigured) return;
    auto found = std::ranges::find(failedFeeds_, *failure, &FailedFeed::failure);
    if (found == failedFeeds_.end()) found = failedFeeds_.insert(found, {*failure, {}});
    // The others are asked for the world at once.
    if (failure->input != RuleInput::govAlerts || place.empty()) return;
    if (std::ranges::find(found->named, place) != found->named.end()) return;
    found->named.push_back(place);
    found->places += (found->places.empty() ? "" : ", ") + oneLine(place);
  }

  static std::string named(std::string const& places, std::string const& sentence) {
    return places.empty() ? sentence : places + ": " + sentence;
  }

  /// However many rules or places it silences.
  void tellOnce(std::string const& problem) {
    if (told_.insert(problem).second) context_.tell(problem);
  }

  std::string rendered(PassPlan const& plan) {
    if (options_.explain) {
      return options_.json ? explanationJson(plan)
                           : officialStates() + explanationText(plan, words(), explanationPage());
    }
    return options_.json ? notificationsJson(plan)
                         : notificationsText(plan, context_.texts(), style_, widthOf(session_),
                                             options_.dryRun ? ReasonTense::preview : ReasonTense::past);
  }

  ExplanationPage explanationPage() const { return {style_, widthOf(session_), isVerbose_}; }

  /// How the official warnings of each place were checked, in this pass or, where no rule reads them, before.
  std::string officialStates() {
    std::string out;
    for (WatchedPlace const& watched : places_) {
      GovAlertPlace const asked =
          statedPlace(watched.place.coordinate, options_.stated, context_.app().feeds().regions());
      auto const coverage = agedCoverage(
          coverageOf(context_.app().feeds().govAlerts().keptAlerts(asked), asked.countryCode), clock_->now());
      for (std::string const& line :
           coverageLines(coverage, context_.texts(), context_.calendar(), clock_->now())) {
        out += oneLine(watched.place.name) + ": " + line + "\n";
      }
    }
    return out.empty() ? out : out + "\n";
  }

  ReasonWords words() const {
    Wording const& wording = context_.wording();
    return {context_.texts(), wording.units, context_.calendar(), clock_->now()};
  }

  NotifyOptions const& options_;
  bool isVerbose_;
  Session const& session_;
  Style style_ = styleOf(session_);
  std::unique_ptr<Clock> clock_;
  RecordingHttpClient* recording_ = nullptr;  ///< the context's
  RunContext context_;
  std::vector<WatchedPlace> places_;
  std::vector<CustomNotification> rules_;
  bool lacksForecast_ = false;
  std::vector<FailedFeed> failedFeeds_;  ///< each once, in the order of the feeds
  std::set<std::string> told_;           ///< problems
};

}  // namespace

int runNotify(CommandLine const& line, Session const& session) {
  return NotifyRun(line, session).run();
}

}  // namespace nimbara
