#include "app/notices/notification_desk.h"

#include "app/notices/spoken_warnings.h"
#include "app/services/forecasts/forecast_service.h"
#include "app/settings/service_directory.h"
#include "feeds/regions/region_renewal.h"
#include "gazetteer/gazetteer.h"

namespace nimbara {

namespace {

template <class Listener, class... Arguments>
void tell(Listener const& listener, Arguments const&... arguments) {
  if (listener) listener(arguments...);
}

}  // namespace

NotificationDesk::NotificationDesk(Surroundings surroundings)
    : around_(std::move(surroundings)),
      standIn_(around_.store),
      model_(around_.services),
      manager_({remembered(), *around_.center, around_.clock, around_.wording.texts,
                around_.dataDirectory / "notifications.lock", &model_}),
      inputs_(feedsOf(around_.services), around_.clock, inputOptions()),
      // Made-up news keep nobody from telling real ones.
      role_(around_.dataDirectory / (around_.isStandIn ? "notifier-stand-in.lock" : "notifier.lock"),
            around_.program),
      notifier_(manager_, inputs_, around_.store, around_.clock, around_.runner, notifierSurroundings()) {
  around_.center->setListener([this](NotificationResponse const& response) { answer(response); });
}

NotificationDesk::~NotificationDesk() {
  role_.stop();
  around_.center->setListener(nullptr);
}

SettingsStore& NotificationDesk::remembered() {
  return around_.isStandIn ? static_cast<SettingsStore&>(standIn_) : around_.store;
}

NotificationInputs::Options NotificationDesk::inputOptions() const {
  Wording const& wording = around_.wording;
  NotificationInputs::Options options{wording.units, wording.texts, wording.fallback, {}, {}};
  // The refreshes keep the forecasts; a pass looks at what they kept.
  options.weather = [this](Place const& place, std::stop_token const&) {
    auto answer = around_.services()->forecasts().cached(place);
    return answer ? std::make_shared<WeatherData const>(std::move(answer->data)) : nullptr;
  };
  return options;
}

Notifier::Surroundings NotificationDesk::notifierSurroundings() {
  Notifier::Surroundings all;
  all.places = [this] {
    // A pass begins: the one that was under way when places were removed has ended.
    manager_.releaseAll();
    return around_.places();
  };
  all.rules = [this] {
    auto saved = NotificationState(around_.store).customNotifications();
    return saved ? std::move(saved->rules) : std::vector<CustomNotification>{};
  };
  all.isOurs = [this] { return role_.isOurs(); };
  all.onPass = [this](PassReport const& report) {
    tell(around_.onPass, report);
    readOut(report);
    renewRegions();
  };
  all.onDueChange = around_.onDueChange;
  all.jitter = around_.jitter;
  return all;
}

/// Made-up warnings are for the eye alone.
void NotificationDesk::readOut(PassReport const& report) {
  if (around_.isStandIn || !around_.speech) return;
  Wording const wording = [&] {
    std::lock_guard const lock(wordingMutex_);
    return around_.wording;
  }();
  SpokenWarnings(*around_.speech, around_.store, around_.clock)
      .say(report, wording, [&](std::string const& tag) {
        for (WatchedPlace const& watched : around_.places()) {
          if (locationTag(watched.place) != tag) continue;
          return Calendar::forZone(std::string(timeZoneAt(watched.place.coordinate)))
              .value_or(wording.fallback);
        }
        return wording.fallback;
      });
}

/// Stand-ins have regions of their own making.
void NotificationDesk::renewRegions() {
  if (around_.isStandIn || !around_.places) return;
  std::vector<Coordinate> coordinates;
  for (WatchedPlace const& watched : around_.places()) coordinates.push_back(watched.place.coordinate);
  auto const services = around_.services();
  auto const renewal = std::make_shared<RegionRenewal>(
      services->http(), around_.clock, services->services().address(Service::meteoAlarmRegions).baseUrl,
      around_.dataDirectory);
  if (!renewal->isDue(coordinates)) return;
  around_.runner.run([this, services, renewal](std::stop_token const& stop) {
    auto const done = renewal->run(stop);
    if (!done && !stop.stop_requested()) tell(around_.onProblem, "warning regions: " + done.error());
  });
}

/// A person clicked on a notification.
void NotificationDesk::answer(NotificationResponse const& response) {
  if (auto const done = manager_.respond(response); !done) tell(around_.onProblem, done.error().message);
  tell(around_.onResponse, response);
}

void NotificationDesk::followRole() {
  role_.follow([this] {
    if (role_.isOurs()) notifier_.requestPass();
    tell(around_.onRoleChange);
  });
}

Result<std::string, std::string> NotificationDesk::ModelInUse::reply(std::string const& prompt,
                                                                     std::stop_token const& stop) {
  auto const services = services_();
  LanguageModel* const model = services->languageModel();
  if (model == nullptr) return std::unexpected("no language model is set");
  return model->reply(prompt, stop);
}

void NotificationDesk::setWording(Wording const& wording) {
  {
    std::lock_guard const lock(wordingMutex_);
    around_.wording = wording;
  }
  manager_.setTexts(wording.texts);
  inputs_.setWording(wording.units, wording.texts);
}

}  // namespace nimbara
