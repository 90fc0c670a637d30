#include "cli/service/service_snapshot.h"

#include "app/places/place_lookup.h"
#include "app/places/place_resolver.h"
#include "app/services/composition.h"
#include "app/services/feed_services.h"
#include "app/state/places_state.h"
#include "base/text/number.h"
#include "feeds/alerts/gov_alert_service.h"
#include "feeds/stations/station_shown.h"
#include "model/process.h"

#include <algorithm>

namespace nimbara {

namespace {

constexpr char kHere[] = "current";

ServicePlace of(std::string id, Place place, std::string country, bool isSelected) {
  ServicePlace made;
  made.id = std::move(id);
  made.place = std::move(place);
  made.country = std::move(country);
  made.isSelected = isSelected;
  return made;
}

}  // namespace

ServicePlace const* ServiceSnapshot::find(std::string const& text) const {
  auto const first = [this](auto const& isMeant) {
    auto const found = std::ranges::find_if(places, isMeant);
    return found == places.end() ? nullptr : &*found;
  };
  if (text.empty()) return first(&ServicePlace::isSelected);
  if (auto const* const named = first([&](ServicePlace const& each) { return each.id == text; }))
    return named;
  SavedPlace const* const saved = savedPlaceMeant(list, text);
  if (saved == nullptr) return nullptr;
  return first([id = saved->id.text()](ServicePlace const& each) { return each.id == id; });
}

std::string coordinateText(Coordinate coordinate) {
  return plainDecimal(coordinate.latitude) + "," + plainDecimal(coordinate.longitude);
}

std::vector<ServicePlace> servicePlaces(PlacesState const& places, std::optional<Place> const& shown) {
  std::vector<ServicePlace> all;
  all.reserve(places.list.places.size() + 2);
  bool isShownKnown = !shown;
  auto const isShown = [&](Coordinate at) {
    bool const is = !isShownKnown && shown->coordinate == at;
    isShownKnown = isShownKnown || is;
    return is;
  };
  for (SavedPlace const& saved : places.list.places) {
    all.push_back(of(saved.id.text(), placeOf(saved), saved.country, isShown(saved.coordinate)));
  }
  if (places.list.offersCurrentLocation && places.location.here) {
    Place const& here = *places.location.here;
    all.push_back(of(kHere, here, govAlertPlace(here.coordinate).countryCode, isShown(here.coordinate)));
  }
  // One that is looked at without being saved.
  if (!isShownKnown) {
    all.push_back(
        of(coordinateText(shown->coordinate), *shown, govAlertPlace(shown->coordinate).countryCode, true));
  }
  return all;
}

void readKept(ServicePlace& place, Composition& services, Instant now) {
  FeedServices& feeds = services.feeds();
  if (auto answer = services.forecasts().cached(place.place)) {
    overlaid(answer->data, feeds.stations().read(StationNeed::kept), now);
    place.forecast = std::make_shared<ForecastAnswer const>(std::move(*answer));
  }
  GovAlertPlace const asked = govAlertPlace(place.place.coordinate);
  GovAlerts official = feeds.govAlerts().keptAlerts(asked);
  place.official.coverage = coverageOf(official, asked.countryCode);
  place.official.alerts = std::move(official.alerts);
  place.nowcast = feeds.nowcast().kept(place.place.coordinate);
}

LineContext lineContext(ServicePlace const& place, Wording const& wording, Instant now) {
  return {*place.forecast, place.official, *wording.texts, wording.units, now};
}

}  // namespace nimbara
