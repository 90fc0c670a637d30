#include "analysis/alerts/alert_generator.h"

#include "analysis/felt_temperature.h"
#include "base/words/time_words.h"
#include "model/present.h"
#include "model/process.h"
#include "model/upcoming_hours.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace nimbara {

namespace {

using Hours = std::span<HourlyForecast const>;
using Severity = AlertSeverity;

constexpr std::size_t kShortHorizon = 8;
constexpr std::size_t kLongHorizon = 12;

/// A level of a warning: reached at its bound, the most severe first.
struct Level {
  double from;
  Severity severity;
  std::string_view title;
  std::string_view message;
};

constexpr std::array kHeat{
    Level{38, Severity::critical, "alert.gen.extremeHeat", "alert.gen.extremeHeat.msg"},
    Level{33, Severity::warning, "alert.gen.highTemp", "alert.gen.highTemp.msg"}};
/// Degrees below zero.
constexpr std::array kCold{
    Level{15, Severity::critical, "alert.gen.extremeCold", "alert.gen.extremeCold.msg"},
    Level{5, Severity::warning, "alert.gen.veryCold", "alert.gen.veryCold.msg"}};
/// km/h.
constexpr std::array kWind{
    Level{60, Severity::warning, "alert.gen.highWinds", "alert.gen.highWinds.msg"},
    Level{40, Severity::advisory, "alert.gen.strongWinds", "alert.gen.strongWinds.msg"}};

template <std::size_t count>
Level const* reached(std::array<Level, count> const& levels, double value) {
  auto const found = std::ranges::find_if(levels, [&](Level const& level) { return value >= level.from; });
  return found == levels.end() ? nullptr : &*found;
}

/// The entry with the highest value, the earliest of equals; null without entries.
template <class Value>
HourlyForecast const* peak(Hours hours, Value value) {
  auto const found = std::ranges::max_element(hours, {}, value);
  return found == hours.end() ? nullptr : &*found;
}

template <class Predicate>
HourlyForecast const* firstWhere(Hours hours, Predicate predicate) {
  auto const found = std::ranges::find_if(hours, predicate);
  return found == hours.end() ? nullptr : &*found;
}

double feltOf(HourlyForecast const& hour) {
  double const humidity = hour.has(WeatherDetailField::humidity) ? hour.humidity : 0;
  return feltTemperature(hour.tempC, hour.feelsLikeC, humidity, hour.windSpeedKmph);
}

double feltOf(WeatherData::ProcessedCurrent const& current) {
  double const humidity = current.has(WeatherDetailField::humidity) ? current.humidity : 0;
  return feltTemperature(current.tempC, current.feelsLikeC, humidity, current.windSpeedKmph);
}

double windOf(HourlyForecast const& hour) {
  return std::max(hour.windSpeedKmph, hour.windGustKmph);
}

/// Wet hours count as likely ones, whatever their stated chance.
int adjustedRainChance(HourlyForecast const& hour) {
  int chance = hour.chanceOfRain;
  if (hour.precipMM >= 2) chance = std::max(chance, 65);
  if (hour.precipMM >= 5 || category(hour.condition) == ConditionCategory::heavyRain) {
    chance = std::max(chance, 80);
  }
  return chance;
}

bool isStormSetup(HourlyForecast const& hour) {
  return hour.chanceOfThunder >= 80 && (hour.windGustKmph >= 100 || hour.windSpeedKmph >= 80);
}

bool isIcy(HourlyForecast const& hour) {
  bool const wet = hour.precipMM > 0.2 || hour.chanceOfRain > 40 || hour.chanceOfSnow >= 41;
  return std::abs(hour.tempC) <= 2 && wet;
}

/// An hourly visibility of 0 is no reading.
bool isFoggy(HourlyForecast const& hour) {
  return hour.chanceOfFog >= 70 || (hour.visibilityKm > 0 && hour.visibilityKm <= 1);
}

/// One run of the checks, in their order.
class Run {
 public:
  Run(WeatherData const& weather, Instant now, Units const& units, Texts const& texts,
      Calendar const& calendar)
      : weather_(weather),
        now_(now),
        units_(units),
        texts_(texts),
        calendar_(calendar),
        words_(texts, calendar) {
    Hours const upcoming = upcomingHours(weather.allHourly, now);
    short_ = upcoming.first(std::min(kShortHorizon, upcoming.size()));
    long_ = upcoming.first(std::min(kLongHorizon, upcoming.size()));
  }

  std::vector<WeatherAlert> alerts() && {
    heat();
    cold();
    stormSetup();
    thunder();
    rain();
    snow();
    ice();
    fog();
    ultraviolet();
    wind();
    sortMostSevereFirst(found_);
    return std::move(found_);
  }

 private:
  template <class... Arguments>
  void add(Severity severity, std::string_view title, WarningKind kind, std::string_view message,
           Arguments const&... arguments) {
    WeatherAlert alert;
    alert.severity = severity;
    alert.title = texts_.text(title);
    alert.message = texts_.format(message, arguments...);
    alert.kind = kind;
    found_.push_back(std::move(alert));
  }

  std::string label(HourlyForecast const& hour) const { return words_.hourLabel(hour.date, now_); }
  std::string suffix(HourlyForecast const* hour) const {
    return hour == nullptr ? std::string() : words_.aroundSuffix(hour->date, now_);
  }

  bool hasReading() const { return hasYoungReading(weather_, now_); }

