// Saved and found places as display values. Pure functions.
#pragma once

#include "app/place_search.h"
#include "app/places.h"
#include "desktop/views/view_context.h"
#include "desktop/views/view_fields.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace nimbara {

struct PlaceView {
  std::string id;
  std::string name;
  std::string area;
  bool isSelected = false;
  std::string temperature;  ///< as far as a forecast of the place is kept
  std::string range;
  std::string sky;
  bool isDay = true;
  std::string age;
  std::string sentence;

  bool operator==(PlaceView const&) const = default;
};

template <>
inline constexpr auto viewFields<PlaceView> = std::tuple{
    viewField("placeId", &PlaceView::id),
    viewField("name", &PlaceView::name),
    viewField("area", &PlaceView::area),
    viewField("isSelected", &PlaceView::isSelected),
    viewField("temperature", &PlaceView::temperature),
    viewField("range", &PlaceView::range),
    viewField("sky", &PlaceView::sky),
    viewField("isDay", &PlaceView::isDay),
    viewField("age", &PlaceView::age),
    viewField("sentence", &PlaceView::sentence),
};

struct FoundView {
  std::string name;
  std::string area;
  bool isSaved = false;
  std::string sentence;

  bool operator==(FoundView const&) const = default;
};

template <>
inline constexpr auto viewFields<FoundView> = std::tuple{
    viewField("name", &FoundView::name),
    viewField("area", &FoundView::area),
    viewField("isSaved", &FoundView::isSaved),
    viewField("sentence", &FoundView::sentence),
};

/// What is kept of the places' forecasts.
using KeptForecasts = std::map<Uuid, std::shared_ptr<WeatherData const>>;

std::vector<PlaceView> placeViews(PlaceList const& list, KeptForecasts const& kept,
                                  ViewContext const& context);
std::vector<FoundView> foundViews(std::vector<FoundPlace> const& found, PlaceList const& list);

}  // namespace nimbara
