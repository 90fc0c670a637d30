// Hours and days of a forecast as display values, and the curves of the meteogram. Pure functions of a
// forecast.
#pragma once

#include "desktop/views/view_context.h"
#include "desktop/views/view_fields.h"

#include <optional>
#include <string>
#include <vector>

namespace nimbara {

struct HourView {
  std::string hour;  ///< "15", or the day's short name at its beginning
  bool startsDay = false;
  std::string sky;
  bool isDay = true;
  std::string temperature;
  double warmth = 0;   ///< of the temperature among those of the list, 0-1
  std::string chance;  ///< of rain or snow; empty where there is next to none
  std::string amount;
  double wetness = 0;  ///< of the bar, 0-1
  std::string wind;
  double direction = 0;  ///< where the wind comes from, degrees from north
  std::string sentence;  ///< the whole, for those who listen

  bool operator==(HourView const&) const = default;
};

template <>
inline constexpr auto viewFields<HourView> = FieldList{
    viewField("hour", &HourView::hour),
    viewField("startsDay", &HourView::startsDay),
    viewField("sky", &HourView::sky),
    viewField("isDay", &HourView::isDay),
    viewField("temperature", &HourView::temperature),
    viewField("warmth", &HourView::warmth),
    viewField("chance", &HourView::chance),
    viewField("amount", &HourView::amount),
    viewField("wetness", &HourView::wetness),
    viewField("wind", &HourView::wind),
    viewField("direction", &HourView::direction),
    viewField("sentence", &HourView::sentence),
};

struct DayView {
  std::string name;  ///< "Today", "Sunday"
  std::string date;
  std::string sky;
  bool isDay = true;  ///< not in a polar night
  std::string condition;
  std::string lowest;
  std::string highest;
  double barFrom = 0;  ///< the day's temperatures on the scale of all days, 0-1
  double barTo = 0;
  std::string fromColour;  ///< of the lowest temperature, of the middle and of the highest
  std::string middleColour;
  std::string toColour;
  std::string chance;
  std::string amount;
  std::string wind;
  std::string sentence;

  bool operator==(DayView const&) const = default;
};

template <>
inline constexpr auto viewFields<DayView> = FieldList{
    viewField("name", &DayView::name),
    viewField("date", &DayView::date),
    viewField("sky", &DayView::sky),
    viewField("isDay", &DayView::isDay),
    viewField("condition", &DayView::condition),
    viewField("lowest", &DayView::lowest),
    viewField("highest", &DayView::highest),
    viewField("barFrom", &DayView::barFrom),
    viewField("barTo", &DayView::barTo),
    viewField("fromColour", &DayView::fromColour),
    viewField("middleColour", &DayView::middleColour),
    viewField("toColour", &DayView::toColour),
    viewField("chance", &DayView::chance),
    viewField("amount", &DayView::amount),
    viewField("wind", &DayView::wind),
    viewField("sentence", &DayView::sentence),
};

/// The next 24 hours.
std::vector<HourView> hourViews(WeatherData const& data, ViewContext const& context);
/// Today and the days after it, at most seven, and the days of the outlook on the same scale.
struct DayLists {
  std::vector<DayView> days;
  std::vector<DayView> beyond;
};
DayLists dayLists(WeatherData const& data, std::vector<DailyForecast> const& beyond,
                  ViewContext const& context);
/// Those without an outlook.
std::vector<DayView> dayViews(WeatherData const& data, ViewContext const& context);
/// The hours of the day that stands at `index` of `dayViews`; of today those that are left.
std::vector<HourView> dayHourViews(WeatherData const& data, std::size_t index, ViewContext const& context);

/// One moment of the meteogram. Numbers are in the user's units.
struct MeteogramPoint {
  double x = 0;  ///< hours since the beginning
  double temperature = 0;
  double feelsLike = 0;
  double precipitation = 0;
  double chance = 0;  ///< 0-1
  double wind = 0;
  double gust = 0;
  double direction = 0;
  double pressure = 0;
  double clouds = 0;  ///< 0-1
  bool isDay = true;
  std::string when;      ///< "Sunday 15:00"
  std::string readings;  ///< the values at it, in one line

  bool operator==(MeteogramPoint const&) const = default;
};

/// An axis of round numbers.
struct Axis {
  double from = 0;
  double to = 1;
  double step = 1;

  bool operator==(Axis const&) const = default;
};

struct MeteogramDay {
  double x = 0;
  std::string name;

  bool operator==(MeteogramDay const&) const = default;
};

/// The middle three fifths of the years' daily means, in the user's unit.
struct UsualPoint {
  double x = 0;
  double low = 0;
  double high = 0;

  bool operator==(UsualPoint const&) const = default;
};

/// What the user's station has measured, in the user's units.
struct ObservedPoint {
  double x = 0;
  std::optional<double> temperature = {};
  std::optional<double> wind = {};
  std::optional<double> pressure = {};

  bool operator==(ObservedPoint const&) const = default;
};

struct Meteogram {
  std::vector<MeteogramPoint> points;
  std::vector<MeteogramDay> days;            ///< where days begin
  std::vector<UsualPoint> usual;             ///< empty where it is not known
  std::vector<ObservedPoint> observed = {};  ///< empty without a station
  double now = 0;                            ///< hours since the beginning
  double hours = 0;                          ///< the whole width
  Axis temperature, precipitation, wind, pressure;
  bool hasPressure = false;
  bool hasClouds = false;
  std::string temperatureUnit, precipitationUnit, windUnit, pressureUnit;

  bool operator==(Meteogram const&) const = default;
};

Meteogram meteogramOf(WeatherData const& data, ViewContext const& context);
/// One hour of it.
MeteogramPoint meteogramPoint(HourlyForecast const& hour, Instant begin, WeatherData const& data,
                              ViewContext const& context);

/// The narrowest axis of at most `steps` steps of 1, 2 or 5 times a power of ten that holds both ends.
Axis roundAxis(double lowest, double highest, int steps);

}  // namespace nimbara
