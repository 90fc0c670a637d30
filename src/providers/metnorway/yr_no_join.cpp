#include "providers/metnorway/yr_no_join.h"

#include "base/apparent_temperature.h"
#include "base/sun_moon.h"
#include "providers/common/hours_by_day.h"
#include "providers/common/interchange.h"
#include "providers/common/local_hours.h"
#include "providers/metnorway/yr_no_symbol.h"

#include <algorithm>
#include <cmath>

namespace nimbara {

namespace {

using std::chrono::hours;

constexpr int kDays = 7;
constexpr int kLongStep = 6;  // hours
constexpr double kKmhPerMs = 3.6;
constexpr double kCmOfSnowPerMm = 0.7;  // the ratio that Open-Meteo reckons with
/// Degrees: the sun counts as up when its upper limb does.
constexpr double kSunUp = -0.833;
/// The series may begin with the next full hour.
constexpr hours kNearestHour{1};

constexpr Reading YrNoInstant::* kStraight[] = {
    &YrNoInstant::airTemperature,           &YrNoInstant::airPressureAtSeaLevel,
    &YrNoInstant::cloudAreaFraction,        &YrNoInstant::dewPointTemperature,
    &YrNoInstant::fogAreaFraction,          &YrNoInstant::relativeHumidity,
    &YrNoInstant::ultravioletIndexClearSky, &YrNoInstant::windSpeed,
    &YrNoInstant::windSpeedOfGust,
};

/// The weather at `part` (0-1) of the way from one step to the next.
YrNoInstant between(YrNoInstant const& from, YrNoInstant const& to, double part) {
  YrNoInstant out = from;
  for (auto const member : kStraight) {
    if (from.*member && to.*member) out.*member = std::lerp(*(from.*member), *(to.*member), part);
  }
  if (from.windFromDirection && to.windFromDirection) {
    out.windFromDirection = directionBetween(*from.windFromDirection, *to.windFromDirection, part);
  }
  return out;
}

Reading scaled(Reading reading, double factor) {
  if (!reading) return std::nullopt;
  return *reading * factor;
}

void fillInstant(YrNoInstant const& in, HourlyEntry& entry) {
  entry.temperature2m = in.airTemperature;
  entry.relativeHumidity2m = in.relativeHumidity;
  entry.dewPoint2m = in.dewPointTemperature;
  entry.cloudCover = in.cloudAreaFraction;
  entry.fogProbability = in.fogAreaFraction;
  entry.windSpeed10m = scaled(in.windSpeed, kKmhPerMs);
  entry.windGusts10m = scaled(in.windSpeedOfGust, kKmhPerMs);
  entry.windDirection10m = in.windFromDirection;
  entry.pressureMsl = in.airPressureAtSeaLevel;
  entry.uvIndex = in.ultravioletIndexClearSky;
  if (in.airTemperature && in.relativeHumidity && in.windSpeed) {
    entry.apparentTemperature =
        apparentTemperature(*in.airTemperature, *in.relativeHumidity, *in.windSpeed * kKmhPerMs);
  }
}

/// A step and how far it reaches.
struct Stretch {
  YrNoStep const& step;
  YrNoStep const* next;
  YrNoPeriod const* period;  ///< null for the last steps
  int periodHours;