  /// Heat (`sign` +1) or, mirrored, cold (-1): the extreme of the coming hours against the present.
  template <std::size_t count>
  void extremeTemperature(std::array<Level, count> const& levels, double sign, WarningKind kind) {
    auto const felt = [sign](auto const& conditions) { return sign * feltOf(conditions); };
    HourlyForecast const* hour = peak(long_, felt);
    if (!hasReading() && hour == nullptr) return;
    bool const fromHour = hour != nullptr && (!hasReading() || felt(*hour) >= felt(weather_.current));
    if (!fromHour) hour = nullptr;
    double const value = fromHour ? felt(*hour) : felt(weather_.current);
    Level const* const level = reached(levels, value);
    if (level == nullptr) return;
    std::string const shown =
        display(sign * value, units_.temperature) + " " + std::string(symbol(units_.temperature));
    add(level->severity, level->title, kind, level->message, shown, suffix(hour));
  }

  void heat() { extremeTemperature(kHeat, 1, WarningKind::heat); }
  void cold() { extremeTemperature(kCold, -1, WarningKind::cold); }

  void stormSetup() {
    if (auto const* const hour = firstWhere(short_, isStormSetup)) {
      add(Severity::critical, "alert.gen.tornadoSetup", WarningKind::tornado, "alert.gen.tornadoSetup.msg",
          label(*hour));
    }
  }

  void thunder() {
    auto const* const hour = peak(short_, &HourlyForecast::chanceOfThunder);
    if (hour == nullptr || hour->chanceOfThunder < 50) return;
    add(hour->chanceOfThunder >= 70 ? Severity::warning : Severity::advisory, "alert.gen.thunderRisk",
        WarningKind::thunderstorm, "alert.gen.thunderRisk.msg", label(*hour), hour->chanceOfThunder);
  }

  void rain() {
    auto const* const hour = peak(long_, adjustedRainChance);
    if (hour == nullptr) return;
    double total = 0;
    for (HourlyForecast const& each : long_) total += each.precipMM;
    if (adjustedRainChance(*hour) < 70 && total < 20) return;
    bool const floods = total >= 30;
    Severity const severity = floods || hour->precipMM >= 8 ? Severity::warning : Severity::advisory;
    add(severity, floods ? "alert.gen.floodingRain" : "alert.gen.heavyRain", WarningKind::rain,
        "alert.gen.rain.msg", label(*hour), hour->precipMM, total);
  }

  double snowToday() const {
    auto const today = std::ranges::find_if(
        weather_.daily, [this](DailyForecast const& day) { return calendar_.isSameDay(day.date, now_); });
    return today == weather_.daily.end() ? 0 : today->totalSnowCm;
  }

  void snow() {
    double const today = snowToday();
    if (today > 10) {
      return add(Severity::warning, "alert.gen.heavySnow", WarningKind::snow, "alert.gen.heavySnow.msg",
                 today);
    }
    if (today >= 3) {
      return add(Severity::advisory, "alert.gen.snowExpected", WarningKind::snow, "alert.gen.snowToday.msg",
                 today);
    }
    auto const* const hour = peak(long_, &HourlyForecast::chanceOfSnow);
    if (hour == nullptr || hour->chanceOfSnow < 60) return;
    add(Severity::advisory, "alert.gen.snowExpected", WarningKind::snow, "alert.gen.snowPeak.msg",
        label(*hour));
  }

  void ice() {
    if (auto const* const hour = firstWhere(long_, isIcy)) {
      add(Severity::advisory, "alert.gen.icy", WarningKind::ice, "alert.gen.icy.msg", label(*hour));
    }
  }

  void fog() {
    constexpr std::string_view kTitle = "alert.gen.denseFog";
    auto const& current = weather_.current;
    bool const isFoggyNow =
        hasReading() && current.has(WeatherDetailField::visibility) && current.visibility < 1;
    if (auto const* const hour = firstWhere(short_, isFoggy)) {
      add(Severity::advisory, kTitle, WarningKind::fog, "alert.gen.fogAt.msg", label(*hour));
    } else if (isFoggyNow) {
      add(Severity::advisory, kTitle, WarningKind::fog, "alert.gen.fogNow.msg");
    }
  }

  void ultraviolet() {
    constexpr std::string_view kTitle = "alert.gen.uvHigh";
    auto const* const hour = peak(long_, &HourlyForecast::uvIndex);
    int const value =
        std::max(hasReading() ? weather_.current.uvIndex : 0, hour == nullptr ? 0 : hour->uvIndex);
    if (value < 8) return;
    Severity const severity = value >= 11 ? Severity::warning : Severity::advisory;
    if (hour != nullptr)
      return add(severity, kTitle, WarningKind::sun, "alert.gen.uvAt.msg", value, label(*hour));
    add(severity, kTitle, WarningKind::sun, "alert.gen.uvNow.msg", value);
  }

  void wind() {
    auto const* const hour = peak(long_, windOf);
    double const value =
        std::max(hasReading() ? weather_.current.windSpeedKmph : 0, hour == nullptr ? 0 : windOf(*hour));
    Level const* const level = reached(kWind, value);
    if (level == nullptr) return;
    auto const whole = static_cast<int>(convert(value, units_.wind));
    std::string const shown = std::to_string(whole) + " " + std::string(symbol(units_.wind));
    add(level->severity, level->title, WarningKind::wind, level->message, shown, suffix(hour));
  }

  WeatherData const& weather_;
  Instant now_;
  Units const& units_;
  Texts const& texts_;
  Calendar const& calendar_;
  TimeWords words_;
  Hours short_;
  Hours long_;
  std::vector<WeatherAlert> found_;
};

}  // namespace

std::vector<WeatherAlert> AlertGenerator::generate(WeatherData const& weather, Instant now,
                                                   Units const& units, Texts const& texts,
                                                   Calendar const& fallback) const {
  return Run(weather, now, units, texts, calendarOf(weather, fallback)).alerts();
}

}  // namespace nimbara
