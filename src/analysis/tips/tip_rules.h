// What suits which activity out of doors: a table of what counts, from where on it is ideal and from where on
// it rules the activity out. Pure data.
#pragma once

#include "base/enum_names.h"

#include <span>

namespace nimbara {

enum class Activity {
  walking,
  running,
  cycling,
  laundry,
  gardening,
  photography,
  stargazing,
  swimming,
  driving
};
template <>
inline constexpr auto enumNames<Activity> =
    std::to_array<std::string_view>({"walking", "running", "cycling", "laundry", "gardening", "photography",
                                     "stargazing", "swimming", "driving"});
static_assert(enumNamesComplete(Activity::driving));

enum class TipQuantity {
  temperature,  ///< °C, as it feels
  rain,         ///< mm of whatever falls in the hour
  wind,         ///< km/h
  gusts,        ///< km/h
  thunder,      ///< %
  clouds,       ///< %
  humidity,     ///< %
  visibility,   ///< km
  uv,           ///< index
  ice,          ///< 1 where water freezes on the ground or snow falls, else 0
  sun,          ///< degrees above the horizon
  moon,         ///< % of the disc while it is up
  air,          ///< level of the air's index, 1 the best
  pollen        ///< level, 0 none
};
template <>
inline constexpr auto enumNames<TipQuantity> =
    std::to_array<std::string_view>({"temperature", "rain", "wind", "gusts", "thunder", "clouds", "humidity",
                                     "visibility", "uv", "ice", "sun", "moon", "air", "pollen"});
static_assert(enumNamesComplete(TipQuantity::pollen));

/// Ideal from `bestFrom` to `bestTo`, out of the question at `worstFrom` and below and at `worstTo` and
/// above.
struct TipRule {
  Activity activity;
  TipQuantity quantity;
  double worstFrom;
  double bestFrom;
  double bestTo;
  double worstTo;
  bool isNeeded = false;  ///< without it nothing can be said of the hour
};

std::span<TipRule const> tipRules();

/// 0 to 1.
double suitability(TipRule const& rule, double value);

}  // namespace nimbara
