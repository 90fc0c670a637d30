#include "analysis/event_detector.h"

#include "analysis/hour_kind.h"
#include "model/day_summary.h"
#include "model/process.h"
#include "model/upcoming_hours.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <span>

namespace nimbara {

namespace {

using Hours = std::span<HourlyForecast const>;
using std::chrono::hours;
using std::chrono::milliseconds;

constexpr hours kShortestPause{2};
constexpr hours kClearWindow{3};
constexpr int kStrongSun = 6;
constexpr double kHotC = 30;
constexpr double kIceDayC = 0;
constexpr std::size_t kSpellDays = 3;
constexpr int kDryDays = 4;
constexpr double kDryMM = 0.2;
constexpr double kWetMM = 1;
/// New snow of a millimetre of water where the provider gives no depth.
constexpr double kSnowCmOfMM = 0.7;

struct HourKind {
  EventKind kind;
  bool (*counts)(HourlyForecast const&);
  double (*value)(HourlyForecast const&);
  bool isLowestWorst = false;
  hours shortest{0};
};

double precip(HourlyForecast const& hour) {
  return hour.knows(ForecastValue::precipitation) ? hour.precipMM : 0;
}

double visibility(HourlyForecast const& hour) {
  return hour.has(WeatherDetailField::visibility) ? hour.visibilityKm : 0;
}

template <HourFall fall>
bool isFall(HourlyForecast const& hour) {
  return fallOf(hour) == fall;
}

constexpr std::array kHourKinds{
    HourKind{EventKind::freezingRain, isFall<HourFall::freezing>, precip},
    HourKind{EventKind::thunder, isThundery,
             [](HourlyForecast const& hour) { return static_cast<double>(hour.chanceOfThunder); }},
    HourKind{EventKind::gale, isGale, strongestWind},
    HourKind{EventKind::snow, isFall<HourFall::snow>, precip},
    HourKind{EventKind::sleet, isFall<HourFall::sleet>, precip},
    HourKind{EventKind::rain, isFall<HourFall::rain>, precip},
    HourKind{EventKind::fog, isThickFog, visibility, true},
    HourKind{EventKind::strongSun,
             [](HourlyForecast const& hour) {
               return hour.has(WeatherDetailField::uvIndex) && hour.uvIndex >= kStrongSun;
             },
             [](HourlyForecast const& hour) { return static_cast<double>(hour.uvIndex); }},
    HourKind{EventKind::clearSky, isClear,
             [](HourlyForecast const& hour) { return static_cast<double>(hour.cloudCover); }, true,
             kClearWindow}};

bool isOfFall(EventKind kind) {
  return kind == EventKind::freezingRain || kind == EventKind::snow || kind == EventKind::sleet ||
         kind == EventKind::rain;
}

WeatherConditionCode mostFrequent(Hours spell) {
  std::array<int, enumNames<WeatherConditionCode>.size()> tally{};
  auto best = WeatherConditionCode::unknown;
  for (HourlyForecast const& hour : spell) {
    if (hour.condition == WeatherConditionCode::unknown) continue;
    int const count = ++tally[static_cast<std::size_t>(hour.condition)];
    bool const isFirst = best == WeatherConditionCode::unknown;
    if (isFirst || count > tally[static_cast<std::size_t>(best)]) best = hour.condition;
  }
  return best;
}

/// One run over a forecast.
class Detection {
 public:
  Detection(WeatherData const& weather, Instant now, Calendar const& calendar)
      : weather_(weather),
        now_(now),
        calendar_(calendar),
        coming_(upcomingHours(weather.allHourly, now)),
        offset_(weather.allHourly.size() - coming_.size()) {}

  std::vector<WeatherEvent> events() && {
    for (HourKind const& kind : kHourKinds) addSpells(kind);
    addDaySpells(EventKind::heat, [](DailyForecast const& day) { return day.maxTempC >= kHotC; }, 1);
    addDaySpells(EventKind::cold, [](DailyForecast const& day) { return day.maxTempC <= kIceDayC; }, -1);
    addFirstFrost();
    addDroughtEnd();
    std::ranges::stable_sort(found_, {},
                             [](WeatherEvent const& event) { return std::pair(event.begin, event.kind); });
    return std::move(found_);
  }

