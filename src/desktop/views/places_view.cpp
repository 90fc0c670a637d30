#include "desktop/views/places_view.h"

#include "desktop/views/now_view.h"
#include "model/present.h"

namespace nimbara {

namespace {

std::string areaText(std::string const& region, std::string const& country, std::string const& name) {
  std::string area = region == name ? std::string() : region;
  if (!country.empty() && country != name) area += (area.empty() ? "" : ", ") + country;
  return area;
}

void fillWeather(PlaceView& view, WeatherData const& data, ViewContext const& context) {
  view.age = ageText(data.fetchedAt, context.now, context.texts);
  view.isDay = isDayAt(data, context.now);
  if (auto const present = presentAt(data, context.now)) {
    view.temperature = context.degrees(present->tempC, present->tempF);
    view.sky = skyName(present->condition);
    view.sentence += ", " + view.temperature + ", " + context.condition(present->condition);
  }
  if (DailyForecast const* const day = dayAt(data, context.now)) {
    view.range = context.texts.format("desktop.range", context.degrees(day->maxTempC, day->maxTempF),
                                      context.degrees(day->minTempC, day->minTempF));
    view.sentence += ", " + view.range;
  }
}

}  // namespace

std::vector<PlaceView> placeViews(PlaceList const& list, KeptForecasts const& kept,
                                  ViewContext const& context) {
  std::vector<PlaceView> views;
  views.reserve(list.places.size());
  for (SavedPlace const& place : list.places) {
    PlaceView& view = views.emplace_back();
    view.id = place.id.text();
    view.name = place.name;
    view.area =
        areaText(place.region, place.countryName.empty() ? place.country : place.countryName, place.name);
    view.isSelected = list.selected == place.id;
    view.sky = "unknown";
    view.sentence = place.name;
    auto const found = kept.find(place.id);
    if (found != kept.end() && found->second) fillWeather(view, *found->second, context);
  }
  return views;
}

std::vector<FoundView> foundViews(std::vector<FoundPlace> const& found, PlaceList const& list) {
  std::vector<FoundView> views;
  views.reserve(found.size());
  for (FoundPlace const& place : found) {
    std::string const area = areaText(place.region, place.country, place.name);
    views.push_back({place.name, area, list.findNear(place.coordinate) != nullptr,
                     place.name + (area.empty() ? "" : ", " + area)});
  }
  return views;
}

}  // namespace nimbara
