#include "app/notices/notification_desk.h"

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
      manager_({remembered(), *around_.center, around_.clock, *around_.wording.texts,
                around_.dataDirectory / "notifications.lock", around_.app.languageModel()}),
      inputs_(around_.app.feeds(), around_.clock, inputOptions()),
      // Made-up news keep nobody from telling real ones.
      role_(around_.dataDirectory / (isStandIn() ? "notifier-stand-in.lock" : "notifier.lock"),
            around_.program),
      regions_(around_.app.http(), around_.clock,
               around_.app.services().address(Service::meteoAlarmRegions).baseUrl, around_.dataDirectory),
      notifier_(manager_, inputs_, around_.store, around_.clock, around_.runner, notifierSurroundings()) {
  around_.center->setListener([this](NotificationResponse const& response) { answer(response); });
}

NotificationDesk::~NotificationDesk() {
  role_.stop();
  around_.center->setListener(nullptr);
}

SettingsStore& NotificationDesk::remembered() {
  return isStandIn() ? static_cast<SettingsStore&>(standIn_) : around_.store;
}

NotificationInputs::Options NotificationDesk::inputOptions() const {
  Wording const& wording = around_.wording;
  NotificationInputs::Options options{wording.units, wording.texts, wording.fallback, {}, {}};
  // The refreshes keep the forecasts; a pass looks at what they kept.
  options.weather = [this](Place const& place, std::stop_token const&) {
    auto answer = around_.app.forecasts().cached(place);
    return answer ? std::make_shared<WeatherData const>(std::move(answer->data)) : nullptr;
  };
  return options;
}

Notifier::Surroundings NotificationDesk::notifierSurroundings() {
  Notifier::Surroundings all;
  all.places = around_.places;
  all.rules = [this] {
    auto saved = NotificationState(around_.store).customNotifications();
    return saved ? std::move(saved->rules) : std::vector<CustomNotification>{};
  };
  all.isOurs = [this] { return role_.isOurs(); };
  all.onPass = [this](PassReport const& report) {
    tell(around_.onPass, report);
    renewRegions();
  };
  all.onDueChange = around_.onDueChange;
  all.jitter = around_.jitter;
  return all;
}

/// Stand-ins have regions of their own making.
void NotificationDesk::renewRegions() {
  if (isStandIn() || !around_.places) return;
  std::vector<Coordinate> coordinates;
  for (WatchedPlace const& watched : around_.places()) coordinates.push_back(watched.place.coordinate);
  if (!regions_.isDue(coordinates)) return;
  around_.runner.run([this](std::stop_token const& stop) {
    auto const done = regions_.run(stop);
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

void NotificationDesk::setWording(Wording const& wording) {
  manager_.setTexts(wording.texts);
  inputs_.setWording(wording.units, wording.texts);
}

}  // namespace nimbara
