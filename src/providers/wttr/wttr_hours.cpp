#include "providers/wttr/wttr_hours.h"

#include "base/text/number.h"
#include "providers/common/compass.h"
#include "providers/common/local_hours.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace nimbara {

namespace {

using std::chrono::hours;

constexpr int kHoursOfEntry = 3;
constexpr int kHoursOfDay = 24;
constexpr double kInchesPerMm = 0.03937;

using Text = std::string HourlyCondition::*;

constexpr Text kStraight[] = {
    &HourlyCondition::tempC,         &HourlyCondition::tempF,           &HourlyCondition::feelsLikeC,
    &HourlyCondition::feelsLikeF,    &HourlyCondition::dewPointC,       &HourlyCondition::dewPointF,
    &HourlyCondition::heatIndexC,    &HourlyCondition::heatIndexF,      &HourlyCondition::windChillC,
    &HourlyCondition::windChillF,    &HourlyCondition::windGustKmph,    &HourlyCondition::windGustMiles,
    &HourlyCondition::windspeedKmph, &HourlyCondition::windspeedMiles,  &HourlyCondition::cloudcover,
    &HourlyCondition::humidity,      &HourlyCondition::pressure,        &HourlyCondition::uvIndex,
    &HourlyCondition::visibility,    &HourlyCondition::visibilityMiles,
};

/// An entry and the hours of the place that it speaks of.
struct Stretch {
  HourlyCondition entry;
  std::vector<Instant> begins;
};

int hourOf(HourlyCondition const& entry) {
  return lenientInteger(entry.time) / 100;
}

std::vector<Stretch> stretchesOf(WeatherDay const& day, Calendar const& calendar) {
  Date const date = *parseDate(day.date);
  auto const begins = localHours(calendar.startOfDay(date), calendar.startOfDay(addDays(date, 1)), calendar);
  std::vector<Stretch> stretches;
  for (std::size_t i = 0; i < day.hourly.size(); ++i) {
    int const first = hourOf(day.hourly[i]);
    int const next = i + 1 < day.hourly.size() ? hourOf(day.hourly[i + 1]) : kHoursOfDay;
    int const end = std::min(first + kHoursOfEntry, next);
    Stretch stretch{day.hourly[i], {}};
    for (Instant const begin : begins) {
      int const hour = calendar.hour(begin);
      if (hour >= first && hour < end) stretch.begins.push_back(begin);
    }
    if (!stretch.begins.empty()) stretches.push_back(std::move(stretch));
  }
  return stretches;
}

/// `part` of the way from one number to the next; what is no number stays.
void moveTowards(HourlyCondition& hour, HourlyCondition const& next, double part) {
  for (Text const text : kStraight) {
    auto const from = parseDouble(hour.*text);
    auto const to = parseDouble(next.*text);
    if (from && to) hour.*text = roundedText(std::lerp(*from, *to, part));
  }
  auto const from = parseDouble(hour.winddirDegree);
  auto const to = parseDouble(next.winddirDegree);
  if (!from || !to) return;
  double const direction = directionBetween(*from, *to, part);
  hour.winddirDegree = roundedText(direction);
  hour.winddir16Point = compassPoint(direction);
}

/// Hours of the stretch; `next` begins where it ends, or is null.
void layOut(Stretch const& stretch, Stretch const* next, Calendar const& calendar,
            std::vector<HourlyCondition>& out) {
  auto const amount = parseDouble(stretch.entry.precipMM);
  auto const count = static_cast<double>(stretch.begins.size());
  TenthsOf tenths;
  for (std::size_t i = 0; i < stretch.begins.size(); ++i) {
    HourlyCondition& hour = out.emplace_back(stretch.entry);
    hour.time = std::to_string(calendar.hour(stretch.begins[i]) * 100);
    if (i > 0 && next != nullptr) moveTowards(hour, next->entry, static_cast<double>(i) / count);
    if (!amount || stretch.begins.size() == 1) continue;
    double const part = tenths.next(*amount / count);
    hour.precipMM = fixedDecimal(part, 1);
    hour.precipInches = fixedDecimal(part * kInchesPerMm, 2);
  }
}

bool follows(Stretch const& next, Stretch const& stretch) {
  return next.begins.front() - stretch.begins.back() <= hours(1);
}

}  // namespace

void layOutHours(std::vector<WeatherDay>& days, Calendar const& calendar) {
  std::vector<std::vector<Stretch>> stretches;
  stretches.reserve(days.size());
  for (WeatherDay const& day : days) stretches.push_back(stretchesOf(day, calendar));
  for (std::size_t day = 0; day < days.size(); ++day) {
    std::vector<HourlyCondition> hours;
    for (std::size_t i = 0; i < stretches[day].size(); ++i) {
      bool const isLast = i + 1 == stretches[day].size();
      bool const hasTomorrow = day + 1 < days.size() && !stretches[day + 1].empty();
      Stretch const* next = !isLast       ? &stretches[day][i + 1]
                            : hasTomorrow ? &stretches[day + 1].front()
                                          : nullptr;
      if (next != nullptr && !follows(*next, stretches[day][i])) next = nullptr;
      layOut(stretches[day][i], next, calendar, hours);
    }
    days[day].hourly = std::move(hours);
  }
}

}  // namespace nimbara
