#include "desktop/views/stations/observed_view.h"

#include "app/words/station_text.h"
#include "model/process.h"
#include "model/upcoming_hours.h"

#include <algorithm>
#include <functional>

namespace nimbara {

namespace {

constexpr int kTemperatureSteps = 6;
constexpr int kSteps = 3;

double hoursBetween(Instant from, Instant to) {
  return std::chrono::duration<double, std::ratio<3600>>(to - from).count();
}

void shift(Meteogram& meteogram, double hours) {
  for (MeteogramPoint& point : meteogram.points) point.x += hours;
  for (UsualPoint& point : meteogram.usual) point.x += hours;
  meteogram.hours += hours;
}

/// The hours of the forecast that have passed, before those of the chart.
void addPastHours(Meteogram& meteogram, WeatherData const& data, Instant begin, Instant first,
                  ViewContext const& context) {
  std::vector<MeteogramPoint> past;
  for (HourlyForecast const& hour : data.allHourly) {
    if (hour.date < begin || hour.date >= first) continue;
    past.push_back(meteogramPoint(hour, begin, data, context));
  }
  meteogram.points.insert(meteogram.points.begin(), past.begin(), past.end());
}

/// The name of a day that has nearly passed stands where the chart begins.
void nameDays(Meteogram& meteogram, Instant begin, Calendar const& calendar, ViewContext const& context) {
  TimeWords const words(context.texts, calendar);
  meteogram.days.clear();
  for (int day = 0;; ++day) {
    Instant const start = std::max(begin, calendar.startOfDay(addDays(calendar.day(begin), day)));
    double const x = hoursBetween(begin, start);
    if (x >= meteogram.hours) return;
    meteogram.days.push_back({x, words.format(start, "EE d")});
  }
}

/// Beside what was forecast for the hour.
void sayMeasured(MeteogramPoint& point, Instant begin, std::vector<StationSample> const& samples,
                 ViewContext const& context) {
  constexpr double kHalfHour = 0.5;
  StationSample const* nearest = nullptr;
  double least = kHalfHour;
  for (StationSample const& sample : samples) {
    double const away = std::abs(hoursBetween(begin, sample.at) - point.x);
    if (!sample.temperature || away > least) continue;
    nearest = &sample;
    least = away;
  }
  if (nearest == nullptr) return;
  std::string const value = valueText(StationQuantity::temperature, *nearest->temperature, context.units);
  point.readings +=
      (point.readings.empty() ? "" : ", ") + context.texts.format("desktop.station.observedValue", value);
}

void widen(Axis& axis, std::vector<ObservedPoint> const& observed,
           std::optional<double> ObservedPoint::* value, int steps) {
  for (ObservedPoint const& point : observed) {
    auto const& measured = point.*value;
    if (!measured || (*measured >= axis.from && *measured <= axis.to)) continue;
    axis = roundAxis(std::min(axis.from, *measured), std::max(axis.to, *measured), steps);
  }
}

}  // namespace

void addObserved(Meteogram& meteogram, WeatherData const& data, std::vector<StationSample> const& samples,
                 ViewContext const& context) {
  auto const hours = upcomingHours(data.allHourly, context.now);
  if (samples.empty() || meteogram.points.empty() || hours.empty()) return;
  Instant const first = hours.front().date;
  Instant const oldest = std::max(samples.front().at, context.now - kStationHistory);
  Instant const begin = std::min(first, Instant(std::chrono::floor<std::chrono::hours>(oldest)));
  shift(meteogram, hoursBetween(begin, first));
  addPastHours(meteogram, data, begin, first, context);
  nameDays(meteogram, begin, calendarOf(data, context.fallback), context);
  meteogram.now = hoursBetween(begin, context.now);
  auto const shown = [](std::optional<double> value, auto unit) {
    return value ? std::optional(convert(*value, unit)) : std::nullopt;
  };
  for (StationSample const& sample : samples) {
    double const x = hoursBetween(begin, sample.at);
    if (x < 0 || x > meteogram.hours) continue;
    meteogram.observed.push_back({x, shown(sample.temperature, context.units.temperature),
                                  shown(sample.windSpeed, context.units.wind),
                                  shown(sample.pressure, context.units.pressure)});
  }
  for (MeteogramPoint& point : meteogram.points) sayMeasured(point, begin, samples, context);
  widen(meteogram.temperature, meteogram.observed, &ObservedPoint::temperature, kTemperatureSteps);
  widen(meteogram.wind, meteogram.observed, &ObservedPoint::wind, kSteps);
  if (meteogram.hasPressure) widen(meteogram.pressure, meteogram.observed, &ObservedPoint::pressure, kSteps);
}

}  // namespace nimbara
