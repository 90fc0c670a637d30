#include "desktop/core/desktop_core.h"

#include "app/place_resolver.h"
#include "app/scheduler.h"
#include "app/settings_registry.h"
#include "app/unit_settings.h"

#include <random>

namespace nimbara {

namespace {

/// Services ask clients not to come all on the full minute.
std::chrono::milliseconds jitter() {
  static thread_local std::mt19937 random{std::random_device{}()};
  return std::chrono::milliseconds(std::uniform_int_distribution<int>(0, 20'000)(random));
}

std::unique_ptr<Clock> clockFrom(std::optional<Instant> now) {
  if (now) return std::make_unique<ShiftedClock>(*now);
  return std::make_unique<SystemClock>();
}

Wording wordingOf(Settings const& settings, Environment const& environment) {
  std::string const chosen = settings.text("language");
  return {unitsOf(settings, environment.measurement),
          std::make_shared<Texts>(Texts::load(chosen == "automatic" ? environment.language : chosen)),
          environment.machineCalendar};
}

WeatherProviderOption preferredProvider(Settings const& settings) {
  return settings.choice<WeatherProviderOption>("preferredProvider")
      .value_or(WeatherProviderOption::automatic);
}

std::optional<Place> selectedOf(PlaceList const& list) {
  auto const wanted = resolvePlace("", list);
  Place const* const place = wanted ? std::get_if<Place>(&*wanted) : nullptr;
  return place == nullptr ? std::nullopt : std::optional(*place);
}

}  // namespace

DesktopCore::DesktopCore(Environment const& environment, Options options, Listener listener)
    : clock_(clockFrom(options.now)),
      store_(environment.dataDirectory, settingsRegistry()),
      settings_(store_.settings().settings),
      wording_(wordingOf(settings_, environment)),
      listener_(std::move(listener)),
      places_(store_),
      composition_(settings_, *clock_,
                   {options.services,
                    wording_,
                    preferredProvider(settings_),
                    environment.program,
                    environment.dataDirectory,
                    environment.cacheDirectory,
                    {}}),
      commands_(1),
      state_(composition_.forecasts(), composition_.providers(), composition_.cache(), *clock_, work_,
             surroundings()) {
  commands_.run([this, places = std::move(options.places)](std::stop_token const&) { begin(places); });
  scheduler_ =
      std::jthread([this](std::stop_token const& stop) { runScheduler(state_, timer_, *clock_, stop); });
  follower_ = std::jthread([this](std::stop_token const& stop) { followStore(stop); });
}

DesktopCore::~DesktopCore() {
  follower_ = {};
  scheduler_ = {};
  commands_.stop();
  work_.stop();
}

AppState::Surroundings DesktopCore::surroundings() {
  AppState::Surroundings all;
  all.savedPlaces = [this] {
    std::lock_guard const lock(mutex_);
    std::vector<Place> places;
    places.reserve(list_.places.size());
    for (SavedPlace const& saved : list_.places) places.push_back(placeOf(saved));
    return places;
  };
  all.onRefresh = [this](AppState::RefreshReport const& report) {
    if (!report.outcome) return;
    {
      std::lock_guard const lock(mutex_);
      SavedPlace const* const saved = list_.findNear(report.place.coordinate);
      if (saved == nullptr) return;
      kept_[saved->id] = std::make_shared<WeatherData const>(report.outcome->data);
    }
    publish();
  };
  all.onChange = [this] { publish(); };
  all.onDueChange = [this] { timer_.wake(); };
  all.jitter = jitter;
  return all;
}

/// The selected place first: it is what the window waits for.
void DesktopCore::begin(std::vector<SavedPlace> const& places) {
  readPlaces();
  bool const isEmpty = [this] {
    std::lock_guard const lock(mutex_);
    return list_.places.empty();
  }();
  if (isEmpty && !places.empty()) {
    change([&places](PlaceList& list) -> PlaceResult {
      for (SavedPlace const& place : places) std::ignore = nimbara::addPlace(list, place);
      return {};
    });
  } else {
    showSelected(RefreshTrigger::start);
  }
  readAllKept();
  timer_.wake();
}

void DesktopCore::readPlaces() {
  auto list = places_.list();
  std::lock_guard const lock(mutex_);
  problem_ = list ? std::string() : list.error().message;
  if (list) list_ = std::move(*list);
}

void DesktopCore::showSelected(RefreshTrigger trigger) {
  auto const place = [this] {
    std::lock_guard const lock(mutex_);
    return selectedOf(list_);
  }();
  if (trigger == RefreshTrigger::start || place != state_.selectedPlace()) {
    state_.selectPlace(place, trigger);
  }
  publish();
}

void DesktopCore::readKept(Uuid id, Place const& place) {
  auto answer = composition_.forecasts().cached(place);
  if (!answer) return;
  std::lock_guard const lock(mutex_);
  kept_.try_emplace(id, std::make_shared<WeatherData const>(std::move(answer->data)));
}

void DesktopCore::readAllKept() {
  auto const places = [this] {
    std::lock_guard const lock(mutex_);
    return list_.places;
  }();
  for (SavedPlace const& saved : places) readKept(saved.id, placeOf(saved));
  publish();
}

void DesktopCore::publish() {
  auto snapshot = std::make_shared<DesktopSnapshot>();
  snapshot->weather = state_.weather();
  snapshot->place = state_.selectedPlace();
  {
    std::lock_guard const lock(mutex_);
    snapshot->places = list_;
    snapshot->kept = kept_;
    snapshot->problem = problem_;
  }
  listener_(std::move(snapshot));
}

void DesktopCore::change(std::function<PlaceResult(PlaceList&)> const& apply) {
  auto list = places_.change(apply);
  {
    std::lock_guard const lock(mutex_);
    problem_ = list ? std::string() : list.error().message;
    if (list) list_ = std::move(*list);
  }
  showSelected(RefreshTrigger::placeChosen);
  timer_.wake();
}

/// Another process changed the places.
void DesktopCore::followStore(std::stop_token const& stop) {
  auto const watch = store_.watch();
  if (!watch) return;  // changes of others show at the next start
  while ((*watch)->wait(stop) == WaitOutcome::changed) {
    commands_.run([this](std::stop_token const&) {
      readPlaces();
      showSelected(RefreshTrigger::placeChosen);
    });
  }
}

void DesktopCore::refresh() {
  commands_.run([this](std::stop_token const&) { state_.requestRefresh(RefreshTrigger::asked); });
}

void DesktopCore::setForeground(bool isForeground) {
  commands_.run([this, isForeground](std::stop_token const&) { state_.setForeground(isForeground); });
}

void DesktopCore::selectPlace(Uuid id) {
  commands_.run([this, id](std::stop_token const&) {
    change([&id](PlaceList& list) { return nimbara::selectPlace(list, id); });
  });
}

void DesktopCore::addPlace(SavedPlace place) {
  commands_.run([this, place = std::move(place)](std::stop_token const&) {
    change([&place](PlaceList& list) -> PlaceResult {
      if (auto const done = nimbara::addPlace(list, place); !done) return done;
      return nimbara::selectPlace(list, place.id);
    });
  });
}

void DesktopCore::removePlace(Uuid id) {
  commands_.run([this, id](std::stop_token const&) {
    change([&id](PlaceList& list) { return nimbara::removePlace(list, id); });
  });
}

void DesktopCore::movePlace(Uuid id, int position) {
  commands_.run([this, id, position](std::stop_token const&) {
    change([&](PlaceList& list) { return nimbara::movePlace(list, id, position); });
  });
}

void DesktopCore::search(std::string text, SearchListener found) {
  commands_.run([this, text = std::move(text), found = std::move(found)](std::stop_token const&) {
    found(searchOffline(text, wording_.texts->language()));
  });
}

}  // namespace nimbara