 private:
  Instant endOf(std::size_t index) const {
    return coming_[index].date + stepLength(weather_.allHourly, offset_ + index);
  }

  void addSpells(HourKind const& kind) {
    for (std::size_t i = 0; i < coming_.size(); ++i) {
      if (!kind.counts(coming_[i])) continue;
      std::size_t last = i;
      for (std::size_t next = i + 1; next < coming_.size(); ++next) {
        if (coming_[next].date - endOf(last) >= kShortestPause) break;
        if (kind.counts(coming_[next])) last = next;
      }
      if (endOf(last) - coming_[i].date >= kind.shortest) addSpell(kind, i, last);
      i = last;
    }
  }

  void addSpell(HourKind const& kind, std::size_t first, std::size_t last) {
    Hours const spell = coming_.subspan(first, last - first + 1);
    double const sign = kind.isLowestWorst ? -1 : 1;
    auto const& peak = *std::ranges::max_element(spell, {}, [&](HourlyForecast const& hour) {
      return kind.counts(hour) ? sign * kind.value(hour) : -1e9;
    });
    WeatherEvent event{.kind = kind.kind, .begin = spell.front().date, .peak = peak.date};
    event.end = endOf(last);
    event.value = kind.value(peak);
    event.isOpen = last + 1 == coming_.size();
    event.condition = conditionOf(kind, spell);
    if (isOfFall(kind.kind)) addAmounts(event, kind, first, last);
    found_.push_back(event);
  }

  /// Of the hours that belong to it, not of the pauses.
  static WeatherConditionCode conditionOf(HourKind const& kind, Hours spell) {
    bool const isUnbroken = std::ranges::all_of(spell, kind.counts);
    if (isUnbroken) return mostFrequent(spell);
    std::vector<HourlyForecast> own;
    std::ranges::copy_if(spell, std::back_inserter(own), kind.counts);
    return mostFrequent(own);
  }

  void addAmounts(WeatherEvent& event, HourKind const& kind, std::size_t first, std::size_t last) const {
    for (std::size_t i = first; i <= last; ++i) {
      HourlyForecast const& hour = coming_[i];
      if (!kind.counts(hour)) continue;
      if (hour.knows(ForecastValue::precipitation))
        event.totalMM = event.totalMM.value_or(0) + shareAhead(i) * hour.precipMM;
      if (hour.knows(ForecastValue::precipitationChance)) {
        event.chance = std::max({event.chance.value_or(0), hour.chanceOfRain, hour.chanceOfSnow});
      }
    }
    if (kind.kind == EventKind::snow && event.totalMM) event.totalSnowCm = snowOf(first, last);
  }

  /// Of the running hour only what is left of it.
  double shareAhead(std::size_t index) const {
    std::chrono::duration<double> const whole = endOf(index) - coming_[index].date;
    std::chrono::duration<double> const ahead = endOf(index) - std::max(coming_[index].date, now_);
    return whole.count() > 0 ? ahead / whole : 1;
  }

  double snowOf(std::size_t first, std::size_t last) const {
    double cm = 0;
    for (std::size_t i = first; i <= last; ++i) {
      if (isFall<HourFall::snow>(coming_[i])) cm += shareAhead(i) * precip(coming_[i]) * depthOf(coming_[i]);
    }
    return cm;
  }

  /// Centimetres of new snow that a millimetre of water makes on the day of that hour.
  double depthOf(HourlyForecast const& hour) const {
    auto const after = std::ranges::upper_bound(weather_.daily, hour.date, {}, &DailyForecast::date);
    if (after == weather_.daily.begin() || std::prev(after)->totalSnowCm <= 0) return kSnowCmOfMM;
    DailyForecast const& day = *std::prev(after);
    double water = 0;
    for (HourlyForecast const& each : day.hourly) {
      if (fallOf(each) == HourFall::snow) water += precip(each);
    }
    return water > 0 ? std::clamp(day.totalSnowCm / water, 0.2, 3.0) : kSnowCmOfMM;
  }

