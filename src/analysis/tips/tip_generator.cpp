#include "analysis/tips/tip_generator.h"

#include "analysis/hour_kind.h"
#include "base/sun_moon.h"
#include "model/process.h"
#include "model/upcoming_hours.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace nimbara {

namespace {

using Hours = std::span<HourlyForecast const>;
using Of = TipQuantity;

constexpr std::chrono::hours kReach{72};
constexpr std::chrono::minutes kMiddle{30};
constexpr double kGood = 60;
constexpr double kNearBest = 12;
constexpr double kSpeaksFor = 0.75;
constexpr std::size_t kMostWindows = 3;
constexpr double kDegreesOfSensitivity = 4;
constexpr double kFactorOfSensitivity = 1.4;
constexpr std::size_t kQuantities = enumNames<TipQuantity>.size();

using Values = std::array<std::optional<double>, kQuantities>;

struct Rated {
  HourlyForecast const* hour;
  Instant end;
  Values values;
  std::optional<double> score;  ///< nothing where what is needed is not known
};

/// +1 for somebody who minds it, -1 for somebody who does not.
double signOf(Sensitivity sensitivity) {
  return static_cast<double>(sensitivity) - 1;
}

TipRule adjusted(TipRule rule, TipPreferences const& wishes) {
  auto const scale = [&rule](Sensitivity sensitivity) {
    double const factor = std::pow(kFactorOfSensitivity, -signOf(sensitivity));
    rule.bestTo *= factor;
    rule.worstTo *= factor;
  };
  switch (rule.quantity) {
    case Of::temperature:
      rule.bestTo -= kDegreesOfSensitivity * signOf(wishes.heat);
      rule.worstTo -= kDegreesOfSensitivity * signOf(wishes.heat);
      rule.bestFrom += kDegreesOfSensitivity * signOf(wishes.cold);
      rule.worstFrom += kDegreesOfSensitivity * signOf(wishes.cold);
      break;
    case Of::wind:
    case Of::gusts:
      scale(wishes.wind);
      break;
    case Of::rain:
      scale(wishes.rain);
      break;
    case Of::air:
      scale(wishes.air);
      break;
    case Of::pollen:
      scale(wishes.pollen);
      break;
    default:
      break;
  }
  return rule;
}

template <class Value>
std::optional<double> known(bool isKnown, Value value) {
  return isKnown ? std::optional(static_cast<double>(value)) : std::nullopt;
}

std::optional<double> iceOf(HourlyForecast const& hour) {
  HourFall const fall = fallOf(hour);
  if (fall == HourFall::unknown && hour.tempC <= 1) return std::nullopt;
  bool const isWet = falls(fall);
  return fall == HourFall::snow || fall == HourFall::freezing || (isWet && hour.tempC <= 1) ? 1 : 0;
}

/// Of a quarter of the moon's height on, all of its light counts.
double moonlight(Instant when, Coordinate place) {
  return moonPosition(when, place).altitude > 0 ? 100 * moonState(when).illumination : 0;
}

class Rating {
 public:
  Rating(Activity activity, WeatherData const& weather, TipPreferences const& wishes,
         std::vector<TipAir> const& air)
      : place_{weather.location.latitude, weather.location.longitude}, air_(air) {
    for (TipRule const& rule : tipRules()) {
      if (rule.activity == activity) rules_.push_back(adjusted(rule, wishes));
    }
  }

  std::vector<TipRule> const& rules() const { return rules_; }

  Rated rated(HourlyForecast const& hour, Instant end) const {
    Rated rated{&hour, end, {}, 100};
    for (TipRule const& rule : rules_) {
      auto& value = rated.values[static_cast<std::size_t>(rule.quantity)];
      value = valueOf(rule.quantity, hour);
      if (!value && rule.isNeeded) rated.score.reset();
      if (value && rated.score) *rated.score *= suitability(rule, *value);
    }
    return rated;
  }

 private:
  std::optional<double> valueOf(Of quantity, HourlyForecast const& hour) const {
    using Field = WeatherDetailField;
    switch (quantity) {
      case Of::temperature:
        return hour.feelsLikeC;
      case Of::rain:
        return fallOf(hour) == HourFall::none
                   ? 0
                   : known(hour.knows(ForecastValue::precipitation), hour.precipMM);
      case Of::wind:
        return known(hour.knows(ForecastValue::windSpeed), hour.windSpeedKmph);
      case Of::gusts:
        return known(hour.knows(ForecastValue::windGust), hour.windGustKmph);
      case Of::thunder:
        return isThundery(hour) ? std::max(100, hour.chanceOfThunder) : hour.chanceOfThunder;
      case Of::clouds:
        return known(hour.has(Field::cloudCover), hour.cloudCover);
      case Of::humidity:
        return known(hour.has(Field::humidity), hour.humidity);
      case Of::visibility:
        return known(hour.has(Field::visibility) && hour.visibilityKm > 0, hour.visibilityKm);
      case Of::uv:
        return known(hour.has(Field::uvIndex), hour.uvIndex);
      case Of::ice:
        return iceOf(hour);
      case Of::sun:
        return sunPosition(hour.date + kMiddle, place_).altitude;
      case Of::moon:
        return moonlight(hour.date + kMiddle, place_);
      case Of::air:
      case Of::pollen:
        return ofAir(quantity, hour.date);
    }
    return std::nullopt;
  }

