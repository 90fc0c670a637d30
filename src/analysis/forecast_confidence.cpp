#include "analysis/forecast_confidence.h"

#include "model/upcoming_hours.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <span>

namespace nimbara {

namespace {

constexpr int kLeastMoments = 3;
/// One forecast may end before the other by so much of the day.
constexpr std::chrono::hours kMostMissing{6};
/// From so many days ahead on, confidence is medium at best; and low.
constexpr int kFarDays = 4;
constexpr int kVeryFarDays = 7;

/// A difference up to `usual` is what two good forecasts have anyway; above `great` they tell of two days.
struct Allowance {
  double usual;
  double great;
};

constexpr Allowance kTemperature{2, 4};
constexpr Allowance kPrecipitation{2, 8};
constexpr Allowance kWind{10, 20};
/// Of a wet day amounts differ more: up to this share of the greater one is usual, too.
constexpr double kUsualShare = 0.4;

ConfidenceLevel levelOf(double difference, Allowance const& allowance) {
  double const apart = std::abs(difference);
  if (apart <= allowance.usual) return ConfidenceLevel::high;
  return apart <= allowance.great ? ConfidenceLevel::medium : ConfidenceLevel::low;
}

ConfidenceLevel levelAhead(int days) {
  if (days < kFarDays) return ConfidenceLevel::high;
  return days < kVeryFarDays ? ConfidenceLevel::medium : ConfidenceLevel::low;
}

/// Of one provider, at the moments of a day that both have.
struct Extremes {
  double highest = -1e9;
  double lowest = 1e9;
  std::optional<double> windKmph = 0;

  void add(HourlyForecast const& hour) {
    highest = std::max(highest, hour.tempC);
    lowest = std::min(lowest, hour.tempC);
    if (!hour.knows(ForecastValue::windSpeed)) windKmph.reset();
    if (windKmph) windKmph = std::max(*windKmph, hour.windSpeedKmph);
  }
};

/// Of one provider, over its own steps of a day, which may be of six hours.
struct Total {
  std::chrono::milliseconds covered{};
  std::optional<double> precipMM = 0;
};

struct SharedDay {
  int moments = 0;
  Extremes shown;
  Extremes other;
};

using Hours = std::span<HourlyForecast const>;

std::map<Date, Total> totalsOf(Hours hours, Calendar const& calendar) {
  std::map<Date, Total> totals;
  for (std::size_t i = 0; i < hours.size(); ++i) {
    Total& total = totals[calendar.day(hours[i].date)];
    total.covered += stepLength(hours, i);
    if (!hours[i].knows(ForecastValue::precipitation)) total.precipMM.reset();
    if (total.precipMM) *total.precipMM += hours[i].precipMM;
  }
  return totals;
}

std::optional<double> difference(std::optional<double> const& one, std::optional<double> const& other) {
  return one && other ? std::optional(*one - *other) : std::nullopt;
}

ConfidenceLevel precipLevel(Total const& shown, Total const& other) {
  if (!shown.precipMM || !other.precipMM) return ConfidenceLevel::high;
  double const usual =
      std::max(kPrecipitation.usual, kUsualShare * std::max(*shown.precipMM, *other.precipMM));
  return levelOf(*shown.precipMM - *other.precipMM, {usual, std::max(usual, kPrecipitation.great)});
}

DayConfidence confidenceOf(Date date, int daysAhead, SharedDay const& day, Total const& shown,
                           Total const& other) {
  DayConfidence out{date, daysAhead};
  out.highestC = day.shown.highest - day.other.highest;
  out.lowestC = day.shown.lowest - day.other.lowest;
  out.precipMM = difference(shown.precipMM, other.precipMM);
  out.windKmph = difference(day.shown.windKmph, day.other.windKmph);
  ConfidenceLevel const agreement =
      std::min({levelOf(out.highestC, kTemperature), levelOf(out.lowestC, kTemperature),
                precipLevel(shown, other), levelOf(out.windKmph.value_or(0), kWind)});
  ConfidenceLevel const ahead = levelAhead(daysAhead);
  out.level = std::min(agreement, ahead);
  out.isForTime = ahead < agreement;
  return out;
}

}  // namespace

std::vector<DayConfidence> forecastConfidence(WeatherData const& shown, WeatherData const& other, Instant now,
                                              Calendar const& calendar) {
  Hours const own = upcomingHours(shown.allHourly, now);
  Hours const others = upcomingHours(other.allHourly, now);
  std::map<Date, SharedDay> days;
  for (HourlyForecast const& hour : own) {
    auto const same = std::ranges::lower_bound(others, hour.date, {}, &HourlyForecast::date);
    if (same == others.end() || same->date != hour.date) continue;
    SharedDay& day = days[calendar.day(hour.date)];
    ++day.moments;
    day.shown.add(hour);
    day.other.add(*same);
  }
  auto const ownTotals = totalsOf(own, calendar);
  auto const otherTotals = totalsOf(others, calendar);
  std::vector<DayConfidence> out;
  std::chrono::sys_days const today{calendar.day(now)};
  for (auto const& [date, day] : days) {
    Total const& mine = ownTotals.at(date);
    Total const& theirs = otherTotals.at(date);
    if (day.moments < kLeastMoments || abs(mine.covered - theirs.covered) > kMostMissing) continue;
    auto const ahead = static_cast<int>((std::chrono::sys_days{date} - today).count());
    out.push_back(confidenceOf(date, ahead, day, mine, theirs));
  }
  return out;
}

}  // namespace nimbara
