#include "desktop/views/air/year_view.h"

#include "feeds/climate/climate_service.h"
#include "model/process.h"
#include "model/upcoming_hours.h"

#include <algorithm>
#include <chrono>

namespace nimbara {

namespace {

constexpr int kYearSteps = 6;
constexpr int kMeteogramSteps = 6;
constexpr std::chrono::hours kNoon{12};

double hoursBetween(Instant from, Instant to) {
  return std::chrono::duration<double, std::ratio<3600>>(to - from).count();
}

std::vector<std::string> monthNames(ViewContext const& context) {
  std::vector<std::string> names;
  constexpr unsigned kMonths = 12;
  names.reserve(kMonths);
  TimeWords const words(context.texts, Calendar::utc());
  for (unsigned month = 1; month <= kMonths; ++month) {
    Date const middle{std::chrono::year(2020), std::chrono::month(month), std::chrono::day(15)};
    names.push_back(words.format(LocalTime(std::chrono::local_days(middle)), "MMMM"));
  }
  return names;
}

}  // namespace

YearCurve yearCurve(ClimateOutlook const& outlook, ViewContext const& context) {
  YearCurve curve;
  if (!outlook.normals) return curve;
  auto const shown = [&](double celsius) { return convert(celsius, context.units.temperature); };
  curve.days.reserve(outlook.normals->size());
  for (std::size_t i = 0; i < outlook.normals->size(); ++i) {
    auto const& day = (*outlook.normals)[i];
    if (!day) continue;
    curve.days.push_back({static_cast<double>(i), shown(day->p10), shown(day->p20), shown(day->p50),
                          shown(day->p80), shown(day->p90)});
  }
  if (curve.days.empty()) return curve;
  double lowest = std::ranges::min(curve.days, {}, &YearDay::p10).p10;
  double highest = std::ranges::max(curve.days, {}, &YearDay::p90).p90;
  if (outlook.today && outlook.bias) {
    curve.todayX = static_cast<double>(climateIndex(outlook.date));
    curve.today = shown(*outlook.today - *outlook.bias);
    lowest = std::min(lowest, curve.today);
    highest = std::max(highest, curve.today);
  }
  curve.axis = roundAxis(lowest, highest, kYearSteps);
  curve.months = monthNames(context);
  curve.unit = symbol(context.units.temperature);
  return curve;
}

void addUsual(Meteogram& meteogram, WeatherData const& data, ClimateOutlook const& outlook,
              ViewContext const& context) {
  if (!outlook.normals || meteogram.points.empty()) return;
  Calendar const calendar = calendarOf(data, context.fallback);
  auto const hours = upcomingHours(data.allHourly, context.now);
  if (hours.empty()) return;
  Instant const begin = hours.front().date;
  double const bias = outlook.bias.value_or(0);
  auto const shown = [&](double celsius) { return convert(celsius + bias, context.units.temperature); };
  // From the noon before the first hour to the one after the last.
  for (int day = -1;
       hoursBetween(begin, calendar.startOfDay(addDays(calendar.day(begin), day))) < meteogram.hours + 24;
       ++day) {
    Date const date = addDays(calendar.day(begin), day);
    auto const usual = climateOf(*outlook.normals, date);
    if (!usual) continue;
    meteogram.usual.push_back(
        {hoursBetween(begin, calendar.startOfDay(date) + kNoon), shown(usual->p20), shown(usual->p80)});
  }
  if (meteogram.usual.empty()) return;
  double const low = std::ranges::min(meteogram.usual, {}, &UsualPoint::low).low;
  double const high = std::ranges::max(meteogram.usual, {}, &UsualPoint::high).high;
  meteogram.temperature = roundAxis(std::min(meteogram.temperature.from, low),
                                    std::max(meteogram.temperature.to, high), kMeteogramSteps);
}

}  // namespace nimbara