  /// Until the period ends or the next step takes over.
  int hoursLong() const {
    if (!next) return periodHours;
    auto const gap = std::chrono::ceil<hours>(next->time - step.time);
    return static_cast<int>(std::min(gap, hours(periodHours)).count());
  }
};

Stretch stretchAt(std::vector<YrNoStep> const& steps, std::size_t i) {
  YrNoStep const& step = steps[i];
  YrNoStep const* const next = i + 1 < steps.size() ? &steps[i + 1] : nullptr;
  if (step.next1Hours) return {step, next, &*step.next1Hours, 1};
  if (step.next6Hours) return {step, next, &*step.next6Hours, kLongStep};
  return {step, next, nullptr, 1};
}

/// An hour's own probability; else that of the six hours it begins.
Reading precipitationProbability(Stretch const& stretch) {
  if (stretch.period->probabilityOfPrecipitation) return stretch.period->probabilityOfPrecipitation;
  return stretch.step.next6Hours ? stretch.step.next6Hours->probabilityOfPrecipitation : std::nullopt;
}

void fillPeriod(Stretch const& stretch, HourlyEntry& entry) {
  YrNoPeriod const& period = *stretch.period;
  entry.precipitation = scaled(period.precipitationAmount, 1.0 / stretch.periodHours);
  entry.precipitationProbability = precipitationProbability(stretch);
  entry.thunderProbability = period.probabilityOfThunder;
  if (period.symbolCode.empty()) return;
  YrNoSymbol const symbol = readYrNoSymbol(period.symbolCode);
  entry.condition = symbol.condition;
  if (symbol.isSnow) entry.snowfall = scaled(entry.precipitation, kCmOfSnowPerMm);
  // The suffix of a long step speaks of its whole, not of each of its hours.
  if (stretch.periodHours == 1) entry.isDay = symbol.isDay;
}

HourlyEntry hourOf(Stretch const& stretch, int index, Coordinate place) {
  HourlyEntry entry;
  entry.begin = stretch.step.time + hours(index);
  if (index == 0 || !stretch.next) {
    fillInstant(stretch.step.instant, entry);
  } else {
    std::chrono::duration<double> const gap = stretch.next->time - stretch.step.time;
    fillInstant(between(stretch.step.instant, stretch.next->instant, hours(index) / gap), entry);
  }
  if (stretch.period) fillPeriod(stretch, entry);
  if (!entry.isDay) entry.isDay = sunPosition(entry.begin, place).altitude > kSunUp;
  return entry;
}

struct Span {
  Instant begin;
  Instant end;
};

/// The seven days that are written.
Span spanOf(std::vector<YrNoStep> const& steps, Calendar const& calendar, Instant now) {
  Date const first = calendar.day(steps.front().time);
  Date const last = calendar.day(steps.back().time);
  Date const today = calendar.day(now);
  Date const begin = today > first && today <= last ? today : first;
  return {calendar.startOfDay(begin), calendar.startOfDay(addDays(begin, kDays))};
}

/// The service's hours that reach into the span.
std::vector<HourlyEntry> serviceHours(std::vector<YrNoStep> const& steps, Coordinate place,
                                      Span const& span) {
  std::vector<HourlyEntry> entries;
  for (std::size_t i = 0; i < steps.size(); ++i) {
    Stretch const stretch = stretchAt(steps, i);
    for (int index = 0; index < stretch.hoursLong(); ++index) {
      Instant const begin = stretch.step.time + hours(index);
      bool const isWithin = begin + hours(1) > span.begin && begin < span.end;
      if (isWithin && stretch.step.instant.airTemperature) entries.push_back(hourOf(stretch, index, place));
    }
  }
  return entries;
}

/// The place's hours of the span.
std::vector<HourlyEntry> hoursOf(std::vector<YrNoStep> const& steps, Coordinate place, Span const& span,
                                 Calendar const& calendar) {
  auto entries = onLocalHours(serviceHours(steps, place, span), calendar);
  std::erase_if(
      entries, [&](HourlyEntry const& entry) { return entry.begin < span.begin || entry.begin >= span.end; });
  roundToTenths(entries);
  return entries;
}

void widen(DailyEntry& day, Reading highest, Reading lowest) {
  if (highest && !(day.temperatureMax >= highest)) day.temperatureMax = highest;
  if (lowest && !(day.temperatureMin && day.temperatureMin <= lowest)) day.temperatureMin = lowest;
}

/// The days of the hours, with the extremes of long steps that lie wholly within one: the hours between two
/// steps know nothing of a peak there.
std::vector<DailyEntry> daysOf(HoursByDay const& hoursOfDays, std::vector<YrNoStep> const& steps,
                               Calendar const& calendar) {
  std::vector<DailyEntry> days;
  for (auto const& [date, entries] : hoursOfDays) {
    DailyEntry& day = days.emplace_back();
    day.date = date;
    for (HourlyEntry const& hour : entries) widen(day, hour.temperature2m, hour.temperature2m);
  }
  for (std::size_t i = 0; i < steps.size(); ++i) {
    Stretch const stretch = stretchAt(steps, i);
    if (!stretch.period || stretch.periodHours == 1) continue;
    Date const date = calendar.day(stretch.step.time);
    if (date != calendar.day(stretch.step.time + hours(stretch.periodHours - 1))) continue;
    auto const day = std::ranges::find(days, date, &DailyEntry::date);
    if (day == days.end()) continue;
    widen(*day, stretch.period->airTemperatureMax, stretch.period->airTemperatureMin);
  }
  return days;
}

/// The hour that contains `now`, else the one that is about to begin.
HourlyEntry const* presentHour(std::vector<HourlyEntry> const& entries, Instant now) {
  if (auto const* const hour = hourContaining(entries, now)) return hour;
  auto const next = std::ranges::lower_bound(entries, now, {}, &HourlyEntry::begin);
  return next != entries.end() && next->begin - now <= kNearestHour ? &*next : nullptr;
}

}  // namespace

Result<WttrResponse, APIError> joinYrNo(std::vector<YrNoStep> const& steps, Coordinate place,
                                        Calendar const& calendar, Instant now) {
  if (steps.empty()) return std::unexpected(APIError::of(APIError::Case::noResults));
  std::vector<HourlyEntry> entries = hoursOf(steps, place, spanOf(steps, calendar, now), calendar);
  HoursByDay days = hoursByDay(entries, calendar);
  WttrResponse record;
  record.timeZone = calendar.zoneId();
  record.nearestArea = {writeArea(place)};
  record.request = {writeRequest(place)};
  if (auto const* const hour = presentHour(entries, now)) {
    LocalTime const local = calendar.local(hour->begin);
    record.currentCondition = {writeCurrent(*hour, local, formatLocalTime(local))};
  }
  for (DailyEntry const& day : daysOf(days, steps, calendar)) {
    if (auto written = writeDay(day, days[day.date], calendar, place))
      record.weather.push_back(std::move(*written));
  }
  if (record.weather.empty()) return std::unexpected(APIError::of(APIError::Case::noResults));
  return record;
}

}  // namespace nimbara
