// What the engine is asked for: each command returns at once and is carried out after those before it.
#include "app/engine/clocks/held_runner.h"
#include "app/engine/clocks/location_follower.h"
#include "app/engine/engine.h"
#include "app/engine/engine_globe.h"
#include "app/engine/engine_hazards.h"
#include "app/engine/engine_notifications.h"
#include "app/engine/engine_options.h"
#include "app/engine/engine_outlook.h"
#include "app/engine/engine_places.h"
#include "app/engine/engine_settings.h"
#include "app/places/place_resolver.h"
#include "app/places/place_search.h"
#include "app/services/forecasts/second_forecast.h"
#include "app/settings/service_directory.h"
#include "platform/linux/desktop_services.h"
#include "platform/linux/timerfd_wake_timer.h"

namespace nimbara {

namespace {

LocationPhase phaseOf(LocationError const& error) {
  bool const isDenied = error.kind == LocationError::Kind::denied;
  return isDenied ? LocationPhase::denied : LocationPhase::unavailable;
}

}  // namespace

void Engine::run(std::function<void()> command) {
  commands_->run([command = std::move(command)](std::stop_token const&) { command(); });
}

void Engine::change(PlaceChange const& apply) {
  adoptPlaces([&] { places_->change(apply); });
  showSelected(RefreshTrigger::placeChosen);
  notifications_->requestPass();
  timer_->wake();
}

/// A setting that cannot be kept holds until the end of the program.
void Engine::keepSetting(std::string key, std::string value) {
  run([this, key = std::move(key), value = std::move(value)] { std::ignore = store_->set(key, value); });
}

void Engine::refresh() {
  run([this] { state_->requestRefresh(RefreshTrigger::asked); });
}

void Engine::lookAtHazards() {
  run([this] { hazards_->look(); });
}

void Engine::lookAtSources() {
  run([this] { hazards_->lookAtPlaces(); });
}

void Engine::lookAhead() {
  run([this] {
    auto const place = state_->selectedPlace();
    if (!outlook_ || !place) return;
    outlook_->look(*place);
    held_->run([this, place = *place](std::stop_token const& stop) {
      auto const shown = state_->weather();
      if (!shown->weatherData || !shown->currentWeatherProvider) return;
      auto second = services()->secondForecasts().fetch(place, *shown->currentWeatherProvider, stop);
      if (stop.stop_requested()) return;
      state_->showConfidence(place, std::make_shared<SecondForecast const>(std::move(second)));
    });
  });
}

void Engine::setQuakeRadius(double km) {
  run([this, km] { hazards_->setRadius(km); });
}

void Engine::setQuakeMagnitude(double least) {
  run([this, least] { hazards_->setMagnitude(least); });
}

void Engine::setForeground(bool isForeground) {
  run([this, isForeground] { state_->setForeground(isForeground); });
}

void Engine::selectPlace(Uuid id) {
  run([this, id] {
    places_->lookAway();
    change([&id](PlaceList& list) {
      bool const isHere = id == kCurrentLocation && list.lastFix;
      return isHere ? selectCurrentLocation(list, LocationFix(*list.lastFix))
                    : nimbara::selectPlace(list, id);
    });
  });
}

void Engine::choosePlace(std::string text) {
  run([this, text = std::move(text)] {
    std::ignore = places_->look(text);
    showSelected(RefreshTrigger::placeChosen);
    timer_->wake();
  });
}

void Engine::windowIsShown() {
  held_->release();
  run([this] { beginTheRest(); });
}

void Engine::followSystem(std::function<void(std::string const&)> missing) {
  run([this, missing = std::move(missing)] {
    if (system_) return;
    system_ = desktopPowerAndNetwork({environment_->program, {}, {}}, [this](SystemEvent event) {
      bool const isResume = event == SystemEvent::resumed;
      tell(isResume ? EngineEvent::resumed : EngineEvent::networkReturned);
      state_->wokeUp(isResume ? RefreshTrigger::resumed : RefreshTrigger::networkReturned);
      notifications_->notifier().wokeUp();
      timer_->wake();
      run([this] {
        followDevice();
        publish();
      });
    });
    for (std::string const& sentence : system_->missing()) missing(sentence);
  });
}

void Engine::addPlace(SavedPlace place) {
  run([this, place = std::move(place)] {
    change([&place](PlaceList& list) -> PlaceResult {
      if (auto const done = nimbara::addPlace(list, place); !done) return done;
      return nimbara::selectPlace(list, place.id);
    });
  });
}

void Engine::removePlace(Uuid id) {
  run([this, id] {
    change([&id](PlaceList& list) { return nimbara::removePlace(list, id); });
    places_->disableRulesOf(id);
  });
}

void Engine::renamePlace(Uuid id, std::string name) {
  run([this, id, name = std::move(name)] {
    change([&](PlaceList& list) { return nimbara::renamePlace(list, id, name); });
  });
}

void Engine::restorePlace(SavedPlace place, int position, bool select) {
  run([this, place = std::move(place), position, select] {
    change([&](PlaceList& list) -> PlaceResult {
      if (auto const added = nimbara::addPlace(list, place); !added) return added;
      if (auto const moved = nimbara::movePlace(list, place.id, position); !moved) return moved;
      return select ? nimbara::selectPlace(list, place.id) : PlaceResult();
    });
    places_->enableRulesOf(place.id);
    places_->readKept(place.id, placeOf(place));
    publish();
  });
}

void Engine::movePlace(Uuid id, int position) {
  run([this, id, position] {
    change([&](PlaceList& list) { return nimbara::movePlace(list, id, position); });
  });
}

void Engine::chooseNotifications(Uuid id, PlaceChoice choice) {
  run([this, id, choice] {
    change([&](PlaceList& list) { return nimbara::chooseNotifications(list, id, choice); });
  });
}

void Engine::chooseWarningSource(Uuid place, std::string name) {
  run([this, place, name = std::move(name)] {
    change([&](PlaceList& list) { return nimbara::chooseWarningSource(list, place, name); });
    PlaceList const list = places_->state().list;
    SavedPlace const* const saved = list.find(place);
    if (hazards_ && saved != nullptr) hazards_->askOfficial(placeOf(*saved));
  });
}

void Engine::search(std::string text, SearchListener found) {
  run([this, text = std::move(text), found = std::move(found)] {
    std::string const language = wording()->texts->language();
    auto places = searchOffline(text, language);
    if (places.empty()) places = similarPlaces(text, language);
    found(std::move(places));
  });
}

void Engine::searchOnline(std::string text, OnlineListener found) {
  work_->run([this, text = std::move(text), found = std::move(found)](std::stop_token const& stop) {
    auto const services = this->services();
    PlaceSearch search(services->http(), services->services());
    found(search.search(text, wording()->texts->language(), true, stop));
  });
}

void Engine::noteLocation(LocationPhase phase, std::string message) {
  places_->noteLocation(phase, std::move(message));
  publish();
}

void Engine::finishLocating(Result<LocationFix, LocationError> const& fix) {
  if (!fix) return noteLocation(phaseOf(fix.error()), fix.error().message);
  change([&fix](PlaceList& list) { return selectCurrentLocation(list, *fix); });
  noteLocation(LocationPhase::found);
}

void Engine::locate() {
  run([this] {
    noteLocation(LocationPhase::asking);
    work_->run([this](std::stop_token const& stop) {
      run([this, fix = options_->locate(stop)] { finishLocating(fix); });
    });
  });
}

void Engine::removeCurrentLocation() {
  run([this] {
    change([](PlaceList& list) { return nimbara::removeCurrentLocation(list); });
    noteLocation(LocationPhase::idle);
  });
}

void Engine::changeSetting(std::string key, std::string text) {
  run([this, key = std::move(key), text = std::move(text)] { apply(settings_->set(key, text)); });
}

void Engine::setStartAtLogin(bool wanted) {
  run([this, wanted] {
    settings_->noteWatchChanging();
    publish();
    work_->run([this, wanted](std::stop_token const& stop) {
      settings_->setStartAtLogin(wanted, stop);
      publish();
    });
  });
}

}  // namespace nimbara
