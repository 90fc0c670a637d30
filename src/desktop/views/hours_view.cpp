#include "desktop/views/hours_view.h"

#include "base/words/compass_point.h"
#include "base/words/list_text.h"
#include "desktop/views/sky/sky_colours.h"
#include "model/day_summary.h"
#include "model/present.h"
#include "model/process.h"
#include "model/upcoming_hours.h"

#include <algorithm>
#include <functional>
#include <span>

namespace nimbara {

namespace {

constexpr std::size_t kDays = 7;
constexpr int kLeastChance = 5;
/// Millimetres an hour that fill a bar.
constexpr double kFullBarMM = 5;

struct Range {
  double lowest = 0;
  double highest = 0;

  double share(double value) const { return highest > lowest ? (value - lowest) / (highest - lowest) : 0.5; }
};

template <class List, class Lowest, class Highest>
Range rangeOf(List const& list, Lowest lowest, Highest highest) {
  if (list.empty()) return {};
  Range range{std::invoke(lowest, list.front()), std::invoke(highest, list.front())};
  for (auto const& entry : list) {
    range.lowest = std::min(range.lowest, std::invoke(lowest, entry));
    range.highest = std::max(range.highest, std::invoke(highest, entry));
  }
  return range;
}

std::string joined(std::vector<std::string> const& parts) {
  std::string out;
  for (std::string const& part : parts) {
    if (!part.empty()) out += (out.empty() ? "" : ", ") + part;
  }
  return out;
}

/// Nothing for a value that is not known.
std::string labelled(std::string_view key, std::string const& value, ViewContext const& context) {
  return value.empty() ? std::string() : context.text(key) + " " + value;
}

std::string chanceText(int chance) {
  return chance >= kLeastChance ? percent(chance) : std::string();
}

/// The chance of rain or snow in %; nothing where the provider does not tell it.
std::optional<int> chanceOf(HourlyForecast const& hour) {
  if (!hour.knows(ForecastValue::precipitationChance)) return std::nullopt;
  return std::max(hour.chanceOfRain, hour.chanceOfSnow);
}

std::string windText(HourlyForecast const& hour, ViewContext const& context) {
  if (!hour.knows(ForecastValue::windSpeed)) return {};
  return context.wind(hour.windSpeedKmph) + (hour.windDirection.empty() ? "" : " ") +
         compassPoint(hour.windDirection, context.texts);
}

/// "0.4 mm (35 %)", or the one of the two that is known.
std::string precipitationText(HourlyForecast const& hour, ViewContext const& context) {
  auto const chance = chanceOf(hour);
  std::string likely = chance ? percent(*chance) : std::string();
  if (!hour.knows(ForecastValue::precipitation)) return likely;
  return context.precipitation(hour.precipMM) + (chance ? " (" + likely + ")" : "");
}

HourView hourView(HourlyForecast const& hour, WeatherData const& data, Calendar const& calendar,
                  ViewContext const& context) {
  TimeWords const words(context.texts, calendar);
  HourView view;
  view.startsDay = hour.hour == 0;
  view.hour = view.startsDay ? words.format(hour.date, "EE") : words.hourColumn(hour.date);
  view.sky = skyName(hour.condition);
  view.isDay = isDayIn(data, hour);
  view.temperature = context.degrees(hour.tempC, hour.tempF);
  view.chance = chanceText(chanceOf(hour).value_or(0));
  view.amount = hour.precipMM > 0 ? context.precipitation(hour.precipMM) : std::string();
  view.wetness = std::clamp(hour.precipMM / kFullBarMM, 0.0, 1.0);
  if (hour.knows(ForecastValue::windSpeed)) view.wind = display(hour.windSpeedKmph, context.units.wind);
  view.direction = compassDegrees(hour.windDirection).value_or(0);
  view.sentence = joined({words.weekday(hour.date) + " " + words.clock(hour.date),
                          context.condition(hour.condition, view.isDay), view.temperature,
                          view.chance.empty() ? "" : context.texts.format("desktop.chance", view.chance),
                          view.amount, labelled("report.wind", windText(hour, context), context)});
  return view;
}

std::vector<HourView> viewsOf(std::span<HourlyForecast const> hours, WeatherData const& data,
                              ViewContext const& context) {
  Calendar const calendar = calendarOf(data, context.fallback);
  Range const range = rangeOf(hours, &HourlyForecast::tempC, &HourlyForecast::tempC);
  std::vector<HourView> views;
  views.reserve(hours.size());
  for (HourlyForecast const& hour : hours) {
    views.push_back(hourView(hour, data, calendar, context));
    views.back().warmth = range.share(hour.tempC);
  }
  return views;
}

/// Today and the days after it.
std::span<DailyForecast const> daysAhead(WeatherData const& data, ViewContext const& context) {
  Calendar const calendar = calendarOf(data, context.fallback);
  Date const today = calendar.day(context.now);
  auto const first = std::ranges::find_if(
      data.daily, [&](DailyForecast const& day) { return calendar.day(day.date) >= today; });
  std::span<DailyForecast const> const days(first, data.daily.end());
  return days.first(std::min(days.size(), kDays));
}

DayView dayView(DailyForecast const& day, WeatherData const& data, Range const& range,
                Calendar const& calendar, ViewContext const& context) {
  TimeWords const words(context.texts, calendar);
  DaySummary const summary = summarize(day);
  DayView view;
  view.name =
      calendar.isSameDay(day.date, context.now) ? context.text("report.today") : words.weekday(day.date);
  view.date = words.format(day.date, context.texts.text("desktop.dayDate"));
  view.sky = skyName(summary.condition.value_or(WeatherConditionCode::unknown));
  view.isDay = hasDaylight(data, day);
  view.condition = context.condition(summary.condition.value_or(WeatherConditionCode::unknown), view.isDay);
  view.lowest = context.degrees(day.minTempC, day.minTempF);
  view.highest = context.degrees(day.maxTempC, day.maxTempF);
  view.barFrom = range.share(day.minTempC);
  view.barTo = range.share(day.maxTempC);
  view.fromColour = hexText(temperatureColour(day.minTempC));
  view.middleColour = hexText(temperatureColour((day.minTempC + day.maxTempC) / 2));
  view.toColour = hexText(temperatureColour(day.maxTempC));
  view.chance = chanceText(summary.precipitationChance.value_or(0));
  double const amount = summary.precipitationMM.value_or(0);
  view.amount = amount > 0.05 ? context.precipitation(amount) : "";
  if (summary.strongestWindKmph) view.wind = context.wind(*summary.strongestWindKmph);
  view.sentence =
      joined({view.name, view.condition, context.texts.format("desktop.range", view.highest, view.lowest),
              view.chance.empty() ? "" : context.texts.format("desktop.chance", view.chance), view.amount,
              labelled("report.wind", view.wind, context)});
  return view;
}

MeteogramPoint pointOf(HourlyForecast const& hour, Instant begin, WeatherData const& data,
                       Calendar const& calendar, ViewContext const& context) {
  Units const& units = context.units;
  TimeWords const words(context.texts, calendar);
  MeteogramPoint point;
  point.x = std::chrono::duration<double, std::ratio<3600>>(hour.date - begin).count();
  point.temperature = convert(hour.tempC, units.temperature);
  point.feelsLike = convert(hour.feelsLikeC, units.temperature);
  point.precipitation = convert(hour.precipMM, units.precipitation);
  point.chance = chanceOf(hour).value_or(0) / 100.0;
  point.wind = convert(hour.windSpeedKmph, units.wind);
  point.gust = convert(std::max(hour.windGustKmph, hour.windSpeedKmph), units.wind);
  point.direction = compassDegrees(hour.windDirection).value_or(0);
  point.pressure = convert(hour.pressure, units.pressure);
  point.clouds = hour.cloudCover / 100.0;
  point.isDay = isDayIn(data, hour);
  point.when = words.weekday(hour.date) + " " + words.clock(hour.date);
  std::string const feels =
      context.texts.format("report.feelsLike", context.degrees(hour.feelsLikeC, hour.feelsLikeF));
  point.readings =
      joined({context.condition(hour.condition, point.isDay), context.temperature(hour.tempC, hour.tempF),
              feels, precipitationText(hour, context), windText(hour, context),
              hour.knows(ForecastValue::windGust) && hour.windGustKmph > hour.windSpeedKmph
                  ? context.texts.format("report.gusts", context.wind(hour.windGustKmph))
                  : "",
              hour.has(WeatherDetailField::pressure) ? context.pressure(hour.pressure) : "",
              hour.has(WeatherDetailField::cloudCover)
                  ? context.text("report.clouds") + " " + percent(hour.cloudCover)
                  : ""});
  return point;
}

void setAxes(Meteogram& out) {
  using Point = MeteogramPoint;
  auto const warmth = rangeOf(
      out.points, [](Point const& p) { return std::min(p.temperature, p.feelsLike); },
      [](Point const& p) { return std::max(p.temperature, p.feelsLike); });
  out.temperature = roundAxis(warmth.lowest, warmth.highest, 6);
  bool const isInches = out.precipitationUnit == symbol(PrecipitationUnit::inch);
  double const leastRain = isInches ? 0.2 : 4;
  out.precipitation = roundAxis(
      0, std::max(leastRain, rangeOf(out.points, &Point::precipitation, &Point::precipitation).highest), 3);
  out.wind = roundAxis(0, std::max(10.0, rangeOf(out.points, &Point::gust, &Point::gust).highest), 3);
  auto const pressure = rangeOf(out.points, &Point::pressure, &Point::pressure);
  out.pressure = roundAxis(pressure.lowest, pressure.highest, 3);
}

/// Weekdays come again in the second week.
void nameWithDate(DayView& view, std::string weekday, ViewContext const& context) {
  std::string const behindName = view.sentence.substr(view.name.size());
  appendClause(view.name, view.date, context.texts);
  view.sentence = view.name + behindName;
  view.name = std::move(weekday);
  appendClause(view.name, view.date, context.texts);
}

}  // namespace

std::vector<HourView> hourViews(WeatherData const& data, ViewContext const& context) {
  constexpr std::chrono::hours kAhead{24};
  auto hours = upcomingHours(data.allHourly, context.now);
  auto const beyond = std::ranges::find_if(
      hours, [&](HourlyForecast const& hour) { return hour.date >= context.now + kAhead; });
  return viewsOf(hours.first(static_cast<std::size_t>(beyond - hours.begin())), data, context);
}

DayLists dayLists(WeatherData const& data, std::vector<DailyForecast> const& beyond,
                  ViewContext const& context) {
  Calendar const calendar = calendarOf(data, context.fallback);
  auto const days = daysAhead(data, context);
  Range range = rangeOf(days, &DailyForecast::minTempC, &DailyForecast::maxTempC);
  if (!days.empty() && !beyond.empty()) {
    Range const farther = rangeOf(beyond, &DailyForecast::minTempC, &DailyForecast::maxTempC);
    range = {std::min(range.lowest, farther.lowest), std::max(range.highest, farther.highest)};
  }
  auto const viewsOn = [&](auto const& list) {
    std::vector<DayView> views;
    views.reserve(list.size());
    for (DailyForecast const& day : list) views.push_back(dayView(day, data, range, calendar, context));
    return views;
  };
  std::vector<DayView> farther = viewsOn(beyond);
  TimeWords const words(context.texts, calendar);
  for (std::size_t i = 0; i < farther.size(); ++i)
    nameWithDate(farther[i], words.format(beyond[i].date, "EEE"), context);
  return {viewsOn(days), std::move(farther)};
}

std::vector<DayView> dayViews(WeatherData const& data, ViewContext const& context) {
  return dayLists(data, {}, context).days;
}

std::vector<HourView> dayHourViews(WeatherData const& data, std::size_t index, ViewContext const& context) {
  auto const days = daysAhead(data, context);
  if (index >= days.size()) return {};
  std::span<HourlyForecast const> hours(days[index].hourly);
  Calendar const calendar = calendarOf(data, context.fallback);
  if (calendar.isSameDay(days[index].date, context.now)) hours = upcomingHours(hours, context.now);
  return viewsOf(hours, data, context);
}

Axis roundAxis(double lowest, double highest, int steps) {
  if (highest - lowest < 1e-6) return roundAxis(lowest - 0.5, lowest + 0.5, steps);
  double const span = highest - lowest;
  double const power = std::pow(10, std::floor(std::log10(span / steps)));
  for (double const factor : {1.0, 2.0, 5.0, 10.0, 20.0}) {
    double const step = factor * power;
    Axis const axis{std::floor(lowest / step) * step, std::ceil(highest / step) * step, step};
    if (axis.to > axis.from && (axis.to - axis.from) / step <= steps + 1e-9) return axis;
  }
  return {lowest, highest, span};
}

MeteogramPoint meteogramPoint(HourlyForecast const& hour, Instant begin, WeatherData const& data,
                              ViewContext const& context) {
  return pointOf(hour, begin, data, calendarOf(data, context.fallback), context);
}

Meteogram meteogramOf(WeatherData const& data, ViewContext const& context) {
  Meteogram out;
  Calendar const calendar = calendarOf(data, context.fallback);
  TimeWords const words(context.texts, calendar);
  auto const hours = upcomingHours(data.allHourly, context.now);
  if (hours.size() < 2) return out;
  Instant const begin = hours.front().date;
  Instant const end = calendar.startOfDay(addDays(calendar.day(begin), kDays));
  for (HourlyForecast const& hour : hours) {
    if (hour.date >= end) break;
    out.points.push_back(pointOf(hour, begin, data, calendar, context));
    out.hasPressure = out.hasPressure || hour.has(WeatherDetailField::pressure);
    out.hasClouds = out.hasClouds || hour.has(WeatherDetailField::cloudCover);
  }
  out.hours = out.points.back().x + 1;
  for (int day = 0; day < static_cast<int>(kDays); ++day) {
    Instant const start = std::max(begin, calendar.startOfDay(addDays(calendar.day(begin), day)));
    double const x = std::chrono::duration<double, std::ratio<3600>>(start - begin).count();
    if (x < out.hours) out.days.push_back({x, words.format(start, "EE d")});
  }
  out.temperatureUnit = symbol(context.units.temperature);
  out.precipitationUnit = symbol(context.units.precipitation);
  out.windUnit = symbol(context.units.wind);
  out.pressureUnit = symbol(context.units.pressure);
  setAxes(out);
  return out;
}

}  // namespace nimbara