  std::optional<double> ofAir(Of quantity, Instant when) const {
    auto const found = std::ranges::find(air_, when, &TipAir::time);
    if (found == air_.end()) return std::nullopt;
    return quantity == Of::air ? found->air : found->pollen;
  }

  Coordinate place_;
  std::vector<TipAir> const& air_;
  std::vector<TipRule> rules_;
};

/// The hours around the best of them that come near it; empty where even that is not good.
std::span<Rated const> windowOf(std::span<Rated const> day) {
  auto const scoreOf = [](Rated const& rated) { return rated.score.value_or(0); };
  auto const best = std::ranges::max_element(day, {}, scoreOf);
  if (best == day.end() || scoreOf(*best) < kGood) return {};
  double const least = std::max(kGood, scoreOf(*best) - kNearBest);
  auto begin = best;
  while (begin != day.begin() && scoreOf(*std::prev(begin)) >= least) --begin;
  auto end = std::next(best);
  while (end != day.end() && scoreOf(*end) >= least) ++end;
  return {begin, end};
}

std::optional<double> meanOf(std::span<Rated const> hours, Of quantity) {
  double sum = 0;
  int count = 0;
  for (Rated const& rated : hours) {
    if (auto const& value = rated.values[static_cast<std::size_t>(quantity)]) {
      sum += *value;
      ++count;
    }
  }
  return count > 0 ? std::optional(sum / count) : std::nullopt;
}

TipReason reasonOf(TipRule const& rule, double value) {
  bool const isFor = suitability(rule, value) >= kSpeaksFor;
  return {rule.quantity, value, isFor, !isFor && value < rule.bestFrom};
}

TipWindow described(std::span<Rated const> hours, Rating const& rating) {
  TipWindow window{hours.front().hour->date, hours.back().end, 0, {}};
  double sum = 0;
  for (Rated const& rated : hours) sum += rated.score.value_or(0);
  window.score = static_cast<int>(std::lround(sum / static_cast<double>(hours.size())));
  for (TipRule const& rule : rating.rules()) {
    if (auto const mean = meanOf(hours, rule.quantity)) window.reasons.push_back(reasonOf(rule, *mean));
  }
  std::ranges::stable_partition(window.reasons, &TipReason::isFor);
  return window;
}

/// What the hours lack most, darkness and daylight left out as long as something else does.
std::optional<TipReason> mostAgainst(std::span<Rated const> hours, Rating const& rating) {
  TipRule const* worst = nullptr;
  double least = 1;
  double value = 0;
  for (TipRule const& rule : rating.rules()) {
    if (rule.quantity == Of::sun) continue;
    double sum = 0;
    double amount = 0;
    int count = 0;
    for (Rated const& rated : hours) {
      auto const& own = rated.values[static_cast<std::size_t>(rule.quantity)];
      auto const& sun = rated.values[static_cast<std::size_t>(Of::sun)];
      bool const isItsTime = !sun || std::ranges::all_of(rating.rules(), [&](TipRule const& other) {
        return other.quantity != Of::sun || suitability(other, *sun) > 0;
      });
      if (!own || !isItsTime) continue;
      sum += suitability(rule, *own);
      amount += *own;
      ++count;
    }
    if (count == 0 || sum / count >= least) continue;
    least = sum / count;
    worst = &rule;
    value = amount / count;
  }
  if (worst == nullptr) return std::nullopt;
  return TipReason{worst->quantity, value, false, value < worst->bestFrom};
}

}  // namespace

Tip TipGenerator::tip(Activity activity, WeatherData const& weather, Instant now,
                      TipPreferences const& preferences, std::vector<TipAir> const& air,
                      Calendar const& fallback) const {
  Calendar const calendar = calendarOf(weather, fallback);
  Rating const rating(activity, weather, preferences, air);
  Hours const ahead = upcomingHours(weather.allHourly, now);
  std::vector<Rated> rated;
  for (std::size_t i = 0; i < ahead.size() && ahead[i].date < now + kReach; ++i)
    rated.push_back(rating.rated(ahead[i], ahead[i].date + stepLength(ahead, i)));
  Tip tip{activity, Tip::State::notKnown, {}, {}};
  if (std::ranges::none_of(rated, [](Rated const& one) { return one.score.has_value(); })) return tip;
  std::span<Rated const> left = rated;
  while (!left.empty()) {
    // A night belongs to the day on which it begins.
    std::chrono::hours const shift(activity == Activity::stargazing ? 12 : 0);
    auto const dayOf = [&](Rated const& one) { return calendar.day(one.hour->date - shift); };
    auto const end =
        std::ranges::find_if(left, [&](Rated const& one) { return dayOf(one) != dayOf(left.front()); });
    std::span<Rated const> const day{left.begin(), end};
    if (auto const window = windowOf(day); !window.empty()) tip.windows.push_back(described(window, rating));
    left = {end, left.end()};
  }
  tip.windows.resize(std::min(tip.windows.size(), kMostWindows));
  tip.state = tip.windows.empty() ? Tip::State::none : Tip::State::windows;
  if (tip.windows.empty()) tip.against = mostAgainst(rated, rating);
  return tip;
}

}  // namespace nimbara
