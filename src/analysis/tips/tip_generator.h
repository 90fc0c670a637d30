// When to be out of doors, and for what: the good hours of the next three days by activity, with what speaks
// for and against them. Pure.
#pragma once

#include "analysis/tips/tip_rules.h"
#include "base/time/calendar.h"
#include "base/units.h"
#include "base/words/texts.h"
#include "model/weather_data.h"

#include <optional>
#include <string>
#include <vector>

namespace nimbara {

enum class Sensitivity { low, usual, high };
template <>
inline constexpr auto enumNames<Sensitivity> = std::to_array<std::string_view>({"low", "usual", "high"});
static_assert(enumNamesComplete(Sensitivity::high));

/// How much a person minds what.
struct TipPreferences {
  Sensitivity heat = Sensitivity::usual;
  Sensitivity cold = Sensitivity::usual;
  Sensitivity wind = Sensitivity::usual;
  Sensitivity rain = Sensitivity::usual;
  Sensitivity air = Sensitivity::usual;
  Sensitivity pollen = Sensitivity::usual;

  bool operator==(TipPreferences const&) const = default;
};

/// The air of an hour, where it is known.
struct TipAir {
  Instant time{};
  std::optional<double> air;     ///< level of the index, 1 the best
  std::optional<double> pollen;  ///< level, 0 none
};

/// Something that counts, at its mean in the window.
struct TipReason {
  TipQuantity quantity = TipQuantity::temperature;
  double value = 0;
  bool isFor = true;
  bool isBelow = false;  ///< against: the value lies below what would be ideal

  bool operator==(TipReason const&) const = default;
};

struct TipWindow {
  Instant from{};
  Instant to{};
  int score = 0;  ///< 60 to 100
  std::vector<TipReason> reasons;

  bool operator==(TipWindow const&) const = default;
};

struct Tip {
  enum class State {
    windows,
    none,     ///< no hour is good enough
    notKnown  ///< the forecast lacks what the activity needs
  };

  Activity activity = Activity::walking;
  State state = State::notKnown;
  std::vector<TipWindow> windows;    ///< one a day at most, by time
  std::optional<TipReason> against;  ///< of `none`: what stands most in the way

  bool operator==(Tip const&) const = default;
};
template <>
inline constexpr auto enumNames<Tip::State> =
    std::to_array<std::string_view>({"windows", "none", "notKnown"});
static_assert(enumNamesComplete(Tip::State::notKnown));

class TipGenerator {
 public:
  /// An hour is good from 60 points of 100 on; a window is the stretch around a day's best hour that comes
  /// within a dozen points of it. What is not known speaks neither for nor against.
  Tip tip(Activity activity, WeatherData const& weather, Instant now, TipPreferences const& preferences,
          std::vector<TipAir> const& air, Calendar const& fallback = Calendar::utc()) const;
};

/// "dry", "14 °C", "strong wind".
std::string reasonText(TipReason const& reason, Activity activity, Units const& units, Texts const& texts);

/// "Saturday 7 AM to 9 AM: 14 °C, dry, light wind", or that no hour is good and why, or that it is not known.
std::vector<std::string> tipLines(Tip const& tip, Instant now, Units const& units, Texts const& texts,
                                  Calendar const& calendar);

}  // namespace nimbara
