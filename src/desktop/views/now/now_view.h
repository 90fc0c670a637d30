// The page of the present as display values: texts in the user's units and language, and the numbers that
// pictures are drawn from. Pure functions of a snapshot; nothing here knows the window's toolkit.
#pragma once

#include "app/places/place.h"
#include "app/state/weather_state.h"
#include "desktop/views/sky/sky_scene.h"
#include "desktop/views/view_context.h"
#include "desktop/views/view_fields.h"
#include "platform/settings/settings.h"

#include <optional>
#include <string>
#include <vector>

namespace nimbara {

struct NowView {
  bool hasPlace = false;
  bool hasWeather = false;
  bool hasReading = false;  ///< the temperature and all that goes with it are known
  bool isLoading = false;
  std::string place;
  std::string area;  ///< region and country
  std::string localTime;
  std::string temperature;
  std::string condition;
  std::string feelsLike;
  std::string range;     ///< the day's highest and lowest
  std::string sentence;  ///< what the next hours bring
  std::string station;   ///< what of the present is the user's station's, and of what it is not and why
  std::string mark;      ///< the temperature is the station's: whose and how old; empty where it is not
  std::string source;
  std::string age;
  std::string notice;      ///< older data, or why there are none; empty when all is well
  bool isFailure = false;  ///< the notice is an error
  std::string brief;       ///< today, tonight and tomorrow, a line each
  std::string advice;      ///< the next good hours of activities, a line each
  std::string summary;     ///< the whole in one sentence, for those who listen
  std::string sky;         ///< the picture's name
  bool isDay = true;
  std::string skyTop;  ///< colours behind the page's head
  std::string skyBottom;

  bool operator==(NowView const&) const = default;
};

template <>
inline constexpr auto viewFields<NowView> = FieldList{
    viewField("hasPlace", &NowView::hasPlace),     viewField("hasWeather", &NowView::hasWeather),
    viewField("hasReading", &NowView::hasReading), viewField("isLoading", &NowView::isLoading),
    viewField("place", &NowView::place),           viewField("area", &NowView::area),
    viewField("localTime", &NowView::localTime),   viewField("temperature", &NowView::temperature),
    viewField("condition", &NowView::condition),   viewField("feelsLike", &NowView::feelsLike),
    viewField("range", &NowView::range),           viewField("sentence", &NowView::sentence),
    viewField("station", &NowView::station),       viewField("mark", &NowView::mark),
    viewField("source", &NowView::source),         viewField("age", &NowView::age),
    viewField("notice", &NowView::notice),         viewField("isFailure", &NowView::isFailure),
    viewField("summary", &NowView::summary),       viewField("sky", &NowView::sky),
    viewField("isDay", &NowView::isDay),           viewField("skyTop", &NowView::skyTop),
    viewField("skyBottom", &NowView::skyBottom),   viewField("brief", &NowView::brief),
    viewField("advice", &NowView::advice),
};

/// One measured detail. Details that the provider lacks have no tile.
struct TileView {
  std::string kind;  ///< "wind", "humidity", …: which picture goes with it
  std::string title;
  std::string value;
  std::string note;
  double share = 0;       ///< of the gauge, 0-1
  double direction = 0;   ///< of the wind, degrees from north where it comes from
  std::string scaleFrom;  ///< what the gauge's ends stand for; empty for shares of a hundred
  std::string scaleTo;
  std::string mark;  ///< the value is the user's station's: whose and how old

  bool operator==(TileView const&) const = default;
};

template <>
inline constexpr auto viewFields<TileView> = FieldList{
    viewField("kind", &TileView::kind),           viewField("title", &TileView::title),
    viewField("value", &TileView::value),         viewField("note", &TileView::note),
    viewField("share", &TileView::share),         viewField("direction", &TileView::direction),
    viewField("scaleFrom", &TileView::scaleFrom), viewField("scaleTo", &TileView::scaleTo),
    viewField("mark", &TileView::mark),
};

/// Sun and moon of the day.
struct SkyView {
  std::string sun;      ///< rise, set, length of the day, or that it does neither
  std::string sunrise;  ///< "06:22"; empty without
  std::string sunset;
  double sunShare = -1;  ///< of the way from rise to set, 0-1; beyond at night
  bool hasArc = false;
  bool sunIsUp = false;
  std::string moon;  ///< phase and illumination
  std::string moonTimes;
  double moonIllumination = 0;  ///< 0-1
  bool moonIsWaxing = true;
  bool fromSouth = false;  ///< seen from the southern hemisphere, where the lit side is the other one

  bool operator==(SkyView const&) const = default;
};

template <>
inline constexpr auto viewFields<SkyView> = FieldList{
    viewField("sun", &SkyView::sun),
    viewField("sunrise", &SkyView::sunrise),
    viewField("sunset", &SkyView::sunset),
    viewField("sunShare", &SkyView::sunShare),
    viewField("hasArc", &SkyView::hasArc),
    viewField("sunIsUp", &SkyView::sunIsUp),
    viewField("moon", &SkyView::moon),
    viewField("moonTimes", &SkyView::moonTimes),
    viewField("moonIllumination", &SkyView::moonIllumination),
    viewField("moonIsWaxing", &SkyView::moonIsWaxing),
    viewField("fromSouth", &SkyView::fromSouth),
};

NowView nowView(WeatherState const& state, std::optional<Place> const& place, ViewContext const& context,
                Settings const* settings = nullptr);
std::vector<TileView> tileViews(WeatherState const& state, ViewContext const& context);
SkyView skyView(WeatherState const& state, ViewContext const& context);
/// The sky over the place as it is now; an empty one without weather.
SkyScene sceneView(WeatherState const& state, ViewContext const& context);

}  // namespace nimbara
