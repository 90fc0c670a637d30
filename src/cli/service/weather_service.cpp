#include "cli/service/weather_service.h"

#include "app/engine/engine.h"
#include "app/services/composition.h"
#include "app/services/feed_services.h"
#include "app/state/places_state.h"
#include "cli/service/place_query.h"
#include "cli/service/service_records.h"
#include "cli/service/warning_news.h"
#include "feeds/alerts/gov_alert_service.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace nimbara {

WeatherService::WeatherService(Surroundings surroundings) : around_(std::move(surroundings)) {}

void WeatherService::follow(Engine& engine) {
  engine_ = &engine;
}

/// First nobody works any more, then nobody calls.
void WeatherService::stop() {
  work_.stop();
  bus_.reset();
}

void WeatherService::lookAgain() {
  if (engine_ == nullptr || isLooking_.exchange(true)) return;
  work_.run([this](std::stop_token const&) { look(); });
}

void WeatherService::noteForecast() {
  lookAgain();
  if (engine_ == nullptr || isChecking_.exchange(true)) return;
  work_.run([this](std::stop_token const& stop) {
    checkWarnings(stop);
    isChecking_ = false;
    lookAgain();
  });
}

std::shared_ptr<ServiceSnapshot const> WeatherService::snapshot() const {
  std::lock_guard const lock(mutex_);
  return snapshot_;
}

std::shared_ptr<ServiceSnapshot const> WeatherService::read(Engine& engine) const {
  PlacesState places = engine.placesState();
  auto made = std::make_shared<ServiceSnapshot>();
  made->wording = *engine.wording();
  made->places = servicePlaces(places, engine.shownPlace());
  made->list = std::move(places.list);
  auto const services = engine.services();
  for (ServicePlace& place : made->places) readKept(place, *services, around_.clock.now());
  return made;
}

/// The name on the bus is asked for when there is something to say under it.
void WeatherService::look() {
  std::lock_guard const turn(turn_);
  isLooking_ = false;
  auto now = read(*engine_);
  std::shared_ptr<ServiceSnapshot const> before;
  {
    std::lock_guard const lock(mutex_);
    before = std::exchange(snapshot_, now);
  }
  if (!bus_) {
    bus_ = around_.publish(*this);
  } else {
    bus_->announce(warningNews(*before, *now, around_.clock.now()));
  }
}

bool WeatherService::isChecked(ServicePlace const& place) const {
  auto const services = engine_.load()->services();
  GovAlerts const kept = services->feeds().govAlerts().keptAlerts(govAlertPlace(place.place.coordinate));
  auto const checkedAt = kept.checkedAt();
  return !kept.isCovered() || (checkedAt && around_.clock.now() - *checkedAt < kWarningsAge);
}

void WeatherService::checkWarnings(std::stop_token const& stop) const {
  auto const known = read(*engine_);
  for (ServicePlace const& place : known->places) {
    if (stop.stop_requested()) return;
    if (isChecked(place)) continue;
    auto const services = engine_.load()->services();
    std::ignore = services->feeds().govAlerts().fetchAlerts(govAlertPlace(place.place.coordinate), {}, stop);
  }
}

ServiceProperties WeatherService::properties() {
  return propertiesOf(*snapshot(), around_.clock.now());
}

ServiceRecords WeatherService::places() {
  auto const known = snapshot();
  ServiceRecords records;
  records.reserve(known->places.size());
  std::ranges::transform(known->places, std::back_inserter(records), placeRecord);
  return records;
}

std::optional<ServiceRecord> WeatherService::current(std::string const& place) {
  auto const known = snapshot();
  ServicePlace const* const found = known->find(place);
  if (found == nullptr) return std::nullopt;
  return currentRecord(*found, known->wording, around_.clock.now());
}

std::optional<ServiceRecords> WeatherService::hours(std::string const& place) {
  auto const known = snapshot();
  ServicePlace const* const found = known->find(place);
  if (found == nullptr) return std::nullopt;
  return hourRecords(*found, known->wording, around_.clock.now());
}

std::optional<ServiceWarnings> WeatherService::warnings(std::string const& place) {
  auto const known = snapshot();
  ServicePlace const* const found = known->find(place);
  if (found == nullptr) return std::nullopt;
  return warningsOf(*found, around_.clock.now());
}

std::optional<ServiceNowcast> WeatherService::nowcast(std::string const& place) {
  auto const known = snapshot();
  ServicePlace const* const found = known->find(place);
  if (found == nullptr) return std::nullopt;
  askNowcast(*found);
  return nowcastOf(*found, known->wording, around_.clock.now());
}

/// For the next call; the service of nowcasts knows how often it may ask.
void WeatherService::askNowcast(ServicePlace const& place) {
  {
    std::lock_guard const lock(mutex_);
    auto const now = around_.clock.steadyNow();
    auto const [asked, isFirst] = nowcastsAsked_.try_emplace(place.id, now);
    if (!isFirst && now - asked->second < kRefreshRest) return;
    asked->second = now;
  }
  work_.run([this, at = place.place.coordinate](std::stop_token const& stop) {
    auto const services = engine_.load()->services();
    std::ignore = services->feeds().nowcast().fetch(at, stop);
    if (!stop.stop_requested()) lookAgain();
  });
}

bool WeatherService::refresh() {
  {
    std::lock_guard const lock(mutex_);
    auto const now = around_.clock.steadyNow();
    if (refreshedAt_ && now - *refreshedAt_ < kRefreshRest) return false;
    refreshedAt_ = now;
  }
  engine_.load()->refresh();
  return true;
}

std::vector<SearchHit> WeatherService::search(std::string const& text) {
  return searchPlaces(text, *snapshot(), around_.clock.now());
}

std::optional<SearchHit> WeatherService::found(std::string const& id) {
  return foundPlace(id, *snapshot(), around_.clock.now());
}

void WeatherService::open(std::string const& id, std::string const& activationToken) {
  if (!id.empty() && !found(id)) return;
  auto const known = snapshot();
  // The window knows saved places by their identifiers, all others by where they are.
  ServicePlace const* const place = id.empty() ? nullptr : known->find(id);
  bool const isSaved = place != nullptr && Uuid::parse(place->id);
  std::string const wanted = place == nullptr || isSaved ? id : coordinateText(place->place.coordinate);
  work_.run(
      [this, wanted, activationToken](std::stop_token const&) { around_.open(wanted, activationToken); });
}

}  // namespace nimbara