  /// Days from today on.
  std::span<DailyForecast const> days() const {
    auto const first = std::ranges::find_if(weather_.daily, [&](DailyForecast const& day) {
      return calendar_.day(day.date) >= calendar_.day(now_);
    });
    return {first, weather_.daily.end()};
  }

  Instant endOfDay(DailyForecast const& day) const {
    return calendar_.startOfDay(addDays(calendar_.day(day.date), 1));
  }

  template <class Counts>
  void addDaySpells(EventKind kind, Counts counts, double sign) {
    auto const ahead = days();
    for (std::size_t i = 0; i < ahead.size(); ++i) {
      std::size_t end = i;
      while (end < ahead.size() && counts(ahead[end])) ++end;
      if (end - i >= kSpellDays) addDaySpell(kind, ahead.subspan(i, end - i), sign, end == ahead.size());
      i = std::max(i, end);
    }
  }

  void addDaySpell(EventKind kind, std::span<DailyForecast const> spell, double sign, bool isOpen) {
    auto const extreme = [&](DailyForecast const& day) { return sign > 0 ? day.maxTempC : -day.minTempC; };
    DailyForecast const& peak = *std::ranges::max_element(spell, {}, extreme);
    WeatherEvent& event = found_.emplace_back();
    event.kind = kind;
    event.begin = std::max(now_, spell.front().date);
    event.peak = peak.date;
    event.end = endOfDay(spell.back());
    event.value = sign > 0 ? peak.maxTempC : peak.minTempC;
    event.isOpen = isOpen;
  }

  /// From late summer on until the end of the year's half, on either hemisphere.
  bool isFrostSeason(Instant instant) const {
    bool const isNorth = weather_.location.latitude >= 0;
    unsigned const month = static_cast<unsigned>(calendar_.day(instant).month());
    return isNorth ? month >= 8 : month >= 2 && month <= 6;
  }

  void addFirstFrost() {
    auto const& all = weather_.allHourly;
    auto const frost = std::ranges::find_if(all, [](HourlyForecast const& hour) { return hour.tempC <= 0; });
    if (frost == all.end() || frost->date < now_ || frost->date - all.front().date < hours(24)) return;
    if (!isFrostSeason(frost->date)) return;
    auto const end =
        std::find_if(frost, all.end(), [](HourlyForecast const& hour) { return hour.tempC > 0; });
    auto const coldest = std::ranges::min_element(frost, end, {}, &HourlyForecast::tempC);
    WeatherEvent& event = found_.emplace_back();
    event.kind = EventKind::firstFrost;
    event.begin = frost->date;
    event.peak = coldest->date;
    event.end = end == all.end() ? endOf(coming_.size() - 1) : end->date;
    event.value = coldest->tempC;
    event.isOpen = end == all.end();
  }

  void addDroughtEnd() {
    int dry = 0;
    for (DailyForecast const& day : days()) {
      auto const mm = summarize(day).precipitationMM;
      if (!mm) return;
      if (*mm >= kWetMM && dry >= kDryDays) {
        WeatherEvent& event = found_.emplace_back();
        event.kind = EventKind::droughtEnd;
        event.begin = event.peak = day.date;
        event.end = endOfDay(day);
        event.value = dry;
        event.totalMM = mm;
        return;
      }
      dry = *mm < kDryMM ? dry + 1 : 0;
    }
  }

  WeatherData const& weather_;
  Instant now_;
  Calendar const& calendar_;
  Hours coming_;
  std::size_t offset_;
  std::vector<WeatherEvent> found_;
};

}  // namespace

std::vector<WeatherEvent> EventDetector::detect(WeatherData const& weather, Instant now,
                                                Calendar const& fallback) const {
  Calendar const calendar = calendarOf(weather, fallback);
  return Detection(weather, now, calendar).events();
}

}  // namespace nimbara
